// The code renderer: the editor's lines, fetched in batches on the main
// thread, wrapped at word boundaries and drawn in the lexer's colours.
#include "export/pdf_export.h"

#include "base/messages.h"
#include "export/markdown_fonts.h"

namespace {

// The four body fonts by weight and slant.
struct BodyFonts {
  HFONT font[4] = {};
  HFONT For(bool bold, bool italic) const { return font[(bold ? 2 : 0) + (italic ? 1 : 0)]; }
  void Delete() {
    for (HFONT& f : font) {
      if (f) DeleteObject(f);
      f = nullptr;
    }
  }
};

int32_t TextWidth(HDC dc, std::wstring_view text) {
  SIZE extent = {};
  GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &extent);
  return extent.cx;
}

void DrawRow(HDC dc, const PdfLine& row, const BodyFonts& fonts, int32_t x, int32_t y) {
  for (const PdfRun& segment : row) {
    SelectObject(dc, fonts.For(segment.bold, segment.italic));
    SetTextColor(dc, segment.colour);
    TextOutW(dc, x, y, segment.text.c_str(), static_cast<int>(segment.text.size()));
    x += TextWidth(dc, segment.text);
  }
}

enum class Ending { kFinished, kAbandoned };

}  // namespace

DWORD WINAPI CodePdfWorker(void* parameter) {
  auto& job = *static_cast<PdfExportJob*>(parameter);
  WaitForSingleObject(job.readyEvent, 5000);
  const HWND dialog = job.dialog.load();
  HDC dc = StartPdfDocument(job, L"CodePdfWorker");
  if (!dc) {
    PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 0);
    return 0;
  }
  BodyFonts fonts;
  for (int i = 0; i < 4; ++i) fonts.font[i] = CreateCodeFont(dc, job.fontName, job.fontSize, i >= 2, i % 2);
  const int32_t rowHeight = PdfRowHeight(dc, fonts.font[0]);
  HFONT footerFont = CreateMarkdownFont(dc, job.fontName, job.fontSize - 2, false, false);
  const PdfFrame frame = PdfFrameOf(dc);
  HGDIOBJ originalFont = SelectObject(dc, fonts.font[0]);
  SetBkMode(dc, TRANSPARENT);

  PdfMeasure measure;
  measure.selectFont = [&](const PdfRun& run) { SelectObject(dc, fonts.For(run.bold, run.italic)); };
  measure.textWidth = [&](std::wstring_view piece) { return TextWidth(dc, piece); };

  int32_t page = 1;
  int32_t y = frame.top;
  Ending ending = Ending::kFinished;
  bool pageOpen = StartPage(dc) > 0;
  while (pageOpen) {
    if (!IsWindow(dialog)) {
      ending = Ending::kAbandoned;
      break;
    }
    PostToPdfDialog(dialog, WM_PDF_BATCH_REQUEST, 0);
    const HANDLE waits[2] = {job.batchReadyEvent, job.cancelEvent};
    if (WaitForMultipleObjects(2, waits, FALSE, 30000) != WAIT_OBJECT_0) {
      ending = Ending::kAbandoned;
      break;
    }
    std::vector<PdfLine> batch = std::move(job.batch);
    job.batch.clear();
    const bool last = job.lastBatch != 0;
    for (const PdfLine& line : batch) {
      if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0) {
        ending = Ending::kAbandoned;
        break;
      }
      for (const PdfLine& row : WrapPdfLine(line, frame.width, measure)) {
        if (PdfRowOverflows(y, rowHeight, frame.textLimit)) {
          DrawPdfFooter(dc, frame, footerFont, page);
          EndPage(dc);
          PostToPdfDialog(dialog, WM_EXPORT_PROGRESS, page);
          ++page;
          // A page that can't start ends the job as if it were finished.
          if (StartPage(dc) <= 0) {
            pageOpen = false;
            break;
          }
          y = frame.top;
        }
        DrawRow(dc, row, fonts, frame.left, y);
        y += rowHeight;
      }
      if (!pageOpen) break;
    }
    if (ending == Ending::kAbandoned || !pageOpen) break;
    if (last) {
      DrawPdfFooter(dc, frame, footerFont, page);
      EndPage(dc);
      PostToPdfDialog(dialog, WM_EXPORT_PROGRESS, page);
      break;
    }
    if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0) {
      ending = Ending::kAbandoned;
      break;
    }
  }
  SelectObject(dc, originalFont);
  wchar_t line[96];
  if (ending == Ending::kAbandoned) {
    AbortDoc(dc);
    DeleteDC(dc);
    fonts.Delete();
    DeleteObject(footerFont);
    DeleteFileW(job.outputPath.c_str());
    OutputDebugStringW(L"[CodePdfWorker] Export abandoned\n");
    PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 0);
    return 0;
  }
  PostToPdfDialog(dialog, WM_PDF_FINAL_STAGE, 0);
  EndDoc(dc);
  DeleteDC(dc);
  fonts.Delete();
  DeleteObject(footerFont);
  swprintf(line, 96, L"[CodePdfWorker] Document ended, %d pages\n", page);
  OutputDebugStringW(line);
  // The dialog frees the job on this message: nothing of it is read after.
  PostToPdfDialog(dialog, WM_PDF_EXPORT_FINISHED, 1);
  return 0;
}
