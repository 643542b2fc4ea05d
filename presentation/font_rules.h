// The rules of the Font dialog that need no window: the size list, what the
// size field accepts, which families the list shows, where a row scrolls to.
#pragma once

#include <string>

constexpr int kFontSizeCount = 18;
extern const int kFontSizes[kFontSizeCount];

// Any size from 1 to 144 points may be typed, not only the listed ones.
constexpr int kFontSizeMin = 1;
constexpr int kFontSizeMax = 144;
bool FontSizeAllowed(int size);

// The row of a size in the size list, or -1 for a size the list lacks.
int FontSizeRow(int size);

// The size field reads at most this many characters.
constexpr int kSizeFieldChars = 8;
// The number the first kSizeFieldChars characters of the field make, read
// as _wtoi reads (blanks, a sign, digits up to the first other character);
// 0 when there is no number.
int SizeFieldNumber(const std::wstring& text);

// A family the list shows: outline (TrueType) only, and no vertical
// variant, whose name begins with "@".
bool KeepFontFamily(const std::wstring& name, bool trueType);

// The row at the top of a list that shows the selected row 3 rows below
// it, or at the top when fewer rows lie above.
int TopRowFor(int selected);
