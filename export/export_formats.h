// The one door to every export: the table of formats, the decision which
// writer a format and a document get, and the questions beyond the limits
// that steer the user to a Viewer. Plain functions; the dialogs and the
// writers' Win32 sides use them.
#pragma once

#include <cstdint>
#include <string>

struct ExportFormat {
  int32_t id;
  const wchar_t* label;        // the Export dialog's list
  const wchar_t* description;  // below the list
  const wchar_t* extension;    // with its dot
  const wchar_t* filterName;   // the save dialog's file type
};

constexpr int kExportFormatCount = 4;
constexpr int kFormatPdf = 0, kFormatHtml = 1, kFormatRtf = 2, kFormatText = 3;

// The table in the dialog's order.
extern const ExportFormat kExportFormats[kExportFormatCount];

// The row of an id, or null.
const ExportFormat* FindExportFormat(int32_t id);

// At least three characters, the last three ".md" in any case.
bool HasMarkdownExtension(const std::wstring& path);

// The last component of the path without everything from its last dot, then
// the extension; empty for a document with no path.
std::wstring ProposedExportName(const std::wstring& path, const wchar_t* extension);

// The save dialog's filter: the format's name joined with "All Files" as one
// entry, double-null terminated.
std::wstring ExportFilter(const ExportFormat& format);

enum class ExportRoute {
  kNone,             // no such format
  kPdf,              // the PDF writer, with its own save step
  kMarkdownHtml,     // the Markdown page writer
  kStyledHtml,       // the code page with the editor's colours
  kRtf,              // RTF, with its own limit
  kPlainText,        // the bytes as they are
  kOfferViewer,      // beyond a limit: ask, Yes hands the text to a Viewer
};

struct ExportDecision {
  ExportRoute route = ExportRoute::kNone;
  std::wstring question;  // for kOfferViewer: the text of the Yes/No question
};

// Which writer a format gets for a document of this kind and line count.
ExportDecision DecideExport(int32_t formatId, bool markdown, int32_t lineCount);

// The RTF writer's own limit: the question above 50,000 lines, else empty.
std::wstring RtfViewerQuestion(int32_t lineCount);

// The styled HTML's questions by size in bytes: over 10,000,000 the long
// one, over 1,000,000 the short one, else empty.
std::wstring StyledHtmlSizeQuestion(int64_t bytes, int32_t lineCount);
