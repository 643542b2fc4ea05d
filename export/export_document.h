// The one door to every export: the Export dialog's choice and the context
// menu's Export entries end here, in the save dialog and the writer that the
// format and the document call for.
#pragma once

#include <windows.h>

#include <string>

// Format 0 PDF, 1 HTML, 2 RTF, 3 plain text. False for an unknown format, a
// cancelled save dialog, a declined or steered export, or a failed writer;
// PDF returns true whether it ran or the user was steered to a Viewer.
bool ExportDocument(HWND owner, int formatId);

// The bytes as they are: UTF-8, no byte-order mark, line endings untouched.
bool ExportPlainText(HWND owner, const std::string& text, const std::wstring& path);

// True for a document whose path ends in ".md", in any case.
bool IsMarkdownDocument();
