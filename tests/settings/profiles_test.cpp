// The profile list: "default" first, then the settings files of the profiles
// folder by their names.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "settings/data_folders.h"
#include "settings/profiles.h"
#include "tests/common/test_folder.h"

namespace {

std::vector<std::wstring> Names() {
  std::vector<std::wstring> names;
  for (const ProfileInfo& profile : ListProfiles()) names.push_back(profile.name);
  return names;
}

bool Has(const std::vector<std::wstring>& names, const std::wstring& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The test's folder without its closing backslash, as the application
// folder comes.
std::wstring AppFolder() {
  std::wstring folder = TestFolder();
  if (!folder.empty() && folder.back() == L'\\') folder.pop_back();
  return folder;
}

void Touch(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
}

// The files of the pattern as the file system hands them out.
std::vector<std::wstring> EnumeratedFiles(const std::wstring& folder) {
  std::vector<std::wstring> files;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\tavro_*.cfg").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return files;
  do files.push_back(found.cFileName);
  while (FindNextFileW(search, &found));
  FindClose(search);
  return files;
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

TEST(ProfileList, WithoutAProfilesFolderOnlyTheDefaultRow) {
  std::vector<ProfileInfo> profiles = ListProfilesIn(AppFolder(), L"");
  ASSERT_EQ(profiles.size(), 1u);
  EXPECT_EQ(profiles[0].name, L"default");
  EXPECT_EQ(profiles[0].path, AppFolder() + L"\\tavro.cfg");
  EXPECT_TRUE(profiles[0].active);
  // Listing creates nothing.
  EXPECT_EQ(GetFileAttributesW((AppFolder() + L"\\profiles").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(ProfileList, NoApplicationFolder) {
  std::vector<ProfileInfo> profiles = ListProfilesIn(L"", L"default");
  ASSERT_EQ(profiles.size(), 1u);
  EXPECT_EQ(profiles[0].name, L"default");
  EXPECT_EQ(profiles[0].path, L"tavro.cfg");
  EXPECT_TRUE(profiles[0].active);
}

TEST(ProfileList, FileSystemOrderNamesAndSkips) {
  const std::wstring folder = AppFolder() + L"\\profiles";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  // Made out of alphabetical order; the listing keeps whatever order the
  // file system gives and sorts nothing.
  for (const wchar_t* name : {L"tavro_zeta.cfg", L"tavro_alpha.cfg", L"tavro_a.b.cfg", L"tavro_.cfg",
                              L"tavro_Mid-1_x.cfg", L"other_beta.cfg", L"tavro_gamma.txt", L"tavro_delta.cfg.bak"}) {
    Touch(folder + L"\\" + name);
  }
  ASSERT_TRUE(CreateDirectoryW((folder + L"\\tavro_folder.cfg").c_str(), nullptr));

  std::vector<std::wstring> expected = {L"default"};
  for (const std::wstring& file : EnumeratedFiles(folder)) {
    if (file == L"tavro_.cfg" || file == L"tavro_folder.cfg") continue;
    expected.push_back(file.substr(6, file.rfind(L'.') - 6));
  }
  std::vector<ProfileInfo> profiles = ListProfilesIn(AppFolder(), L"zeta");
  std::vector<std::wstring> names;
  for (const ProfileInfo& profile : profiles) names.push_back(profile.name);
  EXPECT_EQ(names, expected);
  ASSERT_EQ(profiles.size(), 5u);
  std::vector<std::wstring> sorted(names.begin() + 1, names.end());
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, (std::vector<std::wstring>{L"Mid-1_x", L"a.b", L"alpha", L"zeta"}));

  for (const ProfileInfo& profile : profiles) {
    if (profile.name == L"default") {
      EXPECT_EQ(profile.path, AppFolder() + L"\\tavro.cfg");
      EXPECT_FALSE(profile.active);
    } else {
      EXPECT_EQ(profile.path, folder + L"\\tavro_" + profile.name + L".cfg");
      EXPECT_EQ(profile.active, profile.name == L"zeta") << std::string(profile.name.begin(), profile.name.end());
    }
  }
}

TEST(ProfileList, TheDefaultProfileByEitherSpelling) {
  const std::wstring folder = AppFolder() + L"\\profiles";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  Touch(folder + L"\\tavro_work.cfg");
  for (const wchar_t* present : {L"", L"default"}) {
    std::vector<ProfileInfo> profiles = ListProfilesIn(AppFolder(), present);
    ASSERT_EQ(profiles.size(), 2u);
    EXPECT_TRUE(profiles[0].active);
    EXPECT_EQ(profiles[1].name, L"work");
    EXPECT_FALSE(profiles[1].active);
  }
  // A profile that has no file yet is active nowhere in the list.
  for (const ProfileInfo& profile : ListProfilesIn(AppFolder(), L"elsewhere")) EXPECT_FALSE(profile.active);
}
