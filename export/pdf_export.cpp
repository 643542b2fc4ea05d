#include "export/pdf_export.h"

#include <commdlg.h>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/path_name.h"
#include "base/text_convert.h"
#include "document/document.h"
#include "export/editor_styles.h"
#include "export/export_document.h"
#include "export/viewer_handoff.h"
#include "presentation/message_box.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kTitle[] = L"Tavro - PDF Export";
constexpr DWORD kPathChars = 260;

// The save step; empty when the user cancels.
std::wstring AskPdfPath(HWND owner, const std::wstring& proposal, const wchar_t* title, const wchar_t* filter,
                        DWORD flags) {
  wchar_t path[kPathChars] = {};
  proposal.copy(path, kPathChars - 1);
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = owner;
  dialog.lpstrFilter = filter;
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path;
  dialog.nMaxFile = kPathChars;
  dialog.lpstrTitle = title;
  dialog.lpstrDefExt = L"pdf";
  dialog.Flags = flags;
  if (!GetSaveFileNameW(&dialog)) return std::wstring();
  return path;
}

std::wstring DisplayName() {
  return g_filePath.empty() ? L"Document" : FileNameOf(g_filePath);
}

PdfExportJob* NewJob(HWND owner, HWND editor, const std::wstring& path, const std::wstring& docName) {
  auto* job = new PdfExportJob();
  job->outputPath = path;
  job->docName = docName;
  job->fontName = g_fontName;
  job->fontSize = g_fontSize;
  job->owner = owner;
  job->editor = editor;
  job->cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  job->readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return job;
}

std::wstring ConvertSequence(const char* bytes, int count) {
  wchar_t wide[4];
  const int units = MultiByteToWideChar(CP_UTF8, 0, bytes, count, wide, 4);
  return units > 0 ? std::wstring(wide, static_cast<size_t>(units)) : std::wstring();
}

}  // namespace

void FreePdfExportJob(PdfExportJob* job) {
  for (HANDLE event : {job->requestEvent, job->batchReadyEvent, job->cancelEvent, job->readyEvent})
    if (event) CloseHandle(event);
  delete job;
}

void FillPdfBatch(PdfExportJob& job) {
  HWND editor = job.editor;
  StyledLineReader read = [editor](int32_t line) {
    LRESULT length = SendMessageW(editor, SCI_LINELENGTH, static_cast<WPARAM>(line), 0);
    if (length <= 0) return std::string();
    const auto start = static_cast<Sci_PositionCR>(SendMessageW(editor, SCI_POSITIONFROMLINE, line, 0));
    // Pairs of (character, style), and two zero bytes at the end.
    std::string pairs(static_cast<size_t>(length) * 2 + 2, '\0');
    Sci_TextRange range;
    range.chrg.cpMin = start;
    range.chrg.cpMax = start + static_cast<Sci_PositionCR>(length);
    range.lpstrText = pairs.data();
    SendMessageW(editor, SCI_GETSTYLEDTEXT, 0, reinterpret_cast<LPARAM>(&range));
    pairs.resize(static_cast<size_t>(length) * 2);
    return pairs;
  };
  // The editor styles only what it has shown; the batch is styled first, so
  // that every page has the lexer's colours.
  const PdfBatchRange range = NextPdfBatch(job.nextLine, job.totalLines);
  const LRESULT from = SendMessageW(editor, SCI_POSITIONFROMLINE, static_cast<WPARAM>(job.nextLine), 0);
  const LRESULT to = range.last ? -1 : SendMessageW(editor, SCI_POSITIONFROMLINE, static_cast<WPARAM>(range.end), 0);
  SendMessageW(editor, SCI_COLOURISE, static_cast<WPARAM>(from), to);
  bool last = false;
  FillPdfBatchLines(job.nextLine, job.totalLines, job.batch, last, job.styles, read, ConvertSequence);
  job.lastBatch = last ? 1 : 0;
}

void ExportMarkdownPdf(HWND owner, HWND editor, const std::wstring& path, const std::wstring& docName) {
  const std::wstring text = Utf8ToWide(EditorTextUtf8());
  if (text.empty()) return;
  PdfExportJob* job = NewJob(owner, editor, path, docName);
  auto* task = new MarkdownPdfTask{job, text};
  HANDLE thread = CreateThread(nullptr, 0, MarkdownPdfWorker, task, 0, nullptr);
  if (!thread) {
    delete task;
    FreePdfExportJob(job);
    return;
  }
  CloseHandle(thread);
  RunPdfProgressDialog(job);
}

void RunCodePdfExport(HWND owner, HWND editor, const std::wstring& path, const std::wstring& docName) {
  PdfExportJob* job = NewJob(owner, editor, path, docName);
  job->styles = BuildPdfStyleTable(static_cast<int>(SendMessageW(editor, SCI_GETLEXER, 0, 0)), EditorStyleLooks());
  job->nextLine = 0;
  job->totalLines = static_cast<int32_t>(SendMessageW(editor, SCI_GETLINECOUNT, 0, 0));
  job->requestEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  job->batchReadyEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  HANDLE thread = CreateThread(nullptr, 0, CodePdfWorker, job, 0, nullptr);
  if (!thread) {
    FreePdfExportJob(job);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to start export thread.");
    return;
  }
  CloseHandle(thread);
  RunPdfProgressDialog(job);
}

void ExportPdf(HWND owner, HWND editor) {
  if (!editor) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Scintilla handle is invalid.");
    return;
  }
  if (IsMarkdownDocument()) {
    // Markdown has no size questions here: its limit was asked before.
    const std::wstring path =
        AskPdfPath(owner, ProposedMarkdownPdfName(g_filePath), L"Save PDF \u00E2\u20AC\u201D Tavro",
                   L"PDF Files\0*.pdf\0All Files\0*.*\0", OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
    if (!path.empty()) ExportMarkdownPdf(owner, editor, path, DisplayName());
    return;
  }
  const auto lines = static_cast<int32_t>(SendMessageW(editor, SCI_GETLINECOUNT, 0, 0));
  const auto length = static_cast<int64_t>(SendMessageW(editor, SCI_GETLENGTH, 0, 0));
  if (lines == 0 || length == 0) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Nothing to export.");
    return;
  }
  const std::wstring question = PdfSizeQuestion(length, lines);
  if (!question.empty() && ShowMessageBox(owner, kBoxYesNo, kTitle, question.c_str()) != kResultYes) return;
  const std::wstring path =
      AskPdfPath(owner, ProposedPdfName(g_filePath), L"Export as PDF", L"PDF Files (*.pdf)\0*.pdf\0All Files\0*.*\0",
                 OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST);
  if (path.empty()) return;
  RunCodePdfExport(owner, editor, path, DisplayName());
}
