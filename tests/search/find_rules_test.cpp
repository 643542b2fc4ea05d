// The window-free rules of Find and Replace: histories, the choice of the
// next match, the Replace test, the whole-word cut and Replace All's text.
#include "search/find_rules.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/text_convert.h"
#include "search/case_rules.h"

namespace {

struct History {
  wchar_t rows[kHistoryRows][kHistoryUnits] = {};
};

std::vector<std::wstring> Rows(const History& h) { return HistoryRows(h.rows); }

TEST(PushHistory, NewTextsGoToTheFront) {
  History h;
  PushHistory(h.rows, L"one");
  PushHistory(h.rows, L"two");
  PushHistory(h.rows, L"three");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"three", L"two", L"one"}));
}

TEST(PushHistory, AKnownTextMovesToTheFrontAndOnlyThoseAboveMoveDown) {
  History h;
  for (const wchar_t* text : {L"a", L"b", L"c", L"d"}) PushHistory(h.rows, text);
  PushHistory(h.rows, L"b");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"b", L"d", L"c", L"a"}));
  PushHistory(h.rows, L"b");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"b", L"d", L"c", L"a"}));
}

TEST(PushHistory, TheComparisonIsExact) {
  History h;
  PushHistory(h.rows, L"Foo");
  PushHistory(h.rows, L"foo");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"foo", L"Foo"}));
}

TEST(PushHistory, AnEmptyTextIsIgnored) {
  History h;
  PushHistory(h.rows, L"x");
  PushHistory(h.rows, L"");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"x"}));
}

TEST(PushHistory, TheEleventhTextDropsTheOldest) {
  History h;
  for (int i = 0; i < 11; ++i) PushHistory(h.rows, std::to_wstring(i));
  std::vector<std::wstring> expected;
  for (int i = 10; i >= 1; --i) expected.push_back(std::to_wstring(i));
  EXPECT_EQ(Rows(h), expected);
}

TEST(PushHistory, EmptyRowsAreSkippedWhenShown) {
  History h;
  std::wcscpy(h.rows[0], L"first");
  std::wcscpy(h.rows[3], L"fourth");
  EXPECT_EQ(Rows(h), (std::vector<std::wstring>{L"first", L"fourth"}));
}

TEST(PushHistory, ALongTextKeeps255Units) {
  History h;
  PushHistory(h.rows, std::wstring(300, L'z'));
  EXPECT_EQ(Rows(h)[0], std::wstring(255, L'z'));
}

const std::vector<FindMatch> kMatches = {{2, 5}, {10, 13}, {20, 23}};

TEST(PickMatch, ForwardTakesTheFirstAtOrAfterTheCaret) {
  EXPECT_EQ(PickMatch(kMatches, 0, 0, true, false), 0);
  EXPECT_EQ(PickMatch(kMatches, 2, 2, true, false), 0);
  EXPECT_EQ(PickMatch(kMatches, 5, 2, true, false), 1);  // the caret at a selected match's end
  EXPECT_EQ(PickMatch(kMatches, 21, 21, true, false), -1);
  EXPECT_EQ(PickMatch(kMatches, 21, 21, true, true), 0);
}

TEST(PickMatch, BackwardTakesTheLastBeforeTheSelectionStart) {
  EXPECT_EQ(PickMatch(kMatches, 13, 10, false, false), 0);
  EXPECT_EQ(PickMatch(kMatches, 30, 30, false, false), 2);
  EXPECT_EQ(PickMatch(kMatches, 5, 2, false, false), -1);
  EXPECT_EQ(PickMatch(kMatches, 5, 2, false, true), 2);  // wrap from the first match to the last
}

TEST(PickMatch, AnEmptyListGivesNothing) { EXPECT_EQ(PickMatch({}, 0, 0, true, true), -1); }

TEST(StatusTexts, Counts) {
  EXPECT_EQ(MatchCountText(1), L"1 match found.");
  EXPECT_EQ(MatchCountText(2), L"2 matches found.");
  EXPECT_EQ(MatchCountText(0), L"0 matches found.");
  EXPECT_EQ(ReplacedCountText(1), L"1 occurrence(s) replaced.");
  EXPECT_EQ(ReplacedCountText(1000000), L"1000000 occurrence(s) replaced.");
}

