// Colours and sizes of the program's owner-drawn menus, without a window.
#pragma once

#include <cstdint>

// One row of the menus' own colour table (COLORREF values, 0x00BBGGRR).
struct MenuColors {
  uint32_t unused;  // a column nothing reads
  uint32_t selection;
  uint32_t background;
  uint32_t text;
  uint32_t selectedText;
  uint32_t disabledText;
  uint32_t separator;
};

// The row of a theme index; 6 or more reads row 0.
const MenuColors& MenuColorRow(unsigned themeIndex);
// The editor menu's table has one more column, which nothing reads either.
uint32_t EditorMenuExtraColour(unsigned themeIndex);

struct MenuItemSize {
  int width;
  int height;
};

// Editor menu: separators 7 by 190; items 20 high, label + 40, plus
// shortcut + 24 when there is one, at least 190.
MenuItemSize MeasureEditorMenuItem(bool separator, int labelWidth, int shortcutWidth);
// Edit-field menu: the same with a minimum width of 160.
MenuItemSize MeasureEditMenuItem(bool separator, int labelWidth, int shortcutWidth);

// Which items of an edit field's menu are enabled.
struct EditMenuRules {
  bool undo, cut, copy, paste, clear, selectAll;
};
EditMenuRules EditMenuEnabled(bool canUndo, bool hasSelection, bool clipboardHasText, bool empty, bool readOnly);
