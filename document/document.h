// The one document of the process.
#pragma once

#include <windows.h>

#include <string>

#include "base/messages.h"
#include "document/encoding.h"

extern std::wstring g_filePath;   // empty for an untitled document
extern HANDLE g_fileHandle;       // stays open from a load to the next load or exit
extern TextEncoding g_encoding;
extern bool g_modified;

// Closes g_fileHandle if it is open and marks it closed.
void CloseDocumentHandle();

// The shell's part in a load and a save, installed by the main window while
// it exists: the document layer calls up through these and nothing else.
struct DocumentListeners {
  void (*textReplaced)() = nullptr;  // a load put new text into the editor
  void (*saved)() = nullptr;         // a save cleared g_modified
};
void SetDocumentListeners(const DocumentListeners& listeners);
void NotifyTextReplaced();
void NotifySaved();

// Brings the file at path into the editor; true when the text is there. The
// caller then clears g_modified and refreshes title, status and recent files.
bool FileLoad(HWND window, const wchar_t* path);

// Reports a failed open by its error code; a sharing violation says nothing.
void ShowFileOpenError(HWND window, DWORD errorCode, const wchar_t* path);

// Writes the document: through the kept handle, or as a new file when there
// is none; an untitled document goes through Save As. True when it ran.
bool FileSave(HWND window);
// Asks for a path and saves; false on Cancel.
bool FileSaveAs(HWND window);

// Asks before unsaved work would be dropped: IDYES, IDNO or IDCANCEL.
int PromptSaveChanges(HWND window);
// The one pattern every caller of the prompt follows: false means stop
// (Cancel, or Yes and the save failed), true means go on.
bool ConfirmDiscardOrSave(HWND window);

// 0 fine or untitled, 1 gone with its folder, 2 gone from a folder that exists.
int CheckFileStatus();

// Auto-save: timer kAutoSaveTimer on the main window, started only by the
// Settings dialog's OK path; each tick saves a modified document that has a path.
void RestartAutoSaveTimer(HWND window, unsigned minutes);
void OnAutoSaveTimer(HWND window);
