// The AI Settings dialog: provider, key, model, temperature, tokens,
// history, panel size and typing speed, with a connection test.
#pragma once

#include <windows.h>

// Modal on owner; 1 after Save, 2 after Cancel.
INT_PTR ShowAiSettingsDialog(HWND owner);

// A change of network while the dialog is open: its result line follows.
void ShowConnectivityInAiSettings(bool online);
