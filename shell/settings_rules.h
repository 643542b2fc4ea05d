// The rules of the Settings dialog that need no window: the font line, the
// interval list, what the transparency field accepts.
#pragma once

#include <cstdint>
#include <string>

// "Font: Consolas, 11 pt", then " Bold" and " Italic" as they apply.
std::wstring SettingsFontLine(const std::wstring& name, int size, bool bold, bool italic);

struct IntervalRow {
  const wchar_t* label;
  uint32_t minutes;  // the row's item data
};
constexpr int kIntervalRowCount = 5;
extern const IntervalRow kIntervalRows[kIntervalRowCount];

// The interval minutes shown when auto-save is off.
constexpr uint32_t kDefaultIntervalMinutes = 5;
// The row shown for a stored interval: the stored one, or 5 minutes when
// off; row 0 for a value the list lacks.
int IntervalRowOf(uint32_t autoSaveMinutes);
// The interval stored at OK: the chosen row's minutes (5 with no row) with
// the box ticked, 0 without. selectedMinutes is negative with no row.
uint32_t ChosenAutoSaveMinutes(bool enabled, int64_t selectedMinutes);

// The transparency field takes a number from 0 to 50, nothing else.
constexpr unsigned kTransparencyMax = 50;
bool TransparencyAccepted(bool isNumber, unsigned value);

// The theme row shown for a stored index: 6 or more reads row 0.
int ThemeRowOf(uint32_t themeIndex);
