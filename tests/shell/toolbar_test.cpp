// The toolbar's table, layout, enabled rules and paint rules, without a window.
#include "shell/toolbar_model.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ToolbarTable, EightButtonsInTheirOrder) {
  const auto& buttons = ToolbarButtons();
  const uint32_t ids[] = {1001, 1002, 1003, 3333, 6001, 4020, 4021, 4001};
  const wchar_t* captions[] = {L"New", L"Open", L"Save", L"Export", L"Settings", L"Profiles", L"AI Mod", L"Help"};
  for (int i = 0; i < kToolbarButtonCount; ++i) {
    EXPECT_EQ(buttons[i].id, ids[i]) << i;
    EXPECT_EQ(std::wstring(buttons[i].caption), captions[i]) << i;
  }
}

TEST(ToolbarTable, ModeButtonNamesTheModeItWouldSwitchTo) {
  EXPECT_EQ(std::wstring(ToolbarCaption(kToolbarModeIndex, true)), L"Classic");
  EXPECT_EQ(std::wstring(ToolbarCaption(kToolbarModeIndex, false)), L"AI Mod");
  EXPECT_EQ(std::wstring(ToolbarCaption(0, true)), L"New");
  EXPECT_EQ(std::wstring(ToolbarCaption(7, false)), L"Help");
}

TEST(ToolbarLayout, RowIsCentred) {
  const auto rects = ToolbarButtonRects(1000);
  EXPECT_EQ(rects[0].left, (1000 - 656) / 2);
  for (int i = 0; i < kToolbarButtonCount; ++i) {
    EXPECT_EQ(rects[i].right - rects[i].left, 75);
    EXPECT_EQ(rects[i].top, 6);
    EXPECT_EQ(rects[i].bottom, 36);
    if (i > 0) {
      EXPECT_EQ(rects[i].left - rects[i - 1].right, 8);
    }
  }
  EXPECT_EQ(rects[7].right, rects[0].left + 656);
}

TEST(ToolbarLayout, NarrowWindowStartsAtEightAndRunsPastTheEdge) {
  const auto rects = ToolbarButtonRects(500);
  EXPECT_EQ(rects[0].left, 8);
  EXPECT_GT(rects[7].right, 500);
  EXPECT_EQ(ToolbarButtonRects(672)[0].left, 8);
  EXPECT_EQ(ToolbarButtonRects(674)[0].left, 9);
}

TEST(ToolbarEnabledRules, SaveWithModifiedProfilesInTheDefaultInstance) {
  auto enabled = ToolbarEnabled(false, true);
  EXPECT_FALSE(enabled[2]);
  EXPECT_TRUE(enabled[kToolbarProfilesIndex]);
  enabled = ToolbarEnabled(true, false);
  EXPECT_TRUE(enabled[2]);
  EXPECT_FALSE(enabled[kToolbarProfilesIndex]);
  for (int i : {0, 1, 3, 4, 6, 7}) {
    EXPECT_TRUE(ToolbarEnabled(false, false)[i]) << i;
  }
}

TEST(ToolbarHit, FirstEnabledButtonUnderThePoint) {
  const auto rects = ToolbarButtonRects(800);
  const auto enabled = ToolbarEnabled(false, true);
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[0].left, 6), 0);
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[1].left + 37, 20), 1);
  // A disabled button is no target: a click on Save does nothing.
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[2].left + 37, 20), -1);
  // The gap between buttons, above and below the row.
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[0].right + 2, 20), -1);
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[0].left + 5, 5), -1);
  EXPECT_EQ(ToolbarHitTest(rects, enabled, rects[0].left + 5, 36), -1);
}

TEST(ToolbarAccent, ExportWhileEnabledAndTheModeButtonAlways) {
  EXPECT_TRUE(IsAccentButton(kToolbarExportIndex, true));
  EXPECT_FALSE(IsAccentButton(kToolbarExportIndex, false));
  EXPECT_TRUE(IsAccentButton(kToolbarModeIndex, true));
  EXPECT_TRUE(IsAccentButton(kToolbarModeIndex, false));
  EXPECT_FALSE(IsAccentButton(0, true));
}

TEST(ToolbarPaint, PlainButtonFillsByState) {
  const ThemeColors& row = ThemeRow(0);
  EXPECT_EQ(ToolbarButtonPaint(row, false, false, false, false).fill, row.toolbarBackground);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, false).fill, row.controlBackground);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, true, false).fill, row.controlHover);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, true).fill, row.controlBorder);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, true, false).border, row.buttonBorderFocused);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, false).border, row.controlBorder);
  EXPECT_TRUE(ToolbarButtonPaint(row, false, true, false, false).bordered);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, false).extraHeight, 0);
}

TEST(ToolbarPaint, TextColoursAndShift) {
  const ThemeColors& row = ThemeRow(1);
  EXPECT_EQ(ToolbarButtonPaint(row, false, false, false, false).text, row.controlTextDisabled);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, true, false).text, row.controlTextActive);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, false).text, row.controlText);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, false).textShift, 0);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, true, false).textShift, 1);
  EXPECT_EQ(ToolbarButtonPaint(row, false, true, false, true).textShift, 1);
}

TEST(ToolbarPaint, AccentButtonsInDarkAndLightThemes) {
  const ThemeColors& dark = ThemeRow(0);
  const ThemeColors& light = ThemeRow(1);
  ToolbarButtonLook look = ToolbarButtonPaint(dark, true, true, false, false);
  EXPECT_EQ(look.fill, 0x32261Eu);  // #1E2632
  EXPECT_FALSE(look.bordered);
  EXPECT_EQ(look.extraHeight, 4);
  EXPECT_EQ(look.topLineWidth, 2);
  EXPECT_EQ(look.topLine, 0xB48246u);  // #4682B4
  look = ToolbarButtonPaint(light, true, true, false, false);
  EXPECT_EQ(look.fill, 0xF5E8E1u);  // #E1E8F5
  EXPECT_EQ(look.topLine, 0xA0641Eu);  // #1E64A0
  EXPECT_EQ(ToolbarButtonPaint(dark, true, true, true, false).fill, dark.controlHover);
  look = ToolbarButtonPaint(dark, true, true, false, true);
  EXPECT_EQ(look.fill, dark.controlBorder);
  EXPECT_EQ(look.topLineWidth, 0);  // a pressed accent has no line
}

TEST(ToolbarPaint, HoverHighlightLine) {
  ToolbarButtonLook look = ToolbarButtonPaint(ThemeRow(0), false, true, true, false);
  EXPECT_EQ(look.topLineWidth, 1);
  EXPECT_EQ(look.topLine, 0x6E6464u);  // #64646E
  look = ToolbarButtonPaint(ThemeRow(1), false, true, true, false);
  EXPECT_EQ(look.topLine, 0xFFFFFFu);
  EXPECT_EQ(ToolbarButtonPaint(ThemeRow(0), false, true, false, false).topLineWidth, 0);
}

TEST(ToolbarPaint, BarLines) {
  EXPECT_EQ(ToolbarTopLine(ThemeRow(0)), 0x4B4646u);  // #46464B
  EXPECT_EQ(ToolbarTopLine(ThemeRow(1)), 0xFFFFFFu);
}

}  // namespace
