// Arithmetic of the main window's layout, with no window in sight.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "export/progress_text.h"  // FormatElapsed

constexpr int kToolbarHeight = 44;
constexpr int kEditorMinimumWidth = 300;
constexpr int kMinimumTrackHeight = 480;

// Right edges of the six status-bar parts; the last is -1 (to the end).
std::array<int, 6> StatusPartEdges(int clientWidth);

struct Box {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Box& other) const {
    return x == other.x && y == other.y && width == other.width && height == other.height;
  }
};

struct MainLayout {
  Box toolbar, strip, editor, panel;
  int panelPercent = 0;  // after correction; 0 without a panel
  bool panelShown = false;
};

// clientWidth/Height of the main window, the status bar's height, the strip's
// width (0 when line numbers are off), and whether the AI panel is laid out
// with which percentage (outside 30..50 it becomes 50).
MainLayout ComputeMainLayout(int clientWidth, int clientHeight, int statusHeight, int stripWidth, bool withPanel,
                             int panelPercent);

// Minimum track width: with the panel 1200 at 30 per cent, 1100 at 40, 740
// at 50, 720 otherwise; without it 640. The narrower panel wants the wider window.
int MinimumWindowWidth(bool withPanel, int panelPercent);

// The percentage a layout gives the panel: outside 30..50 it becomes 50.
int LaidOutPanelPercent(int panelPercent);

// The minimum width for the window as it stands now: AI Mod with the panel
// present, at the percentage the next layout will use. Growing to the
// minimum asks this rather than the value of the last layout, which is stale
// once the percentage changed.
int RequiredMinimumWidth(bool aiMode, bool panelExists, int panelPercent);

// Width of the line-number strip for a line count and a digit width.
int LineNumberStripWidth(int lineCount, int digitWidth);

