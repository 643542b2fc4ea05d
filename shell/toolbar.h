// The toolbar: eight self-drawn buttons across the top of the main window,
// the program's one permanent command surface. None in a Viewer.
#pragma once

#include <windows.h>

// Registers "TavroToolbar" once and creates the bar as a child of parent at
// 0, 0, 800 by 44; the mode flag is stored and posted to it.
HWND CreateToolbar(HWND parent, bool aiMode);
// Recomputes which buttons are enabled and repaints. After loads, saves,
// edits and at start-up.
void RefreshToolbar();
// Stores the mode flag (true in AI Mod) and posts WM_SET_TOOLBAR_MODE to the bar.
void SetToolbarMode(bool aiMode);
// The mode flag as the toolbar holds it.
bool ToolbarAiMode();
