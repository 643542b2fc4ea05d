// The search tools' marks in the editor.
#pragma once

// Editor indicators by number, all drawn as rounded boxes under the text.
constexpr int kIndicatorHighlightAll = 8;
constexpr int kIndicatorReplaced = 9;
constexpr int kIndicatorCurrentMatch = 10;
constexpr int kIndicatorRegex = 11;

// Drops Highlight All, replaced-text and current-match marks over the whole document.
void ClearSearchIndicators();
