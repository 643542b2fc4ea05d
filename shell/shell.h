// The shell's chief header: process-wide state of the shell and the private
// window message numbers of the whole program.
#pragma once

#include <windows.h>

#include <string>

// Private window messages.
constexpr UINT WM_USER_OPEN_FILE = 1026;  // lParam: heap wide string the receiver frees
constexpr UINT WM_SET_TOOLBAR_MODE = 1027;  // to the toolbar; wParam 1 AI Mod, 0 Classic
constexpr UINT WM_PDF_EXPORT_FINISHED = 1135;  // wParam success, lParam elapsed ms
constexpr UINT WM_EXPORT_PROGRESS = 1138;
constexpr UINT WM_HTML_EXPORT_FINISHED = 1145;  // wParam success, lParam ExportResultNote* the receiver frees
constexpr UINT WM_PANEL_SIZE_CHANGED = 1249;
constexpr UINT WM_AI_ANSWER = WM_APP + 202;           // lParam: heap wide string the receiver frees
constexpr UINT WM_AI_REQUEST_ENDED = WM_APP + 203;
constexpr UINT WM_AI_REQUEST_FAILED = WM_APP + 204;   // lParam: heap wide string or null; receiver frees
constexpr UINT WM_AI_STATUS_REFRESH = WM_APP + 205;   // connection labels and the system-information file
constexpr UINT WM_AI_SETTINGS_CHANGED = 32980;
constexpr UINT WM_THEME_CHANGED = 0x8001;  // wParam: new theme index
constexpr UINT WM_SYSTEM_THEME_CHANGED = 0x8064;

constexpr wchar_t kMainWindowClass[] = L"TavroMainWindow";
constexpr wchar_t kProfileProperty[] = L"TavroProfile";
// Holds a global atom of the profile name, so that another process can tell
// which profile a main window belongs to without reading this one's memory.
constexpr wchar_t kProfileAtomProperty[] = L"TavroProfileAtom";

extern HINSTANCE g_hInstance;
extern HWND g_hwndMain;
extern HWND g_hwndEditor;
extern HWND g_hwndToolbar;
extern HWND g_hwndStatus;
extern HWND g_hwndMargin;
extern HWND g_hwndAiPanel;
extern bool g_viewerMode;
extern std::wstring g_profileName;  // empty or "default": the default profile
extern HMODULE g_scintillaModule;
extern HMODULE g_lexillaModule;
using CreateLexerFn = void*(__stdcall*)(const char* name);
extern CreateLexerFn g_createLexer;  // from lexilla.dll; null in a Viewer

bool RegisterMainWindowClass(HINSTANCE instance);
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Hand a heap copy of path to the main window as WM_USER_OPEN_FILE, posted
// (loaded by the message loop) or sent (loaded at once).
void PostOpenFile(HWND window, const wchar_t* path);
void SendOpenFile(HWND window, const wchar_t* path);

// A message to the editor control.
LRESULT SendEditor(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

void UpdateTitle();

// The status bar: created in the main window, refilled on every change.
HWND CreateStatusBar(HWND parent);
void UpdateStatusBar();
void UpdateStatusFont();

// The line-number strip left of the editor.
void RegisterMarginClass(HINSTANCE instance);
HWND CreateMarginStrip(HWND parent);
int MarginStripWidth();
// After a load, an edit or a zoom: a new width relays the window out.
void RefreshMarginWidth();

// "default" for the default profile, else the profile name: the name used in
// the instance mutex and on the main window.
std::wstring ProfileLabel(const std::wstring& profileName);

