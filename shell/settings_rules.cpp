#include "shell/settings_rules.h"

#include <cwchar>

#include "presentation/themes.h"

const IntervalRow kIntervalRows[kIntervalRowCount] = {
    {L"1 min", 1}, {L"5 min", 5}, {L"10 min", 10}, {L"30 min", 30}, {L"60 min", 60},
};

std::wstring SettingsFontLine(const std::wstring& name, int size, bool bold, bool italic) {
  wchar_t line[128];
  swprintf(line, 128, L"Font: %ls, %d pt%ls%ls", name.c_str(), size, bold ? L" Bold" : L"", italic ? L" Italic" : L"");
  return line;
}

int IntervalRowOf(uint32_t autoSaveMinutes) {
  const uint32_t shown = autoSaveMinutes > 0 ? autoSaveMinutes : kDefaultIntervalMinutes;
  for (int row = 0; row < kIntervalRowCount; ++row)
    if (kIntervalRows[row].minutes == shown) return row;
  return 0;
}

uint32_t ChosenAutoSaveMinutes(bool enabled, int64_t selectedMinutes) {
  if (!enabled) return 0;
  return selectedMinutes < 0 ? kDefaultIntervalMinutes : static_cast<uint32_t>(selectedMinutes);
}

bool TransparencyAccepted(bool isNumber, unsigned value) { return isNumber && value <= kTransparencyMax; }

int ThemeRowOf(uint32_t themeIndex) { return themeIndex < kThemeCount ? static_cast<int>(themeIndex) : 0; }
