// Where pages begin, for Print Preview and printing, as plain arithmetic: the
// page frame from a device's resolution and the margins, a line's advance,
// the page breaks over measured line heights and which lines of a page get
// drawn. The measuring itself is the caller's (GDI's DrawTextW with word
// breaks); nothing here needs a window.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The page frame in device units (pixels or printer dots).
struct PageGeometry {
  int32_t paperWidth = 0;   // the sheet
  int32_t paperHeight = 0;
  int32_t left = 0;         // the text frame
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;       // the footer lies below it
};

// The first line of every page: starts with 0, strictly rising.
using PageStarts = std::vector<int32_t>;

// Page margins in hundredths of a millimetre, as the settings hold them.
struct PageMargins {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
};

// What a printer context says of itself (GetDeviceCaps).
struct PrinterCaps {
  int32_t dpiX = 0;            // LOGPIXELSX
  int32_t dpiY = 0;            // LOGPIXELSY
  int32_t physicalWidth = 0;   // PHYSICALWIDTH
  int32_t physicalHeight = 0;  // PHYSICALHEIGHT
  int32_t offsetX = 0;         // PHYSICALOFFSETX
  int32_t offsetY = 0;         // PHYSICALOFFSETY
};

// Windows' MulDiv: a × b / c in 64 bits, rounded half away from zero; -1 for
// a divisor of 0 or a result beyond 32 bits.
int32_t MulDivRounded(int32_t a, int32_t b, int32_t c);

// A margin in twips, truncated: 1500 gives 850.
int32_t MarginTwips(int32_t hundredthsMm);
// A margin in device units at that resolution: 1500 at 96 dpi gives 57.
int32_t MarginToDevice(int32_t hundredthsMm, int32_t dpi);
// The band below the frame that holds the footer: two lines of the font.
int32_t FooterReserve(int32_t fontSize, int32_t dpiY);

// The screen's frame on a sheet of A4 whatever paper the settings name.
PageGeometry PreviewGeometry(int32_t dpiX, int32_t dpiY, const PageMargins& margins, int32_t fontSize);
// The printer's frame on its real paper. The offsets are added to margins
// that a printer context's origin already stands in from, so the frame sits
// one offset further in than the margin alone says.
PageGeometry PrinterGeometry(const PrinterCaps& caps, const PageMargins& margins, int32_t fontSize);

// A line's height on the page: what the word-wrapped measure gave, or
// tmHeight for an empty line or a measure of 0.
int32_t LineHeight(int32_t measured, int32_t tmHeight);
// The vertical room a line takes while paginating: its height plus 2.
int32_t LineAdvance(int32_t measured, int32_t tmHeight);

// The text in lines: CR, CR LF and a lone LF each end a line; a last line
// with text is kept, so a text ending in a line break has no extra empty
// line. Every empty line inside the text stays. reserve sizes the vector.
std::vector<std::wstring> SplitPageLines(const std::wstring& text, int32_t reserve);

// Whether pagination asks for a cancel before line i: at 0, 50, 100, ...
bool IsCancelCheckLine(size_t line);

// The page breaks over lines 0 .. lineCount-1 whose advances advance(i)
// gives. A line whose advance takes the running total above frameHeight
// stays on its page and the next line opens a new one; the last line never
// opens a page of its own. cancelled, when given, is asked before every
// line that IsCancelCheckLine names and stops the walk (false returned);
// pageOpened, when given, hears the page count each time a page opens.
bool PaginateLines(size_t lineCount, int32_t frameHeight, const std::function<int32_t(size_t)>& advance,
                   PageStarts& starts, const std::function<bool()>& cancelled = nullptr,
                   const std::function<void(int32_t pages)>& pageOpened = nullptr);

// The lines of a page: [first, end). A page past the list is empty.
struct LineRange {
  int32_t first = 0;
  int32_t end = 0;
};
LineRange PageLines(size_t pageIndex, const PageStarts& starts, size_t lineCount);

// One line as a page draws it: its box from top to bottom. Empty lines take
// room and draw nothing.
struct PlacedLine {
  int32_t line = 0;
  int32_t top = 0;
  int32_t bottom = 0;
  bool empty = false;
};

// Lays out the lines of a page from y = top on: each advances by its height
// plus 2, and a non-empty line whose bottom passes frameBottom ends the page
// undrawn, with all that follows it. measured(i) is the wrapped height of a
// non-empty line (0 when the measure gave nothing); empty(i) says which
// lines are empty.
std::vector<PlacedLine> PlacePageLines(size_t pageIndex, const PageStarts& starts, size_t lineCount, int32_t top,
                                       int32_t frameBottom, int32_t tmHeight,
                                       const std::function<bool(size_t)>& empty,
                                       const std::function<int32_t(size_t)>& measured);

// "- 3 -" for the page counted from 1.
std::wstring PageFooterText(int32_t pageNumber);
// The footer's left: centred between the frame's left and right.
int32_t FooterX(const PageGeometry& geometry, int32_t textWidth);
// The preview's footer top: centred in the band between the frame's bottom
// and the sheet's.
int32_t PreviewFooterY(const PageGeometry& geometry, int32_t textHeight);
// The printed footer's top: centred in the band below the frame, less the
// unprintable offset.
int32_t PrinterFooterY(const PageGeometry& geometry, const PrinterCaps& caps, int32_t textHeight);

// The pagination dialog's status: "Paginating... page 3  (1200 lines)", or
// "Paginating... page 3" for a line count below 1.
std::wstring PaginationStatusText(int32_t pages, int32_t lineCount);
