// The modeless Regex Search dialog over the main window's editor.
#pragma once

#include <windows.h>

// Opens the dialog, or brings the open one forward. The first call in a
// process sweeps old results files.
void ShowRegexDialog(HWND owner);
