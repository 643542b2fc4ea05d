// Copies of the editor's styled view for the code exports, taken on the
// main thread before any worker starts: a worker never reads the editor.
#pragma once

#include <string>

#include "export/styled_html.h"

// The style byte of each byte of the editor's text, over its whole length.
std::string EditorStyleBytes();

// Foreground, background, bold and italic of styles 0 to 127.
StyleLooks EditorStyleLooks();

// The editor's font family as UTF-8.
std::string EditorFontNameUtf8();

// The last path component of the document, or "Untitled", as UTF-8.
std::string DocumentDisplayNameUtf8();
