// The one document of the process.
#pragma once

#include <windows.h>

#include <string>

enum TextEncoding { kUtf8Bom = 0, kUtf8 = 1, kUtf16Le = 2, kUtf16Be = 3, kAnsi = 4 };

extern std::wstring g_filePath;   // empty for an untitled document
extern HANDLE g_fileHandle;       // stays open from a load to the next load or exit
extern TextEncoding g_encoding;
extern bool g_modified;

// Brings the file at path into the editor; true when the text is there.
bool FileLoad(HWND window, const wchar_t* path);
