// The settings file byte for byte: header, defaults at their offsets, the
// checksum, the fallbacks of a load, attributes and the settings mutex.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "settings/data_folders.h"
#include "settings/settings.h"
#include "shell/shell.h"
#include "tests/common/test_folder.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr wchar_t kSystemPrompt[] =
    L"You are Tavro AI, a helpful assistant built into the Tavro text editor. Be concise and precise. "
    L"For code, use appropriate formatting.\n\n"
    L"When asked about the user's PC: report ONLY data from [System Context]. Present it clearly. "
    L"For fields marked 'unknown', say 'not available'. Never add specs from your training knowledge.";

// File offset of a payload offset.
constexpr size_t At(size_t payloadOffset) { return payloadOffset + 16; }

std::unique_ptr<AppSettings> NewRecord(uint8_t fill = 0) {
  auto record = std::make_unique<AppSettings>();
  memset(record.get(), fill, sizeof(AppSettings));
  return record;
}

std::unique_ptr<AppSettings> Defaults() {
  auto record = NewRecord(0x5A);
  SetDefaultSettings(*record);
  return record;
}

bool SameRecord(const AppSettings& a, const AppSettings& b) { return memcmp(&a, &b, sizeof(AppSettings)) == 0; }

Bytes ReadBytes(const std::wstring& path) {
  Bytes bytes;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return bytes;
  LARGE_INTEGER size = {};
  GetFileSizeEx(file, &size);
  bytes.resize(static_cast<size_t>(size.QuadPart));
  DWORD got = 0;
  if (!bytes.empty() && (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr) ||
                         got != bytes.size()))
    bytes.clear();
  CloseHandle(file);
  return bytes;
}

// Replaces the file's content, read-only or not.
bool WriteBytes(const std::wstring& path, const Bytes& bytes) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  bool ok = bytes.empty() ||
            (WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
             written == bytes.size());
  CloseHandle(file);
  return ok;
}

uint32_t U32At(const Bytes& bytes, size_t offset) {
  return bytes[offset] | bytes[offset + 1] << 8 | bytes[offset + 2] << 16 | static_cast<uint32_t>(bytes[offset + 3]) << 24;
}
int32_t I32At(const Bytes& bytes, size_t offset) { return static_cast<int32_t>(U32At(bytes, offset)); }
uint16_t U16At(const Bytes& bytes, size_t offset) { return static_cast<uint16_t>(bytes[offset] | bytes[offset + 1] << 8); }

// The UTF-16 text of a fixed array in the file, up to its terminator.
std::wstring TextAt(const Bytes& bytes, size_t offset, size_t capacity) {
  std::wstring text;
  for (size_t i = 0; i < capacity; ++i) {
    wchar_t unit = static_cast<wchar_t>(U16At(bytes, offset + 2 * i));
    if (!unit) break;
    text += unit;
  }
  return text;
}

// True when every unit of the fixed array in the file is zero.
bool AllZero(const Bytes& bytes, size_t offset, size_t length) {
  for (size_t i = 0; i < length; ++i)
    if (bytes[offset + i]) return false;
  return true;
}

// FNV-1a written out here, over any run of bytes.
uint32_t Fnv1a(const uint8_t* data, size_t length) {
  uint32_t hash = 2166136261u;
  for (size_t i = 0; i < length; ++i) hash = (hash ^ data[i]) * 16777619u;
  return hash;
}

