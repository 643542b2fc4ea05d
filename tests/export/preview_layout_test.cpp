// The Print Preview window's arithmetic: opening size, drag minimum, button
// bar, enabled buttons, the sheet's scale and place, page turns and texts.
#include "export/preview_layout.h"

#include <gtest/gtest.h>

TEST(PreviewSize, StoredSizeWithinTheLimitsIsTaken) {
  const PreviewSize size = PreviewOpeningSize(700, 500, 1280, 900);
  EXPECT_EQ(size.width, 700);
  EXPECT_EQ(size.height, 500);
  EXPECT_EQ(PreviewOpeningSize(640, 480, 1280, 900).width, 640);
  EXPECT_EQ(PreviewOpeningSize(640, 480, 1280, 900).height, 480);
  EXPECT_EQ(PreviewOpeningSize(1280, 900, 1280, 900).width, 1280);
  EXPECT_EQ(PreviewOpeningSize(1280, 900, 1280, 900).height, 900);
}

TEST(PreviewSize, OutsideTheLimitsTheScreenDecides) {
  // 65 per cent of 1280 is 832; 85 per cent of 900 is 765.
  for (auto stored : {PreviewSize{639, 600}, PreviewSize{1281, 600}, PreviewSize{800, 479}, PreviewSize{800, 901},
                      PreviewSize{0, 0}}) {
    const PreviewSize size = PreviewOpeningSize(stored.width, stored.height, 1280, 900);
    EXPECT_EQ(size.width, 832) << stored.width << "x" << stored.height;
    EXPECT_EQ(size.height, 765) << stored.width << "x" << stored.height;
  }
  // Capped at 900 by 1,000 on a large screen; percentages truncated.
  EXPECT_EQ(PreviewOpeningSize(0, 0, 2560, 1600).width, 900);
  EXPECT_EQ(PreviewOpeningSize(0, 0, 2560, 1600).height, 1000);
  EXPECT_EQ(PreviewOpeningSize(0, 0, 1023, 767).width, 664);   // 664.95
  EXPECT_EQ(PreviewOpeningSize(0, 0, 1023, 767).height, 651);  // 651.95
}

TEST(PreviewSize, ADragBelowTheMinimumKeepsTheDraggedEdgeAtTheMinimum) {
  struct Case {
    PreviewRect box;
    bool leftEdge, topEdge;
    PreviewRect kept;
  };
  const Case cases[] = {
      {{100, 50, 600, 700}, true, false, {600 - 640, 50, 600, 700}},   // the left edge dragged right
      {{100, 50, 600, 700}, false, false, {100, 50, 740, 700}},        // the right edge dragged left
      {{100, 100, 900, 400}, false, true, {100, 400 - 480, 900, 400}},  // the top edge dragged down
      {{100, 100, 900, 400}, false, false, {100, 100, 900, 580}},      // the bottom edge dragged up
      {{100, 100, 500, 400}, true, true, {500 - 640, 400 - 480, 500, 400}},  // the top left corner
      {{10, 20, 800, 600}, true, true, {10, 20, 800, 600}},            // large enough: untouched
  };
  for (const Case& c : cases) {
    PreviewRect box = c.box;
    KeepPreviewMinimum(box, c.leftEdge, c.topEdge);
    EXPECT_EQ(box.left, c.kept.left) << c.box.left << "," << c.box.top;
    EXPECT_EQ(box.top, c.kept.top) << c.box.left << "," << c.box.top;
    EXPECT_EQ(box.right, c.kept.right) << c.box.left << "," << c.box.top;
    EXPECT_EQ(box.bottom, c.kept.bottom) << c.box.left << "," << c.box.top;
  }
}

TEST(PreviewBar, ButtonGroupCentredAndAtLeastEightIn) {
  EXPECT_EQ(PreviewButtonsLeft(800), 220);
  EXPECT_EQ(PreviewButtonsLeft(400), 20);
  EXPECT_EQ(PreviewButtonsLeft(377), 8);
  EXPECT_EQ(PreviewButtonsLeft(300), 8);
  EXPECT_EQ(PreviewButtonsLeft(100), 8);
}

TEST(PreviewBar, FourButtonsEightyFourWideEightApart) {
  const int lefts[] = {220, 312, 404, 496};
  for (int button = 0; button < kPreviewButtonCount; ++button) {
    const PreviewRect r = PreviewButtonRect(button, 800);
    EXPECT_EQ(r.left, lefts[button]);
    EXPECT_EQ(r.right, lefts[button] + 84);
    EXPECT_EQ(r.top, 8);
    EXPECT_EQ(r.bottom, 36);
  }
  EXPECT_EQ(PreviewButtonAt(220, 8, 800), kPreviewPrev);
  EXPECT_EQ(PreviewButtonAt(303, 35, 800), kPreviewPrev);
  EXPECT_EQ(PreviewButtonAt(304, 20, 800), -1);  // the gap
  EXPECT_EQ(PreviewButtonAt(312, 20, 800), kPreviewNext);
  EXPECT_EQ(PreviewButtonAt(450, 20, 800), kPreviewPrint);
  EXPECT_EQ(PreviewButtonAt(579, 35, 800), kPreviewClose);
  EXPECT_EQ(PreviewButtonAt(580, 20, 800), -1);
  EXPECT_EQ(PreviewButtonAt(250, 7, 800), -1);
  EXPECT_EQ(PreviewButtonAt(250, 36, 800), -1);
  EXPECT_EQ(PreviewButtonAt(10, 20, 300), kPreviewPrev);
}

