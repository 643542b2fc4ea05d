// The profiles of this user: the default one and one per settings file in
// the profiles folder.
#pragma once

#include <string>
#include <vector>

struct ProfileInfo {
  std::wstring name;    // "default" for the default profile
  std::wstring path;    // full path of its settings file
  bool active = false;  // the profile of this process
};

// "default" first, then one row per file <app>\profiles\tavro_*.cfg in the
// order the file system gives; the name is the file name without "tavro_"
// and without its extension. Directories and empty names are skipped.
std::vector<ProfileInfo> ListProfiles();

// The same listing for a given application folder (no closing backslash) and
// a given present profile (empty or "default" for the default one). Nothing
// is created; without a profiles folder only the default row comes back.
std::vector<ProfileInfo> ListProfilesIn(const std::wstring& appFolder, const std::wstring& presentProfile);

// The name of a profile's settings file, "tavro_work.cfg" -> "work".
std::wstring ProfileNameOfFile(const std::wstring& fileName);

// ProfileFilePath(name), the settings file of a profile, is in data_folders.h.

// True for this process's profile; otherwise whether another process holds
// that profile's instance mutex.
bool IsProfileRunning(const std::wstring& name);

// The file-system steps of a delete: the settings file (its read-only
// attribute cleared first), then the loose files of the chat folder and the
// folder itself. False only when the settings file stays; what happens to the
// chat folder is not reported, and subfolders are not entered.
bool DeleteProfileFiles(const std::wstring& settingsPath, const std::wstring& chatFolder);

enum class ProfileMove { kMoved, kMovedWithoutChats, kFailed };
// The file-system steps of a rename: the settings file to its new name, then
// the chat folder when there is one. kMovedWithoutChats when the folder
// exists and could not be moved; kFailed when the settings file stays.
ProfileMove MoveProfileFiles(const std::wstring& oldPath, const std::wstring& newPath,
                             const std::wstring& oldChatFolder, const std::wstring& newChatFolder);
