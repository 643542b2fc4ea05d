// Paths of the application folder and of the settings file.
#include "settings/data_folders.h"

#include <windows.h>

#include <shlobj.h>

#include "shell/shell.h"

std::wstring GetAppDataFolder() {
  wchar_t appData[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, appData))) return std::wstring();
  std::wstring folder = std::wstring(appData) + L"\\Tavro";
  CreateDirectoryW(folder.c_str(), nullptr);  // usually there already
  return folder;
}

std::wstring GetSettingsFilePath() {
  const std::wstring app = GetAppDataFolder();
  if (app.empty()) return L"tavro.cfg";
  if (g_profileName.empty() || g_profileName == L"default") return app + L"\\tavro.cfg";
  const std::wstring profiles = app + L"\\profiles";
  CreateDirectoryW(profiles.c_str(), nullptr);
  return profiles + L"\\tavro_" + g_profileName + L".cfg";
}
