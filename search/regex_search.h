// Regex Search's process-wide session: Find All on a worker thread in
// batches, the results file and session log beside it, the editor's
// indicator 11, and the single steps (Find / Next, Find Prev, Replace,
// Replace All) on the interface thread.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "search/regex_engine.h"

// To the Regex Search dialog from its worker.
constexpr UINT WM_REGEX_PROGRESS = 0x815E;  // wParam 1; lParam heap wchar_t* status text the dialog frees
constexpr UINT WM_REGEX_DONE = 0x815F;      // wParam 0 exhausted, 1 stopped, 2 invalid; lParam the request
constexpr UINT WM_REGEX_MATCHES = 0x8161;   // lParam heap std::vector<RegexMatch>*, sent; the dialog frees

constexpr uint32_t kRegexFoundColour = 0x0000DCFF;     // #FFDC00
constexpr int kRegexFoundAlpha = 70;
constexpr uint32_t kRegexReplacedColour = 0x0064C864;  // #64C864
constexpr int kRegexReplacedAlpha = 80;

// What Find All and Find More hand the worker; the dialog frees it at WM_REGEX_DONE.
struct RegexSearchRequest {
  HWND dialog = nullptr;
  std::wstring pattern;
  std::wstring replacement;
  bool matchCase = false;
  bool wholeWord = false;
  bool preserveCase = false;
  uint64_t batchSize = 300;
  uint64_t maxMatches = 1000;
  bool lineNumbers = true;
  uint32_t outputFormat = 1;
  bool continuation = false;
};

struct RegexSession {
  std::wstring pattern, replacement;
  std::string documentUtf8;
  std::wstring documentWide;
  uint64_t position = 0;
  uint64_t totalMatches = 0;
  bool searching = false;
  std::wstring resultsPath;
  FILE* resultsFile = nullptr;
  bool matchCase = false, wholeWord = false, preserveCase = false;
  uint64_t batchSize = 300, maxMatches = 1000;
  bool lineNumbers = true;
  uint32_t outputFormat = 1;
  bool hasMore = false;
  uint64_t resumePosition = 0;
  BytePositionMemo positionCache;
  LineCursor lines;  // where the line count of the last record stands
  std::vector<RegexMatch> matches;
};

extern RegexSession g_regexSession;
extern std::mutex g_regexSessionLock;
extern std::atomic<bool> g_searchRunning;
extern std::atomic<bool> g_searchCancel;
extern HANDLE g_regexThread;

// The shell installs how a results file reaches a Viewer; without it the
// file opens with the system's own program for it.
using RegexResultsOpener = void (*)(HWND owner, const std::wstring& path);
void SetRegexResultsOpener(RegexResultsOpener opener);

// Find All and Find More.
void StartRegexSearch(HWND dialog, const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                      bool wholeWord, bool preserveCase, bool continuation, uint64_t batchSize, uint64_t maxMatches,
                      bool lineNumbers, uint32_t outputFormat);
// Sets the cancel flag and waits up to 2 s for a running worker, handling
// the batch it may be sending meanwhile; then clears both flags.
void StopRegexSearch();
// True for the request of the latest search; a worker that outlived the
// wait for it reports a request that no longer counts.
bool IsCurrentRegexRequest(const RegexSearchRequest* request);

// Byte position in the session's documentUtf8; call under the lock.
uint64_t SessionBytePosition(int64_t offset);

void ClearRegexIndicator();
void ConfigureRegexIndicator(uint32_t colour, int alpha);
// Marks the records in the editor (empty ones leave no mark); the caller holds the lock.
void HighlightRegexMatches(const std::vector<RegexMatch>& records);

// The log: opened (with its session header) before each single-step entry.
void OpenSessionLog(const std::string& patternUtf8);
// Appends text to the open file and flushes; nothing when it is closed.
void WriteSessionText(const std::string& text);
void CloseResultsFile();
// The Open Results button; returns the status text.
std::wstring OpenRegexResults(HWND dialog);

// Single steps on the editor. Each returns the status text.
std::wstring RegexFindStep(const std::wstring& pattern, bool matchCase, bool wholeWord, bool forward);
std::wstring RegexReplaceSelection(const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                                   bool wholeWord, bool preserveCase);
// Replace All; count is the number of matches replaced (0 when none).
std::wstring RegexReplaceAll(const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                             bool wholeWord, bool preserveCase, size_t& count);
