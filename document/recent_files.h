// The Recent Files list: ten slots of 260 units in the settings record,
// newest first, with no gaps (the first empty slot ends the list). Every
// change is saved at once.
#pragma once

#include <windows.h>

#include <string>

#include "settings/settings_record.h"

constexpr int kRecentSlotCount = 10;
constexpr size_t kRecentSlotUnits = 260;
using RecentSlots = SettingsChar[kRecentSlotCount][kRecentSlotUnits];

// The slot rules over the bare array, without saving. Adding moves a path
// that is there already (compared case-insensitively) to the top in its new
// spelling, or pushes the others down and drops the tenth; it is cut at 259
// units. An empty path changes nothing.
void PutRecentPathFirst(RecentSlots& slots, const std::wstring& path);
// Slots above index move up one and the last is cleared; false (and nothing
// changed) for an index outside 0..9.
bool TakeRecentSlotOut(RecentSlots& slots, int index);
// The path in a slot, empty for an empty slot or an index outside 0..9.
std::wstring RecentSlotPath(const RecentSlots& slots, int index);

// The question when a file of the list has gone, and the one before clearing.
std::wstring RecentFileMissingText(const std::wstring& name);
constexpr wchar_t kRecentFileMissingTitle[] = L"Tavro \u00e2\u20ac\u201d Recent Files";
constexpr wchar_t kClearRecentFilesTitle[] = L"Tavro - Recent Files";
constexpr wchar_t kClearRecentFilesText[] = L"Clear the entire Recent Files list?";

// The list in g_settings, each change saved.
void AddRecentFile(const std::wstring& path);
void RemoveRecentFile(int index);
// Asks first; Yes empties all ten slots.
void ClearRecentFiles(HWND owner);
