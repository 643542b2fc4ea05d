#include "shell/layout.h"

#include <cwchar>

std::array<int, 6> StatusPartEdges(int clientWidth) {
  int base = clientWidth >= 590 ? clientWidth - 510 : 80;
  return {base, base + 100, base + 200, base + 255, base + 310, -1};
}

MainLayout ComputeMainLayout(int clientWidth, int clientHeight, int statusHeight, int stripWidth, bool withPanel,
                             int panelPercent) {
  MainLayout layout;
  int contentHeight = clientHeight - statusHeight - kToolbarHeight;
  if (contentHeight < 0) contentHeight = 0;
  layout.toolbar = {0, 0, clientWidth, kToolbarHeight};
  int editorWidth = clientWidth;
  if (withPanel) {
    panelPercent = LaidOutPanelPercent(panelPercent);
    int panelWidth = clientWidth * panelPercent / 100;
    editorWidth = clientWidth - panelWidth;
    if (editorWidth < kEditorMinimumWidth) {
      editorWidth = kEditorMinimumWidth;
      panelWidth = clientWidth - kEditorMinimumWidth;
    }
    layout.panel = {editorWidth, kToolbarHeight, panelWidth, contentHeight};
    layout.panelPercent = panelPercent;
    layout.panelShown = true;
  }
  layout.strip = {0, kToolbarHeight, stripWidth, contentHeight};
  layout.editor = {stripWidth, kToolbarHeight, editorWidth - stripWidth, contentHeight};
  return layout;
}

int LaidOutPanelPercent(int panelPercent) { return panelPercent < 30 || panelPercent > 50 ? 50 : panelPercent; }

int RequiredMinimumWidth(bool aiMode, bool panelExists, int panelPercent) {
  const bool withPanel = aiMode && panelExists;
  return MinimumWindowWidth(withPanel, withPanel ? LaidOutPanelPercent(panelPercent) : 0);
}

int MinimumWindowWidth(bool withPanel, int panelPercent) {
  if (!withPanel) return 640;
  switch (panelPercent) {
    case 30: return 1200;
    case 40: return 1100;
    case 50: return 740;
    default: return 720;
  }
}

int LineNumberStripWidth(int lineCount, int digitWidth) {
  int digits = 0;
  for (int n = lineCount; n > 0; n /= 10) ++digits;
  if (digits < 3) digits = 3;
  if (digitWidth < 1) digitWidth = 8;
  return digits * digitWidth + 12;
}
