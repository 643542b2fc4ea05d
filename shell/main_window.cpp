// The main window. It holds the editor; the toolbar, status bar and
// line-number strip join it later.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>
#include <uxtheme.h>

#include <string>

#include "Scintilla.h"
#include "document/document.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "settings/settings.h"
#include "shell/commands.h"
#include "shell/shell.h"

namespace {

constexpr wchar_t kViewerTitlePrefix[] = L"Tavro Viewer - ";

// The profile string whose address the window property carries.
std::wstring g_profileLabel;

LRESULT Editor(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendMessageW(g_hwndEditor, message, wParam, lParam);
}

std::wstring FileNameOf(const std::wstring& path) {
  size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

bool CreateEditor(HWND window) {
  g_hwndEditor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | WS_CLIPCHILDREN,
                                 0, g_viewerMode || !g_hwndToolbar ? 0 : 44, 800, 600, window, nullptr, g_hInstance, nullptr);
  if (!g_hwndEditor) return false;
  SetupEditor();
  return true;
}

void LayOut(HWND window, int width, int height) {
  (void)window;
  if (!g_hwndEditor) return;
  // The toolbar band is 44 pixels high; a Viewer has none.
  int top = g_viewerMode || !g_hwndToolbar ? 0 : 44;
  int contentHeight = height - top;
  MoveWindow(g_hwndEditor, 0, top, width, contentHeight > 0 ? contentHeight : 0, TRUE);
}

void OnOpenFile(HWND window, wchar_t* path) {
  OutputDebugStringW(L"[WM_USER_OPEN_FILE] Received\n");
  if (!path) return;
  std::wstring line = L"[WM_USER_OPEN_FILE] Path: " + std::wstring(path) + L"\n";
  OutputDebugStringW(line.c_str());
  if (!FileLoad(window, path)) {
    OutputDebugStringW(L"[WM_USER_OPEN_FILE] FileLoad FAILED\n");
    HeapFree(GetProcessHeap(), 0, path);
    return;
  }
  OutputDebugStringW(L"[WM_USER_OPEN_FILE] FileLoad SUCCESS\n");
  g_filePath = path;
  g_modified = false;
  if (g_viewerMode) {
    // The title names the file of the command line, or the path when there is none.
    int argc = 0;
    LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    std::wstring shown = argv && argc >= 3 ? argv[2] : path;
    if (argv) LocalFree(argv);
    SetWindowTextW(window, (kViewerTitlePrefix + FileNameOf(shown)).c_str());
  } else {
    UpdateTitle();
  }
  HeapFree(GetProcessHeap(), 0, path);
}

}  // namespace

std::wstring ProfileLabel(const std::wstring& profileName) {
  return profileName.empty() ? std::wstring(L"default") : profileName;
}

void PostOpenFile(HWND window, const wchar_t* path) {
  size_t length = wcslen(path) + 1;
  wchar_t* copy = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, length * sizeof(wchar_t)));
  if (!copy) return;
  memcpy(copy, path, length * sizeof(wchar_t));
  if (!PostMessageW(window, WM_USER_OPEN_FILE, 0, reinterpret_cast<LPARAM>(copy))) HeapFree(GetProcessHeap(), 0, copy);
}

void SendOpenFile(HWND window, const wchar_t* path) {
  size_t length = wcslen(path) + 1;
  wchar_t* copy = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, length * sizeof(wchar_t)));
  if (!copy) return;
  memcpy(copy, path, length * sizeof(wchar_t));
  SendMessageW(window, WM_USER_OPEN_FILE, 0, reinterpret_cast<LPARAM>(copy));
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
      if (g_profileLabel.empty()) {
        g_profileLabel = ProfileLabel(g_profileName);
        SetPropW(window, kProfileProperty, const_cast<wchar_t*>(g_profileLabel.c_str()));
        SetPropW(window, kProfileAtomProperty,
                 reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(GlobalAddAtomW(g_profileLabel.c_str()))));
      }
      if (!CreateEditor(window)) {
        ShowMessageBox(nullptr, kBoxOk, L"Tavro \u00e2\u20ac\u201d Fatal Error",
                       L"CRITICAL: Cannot create Scintilla control.\nMake sure Scintilla.dll is next to Tavro.exe.");
        return -1;
      }
      if (g_viewerMode) {
        Editor(SCI_SETREADONLY, 1);
        ApplyViewerLook(window);
      } else {
        ApplyEditorTheme();
        SyncSystemTheme(window);
        UpdateTitle();
      }
      return 0;
    case WM_ERASEBKGND: {
      RECT client;
      GetClientRect(window, &client);
      HBRUSH brush = CreateSolidBrush(CurrentTheme().windowBackground);
      FillRect(reinterpret_cast<HDC>(wParam), &client, brush);
      DeleteObject(brush);
      return 1;
    }
    case WM_THEME_CHANGED:
      ApplyTheme(static_cast<unsigned>(wParam), true);
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
      return 0;
    case WM_SYSTEM_THEME_CHANGED:
      if (!g_viewerMode) SyncSystemTheme(window);
      return 0;
    case WM_SETTINGCHANGE:
      if (lParam && (wcscmp(reinterpret_cast<const wchar_t*>(lParam), L"ImmersiveColorSet") == 0 ||
                     wcscmp(reinterpret_cast<const wchar_t*>(lParam), L"Policy") == 0))
        PostMessageW(window, WM_SYSTEM_THEME_CHANGED, 0, 0);
      return 0;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) LayOut(window, LOWORD(lParam), HIWORD(lParam));
      return 0;
    case WM_SETFOCUS:
      if (g_hwndEditor) SetFocus(g_hwndEditor);
      return 0;
    case WM_COMMAND:
      if (HandleCommand(window, LOWORD(wParam))) return 0;
      break;
    case WM_NOTIFY: {
      auto* notification = reinterpret_cast<const SCNotification*>(lParam);
      if (notification->nmhdr.hwndFrom == g_hwndEditor && notification->nmhdr.code == SCN_MODIFIED && !g_viewerMode &&
          (notification->modificationType & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)) && !g_modified) {
        g_modified = true;
        UpdateTitle();
      }
      return 0;
    }
    case WM_TIMER:
      if (wParam == kAutoSaveTimer) OnAutoSaveTimer(window);
      return 0;
    case WM_CLOSE:
      // Cancel, or a failed save after Yes, keeps the window open.
      if (!g_viewerMode && !ConfirmDiscardOrSave(window)) return 0;
      if (g_fileHandle != INVALID_HANDLE_VALUE) {
        CloseHandle(g_fileHandle);
        g_fileHandle = INVALID_HANDLE_VALUE;
      }
      DestroyWindow(window);
      return 0;
    case WM_USER_OPEN_FILE:
      OnOpenFile(window, reinterpret_cast<wchar_t*>(lParam));
      return 0;
    case WM_DESTROY: {
      if (!g_viewerMode) CollectSettings();
      ATOM atom = static_cast<ATOM>(reinterpret_cast<UINT_PTR>(RemovePropW(window, kProfileAtomProperty)));
      if (atom) GlobalDeleteAtom(atom);
      RemovePropW(window, kProfileProperty);
      if (g_fileHandle != INVALID_HANDLE_VALUE) {
        CloseHandle(g_fileHandle);
        g_fileHandle = INVALID_HANDLE_VALUE;
      }
      PostQuitMessage(0);
      return 0;
    }
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
