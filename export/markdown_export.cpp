#include "export/markdown_export.h"

#include <shellapi.h>

#include <atomic>
#include <memory>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "base/text_convert.h"
#include "export/markdown_html.h"
#include "export/progress_dialog.h"
#include "export/progress_text.h"
#include "export/viewer_handoff.h"
#include "presentation/message_box.h"
#include "settings/temp_files.h"

namespace {

constexpr DWORD kReadyWaitMs = 3000;
constexpr DWORD kPaceMs = 80;
constexpr DWORD kCancelledWriterWaitMs = 5000;

// What the writer thread works on. Shared, because after a cancel the pacing
// thread stops waiting while the writer may still run to its end.
struct MarkdownWriterTask {
  std::wstring outputPath;
  std::wstring text;
  MarkdownPageStyle style;
  std::atomic<long> result{0};
  std::atomic<long> done{0};
};

DWORD WINAPI MarkdownWriterThread(LPVOID parameter) {
  auto* held = static_cast<std::shared_ptr<MarkdownWriterTask>*>(parameter);
  std::shared_ptr<MarkdownWriterTask> task = *held;
  delete held;
  bool written = WriteMarkdownHtmlWithStyle(task->outputPath, task->text, task->style);
  // The result first, then the flag.
  task->result.exchange(written ? 1 : 0);
  task->done.exchange(1);
  return 0;
}

}  // namespace

DWORD WINAPI MarkdownHtmlProgressThread(LPVOID parameter) {
  ExportJob& job = *static_cast<ExportJob*>(parameter);
  WaitForSingleObject(job.readyEvent, kReadyWaitMs);
  if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0) {
    PostToExportDialog(job, WM_HTML_EXPORT_FINISHED, 0);
    return 0;
  }
  PostToExportDialog(job, WM_EXPORT_LINE, 1);
  auto task = std::make_shared<MarkdownWriterTask>();
  task->outputPath = job.outputPath;
  task->text = std::move(job.text);
  task->style = CurrentMarkdownPageStyle();
  task->style.title = WideToUtf8(job.docName);
  const int32_t lineCount = job.lineCount;
  auto* handed = new std::shared_ptr<MarkdownWriterTask>(task);
  HANDLE writer = CreateThread(nullptr, 0, MarkdownWriterThread, handed, 0, nullptr);
  if (!writer) {
    delete handed;
    PostToExportDialog(job, WM_HTML_EXPORT_FINISHED, 0);
    return 0;
  }
  const int32_t target = PacingTarget(lineCount);
  const int32_t step = PacingStep(target);
  int32_t position = 1;
  bool finalStage = false, cancelled = false;
  while (!task->done.load()) {
    if (!finalStage) {
      position += step;
      if (position > target) position = target;
      PostToExportDialog(job, WM_EXPORT_LINE, static_cast<WPARAM>(position));
      if (position >= target) {
        PostToExportDialog(job, WM_EXPORT_LINE, static_cast<WPARAM>(-1));
        finalStage = true;
      }
    }
    Sleep(kPaceMs);
    if (WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0) {
      cancelled = true;
      break;
    }
  }
  if (!cancelled) {
    WaitForSingleObject(writer, INFINITE);
    CloseHandle(writer);
    bool written = task->result.load() != 0;
    if (written) PostToExportDialog(job, WM_EXPORT_LINE, static_cast<WPARAM>(lineCount < 1 ? 1 : lineCount));
    // The last touch of the job: the dialog ends on this message.
    PostToExportDialog(job, WM_HTML_EXPORT_FINISHED, written ? 1 : 0);
    return 0;
  }
  // The writer isn't stopped: it completes its file, the job counts as failed.
  WaitForSingleObject(writer, kCancelledWriterWaitMs);
  CloseHandle(writer);
  PostToExportDialog(job, WM_HTML_EXPORT_FINISHED, 0);
  return 0;
}

bool ExportMarkdownHtml(HWND owner, const std::wstring& outputPath) {
  const int32_t lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
  std::wstring path = outputPath;
  const bool preview = path.empty();
  if (preview) {
    path = MakeTempFilePath(L"temp_html", L"html");
    if (path.empty()) {
      ShowMessageBox(owner, kBoxOk, L"Tavro - MD Export", L"Failed to determine output path.");
      return false;
    }
  }
  ExportJob job;
  job.owner = owner;
  job.editor = g_hwndEditor;
  job.outputPath = path;
  job.docName = Utf8ToWide(CurrentMarkdownPageStyle().title);
  job.text = Utf8ToWide(EditorTextUtf8());
  job.lineCount = lineCount;
  job.isPreview = preview ? 1 : 0;
  job.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  job.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (!job.cancelEvent || !job.readyEvent) {
    if (job.cancelEvent) CloseHandle(job.cancelEvent);
    if (job.readyEvent) CloseHandle(job.readyEvent);
    ShowMessageBox(owner, kBoxOk, L"Tavro - MD Export", L"Failed to create sync events.");
    return false;
  }
  HANDLE pacer = CreateThread(nullptr, 0, MarkdownHtmlProgressThread, &job, 0, nullptr);
  if (!pacer) {
    CloseHandle(job.cancelEvent);
    CloseHandle(job.readyEvent);
    // This one title has an equals sign where its neighbours have a dash.
    ShowMessageBox(owner, kBoxOk, L"Tavro = MD Export", L"Failed to start export thread.");
    return false;
  }
  RunExportProgressDialog(job);
  // The pacer's last act was the end message; let it return before the job goes.
  WaitForSingleObject(pacer, INFINITE);
  CloseHandle(pacer);
  CloseHandle(job.cancelEvent);
  CloseHandle(job.readyEvent);
  if (job.succeeded && preview) {
    auto opened = reinterpret_cast<INT_PTR>(ShellExecuteW(owner, L"open", path.c_str(), nullptr, nullptr, SW_SHOW));
    if (opened <= 32) OpenFileInViewer(owner, path);
  }
  return job.succeeded != 0;
}
