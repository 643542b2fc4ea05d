// The settings record and its file: everything the program remembers between
// runs apart from chats, in one fixed-size packed record. The file is a
// 16-byte header followed by the record as it stands in memory, 40318 bytes
// in all; a file that doesn't match that layout byte for byte is replaced by
// defaults.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "settings/settings_record.h"

constexpr wchar_t kSettingsMutexName[] = L"Local\\Tavro_Settings_Mutex";
constexpr DWORD kSettingsMutexTimeoutMs = 3000;


// The one record of the process, valid from LoadSettings to exit. Only the
// user-interface thread changes it.
extern AppSettings g_settings;

// Live copies: taken from the record at start-up, written back by
// CollectSettings. Code that changes one of these changes the live value.
extern uint32_t g_themeIndex;
extern bool g_wordWrap;
extern bool g_lineNumbers;
extern int g_fontSize;
extern wchar_t g_fontName[64];
extern int g_aiPanelPercent;  // the AI panel's width in per cent, as laid out

// Zero from offset 12 to the end and the first 8 bytes, then every default.
void SetDefaultSettings(AppSettings& record);

// Reads the file at path into record; every outcome but kLoaded leaves the
// defaults in record and logs its line. Takes no lock.
SettingsLoadResult LoadSettingsFile(const std::wstring& path, AppSettings& record);

// Writes header and payload to path in place, clearing the read-only
// attribute first and setting it again after. No lock. True when all
// 40318 bytes were written.
bool WriteSettingsFile(const std::wstring& path, const AppSettings& record);

// Start-up: g_settings from this profile's settings file.
SettingsLoadResult LoadSettings();

// The one save of all subsystems: takes the settings mutex (3000 ms), then
// writes record to this profile's settings file. Callers may ignore the result.
bool SaveSettings(const AppSettings& record);

// As SaveSettings, to the given path, under the same mutex.
bool SaveSettingsAt(const std::wstring& path, const AppSettings& record);

// Writes g_settings to path without the mutex: the file of a new profile.
bool SaveSettingsToPath(const std::wstring& path);

// Start-up, after LoadSettings: the live copies from the record, and the one
// range check of a load (aiPanelPercent outside 20..50 becomes 50).
void TakeLiveSettings();

// Copies text into a fixed string field, cut to leave room for the
// terminator. The units after the terminator are left as they are.
void CopySettingsText(wchar_t* field, size_t capacity, const std::wstring& text);
