#include "export/pdf_layout.h"

#include <gtest/gtest.h>

#include "base/text_convert.h"

namespace {

uint32_t Rgb(uint32_t r, uint32_t g, uint32_t b) { return r | (g << 8) | (b << 16); }

// Every character 10 units wide, whatever the font; the fonts chosen are kept.
struct FixedMeasure {
  std::vector<PdfRun> selected;
  PdfMeasure measure() {
    PdfMeasure m;
    m.selectFont = [this](const PdfRun& run) { selected.push_back(run); };
    m.textWidth = [](std::wstring_view piece) { return static_cast<int32_t>(piece.size() * 10); };
    return m;
  }
};

PdfRun MakeRun(const wchar_t* text, uint32_t colour = 0, bool bold = false, bool italic = false) {
  return PdfRun{text, colour, bold, italic};
}

std::vector<std::wstring> RowTexts(const std::vector<PdfLine>& rows) {
  std::vector<std::wstring> texts;
  for (const PdfLine& row : rows) {
    std::wstring text;
    for (const PdfRun& run : row) text += run.text;
    texts.push_back(text);
  }
  return texts;
}

std::wstring SystemConvert(const char* bytes, int count) { return Utf8ToWide(std::string(bytes, count)); }

// (character, style) pairs of a UTF-8 text, every byte in one style.
std::string Pairs(const std::string& text, const std::vector<int>& styles) {
  std::string pairs;
  for (size_t i = 0; i < text.size(); ++i) {
    pairs.push_back(text[i]);
    pairs.push_back(static_cast<char>(styles.empty() ? 0 : styles[i < styles.size() ? i : styles.size() - 1]));
  }
  return pairs;
}

}  // namespace

TEST(PdfColours, BrightColoursAreDarkenedToFortyFivePerCent) {
  EXPECT_EQ(MapColourForPaper(Rgb(255, 255, 255)), Rgb(114, 114, 114));
  EXPECT_EQ(MapColourForPaper(Rgb(181, 181, 181)), Rgb(81, 81, 81));
  // 200 × 0.45 in single precision is 90.0; in double, with the same
  // constant, 89.99..., which would truncate to 89.
  EXPECT_EQ(MapColourForPaper(Rgb(200, 200, 200)), Rgb(90, 90, 90));
  EXPECT_EQ(MapColourForPaper(Rgb(220, 220, 220)), Rgb(99, 99, 99));
}

TEST(PdfColours, BrightnessWeighsTheChannels) {
  // Pure green at 255: 255 × 587 / 1000 = 149, below 181, kept.
  EXPECT_EQ(MapColourForPaper(Rgb(0, 255, 0)), Rgb(0, 255, 0));
  // #D4D4D4, the dark theme's text: 212 → 95.
  EXPECT_EQ(MapColourForPaper(0xD4D4D4), Rgb(95, 95, 95));
  // Red 255 with green 180: (76245 + 105660) / 1000 = 181, darkened per channel.
  EXPECT_EQ(MapColourForPaper(Rgb(255, 180, 0)), Rgb(114, 81, 0));
}

TEST(PdfColours, EdgesOfTheBrightnessRule) {
  EXPECT_EQ(MapColourForPaper(Rgb(180, 180, 180)), Rgb(180, 180, 180));
  EXPECT_EQ(MapColourForPaper(Rgb(19, 19, 19)), 0u);
  EXPECT_EQ(MapColourForPaper(Rgb(20, 20, 20)), Rgb(20, 20, 20));
  EXPECT_EQ(MapColourForPaper(0), 0u);
}

TEST(PdfFrameArithmetic, TwentyFifthsRoundToNearestAwayFromZero) {
  EXPECT_EQ(PdfUnits(20, 96), 77);  // 76.8
  EXPECT_EQ(PdfUnits(6, 96), 23);   // 23.04
  EXPECT_EQ(PdfUnits(4, 96), 15);   // 15.36
  EXPECT_EQ(PdfUnits(1, 37), 1);    // 1.48
  EXPECT_EQ(PdfUnits(1, 38), 2);    // 1.52
  EXPECT_EQ(PdfUnits(-20, 96), -77);
  EXPECT_EQ(PdfUnits(20, 600), 480);
}

