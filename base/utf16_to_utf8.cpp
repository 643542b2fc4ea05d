#include "base/utf16_to_utf8.h"

namespace {

void PutUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

template <typename Unit>
void Append(std::string& out, const Unit* units, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    char32_t c = static_cast<char16_t>(units[i]);
    const char16_t next = i + 1 < count ? static_cast<char16_t>(units[i + 1]) : 0;
    if (c >= 0xD800 && c < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
      c = 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;
    }
    PutUtf8(out, c);
  }
}

}  // namespace

void AppendUtf16AsUtf8(std::string& out, const char16_t* units, size_t count) { Append(out, units, count); }

void AppendUtf16AsUtf8(std::string& out, const wchar_t* units, size_t count) { Append(out, units, count); }
