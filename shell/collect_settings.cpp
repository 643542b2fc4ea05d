// The hand-over of the live values to the settings file at exit: what the
// user changed while the program ran, the window placement and the document.
#include <windows.h>

#include <cstring>
#include <string>

#include "document/document.h"
#include "settings/settings.h"
#include "shell/shell.h"

namespace {

void Log(const std::wstring& line) { OutputDebugStringW(line.c_str()); }

}  // namespace

void CollectSettings() {
  Log(L"[WM_DESTROY] Saving settings for profile: " + g_profileName + L", filePath: " + g_filePath + L"\n");

  g_settings.themeIndex = g_themeIndex;
  g_settings.wordWrap = g_wordWrap ? 1 : 0;
  g_settings.lineNumbers = g_lineNumbers ? 1 : 0;
  g_settings.fontSize = g_fontSize;
  memcpy(g_settings.fontName, g_fontName, sizeof(g_fontName));

  if (g_hwndMain && IsWindow(g_hwndMain)) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof(placement);
    if (GetWindowPlacement(g_hwndMain, &placement)) {
      // A maximised window keeps its restored size.
      const RECT& normal = placement.rcNormalPosition;
      g_settings.windowMaximized = placement.showCmd == SW_SHOWMAXIMIZED ? 1 : 0;
      g_settings.windowX = normal.left;
      g_settings.windowY = normal.top;
      g_settings.windowWidth = normal.right - normal.left;
      g_settings.windowHeight = normal.bottom - normal.top;
    }
  }

  Log(L"[CollectSettings] Profile: " + g_profileName + L", g_filePath: " + g_filePath + L"\n");
  if (!g_filePath.empty()) {
    CopySettingsText(g_settings.lastFilePath, 260, g_filePath);
    Log(L"[CollectSettings] Saved lastFilePath\n");
  } else {
    g_settings.lastFilePath[0] = L'\0';
    Log(L"[CollectSettings] Cleared lastFilePath\n");
  }

  if (g_hwndAiPanel && IsWindow(g_hwndAiPanel)) g_settings.aiPanelPercent = g_aiPanelPercent;

  SaveSettings(g_settings);
  Log(L"[WM_DESTROY] Settings saved\n");
}
