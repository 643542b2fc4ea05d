#include "export/markdown_model.h"

#include <gtest/gtest.h>

namespace {

using T = MarkdownBlockType;
const std::wstring kFont = L"Georgia";

MarkdownBlock Classify(const wchar_t* line, int size = 10) { return ClassifyMarkdownLine(line, kFont, size); }

std::wstring TextOf(const MarkdownBlock& block) {
  std::wstring text;
  for (const auto& run : block.runs) text += run.text;
  return text;
}

TEST(MarkdownModel, EveryLineKindInItsOrder) {
  EXPECT_EQ(Classify(L"").type, T::Empty);
  EXPECT_EQ(Classify(L" \t ").type, T::Empty);
  EXPECT_EQ(Classify(L"---").type, T::Rule);
  EXPECT_EQ(Classify(L"***").type, T::Rule);
  EXPECT_EQ(Classify(L"___").type, T::Rule);
  EXPECT_EQ(Classify(L"### Three").type, T::Heading3);
  EXPECT_EQ(Classify(L"## Two").type, T::Heading2);
  EXPECT_EQ(Classify(L"# One").type, T::Heading1);
  EXPECT_EQ(Classify(L"- item").type, T::ListItem);
  EXPECT_EQ(Classify(L"* item").type, T::ListItem);
  EXPECT_EQ(Classify(L"> quoted").type, T::Quote);
  EXPECT_EQ(Classify(L"3. third").type, T::NumberedItem);
  EXPECT_EQ(Classify(L"plain words").type, T::Paragraph);
  EXPECT_EQ(TextOf(Classify(L"### Three")), L"Three");
  EXPECT_EQ(TextOf(Classify(L"> quoted")), L"quoted");
  EXPECT_EQ(TextOf(Classify(L"3. third")), L"third");
}

TEST(MarkdownModel, EdgeRows) {
  EXPECT_EQ(Classify(L"   # Title   ").type, T::Heading1);
  EXPECT_EQ(TextOf(Classify(L"   # Title   ")), L"Title");
  EXPECT_EQ(Classify(L"    # Title").type, T::Heading1);  // four spaces make no code block
  MarkdownBlock hash = Classify(L"# ");
  EXPECT_EQ(hash.type, T::Paragraph);
  EXPECT_EQ(TextOf(hash), L"#");
  EXPECT_EQ(Classify(L"### ").type, T::Paragraph);
  for (const wchar_t* line : {L"--", L"----", L"***x", L"100. x", L"#### x", L"#x", L"-x", L"1) x", L"-",
                              L"1.", L"1. ", L"1.5. x", L"a. x", L"012. x"})
    EXPECT_EQ(Classify(line).type, T::Paragraph) << static_cast<const void*>(line);
  EXPECT_EQ(Classify(L"- - -").type, T::ListItem);
  MarkdownBlock stars = Classify(L"* * *");
  EXPECT_EQ(stars.type, T::ListItem);
  EXPECT_EQ(stars.runs.size(), 1u);
  EXPECT_EQ(Classify(L"12. x").number, 12);
  EXPECT_EQ(Classify(L"7. x").number, 7);
  EXPECT_EQ(Classify(L"x").number, 0);
  EXPECT_TRUE(Classify(L"**").runs.empty());
  EXPECT_TRUE(Classify(L"---").runs.empty());
}

TEST(MarkdownModel, SplitsOnEveryKindOfBreak) {
  auto lines = SplitMarkdownLines(L"a\r\nb\rc\nd\n");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[3], L"d");
  EXPECT_EQ(SplitMarkdownLines(L"one").size(), 1u);
  EXPECT_TRUE(SplitMarkdownLines(L"").empty());
  auto lfcr = SplitMarkdownLines(L"a\n\rb");  // LF CR is two breaks: an empty line between
  ASSERT_EQ(lfcr.size(), 3u);
  EXPECT_EQ(lfcr[1], L"");
  EXPECT_EQ(SplitMarkdownLines(L"\r\n").size(), 1u);
}

