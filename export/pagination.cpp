#include "export/pagination.h"

#include <cwchar>

namespace {

constexpr double kTwipsPerHundredthMm = 1440.0 / 2540.0;
constexpr int32_t kTwipsPerInch = 1440;
constexpr int32_t kPointsPerInch = 72;
// A4 in inches: 11,906 by 16,838 twips.
constexpr double kA4WidthInches = 8.268055555555556;
constexpr double kA4HeightInches = 11.693055555555556;
constexpr int32_t kLineGap = 2;  // below every line, drawn or paginated
constexpr size_t kCancelCheckEvery = 50;

}  // namespace

int32_t MulDivRounded(int32_t a, int32_t b, int32_t c) {
  if (c == 0) return -1;
  long long product = static_cast<long long>(a) * b;
  long long divisor = c;
  if (divisor < 0) {
    product = -product;
    divisor = -divisor;
  }
  long long result = product >= 0 ? (product + divisor / 2) / divisor : (product - divisor / 2) / divisor;
  if (result > INT32_MAX || result < -INT32_MAX) return -1;
  return static_cast<int32_t>(result);
}

int32_t MarginTwips(int32_t hundredthsMm) { return static_cast<int32_t>(hundredthsMm * kTwipsPerHundredthMm); }

int32_t MarginToDevice(int32_t hundredthsMm, int32_t dpi) {
  return MulDivRounded(MarginTwips(hundredthsMm), dpi, kTwipsPerInch);
}

int32_t FooterReserve(int32_t fontSize, int32_t dpiY) { return MulDivRounded(fontSize * 2, dpiY, kPointsPerInch); }

PageGeometry PreviewGeometry(int32_t dpiX, int32_t dpiY, const PageMargins& margins, int32_t fontSize) {
  PageGeometry g;
  g.paperWidth = static_cast<int32_t>(dpiX * kA4WidthInches);
  g.paperHeight = static_cast<int32_t>(dpiY * kA4HeightInches);
  g.left = MarginToDevice(margins.left, dpiX);
  g.top = MarginToDevice(margins.top, dpiY);
  g.right = g.paperWidth - MarginToDevice(margins.right, dpiX);
  g.bottom = g.paperHeight - FooterReserve(fontSize, dpiY) - MarginToDevice(margins.bottom, dpiY);
  return g;
}

PageGeometry PrinterGeometry(const PrinterCaps& caps, const PageMargins& margins, int32_t fontSize) {
  PageGeometry g;
  g.paperWidth = caps.physicalWidth;
  g.paperHeight = caps.physicalHeight;
  g.left = caps.offsetX + MarginToDevice(margins.left, caps.dpiX);
  g.top = caps.offsetY + MarginToDevice(margins.top, caps.dpiY);
  g.right = caps.physicalWidth - caps.offsetX - MarginToDevice(margins.right, caps.dpiX);
  g.bottom = caps.physicalHeight - FooterReserve(fontSize, caps.dpiY) - caps.offsetY -
             MarginToDevice(margins.bottom, caps.dpiY);
  return g;
}

int32_t LineHeight(int32_t measured, int32_t tmHeight) { return measured != 0 ? measured : tmHeight; }

int32_t LineAdvance(int32_t measured, int32_t tmHeight) { return LineHeight(measured, tmHeight) + kLineGap; }

std::vector<std::wstring> SplitPageLines(const std::wstring& text, int32_t reserve) {
  std::vector<std::wstring> lines;
  if (reserve > 0) lines.reserve(static_cast<size_t>(reserve));
  std::wstring current;
  current.reserve(256);
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    if (c == L'\r' || c == L'\n') {
      if (c == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') ++i;
      lines.push_back(std::move(current));
      current.clear();
      current.reserve(256);
    } else {
      current.push_back(c);
    }
  }
  if (!current.empty()) lines.push_back(std::move(current));
  return lines;
}

bool IsCancelCheckLine(size_t line) { return line % kCancelCheckEvery == 0; }

bool PaginateLines(size_t lineCount, int32_t frameHeight, const std::function<int32_t(size_t)>& advance,
                   PageStarts& starts, const std::function<bool()>& cancelled,
                   const std::function<void(int32_t pages)>& pageOpened) {
  starts.assign(1, 0);
  int32_t pages = 1;
  long long used = 0;
  for (size_t i = 0; i < lineCount; ++i) {
    if (cancelled && IsCancelCheckLine(i) && cancelled()) return false;
    used += advance(i);
    if (used > frameHeight && i + 1 < lineCount) {
      starts.push_back(static_cast<int32_t>(i + 1));
      ++pages;
      if (pageOpened) pageOpened(pages);
      used = 0;
    }
  }
  return true;
}

LineRange PageLines(size_t pageIndex, const PageStarts& starts, size_t lineCount) {
  LineRange range;
  if (pageIndex >= starts.size()) {
    range.first = range.end = static_cast<int32_t>(lineCount);
    return range;
  }
  range.first = starts[pageIndex];
  range.end = pageIndex + 1 < starts.size() ? starts[pageIndex + 1] : static_cast<int32_t>(lineCount);
  if (range.end > static_cast<int32_t>(lineCount)) range.end = static_cast<int32_t>(lineCount);
  if (range.first > range.end) range.first = range.end;
  return range;
}

std::vector<PlacedLine> PlacePageLines(size_t pageIndex, const PageStarts& starts, size_t lineCount, int32_t top,
                                       int32_t frameBottom, int32_t tmHeight,
                                       const std::function<bool(size_t)>& empty,
                                       const std::function<int32_t(size_t)>& measured) {
  std::vector<PlacedLine> placed;
  const LineRange range = PageLines(pageIndex, starts, lineCount);
  int32_t y = top;
  for (int32_t i = range.first; i < range.end; ++i) {
    PlacedLine line;
    line.line = i;
    line.top = y;
    line.empty = empty(static_cast<size_t>(i));
    if (line.empty) {
      line.bottom = y + tmHeight;
    } else {
      line.bottom = y + LineHeight(measured(static_cast<size_t>(i)), tmHeight);
      if (line.bottom > frameBottom) break;  // undrawn, and the page ends here
    }
    placed.push_back(line);
    y = line.bottom + kLineGap;
  }
  return placed;
}

std::wstring PageFooterText(int32_t pageNumber) {
  wchar_t text[32];
  swprintf(text, 32, L"- %d -", pageNumber);
  return text;
}

int32_t FooterX(const PageGeometry& geometry, int32_t textWidth) {
  return geometry.left + (geometry.right - geometry.left - textWidth) / 2;
}

int32_t PreviewFooterY(const PageGeometry& geometry, int32_t textHeight) {
  return geometry.bottom + (geometry.paperHeight - geometry.bottom - textHeight) / 2;
}

int32_t PrinterFooterY(const PageGeometry& geometry, const PrinterCaps& caps, int32_t textHeight) {
  return geometry.bottom + (caps.physicalHeight - textHeight - geometry.bottom - caps.offsetY) / 2;
}

std::wstring PaginationStatusText(int32_t pages, int32_t lineCount) {
  wchar_t text[96];
  if (lineCount < 1)
    swprintf(text, 96, L"Paginating... page %d", pages);
  else
    swprintf(text, 96, L"Paginating... page %d  (%d lines)", pages, lineCount);
  return text;
}
