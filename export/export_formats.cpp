#include "export/export_formats.h"
#include "base/path_name.h"

#include <cwctype>

const ExportFormat kExportFormats[kExportFormatCount] = {
    {0, L"PDF Document (*.pdf)", L"Portable Document Format - best for printing and sharing", L".pdf", L"PDF Files"},
    {1, L"HTML Document (*.html)", L"HyperText Markup Language - view in web browser", L".html", L"HTML Files"},
    {2, L"Rich Text Format (*.rtf)", L"Rich Text Format - opens in Word, LibreOffice", L".rtf", L"RTF Files"},
    {3, L"Plain Text (*.txt)", L"Simple UTF-8 text file", L".txt", L"Text Files"},
};

namespace {

constexpr int32_t kPdfCodeLimit = 10000;
constexpr int32_t kHtmlCodeLimit = 20000;
constexpr int32_t kMarkdownLimit = 30000;
constexpr int32_t kRtfLimit = 50000;

// The questions keep their own wording: "very" stands in some and not others.
std::wstring LinesQuestion(const wchar_t* head, int32_t lines, const wchar_t* tail) {
  return std::wstring(head) + std::to_wstring(lines) + tail;
}

}  // namespace

const ExportFormat* FindExportFormat(int32_t id) {
  for (const ExportFormat& format : kExportFormats)
    if (format.id == id) return &format;
  return nullptr;
}

bool HasMarkdownExtension(const std::wstring& path) {
  if (path.size() < 3) return false;
  const std::wstring tail = path.substr(path.size() - 3);
  return tail[0] == L'.' && std::towlower(tail[1]) == L'm' && std::towlower(tail[2]) == L'd';
}

std::wstring ProposedExportName(const std::wstring& path, const wchar_t* extension) {
  if (path.empty()) return std::wstring();
  std::wstring name = FileNameOf(path);
  const size_t dot = name.rfind(L'.');
  if (dot != std::wstring::npos) name.erase(dot);
  return name + extension;
}

std::wstring ExportFilter(const ExportFormat& format) {
  std::wstring filter = std::wstring(format.filterName) + L"All Files";
  filter.push_back(L'\0');
  filter.push_back(L'\0');
  return filter;
}

ExportDecision DecideExport(int32_t formatId, bool markdown, int32_t lineCount) {
  ExportDecision decision;
  switch (formatId) {
    case kFormatPdf:
      if (markdown && lineCount > kMarkdownLimit) {
        decision.route = ExportRoute::kOfferViewer;
        decision.question = LinesQuestion(L"This Markdown file has ~", lineCount,
                                          L" lines.\n\nRendered MD PDF would be too slow for this size.\n"
                                          L"Open as plain text in Tavro Viewer instead?");
      } else if (!markdown && lineCount > kPdfCodeLimit) {
        decision.route = ExportRoute::kOfferViewer;
        decision.question = LinesQuestion(L"This file has ~", lineCount,
                                          L" lines.\n\nPDF export would be very slow for this size.\n"
                                          L"Open as plain text in Tavro Viewer instead?");
      } else {
        decision.route = ExportRoute::kPdf;
      }
      break;
    case kFormatHtml:
      if (markdown && lineCount > kMarkdownLimit) {
        decision.route = ExportRoute::kOfferViewer;
        decision.question = LinesQuestion(L"This Markdown file has ~", lineCount,
                                          L" lines.\n\nRendered MD HTML would be very slow for this size.\n"
                                          L"Open as plain text in Tavro Viewer instead?");
      } else if (!markdown && lineCount > kHtmlCodeLimit) {
        decision.route = ExportRoute::kOfferViewer;
        decision.question = LinesQuestion(L"This file has ~", lineCount,
                                          L" lines.\n\nHTML export would be slow for this size.\n"
                                          L"Open as plain text in Tavro Viewer instead?");
      } else {
        decision.route = markdown ? ExportRoute::kMarkdownHtml : ExportRoute::kStyledHtml;
      }
      break;
    case kFormatRtf: decision.route = ExportRoute::kRtf; break;
    case kFormatText: decision.route = ExportRoute::kPlainText; break;
  }
  return decision;
}

std::wstring RtfViewerQuestion(int32_t lineCount) {
  if (lineCount <= kRtfLimit) return std::wstring();
  return LinesQuestion(L"This file has ~", lineCount,
                       L" lines.\n\nRTF export would be very slow for this size.\n"
                       L"Open as plain text in Tavro Viewer instead?");
}

std::wstring StyledHtmlSizeQuestion(int64_t bytes, int32_t lineCount) {
  if (bytes > 10000000)
    return L"This file is very large (~" + std::to_wstring(bytes / 1000000) + L" MB, ~" +
           std::to_wstring(lineCount) + L" lines).\nHTML export may take several minutes.\n\nContinue?";
  if (bytes > 1000000)
    return L"This file has ~" + std::to_wstring(lineCount) + L" lines. Export may take a while.\n\nContinue?";
  return std::wstring();
}
