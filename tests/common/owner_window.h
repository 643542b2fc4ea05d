// A plain top-level window to own the dialogs of window tests and to
// receive what they post to their owner.
#pragma once

#include <windows.h>

inline HWND MakeOwnerWindow(const wchar_t* className) {
  WNDCLASSW wc = {};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = className;
  RegisterClassW(&wc);  // fails harmlessly once registered
  return CreateWindowExW(0, wc.lpszClassName, L"owner", WS_OVERLAPPEDWINDOW, 100, 100, 800, 600, nullptr, nullptr,
                         wc.hInstance, nullptr);
}
