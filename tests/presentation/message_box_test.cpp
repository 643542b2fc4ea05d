// Message box layout and results.
#include <gtest/gtest.h>

#include <string>

#include "presentation/message_box_layout.h"

namespace {

TEST(MessageBoxLayout, ShortTextGetsTheMinimumWidth) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, L"0123456789");
  EXPECT_EQ(layout.longestLine, 10);
  EXPECT_EQ(layout.lineCount, 1);
  EXPECT_EQ(layout.width, 220);
}

TEST(MessageBoxLayout, LongTextGetsTheMaximumWidth) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, std::wstring(200, L'x'));
  EXPECT_EQ(layout.longestLine, 200);
  EXPECT_EQ(layout.width, 400);
}

TEST(MessageBoxLayout, WidthBetweenTheLimitsIsFourUnitsACharacterPlusTwenty) {
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(50, L'x')).width, 220);  // 220 exactly
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(51, L'x')).width, 224);
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(60, L'x')).width, 260);
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(95, L'x')).width, 400);  // 400 exactly
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(96, L'x')).width, 400);
}

TEST(MessageBoxLayout, ThreeLineFeedsGiveATextHeightOf44) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, L"a\nb\nc\nd");
  EXPECT_EQ(layout.lineCount, 4);
  EXPECT_EQ(layout.textHeight, 44);
}

TEST(MessageBoxLayout, EmptyTextIsOneEmptyLine) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, L"");
  EXPECT_EQ(layout.longestLine, 0);
  EXPECT_EQ(layout.lineCount, 1);
  EXPECT_EQ(layout.textHeight, 14);
  EXPECT_EQ(layout.width, 220);
}

TEST(MessageBoxLayout, LineFeedsAtTheEndsCountAsLines) {
  EXPECT_EQ(ComputeMessageBoxLayout(2, L"text\n\n").lineCount, 3);
  EXPECT_EQ(ComputeMessageBoxLayout(2, L"\ntext").lineCount, 2);
}

TEST(MessageBoxLayout, LongestLineIsTakenOverAllLines) {
  const std::wstring text = L"short\n" + std::wstring(70, L'm') + L"\n" + std::wstring(30, L'z');
  const MessageBoxLayout layout = ComputeMessageBoxLayout(1, text);
  EXPECT_EQ(layout.longestLine, 70);
  EXPECT_EQ(layout.lineCount, 3);
  EXPECT_EQ(layout.width, 300);
  EXPECT_EQ(layout.textHeight, 34);
}

TEST(MessageBoxLayout, LastLineCanBeTheLongest) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(1, L"ab\nabc\n" + std::wstring(80, L'q'));
  EXPECT_EQ(layout.longestLine, 80);
  EXPECT_EQ(layout.width, 340);
}

TEST(MessageBoxLayout, CarriageReturnsAreNotCharacters) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, std::wstring(60, L'x') + L"\r\nabc");
  EXPECT_EQ(layout.longestLine, 60);
  EXPECT_EQ(layout.lineCount, 2);
}

TEST(MessageBoxLayout, DialogHeightPerKind) {
  const std::wstring text = L"one\ntwo";  // text height 24
  EXPECT_EQ(ComputeMessageBoxLayout(0, text).height, 24 + 31);
  EXPECT_EQ(ComputeMessageBoxLayout(1, text).height, 24 + 29);
  EXPECT_EQ(ComputeMessageBoxLayout(2, text).height, 24 + 29);
  EXPECT_EQ(ComputeMessageBoxLayout(3, text).height, 24 + 29);
  EXPECT_EQ(ComputeMessageBoxLayout(4, text).height, 24 + 43);
}

TEST(MessageBoxLayout, ButtonRowSitsBelowTheTextOrTheField) {
  const std::wstring text = L"x";  // text height 14
  for (int kind = 0; kind <= 3; ++kind) {
    const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, text);
    EXPECT_EQ(layout.buttonY, 25) << kind;
    for (int i = 0; i < layout.buttonCount; ++i) EXPECT_EQ(layout.buttons[i].rect.y, 25) << kind;
  }
  const MessageBoxLayout input = ComputeMessageBoxLayout(4, text);
  EXPECT_EQ(input.buttonY, 39);
  EXPECT_EQ(input.buttons[0].rect.y, 39);
  EXPECT_EQ(input.buttons[1].rect.y, 39);
}

