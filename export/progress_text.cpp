#include "export/progress_text.h"

#include <cwchar>

std::wstring FormatElapsed(uint64_t milliseconds) {
  wchar_t text[64];
  unsigned long long seconds = milliseconds / 1000;
  if (seconds < 60)
    swprintf(text, 64, L"%llu.%03llu sec", seconds, static_cast<unsigned long long>(milliseconds % 1000));
  else if (seconds < 3600)
    swprintf(text, 64, L"%llu:%02llu min", seconds / 60, seconds % 60);
  else
    swprintf(text, 64, L"%llu:%02llu:%02llu", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

std::wstring ExportStatusText(int32_t line, int32_t lineCount) {
  if (line == -1) return L"Finalizing...";
  long long percent = lineCount > 0 ? static_cast<long long>(line) * 100 / lineCount : 0;
  return L"Exporting line " + std::to_wstring(line) + L" of " + std::to_wstring(lineCount) + L"  (" +
         std::to_wstring(percent) + L"%)";
}

int32_t PacingTarget(int32_t lineCount) {
  int32_t target = static_cast<int32_t>(static_cast<long long>(lineCount) * 9 / 10);
  return target < 1 ? 1 : target;
}

int32_t PacingStep(int32_t target) {
  int32_t step = target / 40;
  return step < 1 ? 1 : step;
}
