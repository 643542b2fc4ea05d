// Temp names and the sweeps of old temporary files.
#include "settings/temp_files.h"

#include <cwchar>
#include <vector>

#include "settings/data_folders.h"

namespace {

bool BeginsWith(const std::wstring& text, const std::wstring& head) {
  return text.size() >= head.size() && text.compare(0, head.size(), head) == 0;
}

bool EndsWith(const std::wstring& text, const std::wstring& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool SameIgnoringCase(const wchar_t* a, int aLength, const wchar_t* b) {
  return CompareStringOrdinal(a, aLength, b, -1, TRUE) == CSTR_EQUAL;
}

// The start-up rule: "temp_*" with .html, .pdf or .txt after the last dot,
// all without regard to case.
bool StartupTakes(const std::wstring& name) {
  if (name.size() < 5 || !SameIgnoringCase(name.c_str(), 5, L"temp_")) return false;
  const size_t dot = name.rfind(L'.');
  if (dot == std::wstring::npos) return false;
  const wchar_t* extension = name.c_str() + dot + 1;
  const int length = static_cast<int>(name.size() - dot - 1);
  return SameIgnoringCase(extension, length, L"html") || SameIgnoringCase(extension, length, L"pdf") ||
         SameIgnoringCase(extension, length, L"txt");
}

bool FindTakes(const std::wstring& name) {
  if (BeginsWith(name, L"regex_") && EndsWith(name, L".txt")) return true;
  if (BeginsWith(name, L"temp_") && (EndsWith(name, L".pdf") || EndsWith(name, L".txt"))) return true;
  return BeginsWith(name, L"REG") && name.size() > 7 && EndsWith(name, L".tmp");
}

bool RegexTakes(const std::wstring& name) {
  return (BeginsWith(name, L"regex_") || BeginsWith(name, L"temp_")) && EndsWith(name, L".txt");
}

std::wstring InFolder(const std::wstring& folder, const std::wstring& name) {
  if (!folder.empty() && (folder.back() == L'\\' || folder.back() == L'/')) return folder + name;
  return folder + L"\\" + name;
}

long long FileTimeValue(const FILETIME& time) {
  ULARGE_INTEGER value;
  value.LowPart = time.dwLowDateTime;
  value.HighPart = time.dwHighDateTime;
  return static_cast<long long>(value.QuadPart);
}

FILETIME CurrentFileTime() {
  FILETIME now = {};
  GetSystemTimeAsFileTime(&now);
  return now;
}

std::wstring Padded(unsigned value, int width) {
  std::wstring digits = std::to_wstring(value);
  if (static_cast<int>(digits.size()) < width) digits.insert(0, width - digits.size(), L'0');
  return digits;
}

}  // namespace

long long TempSweepAgeLimit(TempSweep which) {
  return which == TempSweep::Startup ? kStartupSweepAge : kLaterSweepAge;
}

bool TempSweepTakesName(TempSweep which, const std::wstring& name) {
  switch (which) {
    case TempSweep::Startup:
      return StartupTakes(name);
    case TempSweep::Find:
      return FindTakes(name);
    case TempSweep::Regex:
      return RegexTakes(name);
  }
  return false;
}

int SweepTempFolder(const std::wstring& folder, TempSweep which, const FILETIME& now) {
  if (folder.empty()) return 0;
  WIN32_FIND_DATAW entry = {};
  HANDLE search = FindFirstFileW(InFolder(folder, L"*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return 0;
  const long long limit = TempSweepAgeLimit(which);
  const long long nowValue = FileTimeValue(now);
  int deleted = 0;
  do {
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    const std::wstring name = entry.cFileName;
    if (!TempSweepTakesName(which, name)) continue;
    if (nowValue - FileTimeValue(entry.ftLastWriteTime) <= limit) continue;
    if (DeleteFileW(InFolder(folder, name).c_str())) ++deleted;  // a file in use just stays
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  return deleted;
}

int CleanupTempFiles() {
  const std::wstring app = GetAppDataFolder();
  if (app.empty()) return 0;
  return SweepTempFolder(app, TempSweep::Startup, CurrentFileTime());
}

int SweepFindTempFiles() { return SweepTempFolder(GetTempFolder(), TempSweep::Find, CurrentFileTime()); }

int SweepRegexTempFiles() { return SweepTempFolder(GetTempFolder(), TempSweep::Regex, CurrentFileTime()); }

bool TempNameCountsForStem(const std::wstring& name, const std::wstring& stem, const std::wstring& extension) {
  return name.size() > 4 && BeginsWith(name, stem) && EndsWith(name, L"." + extension);
}

std::wstring MakeTempFilePathIn(const std::wstring& tempFolder, const std::wstring& prefix,
                                const std::wstring& extension, const SYSTEMTIME& now) {
  if (tempFolder.empty()) return std::wstring();
  const std::wstring stem =
      prefix + L"_" + Padded(now.wYear, 4) + Padded(now.wMonth, 2) + Padded(now.wDay, 2) + L"_";

  // A failing enumeration just stops the count; the time part keeps names apart.
  unsigned count = 0;
  WIN32_FIND_DATAW entry = {};
  HANDLE search = FindFirstFileW(InFolder(tempFolder, L"*").c_str(), &entry);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
      if (TempNameCountsForStem(entry.cFileName, stem, extension)) ++count;
    } while (FindNextFileW(search, &entry));
    FindClose(search);
  }

  const std::wstring time = Padded(now.wHour, 2) + Padded(now.wMinute, 2) + Padded(now.wSecond, 2);
  return InFolder(tempFolder, stem + time + L"_" + Padded(count + 1, 3) + L"." + extension);
}

std::wstring MakeTempFilePath(const std::wstring& prefix, const std::wstring& extension) {
  const std::wstring folder = GetTempFolder();
  if (folder.empty()) return std::wstring();
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  return MakeTempFilePathIn(folder, prefix, extension, now);
}

std::wstring MakeViewerTempTextPathIn(const std::wstring& tempFolder, const SYSTEMTIME& now) {
  if (tempFolder.empty()) return std::wstring();
  // Laid out as a .pdf name, then given the .txt extension in its place.
  std::vector<wchar_t> buffer(tempFolder.size() + 64);
  const int length = swprintf(buffer.data(), buffer.size(), L"%ls\\temp_%04d%02d%02d_%02d%02d%02d_%03d.pdf",
                              tempFolder.c_str(), now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                              now.wSecond, now.wMilliseconds);
  if (length < 4) return std::wstring();
  std::wstring path(buffer.data(), length);
  path.replace(path.size() - 4, 4, L".txt");
  return path;
}

std::wstring MakeViewerTempTextPath() {
  const std::wstring folder = GetTempFolder();
  if (folder.empty()) return std::wstring();
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  return MakeViewerTempTextPathIn(folder, now);
}
