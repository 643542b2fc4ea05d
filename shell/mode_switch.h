// The switch between Classic (the editor alone) and AI Mod (editor and panel).
#pragma once

#include <windows.h>

// Command 4021: to Classic without a question; to AI Mod after the save
// question, with the panel made on first use and a closing message box.
void SwitchEditorMode(HWND window);

// The Settings dialog's switch, after its own save question: the same steps
// without the closing box and without saving the settings.
void SetEditorModeQuietly(HWND window, bool aiMod);
