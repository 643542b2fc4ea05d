// Routing of WM_COMMAND ids to the code that serves them.
#pragma once

#include <windows.h>

#include "shell/command_table.h"

// True when the id was handled.
bool HandleCommand(HWND window, int id);

// New document: prompt, give up the file, empty the editor, give memory back.
void NewDocument(HWND window);

// The main window's layered style: percent 0 removes it, any other sets it
// with the alpha of that percentage.
void ApplyTransparency(HWND window, unsigned percent);

// Command 210 and the Settings dialog's "Select Font...": the Font dialog,
// with the line-number strip, the AI panel and the status bar following
// its font. True when it ended with OK.
bool OpenFontDialog(HWND owner);
