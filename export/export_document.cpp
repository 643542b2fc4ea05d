#include "export/export_document.h"

#include <commdlg.h>

#include <cstdio>

#include "Scintilla.h"
#include "base/app_state.h"
#include "document/document.h"
#include "export/export_formats.h"
#include "export/markdown_export.h"
#include "export/pdf_export.h"
#include "export/rtf_export.h"
#include "export/styled_html_export.h"
#include "export/viewer_handoff.h"
#include "presentation/message_box.h"

namespace {

constexpr wchar_t kTitle[] = L"Tavro - Export";
constexpr DWORD kPathChars = 260;

// The save step of every format but PDF; empty when the user cancels.
std::wstring AskExportPath(HWND owner, const ExportFormat& format) {
  wchar_t path[kPathChars] = {};
  ProposedExportName(g_filePath, format.extension).copy(path, kPathChars - 1);
  const std::wstring filter = ExportFilter(format);
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = owner;
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path;
  dialog.nMaxFile = kPathChars;
  dialog.lpstrTitle = L"Export File - Tavro";
  dialog.lpstrDefExt = format.extension + 1;  // without its dot
  dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
  if (!GetSaveFileNameW(&dialog)) return std::wstring();
  return path;
}

// Beyond a limit: Yes hands the text to a Viewer.
void OfferViewer(HWND owner, const std::wstring& question) {
  if (ShowMessageBox(owner, kBoxYesNo, kTitle, question.c_str()) == kResultYes) OpenTextInViewer(owner);
}

}  // namespace

bool IsMarkdownDocument() { return HasMarkdownExtension(g_filePath); }

bool ExportPlainText(HWND owner, const std::string& text, const std::wstring& path) {
  FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Cannot create file.");
    return false;
  }
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);  // a failure on close goes unreported
  ShowMessageBox(owner, kBoxOk, kTitle, L"File exported successfully as plain text.");
  return true;
}

bool ExportDocument(HWND owner, int formatId) {
  const ExportFormat* format = FindExportFormat(formatId);
  if (!format) return false;
  const bool markdown = IsMarkdownDocument();
  if (formatId == kFormatPdf) {
    // The size question comes before any file is named.
    const auto lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
    const ExportDecision decision = DecideExport(formatId, markdown, lineCount);
    if (decision.route == ExportRoute::kOfferViewer)
      OfferViewer(owner, decision.question);
    else
      ExportPdf(owner, g_hwndEditor);
    return true;
  }
  const std::wstring path = AskExportPath(owner, *format);
  if (path.empty()) return false;
  const std::string text = EditorTextUtf8();
  const auto lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
  const ExportDecision decision = DecideExport(formatId, markdown, lineCount);
  switch (decision.route) {
    case ExportRoute::kMarkdownHtml: return ExportMarkdownHtml(owner, path);
    case ExportRoute::kStyledHtml: return ExportStyledHtml(owner, text, path);
    case ExportRoute::kRtf: return ExportRtf(owner, text, path);
    case ExportRoute::kPlainText: return ExportPlainText(owner, text, path);
    case ExportRoute::kOfferViewer: OfferViewer(owner, decision.question); return false;
    default: return false;
  }
}
