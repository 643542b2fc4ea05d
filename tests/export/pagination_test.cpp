// Page frames, line advances, page breaks over fake measures, the cut-off of
// a page's drawing, and the texts of pagination.
#include "export/pagination.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr PageMargins kFifteenMm = {1500, 1500, 1500, 1500};

// Advances of lines of one text height, with the given lines' heights instead.
struct FakeMeasure {
  int32_t tmHeight = 17;
  std::vector<int32_t> measured;  // 0: an empty line
  int32_t operator()(size_t i) const { return LineAdvance(measured[i], tmHeight); }
};

FakeMeasure Lines(size_t count, int32_t height = 17) {
  FakeMeasure fake;
  fake.measured.assign(count, height);
  return fake;
}

// A 600-dpi printer on A4 whose printable area stands in by 100 and 120 dots.
PrinterCaps Printer600() {
  PrinterCaps caps;
  caps.dpiX = caps.dpiY = 600;
  caps.physicalWidth = 4961;
  caps.physicalHeight = 7016;
  caps.offsetX = 100;
  caps.offsetY = 120;
  return caps;
}

PageStarts Paginate(const FakeMeasure& fake, int32_t frameHeight) {
  PageStarts starts;
  EXPECT_TRUE(PaginateLines(fake.measured.size(), frameHeight, fake, starts));
  return starts;
}

}  // namespace

TEST(PageGeometry, MulDivRoundsAsWindowsDoes) {
  for (int32_t a : {-1501, -850, -7, -1, 0, 1, 6, 7, 850, 1499, 2540, 123457})
    for (int32_t b : {-600, -96, 1, 72, 96, 150, 300, 600, 1200})
      for (int32_t c : {-1440, -72, 1, 2, 3, 72, 1440, 2540})
        EXPECT_EQ(MulDivRounded(a, b, c), MulDiv(a, b, c)) << a << " " << b << " " << c;
  EXPECT_EQ(MulDivRounded(5, 5, 0), -1);
  EXPECT_EQ(MulDivRounded(INT32_MAX, 4, 1), -1);
}

TEST(PageGeometry, MarginsGoThroughTruncatedTwipsThenRoundedDeviceUnits) {
  EXPECT_EQ(MarginTwips(1500), 850);  // 1500 x 1440 / 2540 = 850.39
  EXPECT_EQ(MarginToDevice(1500, 96), 57);   // 850 x 96 / 1440 = 56.67, rounded up
  EXPECT_EQ(MarginToDevice(1500, 600), 354);  // 354.17
  EXPECT_EQ(MarginTwips(2540), 1440);
  EXPECT_EQ(MarginToDevice(2540, 96), 96);
  EXPECT_EQ(MarginToDevice(1000, 96), 38);   // 566 twips: 37.73
  EXPECT_EQ(MarginToDevice(0, 600), 0);
  // 11 is 6 twips (6.24 truncated), 2.5 dots at 600 dpi: a half rounds up.
  EXPECT_EQ(MarginTwips(11), 6);
  EXPECT_EQ(MarginToDevice(11, 600), 3);
}

TEST(PageGeometry, FooterReserveIsTwoLinesOfTheFont) {
  EXPECT_EQ(FooterReserve(11, 96), 29);   // 22 x 96 / 72 = 29.33
  EXPECT_EQ(FooterReserve(8, 96), 21);
  EXPECT_EQ(FooterReserve(20, 96), 53);
  EXPECT_EQ(FooterReserve(12, 96), 32);
  EXPECT_EQ(FooterReserve(11, 600), 183);
}

TEST(PageGeometry, PreviewSheetIsA4At96Dpi) {
  const PageGeometry g = PreviewGeometry(96, 96, kFifteenMm, 11);
  EXPECT_EQ(g.paperWidth, 793);
  EXPECT_EQ(g.paperHeight, 1122);
  EXPECT_EQ(g.left, 57);
  EXPECT_EQ(g.top, 57);
  EXPECT_EQ(g.right, 793 - 57);
  EXPECT_EQ(g.bottom, 1122 - 29 - 57);
}

