// The Markdown page from the editor: MD Preview writes it to a temporary
// file and opens it in the browser (or a Viewer when there is none); the
// export writes it where the user said. Either runs under the progress dialog.
#pragma once

#include <windows.h>

#include <string>

// The pacing thread of the Markdown writer, whose parameter is the ExportJob.
DWORD WINAPI MarkdownHtmlProgressThread(LPVOID job);

// An empty outputPath is a preview. True when the page was written.
bool ExportMarkdownHtml(HWND owner, const std::wstring& outputPath);
