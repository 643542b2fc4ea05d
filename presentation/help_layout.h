// Geometry of the Help window and the arithmetic of its text column: which
// side-bar row a point is on, how tall a topic is, how far it scrolls. No
// window is needed: the text is measured through a callback.
#pragma once

#include <functional>

constexpr int kHelpTopicCount = 11;
constexpr int kHelpTitleHeight = 40;     // the band across the top
constexpr int kHelpSideWidth = 190;      // the topic list at the left
constexpr int kHelpRowHeight = 32;       // one topic row
constexpr int kHelpRowTop = 12;          // first row, within the side bar
constexpr int kHelpTextLeft = 24;        // text column start, and the top margin
constexpr int kHelpLineStep = 20;        // scroll bar line up or down
constexpr int kHelpWheelStep = 40;       // one wheel message, whatever its delta
constexpr int kHelpMinTrackWidth = 600;
constexpr int kHelpMinTrackHeight = 420;

// What a line of the mark-up is.
enum class HelpLineKind { Gap, Heading, Link, Paragraph };

// The fixed text that stands for the About topic's link line.
extern const wchar_t kHelpLinkMarker[];

HelpLineKind ClassifyHelpLine(const wchar_t* line);

// The side-bar row under a client y, or -1 above the first or below the last.
int HelpRowAt(int clientY);

// Right edge of the text column for a content area of that width.
int HelpTextRight(int areaWidth);

// Measures a text in the body (heading false) or heading font, word-wrapped to
// the width; gives the height of the wrapped text.
using HelpMeasure = std::function<int(const wchar_t* text, bool heading, int width)>;

struct HelpFontHeights {
  int body = 0;     // tmHeight of the body font
  int heading = 0;  // tmHeight of the heading font
};

// The measured height of a topic's lines (null-ended) for the scroll range:
// from y = 24, a heading advances by its height + 6 (the painter uses + 8),
// and a content area under 49 wide measures 0.
int MeasureHelpTopic(const wchar_t* const* lines, int areaWidth, const HelpFontHeights& fonts,
                     const HelpMeasure& measure);

// The largest useful scroll position: the measured height plus a bottom
// margin of 24, less the area's height, never below 0.
int HelpScrollMax(int measured, int areaHeight);

// A scroll position held from 0 to the maximum.
int ClampHelpScroll(int scrollY, int scrollMax);
