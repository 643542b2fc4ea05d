// Process-wide state of the settings subsystem: the record and its live copies.
#include "settings/settings.h"

AppSettings g_settings = {};

uint32_t g_themeIndex = 0;
bool g_wordWrap = true;
bool g_lineNumbers = true;
int g_fontSize = 11;
wchar_t g_fontName[64] = L"Consolas";
int g_aiPanelPercent = 50;
