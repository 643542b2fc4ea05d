// The one document of the process.
#pragma once

#include <windows.h>

#include <string>

#include "document/encoding.h"

extern std::wstring g_filePath;   // empty for an untitled document
extern HANDLE g_fileHandle;       // stays open from a load to the next load or exit
extern TextEncoding g_encoding;
extern bool g_modified;

// Brings the file at path into the editor; true when the text is there. The
// caller then clears g_modified and refreshes title, status and recent files.
bool FileLoad(HWND window, const wchar_t* path);

// Reports a failed open by its error code; a sharing violation says nothing.
void ShowFileOpenError(HWND window, DWORD errorCode, const wchar_t* path);
