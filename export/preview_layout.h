// The Print Preview window's arithmetic, without a window: its size on
// opening and while dragged, the button bar, the scale and place of the
// sheet, the page turning and the texts.
#pragma once

#include <cstdint>
#include <string>

constexpr int32_t kPreviewBarHeight = 44;        // the button bar across the top
constexpr int32_t kPreviewBarLine = 43;          // its bottom line, in separator
constexpr int32_t kPreviewButtonCount = 4;
constexpr int32_t kPreviewButtonWidth = 84;
constexpr int32_t kPreviewButtonTop = 8;
constexpr int32_t kPreviewButtonBottom = 36;
constexpr int32_t kPreviewButtonGap = 8;
constexpr int32_t kPreviewGroupWidth = 360;      // four buttons and their three gaps
constexpr int32_t kPreviewMinWidth = 640;
constexpr int32_t kPreviewMinHeight = 480;
constexpr double kPreviewMaxScale = 3.0;

// The buttons in their order, and the commands they give.
enum PreviewButton : int32_t { kPreviewPrev = 0, kPreviewNext = 1, kPreviewPrint = 2, kPreviewClose = 3 };
constexpr int32_t kPreviewFirstCommand = 610;  // 610 Prev, 611 Next, 612 Print, 613 Close

struct PreviewRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
};

struct PreviewSize {
  int32_t width = 0;
  int32_t height = 0;
};

// The window's size on opening: the stored size when it lies within
// 640 .. screen by 480 .. screen, else 65 per cent of the screen's width (at
// most 900) by 85 per cent of its height (at most 1,000).
PreviewSize PreviewOpeningSize(int32_t storedWidth, int32_t storedHeight, int32_t screenWidth, int32_t screenHeight);

// A drag below the minimum size: the edge being dragged stays at the minimum
// distance from the opposite one. leftEdge / topEdge: the drag moves the left
// or the top edge.
void KeepPreviewMinimum(PreviewRect& box, bool leftEdge, bool topEdge);

// x of the button group in a client area of that width: centred, at least 8.
int32_t PreviewButtonsLeft(int32_t clientWidth);
PreviewRect PreviewButtonRect(int32_t button, int32_t clientWidth);
// The button under a client point, or -1.
int32_t PreviewButtonAt(int32_t x, int32_t y, int32_t clientWidth);
// Prev while a page lies before, Next while one lies after; Print and Close always.
bool PreviewButtonEnabled(int32_t button, int32_t currentPage, int32_t pageCount);
const wchar_t* PreviewButtonText(int32_t button);
// The page counter's box: right-aligned between width - 130 and width - 8.
PreviewRect PreviewPageTextRect(int32_t clientWidth);
// "Page 2 / 7", the page counted from 1.
std::wstring PreviewPageText(int32_t currentPage, int32_t pageCount);

// The sheet's scale: the least of (w - 48) / paper width, (h - 92) / paper
// height and 3.0.
double PreviewScale(int32_t clientWidth, int32_t clientHeight, int32_t paperWidth, int32_t paperHeight);
// The sheet drawn at that scale (size truncated), centred in the area below the bar.
PreviewRect PreviewSheetRect(int32_t clientWidth, int32_t clientHeight, int32_t paperWidth, int32_t paperHeight);

// The page a turn leads to: Prev (-1) or Next (+1) from the current one, or
// the current one at either end.
int32_t TurnPreviewPage(int32_t currentPage, int32_t pageCount, int32_t direction);
