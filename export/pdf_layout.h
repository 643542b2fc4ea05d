// The arithmetic and texts of PDF export, as plain functions over plain
// data: colours for white paper, the page frame, wrapping a code line into
// rows, the batches read from the editor, and the Markdown pages' vertical
// layout. What a font measures comes through callbacks, which GDI answers
// in the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "export/markdown_model.h"
#include "export/styled_html.h"

// Colours for a dark screen don't work on white: bright ones are darkened
// to 45 per cent, very dark ones become black (0x00BBGGRR in and out).
uint32_t MapColourForPaper(uint32_t colour);

// The page in printer units: fixed measures of 1/25 inch from the horizontal
// resolution; the settings' page margins play no part.
struct PdfFrame {
  int32_t margin = 0;      // 20/25 inch, on all four sides
  int32_t footerZone = 0;  // 6/25 inch
  int32_t footerGap = 0;   // 4/25 inch
  int32_t left = 0;
  int32_t right = 0;
  int32_t width = 0;       // right - left
  int32_t top = 0;
  int32_t footerLine = 0;  // where the footer stands
  int32_t textLimit = 0;   // no row reaches below this
};

// n/25 inch at this resolution, as the platform's MulDiv(n, dpi, 25) gives
// it: rounded half away from zero.
int32_t PdfUnits(int32_t twentyFifths, int32_t dpiX);

PdfFrame ComputePdfFrame(int32_t dpiX, int32_t physicalWidth, int32_t physicalHeight, int32_t offsetX,
                         int32_t offsetY);

// "- 3 -", centred in the frame.
std::wstring PdfFooterText(int32_t page);
int32_t PdfFooterX(const PdfFrame& frame, int32_t textWidth);

// A row at y of this height crosses the text limit: the page turns first.
bool PdfRowOverflows(int32_t y, int32_t height, int32_t textLimit);

struct PdfRun {
  std::wstring text;
  uint32_t colour = 0;
  bool bold = false;
  bool italic = false;
};

// One document line, possibly empty; after wrapping, one row.
using PdfLine = std::vector<PdfRun>;

struct PdfMeasure {
  std::function<void(const PdfRun&)> selectFont;       // the run's font, until the next call
  std::function<int32_t(std::wstring_view)> textWidth;  // a piece's width in the selected font
};

// Wraps at word boundaries into rows of at most frameWidth: pieces run up to
// and including the next space; a piece wider than a row stands alone. An
// empty line gives one empty row.
std::vector<PdfLine> WrapPdfLine(const PdfLine& line, int32_t frameWidth, const PdfMeasure& measure);

// Paper colour, weight and slant of each editor style.
struct PdfStyleTable {
  uint32_t colour[128] = {};
  bool bold[128] = {};
  bool italic[128] = {};
};

// From the editor's styles: foregrounds through MapColourForPaper, the
// default style (32) black; with no lexer every style black, upright and of
// normal weight. Plain text has no lexer set at all, which the editor answers
// with 0 rather than SCLEX_NULL (1): both count as none.
PdfStyleTable BuildPdfStyleTable(int lexer, const StyleLooks& looks);

// The bytes of one UTF-8 sequence to UTF-16; empty when they don't convert.
using Utf8Converter = std::function<std::wstring(const char* bytes, int count)>;

// The length of a UTF-8 sequence from its first byte: 2 for 110xxxxx, 3 for
// 1110xxxx, 4 for 11110xxx, else 1.
int Utf8SequenceLength(unsigned char first);

// One line from the editor's (character, style) pairs: CR and LF skipped,
// styles masked to 127, a new run wherever colour, weight or slant change,
// "?" for a sequence that doesn't convert.
PdfLine PdfLineFromStyledBytes(const char* pairs, size_t byteCount, const PdfStyleTable& styles,
                               const Utf8Converter& convert);

constexpr int32_t kPdfBatchLines = 300;

// The lines of one batch: from nextLine up to 300 on, the last batch ending
// at totalLines.
struct PdfBatchRange {
  int32_t end = 0;
  bool last = false;
};
PdfBatchRange NextPdfBatch(int32_t nextLine, int32_t totalLines);

// The pairs of a document line (twice its byte length), empty for an empty line.
using StyledLineReader = std::function<std::string(int32_t line)>;

// Empties batch and fills it with the next range, moving nextLine on.
void FillPdfBatchLines(int32_t& nextLine, int32_t totalLines, std::vector<PdfLine>& batch, bool& lastBatch,
                       const PdfStyleTable& styles, const StyledLineReader& readLine, const Utf8Converter& convert);

// ExportPdf's page estimate: 55 lines a page.
int32_t EstimatePdfPages(int32_t lines);

// The question before a long PDF export: over 10,000,000 bytes the long one,
// over 1,000,000 the short one, else empty.
std::wstring PdfSizeQuestion(int64_t bytes, int32_t lines);

// The save dialog's proposals: a code document's display name (or
// "Document") without its extension; a Markdown document's with ".pdf".
std::wstring ProposedPdfName(const std::wstring& path);
std::wstring ProposedMarkdownPdfName(const std::wstring& path);

// The box after a finished export.
std::wstring PdfSuccessText(uint64_t elapsedMs);

// The final stage's status line.
extern const wchar_t kPdfFinalizingText[];

// "Exporting page 3..."
std::wstring PdfPageStatusText(int32_t page);

// The Markdown pages' family and size: a programmer's typeface gives way to
// "Segoe UI" as in the prose font, but the size stays the editor's (10 below 1).
void MarkdownPdfBaseFont(const std::wstring& editorFont, int32_t editorSize, std::wstring& family, int32_t& size);

// Where each Markdown line stands on the pages.
struct PdfMarkdownPlace {
  int32_t page = 1;    // counted from 1
  int32_t y = 0;       // top of the line
  int32_t height = 0;  // the line's height; for a rule, the gap it takes
};

// The vertical layout of the Markdown pages: empty lines take half the base
// row, rules 6/25 inch, text lines their spaceBefore and then their tallest
// font's row; a text line that would cross the text limit opens a page.
// lineHeight gives a text line's height (tmHeight + 2 of its tallest font).
std::vector<PdfMarkdownPlace> PlaceMarkdownPdfLines(const std::vector<MarkdownLine>& lines, const PdfFrame& frame,
                                                    int32_t dpiX, int32_t baseRowHeight,
                                                    const std::function<int32_t(const MarkdownLine&)>& lineHeight);
