#include "export/print_document.h"

#include <commdlg.h>

#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/path_name.h"
#include "document/document.h"
#include "export/markdown_fonts.h"
#include "export/page_render.h"
#include "presentation/message_box.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kTitle[] = L"Tavro - Print";
constexpr COLORREF kFooterInk = 0x646464;

// The name the spooler shows: the file's last path component.
std::wstring PrintJobName() {
  return g_filePath.empty() ? L"Tavro Document" : FileNameOf(g_filePath);
}

void PrintPages(HDC dc, const PageStarts& starts, const std::vector<std::wstring>& lines, const PageGeometry& geometry,
                const PrinterCaps& caps, HFONT textFont, HFONT footerFont, int fontHeight) {
  SetBkMode(dc, TRANSPARENT);
  for (size_t page = 0; page < starts.size(); ++page) {
    if (StartPage(dc) <= 0) break;
    SelectObject(dc, textFont);
    SetTextColor(dc, RGB(0, 0, 0));
    DrawPageLines(dc, page, starts, lines, geometry, fontHeight);
    SelectObject(dc, footerFont);
    SetTextColor(dc, kFooterInk);
    const std::wstring footer = PageFooterText(static_cast<int32_t>(page) + 1);
    SIZE extent = {};
    GetTextExtentPoint32W(dc, footer.c_str(), static_cast<int>(footer.size()), &extent);
    TextOutW(dc, FooterX(geometry, extent.cx), PrinterFooterY(geometry, caps, extent.cy), footer.c_str(),
             static_cast<int>(footer.size()));
    EndPage(dc);
  }
}

}  // namespace

void PrintDocument(HWND owner) {
  if (SendEditor(SCI_GETLENGTH) == 0) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"The document is empty. Nothing to print.");
    return;
  }
  PRINTDLGW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = owner;
  dialog.Flags = PD_RETURNDC | PD_NOPAGENUMS;
  dialog.nFromPage = dialog.nToPage = dialog.nMinPage = dialog.nMaxPage = 1;
  dialog.nCopies = 1;
  const bool chosen = PrintDlgW(&dialog) != FALSE;
  auto freeHandles = [&] {
    if (dialog.hDevMode) GlobalFree(dialog.hDevMode);
    if (dialog.hDevNames) GlobalFree(dialog.hDevNames);
  };
  if (!chosen || !dialog.hDC) {
    const DWORD error = CommDlgExtendedError();
    OutputDebugStringW(error ? (L"[PrintDocument] Dialog failed, error " + std::to_wstring(error) + L"\n").c_str()
                             : L"[PrintDocument] Cancelled\n");
    if (dialog.hDC) DeleteDC(dialog.hDC);
    freeHandles();
    return;
  }
  HDC dc = dialog.hDC;
  PageGeometry geometry;
  ComputePrinterGeometry(dc, geometry);
  const PrinterCaps caps = ReadPrinterCaps(dc);
  const int fontHeight = MulDiv(g_fontSize, caps.dpiY, 72);
  HFONT textFont = CreateMarkdownFont(dc, g_fontName, g_fontSize, false, false);
  HFONT footerFont = CreatePixelFont(-(fontHeight + 2), g_fontName, false, false);
  HGDIOBJ oldFont = SelectObject(dc, textFont);

  const std::vector<std::wstring> lines = ReadDocumentLines();
  PageStarts starts;
  PaginateOnDc(dc, lines, geometry, starts);

  const std::wstring name = PrintJobName();
  DOCINFOW info = {};
  info.cbSize = sizeof(info);
  info.lpszDocName = name.c_str();
  if (StartDocW(dc, &info) <= 0) {
    SelectObject(dc, oldFont);
    DeleteDC(dc);
    DeleteObject(textFont);
    DeleteObject(footerFont);
    freeHandles();
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to start print job.\nCheck printer and try again.");
    return;
  }
  PrintPages(dc, starts, lines, geometry, caps, textFont, footerFont, fontHeight);
  EndDoc(dc);
  SelectObject(dc, oldFont);
  DeleteDC(dc);
  DeleteObject(textFont);
  DeleteObject(footerFont);
  freeHandles();
  OutputDebugStringW((L"[PrintDocument] Printed " + std::to_wstring(starts.size()) + L" page(s) of " + name + L"\n").c_str());
}
