// The profiles of this user: the default one and one per settings file in
// the profiles folder.
#pragma once

#include <string>
#include <vector>

struct ProfileInfo {
  std::wstring name;
};

// "default" first, then one row per file <app>\profiles\tavro_*.cfg in the
// order the file system gives.
std::vector<ProfileInfo> ListProfiles();
