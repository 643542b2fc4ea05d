// The Settings dialog of command 6001: mode, theme, transparency, font,
// line numbers, word wrap, auto-save, sounds and splash. Everything takes
// effect at OK; Cancel leaves the settings alone.
#pragma once

#include <windows.h>

void ShowSettingsDialog(HWND owner);
