#include <gtest/gtest.h>

#include "shell/layout.h"
#include "shell/status_text.h"

namespace {

TEST(StatusParts, EdgesFromTheClientWidth) {
  EXPECT_EQ(StatusPartEdges(590), (std::array<int, 6>{80, 180, 280, 335, 390, -1}));
  EXPECT_EQ(StatusPartEdges(589), (std::array<int, 6>{80, 180, 280, 335, 390, -1}));
  EXPECT_EQ(StatusPartEdges(1000), (std::array<int, 6>{490, 590, 690, 745, 800, -1}));
}

TEST(MainLayoutTest, PanelHalfOfEightHundred) {
  MainLayout layout = ComputeMainLayout(800, 600, 22, 0, true, 50);
  EXPECT_EQ(layout.panel, (Box{400, 44, 400, 534}));
  EXPECT_EQ(layout.editor, (Box{0, 44, 400, 534}));
  EXPECT_EQ(layout.toolbar, (Box{0, 0, 800, 44}));
}

TEST(MainLayoutTest, EditorKeepsThreeHundredPixels) {
  MainLayout layout = ComputeMainLayout(500, 600, 22, 0, true, 50);
  EXPECT_EQ(layout.editor.width, 300);
  EXPECT_EQ(layout.panel.width, 200);
  EXPECT_EQ(layout.panel.x, 300);
}

TEST(MainLayoutTest, PercentOutsideThirtyToFiftyBecomesFifty) {
  EXPECT_EQ(ComputeMainLayout(1000, 600, 22, 0, true, 25).panelPercent, 50);
  EXPECT_EQ(ComputeMainLayout(1000, 600, 22, 0, true, 60).panelPercent, 50);
  EXPECT_EQ(ComputeMainLayout(1000, 600, 22, 0, true, 30).panelPercent, 30);
  EXPECT_EQ(ComputeMainLayout(1000, 600, 22, 0, true, 40).panel.width, 400);
}

TEST(MainLayoutTest, StripSitsLeftOfTheEditor) {
  MainLayout layout = ComputeMainLayout(900, 700, 20, 36, false, 50);
  EXPECT_EQ(layout.strip, (Box{0, 44, 36, 636}));
  EXPECT_EQ(layout.editor, (Box{36, 44, 864, 636}));
  EXPECT_FALSE(layout.panelShown);
}

TEST(MainLayoutTest, ContentHeightNeverBelowZero) {
  EXPECT_EQ(ComputeMainLayout(300, 50, 22, 0, false, 50).editor.height, 0);
}

TEST(MinimumWidth, NarrowerPanelWantsTheWiderWindow) {
  EXPECT_EQ(MinimumWindowWidth(true, 30), 1200);
  EXPECT_EQ(MinimumWindowWidth(true, 40), 1100);
  EXPECT_EQ(MinimumWindowWidth(true, 50), 740);
  EXPECT_EQ(MinimumWindowWidth(true, 35), 720);
  EXPECT_EQ(MinimumWindowWidth(false, 30), 640);
}

TEST(MinimumWidth, GrowingAsksTheSettingsAsTheyStandNow) {
  // The percentage the next layout will use, not the one the last layout used.
  EXPECT_EQ(RequiredMinimumWidth(true, true, 30), 1200);
  EXPECT_EQ(RequiredMinimumWidth(true, true, 40), 1100);
  EXPECT_EQ(RequiredMinimumWidth(true, true, 50), 740);
  EXPECT_EQ(RequiredMinimumWidth(true, true, 35), 720);
  // Outside 30..50 the layout takes 50.
  EXPECT_EQ(RequiredMinimumWidth(true, true, 25), 740);
  EXPECT_EQ(RequiredMinimumWidth(true, true, 51), 740);
  // Without the panel, or in Classic, the percentage plays no part.
  EXPECT_EQ(RequiredMinimumWidth(true, false, 30), 640);
  EXPECT_EQ(RequiredMinimumWidth(false, true, 30), 640);
  EXPECT_EQ(RequiredMinimumWidth(false, false, 40), 640);
}

TEST(MinimumWidth, LaidOutPercentage) {
  EXPECT_EQ(LaidOutPanelPercent(29), 50);
  EXPECT_EQ(LaidOutPanelPercent(30), 30);
  EXPECT_EQ(LaidOutPanelPercent(50), 50);
  EXPECT_EQ(LaidOutPanelPercent(20), 50);
}

TEST(StripWidth, DigitsAtLeastThreeTimesDigitWidthPlusTwelve) {
  EXPECT_EQ(LineNumberStripWidth(1, 8), 36);
  EXPECT_EQ(LineNumberStripWidth(999, 8), 36);
  EXPECT_EQ(LineNumberStripWidth(1000, 8), 44);
  EXPECT_EQ(LineNumberStripWidth(123456, 9), 66);
  EXPECT_EQ(LineNumberStripWidth(10, 0), 36);  // no digit width measured: 8 pixels
}

TEST(Elapsed, SecondsMinutesHours) {
  EXPECT_EQ(FormatElapsed(0), L"0.000 sec");
  EXPECT_EQ(FormatElapsed(59999), L"59.999 sec");
  EXPECT_EQ(FormatElapsed(60000), L"1:00 min");
  EXPECT_EQ(FormatElapsed(187000), L"3:07 min");
  EXPECT_EQ(FormatElapsed(3600000), L"1:00:00");
  EXPECT_EQ(FormatElapsed(3723000), L"1:02:03");
}

TEST(StatusTexts, LineCountsDisplayRows) {
  EXPECT_EQ(StatusLineColumnText(0, 0, 16, 0), L"  Ln 1, Col 1");
  EXPECT_EQ(StatusLineColumnText(10, 32, 16, 4), L"  Ln 13, Col 5");
  EXPECT_EQ(StatusLineColumnText(0, 40, 0, 0), L"  Ln 3, Col 1");  // height below 1 counts as 16
  EXPECT_EQ(StatusLineColumnText(0, -50, 16, 0), L"  Ln 1, Col 1");
}

TEST(StatusTexts, SelectionEncodingEolZoomFont) {
  EXPECT_EQ(StatusSelectionText(false, 0), L"");
  EXPECT_EQ(StatusSelectionText(true, 3), L"  Sel: 3");
  EXPECT_EQ(StatusEncodingText(0), L"  UTF-8 BOM");
  EXPECT_EQ(StatusEncodingText(2), L"  UTF-16 LE");
  EXPECT_EQ(StatusEncodingText(3), L"  UTF-16 BE");
  EXPECT_EQ(StatusEncodingText(4), L"  ANSI");
  EXPECT_EQ(StatusEncodingText(9), L"  UTF-8");
  EXPECT_EQ(StatusLineEndingText(0), L"  CRLF");
  EXPECT_EQ(StatusLineEndingText(1), L"  CR");
  EXPECT_EQ(StatusLineEndingText(2), L"  LF");
  EXPECT_EQ(StatusLineEndingText(7), L"  ?");
  EXPECT_EQ(StatusZoomText(-2), L"  80%");
  EXPECT_EQ(StatusZoomText(3), L"  130%");
  EXPECT_EQ(StatusFontText(L"Consolas", 11, false, false), L"  Consolas 11pt");
  EXPECT_EQ(StatusFontText(L"Consolas", 11, true, false), L"  Consolas 11pt Bold");
  EXPECT_EQ(StatusFontText(L"Georgia", 12, false, true), L"  Georgia 12pt Italic");
  EXPECT_EQ(StatusFontText(L"Georgia", 12, true, true), L"  Georgia 12pt Bold Italic");
}

}  // namespace
