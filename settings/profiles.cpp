#include "settings/profiles.h"

#include <windows.h>

#include "settings/data_folders.h"
#include "base/app_state.h"

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
