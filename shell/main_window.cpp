// The main window. This first form holds only the editor, which fills the
// client area; the toolbar, status bar and line-number strip join it later.
#include <windows.h>

#include <commctrl.h>

#include "Scintilla.h"
#include "document/document.h"
#include "shell/shell.h"

namespace {

void DebugLog(const wchar_t* line) { OutputDebugStringW(line); }

bool CreateEditor(HWND window) {
  g_hwndEditor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | WS_CLIPCHILDREN,
                                 0, 0, 800, 600, window, nullptr, g_hInstance, nullptr);
  if (!g_hwndEditor) return false;
  SendMessageW(g_hwndEditor, SCI_SETCODEPAGE, SC_CP_UTF8, 0);
  SendMessageW(g_hwndEditor, SCI_SETEOLMODE, SC_EOL_CRLF, 0);
  SendMessageW(g_hwndEditor, SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>("Consolas"));
  SendMessageW(g_hwndEditor, SCI_STYLESETSIZE, STYLE_DEFAULT, 11);
  SendMessageW(g_hwndEditor, SCI_STYLECLEARALL, 0, 0);
  for (int margin = 0; margin < 5; ++margin) SendMessageW(g_hwndEditor, SCI_SETMARGINWIDTHN, margin, 0);
  SendMessageW(g_hwndEditor, SCI_SETMARGINLEFT, 0, 6);
  SendMessageW(g_hwndEditor, SCI_SETTABWIDTH, 4, 0);
  SendMessageW(g_hwndEditor, SCI_SETUSETABS, 0, 0);
  SendMessageW(g_hwndEditor, SCI_SETMODEVENTMASK, SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT, 0);
  SendMessageW(g_hwndEditor, SCI_USEPOPUP, SC_POPUP_NEVER, 0);
  return true;
}

}  // namespace

void PostOpenFile(HWND window, const wchar_t* path) {
  size_t length = wcslen(path) + 1;
  wchar_t* copy = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, length * sizeof(wchar_t)));
  if (!copy) return;
  memcpy(copy, path, length * sizeof(wchar_t));
  if (!PostMessageW(window, WM_USER_OPEN_FILE, 0, reinterpret_cast<LPARAM>(copy))) HeapFree(GetProcessHeap(), 0, copy);
}

bool RegisterMainWindowClass(HINSTANCE instance) {
  WNDCLASSEXW wc = {};
  wc.cbSize = sizeof(wc);
  wc.style = CS_HREDRAW | CS_VREDRAW;
  wc.lpfnWndProc = MainWindowProc;
  wc.hInstance = instance;
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  wc.lpszClassName = kMainWindowClass;
  wc.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(101));
  wc.hIconSm = static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(101), IMAGE_ICON, 16, 16, 0));
  if (!wc.hIcon) wc.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  if (!wc.hIconSm) wc.hIconSm = LoadIconW(nullptr, IDI_APPLICATION);
  return RegisterClassExW(&wc) != 0;
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      g_hwndMain = window;
      if (!CreateEditor(window)) {
        MessageBoxW(nullptr, L"CRITICAL: Cannot create Scintilla control.\nMake sure Scintilla.dll is next to Tavro.exe.",
                    L"Tavro \u00e2\u20ac\u201d Fatal Error", MB_OK | MB_ICONERROR);
        return -1;
      }
      if (!g_viewerMode) UpdateTitle();
      return 0;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED && g_hwndEditor)
        MoveWindow(g_hwndEditor, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    case WM_SETFOCUS:
      if (g_hwndEditor) SetFocus(g_hwndEditor);
      return 0;
    case WM_USER_OPEN_FILE: {
      wchar_t* path = reinterpret_cast<wchar_t*>(lParam);
      DebugLog(L"[WM_USER_OPEN_FILE] Received\n");
      if (path && FileLoad(window, path)) {
        DebugLog(L"[WM_USER_OPEN_FILE] FileLoad SUCCESS\n");
        g_modified = false;
        UpdateTitle();
      } else {
        DebugLog(L"[WM_USER_OPEN_FILE] FileLoad FAILED\n");
      }
      if (path) HeapFree(GetProcessHeap(), 0, path);
      return 0;
    }
    case WM_DESTROY:
      if (g_fileHandle != INVALID_HANDLE_VALUE) {
        CloseHandle(g_fileHandle);
        g_fileHandle = INVALID_HANDLE_VALUE;
      }
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
