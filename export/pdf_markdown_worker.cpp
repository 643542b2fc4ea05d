// The rendered Markdown pages: the Markdown lines laid out with the owner
// window's measures (the settled behaviour, in the printer's width) and
// drawn on the printer with headings, lists, quotes and rules.
#include "export/pdf_export.h"

#include <memory>

#include "base/messages.h"
#include "export/markdown_fonts.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"

namespace {

int32_t TextWidth(HDC dc, const std::wstring& text) {
  SIZE extent = {};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent);
  return extent.cx;
}

// One text line: its marker, its runs, and under a first-level heading a rule.
void DrawTextLine(HDC dc, const MarkdownLine& line, const std::vector<HFONT>& fonts, HFONT baseFont,
                  const PdfFrame& frame, int32_t dpiX, int32_t y, int32_t height, const ThemeColors& row) {
  const uint32_t markerColour = MapColourForPaper(row.dialogText);
  if (line.type == MarkdownBlockType::ListItem || line.type == MarkdownBlockType::NumberedItem) {
    // On every line of the item: the records don't tell first lines from the rest.
    const std::wstring marker =
        line.type == MarkdownBlockType::ListItem ? std::wstring(L"\u2022") : std::to_wstring(line.number) + L".";
    SelectObject(dc, baseFont);
    SetTextColor(dc, markerColour);
    TextOutW(dc, frame.left, y, marker.c_str(), static_cast<int>(marker.size()));
  } else if (line.type == MarkdownBlockType::Quote) {
    const int32_t x = frame.left + PdfUnits(1, dpiX);
    DrawPenLine(dc, x, y, x, y + height, row.separator, PdfUnits(1, dpiX));
  }
  if (line.type == MarkdownBlockType::Heading1) {
    const int32_t ruleY = y + height + PdfUnits(1, dpiX);
    DrawPenLine(dc, frame.left, ruleY, frame.right, ruleY, row.separator, 1);
  }
  const bool heading = line.type == MarkdownBlockType::Heading1 || line.type == MarkdownBlockType::Heading2 ||
                       line.type == MarkdownBlockType::Heading3;
  int32_t x = frame.left + line.indent;
  for (size_t i = 0; i < line.runs.size(); ++i) {
    const MarkdownRun& run = line.runs[i];
    uint32_t colour = row.editorText;
    if (heading)
      colour = row.dialogText;
    else if (line.type == MarkdownBlockType::Quote || run.code)
      colour = row.mutedText;
    SelectObject(dc, fonts[i]);
    SetTextColor(dc, MapColourForPaper(colour));
    TextOutW(dc, x, y, run.text.c_str(), static_cast<int>(run.text.size()));
    x += TextWidth(dc, run.text);
  }
}

}  // namespace

DWORD WINAPI MarkdownPdfWorker(void* parameter) {
  std::unique_ptr<MarkdownPdfTask> task(static_cast<MarkdownPdfTask*>(parameter));
  PdfExportJob& job = *task->job;
  WaitForSingleObject(job.readyEvent, 5000);
  const HWND dialog = job.dialog.load();
  if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0) {
    task.reset();
    PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 0);
    return 0;
  }
  PostToPdfDialog(dialog, WM_EXPORT_PROGRESS, 0);
  HDC dc = StartPdfDocument(job, L"MarkdownPdfWorker");
  if (!dc) {
    task.reset();
    PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 0);
    return 0;
  }
  std::wstring family;
  int32_t baseSize = 10;
  MarkdownPdfBaseFont(job.fontName, job.fontSize, family, baseSize);
  HFONT baseFont = CreateMarkdownFont(dc, family, baseSize, false, false);
  HFONT footerFont = CreateMarkdownFont(dc, family, baseSize - 2, false, false);
  const PdfFrame frame = PdfFrameOf(dc);
  const int32_t dpiX = GetDeviceCaps(dc, LOGPIXELSX);

  // Measured on the owner window's context, wrapped at the printer's width.
  std::vector<MarkdownLine> lines;
  HDC screen = GetDC(job.owner);
  BuildMarkdownLines(screen, task->text, frame.width, lines);
  ReleaseDC(job.owner, screen);
  task->text.clear();

  const int32_t baseRow = PdfRowHeight(dc, baseFont);
  // Each run's font, made for the line that needs it and deleted after.
  auto makeFonts = [&](const MarkdownLine& line) {
    std::vector<HFONT> fonts;
    for (const MarkdownRun& run : line.runs)
      fonts.push_back(CreateMarkdownFont(dc, run.fontName, run.pointSize, run.bold != 0, run.italic != 0));
    return fonts;
  };
  auto deleteFonts = [](const std::vector<HFONT>& fonts) {
    for (HFONT font : fonts) DeleteObject(font);
  };
  const auto places = PlaceMarkdownPdfLines(lines, frame, dpiX, baseRow, [&](const MarkdownLine& line) {
    int32_t height = baseRow;
    const std::vector<HFONT> fonts = makeFonts(line);
    for (HFONT font : fonts) {
      const int32_t h = PdfRowHeight(dc, font);
      if (h > height) height = h;
    }
    deleteFonts(fonts);
    return height;
  });

  HGDIOBJ originalFont = SelectObject(dc, baseFont);
  SetBkMode(dc, TRANSPARENT);
  const ThemeColors& row = CurrentTheme();
  int32_t page = 1;
  bool pageOpen = WaitForSingleObject(job.cancelEvent, 0) != WAIT_OBJECT_0 && StartPage(dc) > 0;
  for (size_t i = 0; pageOpen && i < lines.size(); ++i) {
    const MarkdownLine& line = lines[i];
    const PdfMarkdownPlace& place = places[i];
    if (place.page != page) {
      DrawPdfFooter(dc, frame, footerFont, page);
      EndPage(dc);
      page = place.page;
      PostToPdfDialog(dialog, WM_EXPORT_PROGRESS, page);
      // A cancel is noticed here only, and goes to the document's end.
      if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0 || StartPage(dc) <= 0) {
        pageOpen = false;
        break;
      }
    }
    if (line.type == MarkdownBlockType::Empty) continue;
    if (line.isRule) {
      const int32_t ruleY = place.y + PdfUnits(2, dpiX);
      DrawPenLine(dc, frame.left, ruleY, frame.right, ruleY, row.separator, 1);
      continue;
    }
    const std::vector<HFONT> fonts = makeFonts(line);
    DrawTextLine(dc, line, fonts, baseFont, frame, dpiX, place.y, place.height, row);
    SelectObject(dc, baseFont);  // a font still selected can't be deleted
    deleteFonts(fonts);
  }
  if (pageOpen) {
    DrawPdfFooter(dc, frame, footerFont, page);
    EndPage(dc);
  }
  SelectObject(dc, originalFont);
  PostToPdfDialog(dialog, WM_PDF_FINAL_STAGE, 0);
  EndDoc(dc);
  DeleteDC(dc);
  DeleteObject(baseFont);
  DeleteObject(footerFont);
  wchar_t text[96];
  swprintf(text, 96, L"[MarkdownPdfWorker] Document ended, %d pages\n", page);
  OutputDebugStringW(text);
  task.reset();
  PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 1);
  return 0;
}
