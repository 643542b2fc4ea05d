// Theme rows against the table, index mapping, title-bar rules and alpha.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "presentation/themes.h"

namespace {

// The table as designers write it: #RRGGBB per field, rows in order.
const char* const kExpected[35][6] = {
    {"#1E1E1E", "#FAFAFA", "#E4EEFF", "#E4FAE4", "#1C1C1A", "#F8EEDE"},  // 0 windowBackground
    {"#1C1C1E", "#FFFFFF", "#EBF4FF", "#EBFFEB", "#20201E", "#FFF8EB"},  // 1 editorBackground
    {"#19191B", "#F5F5F5", "#DCE8FA", "#DCF5DC", "#1A1A18", "#F2E8D7"},  // 2 toolbarBackground
    {"#161618", "#F0F0F0", "#D2E0F5", "#D2EED2", "#161614", "#EBE0CD"},  // 3 statusBackground
    {"#DCDCDC", "#141414", "#0F1E3C", "#003200", "#D2D2BE", "#462A12"},  // 4 dialogText
    {"#D4D4D4", "#000000", "#0A1432", "#002800", "#DCDAC8", "#3C230C"},  // 5 editorText
    {"#6E6E6E", "#A0A0A0", "#8C9BB9", "#82AF82", "#6E6C5F", "#B49B82"},  // 6 mutedText
    {"#B4B4B4", "#505050", "#32466E", "#005000", "#AAA896", "#644123"},  // 7 statusText
    {"#262628", "#F0F0F0", "#D7E4F8", "#D7F2D7", "#262623", "#EEE4D2"},  // 8 marginBackground
    {"#646469", "#969696", "#829BC8", "#64A064", "#646255", "#AA8764"},  // 9 marginText
    {"#C8C8C8", "#282828", "#143278", "#005000", "#C8C6B4", "#503214"},  // 10 marginCaretRow
    {"#28282A", "#FFFFFF", "#F0F8FF", "#F0FFF0", "#282825", "#FFF5E4"},  // 11 controlBackground
    {"#3A3A3E", "#EBEBEB", "#DCEAFC", "#DAF5DA", "#3A3934", "#F0E4D0"},  // 12 controlHover
    {"#46464B", "#D2D2D2", "#B4C8E6", "#A0D2A0", "#44423C", "#C8AC8C"},  // 13 controlBorder
    {"#DCDCDC", "#3C3C3C", "#1E3C6E", "#004600", "#D2D0C0", "#503214"},  // 14 controlText
    {"#FFFFFF", "#000000", "#001E5A", "#006400", "#FFFDE6", "#64411C"},  // 15 controlTextActive
    {"#646464", "#A0A0A0", "#96A5C3", "#82AF82", "#646258", "#B49B82"},  // 16 controlTextDisabled
    {"#37373A", "#D2D2D2", "#AAC3EB", "#9BDC9B", "#373530", "#D2B99B"},  // 17 separator
    {"#46464B", "#C3C3C3", "#9BB6E1", "#8CCD8C", "#44423C", "#C6AC8C"},  // 18 buttonBorderFocused
    {"#323237", "#E1E1E1", "#D2E1F0", "#D2EBD2", "#2D2D3C", "#D2C3A5"},  // 19 buttonFace
    {"#232328", "#C8C8C8", "#B9CDE1", "#B9D7B9", "#1E1E2D", "#BEAC8A"},  // 20 buttonFacePressed
    {"#505055", "#B4B4B4", "#A0BED7", "#96C396", "#46465A", "#AA946E"},  // 21 buttonBorder
    {"#DCDCDC", "#1E1E1E", "#142846", "#143214", "#B4B4D2", "#3C280F"},  // 22 buttonText
    {"#232326", "#FFFFFF", "#F0F6FC", "#F0FAF0", "#1C1C28", "#FAF0DC"},  // 23 listBackground
    {"#1E1E21", "#F2F2F2", "#E4EEF8", "#E4F4E4", "#161623", "#F2E6D0"},  // 24 dialogBackground
    {"#DCDCDC", "#000000", "#002878", "#005000", "#DCDAC8", "#503214"},  // 25 caretColour
    {"#264F78", "#ADD6FF", "#A0C3F0", "#96DC96", "#46412D", "#D2B28A"},  // 26 selectionBackground
    {"#FFFFFF", "#000000", "#000000", "#000000", "#FFFDE1", "#000000"},  // 27 selectionText
    {"1", "0", "0", "0", "1", "0"},  // 28 isDark
    {"#569CD6", "#0000FF", "#003CC8", "#006400", "#82B9FF", "#6E3C14"},  // 29 syntaxKeyword
    {"#6A9955", "#008000", "#006E28", "#50A050", "#82AA78", "#9B764B"},  // 30 syntaxComment
    {"#CE9178", "#A31515", "#AA2828", "#A03C00", "#EBAF8C", "#B94B2D"},  // 31 syntaxString
    {"#B5CEA8", "#098658", "#0064B4", "#00783C", "#C3DAAF", "#64501E"},  // 32 syntaxNumber
    {"#9CDCFE", "#6464B4", "#5A5AAA", "#3C643C", "#AFD7FA", "#7D5F41"},  // 33 syntaxType
    {"#B4B4B4", "#000000", "#282850", "#143C14", "#C3C0AF", "#503719"},  // 34 syntaxOperator
};

uint32_t Field(const ThemeColors& row, int field) {
  uint32_t values[35];
  std::memcpy(values, &row, sizeof(values));
  return values[field];
}

// #RRGGBB to COLORREF 0x00BBGGRR; "0" and "1" stand as numbers.
uint32_t Expected(const char* text) {
  if (text[0] != '#') return static_cast<uint32_t>(std::stoul(text));
  uint32_t rgb = static_cast<uint32_t>(std::stoul(text + 1, nullptr, 16));
  return ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16);
}

