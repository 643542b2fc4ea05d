#include "export/pagination_dialog.h"

#include "base/app_state.h"
#include "base/messages.h"
#include "export/progress_dialog.h"
#include "resources/resource_ids.h"

namespace {

INT_PTR CALLBACK PaginationProgressDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto* job = reinterpret_cast<PaginationJob*>(lParam);
    auto* state = new ProgressDialogState();
    state->cancelEvent = job->cancelEvent;
    state->status = L"Preparing Print Preview...";
    SetUpProgressDialog(dialog, state, L"Tavro - Print Preview");
    job->dialog.store(dialog);
    SetEvent(job->readyEvent);
    return TRUE;
  }
  ProgressDialogState* state = ProgressStateOf(dialog);
  if (!state) return FALSE;
  switch (message) {
    case WM_PAGINATION_PROGRESS:
      SetProgressStatus(dialog, *state,
                        PaginationStatusText(static_cast<int32_t>(wParam), static_cast<int32_t>(lParam)));
      return TRUE;
    case WM_PAGINATION_FINISHED:
      EndDialog(dialog, static_cast<INT_PTR>(wParam) > 0 ? 1 : 2);
      return TRUE;
  }
  return ProgressDialogMessage(dialog, message, wParam, lParam) ? TRUE : FALSE;
}

}  // namespace

INT_PTR RunPaginationProgressDialog(HWND owner, PaginationJob& job) {
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_EXPORT_PROGRESS), owner, PaginationProgressDialog,
                         reinterpret_cast<LPARAM>(&job));
}
