// The results file's text and the results list's rows.
#include "search/regex_results.h"

#include <gtest/gtest.h>

namespace {

RegexMatch Record(int32_t start, int32_t end, const std::wstring& text, int32_t line) {
  RegexMatch match;
  match.start = start;
  match.end = end;
  match.text = text;
  match.line = line;
  return match;
}

TEST(ResultsFile, HeaderIsFourteenExactLines) {
  const std::string header = ResultsHeaderText(L"caf\u00E9|x", true, false, "09:05:07");
  const std::string expected =
      "========================================\n"
      "           REGEX SEARCH RESULTS         \n"
      "========================================\n"
      "\n"
      " TIPS:\n"
      "   \xE2\x80\xA2 Ctrl+A  \xE2\x86\x92 Select all\n"
      "   \xE2\x80\xA2 Ctrl+C  \xE2\x86\x92 Copy selected text\n"
      "========================================\n"
      "\n"
      "Regex Session Log\n"
      "Pattern:    caf\xC3\xA9|x\n"
      "Match case: Yes  |  Whole word: No  |  Started: 09:05:07\n"
      "=======================================\n"
      "\n";
  EXPECT_EQ(header, expected);
  EXPECT_NE(ResultsHeaderText(L"a", false, true, "00:00:00").find("Match case: No  |  Whole word: Yes  |"),
            std::string::npos);
}

TEST(ResultsFile, HitLinesPerFormat) {
  const std::vector<RegexMatch> records = {Record(4, 7, L"abc", 2), Record(10, 12, L"\u00FCx", 3)};
  EXPECT_EQ(HitLinesText(records, 0, 1), "abc\n\xC3\xBCx\n");
  const std::string numbered = "[3] Ln 2  Pos 4-7: abc\n[3] Ln 3  Pos 10-12: \xC3\xBCx\n";
  EXPECT_EQ(HitLinesText(records, 1, 3), numbered);
  EXPECT_EQ(HitLinesText(records, 2, 3), numbered);
  EXPECT_EQ(BatchNumber(0, 300), 1u);
  EXPECT_EQ(BatchNumber(300, 300), 2u);
  EXPECT_EQ(BatchNumber(299, 300), 1u);
}

TEST(ResultsFile, FooterAndSessionEntries) {
  EXPECT_EQ(ResultsFooterText("12:00:01", 0),
            "\n[FIND ALL] 12:00:01 \xE2\x80\x94 Search complete\n\n========================================\n"
            "Total matches found: 0\n");
  EXPECT_EQ(SessionHeaderText("a+"), "Regex Session Log\nPattern: a+\n========================================\n\n");
  EXPECT_EQ(FindEntryText("[FIND]", "01:02:03", 3, 17, L"hit"), "[FIND] 01:02:03 \xE2\x80\x94 Ln 3, Col 17\n  hit\n\n");
  EXPECT_EQ(FindEntryText("[FIND PREV]", "01:02:03", 1, 0, L"x"), "[FIND PREV] 01:02:03 \xE2\x80\x94 Ln 1, Col 0\n  x\n\n");
  EXPECT_EQ(ReplaceEntryText("01:02:03", L"old", L"$1!"),
            "[REPLACE] 01:02:03 \xE2\x80\x94 Replaced 1 match\n  Before: old\n  After:  $1!\n\n");
  EXPECT_EQ(ReplaceAllEntryText("01:02:03", 4, L"a(b)", L"$1"),
            "[REPLACE ALL] 01:02:03 \xE2\x80\x94 Replaced 4 match(es)\n  Pattern: a(b)  ->  $1\n\n");
  EXPECT_EQ(ClockText(7, 8, 9), "07:08:09");
}

TEST(ResultsList, RowsPerFormatAndLineNumbers) {
  const std::wstring document = L"first line\r\nsecond hit here\nthird";
  const RegexMatch hit = Record(19, 22, L"hit", 2);
  EXPECT_EQ(ListRowText(hit, document, 0, true), L"hit");
  EXPECT_EQ(ListRowText(hit, document, 0, false), L"hit");
  EXPECT_EQ(ListRowText(hit, document, 1, true), L"Ln 2  Col 19  hit");
  EXPECT_EQ(ListRowText(hit, document, 1, false), L"[19-22]  hit");
  EXPECT_EQ(ListRowText(hit, document, 2, true), L"Ln 2  second hit here");
  EXPECT_EQ(ListRowText(hit, document, 2, false), L"second hit here");
  // The first line stops at its CR.
  EXPECT_EQ(ListRowText(Record(0, 5, L"first", 1), document, 2, false), L"first line");
  // Outside the text, or on an empty line, the match stands in.
  EXPECT_EQ(ListRowText(Record(99, 99, L"", 9), document, 2, false), L"");
  EXPECT_EQ(ListRowText(Record(1, 1, L"", 2), L"\n\nx", 2, true), L"Ln 2  ");
}

TEST(ResultsList, ProgressText) {
  EXPECT_EQ(ProgressText(300, 1, 3), L"Found 300 matches (33%)...");
  EXPECT_EQ(ProgressText(5, 10, 10), L"Found 5 matches (100%)...");
}

}  // namespace