TEST(PageGeometry, PreviewAt600DpiWithOtherMarginsAndFonts) {
  const PageGeometry g = PreviewGeometry(600, 600, {2540, 1000, 0, 2000}, 20);
  EXPECT_EQ(g.paperWidth, 4960);   // 600 x 8.268 = 4960.8
  EXPECT_EQ(g.paperHeight, 7015);  // 600 x 11.693 = 7015.8
  EXPECT_EQ(g.left, 600);          // one inch
  EXPECT_EQ(g.top, 236);           // 566 twips: 235.83
  EXPECT_EQ(g.right, 4960);
  EXPECT_EQ(g.bottom, 7015 - 333 - 472);  // footer 40 x 600 / 72 = 333.3; 1133 twips: 472.08
}

TEST(PageGeometry, PreviewAxesUseTheirOwnResolution) {
  const PageGeometry g = PreviewGeometry(120, 96, kFifteenMm, 8);
  EXPECT_EQ(g.paperWidth, 992);  // 120 x 8.268 = 992.2
  EXPECT_EQ(g.paperHeight, 1122);
  EXPECT_EQ(g.left, 71);         // 850 x 120 / 1440 = 70.83
  EXPECT_EQ(g.right, 992 - 71);
  EXPECT_EQ(g.top, 57);
  EXPECT_EQ(g.bottom, 1122 - 21 - 57);
}

TEST(PageGeometry, PrinterFrameAddsTheOffsetsToTheMargins) {
  const PageGeometry g = PrinterGeometry(Printer600(), kFifteenMm, 11);
  EXPECT_EQ(g.paperWidth, 4961);
  EXPECT_EQ(g.paperHeight, 7016);
  EXPECT_EQ(g.left, 100 + 354);
  EXPECT_EQ(g.top, 120 + 354);
  EXPECT_EQ(g.right, 4961 - 100 - 354);
  EXPECT_EQ(g.bottom, 7016 - 183 - 120 - 354);
}

TEST(PageGeometry, PrinterFrameAt96DpiWithoutOffsets) {
  PrinterCaps caps;
  caps.dpiX = caps.dpiY = 96;
  caps.physicalWidth = 816;
  caps.physicalHeight = 1056;
  const PageGeometry g = PrinterGeometry(caps, {1000, 2540, 1500, 0}, 12);
  EXPECT_EQ(g.left, 38);
  EXPECT_EQ(g.top, 96);
  EXPECT_EQ(g.right, 816 - 57);
  EXPECT_EQ(g.bottom, 1056 - 32);
}

TEST(LineAdvance, MeasuredHeightPlusTwoAndBlankLinesTakeTheTextHeight) {
  EXPECT_EQ(LineAdvance(34, 17), 36);
  EXPECT_EQ(LineAdvance(0, 17), 19);  // a blank line, or a measure of 0
  EXPECT_EQ(LineHeight(0, 15), 15);
  EXPECT_EQ(LineHeight(45, 15), 45);
}

TEST(SplitPageLines, EveryLineEndEndsALineAndATrailingOneAddsNone) {
  EXPECT_EQ(SplitPageLines(L"a\r\nb\rc\nd", 4), (std::vector<std::wstring>{L"a", L"b", L"c", L"d"}));
  EXPECT_EQ(SplitPageLines(L"a\r\n", 2), (std::vector<std::wstring>{L"a"}));
  EXPECT_EQ(SplitPageLines(L"a\n\n\r\nb\r\r", 5), (std::vector<std::wstring>{L"a", L"", L"", L"b", L""}));
  EXPECT_EQ(SplitPageLines(L"\r\n", 2), (std::vector<std::wstring>{L""}));
  EXPECT_TRUE(SplitPageLines(L"", 1).empty());
  EXPECT_EQ(SplitPageLines(L"\n\rx", 0), (std::vector<std::wstring>{L"", L"", L"x"}));
}

TEST(Paginate, OneLineIsOnePage) { EXPECT_EQ(Paginate(Lines(1), 100), (PageStarts{0})); }

TEST(Paginate, TheLineThatCrossesTheBottomStaysAndTheNextOpensAPage) {
  // 19 a line in a frame of 100: five lines use 95, the sixth takes it to 114.
  EXPECT_EQ(Paginate(Lines(5), 100), (PageStarts{0}));
  EXPECT_EQ(Paginate(Lines(7), 100), (PageStarts{0, 6}));
  EXPECT_EQ(Paginate(Lines(12), 100), (PageStarts{0, 6}));
  EXPECT_EQ(Paginate(Lines(13), 100), (PageStarts{0, 6, 12}));
  EXPECT_EQ(Paginate(Lines(19), 100), (PageStarts{0, 6, 12, 18}));
}

