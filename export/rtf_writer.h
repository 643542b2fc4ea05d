// The RTF of a document: the editor's font and the lexer's foreground
// colours, bold and italic. Plain data in, bytes out; the file and the
// progress dialog are in rtf_export.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "export/styled_html.h"

// Above this many bytes the RTF is written by a worker behind a dialog.
constexpr size_t kRtfWorkerThreshold = 512000;
constexpr size_t kRtfChunkBytes = 262144;

// Colours light on a dark editor, darkened for a white page: brightness
// (0.299 r + 0.587 g + 0.114 b, truncated) above 180 takes each channel to
// 35 per cent. Unchanged otherwise.
uint32_t DarkenForPaper(uint32_t colour);

// Distinct foregrounds in order of first appearance over styles 0..127, and
// each style's 1-based index into them (\cf counts from the empty entry).
struct RtfColours {
  std::vector<uint32_t> table;
  int index[128] = {};
};
RtfColours BuildRtfColours(const uint32_t (&fore)[128]);

struct RtfDocument {
  std::string text;      // UTF-8
  std::string styles;    // one style byte per byte of text
  std::string fontName;  // UTF-8, cut at 128 bytes
  int fontSize = 11;     // points
  StyleLooks looks;      // foregrounds already adjusted for the theme
};

// One byte run of text escaped: backslash and braces escaped, CR dropped,
// LF a paragraph, tab \tab, UTF-8 as \uN? (signed 16 bits) or "?" beyond
// the basic plane.
void AppendRtfEscaped(std::string& out, const char* bytes, size_t count);

std::string BuildRtf(const RtfDocument& document);

// How far the worker's bar stands after `written` of `total` bytes: 5 to 93.
int RtfWritePercent(size_t written, size_t total);
