// The worker of Find All, the session's results file and log, and the
// single steps of Regex Search on the editor.
#include "search/regex_search.h"

#include <commctrl.h>
#include <shellapi.h>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/heap_text.h"
#include "base/text_convert.h"
#include "resources/resource_ids.h"
#include "search/regex_results.h"
#include "search/regex_stack.h"
#include "search/search.h"
#include "settings/settings.h"
#include "settings/temp_files.h"

RegexSession g_regexSession;
std::mutex g_regexSessionLock;
std::atomic<bool> g_searchRunning{false};
std::atomic<bool> g_searchCancel{false};
HANDLE g_regexThread = nullptr;

namespace {

RegexResultsOpener g_resultsOpener = nullptr;
const RegexSearchRequest* g_currentRequest = nullptr;
bool g_indicatorConfigured = false;

// Outcomes of a run, as WM_REGEX_DONE's wParam.
constexpr WPARAM kDoneExhausted = 0, kDoneStopped = 1, kDoneInvalid = 2;

std::string NowClock() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return ClockText(now.wHour, now.wMinute, now.wSecond);
}

void PostProgress(HWND dialog, const std::wstring& text) {
  wchar_t* copy = HeapCopyText(text);
  if (copy && !PostMessageW(dialog, WM_REGEX_PROGRESS, 1, reinterpret_cast<LPARAM>(copy))) FreeHeapText(copy);
}

std::string EditorText() {
  const LRESULT length = SendMessageW(g_hwndEditor, SCI_GETLENGTH, 0, 0);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  SendMessageW(g_hwndEditor, SCI_GETTEXT, static_cast<WPARAM>(length) + 1, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

void WriteUnlocked(const std::string& text) {
  if (!g_regexSession.resultsFile) return;
  std::fwrite(text.data(), 1, text.size(), g_regexSession.resultsFile);
  std::fflush(g_regexSession.resultsFile);
}

void CloseFileUnlocked() {
  if (g_regexSession.resultsFile) std::fclose(g_regexSession.resultsFile);
  g_regexSession.resultsFile = nullptr;
}

// The worker's body. Runs on a thread with the large stack.
void RegexSearchThread(RegexSearchRequest* request) {
  HWND dialog = request->dialog;
  if (!request->continuation && g_settings.regexColorResults) ClearRegexIndicator();
  std::string utf8 = EditorText();
  std::wstring wide = Utf8ToWide(utf8);
  if (wide.size() > 0xA00000) PostProgress(dialog, L"Large file detected, searching...");
  const SearchRegex built = BuildSearchRegex(request->pattern, request->matchCase, request->wholeWord);
  if (!built.valid) {
    PostMessageW(dialog, WM_REGEX_DONE, kDoneInvalid, reinterpret_cast<LPARAM>(request));
    return;
  }
  RegexSession& session = g_regexSession;
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    if (request->continuation) {
      if (!session.hasMore) {
        PostMessageW(dialog, WM_REGEX_DONE, kDoneStopped, reinterpret_cast<LPARAM>(request));
        return;
      }
      session.position = session.resumePosition;
      if (!session.resultsFile && !session.resultsPath.empty())
        session.resultsFile = _wfopen(session.resultsPath.c_str(), L"ab");
      session.documentUtf8 = utf8;
      session.documentWide = wide;
      session.positionCache.Clear();
      session.lines = LineCursor{};
    } else {
      CloseFileUnlocked();
      session.pattern = request->pattern;
      session.replacement = request->replacement;
      session.matchCase = request->matchCase;
      session.wholeWord = request->wholeWord;
      session.preserveCase = request->preserveCase;
      session.batchSize = request->batchSize;
      session.maxMatches = request->maxMatches;
      session.lineNumbers = request->lineNumbers;
      session.outputFormat = request->outputFormat;
      session.searching = true;
      session.totalMatches = 0;
      session.documentUtf8 = utf8;
      session.documentWide = wide;
      session.position = 0;
      session.resumePosition = 0;
      session.hasMore = true;
      session.matches.clear();
      session.positionCache.Clear();
      session.lines = LineCursor{};
      session.resultsPath = MakeTempFilePath(L"regex", L"txt");
      if (!session.resultsPath.empty()) session.resultsFile = _wfopen(session.resultsPath.c_str(), L"wb");
      WriteUnlocked(ResultsHeaderText(session.pattern, session.matchCase, session.wholeWord, NowClock()));
    }
  }
  uint64_t total = request->continuation ? session.totalMatches : 0;
  uint64_t run = 0;
  bool exhausted = false, cancelled = false;
  // The batches search this thread's own copy: a worker that outlives the
  // 2 s a new search waits for it must not read a text the new one replaced.
  const uint64_t length = wide.size();
  while (!g_searchCancel.load()) {
    const uint64_t batchSize = session.batchSize, maxMatches = session.maxMatches;
    if (maxMatches != 0 && total >= maxMatches) break;
    if (run >= batchSize) break;
    uint64_t limit = batchSize - run;
    if (maxMatches != 0) limit = std::min(limit, maxMatches - total);
    std::vector<RegexMatch> records;
    {
      // The batch runs outside the lock: a thread that runs out of stack in
      // the engine is abandoned, and must not leave the lock held.
      uint64_t position;
      LineCursor lines;
      {
        std::lock_guard<std::mutex> lock(g_regexSessionLock);
        position = session.position;
        lines = session.lines;
      }
      records = SearchNextBatch(wide, built.regex, position, limit, &g_searchCancel, lines);
      std::lock_guard<std::mutex> lock(g_regexSessionLock);
      session.position = position;
      session.lines = lines;
      if (!records.empty()) {
        session.matches.insert(session.matches.end(), records.begin(), records.end());
        session.resumePosition = position;
      }
    }
    if (records.empty()) {
      exhausted = true;
      break;
    }
    if (g_settings.regexColorResults)
      SendMessageW(dialog, WM_REGEX_MATCHES, 0, reinterpret_cast<LPARAM>(new std::vector<RegexMatch>(records)));
    uint64_t resumeAt = 0;
    {
      std::lock_guard<std::mutex> lock(g_regexSessionLock);
      const uint64_t batch = BatchNumber(total, session.batchSize);
      resumeAt = session.position;
      WriteUnlocked(HitLinesText(records, session.outputFormat, batch));
      total += records.size();
      session.totalMatches = total;
    }
    if (length > 0) PostProgress(dialog, ProgressText(total, resumeAt, length));
    if (g_searchCancel.load()) {
      cancelled = true;
      break;
    }
    run += records.size();
  }
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    if (session.resultsFile) {
      if (exhausted || (session.maxMatches != 0 && total >= session.maxMatches)) {
        WriteUnlocked(ResultsFooterText(NowClock(), total));
        session.hasMore = false;
      }
      CloseFileUnlocked();
    }
    session.searching = false;
    if (exhausted) session.hasMore = false;
  }
  PostMessageW(dialog, WM_REGEX_DONE, exhausted && !cancelled ? kDoneExhausted : kDoneStopped,
               reinterpret_cast<LPARAM>(request));
}

