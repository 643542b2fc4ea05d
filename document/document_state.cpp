// Process-wide state of the document and the way up to the shell.
#include "document/document.h"

std::wstring g_filePath;
HANDLE g_fileHandle = INVALID_HANDLE_VALUE;
TextEncoding g_encoding = kUtf8;
bool g_modified = false;

namespace {

DocumentListeners g_listeners;

}  // namespace

void SetDocumentListeners(const DocumentListeners& listeners) { g_listeners = listeners; }

void NotifyTextReplaced() {
  if (g_listeners.textReplaced) g_listeners.textReplaced();
}

void NotifySaved() {
  if (g_listeners.saved) g_listeners.saved();
}

void CloseDocumentHandle() {
  if (g_fileHandle == INVALID_HANDLE_VALUE) return;
  CloseHandle(g_fileHandle);
  g_fileHandle = INVALID_HANDLE_VALUE;
}
