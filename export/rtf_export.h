// The RTF export: built in memory on the main thread from the editor's
// styles; a small result is written at once, a large one by a worker in
// chunks behind the RTF progress dialog, which removes the file on cancel.
#pragma once

#include <windows.h>

#include <string>

// `text` is the editor's UTF-8 text, `path` the chosen file. True when the
// file was written.
bool ExportRtf(HWND owner, const std::string& text, const std::wstring& path);

// The chunk writer; its parameter is the RtfWriteJob.
DWORD WINAPI RtfWriteWorker(LPVOID job);
