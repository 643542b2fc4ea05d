#include "settings/profiles.h"

#include <windows.h>

#include <shellapi.h>

#include "settings/data_folders.h"
#include "base/app_state.h"
#include "base/file_attributes.h"

std::wstring ProfileNameOfFile(const std::wstring& fileName) {
  std::wstring name = fileName.size() > 6 ? fileName.substr(6) : std::wstring();
  size_t dot = name.rfind(L'.');
  if (dot != std::wstring::npos) name.erase(dot);
  return name;
}

std::vector<ProfileInfo> ListProfilesIn(const std::wstring& appFolder, const std::wstring& presentProfile) {
  const bool defaultActive = IsDefaultProfileName(presentProfile);
  std::vector<ProfileInfo> profiles;
  // Without an application folder the settings file is the relative one.
  profiles.push_back({kDefaultProfileName, appFolder.empty() ? std::wstring(L"tavro.cfg") : appFolder + L"\\tavro.cfg",
                      defaultActive});
  if (appFolder.empty()) return profiles;
  const std::wstring folder = appFolder + L"\\profiles";
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\tavro_*.cfg").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return profiles;
  do {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    std::wstring name = ProfileNameOfFile(found.cFileName);
    if (name.empty()) continue;
    profiles.push_back({name, folder + L"\\" + found.cFileName, !defaultActive && name == presentProfile});
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return profiles;
}

std::vector<ProfileInfo> ListProfiles() { return ListProfilesIn(GetAppDataFolder(), g_profileName); }

bool IsProfileRunning(const std::wstring& name) {
  if (ProfileLabel(name) == ProfileLabel(g_profileName)) return true;
  HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, (kInstanceMutexPrefix + ProfileLabel(name)).c_str());
  if (!mutex) return false;
  CloseHandle(mutex);
  return true;
}

namespace {

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The shell's folder move wants each path ended by two zeros.
std::wstring DoubleZeroTerminated(const std::wstring& path) { return path + std::wstring(2, L'\0'); }

}  // namespace

bool DeleteProfileFiles(const std::wstring& settingsPath, const std::wstring& chatFolder) {
  ClearReadOnlyAttribute(settingsPath);
  if (!DeleteFileW(settingsPath.c_str())) return false;
  if (chatFolder.empty() || !IsFolder(chatFolder)) return true;
  ClearReadOnlyAttribute(chatFolder);
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((chatFolder + L"\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
      const std::wstring file = chatFolder + L"\\" + found.cFileName;
      SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(file.c_str());
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  RemoveDirectoryW(chatFolder.c_str());
  return true;
}

ProfileMove MoveProfileFiles(const std::wstring& oldPath, const std::wstring& newPath,
                             const std::wstring& oldChatFolder, const std::wstring& newChatFolder) {
  ClearReadOnlyAttribute(oldPath);
  if (!MoveFileW(oldPath.c_str(), newPath.c_str())) return ProfileMove::kFailed;
  if (oldChatFolder.empty() || !IsFolder(oldChatFolder)) return ProfileMove::kMoved;
  const std::wstring from = DoubleZeroTerminated(oldChatFolder);
  const std::wstring to = DoubleZeroTerminated(newChatFolder);
  SHFILEOPSTRUCTW operation = {};
  operation.wFunc = FO_MOVE;
  operation.pFrom = from.c_str();
  operation.pTo = to.c_str();
  operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
  const int result = SHFileOperationW(&operation);
  return result != 0 || operation.fAnyOperationsAborted ? ProfileMove::kMovedWithoutChats : ProfileMove::kMoved;
}