TEST(Paginate, AnOverflowingLastLineOpensNoPage) {
  EXPECT_EQ(Paginate(Lines(6), 100), (PageStarts{0}));
  EXPECT_EQ(Paginate(Lines(18), 100), (PageStarts{0, 6, 12}));
}

TEST(Paginate, AFrameFilledExactlyIsNotOverflowed) {
  // 20 a line: five lines are exactly 100, which isn't above it.
  EXPECT_EQ(Paginate(Lines(7, 18), 100), (PageStarts{0, 6}));
  EXPECT_EQ(Paginate(Lines(7, 18), 99), (PageStarts{0, 5}));
}

TEST(Paginate, BlankLinesCountTheTextHeightPlusTwo) {
  FakeMeasure fake = Lines(8, 0);  // all blank: 19 each
  EXPECT_EQ(Paginate(fake, 100), (PageStarts{0, 6}));
  fake.measured[0] = 40;  // a wrapped first line of 42: 42, 61, 80, 99, 118
  EXPECT_EQ(Paginate(fake, 100), (PageStarts{0, 5}));
}

TEST(Paginate, AWrappedLineTallerThanTheFrameStaysOnThePageItStartsOn) {
  FakeMeasure fake = Lines(5);
  fake.measured[1] = 500;
  EXPECT_EQ(Paginate(fake, 100), (PageStarts{0, 2}));
  fake.measured[0] = 500;
  fake.measured[1] = 17;
  EXPECT_EQ(Paginate(fake, 100), (PageStarts{0, 1}));
}

TEST(Paginate, ReportsEveryPageItOpens) {
  const FakeMeasure fake = Lines(19);
  std::vector<int32_t> reported;
  PageStarts starts;
  ASSERT_TRUE(PaginateLines(fake.measured.size(), 100, fake, starts, [] { return false; },
                            [&](int32_t pages) { reported.push_back(pages); }));
  EXPECT_EQ(reported, (std::vector<int32_t>{2, 3, 4}));
}

TEST(Paginate, CancelIsAskedEveryFiftyLines) {
  EXPECT_TRUE(IsCancelCheckLine(0));
  EXPECT_FALSE(IsCancelCheckLine(1));
  EXPECT_FALSE(IsCancelCheckLine(49));
  EXPECT_TRUE(IsCancelCheckLine(50));
  EXPECT_TRUE(IsCancelCheckLine(100));
  const FakeMeasure fake = Lines(120);
  std::vector<size_t> asked;
  size_t measured = 0;
  PageStarts starts;
  ASSERT_TRUE(PaginateLines(fake.measured.size(), 100, [&](size_t i) { ++measured; return fake(i); }, starts,
                            [&] { asked.push_back(measured); return false; }));
  EXPECT_EQ(asked, (std::vector<size_t>{0, 50, 100}));
}

TEST(Paginate, ACancelWithinTheFirstFiftyLinesIsNoticedAtLineFifty) {
  const FakeMeasure fake = Lines(120);
  bool set = false;
  size_t measured = 0;
  PageStarts starts;
  // Asked at line 0 (not yet set); set while line 3 is measured.
  EXPECT_FALSE(PaginateLines(fake.measured.size(), 100,
                             [&](size_t i) {
                               if (i == 3) set = true;
                               ++measured;
                               return fake(i);
                             },
                             starts, [&] { return set; }));
  EXPECT_EQ(measured, 50u);
}

TEST(Paginate, ACancelSetBeforeTheStartIsNoticedAtLineZero) {
  const FakeMeasure fake = Lines(10);
  size_t measured = 0;
  PageStarts starts;
  EXPECT_FALSE(PaginateLines(fake.measured.size(), 100, [&](size_t i) { ++measured; return fake(i); }, starts,
                             [] { return true; }));
  EXPECT_EQ(measured, 0u);
}

TEST(PageLines, RunsFromItsStartToTheNextOrTheEnd) {
  const PageStarts starts = {0, 6, 12};
  EXPECT_EQ(PageLines(0, starts, 15).first, 0);
  EXPECT_EQ(PageLines(0, starts, 15).end, 6);
  EXPECT_EQ(PageLines(2, starts, 15).first, 12);
  EXPECT_EQ(PageLines(2, starts, 15).end, 15);
  EXPECT_EQ(PageLines(3, starts, 15).first, PageLines(3, starts, 15).end);
}

