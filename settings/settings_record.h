// The settings record and the bytes of its file, without windows: the
// layout, the checksum and the reading of a file's bytes. The file is a
// 16-byte header followed by the record as it stands in memory, 40318 bytes
// in all; a file that doesn't match that layout byte for byte is replaced by
// defaults.
#pragma once

#include <cstddef>
#include <cstdint>

// A UTF-16 unit of a string field: wchar_t in the program, char16_t where
// wchar_t is wider (the native build of the fuzzing targets).
#ifdef _WIN32
using SettingsChar = wchar_t;
#else
using SettingsChar = char16_t;
#endif

constexpr uint32_t kSettingsFileSize = 40318;
constexpr uint32_t kSettingsHeaderSize = 16;
constexpr uint32_t kSettingsPayloadSize = 40302;
constexpr uint32_t kSettingsVersion = 21;
constexpr char kSettingsMagic[4] = {'T', 'A', 'V', 'R'};  // no terminator in the file

// The three fallback lines of a load.
constexpr wchar_t kLogSettingsFileNotFound[] = L"[LoadSettings] File not found, using defaults\n";
constexpr wchar_t kLogSettingsInvalidHeader[] = L"[LoadSettings] Invalid header, using defaults\n";
constexpr wchar_t kLogSettingsChecksumMismatch[] = L"[LoadSettings] Checksum mismatch, using defaults\n";

constexpr int32_t kWindowPositionDefault = static_cast<int32_t>(0x80000000);  // CW_USEDEFAULT

#pragma pack(push, 1)

// Strings are fixed arrays of UTF-16 units with a terminating zero inside the
// array; what follows the terminator is kept as it is and counts for the
// checksum. Flags are one byte, 0 or non-zero.
struct AppSettings {
  uint32_t themeIndex;         // row of the theme table; 6 or more means row 0
  uint32_t editorMode;         // 0 Classic, 1 AI Mod
  int32_t fontSize;            // points
  SettingsChar fontName[64];
  uint8_t fontBold;
  uint8_t fontItalic;
  uint8_t wordWrap;
  uint8_t lineNumbers;
  uint8_t firstRun;            // non-zero only in a record fresh from SetDefaultSettings
  int32_t windowX;             // kWindowPositionDefault: let the system place it
  int32_t windowY;
  int32_t windowWidth;         // outer size in pixels
  int32_t windowHeight;
  uint8_t windowMaximized;
  SettingsChar lastFilePath[260];   // empty for an untitled document
  uint32_t transparencyPercent;  // 0 to 50; 0 is opaque
  uint32_t autoSaveMinutes;      // 0 is off
  uint8_t findMatchCase;
  uint8_t findWholeWord;
  uint8_t findWrapAround;
  uint8_t findPreserveCase;
  uint8_t findInSelection;
  uint8_t findColorResults;
  SettingsChar findHistory[10][256];     // newest first
  SettingsChar replaceHistory[10][256];  // newest first
  int32_t marginLeft;          // hundredths of a millimetre
  int32_t marginTop;
  int32_t marginRight;
  int32_t marginBottom;
  int32_t paperWidth;
  int32_t paperHeight;
  int32_t previewWidth;        // 0: Print Preview never closed
  int32_t previewHeight;
  int32_t helpWidth;
  int32_t helpHeight;
  int32_t helpTopic;           // -1 for none
  uint16_t reserved0;          // written by SetDefaultSettings only; nothing reads these
  uint32_t reserved1;
  uint32_t reserved2;          // stays 4 so that fresh files stay the same
  uint8_t reserved3;
  SettingsChar regexPatternHistory[10][512];  // newest first
  SettingsChar regexReplaceHistory[10][512];
  uint8_t regexMatchCase;
  uint8_t regexWholeWord;
  uint8_t regexPreserveCase;
  uint8_t regexLineNumbers;
  uint32_t regexBatchSize;
  uint32_t regexMaxMatches;    // 0 = unlimited
  uint32_t regexOutputFormat;  // 0 only matches, 1 with line numbers, 2 full lines
  uint8_t regexColorResults;
  uint8_t reserved4;           // written by SetDefaultSettings only
  SettingsChar recentFiles[10][260];  // newest first, no gaps
  uint8_t soundOnKey;
  uint8_t soundOnEnter;
  uint8_t showSplash;
  uint32_t aiProvider;         // 0 Groq, 1 Cloudflare AI, 2 Mistral AI
  SettingsChar accountId[128];      // Cloudflare only
  SettingsChar apiKey[256];         // as typed, plain UTF-16
  SettingsChar modelName[128];
  SettingsChar systemPrompt[1024];
  int32_t temperatureHundredths;
  int32_t maxTokens;
  int32_t aiPanelPercent;      // per cent of the client width
  SettingsChar customEndpoint[256];  // Mistral AI only
  uint8_t keepHistory;
  uint32_t historyLimit;       // exchanges: 0, 5, 10, 20 or 50
  uint32_t typingDelayMs;
  uint8_t typingAnimation;
};