void PutU32(Bytes& bytes, size_t offset, uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

// A file image laid out by hand: header fields as given, then the record.
Bytes FileImage(const AppSettings& record, uint32_t version, uint32_t checksum) {
  Bytes bytes(16 + sizeof(AppSettings));
  memcpy(bytes.data(), "TAVR", 4);
  PutU32(bytes, 4, version);
  PutU32(bytes, 8, 40302);
  PutU32(bytes, 12, checksum);
  memcpy(bytes.data() + 16, &record, sizeof(AppSettings));
  return bytes;
}

DWORD Attributes(const std::wstring& path) { return GetFileAttributesW(path.c_str()); }

// Saves and restores the settings subsystem's process-wide state around a test.
class SettingsStateTest : public testing::Test {
 protected:
  void SetUp() override {
    saved_ = NewRecord();
    *saved_ = g_settings;
    themeIndex_ = g_themeIndex;
    wordWrap_ = g_wordWrap;
    lineNumbers_ = g_lineNumbers;
    fontSize_ = g_fontSize;
    memcpy(fontName_, g_fontName, sizeof(fontName_));
    aiPanelPercent_ = g_aiPanelPercent;
    profileName_ = g_profileName;
  }
  void TearDown() override {
    g_settings = *saved_;
    g_themeIndex = themeIndex_;
    g_wordWrap = wordWrap_;
    g_lineNumbers = lineNumbers_;
    g_fontSize = fontSize_;
    memcpy(g_fontName, fontName_, sizeof(fontName_));
    g_aiPanelPercent = aiPanelPercent_;
    g_profileName = profileName_;
  }

 private:
  std::unique_ptr<AppSettings> saved_;
  uint32_t themeIndex_ = 0;
  bool wordWrap_ = false;
  bool lineNumbers_ = false;
  int fontSize_ = 0;
  wchar_t fontName_[64] = {};
  int aiPanelPercent_ = 0;
  std::wstring profileName_;
};

// Another thread that takes the settings mutex and keeps it until told, or
// ends while holding it so that the mutex is abandoned.
struct MutexHolder {
  HANDLE held = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE release = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  bool abandon = false;
  HANDLE thread = nullptr;

  static DWORD WINAPI Run(void* parameter) {
    auto* self = static_cast<MutexHolder*>(parameter);
    HANDLE mutex = CreateMutexW(nullptr, FALSE, kSettingsMutexName);
    WaitForSingleObject(mutex, INFINITE);
    SetEvent(self->held);
    if (!self->abandon) {
      WaitForSingleObject(self->release, INFINITE);
      ReleaseMutex(mutex);
    }
    CloseHandle(mutex);
    return 0;
  }
  bool Start(bool abandonIt) {
    abandon = abandonIt;
    thread = CreateThread(nullptr, 0, Run, this, 0, nullptr);
    return thread && WaitForSingleObject(held, 5000) == WAIT_OBJECT_0;
  }
  void Finish() {
    SetEvent(release);
    if (thread) WaitForSingleObject(thread, 5000);
  }
  ~MutexHolder() {
    Finish();
    if (thread) CloseHandle(thread);
    CloseHandle(held);
    CloseHandle(release);
  }
};

// --- Log lines -------------------------------------------------------------

TEST(SettingsLogLines, FallbackLinesReadExactly) {
  EXPECT_STREQ(kLogSettingsFileNotFound, L"[LoadSettings] File not found, using defaults\n");
  EXPECT_STREQ(kLogSettingsInvalidHeader, L"[LoadSettings] Invalid header, using defaults\n");
  EXPECT_STREQ(kLogSettingsChecksumMismatch, L"[LoadSettings] Checksum mismatch, using defaults\n");
  EXPECT_STREQ(kSettingsMutexName, L"Local\\Tavro_Settings_Mutex");
  EXPECT_EQ(kSettingsMutexTimeoutMs, 3000u);
}

// --- Checksum ----------------------------------------------------------------

TEST(SettingsChecksum, KnownValues) {
  auto payload = NewRecord();
  // 40302 zero bytes: each step only multiplies, so the hash is the offset
  // basis times the prime to the 40302nd power, worked out by squaring.
  uint32_t power = 1, base = 16777619u;
  for (uint32_t exponent = 40302; exponent; exponent >>= 1, base *= base)
    if (exponent & 1) power *= base;
  EXPECT_EQ(SettingsChecksum(payload.get()), 2166136261u * power);
  EXPECT_EQ(SettingsChecksum(payload.get()), 0x764E69BDu);

  // FNV-1a of "a" alone is 0xE40C292C; the 40301 zeros after it multiply on.
  const uint8_t a = 'a';
  EXPECT_EQ(Fnv1a(&a, 1), 0xE40C292Cu);
  reinterpret_cast<uint8_t*>(payload.get())[0] = 'a';
  EXPECT_EQ(SettingsChecksum(payload.get()), 0x5BCF6304u);
}

TEST(SettingsChecksum, CoversEveryPayloadByteAndNothingElse) {
  auto payload = NewRecord();
  const uint32_t zero = SettingsChecksum(payload.get());
  reinterpret_cast<uint8_t*>(payload.get())[40301] = 1;
  EXPECT_NE(SettingsChecksum(payload.get()), zero);

  // Bytes behind the payload don't count.
  std::vector<uint8_t> longer(40302 + 8, 0);
  const uint32_t before = SettingsChecksum(longer.data());
  longer[40302] = 0xFF;
  EXPECT_EQ(SettingsChecksum(longer.data()), before);
}

// --- Writing: the bytes on disk -----------------------------------------------

TEST(SettingsWrite, FileIs40318BytesWithItsHeader) {
  auto record = Defaults();
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  const Bytes bytes = ReadBytes(path);
  ASSERT_EQ(bytes.size(), 40318u);
  EXPECT_EQ(memcmp(bytes.data(), "TAVR", 4), 0);
  EXPECT_EQ(U32At(bytes, 4), 21u);
  EXPECT_EQ(U32At(bytes, 8), 40302u);
  EXPECT_EQ(U32At(bytes, 12), SettingsChecksum(record.get()));
  EXPECT_EQ(U32At(bytes, 12), Fnv1a(bytes.data() + 16, 40302));
  EXPECT_EQ(memcmp(bytes.data() + 16, record.get(), 40302), 0);
}

TEST(SettingsWrite, EveryDefaultStandsAtItsFileOffset) {
  auto record = Defaults();
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  const Bytes b = ReadBytes(path);
  ASSERT_EQ(b.size(), 40318u);

  EXPECT_EQ(U32At(b, At(0)), 0u);       // themeIndex
  EXPECT_EQ(U32At(b, At(4)), 0u);       // editorMode
  EXPECT_EQ(I32At(b, At(8)), 11);       // fontSize
  EXPECT_EQ(TextAt(b, At(12), 64), L"Consolas");
  EXPECT_EQ(b[At(140)], 0);             // fontBold
  EXPECT_EQ(b[At(141)], 0);             // fontItalic
  EXPECT_EQ(b[At(142)], 1);             // wordWrap
  EXPECT_EQ(b[At(143)], 1);             // lineNumbers
  EXPECT_EQ(b[At(144)], 1);             // firstRun
  EXPECT_EQ(U32At(b, At(145)), 0x80000000u);  // windowX
  EXPECT_EQ(U32At(b, At(149)), 0x80000000u);  // windowY
  EXPECT_EQ(I32At(b, At(153)), 920);    // windowWidth
  EXPECT_EQ(I32At(b, At(157)), 660);    // windowHeight
  EXPECT_EQ(b[At(161)], 0);             // windowMaximized
  EXPECT_TRUE(AllZero(b, At(162), 520));  // lastFilePath
  EXPECT_EQ(U32At(b, At(682)), 0u);     // transparencyPercent
  EXPECT_EQ(U32At(b, At(686)), 0u);     // autoSaveMinutes
  EXPECT_EQ(b[At(690)], 0);             // findMatchCase
  EXPECT_EQ(b[At(691)], 0);             // findWholeWord
  EXPECT_EQ(b[At(692)], 1);             // findWrapAround
  EXPECT_EQ(b[At(693)], 0);             // findPreserveCase
  EXPECT_EQ(b[At(694)], 0);             // findInSelection
  EXPECT_EQ(b[At(695)], 1);             // findColorResults
  EXPECT_TRUE(AllZero(b, At(696), 5120));   // findHistory
  EXPECT_TRUE(AllZero(b, At(5816), 5120));  // replaceHistory
  EXPECT_EQ(I32At(b, At(10936)), 1500);  // marginLeft
  EXPECT_EQ(I32At(b, At(10940)), 1500);  // marginTop
  EXPECT_EQ(I32At(b, At(10944)), 1500);  // marginRight
  EXPECT_EQ(I32At(b, At(10948)), 1500);  // marginBottom
  EXPECT_EQ(I32At(b, At(10952)), 21000);  // paperWidth
  EXPECT_EQ(I32At(b, At(10956)), 29700);  // paperHeight
  EXPECT_EQ(I32At(b, At(10960)), 0);    // previewWidth
  EXPECT_EQ(I32At(b, At(10964)), 0);    // previewHeight
  EXPECT_EQ(I32At(b, At(10968)), 0);    // helpWidth
  EXPECT_EQ(I32At(b, At(10972)), 0);    // helpHeight
  EXPECT_EQ(I32At(b, At(10976)), 0);    // helpTopic
  EXPECT_EQ(U16At(b, At(10980)), 0);    // reserved
  EXPECT_EQ(U32At(b, At(10982)), 0u);   // reserved
  EXPECT_EQ(U32At(b, At(10986)), 4u);   // reserved
  EXPECT_EQ(b[At(10990)], 0);           // reserved
  EXPECT_TRUE(AllZero(b, At(10991), 10240));  // regexPatternHistory
  EXPECT_TRUE(AllZero(b, At(21231), 10240));  // regexReplaceHistory
  EXPECT_EQ(b[At(31471)], 0);           // regexMatchCase
  EXPECT_EQ(b[At(31472)], 0);           // regexWholeWord
  EXPECT_EQ(b[At(31473)], 0);           // regexPreserveCase
  EXPECT_EQ(b[At(31474)], 1);           // regexLineNumbers
  EXPECT_EQ(U32At(b, At(31475)), 300u);   // regexBatchSize
  EXPECT_EQ(U32At(b, At(31479)), 1000u);  // regexMaxMatches
  EXPECT_EQ(U32At(b, At(31483)), 1u);     // regexOutputFormat
  EXPECT_EQ(b[At(31487)], 1);           // regexColorResults
  EXPECT_EQ(b[At(31488)], 1);           // reserved
  EXPECT_TRUE(AllZero(b, At(31489), 5200));  // recentFiles
  EXPECT_EQ(b[At(36689)], 0);           // soundOnKey
  EXPECT_EQ(b[At(36690)], 0);           // soundOnEnter
  EXPECT_EQ(b[At(36691)], 1);           // showSplash
  EXPECT_EQ(U32At(b, At(36692)), 0u);   // aiProvider
  EXPECT_TRUE(AllZero(b, At(36696), 256));  // accountId
  EXPECT_TRUE(AllZero(b, At(36952), 512));  // apiKey
  EXPECT_EQ(TextAt(b, At(37464), 128), L"llama-3.1-8b-instant");
  EXPECT_EQ(TextAt(b, At(37720), 1024), kSystemPrompt);
  EXPECT_EQ(I32At(b, At(39768)), 70);   // temperatureHundredths
  EXPECT_EQ(I32At(b, At(39772)), 2048);  // maxTokens
  EXPECT_EQ(I32At(b, At(39776)), 50);   // aiPanelPercent
  EXPECT_TRUE(AllZero(b, At(39780), 512));  // customEndpoint
  EXPECT_EQ(b[At(40292)], 1);           // keepHistory
  EXPECT_EQ(U32At(b, At(40293)), 20u);  // historyLimit
  EXPECT_EQ(U32At(b, At(40297)), 25u);  // typingDelayMs
  EXPECT_EQ(b[At(40301)], 1);           // typingAnimation

  // Behind the terminators of the default strings everything is zero.
  const size_t fontEnd = At(12) + 2 * wcslen(L"Consolas");
  EXPECT_TRUE(AllZero(b, fontEnd, At(140) - fontEnd));
  const size_t modelEnd = At(37464) + 2 * wcslen(L"llama-3.1-8b-instant");
  EXPECT_TRUE(AllZero(b, modelEnd, At(37720) - modelEnd));
  const size_t promptEnd = At(37720) + 2 * wcslen(kSystemPrompt);
  EXPECT_TRUE(AllZero(b, promptEnd, At(39768) - promptEnd));
}

TEST(SettingsDefaults, SystemPromptIsTwoParagraphs) {
  auto record = Defaults();
  const std::wstring prompt = record->systemPrompt;
  const size_t blank = prompt.find(L"\n\n");
  ASSERT_NE(blank, std::wstring::npos);
  EXPECT_EQ(prompt.substr(0, blank),
            L"You are Tavro AI, a helpful assistant built into the Tavro text editor. Be concise and precise. For "
            L"code, use appropriate formatting.");
  EXPECT_EQ(prompt.substr(blank + 2),
            L"When asked about the user's PC: report ONLY data from [System Context]. Present it clearly. For fields "
            L"marked 'unknown', say 'not available'. Never add specs from your training knowledge.");
}

TEST(SettingsDefaults, DoNotDependOnWhatWasThereBefore) {
  auto fromZero = NewRecord(0x00);
  auto fromJunk = NewRecord(0xAB);
  SetDefaultSettings(*fromZero);
  SetDefaultSettings(*fromJunk);
  EXPECT_TRUE(SameRecord(*fromZero, *fromJunk));
}

TEST(SettingsWrite, BytesBehindATerminatorAreKeptAndCounted) {
  auto record = Defaults();
  // "Arial" over "Consolas" leaves "as" and a terminator behind, and one
  // more unit set by hand further on.
  memcpy(record->fontName, L"Arial", 6 * sizeof(wchar_t));
  record->fontName[40] = 0x1234;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));

  const Bytes bytes = ReadBytes(path);
  ASSERT_EQ(bytes.size(), 40318u);
  EXPECT_EQ(TextAt(bytes, At(12), 64), L"Arial");
  EXPECT_EQ(TextAt(bytes, At(12) + 12, 58), L"as");
  EXPECT_EQ(U16At(bytes, At(12) + 80), 0x1234);

  auto loaded = NewRecord(0xCD);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_TRUE(SameRecord(*loaded, *record));
  EXPECT_EQ(loaded->fontName[40], 0x1234);

  const uint32_t checksum = SettingsChecksum(record.get());
  record->fontName[40] = 0x1235;
  EXPECT_NE(SettingsChecksum(record.get()), checksum);
  record->fontName[40] = 0x1234;
  EXPECT_EQ(SettingsChecksum(record.get()), checksum);
}

