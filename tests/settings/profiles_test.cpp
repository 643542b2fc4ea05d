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

namespace {

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// A read-only settings file and a chat folder with two chats, an index and a
// subfolder, as a profile that has been used leaves them.
void MakeUsedProfile(const std::wstring& settings, const std::wstring& chats) {
  Touch(settings);
  SetFileAttributesW(settings.c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_TRUE(CreateDirectoryW(chats.c_str(), nullptr));
  for (const wchar_t* name : {L"\\index.json", L"\\chat_1.json", L"\\chat_2.json"}) Touch(chats + name);
  SetFileAttributesW((chats + L"\\chat_1.json").c_str(), FILE_ATTRIBUTE_READONLY);
}

}  // namespace

TEST(ProfileStore, DeleteTakesTheFileAndTheLooseChatFiles) {
  const std::wstring settings = AppFolder() + L"\\tavro_gone.cfg", chats = AppFolder() + L"\\chats_gone";
  MakeUsedProfile(settings, chats);
  EXPECT_TRUE(DeleteProfileFiles(settings, chats));
  EXPECT_FALSE(Exists(settings));
  EXPECT_FALSE(Exists(chats));
}

TEST(ProfileStore, DeleteLeavesAChatFolderWithASubfolder) {
  const std::wstring settings = AppFolder() + L"\\tavro_sub.cfg", chats = AppFolder() + L"\\chats_sub";
  MakeUsedProfile(settings, chats);
  ASSERT_TRUE(CreateDirectoryW((chats + L"\\old").c_str(), nullptr));
  Touch(chats + L"\\old\\kept.json");
  EXPECT_TRUE(DeleteProfileFiles(settings, chats));  // the folder's fate isn't reported
  EXPECT_FALSE(Exists(settings));
  EXPECT_FALSE(Exists(chats + L"\\index.json"));
  EXPECT_TRUE(Exists(chats + L"\\old\\kept.json"));  // subfolders are not entered
}

TEST(ProfileStore, DeleteWithoutChatFolderAndOfAMissingFile) {
  const std::wstring settings = AppFolder() + L"\\tavro_lone.cfg";
  Touch(settings);
  EXPECT_TRUE(DeleteProfileFiles(settings, AppFolder() + L"\\no_chats"));
  EXPECT_FALSE(Exists(settings));
  EXPECT_FALSE(DeleteProfileFiles(settings, AppFolder() + L"\\no_chats"));
}

TEST(ProfileStore, RenameMovesTheFileAndTheChatFolder) {
  const std::wstring from = AppFolder() + L"\\tavro_old.cfg", to = AppFolder() + L"\\tavro_new.cfg";
  const std::wstring oldChats = AppFolder() + L"\\chats_old", newChats = AppFolder() + L"\\chats_new";
  MakeUsedProfile(from, oldChats);
  EXPECT_EQ(MoveProfileFiles(from, to, oldChats, newChats), ProfileMove::kMoved);
  EXPECT_FALSE(Exists(from));
  EXPECT_TRUE(Exists(to));
  // Not read-only any more, until its next save.
  EXPECT_FALSE(GetFileAttributesW(to.c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(Exists(oldChats));
  for (const wchar_t* name : {L"\\index.json", L"\\chat_1.json", L"\\chat_2.json"}) {
    EXPECT_TRUE(Exists(newChats + name));
  }
}

TEST(ProfileStore, RenameWithoutChatFolderIsAPlainRename) {
  const std::wstring from = AppFolder() + L"\\tavro_a.cfg", to = AppFolder() + L"\\tavro_b.cfg";
  Touch(from);
  EXPECT_EQ(MoveProfileFiles(from, to, AppFolder() + L"\\chats_a", AppFolder() + L"\\chats_b"), ProfileMove::kMoved);
  EXPECT_TRUE(Exists(to));
  EXPECT_FALSE(Exists(AppFolder() + L"\\chats_b"));
}

TEST(ProfileStore, RenameOfAMissingFileFails) {
  EXPECT_EQ(MoveProfileFiles(AppFolder() + L"\\tavro_none.cfg", AppFolder() + L"\\tavro_some.cfg", L"", L""),
            ProfileMove::kFailed);
}

TEST(ProfileStore, ChatsThatCannotMoveStayAndTheRenameStands) {
  const std::wstring from = AppFolder() + L"\\tavro_c.cfg", to = AppFolder() + L"\\tavro_d.cfg";
  const std::wstring oldChats = AppFolder() + L"\\chats_c", newChats = AppFolder() + L"\\chats_d";
  MakeUsedProfile(from, oldChats);
  // The new chat folder's place is taken by a file.
  Touch(newChats);
  EXPECT_EQ(MoveProfileFiles(from, to, oldChats, newChats + L"\\inner\\deeper"), ProfileMove::kMovedWithoutChats);
  EXPECT_TRUE(Exists(to));
  EXPECT_TRUE(Exists(oldChats + L"\\index.json"));
}

TEST(ProfileStore, SettingsFileOfAProfile) {
  EXPECT_EQ(ProfileFilePath(L"default"), GetAppDataFolder() + L"\\tavro.cfg");
  EXPECT_EQ(ProfileFilePath(L""), GetAppDataFolder() + L"\\tavro.cfg");
  EXPECT_EQ(ProfileFilePath(L"work"), GetAppDataFolder() + L"\\profiles\\tavro_work.cfg");
  EXPECT_TRUE(GetFileAttributesW((GetAppDataFolder() + L"\\profiles").c_str()) & FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(ChatFolderOfProfile(L"work"), GetAppDataFolder() + L"\\chats\\work");
}

TEST(ProfileStore, RunningProfiles) {
  // The test runs as the default profile, which counts as running.
  EXPECT_TRUE(IsProfileRunning(L"default"));
  EXPECT_TRUE(IsProfileRunning(L""));
  EXPECT_FALSE(IsProfileRunning(L"unit-nobody"));
  HANDLE held = CreateMutexW(nullptr, FALSE, L"Local\\Tavro_Instance_unit-somebody");
  ASSERT_NE(held, nullptr);
  EXPECT_TRUE(IsProfileRunning(L"unit-somebody"));
  CloseHandle(held);
  EXPECT_FALSE(IsProfileRunning(L"unit-somebody"));
}
