// Process-wide state that every layer may read: the instance, the windows
// of the hub, the role and profile of this process, and the lexer entry.
// The shell sets these; lower layers only read them.
#pragma once

#include <windows.h>

#include <string>

constexpr wchar_t kMainWindowClass[] = L"TavroMainWindow";
constexpr wchar_t kProfileProperty[] = L"TavroProfile";
// Holds a global atom of the profile name, so that another process can tell
// which profile a main window belongs to without reading this one's memory.
constexpr wchar_t kProfileAtomProperty[] = L"TavroProfileAtom";
// Followed by the profile label: held by the process that runs that profile.
constexpr wchar_t kInstanceMutexPrefix[] = L"Local\\Tavro_Instance_";
constexpr wchar_t kDefaultProfileName[] = L"default";

extern HINSTANCE g_hInstance;
extern HWND g_hwndMain;
extern HWND g_hwndEditor;
extern HWND g_hwndToolbar;
extern HWND g_hwndStatus;
extern HWND g_hwndMargin;
extern HWND g_hwndAiPanel;
extern HWND g_hwndFind;  // the Find and Replace dialog while it is open
extern HWND g_hwndRegex;  // the Regex Search dialog while it is open
extern HWND g_hwndSettings;  // the Settings dialog while it is open; a theme change updates its list
extern bool g_viewerMode;
extern std::wstring g_profileName;  // empty or "default": the default profile

using CreateLexerFn = void*(__stdcall*)(const char* name);
extern CreateLexerFn g_createLexer;  // from lexilla.dll; null in a Viewer

// The job object that holds the Viewers this process started, or null. Its
// one holder is this process: when the handle closes, they end.
extern HANDLE g_viewerJob;

// Empty and "default" both name the default profile.
bool IsDefaultProfileName(const std::wstring& profileName);
// "default" for the default profile, else the profile name: the name used in
// the instance mutex, the chat folder and on the main window.
std::wstring ProfileLabel(const std::wstring& profileName);

// A message to the editor control.
LRESULT SendEditor(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
