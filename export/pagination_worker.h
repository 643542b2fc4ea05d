// The preview's pagination on a thread of its own under the pagination
// progress dialog: it splits the copied text, measures it on its own screen
// context, reports each new page and renders page 1. It meets the main
// thread only through the two events, the dialog's handle and two posted
// messages (WM_PAGINATION_PROGRESS, WM_PAGINATION_FINISHED).
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "export/pagination.h"

struct PaginationJob {
  std::atomic<HWND> dialog{nullptr};  // set by the dialog before readyEvent
  HANDLE readyEvent = nullptr;   // manual reset: the dialog is up
  HANDLE cancelEvent = nullptr;  // manual reset: set by Cancel
  std::wstring text;             // the document; the worker empties it once split
  int32_t lineCount = 0;         // the editor's line count: reservation and reports
  PageGeometry geometry;
  std::wstring fontName;         // copies of the live font
  int32_t fontSize = 0;
  PageStarts pageStarts;         // the result, read once the dialog has ended
  HBITMAP firstPage = nullptr;   // page 1, rendered
  std::atomic<uint8_t> cancelled{0};  // the worker stopped early
};

// How long the worker waits for the dialog before it goes on without one.
constexpr DWORD kPaginationReadyWaitMs = 5000;

// The thread function; the parameter is the PaginationJob.
DWORD WINAPI PaginationWorker(LPVOID job);
