// The Help window: the modeless manual with topics at the left.
#pragma once

#include <windows.h>

extern HWND g_hwndHelp;  // the Help window while it is open

// Opens the Help window, or brings the open one to the front.
void ShowHelp(HWND owner);
