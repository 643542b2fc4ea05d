// Process-wide state of the presentation: theme choice, title bar and the
// editor's language.
#pragma once

#include <windows.h>

extern bool g_themeChosen;  // the theme stands by the user's choice; set at start-up

// Dark or light title bar through the desktop window manager.
void SetDarkTitleBar(HWND window, bool dark);

// Sets the lexer for a path and styles the editor. Plain text until the
// lexers are wired in.
void ApplyLanguage(const wchar_t* path);

// The start screen, shown before the DLLs load; returns when it has gone.
// Shown by the splash window once it exists; until then start-up goes on at once.
void ShowSplash(HINSTANCE instance);
