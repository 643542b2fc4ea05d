// The shell's chief header: process-wide state of the shell and the private
// window message numbers of the whole program.
#pragma once

#include <windows.h>

#include <string>

// Private window messages.
constexpr UINT WM_USER_OPEN_FILE = 1026;  // lParam: heap wide string the receiver frees

constexpr wchar_t kMainWindowClass[] = L"TavroMainWindow";
constexpr wchar_t kProfileProperty[] = L"TavroProfile";

extern HINSTANCE g_hInstance;
extern HWND g_hwndMain;
extern HWND g_hwndEditor;
extern bool g_viewerMode;
extern std::wstring g_profileName;  // empty or "default": the default profile
extern HMODULE g_scintillaModule;
extern HMODULE g_lexillaModule;

bool RegisterMainWindowClass(HINSTANCE instance);
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Sends a heap copy of path to the main window as WM_USER_OPEN_FILE.
void PostOpenFile(HWND window, const wchar_t* path);

void UpdateTitle();
