#include "shell/open_document.h"

#include <shellapi.h>

#include "document/document.h"
#include "document/recent_files.h"
#include "document/save_prompt.h"
#include "presentation/message_box.h"
#include "settings/settings.h"
#include "shell/shell.h"
#include "shell/toolbar.h"

namespace {

constexpr wchar_t kViewerTitlePrefix[] = L"Tavro Viewer - ";

// A Viewer's title names the file of its command line, or the path when there is none.
void SetViewerTitle(HWND window, const std::wstring& path) {
  int argc = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
  std::wstring shown = argv && argc >= 3 ? argv[2] : path;
  if (argv) LocalFree(argv);
  SetWindowTextW(window, (kViewerTitlePrefix + DocumentName(shown)).c_str());
}

}  // namespace

bool OpenDocumentPath(HWND window, const std::wstring& path, OpenSource source) {
  const bool fromMessage = source == OpenSource::kOpenMessage;
  if (!FileLoad(window, path.c_str())) {
    if (fromMessage) OutputDebugStringW(L"[WM_USER_OPEN_FILE] FileLoad FAILED\n");
    return false;
  }
  if (fromMessage) OutputDebugStringW(L"[WM_USER_OPEN_FILE] FileLoad SUCCESS\n");
  g_filePath = path;
  g_modified = false;
  if (g_viewerMode) {
    SetViewerTitle(window, path);
    return true;
  }
  UpdateTitle();
  UpdateStatusBar();
  RefreshToolbar();
  AddRecentFile(g_filePath);
  return true;
}

void OpenRecentFile(HWND window, int slot) {
  const std::wstring path = RecentSlotPath(g_settings.recentFiles, slot);
  if (path.empty()) return;
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
    if (ShowMessageBox(window, kBoxYesNo, kRecentFileMissingTitle, RecentFileMissingText(DocumentName(path)).c_str()) ==
        kResultYes)
      RemoveRecentFile(slot);
    return;
  }
  if (ConfirmDiscardOrSave(window)) OpenDocumentPath(window, path, OpenSource::kRecentFile);
}
