#include "shell/profile_actions.h"

#include <shellapi.h>

#include "base/app_state.h"
#include "presentation/message_box.h"
#include "settings/data_folders.h"
#include "settings/profile_rules.h"
#include "settings/profiles.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kInvalidNameTitle[] = L"Invalid Name";
constexpr wchar_t kInvalidNameText[] =
    L"Max 25 characters. Only letters, numbers, hyphens, and underscores allowed.";
constexpr wchar_t kNameTakenText[] = L"A profile with this name already exists.";
constexpr wchar_t kErrorTitle[] = L"Error";
constexpr wchar_t kCannotDeleteTitle[] = L"Cannot Delete";

void Report(HWND owner, const wchar_t* title, const std::wstring& text) {
  ShowMessageBox(owner, kBoxOk, title, text.c_str());
}

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace

bool CreateProfile(HWND owner) {
  for (;;) {
    wchar_t name[kInputBoxCapacity] = {};
    if (!ShowInputBox(owner, L"New Profile", L"Enter profile name:", name)) return false;
    if (!IsValidProfileName(name)) {
      Report(owner, kInvalidNameTitle, kInvalidNameText);
      continue;
    }
    const std::wstring path = ProfileFilePath(name);
    if (FileExists(path)) {
      Report(owner, L"Profile Exists", kNameTakenText);
      continue;
    }
    // A copy of this instance's settings as they stand in memory, key,
    // recent files and last file included.
    if (!SaveSettingsToPath(path)) {
      Report(owner, kErrorTitle, L"Failed to create profile.");
      return false;
    }
    return true;
  }
}

bool DeleteProfile(const std::wstring& name, HWND owner) {
  if (name == kDefaultProfileName) {
    Report(owner, kCannotDeleteTitle, L"Cannot delete the default profile.");
    return false;
  }
  if (ProfileLabel(name) == ProfileLabel(g_profileName)) {
    Report(owner, kCannotDeleteTitle, L"Cannot delete the currently active profile.\nSwitch to another profile first.");
    return false;
  }
  if (ShowMessageBox(owner, kBoxYesNo, L"Delete Profile", DeleteQuestionText(name).c_str()) != kResultYes) return false;
  if (!DeleteProfileFiles(ProfileFilePath(name), ChatFolderOfProfile(name))) {
    Report(owner, kErrorTitle, L"Failed to delete profile.");
    return false;
  }
  return true;
}

bool RenameProfile(const std::wstring& oldName, const std::wstring& newName, HWND owner) {
  if (oldName == kDefaultProfileName) {
    Report(owner, L"Cannot Rename", L"Cannot rename the default profile.");
    return false;
  }
  if (!IsValidProfileName(newName)) {
    Report(owner, kInvalidNameTitle, kInvalidNameText);
    return false;
  }
  const std::wstring newPath = ProfileFilePath(newName);
  if (FileExists(newPath)) {
    Report(owner, L"Name Exists", kNameTakenText);
    return false;
  }
  switch (MoveProfileFiles(ProfileFilePath(oldName), newPath, ChatFolderOfProfile(oldName),
                           ChatFolderOfProfile(newName))) {
    case ProfileMove::kFailed:
      Report(owner, kErrorTitle, L"Failed to rename profile.");
      return false;
    case ProfileMove::kMovedWithoutChats:
      Report(owner, L"Warning",
             L"Profile renamed but chat history could not be migrated.\nYour chats are still available in the old "
             L"location.");
      break;
    case ProfileMove::kMoved:
      break;
  }
  Report(owner, L"Profile Renamed", RenamedText(oldName, newName));
  return true;
}

void ActivateProfile(const std::wstring& name, HWND owner) {
  if (ProfileLabel(name) == ProfileLabel(g_profileName)) {
    Report(owner, L"Already Active", AlreadyActiveText(name));
    return;
  }
  wchar_t exe[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  const std::wstring parameters = L"--profile=" + name;
  SHELLEXECUTEINFOW start = {};
  start.cbSize = sizeof(start);
  start.hwnd = owner;
  start.lpVerb = L"open";
  start.lpFile = exe;
  start.lpParameters = parameters.c_str();
  start.nShow = SW_SHOWNORMAL;
  if (!ShellExecuteExW(&start)) Report(owner, kErrorTitle, L"Failed to start new instance.");
}
