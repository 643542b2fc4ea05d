#include "export/pdf_layout.h"

#include <utility>

#include "export/export_formats.h"
#include "export/pagination.h"
#include "export/progress_text.h"

namespace {

// What SCI_GETLEXER answers without a lexer: 0 when none was ever set (plain
// text here), SCLEX_NULL when the null lexer was.
constexpr int kNoLexerSet = 0;
constexpr int kNullLexer = 1;

}  // namespace

uint32_t MapColourForPaper(uint32_t colour) {
  const uint32_t red = colour & 0xFF, green = (colour >> 8) & 0xFF, blue = (colour >> 16) & 0xFF;
  const uint32_t brightness = (red * 299 + green * 587 + blue * 114) / 1000;
  if (brightness >= 181) {
    // Single precision, truncated: 200 becomes 90, where double would give 89.
    auto darken = [](uint32_t channel) {
      const float scaled = static_cast<float>(channel) * 0.45f;
      return static_cast<uint32_t>(scaled);
    };
    return darken(red) | (darken(green) << 8) | (darken(blue) << 16);
  }
  if (brightness < 20) return 0;
  return colour;
}

int32_t PdfUnits(int32_t twentyFifths, int32_t dpiX) { return MulDivRounded(twentyFifths, dpiX, 25); }

PdfFrame ComputePdfFrame(int32_t dpiX, int32_t physicalWidth, int32_t physicalHeight, int32_t offsetX,
                         int32_t offsetY) {
  PdfFrame frame;
  frame.margin = PdfUnits(20, dpiX);
  frame.footerZone = PdfUnits(6, dpiX);
  frame.footerGap = PdfUnits(4, dpiX);
  frame.left = frame.margin + offsetX;
  frame.right = physicalWidth - frame.margin - offsetX;
  frame.width = frame.right - frame.left;
  frame.top = frame.margin + offsetY;
  frame.footerLine = physicalHeight - frame.margin - offsetY - frame.footerZone;
  frame.textLimit = frame.footerLine - frame.footerGap;
  return frame;
}

std::wstring PdfFooterText(int32_t page) { return L"- " + std::to_wstring(page) + L" -"; }

int32_t PdfFooterX(const PdfFrame& frame, int32_t textWidth) { return frame.left + (frame.width - textWidth) / 2; }

bool PdfRowOverflows(int32_t y, int32_t height, int32_t textLimit) {
  return static_cast<int64_t>(y) + height > textLimit;
}

namespace {

bool SameLook(const PdfRun& a, const PdfRun& b) {
  return a.colour == b.colour && a.bold == b.bold && a.italic == b.italic;
}

}  // namespace

std::vector<PdfLine> WrapPdfLine(const PdfLine& line, int32_t frameWidth, const PdfMeasure& measure) {
  std::vector<PdfLine> rows;
  PdfLine row;
  int32_t x = 0;
  for (const PdfRun& run : line) {
    if (run.text.empty()) continue;
    measure.selectFont(run);
    std::wstring_view rest = run.text;
    while (!rest.empty()) {
      const size_t space = rest.find(L' ');
      const size_t length = space == std::wstring_view::npos ? rest.size() : space + 1;
      const std::wstring_view piece = rest.substr(0, length);
      rest.remove_prefix(length);
      const int32_t width = measure.textWidth(piece);
      PdfRun segment{std::wstring(piece), run.colour, run.bold, run.italic};
      if (static_cast<int64_t>(x) + width > frameWidth && x != 0) {
        rows.push_back(std::move(row));
        row = PdfLine{std::move(segment)};
        x = width;
      } else if (!row.empty() && SameLook(row.back(), run)) {
        row.back().text.append(piece);
        x += width;
      } else {
        row.push_back(std::move(segment));
        x += width;
      }
    }
  }
  // An empty line is one empty row; otherwise a row with content closes.
  if (!row.empty() || rows.empty()) rows.push_back(std::move(row));
  return rows;
}

PdfStyleTable BuildPdfStyleTable(int lexer, const StyleLooks& looks) {
  PdfStyleTable table;
  if (lexer == kNoLexerSet || lexer == kNullLexer) return table;
  for (int style = 0; style < 128; ++style) {
    table.colour[style] = style == 32 ? 0 : MapColourForPaper(looks.fore[style]);
    table.bold[style] = looks.bold[style];
    table.italic[style] = looks.italic[style];
  }
  return table;
}

int Utf8SequenceLength(unsigned char first) {
  if ((first & 0xE0) == 0xC0) return 2;
  if ((first & 0xF0) == 0xE0) return 3;
  if ((first & 0xF8) == 0xF0) return 4;
  return 1;
}

