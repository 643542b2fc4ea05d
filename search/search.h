// The search tools' marks in the editor.
#pragma once

#include <cstdint>
#include <vector>

#include "search/find_rules.h"

// Editor indicators by number, all drawn as rounded boxes under the text.
constexpr int kIndicatorHighlightAll = 8;
constexpr int kIndicatorReplaced = 9;
constexpr int kIndicatorCurrentMatch = 10;
constexpr int kIndicatorRegex = 11;

// Colours (0x00BBGGRR) and alphas of the Find and Replace marks.
constexpr uint32_t kHighlightColour = 0x0000DCFF;  // #FFDC00
constexpr int kHighlightAlpha = 70;
constexpr uint32_t kReplacedColour = 0x0000A5FF;  // #FFA500
constexpr int kReplacedAlpha = 80;                 // after Replace
constexpr int kReplacedAllAlpha = 120;             // after Replace All
constexpr uint32_t kCurrentColour = 0x00D77800;    // #0078D7
constexpr int kCurrentAlpha = 80;

// Drops Highlight All, replaced-text and current-match marks over the whole document.
void ClearSearchIndicators();
// Drops one indicator over the whole document.
void ClearIndicator(int indicator);
// A rounded box under the text in that colour and alpha.
void ConfigureFindIndicator(int indicator, uint32_t colour, int alpha);
// Marks length bytes from start with the indicator.
void FillIndicator(int indicator, int64_t start, int64_t length);
// Marks each [start, end) of a list of ranges; through the editor's direct
// function, since a list can hold a million ranges.
void FillIndicatorRanges(int indicator, const std::vector<FindMatch>& ranges);
