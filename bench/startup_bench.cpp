// Start-up to the first paint: Tavro.exe against the bare host (a window
// with a Scintilla child and nothing else), each started as a new process,
// timed from just before CreateProcess until its main window is shown and
// painted and, with a file, until the editor holds the whole text and has
// painted it. Median of several runs after one warm-up; an empty document
// and a 2 MB file; Tavro with its splash off and on.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Scintilla.h"
#include "bench/bench_util.h"
#include "settings/settings.h"

namespace {

constexpr int kRuns = 7;
constexpr DWORD kGiveUpMs = 60000;

struct Program {
  const char* name;
  std::wstring exe;
  const wchar_t* windowClass;
};

struct FindMain {
  DWORD processId;
  const wchar_t* windowClass;
  HWND found;
};

BOOL CALLBACK FindMainOf(HWND window, LPARAM data) {
  auto* find = reinterpret_cast<FindMain*>(data);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  wchar_t className[64] = {};
  GetClassNameW(window, className, 64);
  if (processId == find->processId && IsWindowVisible(window) && lstrcmpW(className, find->windowClass) == 0) {
    find->found = window;
    return FALSE;
  }
  return TRUE;
}

HWND EditorOf(HWND main) {
  return FindWindowExW(main, nullptr, L"Scintilla", nullptr);
}

bool Painted(HWND window) { return !GetUpdateRect(window, nullptr, FALSE); }

// Milliseconds from the start until the window is shown and painted (and
// the editor holds expectedLength bytes, when given); negative on failure.
double TimeStart(const Program& program, const std::wstring& file, long long expectedLength) {
  std::wstring commandLine = L"\"" + program.exe + L"\"";
  if (!file.empty()) commandLine += L" \"" + file + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  const std::wstring folder = program.exe.substr(0, program.exe.rfind(L'\\'));
  const double start = bench::NowMs();
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup,
                      &process))
    return -1;
  double elapsed = -1;
  FindMain find = {process.dwProcessId, program.windowClass, nullptr};
  while (bench::NowMs() - start < kGiveUpMs) {
    if (WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0) break;
    if (!find.found) EnumWindows(FindMainOf, reinterpret_cast<LPARAM>(&find));
    HWND editor = find.found ? EditorOf(find.found) : nullptr;
    DWORD_PTR length = 0;
    // Answering a message means the window's thread is in its loop.
    if (editor && SendMessageTimeoutW(editor, SCI_GETLENGTH, 0, 0, SMTO_NORMAL, 1000, &length) &&
        (expectedLength < 0 || static_cast<long long>(length) == expectedLength) && Painted(find.found) &&
        Painted(editor)) {
      elapsed = bench::NowMs() - start;
      break;
    }
    Sleep(1);
  }
  if (find.found) PostMessageW(find.found, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(process.hProcess, 20000) != WAIT_OBJECT_0) TerminateProcess(process.hProcess, 1);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  return elapsed;
}

// The splash flag of the default profile's settings file, which Tavro.exe
// reads at its next start, and no last file to restore, so that an empty
// document stays empty.
void PrepareSettings(bool splash) {
  LoadSettings();
  g_settings.showSplash = splash ? 1 : 0;
  g_settings.lastFilePath[0] = L'\0';
  SaveSettings(g_settings);
}

double MedianStart(const Program& program, const std::wstring& file, long long expectedLength, bool splash,
                   int& failures) {
  std::vector<double> times;
  for (int run = -1; run < kRuns; ++run) {  // run -1 warms caches and makes Tavro's first-run folders
    PrepareSettings(splash);  // before every start: a run leaves its file as the last one
    const double ms = TimeStart(program, file, expectedLength);
    if (run < 0) continue;
    if (ms < 0) ++failures;
    else times.push_back(ms);
  }
  return bench::Median(times);
}

std::wstring WriteTwoMegabytes() {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring path = std::wstring(temp) + L"tavro_startup_2mb.txt";
  std::string text;
  for (int line = 0; text.size() < (2u << 20); ++line) {
    char row[96];
    std::snprintf(row, sizeof(row), "%07d  The quick brown fox jumps over the lazy dog\r\n", line);
    text += row;
  }
  text.resize(2u << 20);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
  return path;
}

}  // namespace

int wmain() {
  const Program tavro = {"Tavro.exe", bench::ProgramFolder() + L"Tavro.exe", L"TavroMainWindow"};
  const Program bare = {"bare host", bench::ExeFolder() + L"host\\bare_host.exe", L"TavroBareHost"};
  const std::wstring file = WriteTwoMegabytes();
  const long long fileLength = 2 << 20;

  std::printf("Start-up to the first paint, median of %d runs after a warm-up\n", kRuns);
  std::printf("%-28s %12s %12s %8s\n", "case", "Tavro ms", "bare ms", "ratio");
  int failures = 0;
  struct Case {
    const char* name;
    bool withFile;
    bool splash;
  };
  for (const Case& c : {Case{"empty document, splash off", false, false}, Case{"empty document, splash on", false, true},
                        Case{"2 MB file, splash off", true, false}, Case{"2 MB file, splash on", true, true}}) {
    const std::wstring path = c.withFile ? file : std::wstring();
    const long long length = c.withFile ? fileLength : -1;
    const double bareMs = MedianStart(bare, path, length, c.splash, failures);
    const double tavroMs = MedianStart(tavro, path, length, c.splash, failures);
    std::printf("%-28s %12.1f %12.1f %7.2fx\n", c.name, tavroMs, bareMs, bareMs > 0 ? tavroMs / bareMs : 0.0);
    std::fflush(stdout);
  }
  PrepareSettings(false);
  if (failures) std::printf("%d runs did not reach their first paint\n", failures);
  return failures ? 1 : 0;
}