PdfLine PdfLineFromStyledBytes(const char* pairs, size_t byteCount, const PdfStyleTable& styles,
                               const Utf8Converter& convert) {
  PdfLine line;
  PdfRun run;
  bool started = false;
  auto close = [&] {
    if (!run.text.empty()) line.push_back(run);
    run.text.clear();
  };
  size_t i = 0;
  while (i < byteCount) {
    const auto byte = static_cast<unsigned char>(pairs[i * 2]);
    if (byte == '\r' || byte == '\n') {
      ++i;
      continue;
    }
    const int style = static_cast<unsigned char>(pairs[i * 2 + 1]) & 127;
    const uint32_t colour = styles.colour[style];
    const bool bold = styles.bold[style], italic = styles.italic[style];
    if (!started || colour != run.colour || bold != run.bold || italic != run.italic) {
      close();
      run.colour = colour;
      run.bold = bold;
      run.italic = italic;
      started = true;
    }
    size_t count = static_cast<size_t>(Utf8SequenceLength(byte));
    if (i + count > byteCount) count = 1;
    char sequence[4];
    for (size_t k = 0; k < count; ++k) sequence[k] = pairs[(i + k) * 2];
    const std::wstring wide = convert(sequence, static_cast<int>(count));
    run.text += wide.empty() ? std::wstring(L"?") : wide;
    i += count;
  }
  close();
  return line;
}

PdfBatchRange NextPdfBatch(int32_t nextLine, int32_t totalLines) {
  PdfBatchRange range;
  range.end = nextLine + kPdfBatchLines;
  if (range.end >= totalLines) {
    range.end = totalLines;
    range.last = true;
  }
  return range;
}

void FillPdfBatchLines(int32_t& nextLine, int32_t totalLines, std::vector<PdfLine>& batch, bool& lastBatch,
                       const PdfStyleTable& styles, const StyledLineReader& readLine, const Utf8Converter& convert) {
  batch.clear();
  lastBatch = false;
  const PdfBatchRange range = NextPdfBatch(nextLine, totalLines);
  lastBatch = range.last;
  for (int32_t line = nextLine; line < range.end; ++line) {
    const std::string pairs = readLine(line);
    if (pairs.size() < 2)
      batch.emplace_back();
    else
      batch.push_back(PdfLineFromStyledBytes(pairs.data(), pairs.size() / 2, styles, convert));
  }
  nextLine = range.end;
}

int32_t EstimatePdfPages(int32_t lines) { return static_cast<int32_t>((static_cast<int64_t>(lines) + 54) / 55); }

std::wstring PdfSizeQuestion(int64_t bytes, int32_t lines) {
  const std::wstring pages = std::to_wstring(EstimatePdfPages(lines));
  if (bytes > 10000000)
    return L"This file is very large (~" + std::to_wstring(bytes / 1000000) + L" MB, ~" + std::to_wstring(lines) +
           L" lines).\nPDF export will create approximately " + pages +
           L" pages\nand may take several minutes.\n\nFor large files, HTML export is faster and\n"
           L"produces a better result for on-screen viewing.\n\nContinue with PDF export anyway?";
  if (bytes > 1000000)
    return L"This file will create approximately " + pages + L" pages.\nExport may take a while.\n\nContinue?";
  return std::wstring();
}

std::wstring ProposedPdfName(const std::wstring& path) {
  if (path.empty()) return L"Document";
  return ProposedExportName(path, L"");
}

std::wstring ProposedMarkdownPdfName(const std::wstring& path) { return ProposedExportName(path, L".pdf"); }

std::wstring PdfSuccessText(uint64_t elapsedMs) {
  return L"PDF exported successfully.\n\nExport time:  " + FormatElapsed(elapsedMs);
}

const wchar_t kPdfFinalizingText[] =
    L"Please wait, finalizing PDF file...\nThis may take a while depending on file size.\n"
    L"Click Cancel to discard the export.";

std::wstring PdfPageStatusText(int32_t page) { return L"Exporting page " + std::to_wstring(page) + L"..."; }

void MarkdownPdfBaseFont(const std::wstring& editorFont, int32_t editorSize, std::wstring& family, int32_t& size) {
  int prose = 10;
  ProseFontFor(editorFont, editorSize, family, prose);
  size = editorSize < 1 ? 10 : editorSize;
}

std::vector<PdfMarkdownPlace> PlaceMarkdownPdfLines(const std::vector<MarkdownLine>& lines, const PdfFrame& frame,
                                                    int32_t dpiX, int32_t baseRowHeight,
                                                    const std::function<int32_t(const MarkdownLine&)>& lineHeight) {
  std::vector<PdfMarkdownPlace> places;
  places.reserve(lines.size());
  int32_t page = 1;
  int32_t y = frame.top;
  const int32_t ruleGap = PdfUnits(6, dpiX);
  for (const MarkdownLine& line : lines) {
    PdfMarkdownPlace place;
    if (line.type == MarkdownBlockType::Empty) {
      place = {page, y, baseRowHeight / 2};
    } else if (line.isRule) {
      place = {page, y, ruleGap};
    } else {
      y += line.spaceBefore;
      const int32_t height = lineHeight(line);
      if (PdfRowOverflows(y, height, frame.textLimit)) {
        ++page;
        y = frame.top;
      }
      place = {page, y, height};
    }
    places.push_back(place);
    y += place.height;
  }
  return places;
}
