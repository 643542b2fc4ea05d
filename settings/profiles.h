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
