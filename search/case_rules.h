// The two case-preserving rules of replacement: the Find & Replace dialog's
// and the Regex Search dialog's. They give different results on the same
// input on purpose; neither follows the other. Both work on UTF-16 one unit
// at a time with the C library's wide functions in the "C" locale, so a
// surrogate pair is two units that no case function changes.
#pragma once

#include <string>

// The Find & Replace rule: only the first unit of the matched text decides.
// Upper-case there gives the replacement a capital first unit and lower-case
// for the rest; anything else lower-cases the whole replacement. An all
// capitals match is not recognised as such.
std::wstring ApplyPreserveCase(const std::wstring& replacement, const std::string& matchedUtf8);
// The same rule with the matched text already in UTF-16.
std::wstring ApplyPreserveCaseUnits(const std::wstring& replacement, const std::wstring& matched);

// The Regex Search rule: an all-upper match (or one without letters)
// upper-cases the replacement, an all-lower one lower-cases it, a mixed one
// that starts upper-case capitalises it, and any other keeps it as it is.
std::wstring ApplyMatchCasePattern(const std::wstring& replacement, const std::wstring& matched);

// The replacement ApplyPreserveCase makes when the matched text's first unit
// is upper-case (capital) or not (lower); Replace All picks one per hit.
std::wstring CapitalisedReplacement(const std::wstring& replacement);
std::wstring LoweredReplacement(const std::wstring& replacement);

// The first UTF-16 unit of a UTF-8 text: a unit of the BMP, the high
// surrogate of a character beyond it, U+FFFD for a malformed start, and 0
// for an empty text.
wchar_t FirstUtf16Unit(const char* bytes, size_t length);
