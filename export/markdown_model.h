// The program's own Markdown dialect: one source line is one block, a
// handful of characters switch inline styles, and nothing carries over from
// one line to the next. Plain data and functions over strings only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class MarkdownBlockType : int32_t {
  Heading1 = 0,
  Heading2 = 1,
  Heading3 = 2,
  ListItem = 3,
  NumberedItem = 4,
  Quote = 5,
  Rule = 6,
  Empty = 7,
  Paragraph = 8,
};

// One stretch of text in one style, markers removed.
struct MarkdownRun {
  std::wstring text;
  std::wstring fontName;
  int32_t pointSize = 0;
  uint8_t bold = 0;
  uint8_t italic = 0;
  uint8_t code = 0;
};

// One classified source line.
struct MarkdownBlock {
  MarkdownBlockType type = MarkdownBlockType::Paragraph;
  int32_t number = 0;  // NumberedItem only
  std::vector<MarkdownRun> runs;
};

// One measured output line of the PDF layout.
struct MarkdownLine {
  std::vector<MarkdownRun> runs;
  MarkdownBlockType type = MarkdownBlockType::Paragraph;
  uint32_t isRule = 0;
  int32_t number = 0;
  int32_t spaceBefore = 0;
  int32_t indent = 0;
};

// The family and size prose is set in for an editor font: a programmer's
// typeface gives "Segoe UI" at 10, an empty family too; any other family is
// kept with its size (below 1 becomes 10).
void ProseFontFor(const std::wstring& editorFont, int editorSize, std::wstring& fontName, int& pointSize);
// The same for the live editor font.
void ResolveProseFont(std::wstring& fontName, int& pointSize);

// Source lines: CR LF is one break, a lone CR or LF another; a final break
// gives no empty line after it. The views point into text.
std::vector<std::wstring_view> SplitMarkdownLines(std::wstring_view text);
// Spaces, tabs, CR and LF off both ends.
std::wstring_view TrimMarkdownLine(std::wstring_view line);

// The kind of a trimmed line and where its text starts; number for a
// numbered item. The tests run in their fixed order, the first match wins.
struct MarkdownLineKind {
  MarkdownBlockType type = MarkdownBlockType::Paragraph;
  size_t textStart = 0;
  int32_t number = 0;
};
MarkdownLineKind KindOfTrimmedLine(std::wstring_view trimmed);

// Point size and starting weight of a block's text.
int32_t MarkdownBlockPointSize(MarkdownBlockType type, int32_t baseSize);

std::vector<MarkdownRun> ParseMarkdownInlines(std::wstring_view text, const std::wstring& fontName,
                                              int32_t pointSize, bool startBold);
MarkdownBlock ClassifyMarkdownLine(std::wstring_view line, const std::wstring& fontName, int32_t pointSize);
