// Print Preview (command 601): the document paginated on a worker under its
// progress dialog, then shown a page at a time in a modal window painted by
// code, with Prev, Next, Print and Close in a bar across the top.
#pragma once

#include <windows.h>

#include <string>

#include "export/pagination.h"

// The preview window's own record, from its opening to its close.
struct PreviewState {
  HWND owner = nullptr;       // the main window, parent of a print job
  int32_t currentPage = 0;    // from 0
  int32_t pageCount = 0;      // entries in pageStarts
  PageStarts pageStarts;      // taken over from the pagination job
  HBITMAP pageBitmap = nullptr;  // the current page, rendered
  int32_t paperWidth = 0;
  int32_t paperHeight = 0;
  int32_t hoveredButton = -1;  // 0 to 3, -1 for none
  PageGeometry geometry;       // the text frame
  std::wstring fontName;       // what the pages are set in, at render time
  int32_t fontSize = 0;
  HFONT buttonFont = nullptr;  // "Segoe UI", 13 pixels
  HFONT pageTextFont = nullptr;  // "Segoe UI", 12 pixels
  bool tracking = false;       // a mouse-leave notice is asked for
};

// Command 601.
void ShowPrintPreview(HWND owner);
