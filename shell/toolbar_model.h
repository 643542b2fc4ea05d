// The toolbar as plain data: its eight buttons, where they stand, which are
// enabled, and how each is painted in a theme row. No window here.
#pragma once

#include <array>
#include <cstdint>

#include "presentation/themes.h"

constexpr int kToolbarButtonCount = 8;
constexpr int kToolbarButtonWidth = 75;
constexpr int kToolbarButtonGap = 8;
constexpr int kToolbarButtonTop = 6;
constexpr int kToolbarButtonBottom = 36;
constexpr int kToolbarMinimumLeft = 8;
constexpr int kToolbarAccentExtraHeight = 4;  // accent buttons are drawn this much taller
constexpr int kToolbarExportIndex = 3;
constexpr int kToolbarProfilesIndex = 5;
constexpr int kToolbarModeIndex = 6;

struct ToolbarButtonRow {
  uint32_t id;
  const wchar_t* caption;  // the mode button's depends on the mode
};

// The fixed table, in order: New, Open, Save, Export, Settings, Profiles,
// the mode switch, Help.
const std::array<ToolbarButtonRow, kToolbarButtonCount>& ToolbarButtons();

// "Classic" in AI Mod (the mode it would switch to), "AI Mod" in Classic;
// the table's caption for every other button.
const wchar_t* ToolbarCaption(int index, bool aiMode);

struct ToolbarRect {
  int left = 0, top = 0, right = 0, bottom = 0;
  bool Contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

// 75 pixels wide, gaps of 8, from y 6 to 36, the row centred: the first left
// edge is (width - 656) / 2, at least 8.
std::array<ToolbarRect, kToolbarButtonCount> ToolbarButtonRects(int clientWidth);

// Save only with a modified document, Profiles only in the default instance;
// all others always.
std::array<bool, kToolbarButtonCount> ToolbarEnabled(bool modified, bool defaultInstance);

// The first enabled button containing the point, or -1.
int ToolbarHitTest(const std::array<ToolbarRect, kToolbarButtonCount>& rects,
                   const std::array<bool, kToolbarButtonCount>& enabled, int x, int y);

// Export while enabled, and the mode button always.
bool IsAccentButton(int index, bool enabled);

// How one button is painted.
struct ToolbarButtonLook {
  uint32_t fill = 0;
  bool bordered = true;
  uint32_t border = 0;
  uint32_t text = 0;
  int extraHeight = 0;   // added to the bottom of the rectangle
  int textShift = 0;     // the caption moves down by this
  int topLineWidth = 0;  // 0 none, 1 the hover highlight, 2 the accent line
  uint32_t topLine = 0;  // its colour; drawn 4 in from each side, 1 below the top
};

ToolbarButtonLook ToolbarButtonPaint(const ThemeColors& row, bool accent, bool enabled, bool hovered, bool pressed);

// The bar's own lines: along the top (#46464B dark, white light) and the bottom (separator).
uint32_t ToolbarTopLine(const ThemeColors& row);