namespace {

std::vector<PlacedLine> Place(size_t page, const PageStarts& starts, const std::vector<int32_t>& measured,
                              int32_t top, int32_t bottom) {
  return PlacePageLines(page, starts, measured.size(), top, bottom, 17, [&](size_t i) { return measured[i] == 0; },
                        [&](size_t i) { return measured[i]; });
}

}  // namespace

TEST(PlacePageLines, LinesFollowEachOtherTwoApart) {
  const auto placed = Place(0, {0}, {17, 0, 34}, 57, 1000);
  ASSERT_EQ(placed.size(), 3u);
  EXPECT_EQ(placed[0].top, 57);
  EXPECT_EQ(placed[0].bottom, 74);
  EXPECT_EQ(placed[1].top, 76);
  EXPECT_EQ(placed[1].bottom, 93);
  EXPECT_TRUE(placed[1].empty);
  EXPECT_EQ(placed[2].top, 95);
  EXPECT_EQ(placed[2].bottom, 129);
}

TEST(PlacePageLines, TheLineThatCrossedTheBottomVanishesAtThePageEnd) {
  // A frame of 143 from 57 to 200: pagination puts eight lines of 19 on page 1
  // (133 after seven, 152 after the eighth); drawing ends before the eighth,
  // whose bottom would be 207.
  std::vector<int32_t> measured(12, 17);
  FakeMeasure fake;
  fake.measured = measured;
  const PageStarts starts = Paginate(fake, 200 - 57);
  ASSERT_EQ(starts, (PageStarts{0, 8}));
  const auto placed = Place(0, starts, measured, 57, 200);
  ASSERT_EQ(placed.size(), 7u);
  EXPECT_EQ(placed.back().line, 6);
  EXPECT_EQ(placed.back().bottom, 57 + 6 * 19 + 17);
  EXPECT_EQ(Place(1, starts, measured, 57, 200).front().line, 8);
}

TEST(PlacePageLines, AWrappedLineTallerThanTheFrameIsNotDrawn) {
  const std::vector<int32_t> measured = {17, 500, 17};
  const auto placed = Place(0, {0, 2}, measured, 57, 200);
  ASSERT_EQ(placed.size(), 1u);
  EXPECT_EQ(placed[0].line, 0);
  // On a page of its own it still isn't.
  EXPECT_TRUE(Place(0, {0}, {500}, 57, 200).empty());
}

TEST(PlacePageLines, EmptyLinesAreNotHeldToTheBottom) {
  const auto placed = Place(0, {0}, {17, 0, 0, 17}, 57, 80);
  ASSERT_EQ(placed.size(), 3u);  // 57-74, then two empty lines to 112, then a line past 80
  EXPECT_TRUE(placed[2].empty);
  EXPECT_EQ(placed[2].bottom, 112);
}

TEST(PlacePageLines, AMeasureOfZeroTakesTheTextHeight) {
  const auto placed = PlacePageLines(0, {0}, 2, 10, 1000, 17, [](size_t) { return false; }, [](size_t) { return 0; });
  ASSERT_EQ(placed.size(), 2u);
  EXPECT_EQ(placed[1].top, 29);
  EXPECT_FALSE(placed[1].empty);
}

TEST(PageFooter, TextAndPlace) {
  EXPECT_EQ(PageFooterText(1), L"- 1 -");
  EXPECT_EQ(PageFooterText(12), L"- 12 -");
  const PageGeometry g = PreviewGeometry(96, 96, kFifteenMm, 11);
  EXPECT_EQ(FooterX(g, 30), 57 + (679 - 30) / 2);
  EXPECT_EQ(PreviewFooterY(g, 15), 1036 + (1122 - 1036 - 15) / 2);
  const PageGeometry p = PrinterGeometry(Printer600(), kFifteenMm, 11);
  EXPECT_EQ(PrinterFooterY(p, Printer600(), 100), p.bottom + (7016 - 100 - p.bottom - 120) / 2);
}

TEST(PaginationStatus, PagesAndLines) {
  EXPECT_EQ(PaginationStatusText(3, 1200), L"Paginating... page 3  (1200 lines)");
  EXPECT_EQ(PaginationStatusText(1, 1), L"Paginating... page 1  (1 lines)");
  EXPECT_EQ(PaginationStatusText(2, 0), L"Paginating... page 2");
  EXPECT_EQ(PaginationStatusText(2, -5), L"Paginating... page 2");
}
