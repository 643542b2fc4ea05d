#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "document/recent_files.h"

namespace {

struct List {
  RecentSlots slots;
  List() { memset(slots, 0, sizeof(slots)); }
  // The filled slots up to the first empty one.
  std::vector<std::wstring> Paths() const {
    std::vector<std::wstring> paths;
    for (int i = 0; i < kRecentSlotCount && slots[i][0]; ++i) paths.push_back(RecentSlotPath(slots, i));
    return paths;
  }
  int Filled() const {
    int filled = 0;
    for (const auto& slot : slots) filled += slot[0] != 0;
    return filled;
  }
};

std::wstring Name(int i) { return L"C:\\docs\\f" + std::to_wstring(i) + L".txt"; }

TEST(RecentFiles, NewestFirstWithoutGaps) {
  List list;
  PutRecentPathFirst(list.slots, L"C:\\a.txt");
  PutRecentPathFirst(list.slots, L"C:\\b.txt");
  PutRecentPathFirst(list.slots, L"C:\\c.txt");
  EXPECT_EQ(list.Paths(), (std::vector<std::wstring>{L"C:\\c.txt", L"C:\\b.txt", L"C:\\a.txt"}));
  EXPECT_EQ(list.Filled(), 3);
}

TEST(RecentFiles, EmptyPathChangesNothing) {
  List list;
  PutRecentPathFirst(list.slots, L"C:\\a.txt");
  PutRecentPathFirst(list.slots, L"");
  EXPECT_EQ(list.Paths(), std::vector<std::wstring>{L"C:\\a.txt"});
  EXPECT_EQ(list.Filled(), 1);
}

TEST(RecentFiles, SameFileInAnotherCaseMovesUpWithTheNewSpelling) {
  List list;
  PutRecentPathFirst(list.slots, L"c:\\a.txt");
  for (int i = 0; i < 4; ++i) PutRecentPathFirst(list.slots, Name(i));
  ASSERT_EQ(RecentSlotPath(list.slots, 4), L"c:\\a.txt");
  PutRecentPathFirst(list.slots, L"C:\\A.txt");
  EXPECT_EQ(list.Paths(), (std::vector<std::wstring>{L"C:\\A.txt", Name(3), Name(2), Name(1), Name(0)}));
}

TEST(RecentFiles, TheTopEntryAgainStaysWhereItIs) {
  List list;
  PutRecentPathFirst(list.slots, L"C:\\a.txt");
  PutRecentPathFirst(list.slots, L"C:\\b.txt");
  PutRecentPathFirst(list.slots, L"c:\\B.TXT");
  EXPECT_EQ(list.Paths(), (std::vector<std::wstring>{L"c:\\B.TXT", L"C:\\a.txt"}));
}

TEST(RecentFiles, AnEleventhFileDropsTheOldest) {
  List list;
  for (int i = 0; i < 11; ++i) PutRecentPathFirst(list.slots, Name(i));
  std::vector<std::wstring> expected;
  for (int i = 10; i >= 1; --i) expected.push_back(Name(i));
  EXPECT_EQ(list.Paths(), expected);
}

TEST(RecentFiles, AFileFromTheLastSlotMovesUpWithoutLosingAny) {
  List list;
  for (int i = 0; i < 10; ++i) PutRecentPathFirst(list.slots, Name(i));
  PutRecentPathFirst(list.slots, Name(0));  // in slot 9
  std::vector<std::wstring> expected{Name(0)};
  for (int i = 9; i >= 1; --i) expected.push_back(Name(i));
  EXPECT_EQ(list.Paths(), expected);
}

TEST(RecentFiles, LongPathIsCutAt259Units) {
  List list;
  const std::wstring longPath = L"C:\\" + std::wstring(400, L'x');
  PutRecentPathFirst(list.slots, longPath);
  EXPECT_EQ(RecentSlotPath(list.slots, 0), longPath.substr(0, 259));
  EXPECT_EQ(list.slots[0][259], L'\0');
}

TEST(RecentFiles, RemovingMovesTheRestUp) {
  List list;
  for (int i = 0; i < 4; ++i) PutRecentPathFirst(list.slots, Name(i));
  EXPECT_TRUE(TakeRecentSlotOut(list.slots, 1));
  EXPECT_EQ(list.Paths(), (std::vector<std::wstring>{Name(3), Name(1), Name(0)}));
  EXPECT_EQ(list.Filled(), 3);
}

TEST(RecentFiles, RemovingSlotNineClearsItAndMovesNothing) {
  List list;
  for (int i = 0; i < 10; ++i) PutRecentPathFirst(list.slots, Name(i));
  EXPECT_TRUE(TakeRecentSlotOut(list.slots, 9));
  std::vector<std::wstring> expected;
  for (int i = 9; i >= 1; --i) expected.push_back(Name(i));
  EXPECT_EQ(list.Paths(), expected);
  for (SettingsChar unit : list.slots[9]) EXPECT_EQ(unit, 0);
}

TEST(RecentFiles, RemovingOutsideTheTenSlotsDoesNothing) {
  List list;
  PutRecentPathFirst(list.slots, L"C:\\a.txt");
  EXPECT_FALSE(TakeRecentSlotOut(list.slots, -1));
  EXPECT_FALSE(TakeRecentSlotOut(list.slots, 10));
  EXPECT_EQ(list.Paths(), std::vector<std::wstring>{L"C:\\a.txt"});
  EXPECT_EQ(RecentSlotPath(list.slots, 10), L"");
  EXPECT_EQ(RecentSlotPath(list.slots, 1), L"");
}

TEST(RecentFiles, MissingFileQuestion) {
  EXPECT_EQ(RecentFileMissingText(L"gone.txt"),
            L"\"gone.txt\" no longer exists on disk.\n\nRemove it from the Recent Files list?");
  EXPECT_STREQ(kRecentFileMissingTitle, L"Tavro \u00e2\u20ac\u201d Recent Files");
  EXPECT_STREQ(kClearRecentFilesTitle, L"Tavro - Recent Files");
  EXPECT_STREQ(kClearRecentFilesText, L"Clear the entire Recent Files list?");
}

}  // namespace
