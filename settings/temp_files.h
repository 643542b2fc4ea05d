// Housekeeping of the program's temporary files: names for new ones in
// <app>\tmp and the three sweeps that remove old ones.
//
// Each public function is a thin wrapper that takes the real folder and the
// real clock and hands them to a core of the same logic over plain data.
#pragma once

#include <windows.h>

#include <string>

// Which sweep runs; they differ in where they look, what they take and how
// old a file must be.
enum class TempSweep {
  Startup,  // <app> itself, "temp_*" .html/.pdf/.txt, older than 1 day
  Find,     // <app>\tmp, regex_*.txt, temp_*.pdf/.txt, REG*.tmp, older than 7 days
  Regex,    // <app>\tmp, regex_*.txt and temp_*.txt, older than 7 days
};

// Age a file must exceed, in units of 100 ns, before the sweep removes it.
constexpr long long kStartupSweepAge = 864000000000LL;   // 1 day
constexpr long long kLaterSweepAge = 6048000000000LL;    // 7 days
long long TempSweepAgeLimit(TempSweep which);

// True when the sweep takes a file of this name (no folder part). The
// start-up sweep compares without regard to case, the other two exactly.
bool TempSweepTakesName(TempSweep which, const std::wstring& name);

// Deletes every regular file directly in folder whose name the sweep takes
// and whose last write lies more than the sweep's age before now.
// Subfolders are neither entered nor removed; files that can't be deleted
// stay; an enumeration error ends the sweep. Returns how many files went.
int SweepTempFolder(const std::wstring& folder, TempSweep which, const FILETIME& now);

// The start-up sweep over <app>. Returns how many files went.
int CleanupTempFiles();
// The sweep at the first opening of the Find and Replace dialog, over <app>\tmp.
int SweepFindTempFiles();
// The sweep at the first opening of the Regex Search dialog, over <app>\tmp.
int SweepRegexTempFiles();

// True when a file of this name counts towards the day's number of a new
// temp name: it begins with stem, ends with "." + extension and is longer
// than 4 characters. Case is exact.
bool TempNameCountsForStem(const std::wstring& name, const std::wstring& stem, const std::wstring& extension);

// A new name in tempFolder: prefix_YYYYMMDD_HHMMSS_NNN.extension, where NNN
// is one more than the regular files already there of the same prefix, day
// and extension, written with at least three digits. Empty for an empty
// folder.
std::wstring MakeTempFilePathIn(const std::wstring& tempFolder, const std::wstring& prefix,
                                const std::wstring& extension, const SYSTEMTIME& now);
// The same in <app>\tmp at the local time; empty when there is no temp folder.
std::wstring MakeTempFilePath(const std::wstring& prefix, const std::wstring& extension);

// The text file a Viewer gets from the Markdown preview:
// tempFolder\temp_YYYYMMDD_HHMMSS_mmm.txt. Empty for an empty folder.
std::wstring MakeViewerTempTextPathIn(const std::wstring& tempFolder, const SYSTEMTIME& now);
// The same in <app>\tmp at the local time; empty when there is no temp folder.
std::wstring MakeViewerTempTextPath();