TEST(PreviewBar, ButtonTextsAndCommands) {
  EXPECT_STREQ(PreviewButtonText(kPreviewPrev), L"\u25C4  Prev");
  EXPECT_STREQ(PreviewButtonText(kPreviewNext), L"Next  \u25BA");
  EXPECT_STREQ(PreviewButtonText(kPreviewPrint), L"Print");
  EXPECT_STREQ(PreviewButtonText(kPreviewClose), L"\u2715  Close");
  EXPECT_EQ(kPreviewFirstCommand + kPreviewPrev, 610);
  EXPECT_EQ(kPreviewFirstCommand + kPreviewClose, 613);
}

TEST(PreviewBar, PrevAndNextOnlyWhereAPageLiesThatWay) {
  // One page: both off.
  EXPECT_FALSE(PreviewButtonEnabled(kPreviewPrev, 0, 1));
  EXPECT_FALSE(PreviewButtonEnabled(kPreviewNext, 0, 1));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewPrint, 0, 1));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewClose, 0, 1));
  EXPECT_FALSE(PreviewButtonEnabled(kPreviewPrev, 0, 3));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewNext, 0, 3));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewPrev, 1, 3));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewNext, 1, 3));
  EXPECT_TRUE(PreviewButtonEnabled(kPreviewPrev, 2, 3));
  EXPECT_FALSE(PreviewButtonEnabled(kPreviewNext, 2, 3));
  EXPECT_FALSE(PreviewButtonEnabled(-1, 1, 3));
}

TEST(PreviewBar, PageCounter) {
  EXPECT_EQ(PreviewPageText(0, 3), L"Page 1 / 3");
  EXPECT_EQ(PreviewPageText(11, 12), L"Page 12 / 12");
  const PreviewRect r = PreviewPageTextRect(800);
  EXPECT_EQ(r.left, 670);
  EXPECT_EQ(r.right, 792);
}

TEST(PreviewSheet, ScaleIsTheLeastOfBothFitsAndThree) {
  // (800 - 48) / 793 = 0.948 and (600 - 92) / 1122 = 0.453.
  EXPECT_DOUBLE_EQ(PreviewScale(800, 600, 793, 1122), 508.0 / 1122.0);
  EXPECT_DOUBLE_EQ(PreviewScale(448, 2000, 800, 1000), 0.5);
  // Never above 3.0, however large the window.
  EXPECT_DOUBLE_EQ(PreviewScale(5000, 5000, 793, 1122), 3.0);
  EXPECT_DOUBLE_EQ(PreviewScale(100000, 100000, 793, 1122), 3.0);
}

TEST(PreviewSheet, CentredBelowTheBar) {
  PreviewRect r = PreviewSheetRect(841, 2000, 793, 1122);  // scale 1: width-bound
  EXPECT_EQ(r.left, 24);
  EXPECT_EQ(r.right, 24 + 793);
  EXPECT_EQ(r.top, 44 + (2000 - 44 - 1122) / 2);
  EXPECT_EQ(r.bottom, r.top + 1122);
  r = PreviewSheetRect(448, 600, 800, 1000);  // scale 0.5
  EXPECT_EQ(r.left, 24);
  EXPECT_EQ(r.right, 424);
  EXPECT_EQ(r.top, 72);
  EXPECT_EQ(r.bottom, 572);
  r = PreviewSheetRect(3000, 3092, 100, 200);  // capped at 3: 300 by 600
  EXPECT_EQ(r.right - r.left, 300);
  EXPECT_EQ(r.bottom - r.top, 600);
  EXPECT_EQ(r.left, 1350);
  EXPECT_EQ(r.top, 44 + (3092 - 44 - 600) / 2);
}

TEST(PreviewTurn, StopsAtEitherEnd) {
  EXPECT_EQ(TurnPreviewPage(0, 1, -1), 0);
  EXPECT_EQ(TurnPreviewPage(0, 1, +1), 0);
  EXPECT_EQ(TurnPreviewPage(0, 3, +1), 1);
  EXPECT_EQ(TurnPreviewPage(1, 3, +1), 2);
  EXPECT_EQ(TurnPreviewPage(2, 3, +1), 2);
  EXPECT_EQ(TurnPreviewPage(2, 3, -1), 1);
  EXPECT_EQ(TurnPreviewPage(0, 3, -1), 0);
}
