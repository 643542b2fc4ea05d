// Regex Search's engine over plain text: batches, whole word, expansion,
// replacement, offset conversion, and a line the matcher needs a deep
// stack for.
#include "search/regex_engine.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "search/regex_stack.h"

namespace {

std::wregex Regex(const std::wstring& pattern, bool matchCase = true, bool wholeWord = false) {
  SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
  EXPECT_TRUE(built.valid);
  return built.regex;
}

std::vector<RegexMatch> Batch(const std::wstring& text, const std::wregex& regex, uint64_t& position, uint64_t limit) {
  LineCursor lines;
  return SearchNextBatch(text, regex, position, limit, nullptr, lines);
}

TEST(SearchNextBatch, RecordsCarryOffsetsTextAndLine) {
  const std::wstring text = L"ab\ncab\n\nxab";
  uint64_t position = 0;
  const auto records = Batch(text, Regex(L"ab"), position, 10);
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].start, 0);
  EXPECT_EQ(records[0].end, 2);
  EXPECT_EQ(records[0].line, 1);
  EXPECT_EQ(records[1].start, 4);
  EXPECT_EQ(records[1].line, 2);
  EXPECT_EQ(records[2].start, 9);
  EXPECT_EQ(records[2].line, 4);
  EXPECT_EQ(records[2].text, L"ab");
  EXPECT_EQ(position, 11u);
}

TEST(SearchNextBatch, StopsAtTheLimitAndGoesOnFromThere) {
  const std::wstring text = L"a1 a2 a3 a4 a5";
  const std::wregex regex = Regex(L"a\\d");
  uint64_t position = 0;
  auto first = Batch(text, regex, position, 2);
  ASSERT_EQ(first.size(), 2u);
  EXPECT_EQ(position, 5u);
  auto second = Batch(text, regex, position, 2);
  ASSERT_EQ(second.size(), 2u);
  EXPECT_EQ(second[0].start, 6);
  auto third = Batch(text, regex, position, 2);
  ASSERT_EQ(third.size(), 1u);
  EXPECT_EQ(third[0].start, 12);
  EXPECT_TRUE(Batch(text, regex, position, 2).empty());
  uint64_t none = 0;
  EXPECT_TRUE(Batch(text, regex, none, 0).empty());
  EXPECT_EQ(none, 0u);
}

TEST(SearchNextBatch, EmptyMatchAtTheBatchStartStepsOneUnit) {
  const std::wstring text = L"abc";
  const std::wregex regex = Regex(L"x*");
  uint64_t position = 0;
  // The first empty match ends at the batch's start, so p steps on; the
  // next, at 1, no longer does and repeats until the batch is full.
  auto records = Batch(text, regex, position, 4);
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[0].start, 0);
  for (size_t k = 1; k < 4; ++k) {
    EXPECT_EQ(records[k].start, 1);
    EXPECT_EQ(records[k].end, 1);
  }
  EXPECT_EQ(position, 1u);
  // The next batch starts at 1 and steps past it.
  records = Batch(text, regex, position, 1);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].start, 1);
  EXPECT_EQ(position, 2u);
}

TEST(SearchNextBatch, CaretMatchesRightAfterAPreviousMatch) {
  const std::wstring text = L"foofoo\nbar foo";
  uint64_t position = 0;
  const auto records = Batch(text, Regex(L"^foo"), position, 10);
  // Each search takes the rest of the text as a new subject.
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].start, 0);
  EXPECT_EQ(records[1].start, 3);
}

TEST(SearchNextBatch, CancelStopsBeforeTheNextEngineCall) {
  std::atomic<bool> cancel{true};
  LineCursor lines;
  uint64_t position = 0;
  EXPECT_TRUE(SearchNextBatch(L"aaa", Regex(L"a"), position, 10, &cancel, lines).empty());
}

