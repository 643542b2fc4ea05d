// The live theme on a dialog of the program: dark or light title bar, the
// theme's background as its class brush, push buttons owner-drawn by
// DrawThemedButton, check boxes without visual styles so that the dialog's
// colours reach them, and group boxes painted here (Wine's unstyled group
// box ignores the text colour that the dialog hands it).
#pragma once

#include <windows.h>

// The GDI objects a themed dialog holds from WM_INITDIALOG to WM_DESTROY.
struct DialogTheme {
  HBRUSH background = nullptr;  // the theme's windowBackground
  HBRUSH field = nullptr;       // edit fields and lists: editorBackground
  HFONT buttonFont = nullptr;   // "Segoe UI", -12
  LONG_PTR classBrushBefore = 0;
};

// One group box painted here, for a dialog that themes itself otherwise:
// frame in controlBorder, caption in the colours the dialog answers to
// WM_CTLCOLORSTATIC.
void ThemeGroupBox(HWND box);

// At WM_INITDIALOG, after the controls exist.
void ApplyDialogTheme(HWND dialog, DialogTheme& theme);
// Answers the colour messages (WM_CTLCOLOR*) and the push buttons'
// WM_DRAWITEM; false for any other message.
bool DialogThemeMessage(const DialogTheme& theme, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR& result);
// At WM_DESTROY: the class brush as it was, the objects deleted.
void ReleaseDialogTheme(HWND dialog, DialogTheme& theme);

// A rounded box of one-pixel border, as the painted buttons of the
// program's dialogs are drawn; corner is RoundRect's ellipse size.
void PaintRoundBox(HDC dc, const RECT& box, COLORREF fill, COLORREF border, int corner);

// For a dialog painted by code with no controls: its background is never
// erased (the painting covers it) and every key reaches it, arrows, pages and
// Esc included, even through the dialog manager. True when the message was
// one of those two and is answered (DWLP_MSGRESULT set).
bool PaintedWindowMessage(HWND dialog, UINT message);

// Centres a dialog on its owner (on the screen without one), kept within the
// work area of the owner's monitor.
void CentreOnOwner(HWND dialog);
