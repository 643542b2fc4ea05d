// The shell's chief header: the shell's own process-wide state and the
// entries of the main window, its status bar and its line-number strip.
// What lower layers also read (handles, role, message numbers) is in base/.
#pragma once

#include <windows.h>

#include <string>

#include "base/app_state.h"
#include "base/messages.h"

extern HMODULE g_scintillaModule;
extern HMODULE g_lexillaModule;

bool RegisterMainWindowClass(HINSTANCE instance);
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Hand a heap copy of path to the main window as WM_USER_OPEN_FILE, posted
// (loaded by the message loop) or sent (loaded at once).
void PostOpenFile(HWND window, const wchar_t* path);
void SendOpenFile(HWND window, const wchar_t* path);

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

// At exit, not in a Viewer: the live values, the window placement, the
// document's path and the panel width into g_settings, then SaveSettings.
void CollectSettings();
