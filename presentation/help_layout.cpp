#include "presentation/help_layout.h"

#include <algorithm>
#include <cwchar>

const wchar_t kHelpLinkMarker[] = L"[[about-link]]";

HelpLineKind ClassifyHelpLine(const wchar_t* line) {
  if (!line[0]) return HelpLineKind::Gap;
  if (line[0] == L'#' && line[1] == L'#') return HelpLineKind::Heading;
  if (wcscmp(line, kHelpLinkMarker) == 0) return HelpLineKind::Link;
  return HelpLineKind::Paragraph;
}

int HelpRowAt(int clientY) {
  int offset = clientY - kHelpTitleHeight - kHelpRowTop;
  if (offset < 0) return -1;  // the title band and the bar's top margin hold no row
  int row = offset / kHelpRowHeight;
  return row < kHelpTopicCount ? row : -1;
}

int HelpTextRight(int areaWidth) { return kHelpTextLeft + std::max(areaWidth - 62, 40); }

int MeasureHelpTopic(const wchar_t* const* lines, int areaWidth, const HelpFontHeights& fonts,
                     const HelpMeasure& measure) {
  if (areaWidth < 49) return 0;
  const int width = HelpTextRight(areaWidth) - kHelpTextLeft;
  const int lineHeight = fonts.body + 4;
  int y = kHelpTextLeft;
  for (int i = 0; lines[i]; ++i) {
    switch (ClassifyHelpLine(lines[i])) {
      case HelpLineKind::Heading:
        if (i > 0) y += fonts.heading / 2;
        y += measure(lines[i] + 2, true, width) + 6;
        break;
      case HelpLineKind::Gap: y += lineHeight / 2; break;
      case HelpLineKind::Link: y += lineHeight + 3; break;
      case HelpLineKind::Paragraph: {
        int height = measure(lines[i], false, width);
        y += (height ? height : lineHeight) + 3;
        break;
      }
    }
  }
  return y;
}

int HelpScrollMax(int measured, int areaHeight) {
  if (measured <= 0) return 0;  // too narrow to lay out: nothing scrolls
  return std::max(measured + kHelpTextLeft - areaHeight, 0);
}

int ClampHelpScroll(int scrollY, int scrollMax) { return std::max(0, std::min(scrollY, scrollMax)); }
