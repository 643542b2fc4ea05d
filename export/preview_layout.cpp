#include "export/preview_layout.h"

#include <algorithm>
#include <cwchar>

namespace {

constexpr int32_t kPreviewDefaultMaxWidth = 900;
constexpr int32_t kPreviewDefaultMaxHeight = 1000;
constexpr int32_t kSheetSideRoom = 48;     // the sheet's room across, shadow included
constexpr int32_t kSheetHeightRoom = 92;   // the bar and the room above and below the sheet
constexpr int32_t kPageTextLeftInset = 130;
constexpr int32_t kPageTextRightInset = 8;

}  // namespace

PreviewSize PreviewOpeningSize(int32_t storedWidth, int32_t storedHeight, int32_t screenWidth, int32_t screenHeight) {
  if (storedWidth >= kPreviewMinWidth && storedWidth <= screenWidth && storedHeight >= kPreviewMinHeight &&
      storedHeight <= screenHeight)
    return {storedWidth, storedHeight};
  return {std::min(screenWidth * 65 / 100, kPreviewDefaultMaxWidth),
          std::min(screenHeight * 85 / 100, kPreviewDefaultMaxHeight)};
}

void KeepPreviewMinimum(PreviewRect& box, bool leftEdge, bool topEdge) {
  if (box.right - box.left < kPreviewMinWidth) {
    if (leftEdge)
      box.left = box.right - kPreviewMinWidth;
    else
      box.right = box.left + kPreviewMinWidth;
  }
  if (box.bottom - box.top < kPreviewMinHeight) {
    if (topEdge)
      box.top = box.bottom - kPreviewMinHeight;
    else
      box.bottom = box.top + kPreviewMinHeight;
  }
}

int32_t PreviewButtonsLeft(int32_t clientWidth) { return std::max(8, (clientWidth - kPreviewGroupWidth) / 2); }

PreviewRect PreviewButtonRect(int32_t button, int32_t clientWidth) {
  PreviewRect rect;
  rect.left = PreviewButtonsLeft(clientWidth) + button * (kPreviewButtonWidth + kPreviewButtonGap);
  rect.right = rect.left + kPreviewButtonWidth;
  rect.top = kPreviewButtonTop;
  rect.bottom = kPreviewButtonBottom;
  return rect;
}

int32_t PreviewButtonAt(int32_t x, int32_t y, int32_t clientWidth) {
  for (int32_t button = 0; button < kPreviewButtonCount; ++button) {
    const PreviewRect rect = PreviewButtonRect(button, clientWidth);
    if (x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom) return button;
  }
  return -1;
}

bool PreviewButtonEnabled(int32_t button, int32_t currentPage, int32_t pageCount) {
  switch (button) {
    case kPreviewPrev: return currentPage > 0;
    case kPreviewNext: return currentPage < pageCount - 1;
    case kPreviewPrint:
    case kPreviewClose: return true;
    default: return false;
  }
}

const wchar_t* PreviewButtonText(int32_t button) {
  static const wchar_t* const kTexts[kPreviewButtonCount] = {L"\u25C4  Prev", L"Next  \u25BA", L"Print",
                                                             L"\u2715  Close"};
  return button >= 0 && button < kPreviewButtonCount ? kTexts[button] : L"";
}

PreviewRect PreviewPageTextRect(int32_t clientWidth) {
  PreviewRect rect;
  rect.left = clientWidth - kPageTextLeftInset;
  rect.right = clientWidth - kPageTextRightInset;
  rect.top = 0;
  rect.bottom = kPreviewBarHeight;
  return rect;
}

std::wstring PreviewPageText(int32_t currentPage, int32_t pageCount) {
  wchar_t text[64];
  swprintf(text, 64, L"Page %d / %d", currentPage + 1, pageCount);
  return text;
}

double PreviewScale(int32_t clientWidth, int32_t clientHeight, int32_t paperWidth, int32_t paperHeight) {
  const double across = static_cast<double>(clientWidth - kSheetSideRoom) / paperWidth;
  const double down = static_cast<double>(clientHeight - kSheetHeightRoom) / paperHeight;
  return std::min(std::min(across, down), kPreviewMaxScale);
}

PreviewRect PreviewSheetRect(int32_t clientWidth, int32_t clientHeight, int32_t paperWidth, int32_t paperHeight) {
  const double scale = PreviewScale(clientWidth, clientHeight, paperWidth, paperHeight);
  const auto width = static_cast<int32_t>(paperWidth * scale);
  const auto height = static_cast<int32_t>(paperHeight * scale);
  PreviewRect rect;
  rect.left = (clientWidth - width) / 2;
  rect.top = kPreviewBarHeight + (clientHeight - kPreviewBarHeight - height) / 2;
  rect.right = rect.left + width;
  rect.bottom = rect.top + height;
  return rect;
}

int32_t TurnPreviewPage(int32_t currentPage, int32_t pageCount, int32_t direction) {
  const int32_t next = currentPage + direction;
  return next >= 0 && next < pageCount ? next : currentPage;
}