TEST(PdfFrameArithmetic, FrameAt600Dpi) {
  const PdfFrame frame = ComputePdfFrame(600, 4960, 7016, 100, 120);
  EXPECT_EQ(frame.margin, 480);
  EXPECT_EQ(frame.footerZone, 144);
  EXPECT_EQ(frame.footerGap, 96);
  EXPECT_EQ(frame.left, 580);
  EXPECT_EQ(frame.right, 4960 - 480 - 100);
  EXPECT_EQ(frame.width, 4380 - 580);
  EXPECT_EQ(frame.top, 600);
  EXPECT_EQ(frame.footerLine, 7016 - 480 - 120 - 144);
  EXPECT_EQ(frame.textLimit, 6272 - 96);
}

TEST(PdfFrameArithmetic, FrameAt96DpiRoundsEachMeasure) {
  const PdfFrame frame = ComputePdfFrame(96, 794, 1123, 0, 0);
  EXPECT_EQ(frame.margin, 77);
  EXPECT_EQ(frame.footerZone, 23);  // 23.04
  EXPECT_EQ(frame.footerGap, 15);
  EXPECT_EQ(frame.left, 77);
  EXPECT_EQ(frame.right, 717);
  EXPECT_EQ(frame.width, 640);
  EXPECT_EQ(frame.top, 77);
  EXPECT_EQ(frame.footerLine, 1123 - 77 - 23);
  EXPECT_EQ(frame.textLimit, 1023 - 15);
}

TEST(PdfFrameArithmetic, FooterTextAndPlace) {
  EXPECT_EQ(PdfFooterText(1), L"- 1 -");
  EXPECT_EQ(PdfFooterText(12), L"- 12 -");
  const PdfFrame frame = ComputePdfFrame(600, 4960, 7016, 100, 120);
  EXPECT_EQ(PdfFooterX(frame, 200), 580 + (3800 - 200) / 2);
  EXPECT_EQ(PdfFooterX(frame, 201), 580 + 1799);
}

TEST(PdfFrameArithmetic, ARowEndingOnTheLimitStays) {
  EXPECT_FALSE(PdfRowOverflows(900, 100, 1000));
  EXPECT_TRUE(PdfRowOverflows(901, 100, 1000));
}

TEST(PdfWrap, ALineExactlyFillingTheFrameIsOneRow) {
  FixedMeasure fixed;
  // "aaaa " and "bbbb " are 50 each: 100, the whole frame.
  auto rows = WrapPdfLine({MakeRun(L"aaaa bbbb ")}, 100, fixed.measure());
  EXPECT_EQ(RowTexts(rows), std::vector<std::wstring>{L"aaaa bbbb "});
  rows = WrapPdfLine({MakeRun(L"aaaa bbbb c")}, 100, fixed.measure());
  EXPECT_EQ(RowTexts(rows), (std::vector<std::wstring>{L"aaaa bbbb ", L"c"}));
}

TEST(PdfWrap, PiecesRunUpToAndIncludingTheNextSpace) {
  FixedMeasure fixed;
  // "ab ", "cd ", " " and "ef": the second space is a piece of its own.
  auto rows = WrapPdfLine({MakeRun(L"ab cd  ef")}, 60, fixed.measure());
  EXPECT_EQ(RowTexts(rows), (std::vector<std::wstring>{L"ab cd ", L" ef"}));
}

TEST(PdfWrap, AnEmptyLineIsOneEmptyRow) {
  FixedMeasure fixed;
  auto rows = WrapPdfLine({}, 100, fixed.measure());
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_TRUE(rows[0].empty());
  rows = WrapPdfLine({MakeRun(L"")}, 100, fixed.measure());
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_TRUE(rows[0].empty());
  EXPECT_TRUE(fixed.selected.empty());  // empty runs are skipped
}