TEST(MessageBoxLayout, StaticTextSpansTheWidthLessMargins) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, std::wstring(70, L'x') + L"\nb");
  EXPECT_EQ(layout.text.x, 7);
  EXPECT_EQ(layout.text.y, 7);
  EXPECT_EQ(layout.text.width, 300 - 14);
  EXPECT_EQ(layout.text.height, 24);
}

TEST(MessageBoxLayout, OnlyTheInputKindHasTheField) {
  for (int kind = 0; kind <= 3; ++kind) EXPECT_FALSE(ComputeMessageBoxLayout(kind, L"x").hasEdit) << kind;
  const MessageBoxLayout layout = ComputeMessageBoxLayout(4, L"Name:\nof the thing");  // text height 24
  ASSERT_TRUE(layout.hasEdit);
  EXPECT_EQ(layout.edit.x, 7);
  EXPECT_EQ(layout.edit.y, 35);
  EXPECT_EQ(layout.edit.width, 220 - 14);
  EXPECT_EQ(layout.edit.height, 12);
}

TEST(MessageBoxLayout, ThreeButtonsAreCentredFiftySixApart) {
  const MessageBoxLayout narrow = ComputeMessageBoxLayout(0, L"Save?");
  ASSERT_EQ(narrow.buttonCount, 3);
  EXPECT_EQ(narrow.buttons[0].rect.x, 29);  // (220 - 162) / 2
  EXPECT_EQ(narrow.buttons[1].rect.x, 85);
  EXPECT_EQ(narrow.buttons[2].rect.x, 141);
  const MessageBoxLayout wide = ComputeMessageBoxLayout(0, std::wstring(61, L'x'));  // width 264
  EXPECT_EQ(wide.buttons[0].rect.x, 51);
  EXPECT_EQ(wide.buttons[2].rect.x, 163);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(narrow.buttons[i].rect.width, 50);
    EXPECT_EQ(narrow.buttons[i].rect.height, 14);
    EXPECT_EQ(narrow.buttons[i].id, 2501 + i);
  }
}

TEST(MessageBoxLayout, TwoButtonsAreCentred) {
  for (int kind : {1, 3, 4}) {
    const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, L"x");
    ASSERT_EQ(layout.buttonCount, 2) << kind;
    EXPECT_EQ(layout.buttons[0].rect.x, 57) << kind;  // (220 - 106) / 2
    EXPECT_EQ(layout.buttons[1].rect.x, 113) << kind;
    EXPECT_EQ(layout.buttons[0].id, 2501);
    EXPECT_EQ(layout.buttons[1].id, 2502);
  }
  // The widest box: (400 - 106) / 2.
  EXPECT_EQ(ComputeMessageBoxLayout(1, std::wstring(300, L'x')).buttons[0].rect.x, 147);
}

TEST(MessageBoxLayout, OneButtonIsCentred) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(2, L"Done.");
  ASSERT_EQ(layout.buttonCount, 1);
  EXPECT_EQ(layout.buttons[0].rect.x, 85);  // (220 - 50) / 2
  EXPECT_EQ(layout.buttons[0].id, 2501);
  EXPECT_EQ(ComputeMessageBoxLayout(2, std::wstring(57, L'x')).buttons[0].rect.x, 99);  // (248 - 50) / 2
}

TEST(MessageBoxLayout, ButtonCountPerKind) {
  EXPECT_EQ(MessageBoxButtonCount(0), 3);
  EXPECT_EQ(MessageBoxButtonCount(1), 2);
  EXPECT_EQ(MessageBoxButtonCount(2), 1);
  EXPECT_EQ(MessageBoxButtonCount(3), 2);
  EXPECT_EQ(MessageBoxButtonCount(4), 2);
}

TEST(MessageBoxLayout, PaintedCaptionsPerKind) {
  auto caption = [](int kind, int i) { return std::wstring(MessageBoxButtonCaption(kind, i)); };
  EXPECT_EQ(caption(0, 0), L"Yes");
  EXPECT_EQ(caption(0, 1), L"No");
  EXPECT_EQ(caption(0, 2), L"Cancel");
  EXPECT_EQ(caption(1, 0), L"OK");
  EXPECT_EQ(caption(1, 1), L"Cancel");
  EXPECT_EQ(caption(2, 0), L"OK");
  EXPECT_EQ(caption(3, 0), L"Yes");
  EXPECT_EQ(caption(3, 1), L"No");
  EXPECT_EQ(caption(4, 0), L"OK");
  EXPECT_EQ(caption(4, 1), L"Cancel");
  EXPECT_EQ(MessageBoxButtonCaption(2, 1), nullptr);
  EXPECT_EQ(MessageBoxButtonCaption(3, 2), nullptr);
  EXPECT_EQ(MessageBoxButtonCaption(0, -1), nullptr);
}

