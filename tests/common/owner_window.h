// A plain top-level window to own the dialogs that window tests run.
#pragma once

#include <windows.h>

inline HWND MakeTestOwner() {
  WNDCLASSW wc = {};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"TavroTestOwner";
  RegisterClassW(&wc);  // fails harmlessly once registered
  return CreateWindowExW(0, wc.lpszClassName, L"owner", WS_OVERLAPPEDWINDOW, 100, 100, 800, 600, nullptr, nullptr,
                         wc.hInstance, nullptr);
}