// --- Loading -------------------------------------------------------------------

TEST(SettingsLoad, WrittenRecordLoadsAsItWas) {
  auto record = Defaults();
  record->themeIndex = 3;
  record->firstRun = 0;
  record->windowMaximized = 1;
  wcscpy(record->lastFilePath, L"C:\\notes\\today.txt");
  wcscpy(record->recentFiles[9], L"C:\\old.txt");
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_TRUE(SameRecord(*loaded, *record));
}

TEST(SettingsLoad, MissingFileGivesDefaults) {
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(TestPath(L"absent.cfg"), *loaded), SettingsLoadResult::kFileNotFound);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
  EXPECT_EQ(loaded->firstRun, 1);
}

TEST(SettingsLoad, FileOf40317BytesIsAChecksumMismatch) {
  auto record = Defaults();
  record->themeIndex = 2;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  Bytes bytes = ReadBytes(path);
  bytes.resize(40317);
  ASSERT_TRUE(WriteBytes(path, bytes));

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kChecksumMismatch);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
}

TEST(SettingsLoad, WrongChecksumIsAMismatch) {
  auto record = Defaults();
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  Bytes bytes = ReadBytes(path);
  bytes[At(0)] = 4;  // themeIndex changed behind the checksum's back
  ASSERT_TRUE(WriteBytes(path, bytes));

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kChecksumMismatch);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
}

