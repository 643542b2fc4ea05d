#include "export/pagination_worker.h"

#include <vector>

#include "base/messages.h"
#include "export/markdown_fonts.h"
#include "export/page_render.h"

namespace {

void PostToDialog(PaginationJob& job, UINT message, WPARAM wParam, LPARAM lParam) {
  HWND dialog = job.dialog.load();
  if (dialog && IsWindow(dialog)) PostMessageW(dialog, message, wParam, lParam);
}

bool CancelSet(const PaginationJob& job) { return WaitForSingleObject(job.cancelEvent, 0) == WAIT_OBJECT_0; }

void EndCancelled(PaginationJob& job) {
  job.cancelled.store(1);
  PostToDialog(job, WM_PAGINATION_FINISHED, 0, 0);
}

}  // namespace

DWORD WINAPI PaginationWorker(LPVOID parameter) {
  auto& job = *static_cast<PaginationJob*>(parameter);
  // Without a dialog after the wait the work goes on, and posts find no window.
  WaitForSingleObject(job.readyEvent, kPaginationReadyWaitMs);

  std::vector<std::wstring> lines = SplitPageLines(job.text, job.lineCount);
  std::wstring().swap(job.text);  // the memory back at once

  HDC screen = GetDC(nullptr);
  HFONT font = CreateMarkdownFont(screen, job.fontName, job.fontSize, false, false);
  HGDIOBJ oldFont = SelectObject(screen, font);
  PageStarts starts;
  const bool finished = PaginateOnDc(
      screen, lines, job.geometry, starts, [&] { return CancelSet(job); },
      [&](int32_t pages) { PostToDialog(job, WM_PAGINATION_PROGRESS, static_cast<WPARAM>(pages), job.lineCount); });
  SelectObject(screen, oldFont);
  DeleteObject(font);
  ReleaseDC(nullptr, screen);
  if (!finished || CancelSet(job)) {
    EndCancelled(job);
    return 0;
  }
  PostToDialog(job, WM_PAGINATION_PROGRESS, starts.size(), job.lineCount);
  job.firstPage = RenderPage(0, starts, lines, job.geometry, job.fontName, job.fontSize);
  job.pageStarts = std::move(starts);
  PostToDialog(job, WM_PAGINATION_FINISHED, 1, reinterpret_cast<LPARAM>(job.firstPage));
  return 0;
}