TEST(MessageBoxLayout, SaveQuestionControlsCarryTheirOwnTexts) {
  const MessageBoxLayout layout = ComputeMessageBoxLayout(0, L"Save changes?");
  EXPECT_EQ(std::wstring(layout.buttons[0].controlText), L"Save");
  EXPECT_EQ(std::wstring(layout.buttons[1].controlText), L"Don't Save");
  EXPECT_EQ(std::wstring(layout.buttons[2].controlText), L"Cancel");
  EXPECT_EQ(std::wstring(layout.buttons[0].caption), L"Yes");
  EXPECT_EQ(std::wstring(layout.buttons[1].caption), L"No");
}

TEST(MessageBoxLayout, OtherKindsGiveControlsTheirPaintedCaptions) {
  for (int kind = 1; kind <= 4; ++kind) {
    const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, L"x");
    for (int i = 0; i < layout.buttonCount; ++i)
      EXPECT_EQ(std::wstring(layout.buttons[i].controlText), std::wstring(layout.buttons[i].caption)) << kind;
  }
}

TEST(MessageBoxResults, EachButtonPerKind) {
  EXPECT_EQ(MessageBoxButtonResult(0, 0), 133);
  EXPECT_EQ(MessageBoxButtonResult(0, 1), 134);
  EXPECT_EQ(MessageBoxButtonResult(0, 2), 132);
  EXPECT_EQ(MessageBoxButtonResult(1, 0), 131);
  EXPECT_EQ(MessageBoxButtonResult(1, 1), 132);
  EXPECT_EQ(MessageBoxButtonResult(2, 0), 131);
  EXPECT_EQ(MessageBoxButtonResult(3, 0), 133);
  EXPECT_EQ(MessageBoxButtonResult(3, 1), 134);
  EXPECT_EQ(MessageBoxButtonResult(4, 0), 131);
  EXPECT_EQ(MessageBoxButtonResult(4, 1), 132);
}

TEST(MessageBoxResults, NoResultPastTheLastButton) {
  EXPECT_EQ(MessageBoxButtonResult(0, 3), 0);
  EXPECT_EQ(MessageBoxButtonResult(1, 2), 0);
  EXPECT_EQ(MessageBoxButtonResult(2, 1), 0);
  EXPECT_EQ(MessageBoxButtonResult(3, 2), 0);
  EXPECT_EQ(MessageBoxButtonResult(4, 2), 0);
  EXPECT_EQ(MessageBoxButtonResult(2, -1), 0);
}

TEST(MessageBoxResults, LayoutCarriesTheSameResults) {
  for (int kind = 0; kind <= 4; ++kind) {
    const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, L"x");
    for (int i = 0; i < layout.buttonCount; ++i)
      EXPECT_EQ(layout.buttons[i].result, MessageBoxButtonResult(kind, i)) << kind << " " << i;
  }
}

TEST(MessageBoxResults, EscapeIsOkInKindTwoAndCancelElsewhere) {
  EXPECT_EQ(MessageBoxEscapeResult(0), 132);  // the save question treats Esc as Cancel
  EXPECT_EQ(MessageBoxEscapeResult(1), 132);
  EXPECT_EQ(MessageBoxEscapeResult(2), 131);
  EXPECT_EQ(MessageBoxEscapeResult(3), 132);
  EXPECT_EQ(MessageBoxEscapeResult(4), 132);
}

TEST(MessageBoxResults, UnknownKindsAreShownAsAnOkBox) {
  for (int kind : {-1, 5, 99}) {
    const MessageBoxLayout layout = ComputeMessageBoxLayout(kind, L"x");
    EXPECT_EQ(layout.kind, 2) << kind;
    EXPECT_EQ(layout.buttonCount, 1) << kind;
    EXPECT_EQ(layout.height, 14 + 29) << kind;
    EXPECT_EQ(MessageBoxButtonResult(kind, 0), 131) << kind;
    EXPECT_EQ(MessageBoxEscapeResult(kind), 131) << kind;
  }
}

}  // namespace
