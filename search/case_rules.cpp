#include "search/case_rules.h"

#include <cwctype>

#include "base/text_convert.h"

namespace {

bool IsUpper(wchar_t unit) { return std::iswupper(static_cast<wint_t>(unit)) != 0; }
bool IsLower(wchar_t unit) { return std::iswlower(static_cast<wint_t>(unit)) != 0; }
bool IsLetter(wchar_t unit) { return std::iswalpha(static_cast<wint_t>(unit)) != 0; }
wchar_t ToUpper(wchar_t unit) { return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(unit))); }
wchar_t ToLower(wchar_t unit) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(unit))); }

std::wstring AllUpper(std::wstring text) {
  for (wchar_t& unit : text) unit = ToUpper(unit);
  return text;
}

std::wstring AllLower(std::wstring text) {
  for (wchar_t& unit : text) unit = ToLower(unit);
  return text;
}

}  // namespace

std::wstring CapitalisedReplacement(const std::wstring& replacement) {
  std::wstring result = AllLower(replacement);
  if (!result.empty()) result[0] = ToUpper(replacement[0]);
  return result;
}

std::wstring LoweredReplacement(const std::wstring& replacement) { return AllLower(replacement); }

std::wstring ApplyPreserveCaseUnits(const std::wstring& replacement, const std::wstring& matched) {
  // The working string keeps its terminating zero as its last unit, and the
  // zero is never upper-case: so the search below always finds a unit that
  // isn't, and the all-capitals branch is never taken.
  std::wstring working = matched;
  working.push_back(L'\0');
  bool allUpper = true;
  for (wchar_t unit : working) {
    if (!IsUpper(unit)) {
      allUpper = false;
      break;
    }
  }
  if (allUpper) return AllUpper(replacement);
  if (IsUpper(working[0])) return CapitalisedReplacement(replacement);
  return LoweredReplacement(replacement);
}

std::wstring ApplyPreserveCase(const std::wstring& replacement, const std::string& matchedUtf8) {
  return ApplyPreserveCaseUnits(replacement, Utf8ToWide(matchedUtf8));
}

std::wstring ApplyMatchCasePattern(const std::wstring& replacement, const std::wstring& matched) {
  if (replacement.empty() || matched.empty()) return replacement;
  bool allUpper = true, allLower = true;
  for (wchar_t unit : matched) {
    if (!IsUpper(unit) && IsLetter(unit)) allUpper = false;
    if (!IsLower(unit) && IsLetter(unit)) allLower = false;
  }
  // Upper first: a match without letters leaves both flags set.
  if (allUpper) return AllUpper(replacement);
  if (allLower) return AllLower(replacement);
  if (IsUpper(matched[0])) return CapitalisedReplacement(replacement);
  return replacement;
}

wchar_t FirstUtf16Unit(const char* bytes, size_t length) {
  if (length == 0) return 0;
  const auto* b = reinterpret_cast<const unsigned char*>(bytes);
  const unsigned lead = b[0];
  if (lead < 0x80) return static_cast<wchar_t>(lead);
  size_t extra = 0;
  unsigned code = 0, least = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    extra = 1, code = lead & 0x1F, least = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    extra = 2, code = lead & 0x0F, least = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    extra = 3, code = lead & 0x07, least = 0x10000;
  } else {
    return 0xFFFD;
  }
  if (length < extra + 1) return 0xFFFD;
  for (size_t i = 1; i <= extra; ++i) {
    if ((b[i] & 0xC0) != 0x80) return 0xFFFD;
    code = (code << 6) | (b[i] & 0x3F);
  }
  if (code < least || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0xFFFD;
  if (code >= 0x10000) return static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
  return static_cast<wchar_t>(code);
}