struct SettingsFileHeader {
  char magic[4];
  uint32_t version;
  uint32_t payloadSize;
  uint32_t checksum;
};

#pragma pack(pop)

static_assert(sizeof(SettingsChar) == 2, "settings strings are UTF-16 units");
static_assert(sizeof(SettingsFileHeader) == kSettingsHeaderSize, "header is 16 bytes");
static_assert(sizeof(AppSettings) == kSettingsPayloadSize, "payload is 40302 bytes");
static_assert(kSettingsHeaderSize + kSettingsPayloadSize == kSettingsFileSize, "file is 40318 bytes");

static_assert(offsetof(AppSettings, themeIndex) == 0, "layout");
static_assert(offsetof(AppSettings, editorMode) == 4, "layout");
static_assert(offsetof(AppSettings, fontSize) == 8, "layout");
static_assert(offsetof(AppSettings, fontName) == 12, "layout");
static_assert(offsetof(AppSettings, fontBold) == 140, "layout");
static_assert(offsetof(AppSettings, fontItalic) == 141, "layout");
static_assert(offsetof(AppSettings, wordWrap) == 142, "layout");
static_assert(offsetof(AppSettings, lineNumbers) == 143, "layout");
static_assert(offsetof(AppSettings, firstRun) == 144, "layout");
static_assert(offsetof(AppSettings, windowX) == 145, "layout");
static_assert(offsetof(AppSettings, windowY) == 149, "layout");
static_assert(offsetof(AppSettings, windowWidth) == 153, "layout");
static_assert(offsetof(AppSettings, windowHeight) == 157, "layout");
static_assert(offsetof(AppSettings, windowMaximized) == 161, "layout");
static_assert(offsetof(AppSettings, lastFilePath) == 162, "layout");
static_assert(offsetof(AppSettings, transparencyPercent) == 682, "layout");
static_assert(offsetof(AppSettings, autoSaveMinutes) == 686, "layout");
static_assert(offsetof(AppSettings, findMatchCase) == 690, "layout");
static_assert(offsetof(AppSettings, findWholeWord) == 691, "layout");
static_assert(offsetof(AppSettings, findWrapAround) == 692, "layout");
static_assert(offsetof(AppSettings, findPreserveCase) == 693, "layout");
static_assert(offsetof(AppSettings, findInSelection) == 694, "layout");
static_assert(offsetof(AppSettings, findColorResults) == 695, "layout");
static_assert(offsetof(AppSettings, findHistory) == 696, "layout");
static_assert(offsetof(AppSettings, replaceHistory) == 5816, "layout");
static_assert(offsetof(AppSettings, marginLeft) == 10936, "layout");
static_assert(offsetof(AppSettings, marginTop) == 10940, "layout");
static_assert(offsetof(AppSettings, marginRight) == 10944, "layout");
static_assert(offsetof(AppSettings, marginBottom) == 10948, "layout");
static_assert(offsetof(AppSettings, paperWidth) == 10952, "layout");
static_assert(offsetof(AppSettings, paperHeight) == 10956, "layout");
static_assert(offsetof(AppSettings, previewWidth) == 10960, "layout");
static_assert(offsetof(AppSettings, previewHeight) == 10964, "layout");
static_assert(offsetof(AppSettings, helpWidth) == 10968, "layout");
static_assert(offsetof(AppSettings, helpHeight) == 10972, "layout");
static_assert(offsetof(AppSettings, helpTopic) == 10976, "layout");
static_assert(offsetof(AppSettings, reserved0) == 10980, "layout");
static_assert(offsetof(AppSettings, reserved1) == 10982, "layout");
static_assert(offsetof(AppSettings, reserved2) == 10986, "layout");
static_assert(offsetof(AppSettings, reserved3) == 10990, "layout");
static_assert(offsetof(AppSettings, regexPatternHistory) == 10991, "layout");
static_assert(offsetof(AppSettings, regexReplaceHistory) == 21231, "layout");
static_assert(offsetof(AppSettings, regexMatchCase) == 31471, "layout");
static_assert(offsetof(AppSettings, regexWholeWord) == 31472, "layout");
static_assert(offsetof(AppSettings, regexPreserveCase) == 31473, "layout");
static_assert(offsetof(AppSettings, regexLineNumbers) == 31474, "layout");
static_assert(offsetof(AppSettings, regexBatchSize) == 31475, "layout");
static_assert(offsetof(AppSettings, regexMaxMatches) == 31479, "layout");
static_assert(offsetof(AppSettings, regexOutputFormat) == 31483, "layout");
static_assert(offsetof(AppSettings, regexColorResults) == 31487, "layout");
static_assert(offsetof(AppSettings, reserved4) == 31488, "layout");
static_assert(offsetof(AppSettings, recentFiles) == 31489, "layout");
static_assert(offsetof(AppSettings, soundOnKey) == 36689, "layout");
static_assert(offsetof(AppSettings, soundOnEnter) == 36690, "layout");
static_assert(offsetof(AppSettings, showSplash) == 36691, "layout");
static_assert(offsetof(AppSettings, aiProvider) == 36692, "layout");
static_assert(offsetof(AppSettings, accountId) == 36696, "layout");
static_assert(offsetof(AppSettings, apiKey) == 36952, "layout");
static_assert(offsetof(AppSettings, modelName) == 37464, "layout");
static_assert(offsetof(AppSettings, systemPrompt) == 37720, "layout");
static_assert(offsetof(AppSettings, temperatureHundredths) == 39768, "layout");
static_assert(offsetof(AppSettings, maxTokens) == 39772, "layout");
static_assert(offsetof(AppSettings, aiPanelPercent) == 39776, "layout");
static_assert(offsetof(AppSettings, customEndpoint) == 39780, "layout");
static_assert(offsetof(AppSettings, keepHistory) == 40292, "layout");
static_assert(offsetof(AppSettings, historyLimit) == 40293, "layout");
static_assert(offsetof(AppSettings, typingDelayMs) == 40297, "layout");
static_assert(offsetof(AppSettings, typingAnimation) == 40301, "layout");

enum class SettingsLoadResult { kLoaded, kFileNotFound, kInvalidHeader, kChecksumMismatch };

// 32-bit FNV-1a over the 40302 payload bytes.
uint32_t SettingsChecksum(const void* payload);

// The model of a fresh record and of the AI settings' reset: Groq's.
constexpr wchar_t kDefaultModelName[] = L"llama-3.1-8b-instant";

// A file's bytes into record: the header's magic, version and size, then
// the payload's checksum. On kLoaded the record holds the payload, with any
// string field that has no terminator inside its array cut by one at its
// last unit (the users of a field read up to its terminator); otherwise the
// record is left in an unspecified state for the caller to reset.
SettingsLoadResult ParseSettingsFile(const uint8_t* bytes, size_t size, AppSettings& record);

// Each string field of the record with its capacity in units, for checks.
struct SettingsStringField {
  size_t offset;    // from the start of the record, in bytes
  size_t capacity;  // in units
};
extern const SettingsStringField kSettingsStringFields[];
extern const size_t kSettingsStringFieldCount;
