#include "base/app_state.h"

HINSTANCE g_hInstance = nullptr;
HWND g_hwndMain = nullptr;
HWND g_hwndEditor = nullptr;
HWND g_hwndToolbar = nullptr;
HWND g_hwndStatus = nullptr;
HWND g_hwndMargin = nullptr;
HWND g_hwndAiPanel = nullptr;
HWND g_hwndFind = nullptr;
HWND g_hwndRegex = nullptr;
HWND g_hwndSettings = nullptr;
bool g_viewerMode = false;
std::wstring g_profileName;
CreateLexerFn g_createLexer = nullptr;
HANDLE g_viewerJob = nullptr;

bool IsDefaultProfileName(const std::wstring& profileName) {
  return profileName.empty() || profileName == kDefaultProfileName;
}

std::wstring ProfileLabel(const std::wstring& profileName) {
  return profileName.empty() ? std::wstring(kDefaultProfileName) : profileName;
}

LRESULT SendEditor(UINT message, WPARAM wParam, LPARAM lParam) {
  return SendMessageW(g_hwndEditor, message, wParam, lParam);
}
