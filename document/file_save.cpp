// Document save, Save As, the save prompt and auto-save.
#include <windows.h>

#include <commdlg.h>

#include <cstdio>
#include <string>

#include "Scintilla.h"
#include "base/app_state.h"
#include "document/document.h"
#include "document/save_prompt.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"

namespace {

constexpr unsigned char kBomBytes[] = {0xEF, 0xBB, 0xBF};
constexpr DWORD kMaxSaveAsPath = 260;

std::string EditorText() {
  LRESULT length = SendMessageW(g_hwndEditor, SCI_GETLENGTH, 0, 0);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  SendMessageW(g_hwndEditor, SCI_GETTEXT, length + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

// Writes through the handle kept open since the load. A handle opened
// read-only fails every write and nobody is told: the document then counts
// as saved.
void WriteThroughHandle(const std::string& text) {
  DWORD written = 0;
  SetFilePointer(g_fileHandle, 0, nullptr, FILE_BEGIN);
  if (g_encoding == kUtf8Bom) WriteFile(g_fileHandle, kBomBytes, sizeof(kBomBytes), &written, nullptr);
  WriteFile(g_fileHandle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  SetEndOfFile(g_fileHandle);
}

// A new file, or one whose handle a failed load took away.
bool WriteThroughStream(HWND window, const std::string& text) {
  FILE* stream = _wfopen(g_filePath.c_str(), L"wb");
  if (!stream) {
    ShowMessageBox(window, kBoxOk, kGarbledErrorTitle, L"Cannot save file.");
    return false;
  }
  if (g_encoding == kUtf8Bom) fwrite(kBomBytes, 1, sizeof(kBomBytes), stream);
  fwrite(text.data(), 1, text.size(), stream);
  fclose(stream);
  // Kept open from now on, readers allowed but not writers.
  g_fileHandle = CreateFileW(g_filePath.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  return true;
}

}  // namespace

bool FileSave(HWND window) {
  if (g_filePath.empty()) return FileSaveAs(window);
  std::string text = EditorText();
  if (g_fileHandle != INVALID_HANDLE_VALUE) {
    WriteThroughHandle(text);
  } else if (!WriteThroughStream(window, text)) {
    return false;
  }
  g_modified = false;
  NotifySaved();
  if (!g_viewerMode) ApplyLanguage(g_filePath.c_str());
  return true;
}

bool FileSaveAs(HWND window) {
  wchar_t path[kMaxSaveAsPath] = {};
  g_filePath.copy(path, kMaxSaveAsPath - 1);
  const std::wstring filter = SaveAsFilter();
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = window;
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path;
  dialog.nMaxFile = kMaxSaveAsPath;
  dialog.lpstrTitle = L"Save As - Tavro";
  dialog.lpstrDefExt = L"txt";
  dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
  if (!GetSaveFileNameW(&dialog)) return false;
  // The old handle stays open: an opened document is written into its old
  // file, and only an untitled one gets a file at the new path.
  g_filePath = path;
  return FileSave(window);
}

int PromptSaveChanges(HWND window) {
  int status = CheckFileStatus();
  if (!g_modified && status == kFileFine) return IDNO;
  std::wstring text = SaveChangesPromptText(status, g_modified, DocumentName(g_filePath));
  switch (ShowMessageBox(window, kBoxYesNoCancel, L"Tavro", text.c_str())) {
    case kResultYes: return IDYES;
    case kResultNo: return IDNO;
    default: return IDCANCEL;
  }
}

bool ConfirmDiscardOrSave(HWND window) {
  switch (PromptSaveChanges(window)) {
    case IDCANCEL: return false;
    case IDYES: return FileSave(window);
    default: return true;
  }
}

void RestartAutoSaveTimer(HWND window, unsigned minutes) {
  KillTimer(window, kAutoSaveTimer);
  if (minutes > 0) SetTimer(window, kAutoSaveTimer, minutes * 60000u, nullptr);
}

void OnAutoSaveTimer(HWND window) {
  if (g_modified && !g_filePath.empty()) FileSave(window);
}
