// Page Setup (command 603): the system's dialog with the margins and paper
// size of the settings record, kept there on OK.
#pragma once

#include <windows.h>

// True on OK, when the six values are stored and saved; false on Cancel.
bool ShowPageSetup(HWND owner);
