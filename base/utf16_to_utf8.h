// UTF-16 units to UTF-8 by hand, for the code that must not need the
// system's conversion (pure layers, the native fuzzing build): surrogate
// pairs joined, a lone half written as U+FFFD, as the system does.
#pragma once

#include <cstddef>
#include <string>

void AppendUtf16AsUtf8(std::string& out, const char16_t* units, size_t count);
void AppendUtf16AsUtf8(std::string& out, const wchar_t* units, size_t count);  // wchar_t holds one UTF-16 unit
