#include "base/path_name.h"

#include <gtest/gtest.h>

TEST(FileNameOf, TakesWhatFollowsTheLastSeparatorOfEitherKind) {
  EXPECT_EQ(FileNameOf(L"C:\\docs\\notes.txt"), L"notes.txt");
  EXPECT_EQ(FileNameOf(L"Z:/tmp/a\\b/report.md"), L"report.md");
  EXPECT_EQ(FileNameOf(L"C:\\docs\\"), L"");
}

TEST(FileNameOf, APathWithoutSeparatorIsItsOwnName) {
  EXPECT_EQ(FileNameOf(L"notes.txt"), L"notes.txt");
  EXPECT_EQ(FileNameOf(L""), L"");
}
