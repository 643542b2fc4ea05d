#include "presentation/font_rules.h"

const int kFontSizes[kFontSizeCount] = {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72};

bool FontSizeAllowed(int size) { return size >= kFontSizeMin && size <= kFontSizeMax; }

int FontSizeRow(int size) {
  for (int row = 0; row < kFontSizeCount; ++row)
    if (kFontSizes[row] == size) return row;
  return -1;
}

int SizeFieldNumber(const std::wstring& text) {
  const std::wstring field = text.substr(0, kSizeFieldChars);
  size_t i = 0;
  while (i < field.size() && (field[i] == L' ' || (field[i] >= L'\t' && field[i] <= L'\r'))) ++i;
  bool negative = false;
  if (i < field.size() && (field[i] == L'+' || field[i] == L'-')) negative = field[i++] == L'-';
  long value = 0;  // eight digits at most: no overflow
  for (; i < field.size() && field[i] >= L'0' && field[i] <= L'9'; ++i) value = value * 10 + (field[i] - L'0');
  return static_cast<int>(negative ? -value : value);
}

bool KeepFontFamily(const std::wstring& name, bool trueType) {
  return trueType && !name.empty() && name[0] != L'@';
}

int TopRowFor(int selected) { return selected > 3 ? selected - 3 : 0; }