TEST(SettingsLoad, FileOf15BytesHasAnInvalidHeader) {
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *Defaults()));
  Bytes bytes = ReadBytes(path);
  bytes.resize(15);
  ASSERT_TRUE(WriteBytes(path, bytes));

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kInvalidHeader);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
}

TEST(SettingsLoad, EmptyFileHasAnInvalidHeader) {
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteBytes(path, Bytes()));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kInvalidHeader);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
}

TEST(SettingsLoad, OtherVersionsAreInvalidEvenWithTheRightChecksum) {
  auto record = Defaults();
  record->themeIndex = 5;
  const uint32_t checksum = SettingsChecksum(record.get());
  for (uint32_t version : {20u, 22u}) {
    SCOPED_TRACE(version);
    const std::wstring path = TestPath(L"v" + std::to_wstring(version) + L".cfg");
    ASSERT_TRUE(WriteBytes(path, FileImage(*record, version, checksum)));
    auto loaded = NewRecord(0xEE);
    EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kInvalidHeader);
    EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
  }
  // The same image with version 21 is good, so the version alone decided.
  const std::wstring good = TestPath(L"v21.cfg");
  ASSERT_TRUE(WriteBytes(good, FileImage(*record, 21, checksum)));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(good, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 5u);
}

TEST(SettingsLoad, WrongMagicOrSizeIsAnInvalidHeader) {
  auto record = Defaults();
  const uint32_t checksum = SettingsChecksum(record.get());

  Bytes magic = FileImage(*record, 21, checksum);
  magic[3] = 'X';
  const std::wstring magicPath = TestPath(L"magic.cfg");
  ASSERT_TRUE(WriteBytes(magicPath, magic));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(magicPath, *loaded), SettingsLoadResult::kInvalidHeader);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));

  Bytes size = FileImage(*record, 21, checksum);
  PutU32(size, 8, 40301);
  const std::wstring sizePath = TestPath(L"size.cfg");
  ASSERT_TRUE(WriteBytes(sizePath, size));
  loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(sizePath, *loaded), SettingsLoadResult::kInvalidHeader);
  EXPECT_TRUE(SameRecord(*loaded, *Defaults()));
}