TEST(SearchNextBatch, LinesCountedAcrossBatches) {
  std::wstring text;
  for (int k = 0; k < 50; ++k) text += L"w\n";
  const std::wregex regex = Regex(L"w");
  uint64_t position = 0;
  LineCursor lines;
  int expected = 1;
  while (true) {
    auto records = SearchNextBatch(text, regex, position, 7, nullptr, lines);
    if (records.empty()) break;
    for (const auto& record : records) EXPECT_EQ(record.line, expected++);
  }
  EXPECT_EQ(expected, 51);
  // A cursor ahead of the offset asked for starts over.
  EXPECT_EQ(LineOfOffset(text, lines, 2), 2);
}

TEST(BuildSearchRegex, WholeWordKeepsAlternationsGrouped) {
  EXPECT_EQ(SearchExpressionText(L"cat|dog", true), L"\\b(?:cat|dog)\\b");
  EXPECT_EQ(SearchExpressionText(L"cat|dog", false), L"cat|dog");
  const std::wstring text = L"concat dogma cat dog";
  uint64_t position = 0;
  const auto records = Batch(text, Regex(L"cat|dog", true, true), position, 10);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].start, 13);
  EXPECT_EQ(records[1].start, 17);
}

TEST(BuildSearchRegex, CaseAndInvalidPatterns) {
  EXPECT_FALSE(BuildSearchRegex(L"(", true, false).valid);
  EXPECT_FALSE(BuildSearchRegex(L"[a", false, true).valid);
  EXPECT_EQ(FindAllMatches(L"Abc aBC", L"abc", false, false).size(), 2u);
  EXPECT_EQ(FindAllMatches(L"Abc aBC", L"abc", true, false).size(), 0u);
  EXPECT_TRUE(FindAllMatches(L"", L"a", false, false).empty());
  EXPECT_TRUE(FindAllMatches(L"a", L"", false, false).empty());
  EXPECT_TRUE(FindAllMatches(L"a", L"(", false, false).empty());
}

std::wstring Expand(const std::wstring& text, const std::wstring& pattern, const std::wstring& replacementTemplate) {
  std::wsmatch match;
  const std::wregex regex(pattern);
  EXPECT_TRUE(std::regex_search(text, match, regex));
  return ExpandReplacement(replacementTemplate, match);
}

TEST(ExpandReplacement, GroupsWholeMatchAndDollars) {
  EXPECT_EQ(Expand(L"John Smith", L"(\\w+) (\\w+)", L"$2, $1"), L"Smith, John");
  EXPECT_EQ(Expand(L"abc", L"b", L"[$&|$0]"), L"[b|b]");
  EXPECT_EQ(Expand(L"abc", L"(b)", L"$10"), L"b0");
  EXPECT_EQ(Expand(L"abc", L"(b)", L"$9x"), L"x");
  EXPECT_EQ(Expand(L"abc", L"(b)", L"$$"), L"$$");
  EXPECT_EQ(Expand(L"abc", L"(b)", L"cost $"), L"cost $");
  EXPECT_EQ(Expand(L"abc", L"(b)", L"$x\\1"), L"$x\\1");
  EXPECT_EQ(Expand(L"ac", L"a(b)?c", L"<$1>"), L"<>");
}

TEST(ReplaceOneMatch, FirstMatchExpandedWithCasePattern) {
  std::wstring result;
  RegexMatch match;
  ASSERT_TRUE(ReplaceOneMatch(L"one Two two", L"two", L"[$&]", false, false, false, result, match));
  EXPECT_EQ(result, L"one [Two] two");
  EXPECT_EQ(match.start, 4);
  EXPECT_EQ(match.end, 7);
  ASSERT_TRUE(ReplaceOneMatch(L"say HELLO", L"hello", L"bye", false, false, true, result, match));
  EXPECT_EQ(result, L"say BYE");
  EXPECT_FALSE(ReplaceOneMatch(L"abc", L"x", L"y", false, false, false, result, match));
  EXPECT_FALSE(ReplaceOneMatch(L"abc", L"(", L"y", false, false, false, result, match));
}

