#include <gtest/gtest.h>

#include "shell/title.h"

TEST(WindowTitle, DefaultProfileModifiedFile) {
  EXPECT_EQ(MakeWindowTitle(L"", L"C:\\docs\\a.txt", true), L"Tavro - a.txt *");
  EXPECT_EQ(MakeWindowTitle(L"default", L"C:/docs/a.txt", false), L"Tavro - a.txt");
}

TEST(WindowTitle, OtherProfileUntitled) {
  EXPECT_EQ(MakeWindowTitle(L"work", L"", false), L"Tavro  [ work ]  Untitled");
}
