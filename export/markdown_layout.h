// The word-wrapping layout of the Markdown dialect: blocks to measured
// lines for the PDF renderer. The arithmetic is plain; what a font measures
// comes through MarkdownMeasure, which GDI answers in the program.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "export/markdown_model.h"

struct MarkdownMeasure {
  std::function<int()> baseLineHeight;                  // line height of the prose font at weight 400
  std::function<void(const MarkdownRun&)> selectFont;  // the run's font, until the next call
  std::function<int(std::wstring_view)> textWidth;      // a string's width in the selected font
};

// Clears lines; false at once for empty text. Otherwise every source line is
// classified and laid out at maxWidth (taken as it comes, in the measure's
// units); true when at least one line came out.
bool LayOutMarkdownLines(std::wstring_view text, const std::wstring& fontName, int32_t pointSize, int maxWidth,
                         const MarkdownMeasure& measure, std::vector<MarkdownLine>& lines);
