#include "export/markdown_layout.h"

#include <gtest/gtest.h>

namespace {

using T = MarkdownBlockType;

// Every character is 10 units wide in every font; lines are 20 high.
MarkdownMeasure FixedMeasure(int* selections = nullptr) {
  MarkdownMeasure measure;
  measure.baseLineHeight = [] { return 20; };
  measure.selectFont = [selections](const MarkdownRun&) {
    if (selections) ++*selections;
  };
  measure.textWidth = [](std::wstring_view text) { return static_cast<int>(text.size()) * 10; };
  return measure;
}

// maxWidth 128 leaves a wrap width of 100 for a paragraph: ten characters.
std::vector<MarkdownLine> LayOut(const wchar_t* text, int maxWidth = 128) {
  std::vector<MarkdownLine> lines(3);
  LayOutMarkdownLines(text, L"Georgia", 10, maxWidth, FixedMeasure(), lines);
  return lines;
}

std::wstring TextOf(const MarkdownLine& line) {
  std::wstring text;
  for (const auto& run : line.runs) text += run.text;
  return text;
}

TEST(MarkdownLayout, EmptyTextGivesFalseAndNoLines) {
  std::vector<MarkdownLine> lines(2);
  EXPECT_FALSE(LayOutMarkdownLines(L"", L"Georgia", 10, 500, FixedMeasure(), lines));
  EXPECT_TRUE(lines.empty());
}

TEST(MarkdownLayout, BlankLinesAndRules) {
  auto lines = LayOut(L"\r\n");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].type, T::Empty);
  EXPECT_EQ(lines[0].spaceBefore, 10);
  lines = LayOut(L"---");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].type, T::Paragraph);
  EXPECT_EQ(lines[0].isRule, 1u);
  EXPECT_EQ(lines[0].spaceBefore, 6);
  EXPECT_TRUE(lines[0].runs.empty());
}

TEST(MarkdownLayout, RunBoundariesShowExactlyOneSpace) {
  auto lines = LayOut(L"see**this**", 1000);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(TextOf(lines[0]), L"see this");
  ASSERT_EQ(lines[0].runs.size(), 2u);
  EXPECT_TRUE(lines[0].runs[1].bold);
  EXPECT_EQ(TextOf(LayOut(L"(**x**)", 1000)[0]), L"( x )");
  EXPECT_EQ(TextOf(LayOut(L"see **this**", 1000)[0]), L"see this");
}

TEST(MarkdownLayout, LikeStyledPiecesMerge) {
  auto lines = LayOut(L"one two three", 1000);
  ASSERT_EQ(lines[0].runs.size(), 1u);
  EXPECT_EQ(lines[0].runs[0].text, L"one two three");
}

TEST(MarkdownLayout, WrapsAtTheWrapWidthAndNeverBreaksWords) {
  auto exact = LayOut(L"aaaa bbbbb");  // 100 units: stays
  ASSERT_EQ(exact.size(), 1u);
  auto over = LayOut(L"aaaa bbbbbb");  // 110: wraps
  ASSERT_EQ(over.size(), 2u);
  EXPECT_EQ(TextOf(over[0]), L"aaaa");
  EXPECT_EQ(TextOf(over[1]), L"bbbbbb");
  auto wide = LayOut(L"a bbbbbbbbbbbbbbbbbbbb c");
  ASSERT_EQ(wide.size(), 3u);
  EXPECT_EQ(TextOf(wide[1]), L"bbbbbbbbbbbbbbbbbbbb");  // alone on its line, overflowing
}

TEST(MarkdownLayout, WrapWidthIsAtLeast80) {
  auto lines = LayOut(L"aaaa bbbb", 10);  // 80 units: eight characters
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(TextOf(LayOut(L"aaa bbbb", 10)[0]), L"aaa bbbb");
}

TEST(MarkdownLayout, HeadingGapStandsOnTheLastLineOnly) {
  auto lines = LayOut(L"# aaaa bbbbb", 98);  // wrap 80 units, not 70
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].spaceBefore, 0);
  EXPECT_EQ(lines[1].spaceBefore, 20);
  EXPECT_EQ(LayOut(L"## x")[0].spaceBefore, 15);
  EXPECT_EQ(LayOut(L"### x")[0].spaceBefore, 10);
  EXPECT_EQ(LayOut(L"x")[0].spaceBefore, 0);
  EXPECT_TRUE(lines[0].runs[0].bold);
  EXPECT_EQ(lines[0].runs[0].pointSize, 22);
}

TEST(MarkdownLayout, IndentsAndNumbers) {
  auto lines = LayOut(L"12. aaaa bbbb cccc", 146);  // wrap 146 - 18 - 28 = 100
  ASSERT_EQ(lines.size(), 2u);
  for (const auto& line : lines) {
    EXPECT_EQ(line.indent, 18);
    EXPECT_EQ(line.number, 12);
    EXPECT_EQ(line.type, T::NumberedItem);
  }
  EXPECT_EQ(LayOut(L"- x")[0].indent, 18);
  EXPECT_EQ(LayOut(L"> x")[0].indent, 20);
  EXPECT_EQ(LayOut(L"x")[0].indent, 0);
}

TEST(MarkdownLayout, DoubleSpacesSurviveExceptAtTheStartOfALine) {
  EXPECT_EQ(TextOf(LayOut(L"a  b", 1000)[0]), L"a  b");
  auto lines = LayOut(L"aaaaaaaaaa  b");  // the second space would open the next line
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(TextOf(lines[1]), L"b");
}

TEST(MarkdownLayout, TwoAsterisksAloneGiveOneLineWithoutSegments) {
  auto lines = LayOut(L"**");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(lines[0].runs.empty());
  EXPECT_EQ(lines[0].type, T::Paragraph);
}

TEST(MarkdownLayout, OneFontPerRunWithText) {
  int selections = 0;
  std::vector<MarkdownLine> lines;
  LayOutMarkdownLines(L"a **b** c\n**", L"Georgia", 10, 1000, FixedMeasure(&selections), lines);
  EXPECT_EQ(selections, 3);
}

}  // namespace
