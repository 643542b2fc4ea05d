#include "export/progress_text.h"

#include <gtest/gtest.h>

TEST(ProgressText, ElapsedTimes) {
  EXPECT_EQ(FormatElapsed(9500), L"9.500 sec");
  EXPECT_EQ(FormatElapsed(65000), L"1:05 min");
  EXPECT_EQ(FormatElapsed(3725000), L"1:02:05");
}

TEST(ProgressText, StatusLine) {
  EXPECT_EQ(ExportStatusText(45, 100), L"Exporting line 45 of 100  (45%)");
  EXPECT_EQ(ExportStatusText(3, 0), L"Exporting line 3 of 0  (0%)");
  EXPECT_EQ(ExportStatusText(-1, 100), L"Finalizing...");
}

TEST(ProgressText, Pacing) {
  EXPECT_EQ(PacingTarget(100), 90);
  EXPECT_EQ(PacingStep(90), 2);
  EXPECT_EQ(PacingTarget(10), 9);
  EXPECT_EQ(PacingStep(9), 1);
  EXPECT_EQ(PacingTarget(0), 1);
  EXPECT_EQ(PacingTarget(1), 1);
}
