#include "shell/shell.h"

HINSTANCE g_hInstance = nullptr;
HWND g_hwndMain = nullptr;
HWND g_hwndEditor = nullptr;
HWND g_hwndToolbar = nullptr;
HWND g_hwndStatus = nullptr;
HWND g_hwndMargin = nullptr;
HWND g_hwndAiPanel = nullptr;
bool g_viewerMode = false;
std::wstring g_profileName;
HMODULE g_scintillaModule = nullptr;
HMODULE g_lexillaModule = nullptr;
CreateLexerFn g_createLexer = nullptr;

LRESULT SendEditor(UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessageW(g_hwndEditor, message, wParam, lParam);
}
