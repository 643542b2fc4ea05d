// Paths of the application folder, its subfolders and the settings file.
#include "settings/data_folders.h"

#include <windows.h>

#include <shlobj.h>

#include "base/app_state.h"

std::wstring GetAppDataFolder() {
  wchar_t appData[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, appData))) return std::wstring();
  std::wstring folder = std::wstring(appData) + L"\\Tavro";
  CreateDirectoryW(folder.c_str(), nullptr);  // usually there already
  return folder;
}

namespace {

// <app>\<name>, created if missing; empty when there is no application folder
// or when no folder stands at that path afterwards (a file of that name, say).
std::wstring GetAppSubfolder(const wchar_t* name) {
  const std::wstring app = GetAppDataFolder();
  if (app.empty()) return std::wstring();
  const std::wstring folder = app + L"\\" + name;
  CreateDirectoryW(folder.c_str(), nullptr);  // fails harmlessly when it exists
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) return std::wstring();
  return folder;
}

}  // namespace

std::wstring GetSettingsFilePath() { return ProfileFilePath(g_profileName); }

std::wstring ProfileFilePath(const std::wstring& name) {
  const std::wstring app = GetAppDataFolder();
  if (app.empty()) return L"tavro.cfg";
  if (IsDefaultProfileName(name)) return app + L"\\tavro.cfg";
  const std::wstring profiles = app + L"\\profiles";
  CreateDirectoryW(profiles.c_str(), nullptr);
  return profiles + L"\\tavro_" + name + L".cfg";
}

std::wstring GetProfilesFolder() { return GetAppSubfolder(L"profiles"); }

std::wstring GetChatsFolder() { return GetAppSubfolder(L"chats"); }

std::wstring ChatFolderOfProfile(const std::wstring& label) {
  const std::wstring chats = GetChatsFolder();
  return chats.empty() ? std::wstring() : chats + L"\\" + label;
}

std::wstring GetTempFolder() { return GetAppSubfolder(L"tmp"); }