TEST(ThemeTable, EveryFieldOfEveryRow) {
  for (unsigned row = 0; row < kThemeCount; ++row)
    for (int field = 0; field < 35; ++field)
      EXPECT_EQ(Field(ThemeRow(row), field), Expected(kExpected[field][row]))
          << "row " << row << " field " << field;
}

TEST(ThemeTable, NamedFieldsStandAtTheirNumbers) {
  const ThemeColors& dark = ThemeRow(0);
  EXPECT_EQ(dark.windowBackground, 0x1E1E1Eu);
  EXPECT_EQ(dark.editorBackground, 0x1E1C1Cu);  // #1C1C1E
  EXPECT_EQ(dark.isDark, 1u);
  EXPECT_EQ(dark.syntaxOperator, 0xB4B4B4u);
  EXPECT_EQ(ThemeRow(5).selectionBackground, 0x8AB2D2u);  // #D2B28A
}

TEST(ThemeTable, RowNames) {
  const wchar_t* names[] = {L"Tavro Dark", L"Tavro Light", L"Azure", L"Green", L"Night", L"Sepia"};
  for (unsigned row = 0; row < kThemeCount; ++row) EXPECT_STREQ(kThemeNames[row], names[row]);
}

TEST(ThemeTable, IndexOfSixOrMoreReadsRowZero) {
  for (unsigned index : {6u, 7u, 9u, 99u, 0xFFFFFFFFu}) EXPECT_EQ(&ThemeRow(index), &ThemeRow(0)) << index;
  for (unsigned index = 1; index < kThemeCount; ++index) EXPECT_NE(&ThemeRow(index), &ThemeRow(0));
}

TEST(ThemeTitleBar, ApplyThemeDarkensRowsZeroAndFourOnly) {
  bool expected[] = {true, false, false, false, true, false};
  for (unsigned index = 0; index < kThemeCount; ++index) EXPECT_EQ(ThemeTitleBarDark(index), expected[index]) << index;
}

TEST(ThemeTitleBar, SystemSyncLightensRowsOneAndFiveOnly) {
  // Azure and Green get a dark frame here, unlike ApplyTheme: kept as designed.
  bool expected[] = {true, false, true, true, true, false};
  for (unsigned index = 0; index < kThemeCount; ++index) EXPECT_EQ(SyncedTitleBarDark(index), expected[index]) << index;
  EXPECT_TRUE(SyncedTitleBarDark(9));
}

TEST(Transparency, AlphaFromPercent) {
  EXPECT_EQ(TransparencyAlpha(10), 230);
  EXPECT_EQ(TransparencyAlpha(20), 204);
  EXPECT_EQ(TransparencyAlpha(30), 179);
  EXPECT_EQ(TransparencyAlpha(40), 153);
  EXPECT_EQ(TransparencyAlpha(50), 128);
  EXPECT_EQ(TransparencyAlpha(0), 255);
}

TEST(ThemeClasses, DarkRowsUseTheDarkExplorerClass) {
  EXPECT_STREQ(WindowThemeClass(ThemeRow(0)), L"DarkMode_Explorer");
  EXPECT_STREQ(WindowThemeClass(ThemeRow(4)), L"DarkMode_Explorer");
  for (unsigned index : {1u, 2u, 3u, 5u}) EXPECT_STREQ(WindowThemeClass(ThemeRow(index)), L"Explorer");
}

}  // namespace
