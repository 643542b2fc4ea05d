#include "export/styled_html_export.h"

#include <cstdio>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "export/editor_styles.h"
#include "export/export_formats.h"
#include "export/progress_dialog.h"
#include "export/styled_html.h"
#include "presentation/message_box.h"
#include "presentation/themes.h"

namespace {

constexpr DWORD kReadyWaitMs = 5000;
constexpr wchar_t kTitle[] = L"Tavro - Export";

// Everything the worker needs; it never touches the editor.
struct StyledHtmlJob {
  ExportJob* progress = nullptr;
  StyledHtmlPage page;
};

bool WritePage(const std::wstring& path, const std::string& page) {
  FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) return false;
  const bool written = std::fwrite(page.data(), 1, page.size(), file) == page.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace

DWORD WINAPI StyledHtmlWorker(LPVOID parameter) {
  StyledHtmlJob& job = *static_cast<StyledHtmlJob*>(parameter);
  ExportJob& progress = *job.progress;
  WaitForSingleObject(progress.readyEvent, kReadyWaitMs);
  const int32_t lineCount = static_cast<int32_t>(LineIndex(job.page.text).size());
  const int32_t step = StyledHtmlProgressStep(lineCount);
  std::string out;
  const bool whole = BuildStyledHtml(job.page, out, [&progress, step](int32_t index) {
    if (WaitForSingleObject(progress.cancelEvent, 0) == WAIT_OBJECT_0) return false;
    if (index % step == 0) PostToExportDialog(progress, WM_EXPORT_LINE, static_cast<WPARAM>(index + 1));
    return true;
  });
  job.page.styles.clear();
  if (!whole) {
    progress.succeeded = 0;
    PostToExportDialog(progress, WM_HTML_EXPORT_FINISHED, 0);
    return 0;
  }
  // The file is opened only now that the page stands whole.
  const bool written = WritePage(progress.outputPath, out);
  progress.succeeded = written ? 1 : 0;
  PostToExportDialog(progress, WM_HTML_EXPORT_FINISHED, written ? 1 : 0);
  return 0;
}

bool ExportStyledHtml(HWND owner, const std::string& text, const std::wstring& outputPath) {
  if (!g_hwndEditor) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Scintilla handle is invalid.");
    return false;
  }
  const int32_t lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
  const std::wstring question = StyledHtmlSizeQuestion(static_cast<int64_t>(text.size()), lineCount);
  if (!question.empty() && ShowMessageBox(owner, kBoxYesNo, kTitle, question.c_str()) != kResultYes) return false;

  StyledHtmlJob job;
  job.page.text = text;
  job.page.styles = EditorStyleBytes();
  job.page.fontName = EditorFontNameUtf8();
  job.page.docName = DocumentDisplayNameUtf8();
  job.page.looks = EditorStyleLooks();
  job.page.pageBackground = CurrentTheme().editorBackground;

  ExportJob progress;
  progress.owner = owner;
  progress.editor = g_hwndEditor;
  progress.outputPath = outputPath;
  progress.lineCount = lineCount;
  job.progress = &progress;
  progress.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  progress.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (!progress.cancelEvent || !progress.readyEvent) {
    if (progress.cancelEvent) CloseHandle(progress.cancelEvent);
    if (progress.readyEvent) CloseHandle(progress.readyEvent);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to create synchronization events.");
    return false;
  }
  HANDLE worker = CreateThread(nullptr, 0, StyledHtmlWorker, &job, 0, nullptr);
  if (!worker) {
    CloseHandle(progress.cancelEvent);
    CloseHandle(progress.readyEvent);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to start export thread.");
    return false;
  }
  RunExportProgressDialog(progress);
  // The end message was the worker's last touch of the job; let it return.
  WaitForSingleObject(worker, INFINITE);
  CloseHandle(worker);
  CloseHandle(progress.cancelEvent);
  CloseHandle(progress.readyEvent);
  return progress.succeeded != 0;
}
