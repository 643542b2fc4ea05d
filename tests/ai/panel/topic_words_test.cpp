// The topic word table: its size, its case, its order of languages.
#include "ai/panel/topic_words.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ai/panel/send_rules.h"

namespace {

bool IsAscii(const std::wstring& row) {
  for (wchar_t unit : row)
    if (unit > 0x7F) return false;
  return true;
}

TEST(TopicWordsTest, HasTwoHundredThirtyFourRows) {
  EXPECT_EQ(sizeof(kTopicWords) / sizeof(kTopicWords[0]), 234u);
  for (const wchar_t* row : kTopicWords) {
    ASSERT_NE(row, nullptr);
    EXPECT_FALSE(std::wstring(row).empty());
  }
}

TEST(TopicWordsTest, EveryRowIsLowerCase) {
  // The capitals of the letters the three South Slavic alphabets add to ASCII.
  const std::wstring capitals = L"\u0160\u0110\u010C\u0106\u017D";
  for (const wchar_t* row : kTopicWords) {
    for (const wchar_t* unit = row; *unit; ++unit) {
      EXPECT_FALSE(*unit >= L'A' && *unit <= L'Z') << "row with a capital";
      EXPECT_EQ(capitals.find(*unit), std::wstring::npos) << "row with a capital";
    }
    EXPECT_EQ(LowerAsciiUnits(row), row);
  }
}

TEST(TopicWordsTest, EnglishComesFirstThenTheSouthSlavicRows) {
  ASSERT_GT(kTopicWordEnglishCount, 0u);
  ASSERT_LT(kTopicWordEnglishCount, kTopicWordCount);
  for (size_t i = 0; i < kTopicWordEnglishCount; ++i) EXPECT_TRUE(IsAscii(kTopicWords[i])) << i;
  size_t firstNonAscii = kTopicWordCount;
  for (size_t i = 0; i < kTopicWordCount && firstNonAscii == kTopicWordCount; ++i)
    if (!IsAscii(kTopicWords[i])) firstNonAscii = i;
  EXPECT_GE(firstNonAscii, kTopicWordEnglishCount);
  EXPECT_LT(firstNonAscii, kTopicWordCount);
  EXPECT_EQ(std::wstring(kTopicWords[0]), L"doctor");
  EXPECT_EQ(std::wstring(kTopicWords[kTopicWordEnglishCount]), L"zdravlje");  // the Bosnian rows begin
  EXPECT_EQ(std::wstring(kTopicWords[kTopicWordCount - 1]), L"holesterol");
}

TEST(TopicWordsTest, AFewRowsOccurTwiceAndStay) {
  std::set<std::wstring> seen;
  size_t twice = 0;
  for (const wchar_t* row : kTopicWords)
    if (!seen.insert(row).second) ++twice;
  EXPECT_GT(twice, 0u);
  EXPECT_LT(twice, 10u);
}

TEST(TopicWordsTest, EveryTopicHasRowsInEachLanguage) {
  auto has = [](const wchar_t* word) {
    for (const wchar_t* row : kTopicWords)
      if (std::wstring(row) == word) return true;
    return false;
  };
  for (const wchar_t* word : {L"doctor", L"lawyer", L"tax", L"poison", L"anxiety", L"diet",          // English
                              L"ljekar", L"advokat", L"porez", L"otrov", L"depresija", L"dijeta",    // Bosnian
                              L"liječnik", L"odvjetnik", L"mirovina", L"zapaljivo", L"tjeskoba", L"prehrana",  // Croatian
                              L"lekar", L"sudski", L"hipoteka", L"zračenje", L"nesanica", L"gojaznost"})       // Serbian
    EXPECT_TRUE(has(word)) << "missing row";
}

}  // namespace
