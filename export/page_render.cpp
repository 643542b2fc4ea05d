#include "export/page_render.h"

#include "Scintilla.h"
#include "base/app_state.h"
#include "export/markdown_fonts.h"
#include "settings/settings.h"

namespace {

constexpr UINT kMeasureFlags = DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX;
constexpr UINT kDrawFlags = DT_WORDBREAK | DT_NOPREFIX;
constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kInk = RGB(0, 0, 0);
constexpr COLORREF kPreviewFooterInk = 0x808080;
constexpr int kPaginationMeasureFrames = 10;  // a line may wrap to ten frames' height while paginating
constexpr int kDrawMeasureLines = 30;         // and to thirty text lines while drawn

// The height DrawTextW gives the line word-wrapped in that width.
int MeasureLine(HDC dc, const std::wstring& line, int width, int height) {
  RECT box = {0, 0, width, height};
  return DrawTextW(dc, line.c_str(), static_cast<int>(line.size()), &box, kMeasureFlags);
}

int TextMetricHeight(HDC dc) {
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  return metrics.tmHeight;
}

}  // namespace

PageMargins SettingsMargins() {
  return {g_settings.marginLeft, g_settings.marginTop, g_settings.marginRight, g_settings.marginBottom};
}

void ComputePreviewGeometry(PageGeometry& geometry) {
  HDC screen = GetDC(nullptr);
  geometry = PreviewGeometry(GetDeviceCaps(screen, LOGPIXELSX), GetDeviceCaps(screen, LOGPIXELSY), SettingsMargins(),
                             g_fontSize);
  ReleaseDC(nullptr, screen);
}

PrinterCaps ReadPrinterCaps(HDC dc) {
  PrinterCaps caps;
  caps.dpiX = GetDeviceCaps(dc, LOGPIXELSX);
  caps.dpiY = GetDeviceCaps(dc, LOGPIXELSY);
  caps.physicalWidth = GetDeviceCaps(dc, PHYSICALWIDTH);
  caps.physicalHeight = GetDeviceCaps(dc, PHYSICALHEIGHT);
  caps.offsetX = GetDeviceCaps(dc, PHYSICALOFFSETX);
  caps.offsetY = GetDeviceCaps(dc, PHYSICALOFFSETY);
  return caps;
}

void ComputePrinterGeometry(HDC dc, PageGeometry& geometry) {
  geometry = PrinterGeometry(ReadPrinterCaps(dc), SettingsMargins(), g_fontSize);
}

bool PaginateOnDc(HDC dc, const std::vector<std::wstring>& lines, const PageGeometry& geometry, PageStarts& starts,
                  const std::function<bool()>& cancelled, const std::function<void(int32_t pages)>& pageOpened) {
  const int tmHeight = TextMetricHeight(dc);
  const int width = geometry.right - geometry.left;
  const int frameHeight = geometry.bottom - geometry.top;
  auto advance = [&](size_t i) {
    const std::wstring& line = lines[i];
    return LineAdvance(line.empty() ? 0 : MeasureLine(dc, line, width, frameHeight * kPaginationMeasureFrames),
                       tmHeight);
  };
  return PaginateLines(lines.size(), frameHeight, advance, starts, cancelled, pageOpened);
}

void DrawPageLines(HDC dc, size_t pageIndex, const PageStarts& starts, const std::vector<std::wstring>& lines,
                   const PageGeometry& geometry, int fontHeight) {
  const int width = geometry.right - geometry.left;
  const int boxHeight = kDrawMeasureLines * fontHeight;
  auto empty = [&](size_t i) { return lines[i].empty(); };
  auto measured = [&](size_t i) { return MeasureLine(dc, lines[i], width, boxHeight); };
  for (const PlacedLine& placed : PlacePageLines(pageIndex, starts, lines.size(), geometry.top, geometry.bottom,
                                                 TextMetricHeight(dc), empty, measured)) {
    if (placed.empty) continue;
    const std::wstring& line = lines[placed.line];
    RECT box = {geometry.left, placed.top, geometry.right, placed.top + boxHeight};
    DrawTextW(dc, line.c_str(), static_cast<int>(line.size()), &box, kDrawFlags);
  }
}

HBITMAP RenderPage(int pageIndex, const PageStarts& pageStarts, const std::vector<std::wstring>& lines,
                   const PageGeometry& geometry, const std::wstring& fontName, int fontSize) {
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, geometry.paperWidth, geometry.paperHeight);
  ReleaseDC(nullptr, screen);
  HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
  RECT sheet = {0, 0, geometry.paperWidth, geometry.paperHeight};
  HBRUSH white = CreateSolidBrush(kPaper);
  FillRect(dc, &sheet, white);
  DeleteObject(white);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kInk);

  const int fontHeight = MulDiv(fontSize, GetDeviceCaps(dc, LOGPIXELSY), 72);
  HFONT textFont = CreateMarkdownFont(dc, fontName, fontSize, false, false);
  HGDIOBJ oldFont = SelectObject(dc, textFont);
  DrawPageLines(dc, static_cast<size_t>(pageIndex), pageStarts, lines, geometry, fontHeight);

  HFONT footerFont = CreatePixelFont(-(fontHeight + 2), fontName, false, false);
  SelectObject(dc, footerFont);
  SetTextColor(dc, kPreviewFooterInk);
  const std::wstring footer = PageFooterText(pageIndex + 1);
  SIZE extent = {};
  GetTextExtentPoint32W(dc, footer.c_str(), static_cast<int>(footer.size()), &extent);
  TextOutW(dc, FooterX(geometry, extent.cx), PreviewFooterY(geometry, extent.cy), footer.c_str(),
           static_cast<int>(footer.size()));

  SelectObject(dc, oldFont);
  DeleteObject(footerFont);
  DeleteObject(textFont);
  SelectObject(dc, oldBitmap);
  DeleteDC(dc);
  return bitmap;
}

std::vector<std::wstring> ReadDocumentLines() {
  const auto count = static_cast<int>(SendEditor(SCI_GETLINECOUNT));
  std::vector<std::wstring> lines;
  lines.reserve(static_cast<size_t>(count));
  std::string buffer;
  for (int i = 0; i < count; ++i) {
    const auto length = static_cast<Sci_PositionCR>(SendEditor(SCI_LINELENGTH, i));
    std::wstring line;
    if (length > 0) {
      buffer.assign(static_cast<size_t>(length) + 2, '\0');
      Sci_TextRange range = {};
      range.chrg.cpMin = static_cast<Sci_PositionCR>(SendEditor(SCI_POSITIONFROMLINE, i));
      range.chrg.cpMax = range.chrg.cpMin + length;
      range.lpstrText = buffer.data();
      SendEditor(SCI_GETTEXTRANGE, 0, reinterpret_cast<LPARAM>(&range));
      const int units = MultiByteToWideChar(CP_UTF8, 0, buffer.data(), static_cast<int>(length), nullptr, 0);
      line.resize(static_cast<size_t>(units));
      if (units > 0) MultiByteToWideChar(CP_UTF8, 0, buffer.data(), static_cast<int>(length), line.data(), units);
      while (!line.empty() && (line.back() == L'\r' || line.back() == L'\n' || line.back() == L'\0')) line.pop_back();
    }
    lines.push_back(std::move(line));
  }
  return lines;
}
