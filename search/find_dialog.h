// The modeless Find and Replace dialog over the main window's editor.
#pragma once

#include <windows.h>

// Opens the dialog, or brings the open one forward with the focus on its
// search field. The first call in a process sweeps old temporary files.
void ShowFindDialog(HWND owner);

// Forgets the cached list of matches; the main window calls it on every
// insert or delete in the editor. With the dialog open and a document that
// isn't empty, the current-match mark goes too.
void InvalidateFindCache();
