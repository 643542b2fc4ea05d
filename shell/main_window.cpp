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

std::string Utf8(const wchar_t* text) {
  int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string out(size > 0 ? size - 1 : 0, '\0');
  if (size > 1) WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), size, nullptr, nullptr);
  return out;
}

std::wstring FileNameOf(const std::wstring& path) {
  size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

bool CreateEditor(HWND window) {
  g_hwndEditor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | WS_CLIPCHILDREN,
                                 0, g_viewerMode || !g_hwndToolbar ? 0 : 44, 800, 600, window, nullptr, g_hInstance, nullptr);
  if (!g_hwndEditor) return false;
  Editor(SCI_SETCODEPAGE, SC_CP_UTF8);
  Editor(SCI_SETEOLMODE, SC_EOL_CRLF);
  Editor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>(Utf8(g_fontName).c_str()));
  Editor(SCI_STYLESETSIZE, STYLE_DEFAULT, g_fontSize);
  Editor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold ? 1 : 0);
  Editor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic ? 1 : 0);
  Editor(SCI_STYLECLEARALL);
  for (int margin = 0; margin < 5; ++margin) Editor(SCI_SETMARGINWIDTHN, margin, 0);
  Editor(SCI_SETMARGINLEFT, 0, 6);
  Editor(SCI_SETWRAPMODE, g_wordWrap ? SC_WRAP_WORD : SC_WRAP_NONE);
  Editor(SCI_SETHSCROLLBAR, g_wordWrap ? 0 : 1);
  Editor(SCI_SETTABWIDTH, 4);
  Editor(SCI_SETINDENT, 4);
  Editor(SCI_SETUSETABS, 0);
  Editor(SCI_SETCARETPERIOD, 500);
  Editor(SCI_SETCARETWIDTH, 2);
  Editor(SCI_SETINDENTATIONGUIDES, SC_IV_NONE);
  Editor(SCI_SETVSCROLLBAR, 1);
  Editor(SCI_SETMODEVENTMASK, SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT);
  Editor(SCI_USEPOPUP, SC_POPUP_NEVER);
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

void ApplyViewerLook() {
  if (!g_hwndEditor) return;
  const COLORREF text = RGB(0x2D, 0x1E, 0x0F), paper = RGB(0xF5, 0xEE, 0xDC);
  Editor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>("Georgia"));
  Editor(SCI_STYLESETSIZE, STYLE_DEFAULT, 12);
  Editor(SCI_STYLESETBOLD, STYLE_DEFAULT, 0);
  Editor(SCI_STYLESETITALIC, STYLE_DEFAULT, 0);
  Editor(SCI_STYLESETFORE, STYLE_DEFAULT, text);
  Editor(SCI_STYLESETBACK, STYLE_DEFAULT, paper);
  Editor(SCI_STYLECLEARALL);
  Editor(SCI_STYLESETBACK, STYLE_LINENUMBER, paper);
  for (int margin = 0; margin < 5; ++margin) Editor(SCI_SETMARGINBACKN, margin, paper);
  Editor(SCI_SETCARETFORE, RGB(0x50, 0x32, 0x14));
  Editor(SCI_SETCARETPERIOD, 0);
  Editor(SCI_SETCARETWIDTH, 1);
  Editor(SCI_SETSELFORE, 1, RGB(0x14, 0x0A, 0x00));
  Editor(SCI_SETSELBACK, 1, RGB(0xC8, 0xB4, 0x8C));
  Editor(SCI_SETWRAPMODE, SC_WRAP_WORD);
  Editor(SCI_SETHSCROLLBAR, 0);
  Editor(SCI_SETMARGINLEFT, 0, 28);
  Editor(SCI_SETMARGINRIGHT, 0, 28);
  if (g_hwndMain) SetDarkTitleBar(g_hwndMain, false);
  SetWindowTheme(g_hwndEditor, L"Explorer", nullptr);
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
        ApplyViewerLook();
      } else {
        UpdateTitle();
      }
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
