// The profile list: "default" first, then the settings files of the profiles
// folder by their names.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "settings/data_folders.h"
#include "settings/profiles.h"

namespace {

std::vector<std::wstring> Names() {
  std::vector<std::wstring> names;
  for (const ProfileInfo& profile : ListProfiles()) names.push_back(profile.name);
  return names;
}

bool Has(const std::vector<std::wstring>& names, const std::wstring& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

TEST(ProfileNames, FromFileNames) {
  EXPECT_EQ(ProfileNameOfFile(L"tavro_work.cfg"), L"work");
  EXPECT_EQ(ProfileNameOfFile(L"tavro_a.b.cfg"), L"a.b");
  EXPECT_EQ(ProfileNameOfFile(L"tavro_.cfg"), L"");
  EXPECT_EQ(ProfileNameOfFile(L"tavro_x"), L"x");
}

TEST(ProfileList, DefaultFirstThenTheFilesOfTheFolder) {
  std::wstring folder = GetProfilesFolder();
  ASSERT_FALSE(folder.empty());
  const std::vector<std::wstring> files = {L"tavro_listwork.cfg", L"tavro_list-home_2.cfg", L"tavro_.cfg",
                                           L"other_listx.cfg", L"tavro_listtxt.txt"};
  for (const std::wstring& name : files) {
    HANDLE file = CreateFileW((folder + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    CloseHandle(file);
  }
  ASSERT_TRUE(CreateDirectoryW((folder + L"\\tavro_listdir.cfg").c_str(), nullptr));

  std::vector<ProfileInfo> profiles = ListProfiles();
  ASSERT_FALSE(profiles.empty());
  EXPECT_EQ(profiles[0].name, L"default");
  EXPECT_EQ(profiles[0].path, GetAppDataFolder() + L"\\tavro.cfg");
  EXPECT_TRUE(profiles[0].active);  // the test runs as the default profile
  std::vector<std::wstring> names = Names();
  EXPECT_TRUE(Has(names, L"listwork"));
  EXPECT_TRUE(Has(names, L"list-home_2"));
  EXPECT_FALSE(Has(names, L""));          // "tavro_.cfg" has no name
  EXPECT_FALSE(Has(names, L"listx"));     // not a tavro_ file
  EXPECT_FALSE(Has(names, L"listtxt"));   // not a .cfg file
  EXPECT_FALSE(Has(names, L"listdir"));   // a folder
  EXPECT_EQ(std::count(names.begin(), names.end(), L"default"), 1);
  for (const ProfileInfo& profile : profiles) {
    if (profile.name == L"listwork") {
      EXPECT_EQ(profile.path, folder + L"\\tavro_listwork.cfg");
      EXPECT_FALSE(profile.active);
    }
  }

  for (const std::wstring& name : files) DeleteFileW((folder + L"\\" + name).c_str());
  RemoveDirectoryW((folder + L"\\tavro_listdir.cfg").c_str());
  EXPECT_FALSE(Has(Names(), L"listwork"));
}