TEST(ReplaceAllMatches, StandardFormatWithoutPreserveCase) {
  EXPECT_EQ(ReplaceAllMatches(L"a1 b2", L"(\\w)(\\d)", L"$2$1", true, false, false), L"1a 2b");
  // Without Preserve case the library's rules: $9 of a missing group is
  // empty, $$ is one dollar.
  EXPECT_EQ(ReplaceAllMatches(L"ab", L"(a)", L"$$", true, false, false), L"$b");
  EXPECT_EQ(ReplaceAllMatches(L"ab", L"(a)", L"[$9]", true, false, false), L"[]b");
  // With it, the tool's own expansion: $$ stays two dollars.
  EXPECT_EQ(ReplaceAllMatches(L"ab", L"(a)", L"$$", true, false, true), L"$$b");
  EXPECT_EQ(ReplaceAllMatches(L"Cat CAT cat", L"cat", L"dog", false, false, true), L"Dog DOG dog");
  EXPECT_EQ(ReplaceAllMatches(L"abc", L"", L"x", true, false, false), L"abc");
  EXPECT_EQ(ReplaceAllMatches(L"abc", L"(", L"x", true, false, false), L"abc");
}

TEST(OffsetConversion, NonAsciiText) {
  // a, e-acute (2 bytes), euro (3 bytes), an emoji as a surrogate pair (4 bytes), b
  const std::wstring wide = L"a\u00E9\u20AC\U0001F600b";
  const std::string utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80" "b";
  ASSERT_EQ(wide.size(), 6u);
  BytePositionMemo memo;
  const uint64_t length = utf8.size();
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, -3), 0u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 0), 0u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 1), 1u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 2), 3u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 3), 6u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 5), 10u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 6), 11u);
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 99), 11u);
  // Backwards and again, through the memo.
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 2), 3u);
  EXPECT_EQ(memo.cache.count(2), 1u);
  memo.Clear();
  EXPECT_EQ(BytePositionOfWide(wide, length, memo, 5), 10u);
  EXPECT_EQ(WideUnitsOfBytes(utf8, 0), 0u);
  EXPECT_EQ(WideUnitsOfBytes(utf8, 3), 2u);
  EXPECT_EQ(WideUnitsOfBytes(utf8, 10), 5u);
  EXPECT_EQ(WideUnitsOfBytes(utf8, 11), 6u);
  EXPECT_EQ(Utf8LengthOfUnits(wide, 0, wide.size()), utf8.size());
}

TEST(RegexStack, OneMegabyteLineWithDotStarReturns) {
  const std::wstring text(1 << 20, L'x');
  const std::wregex regex = Regex(L".*");
  std::vector<RegexMatch> records;
  const bool ran = RunOnRegexStack([&]() {
    uint64_t position = 0;
    LineCursor lines;
    records = SearchNextBatch(text, regex, position, 1, nullptr, lines);
  });
  ASSERT_TRUE(ran);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].end, 1 << 20);
}

TEST(RegexStack, ALineBeyondTheStackEndsTheThreadNotTheProcess) {
  const std::wstring text(16 << 20, L'x');
  const std::wregex regex = Regex(L"(?:x|y)*z");
  bool overflowed = false;
  HANDLE thread = StartRegexThread(
      [&]() {
        uint64_t position = 0;
        LineCursor lines;
        SearchNextBatch(text, regex, position, 1, nullptr, lines);
      },
      [&]() { overflowed = true; });
  ASSERT_NE(thread, nullptr);
  WaitForSingleObject(thread, INFINITE);
  DWORD code = 0;
  GetExitCodeThread(thread, &code);
  CloseHandle(thread);
  EXPECT_EQ(code, kRegexStackOverflowed);
  EXPECT_TRUE(overflowed);
}

}  // namespace
