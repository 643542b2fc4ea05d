// Routing of WM_COMMAND ids to the code that serves them.
#pragma once

#include <windows.h>

enum CommandId {
  kCmdNew = 1001,
  kCmdOpen = 1002,
  kCmdSave = 1003,
  kCmdSaveAs = 1004,
  kCmdExit = 1005,
};

// True when the id was handled.
bool HandleCommand(HWND window, int id);

// New document: prompt, give up the file, empty the editor, give memory back.
void NewDocument(HWND window);
