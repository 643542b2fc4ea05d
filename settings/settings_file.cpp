// The settings file: defaults, checksum, load at start-up, saves under the
// settings mutex, and the hand-over of the live values at exit.
#include <windows.h>

#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include "base/app_state.h"
#include "base/file_attributes.h"
#include "settings/data_folders.h"
#include "settings/settings.h"

namespace {

constexpr wchar_t kDefaultSystemPrompt[] =
    L"You are Tavro AI, a helpful assistant built into the Tavro text editor. Be concise and precise. "
    L"For code, use appropriate formatting.\n\n"
    L"When asked about the user's PC: report ONLY data from [System Context]. Present it clearly. "
    L"For fields marked 'unknown', say 'not available'. Never add specs from your training knowledge.";

// Created at the first save, never owned at creation, never closed: one
// mutex orders the writers of every profile's file in the logon session.
HANDLE g_settingsMutex = nullptr;

void Log(const wchar_t* line) { OutputDebugStringW(line); }

// A line with two %ls fields, in a buffer as long as the texts need.
void LogTwo(const wchar_t* format, const std::wstring& first, const std::wstring& second) {
  std::vector<wchar_t> line(wcslen(format) + first.size() + second.size() + 1);
  swprintf(line.data(), line.size(), format, first.c_str(), second.c_str());
  OutputDebugStringW(line.data());
}

// The text of a fixed array up to its terminator, or the whole array if it has none.
std::wstring FieldText(const wchar_t* field, size_t capacity) {
  return std::wstring(field, wcsnlen(field, capacity));
}

void CopyText(wchar_t* field, size_t capacity, const wchar_t* text) {
  CopySettingsText(field, capacity, std::wstring(text));
}

SettingsLoadResult ReadSettingsFile(const std::wstring& path, AppSettings& record) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return SettingsLoadResult::kFileNotFound;
  // Header and payload; what a longer file holds after them is not read.
  std::vector<uint8_t> bytes(kSettingsFileSize);
  DWORD got = 0;
  if (!ReadFile(file, bytes.data(), kSettingsFileSize, &got, nullptr)) got = 0;
  CloseHandle(file);
  return ParseSettingsFile(bytes.data(), got, record);
}

// Waits for the settings mutex; true when this thread now owns it.
bool AcquireSettingsMutex() {
  if (!g_settingsMutex) {
    g_settingsMutex = CreateMutexW(nullptr, FALSE, kSettingsMutexName);
    if (!g_settingsMutex) {
      Log(L"Failed to create settings mutex\n");
      return false;
    }
  }
  DWORD wait = WaitForSingleObject(g_settingsMutex, kSettingsMutexTimeoutMs);
  if (wait != WAIT_OBJECT_0) {
    // An abandoned mutex is ours now: let go of it so that other writers
    // aren't locked out, though this save is still given up.
    if (wait == WAIT_ABANDONED) ReleaseMutex(g_settingsMutex);
    Log(L"Failed to acquire settings mutex (timeout)\n");
    return false;
  }
  return true;
}

}  // namespace

void SetDefaultSettings(AppSettings& record) {
  auto* bytes = reinterpret_cast<uint8_t*>(&record);
  memset(bytes, 0, 8);
  memset(bytes + 12, 0, kSettingsPayloadSize - 12);

  record.themeIndex = 0;
  record.editorMode = 0;
  record.fontSize = 11;
  CopyText(record.fontName, 64, L"Consolas");
  record.fontBold = 0;
  record.fontItalic = 0;
  record.wordWrap = 1;
  record.lineNumbers = 1;
  record.firstRun = 1;
  record.windowX = kWindowPositionDefault;
  record.windowY = kWindowPositionDefault;
  record.windowWidth = 920;
  record.windowHeight = 660;
  record.windowMaximized = 0;
  record.transparencyPercent = 0;
  record.autoSaveMinutes = 0;
  record.findMatchCase = 0;
  record.findWholeWord = 0;
  record.findWrapAround = 1;
  record.findPreserveCase = 0;
  record.findInSelection = 0;
  record.findColorResults = 1;
  record.marginLeft = 1500;
  record.marginTop = 1500;
  record.marginRight = 1500;
  record.marginBottom = 1500;
  record.paperWidth = 21000;   // A4
  record.paperHeight = 29700;
  record.previewWidth = 0;
  record.previewHeight = 0;
  record.helpWidth = 0;
  record.helpHeight = 0;
  record.helpTopic = 0;
  record.reserved0 = 0;
  record.reserved1 = 0;
  record.reserved2 = 4;
  record.reserved3 = 0;
  record.regexMatchCase = 0;
  record.regexWholeWord = 0;
  record.regexPreserveCase = 0;
  record.regexLineNumbers = 1;
  record.regexBatchSize = 300;
  record.regexMaxMatches = 1000;
  record.regexOutputFormat = 1;
  record.regexColorResults = 1;
  record.reserved4 = 1;
  record.soundOnKey = 0;
  record.soundOnEnter = 0;
  record.showSplash = 1;
  record.aiProvider = 0;
  CopyText(record.modelName, 128, kDefaultModelName);
  CopyText(record.systemPrompt, 1024, kDefaultSystemPrompt);
  record.temperatureHundredths = 70;
  record.maxTokens = 2048;
  record.aiPanelPercent = 50;
  record.keepHistory = 1;
  record.historyLimit = 20;
  record.typingDelayMs = 25;
  record.typingAnimation = 1;
}

