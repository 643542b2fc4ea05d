// The program's own Font dialog: family, size, bold and italic of the
// editor, each family shown in its own face, in the live theme.
#pragma once

#include <windows.h>

// What follows the editor's font in the layers above this one: the
// line-number strip's width and the AI panel's look, and the status bar's
// font text. The shell installs both before the dialog can open.
struct FontDialogHooks {
  void (*refreshViews)() = nullptr;
  void (*updateStatusFont)() = nullptr;
};
void SetFontDialogHooks(const FontDialogHooks& hooks);

// Command 210 and the Settings dialog's "Select Font...": runs the dialog
// modally; OK applies the font to the editor and saves it. True when the
// dialog ended with OK.
bool ShowFontDialog(HWND owner);
