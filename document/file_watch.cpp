// The watch on the file behind the document: it looks at existence only.
#include "document/file_watch.h"

#include "base/app_state.h"
#include "document/document.h"
#include "document/save_prompt.h"
#include "presentation/message_box.h"

namespace {

bool g_asking = false;  // the question's own box is up

}  // namespace

int CheckFileStatus() {
  return FileStatusOf(g_filePath,
                      [](const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; });
}

std::wstring FileChangedText(int status, const std::wstring& name) {
  return L"\"" + name + L"\"" +
         (status == kFileGoneFromFolder ? L" was moved or renamed outside of Tavro." : L" was deleted from disk.") +
         L"\n\nDo you want to save it to the original location?";
}

bool WatchLooksAt(const Activation& activation) {
  return activation.active && !activation.viewer && !activation.untitled && !activation.fromOwnWindow &&
         !activation.busy;
}

bool WatchOnActivate(HWND window, bool active, HWND previous) {
  Activation activation;
  activation.active = active;
  activation.viewer = g_viewerMode;
  activation.untitled = g_filePath.empty();
  activation.fromOwnWindow = previous && GetWindowThreadProcessId(previous, nullptr) == GetCurrentThreadId();
  activation.busy = g_asking || !IsWindowEnabled(window);
  if (!WatchLooksAt(activation)) return false;
  const int status = CheckFileStatus();
  if (status == kFileFine) return false;
  g_asking = true;
  const int answer =
      ShowMessageBox(window, kBoxYesNoCancel, kFileChangedTitle, FileChangedText(status, DocumentName(g_filePath)).c_str());
  g_asking = false;
  if (answer == kResultYes) {
    FileSave(window);  // through the kept handle if there is one, which recreates nothing
    return false;
  }
  if (answer != kResultNo) return false;
  // The text stays as an untitled document; the handle is left as it is.
  g_filePath.clear();
  return true;
}
