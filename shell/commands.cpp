#include "shell/commands.h"

#include "Scintilla.h"
#include "document/document.h"
#include "presentation/presentation.h"
#include "search/search.h"
#include "shell/shell.h"

void NewDocument(HWND window) {
  if (!ConfirmDiscardOrSave(window)) return;
  if (g_fileHandle != INVALID_HANDLE_VALUE) {
    CloseHandle(g_fileHandle);
    g_fileHandle = INVALID_HANDLE_VALUE;
  }
  SendMessageW(g_hwndEditor, SCI_SETREADONLY, 0, 0);
  SendMessageW(g_hwndEditor, SCI_CLEARALL, 0, 0);
  SendMessageW(g_hwndEditor, SCI_EMPTYUNDOBUFFER, 0, 0);
  g_filePath.clear();
  g_modified = false;
  g_encoding = kUtf8;
  SendMessageW(g_hwndEditor, SCI_SETEOLMODE, SC_EOL_CRLF, 0);
  ApplyLanguage(L"");
  UpdateTitle();
  UpdateStatusBar();
  // A large document's memory goes back to the system.
  HeapCompact(GetProcessHeap(), 0);
  SetProcessWorkingSetSize(GetCurrentProcess(), static_cast<SIZE_T>(-1), static_cast<SIZE_T>(-1));
  InvalidateRect(g_hwndEditor, nullptr, TRUE);
  if (g_hwndMargin) InvalidateRect(g_hwndMargin, nullptr, TRUE);
  UpdateWindow(window);
  ClearSearchIndicators();
}

bool HandleCommand(HWND window, int id) {
  switch (id) {
    case kCmdNew:
      NewDocument(window);
      return true;
    case kCmdSave:
      FileSave(window);
      return true;
    case kCmdSaveAs:
      FileSaveAs(window);
      return true;
    case kCmdExit:
      SendMessageW(window, WM_CLOSE, 0, 0);
      return true;
  }
  return false;
}
