#include <gtest/gtest.h>

#include <set>
#include <string>

#include "document/save_prompt.h"

namespace {

int Status(const std::wstring& path, std::set<std::wstring> existing) {
  return FileStatusOf(path, [&](const std::wstring& p) { return existing.count(p) > 0; });
}

TEST(FileStatus, UntitledOrPresentIsFine) {
  EXPECT_EQ(Status(L"", {}), kFileFine);
  EXPECT_EQ(Status(L"C:\\d\\a.txt", {L"C:\\d\\a.txt"}), kFileFine);
}

TEST(FileStatus, MissingFromAFolderThatExistsCountsAsMoved) {
  EXPECT_EQ(Status(L"C:\\d\\a.txt", {L"C:\\d"}), kFileGoneFromFolder);
  EXPECT_EQ(Status(L"C:/d/a.txt", {L"C:/d"}), kFileGoneFromFolder);
}

TEST(FileStatus, MissingWithItsFolderOrWithoutSeparatorCountsAsDeleted) {
  EXPECT_EQ(Status(L"E:\\gone\\a.txt", {}), kFileGoneWithFolder);
  EXPECT_EQ(Status(L"a.txt", {}), kFileGoneWithFolder);
}

TEST(Drop, TheOpenFileAgainDoesNothing) {
  EXPECT_FALSE(DropOpensFile(L"C:\\d\\a.txt", L"C:\\d\\a.txt"));
  EXPECT_FALSE(DropOpensFile(L"", L"C:\\d\\a.txt"));
  EXPECT_TRUE(DropOpensFile(L"C:\\d\\b.txt", L"C:\\d\\a.txt"));
  // The comparison is exact: another spelling of the same file opens it again.
  EXPECT_TRUE(DropOpensFile(L"C:\\D\\A.TXT", L"C:\\d\\a.txt"));
  EXPECT_TRUE(DropOpensFile(L"C:\\d\\a.txt", L""));
}

TEST(SavePrompt, NameIsAfterTheLastSeparatorOrUntitled) {
  EXPECT_EQ(DocumentName(L""), L"Untitled");
  EXPECT_EQ(DocumentName(L"C:\\d/e\\notes.md"), L"notes.md");
  EXPECT_EQ(DocumentName(L"C:/d/e/x.txt"), L"x.txt");
}

TEST(SavePrompt, FiveTexts) {
  EXPECT_EQ(SaveChangesPromptText(kFileFine, true, L"a.txt"), L"Save changes to \"a.txt\"?");
  EXPECT_EQ(SaveChangesPromptText(kFileGoneWithFolder, true, L"a.txt"),
            L"\"a.txt\" was deleted from disk while open in Tavro.\nDo you want to save your changes?");
  EXPECT_EQ(SaveChangesPromptText(kFileGoneFromFolder, true, L"a.txt"),
            L"\"a.txt\" was moved or renamed while open in Tavro.\nDo you want to save your changes?");
  EXPECT_EQ(SaveChangesPromptText(kFileGoneWithFolder, false, L"a.txt"),
            L"\"a.txt\" was deleted from disk while open in Tavro.\nDo you want to restore it to the original location?");
  EXPECT_EQ(SaveChangesPromptText(kFileGoneFromFolder, false, L"a.txt"),
            L"\"a.txt\" was moved or renamed while open in Tavro.\nDo you want to restore it to the original location?");
}

TEST(SaveAsDialog, SevenFiltersInOrderDoubleTerminated) {
  const wchar_t expected[] =
      L"Text Documents (*.txt)\0*.txt\0"
      L"Markdown (*.md)\0*.md\0"
      L"C/C++ Source Files (*.cpp;*.h;*.c;*.hpp;*.cxx;*.cc)\0*.cpp;*.h;*.c;*.hpp;*.cxx;*.cc\0"
      L"Web Files (*.html;*.css;*.js)\0*.html;*.css;*.js\0"
      L"Data & Configuration (*.json;*.xml;*.ini;*.csv)\0*.json;*.xml;*.ini;*.csv\0"
      L"Scripts & Logs (*.py;*.bat;*.cmd;*.log)\0*.py;*.bat;*.cmd;*.log\0"
      L"All Files (*.*)\0*.*\0";
  // The literal's own terminator is the second zero at the end.
  EXPECT_EQ(SaveAsFilter(), std::wstring(expected, sizeof(expected) / sizeof(wchar_t)));
}

}  // namespace
