// The text conversions of base/text_convert.h for the native fuzzing build,
// where the system's code-page functions don't exist. They follow the
// system's rules closely enough to drive the readers: UTF-16 units are held
// in wchar_t (wider here), invalid input becomes U+FFFD, and Utf8ToWide ends
// at the first zero byte.
#include <string>

#include "base/text_convert.h"
#include "base/utf16_to_utf8.h"

std::string WideToUtf8(const std::wstring& text) {
  std::string out;
  AppendUtf16AsUtf8(out, text.data(), text.size());
  return out;
}

std::wstring Utf8ToWide(const std::string& text) {
  std::wstring out;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.c_str());
  for (size_t i = 0; bytes[i];) {
    const unsigned char lead = bytes[i];
    int extra = lead < 0x80 ? 0 : (lead >> 5) == 6 ? 1 : (lead >> 4) == 14 ? 2 : (lead >> 3) == 30 ? 3 : -1;
    char32_t c = extra == 0 ? lead : extra == 1 ? lead & 0x1F : extra == 2 ? lead & 0x0F : lead & 0x07;
    bool valid = extra >= 0;
    size_t next = i + 1;
    for (int k = 0; valid && k < extra; ++k, ++next) {
      if ((bytes[next] & 0xC0) != 0x80) valid = false;
      else c = (c << 6) | (bytes[next] & 0x3F);
    }
    if (!valid || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) {
      out += wchar_t(0xFFFD);
      i += 1;
      continue;
    }
    if (c >= 0x10000) {
      out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      out += static_cast<wchar_t>(c);
    }
    i = next;
  }
  return out;
}

size_t Utf16ToUtf8Into(const char16_t* units, size_t count, char* out, size_t capacity) {
  std::string utf8;
  AppendUtf16AsUtf8(utf8, units, count);
  if (capacity == 0) return utf8.size();
  const size_t written = utf8.size() < capacity ? utf8.size() : capacity;
  utf8.copy(out, written);
  return written;
}
