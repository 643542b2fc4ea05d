// The Font dialog's rules: sizes, the size field, the family filter, scrolling.
#include "presentation/font_rules.h"

#include <gtest/gtest.h>

#include <vector>

TEST(FontSizes, EighteenRowsInOrder) {
  const std::vector<int> sizes(kFontSizes, kFontSizes + kFontSizeCount);
  EXPECT_EQ(sizes, (std::vector<int>{6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72}));
}

TEST(FontSizes, RowOfAListedSizeAndNoneForOthers) {
  EXPECT_EQ(FontSizeRow(6), 0);
  EXPECT_EQ(FontSizeRow(11), 5);
  EXPECT_EQ(FontSizeRow(72), 17);
  EXPECT_EQ(FontSizeRow(13), -1);  // allowed, yet no row
  EXPECT_EQ(FontSizeRow(200), -1);
}

TEST(FontSizes, OneTo144Allowed) {
  EXPECT_FALSE(FontSizeAllowed(0));
  EXPECT_TRUE(FontSizeAllowed(1));
  EXPECT_TRUE(FontSizeAllowed(13));
  EXPECT_TRUE(FontSizeAllowed(144));
  EXPECT_FALSE(FontSizeAllowed(145));
  EXPECT_FALSE(FontSizeAllowed(200));
  EXPECT_FALSE(FontSizeAllowed(-5));
}

TEST(SizeField, ReadsLikeWtoi) {
  EXPECT_EQ(SizeFieldNumber(L"13"), 13);
  EXPECT_EQ(SizeFieldNumber(L""), 0);
  EXPECT_EQ(SizeFieldNumber(L"0"), 0);
  EXPECT_EQ(SizeFieldNumber(L"145"), 145);
  EXPECT_EQ(SizeFieldNumber(L"  12x"), 12);
  EXPECT_EQ(SizeFieldNumber(L"-4"), -4);
  EXPECT_EQ(SizeFieldNumber(L"x12"), 0);
}

TEST(SizeField, OnlyTheFirstEightCharactersCount) {
  EXPECT_EQ(SizeFieldNumber(L"12345678"), 12345678);
  EXPECT_EQ(SizeFieldNumber(L"000000012"), 1);  // the ninth character is not read
  EXPECT_EQ(SizeFieldNumber(L"0000001299"), 12);
}

TEST(FamilyFilter, OutlineFontsWithoutVerticalVariants) {
  EXPECT_TRUE(KeepFontFamily(L"DejaVu Sans Mono", true));
  EXPECT_FALSE(KeepFontFamily(L"@MS Gothic", true));
  EXPECT_FALSE(KeepFontFamily(L"System", false));  // a bitmap font
  EXPECT_FALSE(KeepFontFamily(L"", true));
  EXPECT_TRUE(KeepFontFamily(L"Mono@Home", true));  // only a leading "@" marks a vertical font
}

TEST(ListScroll, SelectedRowThreeBelowTheTop) {
  EXPECT_EQ(TopRowFor(0), 0);
  EXPECT_EQ(TopRowFor(2), 0);
  EXPECT_EQ(TopRowFor(3), 0);
  EXPECT_EQ(TopRowFor(4), 1);
  EXPECT_EQ(TopRowFor(40), 37);
}
