#include "export/rtf_export.h"

#include <cstdio>

#include "Scintilla.h"
#include "base/app_state.h"
#include "export/editor_styles.h"
#include "export/export_formats.h"
#include "export/progress_dialog.h"
#include "export/rtf_writer.h"
#include "export/viewer_handoff.h"
#include "presentation/message_box.h"
#include "presentation/themes.h"
#include "settings/settings.h"

namespace {

constexpr DWORD kReadyWaitMs = 10000;
constexpr wchar_t kTitle[] = L"Tavro - Export";

// The large case: the finished RTF and the dialog's job (path, events,
// dialog, start time, result).
struct RtfWriteJob {
  ExportJob progress;
  std::string rtf;
};

void PostRtf(ExportJob& job, UINT message, WPARAM wParam) { PostToExportDialog(job, message, wParam); }

bool WriteDirect(HWND owner, const std::string& rtf, const std::wstring& path) {
  FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Cannot create RTF file.");
    return false;
  }
  const bool written = std::fwrite(rtf.data(), 1, rtf.size(), file) == rtf.size();
  if (std::fclose(file) != 0 || !written) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Error writing RTF file.");
    return false;
  }
  const std::wstring text = L"RTF exported successfully.\n\n" + path;
  ShowMessageBox(owner, kBoxOk, kTitle, text.c_str());
  return true;
}

bool WriteThroughWorker(HWND owner, std::string rtf, size_t textLength, const std::wstring& path) {
  RtfWriteJob job;
  job.progress.owner = owner;
  job.progress.outputPath = path;
  job.rtf = std::move(rtf);
  job.progress.lineCount = static_cast<int32_t>(textLength);  // the text's length, as this job keeps it
  job.progress.cancelEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  job.progress.readyEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (!job.progress.cancelEvent || !job.progress.readyEvent) {
    if (job.progress.cancelEvent) CloseHandle(job.progress.cancelEvent);
    if (job.progress.readyEvent) CloseHandle(job.progress.readyEvent);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to create sync events.");
    return false;
  }
  HANDLE worker = CreateThread(nullptr, 0, RtfWriteWorker, &job, 0, nullptr);
  if (!worker) {
    CloseHandle(job.progress.cancelEvent);
    CloseHandle(job.progress.readyEvent);
    ShowMessageBox(owner, kBoxOk, kTitle, L"Failed to start export thread.");
    return false;
  }
  RunRtfProgressDialog(job.progress);
  WaitForSingleObject(worker, INFINITE);
  CloseHandle(worker);
  CloseHandle(job.progress.cancelEvent);
  CloseHandle(job.progress.readyEvent);
  const bool succeeded = job.progress.succeeded != 0;
  if (succeeded) {
    const uint64_t elapsed = GetTickCount64() - job.progress.startTicks;
    wchar_t time[64];
    swprintf(time, 64, L"%llu.%03llu sec", static_cast<unsigned long long>(elapsed / 1000),
             static_cast<unsigned long long>(elapsed % 1000));
    const std::wstring text = L"RTF exported successfully.\n\nExport time: " + std::wstring(time) + L"\n\n" + path;
    ShowMessageBox(owner, kBoxOk, kTitle, text.c_str());
  } else {
    ShowMessageBox(owner, kBoxOk, kTitle, L"RTF export failed or was cancelled.");
  }
  return succeeded;
}

}  // namespace

DWORD WINAPI RtfWriteWorker(LPVOID parameter) {
  RtfWriteJob& job = *static_cast<RtfWriteJob*>(parameter);
  ExportJob& progress = job.progress;
  WaitForSingleObject(progress.readyEvent, kReadyWaitMs);
  if (job.rtf.empty() || WaitForSingleObject(progress.cancelEvent, 0) == WAIT_OBJECT_0) {
    PostRtf(progress, WM_RTF_FINISHED, 0);
    return 0;
  }
  PostRtf(progress, WM_RTF_PROGRESS, 5);
  FILE* file = _wfopen(progress.outputPath.c_str(), L"wb");
  if (!file) {
    PostRtf(progress, WM_RTF_FINISHED, 0);
    return 0;
  }
  const size_t total = job.rtf.size();
  size_t written = 0;
  bool failed = false;
  while (written < total) {
    if (WaitForSingleObject(progress.cancelEvent, 0) == WAIT_OBJECT_0) {
      failed = true;
      break;
    }
    const size_t chunk = total - written < kRtfChunkBytes ? total - written : kRtfChunkBytes;
    if (std::fwrite(job.rtf.data() + written, 1, chunk, file) != chunk) {
      failed = true;
      break;
    }
    written += chunk;
    PostRtf(progress, WM_RTF_PROGRESS, static_cast<WPARAM>(RtfWritePercent(written, total)));
  }
  // A partial RTF never stays behind.
  if (std::fclose(file) != 0) failed = true;
  if (failed) {
    _wremove(progress.outputPath.c_str());
    PostRtf(progress, WM_RTF_FINISHED, 0);
    return 0;
  }
  PostRtf(progress, WM_RTF_PROGRESS, static_cast<WPARAM>(-1));
  progress.succeeded = 1;
  PostRtf(progress, WM_RTF_FINISHED, 1);
  return 0;
}

bool ExportRtf(HWND owner, const std::string& text, const std::wstring& path) {
  if (text.empty()) {
    ShowMessageBox(owner, kBoxOk, kTitle, L"Nothing to export.");
    return false;
  }
  const int32_t lineCount = static_cast<int32_t>(SendEditor(SCI_GETLINECOUNT));
  const std::wstring question = RtfViewerQuestion(lineCount);
  if (!question.empty()) {
    if (ShowMessageBox(owner, kBoxYesNo, kTitle, question.c_str()) == kResultYes) OpenTextInViewer(owner);
    return false;
  }
  RtfDocument document;
  document.text = text;
  document.styles = EditorStyleBytes();
  document.fontName = EditorFontNameUtf8();
  document.fontSize = g_fontSize;
  document.looks = EditorStyleLooks();
  // Light colours of a dark editor would vanish on a word processor's white page.
  if (CurrentTheme().isDark & 0xFF)
    for (uint32_t& fore : document.looks.fore) fore = DarkenForPaper(fore);
  std::string rtf = BuildRtf(document);
  if (rtf.size() < kRtfWorkerThreshold) return WriteDirect(owner, rtf, path);
  return WriteThroughWorker(owner, std::move(rtf), text.size(), path);
}