TEST(SettingsLoad, TrailingBytesAfterAGoodFileAreNotLookedAt) {
  auto record = Defaults();
  record->fontSize = 14;
  Bytes bytes = FileImage(*record, 21, SettingsChecksum(record.get()));
  bytes.insert(bytes.end(), 1000, 0xFF);
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteBytes(path, bytes));

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_TRUE(SameRecord(*loaded, *record));
}

TEST(SettingsLoad, ThemeIndex99LoadsAsItStands) {
  auto record = Defaults();
  record->themeIndex = 99;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 99u);
}

TEST(SettingsLoad, ApiKeyIsPlainUtf16AndSurvivesSaveLoadAndProviderChange) {
  const std::wstring key = L"gsk_Secret-Key_0123456789";
  auto record = Defaults();
  wcscpy(record->apiKey, key.c_str());
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));

  const Bytes bytes = ReadBytes(path);
  ASSERT_EQ(bytes.size(), 40318u);
  for (size_t i = 0; i < key.size(); ++i) {
    EXPECT_EQ(bytes[At(36952) + 2 * i], static_cast<uint8_t>(key[i]));
    EXPECT_EQ(bytes[At(36952) + 2 * i + 1], 0);
  }
  EXPECT_EQ(U16At(bytes, At(36952) + 2 * key.size()), 0);

  auto loaded = NewRecord(0xEE);
  ASSERT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(std::wstring(loaded->apiKey), key);

  loaded->aiProvider = 2;
  ASSERT_TRUE(WriteSettingsFile(path, *loaded));
  auto again = NewRecord(0xEE);
  ASSERT_EQ(LoadSettingsFile(path, *again), SettingsLoadResult::kLoaded);
  EXPECT_EQ(again->aiProvider, 2u);
  EXPECT_EQ(std::wstring(again->apiKey), key);
}