TEST(PdfWrap, LikeRunsMergeAndOthersStaySegments) {
  FixedMeasure fixed;
  auto rows = WrapPdfLine({MakeRun(L"int ", 0xFF), MakeRun(L"x", 0xFF), MakeRun(L" = ", 0x10, true), MakeRun(L"1;", 0x10, false, true)},
                          1000, fixed.measure());
  ASSERT_EQ(rows.size(), 1u);
  ASSERT_EQ(rows[0].size(), 3u);
  EXPECT_EQ(rows[0][0].text, L"int x");
  EXPECT_EQ(rows[0][0].colour, 0xFFu);
  EXPECT_EQ(rows[0][1].text, L" = ");
  EXPECT_TRUE(rows[0][1].bold);
  EXPECT_EQ(rows[0][2].text, L"1;");
  EXPECT_TRUE(rows[0][2].italic);
  EXPECT_FALSE(rows[0][2].bold);
  // Each non-empty run's font is chosen once, before its pieces are measured.
  EXPECT_EQ(fixed.selected.size(), 4u);
  EXPECT_TRUE(fixed.selected[2].bold);
}

TEST(PdfWrap, APieceWiderThanARowStandsAlone) {
  FixedMeasure fixed;
  auto rows = WrapPdfLine({MakeRun(L"ab " L"xxxxxxxxxxxxxxx " L"cd")}, 100, fixed.measure());
  EXPECT_EQ(RowTexts(rows), (std::vector<std::wstring>{L"ab ", L"xxxxxxxxxxxxxxx ", L"cd"}));
  // At the start of a row it stays there and runs past the frame.
  rows = WrapPdfLine({MakeRun(L"xxxxxxxxxxxxxxx")}, 100, fixed.measure());
  EXPECT_EQ(RowTexts(rows), std::vector<std::wstring>{L"xxxxxxxxxxxxxxx"});
}

TEST(PdfWrap, AWrappedPieceStartsANewSegmentInItsRunsLook) {
  FixedMeasure fixed;
  auto rows = WrapPdfLine({MakeRun(L"aaaaa ", 1), MakeRun(L"bbbbb", 2)}, 80, fixed.measure());
  ASSERT_EQ(rows.size(), 2u);
  ASSERT_EQ(rows[1].size(), 1u);
  EXPECT_EQ(rows[1][0].text, L"bbbbb");
  EXPECT_EQ(rows[1][0].colour, 2u);
}

TEST(PdfBatches, SequenceLengthFromTheFirstByte) {
  EXPECT_EQ(Utf8SequenceLength('a'), 1);
  EXPECT_EQ(Utf8SequenceLength(0x80), 1);
  EXPECT_EQ(Utf8SequenceLength(0xC3), 2);
  EXPECT_EQ(Utf8SequenceLength(0xE2), 3);
  EXPECT_EQ(Utf8SequenceLength(0xF0), 4);
  EXPECT_EQ(Utf8SequenceLength(0xF8), 1);
  EXPECT_EQ(Utf8SequenceLength(0xFF), 1);
}

TEST(PdfBatches, StyledBytesBecomeRunsByLook) {
  PdfStyleTable styles;
  styles.colour[5] = 0x0000FF;
  styles.bold[5] = true;
  styles.colour[6] = 0x0000FF;
  styles.bold[6] = true;  // another style with the same look joins the run
  styles.italic[7] = true;
  // Style 133 is 5 under the mask of 127.
  const std::string pairs = Pairs("if x: y\r\n", {5, 6, 0, 0, 7, 7, 133, 0, 0});
  const PdfLine line = PdfLineFromStyledBytes(pairs.data(), pairs.size() / 2, styles, SystemConvert);
  ASSERT_EQ(line.size(), 4u);
  EXPECT_EQ(line[0].text, L"if");
  EXPECT_EQ(line[0].colour, 0x0000FFu);
  EXPECT_TRUE(line[0].bold);
  EXPECT_EQ(line[1].text, L" x");
  EXPECT_FALSE(line[1].bold);
  EXPECT_EQ(line[2].text, L": ");
  EXPECT_TRUE(line[2].italic);
  EXPECT_EQ(line[3].text, L"y");  // CR and LF skipped
  EXPECT_TRUE(line[3].bold);
}

