// Texts of the status bar's six parts, worked out from plain values.
#pragma once

#include <string>

// "  Ln %d, Col %d": Ln counts display rows on screen, like the strip.
std::wstring StatusLineColumnText(int firstVisibleLine, int caretY, int textHeight, int column);
// "  Sel: %d", or empty when nothing is selected.
std::wstring StatusSelectionText(bool hasSelection, int characters);
// "  UTF-8 BOM", "  UTF-8", "  UTF-16 LE", "  UTF-16 BE", "  ANSI"; unknown shows UTF-8.
std::wstring StatusEncodingText(int encoding);
// "  CRLF", "  CR", "  LF", anything else "  ?".
std::wstring StatusLineEndingText(int eolMode);
// "  %d%%" of zoom * 10 + 100.
std::wstring StatusZoomText(int zoom);
// "  Consolas 11pt", then " Bold", " Italic" or " Bold Italic".
std::wstring StatusFontText(const std::wstring& fontName, int fontSize, bool bold, bool italic);