// --- Attributes and failed writes -------------------------------------------------

TEST(SettingsWrite, FileIsReadOnlyAndASecondWriteKeepsOtherAttributes) {
  auto record = Defaults();
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  DWORD attributes = Attributes(path);
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_READONLY);

  ASSERT_TRUE(SetFileAttributesW(path.c_str(), attributes | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
  record->themeIndex = 4;
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  attributes = Attributes(path);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_ARCHIVE);

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 4u);
}

TEST(SettingsWrite, WriteTruncatesALongerFileInPlace) {
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteBytes(path, Bytes(50000, 0x77)));
  ASSERT_TRUE(WriteSettingsFile(path, *Defaults()));
  EXPECT_EQ(ReadBytes(path).size(), 40318u);
}

TEST(SettingsWrite, FolderOfThatNameCannotBeWritten) {
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
  const DWORD before = Attributes(path);
  EXPECT_FALSE(WriteSettingsFile(path, *Defaults()));
  EXPECT_EQ(Attributes(path), before);
}

TEST(SettingsWrite, FailedOpenLeavesTheOldFileReadOnly) {
  auto record = Defaults();
  record->themeIndex = 1;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  const Bytes before = ReadBytes(path);

  // Held open without sharing, the file can't be opened for writing.
  HANDLE lock = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(lock, INVALID_HANDLE_VALUE);
  record->themeIndex = 2;
  EXPECT_FALSE(WriteSettingsFile(path, *record));
  CloseHandle(lock);

  EXPECT_TRUE(Attributes(path) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(ReadBytes(path), before);
}

TEST(SettingsWrite, UnopenablePathReturnsFalse) {
  EXPECT_FALSE(WriteSettingsFile(TestPath(L"no such folder\\tavro.cfg"), *Defaults()));
}

// --- Process-wide state ---------------------------------------------------------

using SettingsLive = SettingsStateTest;

TEST_F(SettingsLive, TakeLiveSettingsCopiesTheFiveValues) {
  SetDefaultSettings(g_settings);
  g_settings.themeIndex = 3;
  g_settings.wordWrap = 0;
  g_settings.lineNumbers = 0;
  g_settings.fontSize = 17;
  wcscpy(g_settings.fontName, L"Courier New");
  g_settings.aiPanelPercent = 40;
  TakeLiveSettings();
  EXPECT_EQ(g_themeIndex, 3u);
  EXPECT_FALSE(g_wordWrap);
  EXPECT_FALSE(g_lineNumbers);
  EXPECT_EQ(g_fontSize, 17);
  EXPECT_STREQ(g_fontName, L"Courier New");
  EXPECT_EQ(g_aiPanelPercent, 40);

  g_settings.wordWrap = 1;
  g_settings.lineNumbers = 7;  // any non-zero flag is on
  TakeLiveSettings();
  EXPECT_TRUE(g_wordWrap);
  EXPECT_TRUE(g_lineNumbers);
}

TEST_F(SettingsLive, AiPanelPercentOutside20To50BecomesFifty) {
  SetDefaultSettings(g_settings);
  const struct {
    int stored;
    int expected;
  } cases[] = {{25, 25}, {20, 20}, {30, 30}, {50, 50}, {60, 50}, {19, 50}, {51, 50}, {0, 50}, {-5, 50}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    g_settings.aiPanelPercent = c.stored;
    TakeLiveSettings();
    EXPECT_EQ(g_settings.aiPanelPercent, c.expected);
    EXPECT_EQ(g_aiPanelPercent, c.expected);
  }
}

TEST_F(SettingsLive, SaveSettingsToPathWritesTheProcessRecord) {
  SetDefaultSettings(g_settings);
  g_settings.themeIndex = 2;
  wcscpy(g_settings.modelName, L"mistral-small-latest");
  const std::wstring path = TestPath(L"tavro_new.cfg");
  ASSERT_TRUE(SaveSettingsToPath(path));
  EXPECT_TRUE(Attributes(path) & FILE_ATTRIBUTE_READONLY);

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_TRUE(SameRecord(*loaded, g_settings));
}

TEST_F(SettingsLive, SettingsFilePathFollowsTheProfile) {
  const std::wstring app = GetAppDataFolder();
  ASSERT_FALSE(app.empty());
  ASSERT_GE(app.size(), 6u);
  EXPECT_EQ(app.substr(app.size() - 6), L"\\Tavro");
  const DWORD appAttributes = Attributes(app);
  ASSERT_NE(appAttributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(appAttributes & FILE_ATTRIBUTE_DIRECTORY);

  const std::wstring profiles = app + L"\\profiles";
  const bool hadProfiles = Attributes(profiles) != INVALID_FILE_ATTRIBUTES;

  g_profileName = L"";
  EXPECT_EQ(GetSettingsFilePath(), app + L"\\tavro.cfg");
  g_profileName = L"default";
  EXPECT_EQ(GetSettingsFilePath(), app + L"\\tavro.cfg");

  g_profileName = L"work";
  EXPECT_EQ(GetSettingsFilePath(), app + L"\\profiles\\tavro_work.cfg");
  const DWORD profilesAttributes = Attributes(profiles);
  ASSERT_NE(profilesAttributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(profilesAttributes & FILE_ATTRIBUTE_DIRECTORY);

  g_profileName = L"Default";  // the default profile's name is case-sensitive
  EXPECT_EQ(GetSettingsFilePath(), app + L"\\profiles\\tavro_Default.cfg");

  if (!hadProfiles) RemoveDirectoryW(profiles.c_str());
}

// --- The settings mutex -------------------------------------------------------------

TEST(SettingsMutex, SaveWritesWhenTheMutexIsFree) {
  auto record = Defaults();
  record->themeIndex = 5;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(SaveSettingsAt(path, *record));
  ASSERT_TRUE(SaveSettingsAt(path, *record));  // and again: the mutex was released

  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 5u);
}

TEST(SettingsMutex, SaveGivesUpAfterThreeSecondsWhileAnotherHoldsTheMutex) {
  auto record = Defaults();
  record->themeIndex = 1;
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(WriteSettingsFile(path, *record));
  const Bytes before = ReadBytes(path);
  const DWORD attributesBefore = Attributes(path);

  MutexHolder holder;
  ASSERT_TRUE(holder.Start(false));
  record->themeIndex = 2;
  const ULONGLONG start = GetTickCount64();
  const bool saved = SaveSettingsAt(path, *record);
  const ULONGLONG elapsed = GetTickCount64() - start;
  holder.Finish();

  EXPECT_FALSE(saved);
  EXPECT_GE(elapsed, 2900u);
  EXPECT_LT(elapsed, 6000u);
  EXPECT_EQ(ReadBytes(path), before);
  EXPECT_EQ(Attributes(path), attributesBefore);

  // Once the other writer lets go, saves go through again.
  EXPECT_TRUE(SaveSettingsAt(path, *record));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 2u);
}

TEST(SettingsMutex, AbandonedMutexLosesOneSaveOnly) {
  auto record = Defaults();
  const std::wstring path = TestPath(L"tavro.cfg");
  ASSERT_TRUE(SaveSettingsAt(path, *record));  // the process has its handle now
  const Bytes before = ReadBytes(path);

  {
    MutexHolder holder;
    ASSERT_TRUE(holder.Start(true));
    ASSERT_EQ(WaitForSingleObject(holder.thread, 5000), WAIT_OBJECT_0);  // ended holding it
  }
  record->themeIndex = 3;
  EXPECT_FALSE(SaveSettingsAt(path, *record));
  EXPECT_EQ(ReadBytes(path), before);
  EXPECT_TRUE(SaveSettingsAt(path, *record));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(loaded->themeIndex, 3u);
}

}  // namespace

