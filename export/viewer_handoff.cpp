#include "export/viewer_handoff.h"

#include <cstdio>
#include <string>

#include "base/app_state.h"
#include "Scintilla.h"
#include "settings/temp_files.h"

std::string EditorTextUtf8() {
  LRESULT length = SendEditor(SCI_GETLENGTH);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  SendEditor(SCI_GETTEXT, static_cast<WPARAM>(length) + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

namespace {

// The editor's bytes into path, then a Viewer on it; silent on an empty path
// or a file that can't be opened.
void HandTextToViewer(HWND owner, const std::wstring& path) {
  std::string text = EditorTextUtf8();
  if (path.empty()) return;
  FILE* file = _wfopen(path.c_str(), L"wb");
  if (!file) return;
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
  LaunchViewer(owner, path, kTextViewerWidth, kTextViewerHeight);
}

}  // namespace

void LaunchViewer(HWND owner, const std::wstring& path, int width, int height) {
  wchar_t exe[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  std::wstring commandLine = L"\"" + std::wstring(exe) + L"\" --viewer \"" + path + L"\"";
  RECT owned = {};
  if (owner) GetWindowRect(owner, &owned);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USEPOSITION | STARTF_USESIZE;
  startup.dwX = static_cast<DWORD>(owned.left + 40);
  startup.dwY = static_cast<DWORD>(owned.top + 40);
  startup.dwXSize = static_cast<DWORD>(width);
  startup.dwYSize = static_cast<DWORD>(height);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    return;
  if (HANDLE job = CreateJobObjectW(nullptr, nullptr)) {
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    AssignProcessToJobObject(job, process.hProcess);
    // The previous job goes, and with it the Viewers of the previous hand-off.
    if (g_viewerJob) CloseHandle(g_viewerJob);
    g_viewerJob = job;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

void OpenFileInViewer(HWND owner, const std::wstring& path) {
  if (path.empty()) return;
  LaunchViewer(owner, path, kPageViewerWidth, kPageViewerHeight);
}

void OpenTextInViewer(HWND owner) { HandTextToViewer(owner, MakeTempFilePath(L"temp_txt", L"txt")); }

void OpenPreviewTextInViewer(HWND owner) { HandTextToViewer(owner, MakeViewerTempTextPath()); }

void CloseViewerJob() {
  if (!g_viewerJob) return;
  CloseHandle(g_viewerJob);
  g_viewerJob = nullptr;
}
