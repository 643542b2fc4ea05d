// The one way a file becomes the document.
#pragma once

#include <windows.h>

#include <string>

// Where an open comes from. Each way has asked its own questions (the save
// prompt, the dropped file's rule) before it gets here.
enum class OpenSource {
  kOpenMessage,  // WM_USER_OPEN_FILE: the command line or the last file; no prompt
  kOpenDialog,   // the Open command
  kRecentFile,   // an entry of Recent Files
  kDrop,         // the first file dropped on the window
};

// Loads path into the editor and, when that worked, makes it the document:
// the path, a clean state, then the title and status bar and Recent Files of
// a normal instance or the title of a Viewer. True when the file was loaded.
bool OpenDocumentPath(HWND window, const std::wstring& path, OpenSource source);

// Command 7000 + slot: a file of Recent Files. A file that is gone is offered
// for removal from the list and the document stays as it is; otherwise the
// save question, then the load.
void OpenRecentFile(HWND window, int slot);
