// The HTML export of code: styles copied from the editor here on the main
// thread, the page built by a worker under the export progress dialog and
// written only once it is whole, so a cancel leaves no file.
#pragma once

#include <windows.h>

#include <string>

// `text` is the editor's UTF-8 text. True when the file was written.
bool ExportStyledHtml(HWND owner, const std::string& text, const std::wstring& outputPath);

// The worker; its parameter is the StyledHtmlJob.
DWORD WINAPI StyledHtmlWorker(LPVOID job);
