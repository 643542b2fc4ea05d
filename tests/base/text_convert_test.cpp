#include "base/text_convert.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8ToWide, ConvertsAndReplaces) {
  EXPECT_EQ(Utf8ToWide(""), L"");
  EXPECT_EQ(Utf8ToWide("h\xC3\xA9"), L"h\u00e9");
  EXPECT_EQ(Utf8ToWide("\xFF"), L"\uFFFD");
}

TEST(Utf8ToWide, EndsAtTheFirstZeroByte) { EXPECT_EQ(Utf8ToWide(std::string("ab\0cd", 5)), L"ab"); }

TEST(WideToUtf8, ConvertsEveryPlane) {
  EXPECT_EQ(WideToUtf8(L""), "");
  EXPECT_EQ(WideToUtf8(L"a\u00e9\u20ac"), "a\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(WideToUtf8(L"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(WideToUtf8, KeepsZeroUnitsInside) { EXPECT_EQ(WideToUtf8(std::wstring(L"a\0b", 3)), std::string("a\0b", 3)); }

TEST(TextConvert, RoundTrip) {
  const std::wstring text = L"Tavro \u00e2\u20ac\u201d \u0161\u0111\u010d\u0107\u017e \U0001F600";
  EXPECT_EQ(Utf8ToWide(WideToUtf8(text)), text);
}

}  // namespace
