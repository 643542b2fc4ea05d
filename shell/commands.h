// Routing of WM_COMMAND ids to the code that serves them.
#pragma once

#include <windows.h>

#include "shell/command_table.h"

// True when the id was handled.
bool HandleCommand(HWND window, int id);

// New document: prompt, give up the file, empty the editor, give memory back.
void NewDocument(HWND window);
