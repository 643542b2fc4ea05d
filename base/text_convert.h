// The bridges between UTF-16 inside the program and UTF-8 in files, on the
// wire and in the editor control.
#pragma once

#include <string>

// UTF-16 to UTF-8 with code page 65001 and no flags.
std::string WideToUtf8(const std::wstring& text);

// UTF-8 to UTF-16; empty for empty input or a failed conversion. The text
// ends at its first zero byte.
std::wstring Utf8ToWide(const std::string& text);