TEST(PdfBatches, MultiByteSequencesConvertWhole) {
  PdfStyleTable styles;
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // a, é, €, 😀
  const std::string pairs = Pairs(text, {});
  const PdfLine line = PdfLineFromStyledBytes(pairs.data(), pairs.size() / 2, styles, SystemConvert);
  ASSERT_EQ(line.size(), 1u);
  EXPECT_EQ(line[0].text, std::wstring(L"a\u00E9\u20AC") + L"\xD83D\xDE00");
}

TEST(PdfBatches, ASequencePastTheLineEndIsOneByteAndFailuresAreQuestionMarks) {
  PdfStyleTable styles;
  std::vector<std::string> seen;
  Utf8Converter convert = [&](const char* bytes, int count) {
    seen.emplace_back(bytes, count);
    if (static_cast<unsigned char>(bytes[0]) >= 0x80) return std::wstring();
    return std::wstring(1, static_cast<wchar_t>(bytes[0]));
  };
  const std::string pairs = Pairs("ab\xE2\x82", {});
  const PdfLine line = PdfLineFromStyledBytes(pairs.data(), pairs.size() / 2, styles, convert);
  ASSERT_EQ(line.size(), 1u);
  EXPECT_EQ(line[0].text, L"ab??");
  EXPECT_EQ(seen, (std::vector<std::string>{"a", "b", "\xE2", "\x82"}));
}

TEST(PdfBatches, ALineOfOnlyALineEndHasNoRuns) {
  PdfStyleTable styles;
  const std::string pairs = Pairs("\r\n", {});
  EXPECT_TRUE(PdfLineFromStyledBytes(pairs.data(), 2, styles, SystemConvert).empty());
}

TEST(PdfBatches, ThreeHundredLinesAreOneBatch) {
  PdfBatchRange range = NextPdfBatch(0, 300);
  EXPECT_EQ(range.end, 300);
  EXPECT_TRUE(range.last);
  range = NextPdfBatch(0, 301);
  EXPECT_EQ(range.end, 300);
  EXPECT_FALSE(range.last);
  range = NextPdfBatch(300, 301);
  EXPECT_EQ(range.end, 301);
  EXPECT_TRUE(range.last);
}

TEST(PdfBatches, SixHundredLinesAreTwoBatchesTheSecondLast) {
  PdfStyleTable styles;
  std::vector<int32_t> read;
  StyledLineReader reader = [&](int32_t line) {
    read.push_back(line);
    return line % 2 ? std::string() : Pairs("x" + std::to_string(line) + "\r\n", {});
  };
  int32_t next = 0;
  std::vector<PdfLine> batch{PdfLine{MakeRun(L"stale")}};
  bool last = true;
  FillPdfBatchLines(next, 600, batch, last, styles, reader, SystemConvert);
  EXPECT_EQ(next, 300);
  EXPECT_FALSE(last);
  ASSERT_EQ(batch.size(), 300u);
  EXPECT_EQ(batch[0][0].text, L"x0");
  EXPECT_TRUE(batch[1].empty());  // an empty line is an empty PdfLine
  FillPdfBatchLines(next, 600, batch, last, styles, reader, SystemConvert);
  EXPECT_EQ(next, 600);
  EXPECT_TRUE(last);
  ASSERT_EQ(batch.size(), 300u);
  EXPECT_EQ(batch[0][0].text, L"x300");
  EXPECT_EQ(read.size(), 600u);
  EXPECT_EQ(read.back(), 599);
}