TEST(SelectionMatches, MatchCaseComparesBytes) {
  EXPECT_TRUE(SelectionMatches("foo", "foo", true));
  EXPECT_FALSE(SelectionMatches("Foo", "foo", true));
  EXPECT_FALSE(SelectionMatches("foo ", "foo", true));
}

TEST(SelectionMatches, WithoutMatchCaseOnlyAsciiFolds) {
  EXPECT_TRUE(SelectionMatches("FoO", "foo", false));
  EXPECT_FALSE(SelectionMatches("\xC3\x84rger", "\xC3\xA4rger", false));  // Ärger against ärger
  EXPECT_TRUE(SelectionMatches("\xC3\xA4RGER", "\xC3\xA4rger", false));
  EXPECT_FALSE(SelectionMatches("fo", "foo", false));
}

TEST(IsWordCut, OnlyBetweenTwoAsciiAlphanumericsFails) {
  const std::string_view text = "ab_c1 d\xC3\xA4" "e";
  EXPECT_TRUE(IsWordCut(text, 0));
  EXPECT_FALSE(IsWordCut(text, 1));  // a|b
  EXPECT_TRUE(IsWordCut(text, 2));   // b|_
  EXPECT_TRUE(IsWordCut(text, 3));   // _|c
  EXPECT_FALSE(IsWordCut(text, 4));  // c|1
  EXPECT_TRUE(IsWordCut(text, 5));   // 1|space
  EXPECT_TRUE(IsWordCut(text, 7));   // d|non-ASCII
  EXPECT_TRUE(IsWordCut(text, 9));   // non-ASCII|e
  EXPECT_TRUE(IsWordCut(text, text.size()));
}

ReplaceAllResult Replace(std::string_view range, std::string_view search, std::string_view replacement, bool matchCase,
                     bool wholeWord, int32_t rangeStart = 0) {
  ReplaceAllRequest request;
  request.range = range;
  request.search = search;
  request.replacement = replacement;
  request.matchCase = matchCase;
  request.wholeWord = wholeWord;
  request.rangeStart = rangeStart;
  return BuildReplaceAll(request);
}

TEST(BuildReplaceAll, ReplacesEveryHitAndCopiesTheRest) {
  const ReplaceAllResult r = Replace("a foo b foo c", "foo", "xy", true, false);
  EXPECT_EQ(r.output, "a xy b xy c");
  EXPECT_EQ(r.count, 2);
  EXPECT_EQ(r.replaced, (std::vector<FindMatch>{{2, 4}, {7, 9}}));
}

TEST(BuildReplaceAll, WithoutMatchCaseFoldsAsciiOnly) {
  const ReplaceAllResult r = Replace("FOO foo Foo \xC3\x84x \xC3\xA4x", "foo", "bar", false, false);
  EXPECT_EQ(r.output, "bar bar bar \xC3\x84x \xC3\xA4x");
  const ReplaceAllResult umlaut = Replace("\xC3\x84x \xC3\xA4x \xC3\xA4X", "\xC3\xA4x", "y", false, false);
  EXPECT_EQ(umlaut.output, "\xC3\x84x y y");
  EXPECT_EQ(umlaut.count, 2);
}

TEST(BuildReplaceAll, FooInsideFooBarIsAWholeWord) {
  const ReplaceAllResult r = Replace("foo foo_bar foobar _foo", "foo", "X", true, true);
  EXPECT_EQ(r.output, "X X_bar foobar _X");
  EXPECT_EQ(r.count, 3);
}

TEST(BuildReplaceAll, ARejectedHitNextToAnAcceptedOneIsCopiedThrough) {
  // "foofoo": both hits fail the word test between them; "foo" after a space passes.
  ReplaceAllResult r = Replace("foofoo foo", "foo", "X", true, true);
  EXPECT_EQ(r.output, "foofoo X");
  EXPECT_EQ(r.replaced, (std::vector<FindMatch>{{7, 8}}));
  // A rejected hit directly before an accepted one, and one right after it.
  r = Replace("afoo foo fooa", "foo", "XYZW", true, true);
  EXPECT_EQ(r.output, "afoo XYZW fooa");
  EXPECT_EQ(r.count, 1);
  // Overlapping candidates: the rejected one at 1 lets the scan find the one at 3.
  r = Replace("ba-a-a", "a-a", "_", true, true);
  EXPECT_EQ(r.output, "ba-_");
  r = Replace("ab aba", "aba", "Q", true, true);
  EXPECT_EQ(r.output, "ab Q");
}

