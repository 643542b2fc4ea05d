// The six colour schemes that everything the program paints reads from.
#pragma once

#include <cstdint>

// One row: 35 fields of 32 bits. Colours are COLORREF values (0x00BBGGRR);
// isDark is 0 or 1 and only its low byte is read.
struct ThemeColors {
  uint32_t windowBackground;  // 0: Main window and panel backgrounds
  uint32_t editorBackground;  // 1: Editor, edit fields, exported pages
  uint32_t toolbarBackground;  // 2: Toolbar, Help side bar
  uint32_t statusBackground;  // 3: Status bar fill
  uint32_t dialogText;  // 4: Text on dialogs, headings in exports
  uint32_t editorText;  // 5: Editor default text, edit fields
  uint32_t mutedText;  // 6: Secondary text
  uint32_t statusText;  // 7: Status bar text
  uint32_t marginBackground;  // 8: Line-number margin
  uint32_t marginText;  // 9: Line numbers
  uint32_t marginCaretRow;  // 10: Number of the caret's row in the line-number strip
  uint32_t controlBackground;  // 11: Message box buttons, tabs, lists of the Help window
  uint32_t controlHover;  // 12: Hovered and pressed state of those
  uint32_t controlBorder;  // 13: Their border
  uint32_t controlText;  // 14: Their text
  uint32_t controlTextActive;  // 15: Their text when selected
  uint32_t controlTextDisabled;  // 16: Their text when disabled
  uint32_t separator;  // 17: One-pixel lines and rules
  uint32_t buttonBorderFocused;  // 18: Border of a focused themed button
  uint32_t buttonFace;  // 19: Face of a themed button
  uint32_t buttonFacePressed;  // 20: Face when pressed
  uint32_t buttonBorder;  // 21: Border of a themed button
  uint32_t buttonText;  // 22: Label of a themed button
  uint32_t listBackground;  // 23: Combo lists and list boxes; code in exports
  uint32_t dialogBackground;  // 24: Dialog backgrounds
  uint32_t caretColour;  // 25: Editor caret
  uint32_t selectionBackground;  // 26: Editor selection
  uint32_t selectionText;  // 27: Editor selected text
  uint32_t isDark;  // 28: Chooses dark window-theme classes
  uint32_t syntaxKeyword;  // 29: syntax colouring
  uint32_t syntaxComment;  // 30: syntax colouring
  uint32_t syntaxString;  // 31: syntax colouring
  uint32_t syntaxNumber;  // 32: syntax colouring
  uint32_t syntaxType;  // 33: syntax colouring
  uint32_t syntaxOperator;  // 34: syntax colouring
};

static_assert(sizeof(ThemeColors) == 35 * 4, "a theme row is 35 fields of 32 bits");

constexpr unsigned kThemeCount = 6;

// Row names as menus and the Settings dialog show them.
extern const wchar_t* const kThemeNames[kThemeCount];

// The row of an index; 6 or more reads row 0.
const ThemeColors& ThemeRow(unsigned index);

// The row of the live theme index.
const ThemeColors& CurrentTheme();


// The title bar ApplyTheme gives a row: dark for rows 0 and 4 only.
bool ThemeTitleBarDark(unsigned index);

// The title bar the system-theme sync gives a chosen theme: light for rows 1
// and 5 only, so Azure and Green get a dark frame here and a light one from
// ApplyTheme. Both are kept as they are.
bool SyncedTitleBarDark(unsigned themeIndex);

// Layered-window alpha of a transparency percentage: 10 gives 230.
unsigned char TransparencyAlpha(unsigned percent);

// "DarkMode_Explorer" for dark rows, "Explorer" for the others.
const wchar_t* WindowThemeClass(const ThemeColors& row);
