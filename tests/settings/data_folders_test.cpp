// Data folders, temp names and the three sweeps. The cores run in the test's
// own folder with a fixed clock; file ages are set on disk as last-write
// times relative to that clock.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/data_folders.h"
#include "settings/temp_files.h"
#include "tests/common/test_folder.h"

namespace {

constexpr long long kSecond = 10000000LL;  // in units of 100 ns
constexpr long long kHour = 3600 * kSecond;
constexpr long long kDay = 24 * kHour;

// The test folder without its closing backslash, as the real folders come.
std::wstring Folder() {
  std::wstring folder = TestFolder();
  if (!folder.empty() && folder.back() == L'\\') folder.pop_back();
  return folder;
}

std::wstring In(const std::wstring& folder, const std::wstring& name) { return folder + L"\\" + name; }

SYSTEMTIME Clock(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD millisecond) {
  SYSTEMTIME time = {};
  time.wYear = year;
  time.wMonth = month;
  time.wDay = day;
  time.wHour = hour;
  time.wMinute = minute;
  time.wSecond = second;
  time.wMilliseconds = millisecond;
  return time;
}

FILETIME ToFileTime(long long value) {
  ULARGE_INTEGER parts;
  parts.QuadPart = static_cast<unsigned long long>(value);
  FILETIME time;
  time.dwLowDateTime = parts.LowPart;
  time.dwHighDateTime = parts.HighPart;
  return time;
}

long long FromFileTime(const FILETIME& time) {
  ULARGE_INTEGER parts;
  parts.LowPart = time.dwLowDateTime;
  parts.HighPart = time.dwHighDateTime;
  return static_cast<long long>(parts.QuadPart);
}

// The injected "now" of the sweeps: 2024-03-15 12:00:00 UTC, a whole second,
// so that ages in whole seconds survive any file system's time resolution.
FILETIME Now() {
  const SYSTEMTIME noon = Clock(2024, 3, 15, 12, 0, 0, 0);
  FILETIME now = {};
  SystemTimeToFileTime(&noon, &now);
  return now;
}

FILETIME Ago(long long age) { return ToFileTime(FromFileTime(Now()) - age); }

bool SetLastWrite(const std::wstring& path, const FILETIME& lastWrite) {
  HANDLE handle = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  const bool done = SetFileTime(handle, nullptr, nullptr, &lastWrite) != FALSE;
  CloseHandle(handle);
  return done;
}

// A small file whose last write lies age before Now().
bool MakeFile(const std::wstring& path, long long age = 0) {
  HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool done = WriteFile(handle, "x", 1, &written, nullptr) && written == 1;
  CloseHandle(handle);
  return done && SetLastWrite(path, Ago(age));
}

bool MakeFolder(const std::wstring& path, long long age = 0) {
  return CreateDirectoryW(path.c_str(), nullptr) && SetLastWrite(path, Ago(age));
}

bool IsFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool EndsWith(const std::wstring& text, const std::wstring& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool BeginsWith(const std::wstring& text, const std::wstring& head) {
  return text.size() >= head.size() && text.compare(0, head.size(), head) == 0;
}

bool AllDigits(const std::wstring& text) {
  if (text.empty()) return false;
  for (wchar_t c : text)
    if (c < L'0' || c > L'9') return false;
  return true;
}

// ---------------------------------------------------------------------------
// Folders

TEST(DataFolders, ProfilesFolderIsCreatedUnderTheAppFolder) {
  const std::wstring profiles = GetProfilesFolder();
  ASSERT_FALSE(profiles.empty());
  EXPECT_TRUE(EndsWith(profiles, L"\\Tavro\\profiles")) << profiles;
  EXPECT_EQ(GetAppDataFolder() + L"\\profiles", profiles);
  EXPECT_TRUE(IsFolder(profiles));
}

TEST(DataFolders, TempFolderIsCreatedUnderTheAppFolder) {
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(temp.empty());
  EXPECT_TRUE(EndsWith(temp, L"\\Tavro\\tmp")) << temp;
  EXPECT_EQ(GetAppDataFolder() + L"\\tmp", temp);
  EXPECT_TRUE(IsFolder(temp));
}

TEST(DataFolders, TempFolderIsMadeAgainWhenItWasRemoved) {
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(temp.empty());
  if (RemoveDirectoryW(temp.c_str())) {  // only when nothing else lies there
    EXPECT_FALSE(IsFolder(temp));
  }
  EXPECT_EQ(temp, GetTempFolder());
  EXPECT_TRUE(IsFolder(temp));
}

// ---------------------------------------------------------------------------
// MakeTempFilePath

const SYSTEMTIME kMorning = Clock(2024, 3, 5, 7, 8, 9, 123);

TEST(TempFilePath, StemDateTimeAndThreeDigitNumber) {
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_001.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
  EXPECT_EQ(In(Folder(), L"temp_txt_20241231_235958_001.txt"),
            MakeTempFilePathIn(Folder(), L"temp_txt", L"txt", Clock(2024, 12, 31, 23, 59, 58, 999)));
  EXPECT_EQ(In(Folder(), L"page_20240101_000000_001.html"),
            MakeTempFilePathIn(Folder(), L"page", L"html", Clock(2024, 1, 1, 0, 0, 0, 0)));
}

TEST(TempFilePath, NoFolderNoName) { EXPECT_EQ(L"", MakeTempFilePathIn(L"", L"regex", L"txt", kMorning)); }

TEST(TempFilePath, FolderWithClosingBackslashGetsNoSecondOne) {
  EXPECT_EQ(TestFolder() + L"regex_20240305_070809_001.txt",
            MakeTempFilePathIn(TestFolder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, SecondNameOfTheDayAfterTheFirstWasWrittenIsOneHigher) {
  const std::wstring first = MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning);
  ASSERT_TRUE(MakeFile(first));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_002.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
  EXPECT_EQ(In(Folder(), L"regex_20240305_154500_002.txt"),
            MakeTempFilePathIn(Folder(), L"regex", L"txt", Clock(2024, 3, 5, 15, 45, 0, 0)));
  // Not written yet: the count stays where it was.
  EXPECT_EQ(In(Folder(), L"regex_20240305_154500_002.txt"),
            MakeTempFilePathIn(Folder(), L"regex", L"txt", Clock(2024, 3, 5, 15, 45, 0, 0)));
}

TEST(TempFilePath, NumberHasAtLeastThreeDigits) {
  for (int i = 1; i <= 9; ++i) ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_000000_" + std::to_wstring(i) + L".txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_010.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
  for (int i = 10; i <= 99; ++i) ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_000000_" + std::to_wstring(i) + L".txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_100.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, NumbersGoPast999WithoutLimit) {
  for (int i = 1; i <= 999; ++i) ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_000000_" + std::to_wstring(i) + L".txt")));
  const std::wstring thousandth = MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning);
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_1000.txt"), thousandth);
  ASSERT_TRUE(MakeFile(thousandth));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_1001.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, OnlyTheSamePrefixDayAndExtensionCount) {
  const std::vector<std::wstring> others = {
      L"regex_20240304_070809_001.txt",  // the day before
      L"regex_20240306_070809_001.txt",  // the day after
      L"regex_20250305_070809_001.txt",  // another year
      L"regex_20240305_070809_001.pdf",  // another extension
      L"regex_20240305_070809_001.txt.bak",
      L"regex_20240305_070809_001.ttxt",
      L"regex_20240305_070809_001txt",  // no dot before the extension
      L"regexx_20240305_070809_001.txt",
      L"xregex_20240305_070809_001.txt",
      L"temp_txt_20240305_070809_001.txt",
      L"REGEX_20240305_070809_001.txt",  // case is exact
      L"regex_20240305_070809_001.TXT",
      L"regex_2024030_070809_001.txt",
  };
  for (const std::wstring& name : others) ASSERT_TRUE(MakeFile(In(Folder(), name))) << name;
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_001.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_002.pdf"), MakeTempFilePathIn(Folder(), L"regex", L"pdf", kMorning));
  EXPECT_EQ(In(Folder(), L"temp_txt_20240305_070809_002.txt"),
            MakeTempFilePathIn(Folder(), L"temp_txt", L"txt", kMorning));
}

TEST(TempFilePath, AnyTextBetweenStemAndExtensionCounts) {
  // The count looks only at the stem and the extension, not at the middle.
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_.txt")));
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_anything at all.txt")));
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_x.y.txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_004.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, FoldersOfAMatchingNameDontCount) {
  // Only regular files count; a folder is not one, whatever its name.
  ASSERT_TRUE(MakeFolder(In(Folder(), L"regex_20240305_070809_001.txt")));
  ASSERT_TRUE(MakeFolder(In(Folder(), L"regex_20240305_070809_002.txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_001.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_20240305_000000_001.txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_002.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, FilesInSubfoldersDontCount) {
  ASSERT_TRUE(MakeFolder(In(Folder(), L"sub")));
  ASSERT_TRUE(MakeFile(In(Folder(), L"sub\\regex_20240305_070809_001.txt")));
  EXPECT_EQ(In(Folder(), L"regex_20240305_070809_001.txt"), MakeTempFilePathIn(Folder(), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, MissingFolderCountsNothing) {
  EXPECT_EQ(In(Folder(), L"gone\\regex_20240305_070809_001.txt"),
            MakeTempFilePathIn(In(Folder(), L"gone"), L"regex", L"txt", kMorning));
}

TEST(TempFilePath, NamesOfFourCharactersOrFewerDontCount) {
  // With a real stem (at least "_YYYYMMDD_") no name that short can match;
  // the rule shows with an empty stem.
  EXPECT_FALSE(TempNameCountsForStem(L".txt", L"", L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L".tx", L"", L"tx"));
  EXPECT_FALSE(TempNameCountsForStem(L"a.tx", L"", L"tx"));
  EXPECT_TRUE(TempNameCountsForStem(L"a.txt", L"", L"txt"));
  EXPECT_TRUE(TempNameCountsForStem(L"ab.tx", L"", L"tx"));
  EXPECT_FALSE(TempNameCountsForStem(L"a.x", L"a", L"x"));
  EXPECT_TRUE(TempNameCountsForStem(L"ab.xy", L"a", L"xy"));
}

TEST(TempFilePath, CountingRuleOnNames) {
  const std::wstring stem = L"regex_20240305_";
  EXPECT_TRUE(TempNameCountsForStem(L"regex_20240305_070809_001.txt", stem, L"txt"));
  EXPECT_TRUE(TempNameCountsForStem(L"regex_20240305_.txt", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"regex_20240305_070809_001.pdf", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"regex_20240305_070809_001txt", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"regex_20240305_070809_001.Txt", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"Regex_20240305_070809_001.txt", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"regex_20240305", stem, L"txt"));
  EXPECT_FALSE(TempNameCountsForStem(L"", stem, L"txt"));
}

TEST(TempFilePath, WrapperNamesAFileInTheTempFolderAtTheLocalDate) {
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(temp.empty());
  SYSTEMTIME before = {};
  GetLocalTime(&before);
  const std::wstring path = MakeTempFilePath(L"unittest_wrapper", L"txt");
  wchar_t date[16] = {};
  swprintf(date, 16, L"%04d%02d%02d", before.wYear, before.wMonth, before.wDay);
  const std::wstring head = temp + L"\\unittest_wrapper_";
  ASSERT_TRUE(BeginsWith(path, head)) << path;
  // date _ HHMMSS _ NNN .txt
  const std::wstring rest = path.substr(head.size());
  ASSERT_GE(rest.size(), 8u + 1 + 6 + 1 + 3 + 4) << rest;
  EXPECT_EQ(std::wstring(date), rest.substr(0, 8));  // a midnight between the two would be very bad luck
  EXPECT_EQ(L'_', rest[8]);
  EXPECT_TRUE(AllDigits(rest.substr(9, 6))) << rest;
  EXPECT_EQ(L'_', rest[15]);
  EXPECT_TRUE(AllDigits(rest.substr(16, rest.size() - 16 - 4))) << rest;
  EXPECT_TRUE(EndsWith(rest, L".txt"));
}

// ---------------------------------------------------------------------------
// The Viewer's text file name

TEST(ViewerTempText, ExactShape) {
  EXPECT_EQ(In(Folder(), L"temp_20240105_070809_045.txt"),
            MakeViewerTempTextPathIn(Folder(), Clock(2024, 1, 5, 7, 8, 9, 45)));
  EXPECT_EQ(In(Folder(), L"temp_20241231_235959_999.txt"),
            MakeViewerTempTextPathIn(Folder(), Clock(2024, 12, 31, 23, 59, 59, 999)));
  EXPECT_EQ(In(Folder(), L"temp_20240101_000000_000.txt"),
            MakeViewerTempTextPathIn(Folder(), Clock(2024, 1, 1, 0, 0, 0, 0)));
}

TEST(ViewerTempText, DoesNotCountExistingFiles) {
  ASSERT_TRUE(MakeFile(In(Folder(), L"temp_20240105_070809_045.txt")));
  EXPECT_EQ(In(Folder(), L"temp_20240105_070809_045.txt"),
            MakeViewerTempTextPathIn(Folder(), Clock(2024, 1, 5, 7, 8, 9, 45)));
}

TEST(ViewerTempText, NoFolderNoName) {
  EXPECT_EQ(L"", MakeViewerTempTextPathIn(L"", Clock(2024, 1, 5, 7, 8, 9, 45)));
}

TEST(ViewerTempText, WrapperNamesAFileInTheTempFolder) {
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(temp.empty());
  const std::wstring path = MakeViewerTempTextPath();
  const std::wstring head = temp + L"\\temp_";
  ASSERT_TRUE(BeginsWith(path, head)) << path;
  const std::wstring rest = path.substr(head.size());  // YYYYMMDD_HHMMSS_mmm.txt
  ASSERT_EQ(23u, rest.size()) << rest;
  EXPECT_TRUE(AllDigits(rest.substr(0, 8)));
  EXPECT_EQ(L'_', rest[8]);
  EXPECT_TRUE(AllDigits(rest.substr(9, 6)));
  EXPECT_EQ(L'_', rest[15]);
  EXPECT_TRUE(AllDigits(rest.substr(16, 3)));
  EXPECT_EQ(L".txt", rest.substr(19));
}

// ---------------------------------------------------------------------------
// Sweep rules on names alone

TEST(TempSweepNames, AgeLimits) {
  EXPECT_EQ(864000000000LL, TempSweepAgeLimit(TempSweep::Startup));
  EXPECT_EQ(6048000000000LL, TempSweepAgeLimit(TempSweep::Find));
  EXPECT_EQ(6048000000000LL, TempSweepAgeLimit(TempSweep::Regex));
}

TEST(TempSweepNames, StartupTakesTempHtmlPdfTxtInAnyCase) {
  for (const wchar_t* name : {L"temp_a.html", L"temp_a.pdf", L"temp_a.txt", L"temp_report.pdf", L"temp_.pdf",
                              L"temp_a.TXT", L"temp_a.Html", L"temp_a.PdF", L"temp_a.b.txt", L"temp_x.tmp.html",
                              L"TEMP_a.pdf", L"Temp_a.txt"})
    EXPECT_TRUE(TempSweepTakesName(TempSweep::Startup, name)) << name;
  for (const wchar_t* name : {L"temp_a.htm", L"temp_a.pdfx", L"temp_a.tx", L"temp_a.txt.bak", L"temp_a",
                              L"temp_a.", L"temp_a.tmp", L"tempa.pdf", L"temp.pdf", L"temp-a.pdf", L"xtemp_a.pdf",
                              L"regex_a.txt", L"REG12345.tmp", L"temp_", L"", L"tavro.cfg", L"temp_a.rtf"})
    EXPECT_FALSE(TempSweepTakesName(TempSweep::Startup, name)) << name;
}

TEST(TempSweepNames, FindTakesRegexTxtTempPdfTxtAndLongRegTmpExactly) {
  for (const wchar_t* name : {L"regex_a.txt", L"regex_20240305_070809_001.txt", L"regex_.txt", L"temp_a.pdf",
                              L"temp_a.txt", L"temp_.txt", L"temp_20240105_070809_045.txt", L"temp_txt_1.txt",
                              L"REG1.tmp", L"REGx.tmp", L"REGabcdef.tmp", L"REG_.tmp", L"REGEX.tmp"})
    EXPECT_TRUE(TempSweepTakesName(TempSweep::Find, name)) << name;
  for (const wchar_t* name :
       {L"regex_a.pdf", L"regex_a.TXT", L"Regex_a.txt", L"REGEX_a.txt", L"regex_a.txt.bak", L"regexa.txt",
        L"temp_a.html", L"temp_x.html", L"temp_a.PDF", L"temp_a.Txt", L"TEMP_a.pdf", L"Temp_a.txt", L"temp_a.tmp",
        L"tempa.txt", L"REG.tmp", L"REG1.TMP", L"reg1.tmp", L"Reg1.tmp", L"REG1.tmpx", L"REG12345.txt", L"REG12345",
        L"xREG1.tmp", L"a.tmp", L"", L"regex_"})
    EXPECT_FALSE(TempSweepTakesName(TempSweep::Find, name)) << name;
}

TEST(TempSweepNames, RegExactlySevenCharactersIsTooShort) {
  EXPECT_FALSE(TempSweepTakesName(TempSweep::Find, L"REG.tmp"));   // 7
  EXPECT_TRUE(TempSweepTakesName(TempSweep::Find, L"REG1.tmp"));   // 8
  EXPECT_TRUE(TempSweepTakesName(TempSweep::Find, L"REG12.tmp"));  // 9
}

TEST(TempSweepNames, RegexTakesRegexAndTempTxtExactly) {
  for (const wchar_t* name : {L"regex_a.txt", L"regex_.txt", L"temp_a.txt", L"temp_.txt",
                              L"temp_20240105_070809_045.txt", L"temp_txt_20240305_070809_001.txt"})
    EXPECT_TRUE(TempSweepTakesName(TempSweep::Regex, name)) << name;
  for (const wchar_t* name : {L"temp_a.pdf", L"temp_x.html", L"regex_a.pdf", L"regex_a.TXT", L"temp_a.Txt",
                              L"Regex_a.txt", L"TEMP_a.txt", L"REG1.tmp", L"REGabcdef.tmp", L"regexa.txt",
                              L"tempa.txt", L"regex_a.txt.bak", L""})
    EXPECT_FALSE(TempSweepTakesName(TempSweep::Regex, name)) << name;
}

TEST(TempSweepNames, TempXHtmlIsTakenByNoLaterSweep) {
  EXPECT_FALSE(TempSweepTakesName(TempSweep::Find, L"temp_x.html"));
  EXPECT_FALSE(TempSweepTakesName(TempSweep::Regex, L"temp_x.html"));
}

// ---------------------------------------------------------------------------
// Sweeps over real files

struct SweepCase {
  TempSweep which;
  const wchar_t* name;  // a name the sweep takes
};

const SweepCase kEachSweep[] = {
    {TempSweep::Startup, L"temp_a.pdf"},
    {TempSweep::Find, L"regex_a.txt"},
    {TempSweep::Regex, L"temp_a.txt"},
};

TEST(TempSweep, EachSweepTakesAFileJustOverItsAgeAndLeavesOneJustUnder) {
  for (const SweepCase& sweep : kEachSweep) {
    SCOPED_TRACE(sweep.name);
    const std::wstring folder = In(Folder(), std::to_wstring(static_cast<int>(sweep.which)));
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    const long long limit = TempSweepAgeLimit(sweep.which);
    const std::wstring name = sweep.name;
    // The name must stay within the rule: put the marker after the prefix.
    const size_t cut = name.find(L'_') + 1;
    const std::wstring overName = name.substr(0, cut) + L"over" + name.substr(cut);
    const std::wstring underName = name.substr(0, cut) + L"under" + name.substr(cut);
    const std::wstring atName = name.substr(0, cut) + L"at" + name.substr(cut);
    ASSERT_TRUE(TempSweepTakesName(sweep.which, overName));
    ASSERT_TRUE(MakeFile(In(folder, overName), limit + kSecond));
    ASSERT_TRUE(MakeFile(In(folder, underName), limit - kSecond));
    ASSERT_TRUE(MakeFile(In(folder, atName), limit));  // exactly the limit is not "more than"
    EXPECT_EQ(1, SweepTempFolder(folder, sweep.which, Now()));
    EXPECT_FALSE(IsFile(In(folder, overName)));
    EXPECT_TRUE(IsFile(In(folder, underName)));
    EXPECT_TRUE(IsFile(In(folder, atName)));
  }
}

TEST(TempSweep, LaterSweepsLeaveFilesOfTwoToSixDays) {
  for (TempSweep which : {TempSweep::Find, TempSweep::Regex}) {
    ASSERT_TRUE(MakeFile(In(Folder(), L"temp_2d.txt"), 2 * kDay));
    ASSERT_TRUE(MakeFile(In(Folder(), L"temp_6d.txt"), 6 * kDay + 23 * kHour));
    EXPECT_EQ(0, SweepTempFolder(Folder(), which, Now()));
    EXPECT_TRUE(IsFile(In(Folder(), L"temp_2d.txt")));
    EXPECT_TRUE(IsFile(In(Folder(), L"temp_6d.txt")));
  }
}

TEST(TempSweep, FilesWrittenAfterNowStay) {
  for (TempSweep which : {TempSweep::Startup, TempSweep::Find, TempSweep::Regex}) {
    ASSERT_TRUE(MakeFile(In(Folder(), L"temp_future.txt"), -30 * kDay));
    EXPECT_EQ(0, SweepTempFolder(Folder(), which, Now()));
    EXPECT_TRUE(IsFile(In(Folder(), L"temp_future.txt")));
  }
}

// Makes every name old enough for any sweep, runs the sweep and checks which
// of them went.
void ExpectSweepTakes(TempSweep which, const std::vector<std::wstring>& taken,
                      const std::vector<std::wstring>& left) {
  const long long old = kLaterSweepAge + kDay;
  for (const std::wstring& name : taken) ASSERT_TRUE(MakeFile(In(Folder(), name), old)) << name;
  for (const std::wstring& name : left) ASSERT_TRUE(MakeFile(In(Folder(), name), old)) << name;
  EXPECT_EQ(static_cast<int>(taken.size()), SweepTempFolder(Folder(), which, Now()));
  for (const std::wstring& name : taken) EXPECT_FALSE(IsFile(In(Folder(), name))) << name << " should have gone";
  for (const std::wstring& name : left) EXPECT_TRUE(IsFile(In(Folder(), name))) << name << " should have stayed";
}

// Names of one case only: the folder sees names without regard to case, so
// "temp_a.pdf" and "temp_a.PDF" can't stand side by side.
TEST(TempSweep, StartupRulesOnFiles) {
  ExpectSweepTakes(TempSweep::Startup,
                   {L"temp_a.html", L"temp_b.pdf", L"temp_c.txt", L"temp_d.HTML", L"temp_e.Pdf", L"temp_f.TXT",
                    L"TEMP_g.pdf", L"temp_h.x.txt", L"temp_.txt"},
                   {L"temp_i.htm", L"temp_j.rtf", L"temp_k.txt.bak", L"temp_l", L"tempn.pdf",
                    L"xtemp_o.pdf", L"regex_p.txt", L"REG12345.tmp", L"tavro.cfg", L"temp_q.tmp"});
}

TEST(TempSweep, FindRulesOnFiles) {
  ExpectSweepTakes(TempSweep::Find,
                   {L"regex_a.txt", L"regex_.txt", L"temp_b.pdf", L"temp_c.txt", L"REG1.tmp", L"REGabcdef.tmp"},
                   {L"regex_d.pdf", L"regex_e.TXT", L"Regex_f.txt", L"temp_g.html", L"temp_h.PDF", L"temp_i.Txt",
                    L"TEMP_j.pdf", L"temp_k.tmp", L"REG.tmp", L"REG2.TMP", L"reg3.tmp", L"REG12345.txt",
                    L"xREG4.tmp", L"regexl.txt", L"tavro.cfg"});
}

TEST(TempSweep, RegexRulesOnFiles) {
  ExpectSweepTakes(TempSweep::Regex, {L"regex_a.txt", L"regex_.txt", L"temp_b.txt", L"temp_.txt"},
                   {L"temp_c.pdf", L"temp_d.html", L"regex_e.pdf", L"regex_f.TXT", L"temp_g.Txt", L"Regex_h.txt",
                    L"TEMP_i.txt", L"REG12345.tmp", L"REG1.tmp", L"regexj.txt", L"tavro.cfg"});
}

TEST(TempSweep, FoldersAreSkippedEvenWhenTheirNamesMatch) {
  const long long old = kLaterSweepAge + kDay;
  const std::vector<std::wstring> names = {L"temp_a.pdf", L"temp_b.txt", L"temp_c.html", L"regex_d.txt",
                                           L"REG12345.tmp"};
  for (const std::wstring& name : names) ASSERT_TRUE(MakeFolder(In(Folder(), name), old)) << name;
  ASSERT_TRUE(MakeFile(In(Folder(), L"temp_b.txt\\temp_inner.txt"), old));
  for (TempSweep which : {TempSweep::Startup, TempSweep::Find, TempSweep::Regex})
    EXPECT_EQ(0, SweepTempFolder(Folder(), which, Now()));
  for (const std::wstring& name : names) EXPECT_TRUE(IsFolder(In(Folder(), name))) << name;
  EXPECT_TRUE(IsFile(In(Folder(), L"temp_b.txt\\temp_inner.txt")));  // not entered either
}

TEST(TempSweep, AFileThatCantBeDeletedStaysAndTheSweepGoesOn) {
  const long long old = kLaterSweepAge + kDay;
  const std::wstring busy = In(Folder(), L"regex_busy.txt");
  ASSERT_TRUE(MakeFile(busy, old));
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_a.txt"), old));
  ASSERT_TRUE(MakeFile(In(Folder(), L"regex_z.txt"), old));
  // Held open without delete sharing.
  HANDLE handle = CreateFileW(busy.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, handle);
  EXPECT_EQ(2, SweepTempFolder(Folder(), TempSweep::Find, Now()));
  EXPECT_TRUE(IsFile(busy));
  EXPECT_FALSE(IsFile(In(Folder(), L"regex_a.txt")));
  EXPECT_FALSE(IsFile(In(Folder(), L"regex_z.txt")));
  CloseHandle(handle);
  EXPECT_EQ(1, SweepTempFolder(Folder(), TempSweep::Find, Now()));
  EXPECT_FALSE(IsFile(busy));
}

TEST(TempSweep, MissingOrEmptyFolderSweepsNothing) {
  for (TempSweep which : {TempSweep::Startup, TempSweep::Find, TempSweep::Regex}) {
    EXPECT_EQ(0, SweepTempFolder(In(Folder(), L"missing"), which, Now()));
    EXPECT_EQ(0, SweepTempFolder(L"", which, Now()));
    EXPECT_EQ(0, SweepTempFolder(Folder(), which, Now()));
  }
}

TEST(TempSweep, FolderWithClosingBackslashWorksToo) {
  ASSERT_TRUE(MakeFile(TestPath(L"temp_a.txt"), kLaterSweepAge + kDay));
  EXPECT_EQ(1, SweepTempFolder(TestFolder(), TempSweep::Regex, Now()));
  EXPECT_FALSE(IsFile(TestPath(L"temp_a.txt")));
}

TEST(TempSweep, TempXHtmlInTheTempFolderOutlivesEverySweep) {
  // The test folder plays <app>; its tmp subfolder plays <app>\tmp.
  const std::wstring app = Folder();
  const std::wstring tmp = In(app, L"tmp");
  ASSERT_TRUE(CreateDirectoryW(tmp.c_str(), nullptr));
  ASSERT_TRUE(MakeFile(In(tmp, L"temp_x.html"), 365 * kDay));
  EXPECT_EQ(0, SweepTempFolder(app, TempSweep::Startup, Now()));
  EXPECT_EQ(0, SweepTempFolder(tmp, TempSweep::Find, Now()));
  EXPECT_EQ(0, SweepTempFolder(tmp, TempSweep::Regex, Now()));
  EXPECT_TRUE(IsFile(In(tmp, L"temp_x.html")));
}

TEST(TempSweep, TempReportPdfInTheAppFolderStaysAt23HoursAndGoesAt25) {
  const std::wstring report = In(Folder(), L"temp_report.pdf");
  ASSERT_TRUE(MakeFile(report, 23 * kHour));
  EXPECT_EQ(0, SweepTempFolder(Folder(), TempSweep::Startup, Now()));
  EXPECT_TRUE(IsFile(report));
  ASSERT_TRUE(SetLastWrite(report, Ago(25 * kHour)));
  EXPECT_EQ(1, SweepTempFolder(Folder(), TempSweep::Startup, Now()));
  EXPECT_FALSE(IsFile(report));
}

TEST(TempSweep, StartupSweepLeavesTheTempSubfolderAlone) {
  const std::wstring app = Folder();
  const std::wstring tmp = In(app, L"tmp");
  ASSERT_TRUE(MakeFolder(tmp, 30 * kDay));
  for (const wchar_t* name : {L"temp_a.txt", L"temp_b.pdf", L"temp_c.html"}) {
    ASSERT_TRUE(MakeFile(In(app, name), 30 * kDay));
    ASSERT_TRUE(MakeFile(In(tmp, name), 30 * kDay));
  }
  EXPECT_EQ(3, SweepTempFolder(app, TempSweep::Startup, Now()));
  EXPECT_TRUE(IsFolder(tmp));
  for (const wchar_t* name : {L"temp_a.txt", L"temp_b.pdf", L"temp_c.html"}) {
    EXPECT_FALSE(IsFile(In(app, name))) << name;
    EXPECT_TRUE(IsFile(In(tmp, name))) << name;
  }
}

TEST(TempSweep, LaterSweepsLookOnlyInsideTheTempFolder) {
  const std::wstring app = Folder();
  const std::wstring tmp = In(app, L"tmp");
  ASSERT_TRUE(CreateDirectoryW(tmp.c_str(), nullptr));
  ASSERT_TRUE(MakeFile(In(app, L"temp_a.txt"), 30 * kDay));
  ASSERT_TRUE(MakeFile(In(tmp, L"temp_a.txt"), 30 * kDay));
  EXPECT_EQ(1, SweepTempFolder(tmp, TempSweep::Regex, Now()));
  EXPECT_TRUE(IsFile(In(app, L"temp_a.txt")));
  EXPECT_FALSE(IsFile(In(tmp, L"temp_a.txt")));
}

// The wrappers run over the real folders with the real clock.

// A file whose last write lies age before the real now.
bool MakeFileAgedFromNow(const std::wstring& path, long long age) {
  if (!MakeFile(path)) return false;
  FILETIME now = {};
  GetSystemTimeAsFileTime(&now);
  return SetLastWrite(path, ToFileTime(FromFileTime(now) - age));
}

TEST(TempSweep, CleanupTempFilesSweepsTheAppFolder) {
  const std::wstring app = GetAppDataFolder();
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(app.empty());
  ASSERT_FALSE(temp.empty());
  ASSERT_TRUE(MakeFileAgedFromNow(In(app, L"temp_unittest_old.pdf"), 25 * kHour));
  ASSERT_TRUE(MakeFileAgedFromNow(In(app, L"temp_unittest_new.pdf"), 23 * kHour));
  ASSERT_TRUE(MakeFileAgedFromNow(In(temp, L"temp_unittest_tmp.pdf"), 30 * kDay));
  EXPECT_GE(CleanupTempFiles(), 1);
  EXPECT_FALSE(IsFile(In(app, L"temp_unittest_old.pdf")));
  EXPECT_TRUE(IsFile(In(app, L"temp_unittest_new.pdf")));
  EXPECT_TRUE(IsFile(In(temp, L"temp_unittest_tmp.pdf")));
  DeleteFileW(In(app, L"temp_unittest_new.pdf").c_str());
  DeleteFileW(In(temp, L"temp_unittest_tmp.pdf").c_str());
}

TEST(TempSweep, FindAndRegexSweepsWorkInTheTempFolder) {
  const std::wstring app = GetAppDataFolder();
  const std::wstring temp = GetTempFolder();
  ASSERT_FALSE(temp.empty());
  const long long old = 8 * kDay;
  ASSERT_TRUE(MakeFileAgedFromNow(In(temp, L"temp_unittest_a.pdf"), old));
  ASSERT_TRUE(MakeFileAgedFromNow(In(temp, L"temp_unittest_b.txt"), old));
  ASSERT_TRUE(MakeFileAgedFromNow(In(temp, L"temp_unittest_c.txt"), 6 * kDay));
  ASSERT_TRUE(MakeFileAgedFromNow(In(app, L"regex_unittest_d.txt"), old));
  EXPECT_GE(SweepRegexTempFiles(), 1);
  EXPECT_TRUE(IsFile(In(temp, L"temp_unittest_a.pdf")));  // not the Regex sweep's
  EXPECT_FALSE(IsFile(In(temp, L"temp_unittest_b.txt")));
  EXPECT_GE(SweepFindTempFiles(), 1);
  EXPECT_FALSE(IsFile(In(temp, L"temp_unittest_a.pdf")));
  EXPECT_TRUE(IsFile(In(temp, L"temp_unittest_c.txt")));
  EXPECT_TRUE(IsFile(In(app, L"regex_unittest_d.txt")));
  DeleteFileW(In(temp, L"temp_unittest_c.txt").c_str());
  DeleteFileW(In(app, L"regex_unittest_d.txt").c_str());
}

}  // namespace
