// The hand-made UTF-16 to UTF-8 writer agrees with the system's conversion.
#include <gtest/gtest.h>

#include <string>

#include "base/text_convert.h"
#include "base/utf16_to_utf8.h"

namespace {

std::string ByHand(const std::wstring& text) {
  std::string out;
  AppendUtf16AsUtf8(out, text.data(), text.size());
  return out;
}

}  // namespace

TEST(Utf16ToUtf8ByHand, AgreesWithTheSystem) {
  for (const std::wstring& text : {std::wstring(L"plain"), std::wstring(L"caf\u00e9 \u20ac"),
                                   std::wstring(L"\xD83D\xDE00 pair"), std::wstring(L"lone \xD800 high"),
                                   std::wstring(L"lone \xDC00 low"), std::wstring(L"end \xD83D"), std::wstring()}) {
    EXPECT_EQ(ByHand(text), WideToUtf8(text));
  }
  EXPECT_EQ(ByHand(L"\xD800"), "\xEF\xBF\xBD");
  std::string out;
  const char16_t units[] = {u'a', 0xD83D, 0xDE00};
  AppendUtf16AsUtf8(out, units, 3);
  EXPECT_EQ(out, "a\xF0\x9F\x98\x80");
}
