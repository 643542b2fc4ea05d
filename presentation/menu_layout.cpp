#include "presentation/menu_layout.h"

namespace {

constexpr MenuColors kMenuColors[6] = {
    {0x202020, 0xD47800, 0x1C1C1C, 0xDCDCDC, 0xFFFFFF, 0x5A5A5A, 0x373737},  // Tavro Dark
    {0xFFFFFF, 0xD47800, 0xFCFCFC, 0x141414, 0xFFFFFF, 0xAAAAAA, 0xD7D7D7},  // Tavro Light
    {0xFFF3EB, 0xC86400, 0xFCEBE1, 0x501E0A, 0xFFFFFF, 0xD2AA96, 0xEEC8AF},  // Azure
    {0xEBFFEB, 0x3C8C00, 0xE1FAE1, 0x003C00, 0xFFFFFF, 0x82B982, 0xA5E1A5},  // Green
    {0x222424, 0x875F4B, 0x1A1C1C, 0xC3D2D2, 0xE1F0F0, 0x555F5F, 0x363A3A},  // Night
    {0xE4F3FC, 0x2D5F9B, 0xDAEBF5, 0x142D4B, 0xEBF8FF, 0x87A0B9, 0x9EBCD4},  // Sepia
};

constexpr uint32_t kEditorMenuExtra[6] = {0x303030, 0xD2D2D2, 0xE4BEA5, 0x9BD79B, 0x2E3232, 0x94B2CA};

MenuItemSize Measure(bool separator, int labelWidth, int shortcutWidth, int minimumWidth) {
  if (separator) return {minimumWidth, 7};
  int width = labelWidth + 40 + (shortcutWidth > 0 ? shortcutWidth + 24 : 0);
  return {width < minimumWidth ? minimumWidth : width, 20};
}

}  // namespace

const MenuColors& MenuColorRow(unsigned themeIndex) { return kMenuColors[themeIndex < 6 ? themeIndex : 0]; }

uint32_t EditorMenuExtraColour(unsigned themeIndex) { return kEditorMenuExtra[themeIndex < 6 ? themeIndex : 0]; }

MenuItemSize MeasureEditorMenuItem(bool separator, int labelWidth, int shortcutWidth) {
  return Measure(separator, labelWidth, shortcutWidth, 190);
}

MenuItemSize MeasureEditMenuItem(bool separator, int labelWidth, int shortcutWidth) {
  return Measure(separator, labelWidth, shortcutWidth, 160);
}

EditMenuRules EditMenuEnabled(bool canUndo, bool hasSelection, bool clipboardHasText, bool empty, bool readOnly) {
  return {canUndo && !readOnly, hasSelection && !readOnly, hasSelection, clipboardHasText && !readOnly,
          hasSelection && !readOnly, !empty};
}
