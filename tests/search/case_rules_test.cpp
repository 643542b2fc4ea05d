// The two case-preserving rules: the table of results for ASCII text, both
// rules on every row, and their edge cases.
#include "search/case_rules.h"

#include <gtest/gtest.h>

namespace {

struct Row {
  const wchar_t* matched;
  const wchar_t* findRule;
  const wchar_t* regexRule;
};

// Replacement "newName" against each matched text.
const Row kTable[] = {
    {L"ABC", L"Newname", L"NEWNAME"}, {L"Abc", L"Newname", L"Newname"}, {L"abc", L"newname", L"newname"},
    {L"aBC", L"newname", L"newName"}, {L"AbC", L"Newname", L"Newname"}, {L"A1", L"Newname", L"NEWNAME"},
    {L"a1", L"newname", L"newname"},  {L"123", L"newname", L"NEWNAME"},
};

std::string Utf8(const std::wstring& ascii) { return std::string(ascii.begin(), ascii.end()); }

TEST(PreserveCase, EveryRowOfTheTable) {
  for (const Row& row : kTable) {
    EXPECT_EQ(ApplyPreserveCase(L"newName", Utf8(row.matched)), row.findRule) << row.matched;
    EXPECT_EQ(ApplyPreserveCaseUnits(L"newName", row.matched), row.findRule) << row.matched;
  }
}

TEST(MatchCasePattern, EveryRowOfTheTable) {
  for (const Row& row : kTable) EXPECT_EQ(ApplyMatchCasePattern(L"newName", row.matched), row.regexRule) << row.matched;
}

TEST(BothRules, AnEmptyReplacementStaysEmpty) {
  for (const Row& row : kTable) {
    EXPECT_EQ(ApplyPreserveCase(L"", Utf8(row.matched)), L"");
    EXPECT_EQ(ApplyMatchCasePattern(L"", row.matched), L"");
  }
}

TEST(BothRules, DigitsAndPunctuationOfTheReplacementStay) {
  EXPECT_EQ(ApplyPreserveCase(L"new-Name_2.0!", "Abc"), L"New-name_2.0!");
  EXPECT_EQ(ApplyPreserveCase(L"new-Name_2.0!", "abc"), L"new-name_2.0!");
  EXPECT_EQ(ApplyMatchCasePattern(L"new-Name_2.0!", L"ABC"), L"NEW-NAME_2.0!");
  EXPECT_EQ(ApplyMatchCasePattern(L"new-Name_2.0!", L"abc"), L"new-name_2.0!");
  EXPECT_EQ(ApplyMatchCasePattern(L"new-Name_2.0!", L"Abc"), L"New-name_2.0!");
  EXPECT_EQ(ApplyMatchCasePattern(L"new-Name_2.0!", L"aBc"), L"new-Name_2.0!");
  EXPECT_EQ(ApplyPreserveCase(L"123", "Abc"), L"123");
}

TEST(BothRules, OneUpperCaseLetter) {
  EXPECT_EQ(ApplyPreserveCase(L"newName", "X"), L"Newname");
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", L"X"), L"NEWNAME");
}

TEST(BothRules, ASurrogatePairIsTwoUnitsThatStay) {
  const std::wstring clef = L"\xD834\xDD1E";  // U+1D11E
  EXPECT_EQ(ApplyPreserveCase(clef + L"aB", "Abc"), clef + L"ab");
  EXPECT_EQ(ApplyPreserveCase(clef, "abc"), clef);
  EXPECT_EQ(ApplyMatchCasePattern(clef + L"aB", L"ABC"), clef + L"AB");
  EXPECT_EQ(ApplyMatchCasePattern(clef + L"aB", L"abc"), clef + L"ab");
  // A match that starts with a pair: its high surrogate is not upper-case.
  EXPECT_EQ(ApplyPreserveCase(L"newName", "\xF0\x9D\x84\x9E" "ABC"), L"newname");
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", clef + L"ABC"), L"NEWNAME");
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", clef + L"Abc"), L"newName");
}

TEST(PreserveCase, OnlyTheFirstUnitDecides) {
  EXPECT_EQ(ApplyPreserveCase(L"newName", "Aaaaa"), L"Newname");
  EXPECT_EQ(ApplyPreserveCase(L"newName", "aAAAA"), L"newname");
  EXPECT_EQ(ApplyPreserveCase(L"newName", "A"), L"Newname");
  EXPECT_EQ(ApplyPreserveCase(L"newName", " ABC"), L"newname");
}

TEST(PreserveCase, AnEmptyMatchLowersTheReplacement) {
  EXPECT_EQ(ApplyPreserveCase(L"newName", ""), L"newname");
  EXPECT_EQ(ApplyPreserveCaseUnits(L"newName", L""), L"newname");
}

TEST(MatchCasePattern, AnEmptyMatchKeepsTheReplacement) { EXPECT_EQ(ApplyMatchCasePattern(L"newName", L""), L"newName"); }

TEST(MatchCasePattern, NonLettersDecideNothing) {
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", L"A-B"), L"NEWNAME");
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", L"a-b"), L"newname");
  EXPECT_EQ(ApplyMatchCasePattern(L"newName", L"--"), L"NEWNAME");
}

TEST(PreserveCase, TheTwoReplacementsAHitCanGet) {
  EXPECT_EQ(CapitalisedReplacement(L"newName"), L"Newname");
  EXPECT_EQ(LoweredReplacement(L"newName"), L"newname");
  EXPECT_EQ(CapitalisedReplacement(L""), L"");
}

TEST(FirstUtf16Unit, OfEachLengthOfCharacter) {
  EXPECT_EQ(FirstUtf16Unit("", 0), 0);
  EXPECT_EQ(FirstUtf16Unit("Ab", 2), L'A');
  EXPECT_EQ(FirstUtf16Unit("\xC3\x84x", 3), 0x00C4);            // Ä
  EXPECT_EQ(FirstUtf16Unit("\xE2\x82\xAC", 3), 0x20AC);         // €
  EXPECT_EQ(FirstUtf16Unit("\xF0\x9D\x84\x9E", 4), 0xD834);     // high surrogate of U+1D11E
  EXPECT_EQ(FirstUtf16Unit("\xFF", 1), 0xFFFD);
  EXPECT_EQ(FirstUtf16Unit("\xC3", 1), 0xFFFD);                 // cut short
  EXPECT_EQ(FirstUtf16Unit("\xC0\x80", 2), 0xFFFD);             // overlong
}

}  // namespace