TEST(PdfTexts, PageEstimate) {
  EXPECT_EQ(EstimatePdfPages(1), 1);
  EXPECT_EQ(EstimatePdfPages(55), 1);
  EXPECT_EQ(EstimatePdfPages(56), 2);
  EXPECT_EQ(EstimatePdfPages(10000), 182);
}

TEST(PdfTexts, SizeQuestions) {
  EXPECT_EQ(PdfSizeQuestion(1000000, 9000), L"");
  EXPECT_EQ(PdfSizeQuestion(1000001, 9000),
            L"This file will create approximately 164 pages.\nExport may take a while.\n\nContinue?");
  EXPECT_EQ(PdfSizeQuestion(10000000, 100), L"This file will create approximately 2 pages.\nExport may take a while.\n\n"
                                            L"Continue?");
  EXPECT_EQ(PdfSizeQuestion(12500000, 9999),
            L"This file is very large (~12 MB, ~9999 lines).\nPDF export will create approximately 182 pages\n"
            L"and may take several minutes.\n\nFor large files, HTML export is faster and\nproduces a better result "
            L"for on-screen viewing.\n\nContinue with PDF export anyway?");
}

TEST(PdfTexts, Proposals) {
  EXPECT_EQ(ProposedPdfName(L""), L"Document");
  EXPECT_EQ(ProposedPdfName(L"C:\\src\\main.cpp"), L"main");
  EXPECT_EQ(ProposedPdfName(L"C:\\src\\a.b.py"), L"a.b");
  EXPECT_EQ(ProposedPdfName(L"C:\\src\\Makefile"), L"Makefile");
  EXPECT_EQ(ProposedMarkdownPdfName(L"C:\\docs\\notes.MD"), L"notes.pdf");
}

TEST(PdfTexts, StatusAndResult) {
  EXPECT_EQ(PdfSuccessText(65000), L"PDF exported successfully.\n\nExport time:  1:05 min");
  EXPECT_EQ(PdfSuccessText(9500), L"PDF exported successfully.\n\nExport time:  9.500 sec");
  EXPECT_EQ(PdfPageStatusText(0), L"Exporting page 0...");
  EXPECT_EQ(PdfPageStatusText(7), L"Exporting page 7...");
  EXPECT_EQ(std::wstring(kPdfFinalizingText),
            L"Please wait, finalizing PDF file...\nThis may take a while depending on file size.\n"
            L"Click Cancel to discard the export.");
}

namespace {

MarkdownLine MdLine(MarkdownBlockType type, int spaceBefore = 0, bool rule = false) {
  MarkdownLine line;
  line.type = type;
  line.spaceBefore = spaceBefore;
  line.isRule = rule ? 1 : 0;
  return line;
}

}  // namespace

TEST(PdfMarkdownPages, EmptyLinesTakeHalfARowAndRulesSixTwentyFifths) {
  const PdfFrame frame = ComputePdfFrame(100, 1000, 1400, 0, 0);  // top 80, text limit 1400-80-24-16
  std::vector<MarkdownLine> lines{MdLine(MarkdownBlockType::Empty, 99), MdLine(MarkdownBlockType::Paragraph, 99, true),
                                  MdLine(MarkdownBlockType::Paragraph, 7)};
  auto places = PlaceMarkdownPdfLines(lines, frame, 100, 21, [](const MarkdownLine&) { return 30; });
  ASSERT_EQ(places.size(), 3u);
  // spaceBefore of empty and rule lines goes unused.
  EXPECT_EQ(places[0].y, 80);
  EXPECT_EQ(places[0].height, 10);
  EXPECT_EQ(places[1].y, 90);
  EXPECT_EQ(places[1].height, 24);
  EXPECT_EQ(places[2].y, 90 + 24 + 7);
  EXPECT_EQ(places[2].height, 30);
  EXPECT_EQ(places[2].page, 1);
}

