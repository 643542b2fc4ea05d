// Process-wide state of the presentation and the window side of themes:
// switching, the editor's colours, title bars, the Viewer's look, buttons.
#pragma once

#include <windows.h>

extern bool g_themeChosen;  // the theme stands by the user's choice; set at start-up

// The one way to switch theme; an index of 6 or more is ignored.
void ApplyTheme(unsigned index, bool chosen);
// Colours of the editor control from the live theme row.
void ApplyEditorTheme();
// Base configuration of the editor control, once after it is created.
void SetupEditor();
// Title bar (and, for an unchosen theme, the row) after a system colour change.
void SyncSystemTheme(HWND window);
// The fixed reading look of a Viewer, in which the theme plays no part.
void ApplyViewerLook(HWND window);

// Dark or light title bar through the desktop window manager, with the
// attribute's older number as fallback and a redraw of the frame.
void SetDarkTitleBar(HWND window, bool dark);
// Only the attribute, for places that must not redraw the frame.
void SetDarkTitleAttribute(HWND window, bool dark);

// A straight line with a pen of its own, made and deleted here.
void DrawPenLine(HDC dc, int x1, int y1, int x2, int y2, COLORREF colour, int width);

// Paints an owner-drawn push button of a dialog in the live theme.
void DrawThemedButton(const DRAWITEMSTRUCT* item);

// Sets g_currentLanguage from a path, gives the editor that language's lexer
// (plain text when Lexilla has none for it) and styles it in the live theme.
void ApplyLanguage(const wchar_t* path);
// Reapplies font, colours and style table of g_currentLanguage; the lexer stays.
void RestyleCurrentLanguage();

// The start screen, shown before the DLLs load; returns when it has gone.
// Never in a Viewer.
void ShowSplash(HINSTANCE instance);
