#include "settings/profiles.h"

std::vector<ProfileInfo> ListProfiles() { return {ProfileInfo{L"default"}}; }
