#include <gtest/gtest.h>

#include "shell/command_line.h"

namespace {

StartupArguments Parse(std::vector<std::wstring> args) {
  args.insert(args.begin(), L"Tavro.exe");
  return ParseStartupArguments(args);
}

TEST(CommandLine, ProfileCharactersOutsideTheRuleBecomeUnderscores) {
  EXPECT_EQ(Parse({L"--profile=a b/c"}).profileName, L"a_b_c");
  EXPECT_EQ(Parse({L"--profile=work-2_x"}).profileName, L"work-2_x");
  EXPECT_EQ(SanitizeProfileName(L"a.b:c\\d*"), L"a_b_c_d_");
}

TEST(CommandLine, EmptyProfileOptionLeavesTheDefault) {
  EXPECT_EQ(Parse({L"--profile="}).profileName, L"");
  EXPECT_EQ(Parse({}).profileName, L"");
}

TEST(CommandLine, LastProfileOptionWinsWherEverItStands) {
  EXPECT_EQ(Parse({L"--profile=one", L"x.txt", L"--profile=two"}).profileName, L"two");
}

TEST(CommandLine, ProfilePrefixIsCaseSensitive) {
  EXPECT_EQ(Parse({L"--Profile=work"}).profileName, L"");
}

TEST(CommandLine, FirstArgumentIsTheFile) {
  StartupArguments a = Parse({L"C:\\docs\\a.txt", L"C:\\docs\\b.txt"});
  EXPECT_FALSE(a.viewer);
  EXPECT_TRUE(a.hasFileToOpen);
  EXPECT_EQ(a.fileToOpen, L"C:\\docs\\a.txt");
}

TEST(CommandLine, OtherOptionsFirstOpenNothing) {
  EXPECT_FALSE(Parse({L"--profile=work", L"a.txt"}).hasFileToOpen);
  EXPECT_FALSE(Parse({L"--something"}).hasFileToOpen);
}

TEST(CommandLine, ViewerOnlyAsTheVeryFirstArgument) {
  StartupArguments viewer = Parse({L"--viewer", L"C:\\t\\big.txt"});
  EXPECT_TRUE(viewer.viewer);
  EXPECT_TRUE(viewer.hasFileToOpen);
  EXPECT_EQ(viewer.fileToOpen, L"C:\\t\\big.txt");

  StartupArguments second = Parse({L"x.txt", L"--viewer"});
  EXPECT_FALSE(second.viewer);
  EXPECT_EQ(second.fileToOpen, L"x.txt");

  EXPECT_FALSE(Parse({L"--VIEWER", L"x.txt"}).viewer);
}

TEST(CommandLine, ViewerAloneOpensNothing) {
  StartupArguments alone = Parse({L"--viewer"});
  EXPECT_TRUE(alone.viewer);
  EXPECT_FALSE(alone.hasFileToOpen);
}

}  // namespace
