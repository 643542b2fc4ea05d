// The bridges between UTF-16 inside the program and UTF-8 in files, on the
// wire and in the editor control.
#pragma once

#include <cstddef>
#include <string>

// UTF-16 to UTF-8 with code page 65001 and no flags.
std::string WideToUtf8(const std::wstring& text);

// UTF-8 to UTF-16; empty for empty input or a failed conversion. The text
// ends at its first zero byte.
std::wstring Utf8ToWide(const std::string& text);

// UTF-16 units to UTF-8 with code page 65001 and no flags, into out (at most
// capacity bytes, no terminator added); with capacity 0 only the length that
// is needed. Returns the bytes written or needed, 0 for no units or a failure.
size_t Utf16ToUtf8Into(const char16_t* units, size_t count, char* out, size_t capacity);