// A run whose engine ran out of stack: the text from there on counts as
// holding no more matches, and the search ends as exhausted, without footer.
void EndOverflowedSearch(RegexSearchRequest* request) {
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    CloseFileUnlocked();
    g_regexSession.searching = false;
    g_regexSession.hasMore = false;
  }
  PostMessageW(request->dialog, WM_REGEX_DONE, kDoneExhausted, reinterpret_cast<LPARAM>(request));
}

}  // namespace

void SetRegexResultsOpener(RegexResultsOpener opener) { g_resultsOpener = opener; }

// Waits for the worker to end, at most timeout ms. Messages the worker
// sends (its batch) are handled meanwhile, or it couldn't end.
void WaitForRegexThread(DWORD timeout) {
  const ULONGLONG deadline = GetTickCount64() + timeout;
  for (;;) {
    const ULONGLONG now = GetTickCount64();
    const DWORD left = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
    const DWORD woken = MsgWaitForMultipleObjects(1, &g_regexThread, FALSE, left, QS_SENDMESSAGE);
    if (woken != WAIT_OBJECT_0 + 1) return;
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

void StopRegexSearch() {
  if (!g_searchRunning.load() && !g_regexThread) return;
  g_searchCancel = true;
  if (g_regexThread) {
    WaitForRegexThread(2000);
    CloseHandle(g_regexThread);
    g_regexThread = nullptr;
  }
  g_searchCancel = false;
  g_searchRunning = false;
}

bool IsCurrentRegexRequest(const RegexSearchRequest* request) { return request == g_currentRequest; }

void StartRegexSearch(HWND dialog, const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                      bool wholeWord, bool preserveCase, bool continuation, uint64_t batchSize, uint64_t maxMatches,
                      bool lineNumbers, uint32_t outputFormat) {
  if (g_searchRunning.load()) StopRegexSearch();
  HWND bar = GetDlgItem(dialog, IDC_REGEX_PROGRESS);
  SendMessageW(bar, PBM_SETRANGE32, 0, 100);
  SendMessageW(bar, PBM_SETPOS, 0, 0);
  ShowWindow(bar, SW_SHOW);
  EnableWindow(GetDlgItem(dialog, IDC_REGEX_FIND_NEXT), FALSE);
  EnableWindow(GetDlgItem(dialog, IDC_REGEX_CANCEL), TRUE);
  SetDlgItemTextW(dialog, IDC_REGEX_STATUS, L"Searching...");
  auto* request = new RegexSearchRequest;
  request->dialog = dialog;
  request->pattern = pattern;
  request->replacement = replacement;
  request->matchCase = matchCase;
  request->wholeWord = wholeWord;
  request->preserveCase = preserveCase;
  request->batchSize = batchSize;
  request->maxMatches = maxMatches;
  request->lineNumbers = lineNumbers;
  request->outputFormat = outputFormat;
  request->continuation = continuation;
  g_searchCancel = false;
  g_searchRunning = true;
  g_currentRequest = request;
  if (g_regexThread) CloseHandle(g_regexThread);
  g_regexThread = StartRegexThread([request]() { RegexSearchThread(request); },
                                   [request]() { EndOverflowedSearch(request); });
  if (g_regexThread) {
    SetThreadPriority(g_regexThread, THREAD_PRIORITY_BELOW_NORMAL);
    return;
  }
  delete request;
  g_currentRequest = nullptr;
  g_searchRunning = false;
  SetDlgItemTextW(dialog, IDC_REGEX_STATUS, L"Failed to start search thread.");
  for (int id : {IDC_REGEX_FIND_NEXT, IDC_REGEX_REPLACE, IDC_REGEX_REPLACE_ALL}) EnableWindow(GetDlgItem(dialog, id), TRUE);
  EnableWindow(GetDlgItem(dialog, IDC_REGEX_CANCEL), FALSE);
}

uint64_t SessionBytePosition(int64_t offset) {
  return BytePositionOfWide(g_regexSession.documentWide, g_regexSession.documentUtf8.size(),
                            g_regexSession.positionCache, offset);
}

void ClearRegexIndicator() {
  if (!g_hwndEditor) return;
  SendMessageW(g_hwndEditor, SCI_SETINDICATORCURRENT, kIndicatorRegex, 0);
  SendMessageW(g_hwndEditor, SCI_INDICATORCLEARRANGE, 0, SendMessageW(g_hwndEditor, SCI_GETLENGTH, 0, 0));
  g_indicatorConfigured = false;
}

void ConfigureRegexIndicator(uint32_t colour, int alpha) {
  SendMessageW(g_hwndEditor, SCI_INDICSETSTYLE, kIndicatorRegex, INDIC_ROUNDBOX);
  SendMessageW(g_hwndEditor, SCI_INDICSETFORE, kIndicatorRegex, colour);
  SendMessageW(g_hwndEditor, SCI_INDICSETALPHA, kIndicatorRegex, alpha);
  SendMessageW(g_hwndEditor, SCI_INDICSETUNDER, kIndicatorRegex, 1);
}

void HighlightRegexMatches(const std::vector<RegexMatch>& records) {
  if (!g_settings.regexColorResults || g_regexSession.documentUtf8.empty() || g_regexSession.documentWide.empty())
    return;
  if (!g_indicatorConfigured) {
    ConfigureRegexIndicator(kRegexFoundColour, kRegexFoundAlpha);
    g_indicatorConfigured = true;
  }
  SendMessageW(g_hwndEditor, SCI_SETINDICATORCURRENT, kIndicatorRegex, 0);
  for (const RegexMatch& record : records) {
    const uint64_t start = SessionBytePosition(record.start), end = SessionBytePosition(record.end);
    if (start < end) SendMessageW(g_hwndEditor, SCI_INDICATORFILLRANGE, start, static_cast<LPARAM>(end - start));
  }
}

void OpenSessionLog(const std::string& patternUtf8) {
  std::lock_guard<std::mutex> lock(g_regexSessionLock);
  if (g_regexSession.resultsPath.empty()) g_regexSession.resultsPath = MakeTempFilePath(L"regex", L"txt");
  if (!g_regexSession.resultsFile && !g_regexSession.resultsPath.empty()) {
    g_regexSession.resultsFile = _wfopen(g_regexSession.resultsPath.c_str(), L"ab");
    if (g_regexSession.resultsFile && !patternUtf8.empty()) WriteUnlocked(SessionHeaderText(patternUtf8));
  }
}

void WriteSessionText(const std::string& text) {
  std::lock_guard<std::mutex> lock(g_regexSessionLock);
  WriteUnlocked(text);
}

void CloseResultsFile() {
  std::lock_guard<std::mutex> lock(g_regexSessionLock);
  CloseFileUnlocked();
}

std::wstring OpenRegexResults(HWND dialog) {
  std::wstring path;
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    CloseFileUnlocked();
    path = g_regexSession.resultsPath;
  }
  if (path.empty() || GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return L"No results file to open.";
  if (g_resultsOpener) {
    g_resultsOpener(GetParent(dialog) ? GetParent(dialog) : dialog, path);
    return L"Results opened in Tavro Viewer (will close with main window).";
  }
  ShellExecuteW(dialog, L"open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return L"Results opened.";
}

// -- single steps -------------------------------------------------------------

namespace {

void ShowFoundRange(uint64_t start, uint64_t end) {
  SendEditor(SCI_SETSEL, start, end);
  SendEditor(SCI_SCROLLCARET);
  if (g_settings.regexColorResults) {
    ClearRegexIndicator();
    ConfigureRegexIndicator(kRegexFoundColour, kRegexFoundAlpha);
    SendEditor(SCI_SETINDICATORCURRENT, kIndicatorRegex);
    SendEditor(SCI_INDICATORFILLRANGE, start, static_cast<LPARAM>(end - start));
  }
}

// The last match of the iterator over text, if any.
bool LastMatch(const std::wstring& text, const std::wregex& regex, int64_t& start, int64_t& end) {
  bool found = false;
  for (std::wsregex_iterator it(text.begin(), text.end(), regex), stop; it != stop; ++it) {
    start = it->position(0);
    end = start + it->length(0);
    found = true;
  }
  return found;
}

}  // namespace

std::wstring RegexFindStep(const std::wstring& pattern, bool matchCase, bool wholeWord, bool forward) {
  const std::string utf8 = EditorText();
  const std::wstring wide = Utf8ToWide(utf8);
  int64_t start = -1, end = -1;
  bool found = false;
  const uint64_t caret = static_cast<uint64_t>(SendEditor(forward ? SCI_GETCURRENTPOS : SCI_GETANCHOR));
  const bool ran = RunOnRegexStack([&]() {
    try {
      const SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
      if (!built.valid) return;
      const size_t c = static_cast<size_t>(WideUnitsOfBytes(utf8, caret));
      if (forward) {
        std::wsmatch m;
        if (std::regex_search(wide.begin() + static_cast<std::ptrdiff_t>(c), wide.end(), m, built.regex)) {
          start = static_cast<int64_t>(c) + m.position(0);
        } else if (std::regex_search(wide.begin(), wide.end(), m, built.regex)) {
          start = m.position(0);
        } else {
          return;
        }
        end = start + m.length(0);
        found = true;
      } else {
        found = c > 0 && LastMatch(wide.substr(0, c), built.regex, start, end);
        if (!found) found = LastMatch(wide, built.regex, start, end);
      }
    } catch (const std::regex_error&) {
      found = false;
    }
  });
  if (!ran || !found) return L"No match found.";
  const uint64_t byteStart = Utf8LengthOfUnits(wide, 0, static_cast<size_t>(start));
  const uint64_t byteEnd = byteStart + Utf8LengthOfUnits(wide, static_cast<size_t>(start), static_cast<size_t>(end));
  ShowFoundRange(byteStart, byteEnd);
  const std::wstring matched = wide.substr(static_cast<size_t>(start), static_cast<size_t>(end - start));
  OpenSessionLog(WideToUtf8(pattern));
  const int64_t line = SendEditor(SCI_LINEFROMPOSITION, byteStart) + 1;
  WriteSessionText(FindEntryText(forward ? "[FIND]" : "[FIND PREV]", NowClock(), line,
                                 static_cast<int64_t>(byteStart), matched));
  return L"Found: \"" + matched + L"\" at position " + std::to_wstring(start);
}

std::wstring RegexReplaceSelection(const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                                   bool wholeWord, bool preserveCase) {
  const int64_t selectionStart = SendEditor(SCI_GETSELECTIONSTART), selectionEnd = SendEditor(SCI_GETSELECTIONEND);
  if (selectionStart == selectionEnd) return L"No selection. Use Find/Next first.";
  const std::string utf8 = EditorText();
  const std::wstring selected = Utf8ToWide(utf8.substr(static_cast<size_t>(selectionStart),
                                                       static_cast<size_t>(selectionEnd - selectionStart)));
  uint64_t targetStart = 0, targetEnd = 0;
  std::wstring newText;
  bool matched = false;
  RunOnRegexStack([&]() {
    try {
      std::wstring result;
      RegexMatch match;
      if (ReplaceOneMatch(selected, pattern, replacement, matchCase, wholeWord, preserveCase, result, match) &&
          match.start == 0 && static_cast<size_t>(match.end) == selected.size()) {
        targetStart = static_cast<uint64_t>(selectionStart);
        targetEnd = static_cast<uint64_t>(selectionEnd);
        newText = result;
        matched = true;
        return;
      }
      // Lookaround and boundaries may need the text around the selection.
      const std::wstring tail = Utf8ToWide(utf8.substr(static_cast<size_t>(selectionStart)));
      if (!ReplaceOneMatch(tail, pattern, replacement, matchCase, wholeWord, preserveCase, result, match)) return;
      targetStart = static_cast<uint64_t>(selectionStart) + Utf8LengthOfUnits(tail, 0, static_cast<size_t>(match.start));
      targetEnd = targetStart + Utf8LengthOfUnits(tail, static_cast<size_t>(match.start), static_cast<size_t>(match.end));
      const size_t expansionLength = result.size() - (tail.size() - static_cast<size_t>(match.end - match.start));
      newText = result.substr(static_cast<size_t>(match.start), expansionLength);
      matched = true;
    } catch (const std::regex_error&) {
      matched = false;
    }
  });
  if (!matched) return L"Selection does not match pattern.";
  const std::string newUtf8 = WideToUtf8(newText);
  SendEditor(SCI_BEGINUNDOACTION);
  SendEditor(SCI_SETTARGETSTART, targetStart);
  SendEditor(SCI_SETTARGETEND, targetEnd);
  SendEditor(SCI_REPLACETARGET, newUtf8.size(), reinterpret_cast<LPARAM>(newUtf8.c_str()));
  SendEditor(SCI_ENDUNDOACTION);
  SendEditor(SCI_SETSEL, targetStart, targetStart + newUtf8.size());
  SendEditor(SCI_SCROLLCARET);
  if (g_settings.regexColorResults) {
    ClearRegexIndicator();
    ConfigureRegexIndicator(kRegexReplacedColour, kRegexReplacedAlpha);
    SendEditor(SCI_SETINDICATORCURRENT, kIndicatorRegex);
    SendEditor(SCI_INDICATORFILLRANGE, targetStart, static_cast<LPARAM>(newUtf8.size()));
  }
  // The edit's change notice marks the document modified and refreshes the
  // title and the toolbar.
  OpenSessionLog(WideToUtf8(pattern));
  WriteSessionText(ReplaceEntryText(NowClock(), selected, replacement));
  return L"Replaced: \"" + selected + L"\" \x2192 \"" + replacement + L"\"";
}

std::wstring RegexReplaceAll(const std::wstring& pattern, const std::wstring& replacement, bool matchCase,
                             bool wholeWord, bool preserveCase, size_t& count) {
  count = 0;
  if (pattern.empty()) return L"Please enter a pattern.";
  const std::wstring wide = Utf8ToWide(EditorText());
  std::wstring rewritten;
  const bool ran = RunOnRegexStack([&]() {
    try {
      const SearchRegex built = BuildSearchRegex(pattern, matchCase, wholeWord);
      if (!built.valid) return;
      count = CountMatches(wide, built.regex);
      if (count > 0) rewritten = ReplaceAllMatches(wide, pattern, replacement, matchCase, wholeWord, preserveCase);
    } catch (const std::regex_error&) {
      count = 0;
    }
  });
  if (!ran || count == 0) {
    count = 0;
    return L"No matches found to replace.";
  }
  const std::string utf8 = WideToUtf8(rewritten);
  SendEditor(SCI_BEGINUNDOACTION);
  SendEditor(SCI_SETREADONLY, 0);
  SendEditor(SCI_CLEARALL);
  SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(utf8.c_str()));
  SendEditor(SCI_EMPTYUNDOBUFFER);
  SendEditor(SCI_GOTOPOS, 0);
  SendEditor(SCI_ENDUNDOACTION);
  OpenSessionLog(WideToUtf8(pattern));
  WriteSessionText(ReplaceAllEntryText(NowClock(), count, pattern, replacement));
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    g_regexSession.matches.clear();
    g_regexSession.totalMatches = 0;
  }
  ClearRegexIndicator();
  return L"Replaced " + std::to_wstring(count) + L" occurrence(s).";
}
