#include "export/markdown_layout.h"

namespace {

using T = MarkdownBlockType;

bool SameStyle(const MarkdownRun& a, const MarkdownRun& b) {
  return a.fontName == b.fontName && a.pointSize == b.pointSize && a.bold == b.bold && a.italic == b.italic &&
         a.code == b.code;
}

int IndentOf(T type) {
  if (type == T::ListItem || type == T::NumberedItem) return 18;
  if (type == T::Quote) return 20;
  return 0;
}

// The gap a heading keeps above its last line.
int FinalSpaceBefore(T type, int lineHeight) {
  switch (type) {
    case T::Heading1: return lineHeight;
    case T::Heading2: return lineHeight * 3 / 4;
    case T::Heading3: return lineHeight / 2;
    default: return 0;
  }
}

void LayOutTextBlock(const MarkdownBlock& block, int maxWidth, int lineHeight, const MarkdownMeasure& measure,
                     std::vector<MarkdownLine>& lines) {
  const int indent = IndentOf(block.type);
  int wrap = maxWidth - indent - 28;
  if (wrap < 80) wrap = 80;
  int used = 0;
  std::vector<MarkdownRun> segments;
  auto close = [&](int spaceBefore) {
    MarkdownLine line;
    line.runs = std::move(segments);
    line.type = block.type;
    line.number = block.number;
    line.indent = indent;
    line.spaceBefore = spaceBefore;
    lines.push_back(std::move(line));
    segments.clear();
    used = 0;
  };
  for (const MarkdownRun& run : block.runs) {
    if (run.text.empty()) continue;
    measure.selectFont(run);
    std::wstring_view remainder = run.text;
    while (!remainder.empty()) {
      size_t space = remainder.find(L' ');
      std::wstring_view word = remainder.substr(0, space);
      std::wstring candidate = used < 1 ? std::wstring(word) : L" " + std::wstring(word);
      int width = measure.textWidth(candidate);
      if (!(used + width <= wrap || used < 1)) {
        close(0);
        candidate = std::wstring(word);
        width = measure.textWidth(candidate);
      }
      if (!segments.empty() && SameStyle(segments.back(), run)) {
        segments.back().text += candidate;
      } else {
        MarkdownRun segment = run;
        segment.text = candidate;
        segments.push_back(std::move(segment));
      }
      used += width;
      remainder.remove_prefix(word.size());
      if (!remainder.empty() && remainder.front() == L' ') remainder.remove_prefix(1);
    }
  }
  close(FinalSpaceBefore(block.type, lineHeight));
}

}  // namespace

bool LayOutMarkdownLines(std::wstring_view text, const std::wstring& fontName, int32_t pointSize, int maxWidth,
                         const MarkdownMeasure& measure, std::vector<MarkdownLine>& lines) {
  lines.clear();
  if (text.empty()) return false;
  std::vector<MarkdownBlock> blocks;
  blocks.reserve(1000);
  for (std::wstring_view line : SplitMarkdownLines(text)) blocks.push_back(ClassifyMarkdownLine(line, fontName, pointSize));
  const int lineHeight = measure.baseLineHeight();
  for (const MarkdownBlock& block : blocks) {
    if (block.type == T::Empty) {
      MarkdownLine line;
      line.type = T::Empty;
      line.spaceBefore = lineHeight / 2;
      lines.push_back(std::move(line));
    } else if (block.type == T::Rule) {
      MarkdownLine line;
      line.type = T::Paragraph;
      line.isRule = 1;
      line.spaceBefore = lineHeight / 3;
      lines.push_back(std::move(line));
    } else {
      LayOutTextBlock(block, maxWidth, lineHeight, measure, lines);
    }
  }
  return !lines.empty();
}