SettingsLoadResult LoadSettingsFile(const std::wstring& path, AppSettings& record) {
  const SettingsLoadResult result = ReadSettingsFile(path, record);
  switch (result) {
    case SettingsLoadResult::kLoaded:
      LogTwo(L"[LoadSettings] Profile: %ls, lastFilePath: %ls\n", g_profileName,
             FieldText(record.lastFilePath, 260));
      return result;
    case SettingsLoadResult::kFileNotFound:
      Log(kLogSettingsFileNotFound);
      break;
    case SettingsLoadResult::kInvalidHeader:
      Log(kLogSettingsInvalidHeader);
      break;
    case SettingsLoadResult::kChecksumMismatch:
      Log(kLogSettingsChecksumMismatch);
      break;
  }
  SetDefaultSettings(record);  // also wipes whatever a bad payload left behind
  return result;
}

bool WriteSettingsFile(const std::wstring& path, const AppSettings& record) {
  const wchar_t* name = path.c_str();
  const DWORD before = GetFileAttributesW(name);
  const bool existed = before != INVALID_FILE_ATTRIBUTES;
  DWORD keep = 0;
  if (existed) {
    const DWORD cleared = before & ~(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_NORMAL);
    SetFileAttributesW(name, cleared ? cleared : FILE_ATTRIBUTE_NORMAL);
    // Overwriting a hidden or system file is refused unless the same
    // attributes are asked for, so hand the file's own back.
    keep = before & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                     FILE_ATTRIBUTE_NOT_CONTENT_INDEXED);
  }

  HANDLE file = CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            keep ? keep : FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    if (existed) SetReadOnlyAttribute(path);
    return false;
  }

  SettingsFileHeader header = {};
  memcpy(header.magic, kSettingsMagic, sizeof(header.magic));
  header.version = kSettingsVersion;
  header.payloadSize = kSettingsPayloadSize;
  header.checksum = SettingsChecksum(&record);
  DWORD written = 0;
  bool ok = WriteFile(file, &header, sizeof(header), &written, nullptr) && written == sizeof(header);
  if (ok) ok = WriteFile(file, &record, kSettingsPayloadSize, &written, nullptr) && written == kSettingsPayloadSize;
  CloseHandle(file);  // a failed close doesn't change the result

  SetReadOnlyAttribute(path);  // the file stands read-only between saves
  return ok;
}

SettingsLoadResult LoadSettings() { return LoadSettingsFile(GetSettingsFilePath(), g_settings); }

bool SaveSettings(const AppSettings& record) {
  if (!AcquireSettingsMutex()) return false;
  const bool ok = WriteSettingsFile(GetSettingsFilePath(), record);
  ReleaseMutex(g_settingsMutex);
  return ok;
}

bool SaveSettingsAt(const std::wstring& path, const AppSettings& record) {
  if (!AcquireSettingsMutex()) return false;
  const bool ok = WriteSettingsFile(path, record);
  ReleaseMutex(g_settingsMutex);
  return ok;
}

bool SaveSettingsToPath(const std::wstring& path) { return WriteSettingsFile(path, g_settings); }

void TakeLiveSettings() {
  g_themeIndex = g_settings.themeIndex;
  g_wordWrap = g_settings.wordWrap != 0;
  g_lineNumbers = g_settings.lineNumbers != 0;
  g_fontSize = g_settings.fontSize;
  memcpy(g_fontName, g_settings.fontName, sizeof(g_fontName));
  g_fontName[63] = L'\0';

  // The one range check of a load. 20 to 29 pass here; the first layout
  // with the panel present turns them into 50.
  if (g_settings.aiPanelPercent < 20 || g_settings.aiPanelPercent > 50) g_settings.aiPanelPercent = 50;
  g_aiPanelPercent = g_settings.aiPanelPercent;
}

void CopySettingsText(wchar_t* field, size_t capacity, const std::wstring& text) {
  size_t length = text.size();
  if (length > capacity - 1) length = capacity - 1;
  memcpy(field, text.data(), length * sizeof(wchar_t));
  field[length] = L'\0';
}
