#include "presentation/presentation.h"

bool g_themeChosen = false;

void ShowSplash(HINSTANCE instance) {
  (void)instance;
  OutputDebugStringW(L"[ShowSplash] not built yet\n");
}
