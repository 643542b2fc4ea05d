// The Settings dialog's rules: the font line, the interval list, the
// transparency field, the theme row.
#include "shell/settings_rules.h"

#include <gtest/gtest.h>

#include <string>

TEST(SettingsFontLine, NameSizeBoldItalic) {
  EXPECT_EQ(SettingsFontLine(L"Consolas", 11, false, false), L"Font: Consolas, 11 pt");
  EXPECT_EQ(SettingsFontLine(L"Consolas", 11, true, false), L"Font: Consolas, 11 pt Bold");
  EXPECT_EQ(SettingsFontLine(L"Liberation Serif", 200, false, true), L"Font: Liberation Serif, 200 pt Italic");
  EXPECT_EQ(SettingsFontLine(L"A", 9, true, true), L"Font: A, 9 pt Bold Italic");
}

TEST(IntervalList, FiveRowsWithMinutesAsData) {
  const wchar_t* labels[] = {L"1 min", L"5 min", L"10 min", L"30 min", L"60 min"};
  const uint32_t minutes[] = {1, 5, 10, 30, 60};
  for (int row = 0; row < kIntervalRowCount; ++row) {
    EXPECT_EQ(std::wstring(kIntervalRows[row].label), labels[row]);
    EXPECT_EQ(kIntervalRows[row].minutes, minutes[row]);
  }
}

TEST(IntervalList, StoredValueOrFiveWhenOffOrRowZero) {
  EXPECT_EQ(IntervalRowOf(0), 1);   // off shows "5 min"
  EXPECT_EQ(IntervalRowOf(1), 0);
  EXPECT_EQ(IntervalRowOf(5), 1);
  EXPECT_EQ(IntervalRowOf(30), 3);
  EXPECT_EQ(IntervalRowOf(60), 4);
  EXPECT_EQ(IntervalRowOf(7), 0);   // an older file's 7 shows "1 min"
  EXPECT_EQ(IntervalRowOf(0xFFFFFFFFu), 0);
}

TEST(IntervalList, ChosenMinutes) {
  EXPECT_EQ(ChosenAutoSaveMinutes(false, 30), 0u);
  EXPECT_EQ(ChosenAutoSaveMinutes(true, 30), 30u);
  EXPECT_EQ(ChosenAutoSaveMinutes(true, -1), 5u);  // nothing selected
}

TEST(TransparencyField, ZeroToFifty) {
  EXPECT_TRUE(TransparencyAccepted(true, 0));
  EXPECT_TRUE(TransparencyAccepted(true, 50));
  EXPECT_FALSE(TransparencyAccepted(true, 51));
  EXPECT_FALSE(TransparencyAccepted(false, 0));  // an empty field is no number
}

TEST(ThemeRow, SixOrMoreReadsRowZero) {
  EXPECT_EQ(ThemeRowOf(0), 0);
  EXPECT_EQ(ThemeRowOf(5), 5);
  EXPECT_EQ(ThemeRowOf(6), 0);
  EXPECT_EQ(ThemeRowOf(99), 0);
}