TEST(PdfMarkdownPages, ATextLineCrossingTheLimitOpensAPageAndLosesItsGap) {
  const PdfFrame frame = ComputePdfFrame(100, 1000, 1400, 0, 0);
  ASSERT_EQ(frame.textLimit, 1280);
  std::vector<MarkdownLine> lines;
  for (int i = 0; i < 40; ++i) lines.push_back(MdLine(MarkdownBlockType::Paragraph));
  lines.push_back(MdLine(MarkdownBlockType::Heading1, 50));
  auto places = PlaceMarkdownPdfLines(lines, frame, 100, 31, [](const MarkdownLine& line) {
    return line.type == MarkdownBlockType::Heading1 ? 60 : 30;
  });
  // 80 + 40 × 30 = 1280: the 40th line ends on the limit and stays.
  EXPECT_EQ(places[39].page, 1);
  EXPECT_EQ(places[39].y, 80 + 39 * 30);
  EXPECT_EQ(places[40].page, 2);
  EXPECT_EQ(places[40].y, 80);
  EXPECT_EQ(places[40].height, 60);
}

TEST(PdfMarkdownPages, EmptyLinesAndRulesNeverTurnAPage) {
  const PdfFrame frame = ComputePdfFrame(100, 1000, 1400, 0, 0);
  std::vector<MarkdownLine> lines(100, MdLine(MarkdownBlockType::Empty));
  lines.push_back(MdLine(MarkdownBlockType::Paragraph));
  auto places = PlaceMarkdownPdfLines(lines, frame, 100, 40, [](const MarkdownLine&) { return 40; });
  EXPECT_EQ(places[99].page, 1);
  EXPECT_EQ(places[99].y, 80 + 99 * 20);
  EXPECT_EQ(places[100].page, 2);
  EXPECT_EQ(places[100].y, 80);
}

TEST(PdfStyles, WithNoLexerEverythingIsBlackAndUpright) {
  StyleLooks looks;
  for (int n = 0; n < 128; ++n) {
    looks.fore[n] = 0xFFFFFF;
    looks.bold[n] = true;
    looks.italic[n] = true;
  }
  for (int lexer : {0, 1}) {  // none set (plain text), SCLEX_NULL
    const PdfStyleTable table = BuildPdfStyleTable(lexer, looks);
    for (int n = 0; n < 128; ++n) {
      EXPECT_EQ(table.colour[n], 0u) << n;
      EXPECT_FALSE(table.bold[n]) << n;
      EXPECT_FALSE(table.italic[n]) << n;
    }
  }
}

TEST(PdfStyles, LexerStylesAreMappedAndTheDefaultIsBlack) {
  StyleLooks looks;
  looks.fore[5] = 0xD69C56;  // #569CD6, the dark theme's keywords: brightness 141, kept
  looks.bold[5] = true;
  looks.fore[0] = 0xD4D4D4;
  looks.italic[1] = true;
  looks.fore[32] = 0x336699;  // the default style, black under any theme
  const PdfStyleTable table = BuildPdfStyleTable(2, looks);
  EXPECT_EQ(table.colour[5], 0xD69C56u);
  EXPECT_TRUE(table.bold[5]);
  EXPECT_EQ(table.colour[0], 0x5F5F5Fu);
  EXPECT_TRUE(table.italic[1]);
  EXPECT_EQ(table.colour[32], 0u);
}

TEST(PdfMarkdownFont, CodeFamiliesGiveWayButTheSizeStays) {
  std::wstring family;
  int32_t size = 0;
  MarkdownPdfBaseFont(L"consolas", 14, family, size);
  EXPECT_EQ(family, L"Segoe UI");
  EXPECT_EQ(size, 14);
  MarkdownPdfBaseFont(L"Georgia", 0, family, size);
  EXPECT_EQ(family, L"Georgia");
  EXPECT_EQ(size, 10);
  MarkdownPdfBaseFont(L"", 12, family, size);
  EXPECT_EQ(family, L"Segoe UI");
  EXPECT_EQ(size, 12);
}
