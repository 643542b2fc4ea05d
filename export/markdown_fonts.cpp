#include "export/markdown_fonts.h"

#include "export/markdown_layout.h"
#include "export/markdown_model.h"
#include "settings/settings.h"

HFONT CreateMarkdownFont(HDC dc, const std::wstring& fontName, int pointSize, bool bold, bool italic) {
  return CreatePixelFont(-MulDiv(pointSize, GetDeviceCaps(dc, LOGPIXELSY), 72), fontName, bold, italic);
}

HFONT CreatePixelFont(int height, const std::wstring& fontName, bool bold, bool italic) {
  return CreateFontW(height, 0, 0, 0, bold ? 700 : 400, italic ? 1 : 0, 0, 0, DEFAULT_CHARSET, OUT_OUTLINE_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, 0, fontName.c_str());
}

bool BuildMarkdownLines(HDC dc, const std::wstring& text, int maxWidth, std::vector<MarkdownLine>& lines) {
  std::wstring family;
  int size = 10;
  ResolveProseFont(family, size);
  HFONT current = nullptr;
  HGDIOBJ original = nullptr;
  // Each run's font lives until the next run's is made.
  auto select = [&](HFONT font) {
    HGDIOBJ previous = SelectObject(dc, font);
    if (!original) original = previous;
    if (current) DeleteObject(current);
    current = font;
  };
  MarkdownMeasure measure;
  measure.baseLineHeight = [&] {
    select(CreateMarkdownFont(dc, family, size, false, false));
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    return static_cast<int>(metrics.tmHeight + metrics.tmExternalLeading);
  };
  measure.selectFont = [&](const MarkdownRun& run) {
    select(CreateMarkdownFont(dc, run.fontName, run.pointSize, run.bold != 0, run.italic != 0));
  };
  measure.textWidth = [&](std::wstring_view piece) {
    SIZE extent = {};
    GetTextExtentPoint32W(dc, piece.data(), static_cast<int>(piece.size()), &extent);
    return static_cast<int>(extent.cx);
  };
  bool any = LayOutMarkdownLines(text, family, size, maxWidth, measure, lines);
  if (original) SelectObject(dc, original);
  if (current) DeleteObject(current);
  return any;
}

// The editor's live font decides the prose font; kept here, beside the
// settings, so that the Markdown model itself needs no window.
void ResolveProseFont(std::wstring& fontName, int& pointSize) {
  ProseFontFor(std::wstring(g_fontName), g_fontSize, fontName, pointSize);
}
