// The Markdown layout measured with GDI on a device context: the fonts of
// the runs, as the PDF pages make theirs.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "export/markdown_model.h"

HFONT CreateMarkdownFont(HDC dc, const std::wstring& fontName, int pointSize, bool bold, bool italic);
// The same font at a character height in pixels (the height CreateFontW takes).
HFONT CreatePixelFont(int height, const std::wstring& fontName, bool bold, bool italic);

// The live prose font, laid out at maxWidth in dc's units; dc only measures.
bool BuildMarkdownLines(HDC dc, const std::wstring& text, int maxWidth, std::vector<MarkdownLine>& lines);
