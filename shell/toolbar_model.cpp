#include "shell/toolbar_model.h"

namespace {

constexpr uint32_t Rgb(uint32_t r, uint32_t g, uint32_t b) { return r | (g << 8) | (b << 16); }

constexpr uint32_t kWhite = Rgb(0xFF, 0xFF, 0xFF);
constexpr uint32_t kDarkTopLine = Rgb(0x46, 0x46, 0x4B);
constexpr uint32_t kDarkHoverLine = Rgb(0x64, 0x64, 0x6E);
constexpr uint32_t kDarkAccentFill = Rgb(0x1E, 0x26, 0x32);
constexpr uint32_t kLightAccentFill = Rgb(0xE1, 0xE8, 0xF5);
constexpr uint32_t kDarkAccentLine = Rgb(0x46, 0x82, 0xB4);
constexpr uint32_t kLightAccentLine = Rgb(0x1E, 0x64, 0xA0);

constexpr std::array<ToolbarButtonRow, kToolbarButtonCount> kButtons = {{
    {1001, L"New"},
    {1002, L"Open"},
    {1003, L"Save"},
    {3333, L"Export"},
    {6001, L"Settings"},
    {4020, L"Profiles"},
    {4021, L"AI Mod"},
    {4001, L"Help"},
}};

bool IsDark(const ThemeColors& row) { return (row.isDark & 0xFF) != 0; }

}  // namespace

const std::array<ToolbarButtonRow, kToolbarButtonCount>& ToolbarButtons() { return kButtons; }

const wchar_t* ToolbarCaption(int index, bool aiMode) {
  if (index == kToolbarModeIndex) return aiMode ? L"Classic" : L"AI Mod";
  return index >= 0 && index < kToolbarButtonCount ? kButtons[index].caption : L"";
}

std::array<ToolbarRect, kToolbarButtonCount> ToolbarButtonRects(int clientWidth) {
  constexpr int rowWidth = kToolbarButtonCount * kToolbarButtonWidth + (kToolbarButtonCount - 1) * kToolbarButtonGap;
  int left = (clientWidth - rowWidth) / 2;
  if (left < kToolbarMinimumLeft) left = kToolbarMinimumLeft;
  std::array<ToolbarRect, kToolbarButtonCount> rects;
  for (int i = 0; i < kToolbarButtonCount; ++i) {
    rects[i].left = left + i * (kToolbarButtonWidth + kToolbarButtonGap);
    rects[i].right = rects[i].left + kToolbarButtonWidth;
    rects[i].top = kToolbarButtonTop;
    rects[i].bottom = kToolbarButtonBottom;
  }
  return rects;
}

std::array<bool, kToolbarButtonCount> ToolbarEnabled(bool modified, bool defaultInstance) {
  std::array<bool, kToolbarButtonCount> enabled;
  enabled.fill(true);
  enabled[2] = modified;
  enabled[kToolbarProfilesIndex] = defaultInstance;
  return enabled;
}

int ToolbarHitTest(const std::array<ToolbarRect, kToolbarButtonCount>& rects,
                   const std::array<bool, kToolbarButtonCount>& enabled, int x, int y) {
  for (int i = 0; i < kToolbarButtonCount; ++i)
    if (enabled[i] && rects[i].Contains(x, y)) return i;
  return -1;
}

bool IsAccentButton(int index, bool enabled) {
  return index == kToolbarModeIndex || (index == kToolbarExportIndex && enabled);
}

ToolbarButtonLook ToolbarButtonPaint(const ThemeColors& row, bool accent, bool enabled, bool hovered, bool pressed) {
  const bool dark = IsDark(row);
  ToolbarButtonLook look;
  if (accent) {
    look.fill = pressed ? row.controlBorder : hovered ? row.controlHover : dark ? kDarkAccentFill : kLightAccentFill;
    look.bordered = false;
    look.extraHeight = kToolbarAccentExtraHeight;
  } else {
    look.fill = !enabled ? row.toolbarBackground : pressed ? row.controlBorder : hovered ? row.controlHover
                                                                                        : row.controlBackground;
    look.border = hovered ? row.buttonBorderFocused : row.controlBorder;
  }
  if (hovered) {
    look.topLineWidth = 1;
    look.topLine = dark ? kDarkHoverLine : kWhite;
  }
  if (accent && !pressed) {  // drawn over the hover line in the same place
    look.topLineWidth = 2;
    look.topLine = dark ? kDarkAccentLine : kLightAccentLine;
  }
  look.text = !enabled ? row.controlTextDisabled : hovered ? row.controlTextActive : row.controlText;
  look.textShift = hovered || pressed ? 1 : 0;
  return look;
}

uint32_t ToolbarTopLine(const ThemeColors& row) { return IsDark(row) ? kDarkTopLine : kWhite; }
