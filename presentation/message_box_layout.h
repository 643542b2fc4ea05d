// Sizes of the message box in dialog units, worked out without a window:
// the dialog, its text, the input field, the buttons with their captions and
// the result each of them gives.
#pragma once

#include "presentation/dialog_units.h"

#include <string>

constexpr int kMessageBoxStaticId = 2500;
constexpr int kMessageBoxFirstButtonId = 2501;
constexpr int kMessageBoxEditId = 139;
constexpr int kMessageBoxMaxButtons = 3;

constexpr int kMessageBoxMinWidth = 220;
constexpr int kMessageBoxMaxWidth = 400;
constexpr int kMessageBoxButtonWidth = 50;
constexpr int kMessageBoxButtonHeight = 14;
constexpr int kMessageBoxButtonPitch = 56;


struct MessageBoxButtonLayout {
  DialogUnitRect rect;
  int id;                      // 2501, 2502, 2503
  const wchar_t* caption;      // what the button paints
  const wchar_t* controlText;  // the window text of the control
  int result;                  // what pressing it returns
};

struct MessageBoxLayout {
  int kind;  // 0..4; any other kind is laid out as kind 2
  int longestLine;  // L: characters of the longest line
  int lineCount;    // n: line feeds plus 1
  int width;
  int height;
  int textHeight;
  DialogUnitRect text;  // the static 2500
  bool hasEdit;
  DialogUnitRect edit;  // the field 139, kind 4 only
  int buttonY;
  int buttonCount;
  MessageBoxButtonLayout buttons[kMessageBoxMaxButtons];
};

// The kind to lay out: 0..4 stay, anything else is shown as kind 2 (OK).
int NormalizeMessageBoxKind(int kind);

// Longest line in characters and number of lines (line feeds plus 1).
// Carriage returns are not counted as characters.
void MeasureMessageBoxText(const std::wstring& text, int* longestLine, int* lineCount);

MessageBoxLayout ComputeMessageBoxLayout(int kind, const std::wstring& text);

// Number of buttons of a kind: 3, 2 or 1.
int MessageBoxButtonCount(int kind);

// Painted caption and control text of button 0..2 of a kind; null past the last button.
const wchar_t* MessageBoxButtonCaption(int kind, int buttonIndex);
const wchar_t* MessageBoxButtonControlText(int kind, int buttonIndex);

// Result of button 0..2 of a kind (131 OK, 132 Cancel, 133 Yes, 134 No); 0 past the last button.
int MessageBoxButtonResult(int kind, int buttonIndex);

// Result of Esc and of the title bar's close button: 131 in kind 2, 132 in all others.
int MessageBoxEscapeResult(int kind);