TEST(BuildReplaceAll, HitsTouchingTheRangeEdgesPass) {
  // The range is cut out of "xfoo foox": its limits count as boundaries.
  const std::string document = "xfoo foox";
  const std::string_view range = std::string_view(document).substr(1, 7);
  const ReplaceAllResult r = Replace(range, "foo", "bar", true, true, 1);
  EXPECT_EQ(r.output, "bar bar");
  EXPECT_EQ(r.replaced, (std::vector<FindMatch>{{1, 4}, {5, 8}}));
}

TEST(BuildReplaceAll, SearchEqualToReplacementGivesTheSameText) {
  const ReplaceAllResult r = Replace("foo and foo", "foo", "foo", true, false);
  EXPECT_EQ(r.count, 2);
  EXPECT_EQ(r.output, "foo and foo");
}

TEST(BuildReplaceAll, NoHitGivesNoOutput) {
  const ReplaceAllResult r = Replace("nothing here", "foo", "bar", false, false);
  EXPECT_EQ(r.count, 0);
  EXPECT_TRUE(r.output.empty());
  EXPECT_TRUE(r.replaced.empty());
  EXPECT_EQ(Replace("fo", "foo", "bar", false, false).count, 0);
  EXPECT_EQ(Replace("foo", "foo", "bar", true, true).output, "bar");
}

TEST(BuildReplaceAll, PlacesInTheFinishedDocumentFollowLengthChanges) {
  const ReplaceAllResult r = Replace("a.a.a", "a", "long", true, false, 100);
  EXPECT_EQ(r.output, "long.long.long");
  EXPECT_EQ(r.replaced, (std::vector<FindMatch>{{100, 104}, {105, 109}, {110, 114}}));
  const ReplaceAllResult gone = Replace("a.a", "a", "", true, false, 0);
  EXPECT_EQ(gone.output, ".");
  EXPECT_EQ(gone.replaced, (std::vector<FindMatch>{{0, 0}, {1, 1}}));
}

TEST(BuildReplaceAll, PreserveCaseTakesEachHitsFirstUnit) {
  const std::wstring replacement = L"newName";
  const std::string capitalised = WideToUtf8(CapitalisedReplacement(replacement));
  const std::string lowered = WideToUtf8(LoweredReplacement(replacement));
  ReplaceAllRequest request;
  const std::string range = "abc Abc ABC aBC";
  request.range = range;
  request.search = "abc";
  request.replacement = "newName";
  request.preserveCase = true;
  request.capitalised = capitalised;
  request.lowered = lowered;
  const ReplaceAllResult r = BuildReplaceAll(request);
  EXPECT_EQ(r.output, "newname Newname Newname newname");
  // The same as the rule on each hit's own bytes.
  for (const char* hit : {"abc", "Abc", "ABC", "aBC"})
    EXPECT_EQ(WideToUtf8(ApplyPreserveCase(replacement, hit)), std::string(hit)[0] <= 'Z' ? capitalised : lowered);
}

TEST(BuildReplaceAll, NothingIsDroppedOrDuplicated) {
  // Every byte not in an accepted hit comes through once, in order.
  const std::string range = "foo_foo foofoo 1foo foo2 foo. .foo foo";
  const ReplaceAllResult r = Replace(range, "foo", "#", true, true);
  EXPECT_EQ(r.output, "#_# foofoo 1foo foo2 #. .# #");
  std::string back = r.output;
  for (size_t at = back.find('#'); at != std::string::npos; at = back.find('#', at + 3)) back.replace(at, 1, "foo");
  EXPECT_EQ(back, range);
}

TEST(FoldAscii, OnlyAToZ) { EXPECT_EQ(FoldAscii("AZaz@[\xC3\x84"), "azaz@[\xC3\x84"); }

}  // namespace
