// The PDF job's progress dialog: the look, the painted Cancel and the close
// box of every progress dialog, with the pages, the batches on request, the
// final stage, and the removal of a file whose cancelled job had ended its
// document. It owns the job and frees it when it closes.
#include <cwchar>

#include "base/app_state.h"
#include "base/messages.h"
#include "export/pdf_export.h"
#include "export/progress_dialog.h"
#include "resources/resource_ids.h"

namespace {

// The job lives beside the shared state, in the window's user data.
PdfExportJob* JobOf(HWND dialog) { return reinterpret_cast<PdfExportJob*>(GetWindowLongPtrW(dialog, GWLP_USERDATA)); }

void OnInit(HWND dialog, PdfExportJob* job) {
  SetWindowLongPtrW(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(job));
  auto* state = new ProgressDialogState();
  state->cancelEvent = job->cancelEvent;
  state->status = L"Preparing...";
  SetUpProgressDialog(dialog, state, nullptr);
  job->dialog.store(dialog);
  job->startTicks = GetTickCount64();
  SetEvent(job->readyEvent);
}

void OnFinished(HWND dialog, const ProgressDialogState& state, PdfExportJob& job, WPARAM result) {
  if (state.finalizing && state.cancelled) DeleteFileW(job.outputPath.c_str());
  const WPARAM outcome = state.cancelled ? 0 : result;
  const uint64_t elapsed = GetTickCount64() - job.startTicks;
  wchar_t line[96];
  swprintf(line, 96, L"[PdfProgressDialog] Export ended, result %d\n", static_cast<int>(outcome));
  OutputDebugStringW(line);
  PostMessageW(job.owner, WM_PDF_EXPORT_FINISHED, outcome, static_cast<LPARAM>(elapsed));
  EndDialog(dialog, outcome > 0 ? 1 : 2);
}

INT_PTR CALLBACK PdfProgressDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(dialog, reinterpret_cast<PdfExportJob*>(lParam));
    return TRUE;
  }
  ProgressDialogState* state = ProgressStateOf(dialog);
  PdfExportJob* job = JobOf(dialog);
  if (!state || !job) return FALSE;
  switch (message) {
    case WM_EXPORT_PROGRESS:
      SetProgressStatus(dialog, *state, PdfPageStatusText(static_cast<int32_t>(wParam)));
      OutputDebugStringW((L"[PdfProgressDialog] " + state->status + L"\n").c_str());
      return TRUE;
    case WM_PDF_BATCH_REQUEST:
      if (!state->cancelled) {
        FillPdfBatch(*job);
        SetEvent(job->batchReadyEvent);
      } else {
        SetEvent(job->cancelEvent);
      }
      return TRUE;
    case WM_PDF_FINAL_STAGE:
      state->finalizing = true;
      SetProgressStatus(dialog, *state, kPdfFinalizingText);
      OutputDebugStringW(L"[PdfProgressDialog] Final stage\n");
      return TRUE;
    case WM_PDF_EXPORT_FINISHED:
      OnFinished(dialog, *state, *job, wParam);
      return TRUE;
    case WM_LBUTTONUP: {
      const bool wasCancelled = state->cancelled;
      ProgressDialogMessage(dialog, message, wParam, lParam);
      // A worker waiting for a batch wakes at once.
      if (!wasCancelled && state->cancelled && job->batchReadyEvent) SetEvent(job->batchReadyEvent);
      return TRUE;
    }
    case WM_DESTROY:
      ProgressDialogMessage(dialog, message, wParam, lParam);
      SetWindowLongPtrW(dialog, GWLP_USERDATA, 0);
      FreePdfExportJob(job);
      return TRUE;
  }
  return ProgressDialogMessage(dialog, message, wParam, lParam) ? TRUE : FALSE;
}

}  // namespace

INT_PTR RunPdfProgressDialog(PdfExportJob* job) {
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_EXPORT_PROGRESS), job->owner, PdfProgressDialog,
                         reinterpret_cast<LPARAM>(job));
}