TEST(MarkdownModel, InlineQuirks) {
  auto runs = ParseMarkdownInlines(L"***bold italic***", kFont, 10, false);
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0].text, L"*bold italic");
  EXPECT_TRUE(runs[0].bold);
  EXPECT_FALSE(runs[0].italic);
  EXPECT_EQ(runs[1].text, L"*");
  EXPECT_FALSE(runs[1].bold);

  runs = ParseMarkdownInlines(L"__text__", kFont, 10, false);
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].text, L"__text__");
  EXPECT_FALSE(runs[0].bold);

  runs = ParseMarkdownInlines(L"*a_b", kFont, 10, false);  // one flag for both markers
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_TRUE(runs[0].italic);
  EXPECT_FALSE(runs[1].italic);

  runs = ParseMarkdownInlines(L"snake_case word", kFont, 10, false);
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[1].text, L"case word");
  EXPECT_TRUE(runs[1].italic);

  runs = ParseMarkdownInlines(L"a\\*b*", kFont, 10, false);  // no backslash escape
  EXPECT_EQ(runs[0].text, L"a\\");

  // Code suppresses nothing here: `a*b` gives a as code, b as italic code.
  runs = ParseMarkdownInlines(L"`a*b` c", kFont, 10, false);
  ASSERT_EQ(runs.size(), 3u);
  EXPECT_TRUE(runs[0].code && !runs[0].italic);
  EXPECT_TRUE(runs[1].code && runs[1].italic);
  EXPECT_TRUE(!runs[2].code && runs[2].italic);
}

TEST(MarkdownModel, HeadingsStartBoldAndDoubleStarsTurnItOff) {
  MarkdownBlock block = Classify(L"# a **b** c");
  ASSERT_EQ(block.runs.size(), 3u);
  EXPECT_TRUE(block.runs[0].bold);
  EXPECT_FALSE(block.runs[1].bold);
  EXPECT_TRUE(block.runs[2].bold);
  EXPECT_EQ(block.runs[0].pointSize, 22);
  EXPECT_EQ(Classify(L"## x").runs[0].pointSize, 18);
  EXPECT_EQ(Classify(L"### x").runs[0].pointSize, 15);
  EXPECT_EQ(Classify(L"x").runs[0].pointSize, 10);
  EXPECT_EQ(Classify(L"x").runs[0].fontName, kFont);
}

TEST(MarkdownModel, CodeRunsAreCourierOneSmallerButAtLeastEight) {
  EXPECT_EQ(ParseMarkdownInlines(L"`c`", kFont, 10, false)[0].pointSize, 9);
  EXPECT_EQ(ParseMarkdownInlines(L"`c`", kFont, 9, false)[0].pointSize, 8);
  EXPECT_EQ(ParseMarkdownInlines(L"`c`", kFont, 6, false)[0].pointSize, 8);
  EXPECT_EQ(ParseMarkdownInlines(L"`c`", kFont, 5, false)[0].pointSize, 8);
  EXPECT_EQ(ParseMarkdownInlines(L"`c`", kFont, 10, false)[0].fontName, L"Courier New");
}

TEST(MarkdownModel, ProseFont) {
  std::wstring family;
  int size = 0;
  ProseFontFor(L"Consolas", 14, family, size);
  EXPECT_EQ(family, L"Segoe UI");
  EXPECT_EQ(size, 10);
  ProseFontFor(L"fira code", 14, family, size);
  EXPECT_EQ(family, L"Segoe UI");
  ProseFontFor(L"Georgia", 14, family, size);
  EXPECT_EQ(family, L"Georgia");
  EXPECT_EQ(size, 14);
  ProseFontFor(L"Georgia", 0, family, size);
  EXPECT_EQ(size, 10);
  ProseFontFor(L"", 14, family, size);
  EXPECT_EQ(family, L"Segoe UI");
  EXPECT_EQ(size, 10);
}

}  // namespace
