// The editor's owner-drawn context menu.
#pragma once

#include <windows.h>

// The menu at a screen point; (-1, -1) takes the cursor. The chosen command
// comes to window as WM_COMMAND.
void ShowEditorContextMenu(HWND window, POINT screenPoint);