TEST(SettingsLoad, AFieldWithoutTerminatorIsCutAtItsLastUnit) {
  auto record = Defaults();
  for (wchar_t& unit : record->apiKey) unit = L'k';
  for (wchar_t& unit : record->recentFiles[9]) unit = L'r';
  // A well-formed field keeps what follows its terminator.
  wcscpy(record->modelName, L"m");
  record->modelName[127] = L'z';
  const uint32_t checksum = SettingsChecksum(record.get());
  const std::wstring path = TestPath(L"unterminated.cfg");
  ASSERT_TRUE(WriteBytes(path, FileImage(*record, 21, checksum)));
  auto loaded = NewRecord(0xEE);
  EXPECT_EQ(LoadSettingsFile(path, *loaded), SettingsLoadResult::kLoaded);
  EXPECT_EQ(wcsnlen(loaded->apiKey, 256), 255u);
  EXPECT_EQ(loaded->apiKey[254], L'k');
  EXPECT_EQ(wcsnlen(loaded->recentFiles[9], 260), 259u);
  EXPECT_EQ(loaded->modelName[127], L'z');
  EXPECT_EQ(loaded->themeIndex, record->themeIndex);
}

TEST(SettingsLoad, EveryStringFieldIsListedOnce) {
  size_t units = 0;
  for (size_t i = 0; i < kSettingsStringFieldCount; ++i) units += kSettingsStringFields[i].capacity;
  // fontName, lastFilePath, the four histories, recent files, the five AI strings.
  EXPECT_EQ(units, 64u + 260 + 2 * 10 * 256 + 2 * 10 * 512 + 10 * 260 + 128 + 256 + 128 + 1024 + 256);
  EXPECT_EQ(kSettingsStringFields[0].offset, offsetof(AppSettings, fontName));
}
