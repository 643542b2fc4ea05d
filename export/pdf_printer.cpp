#include "export/pdf_export.h"

#include <cwchar>

const wchar_t kPdfPrinterName[] = L"Microsoft Print to PDF";

void PostToPdfDialog(HWND dialog, UINT message, WPARAM wParam) {
  if (dialog && IsWindow(dialog)) PostMessageW(dialog, message, wParam, 0);
}

HDC StartPdfDocument(const PdfExportJob& job, const wchar_t* routine) {
  wchar_t line[160];
  HDC printer = CreateDCW(L"WINSPOOL", kPdfPrinterName, nullptr, nullptr);
  if (!printer) {
    swprintf(line, 160, L"[%ls] No printer \"%ls\"\n", routine, kPdfPrinterName);
    OutputDebugStringW(line);
    return nullptr;
  }
  DOCINFOW info = {};
  info.cbSize = sizeof(info);
  info.lpszDocName = job.docName.c_str();
  info.lpszOutput = job.outputPath.c_str();
  if (StartDocW(printer, &info) <= 0) {
    swprintf(line, 160, L"[%ls] StartDocW failed\n", routine);
    OutputDebugStringW(line);
    DeleteDC(printer);
    return nullptr;
  }
  return printer;
}

PdfFrame PdfFrameOf(HDC printer) {
  return ComputePdfFrame(GetDeviceCaps(printer, LOGPIXELSX), GetDeviceCaps(printer, PHYSICALWIDTH),
                         GetDeviceCaps(printer, PHYSICALHEIGHT), GetDeviceCaps(printer, PHYSICALOFFSETX),
                         GetDeviceCaps(printer, PHYSICALOFFSETY));
}

HFONT CreateCodeFont(HDC printer, const std::wstring& family, int32_t points, bool bold, bool italic) {
  return CreateFontW(-MulDiv(points, GetDeviceCaps(printer, LOGPIXELSY), 72), 0, 0, 0, bold ? 700 : 400,
                     italic ? 1 : 0, 0, 0, DEFAULT_CHARSET, OUT_OUTLINE_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                     FIXED_PITCH, family.c_str());
}

void DrawPdfFooter(HDC printer, const PdfFrame& frame, HFONT footerFont, int32_t page) {
  const std::wstring text = PdfFooterText(page);
  HGDIOBJ old = SelectObject(printer, footerFont);
  SIZE extent = {};
  GetTextExtentPoint32W(printer, text.c_str(), static_cast<int>(text.size()), &extent);
  SetTextColor(printer, 0x808080);
  TextOutW(printer, PdfFooterX(frame, extent.cx), frame.footerLine, text.c_str(), static_cast<int>(text.size()));
  SelectObject(printer, old);
}

int32_t PdfRowHeight(HDC printer, HFONT font) {
  HGDIOBJ old = SelectObject(printer, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(printer, &metrics);
  SelectObject(printer, old);
  return metrics.tmHeight + 2;
}
