#include "presentation/presentation.h"

#include <dwmapi.h>

bool g_themeChosen = false;

void SetDarkTitleBar(HWND window, bool dark) {
  constexpr DWORD kUseImmersiveDarkMode = 20;
  BOOL value = dark ? TRUE : FALSE;
  DwmSetWindowAttribute(window, kUseImmersiveDarkMode, &value, sizeof(value));
}

void ApplyLanguage(const wchar_t* path) { (void)path; }

void ShowSplash(HINSTANCE instance) { (void)instance; }
