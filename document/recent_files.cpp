#include "document/recent_files.h"

#include <cstring>
#include <cwchar>

#include "presentation/message_box.h"
#include "settings/settings.h"

void PutRecentPathFirst(RecentSlots& slots, const std::wstring& path) {
  if (path.empty()) return;
  int found = kRecentSlotCount - 1;  // not there: the tenth drops out
  for (int slot = 0; slot < kRecentSlotCount; ++slot) {
    if (_wcsicmp(slots[slot], path.c_str()) == 0) {
      found = slot;
      break;
    }
  }
  // Whole slots move, the units after each terminator with them.
  if (found > 0) memmove(slots[1], slots[0], sizeof(slots[0]) * static_cast<size_t>(found));
  CopySettingsText(slots[0], kRecentSlotUnits, path);
}

bool TakeRecentSlotOut(RecentSlots& slots, int index) {
  if (index < 0 || index >= kRecentSlotCount) return false;
  const int last = kRecentSlotCount - 1;
  if (index < last) memmove(slots[index], slots[index + 1], sizeof(slots[0]) * static_cast<size_t>(last - index));
  memset(slots[last], 0, sizeof(slots[last]));
  return true;
}

std::wstring RecentSlotPath(const RecentSlots& slots, int index) {
  if (index < 0 || index >= kRecentSlotCount) return L"";
  return std::wstring(slots[index], wcsnlen(slots[index], kRecentSlotUnits));
}

std::wstring RecentFileMissingText(const std::wstring& name) {
  return L"\"" + name + L"\" no longer exists on disk.\n\nRemove it from the Recent Files list?";
}

void AddRecentFile(const std::wstring& path) {
  if (path.empty()) return;
  PutRecentPathFirst(g_settings.recentFiles, path);
  SaveSettings(g_settings);
}

void RemoveRecentFile(int index) {
  if (TakeRecentSlotOut(g_settings.recentFiles, index)) SaveSettings(g_settings);
}

void ClearRecentFiles(HWND owner) {
  if (ShowMessageBox(owner, kBoxYesNo, kClearRecentFilesTitle, kClearRecentFilesText) != kResultYes) return;
  memset(g_settings.recentFiles, 0, sizeof(g_settings.recentFiles));
  SaveSettings(g_settings);
}
