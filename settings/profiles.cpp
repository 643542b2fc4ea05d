#include "settings/profiles.h"

#include <windows.h>

#include "settings/data_folders.h"
#include "shell/shell.h"

std::wstring ProfileNameOfFile(const std::wstring& fileName) {
  std::wstring name = fileName.size() > 6 ? fileName.substr(6) : std::wstring();
  size_t dot = name.rfind(L'.');
  if (dot != std::wstring::npos) name.erase(dot);
  return name;
}

std::vector<ProfileInfo> ListProfiles() {
  const bool defaultActive = g_profileName.empty() || g_profileName == L"default";
  std::vector<ProfileInfo> profiles;
  std::wstring app = GetAppDataFolder();
  profiles.push_back({L"default", app.empty() ? std::wstring() : app + L"\\tavro.cfg", defaultActive});
  std::wstring folder = GetProfilesFolder();
  if (folder.empty()) return profiles;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\tavro_*.cfg").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return profiles;
  do {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    std::wstring name = ProfileNameOfFile(found.cFileName);
    if (name.empty()) continue;
    profiles.push_back({name, folder + L"\\" + found.cFileName, !defaultActive && name == g_profileName});
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return profiles;
}
