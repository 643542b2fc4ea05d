// Helpers shared by the benchmarks: a clock, medians, the folder of the
// shipped program, and running one case in a child process of the same
// benchmark so that each case's peak memory is its own.
#pragma once

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bench {

inline double NowMs() {
  static LARGE_INTEGER frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return static_cast<double>(now.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

// The best of some runs in milliseconds: the least disturbed by whatever else
// the machine does.
inline double BestMs(int runs, const std::function<void()>& run) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    const double start = NowMs();
    run();
    best = std::min(best, NowMs() - start);
  }
  return best;
}

inline double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

inline std::wstring ExeFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring folder = path;
  return folder.substr(0, folder.rfind(L'\\') + 1);
}

// build\bin\, where Tavro.exe and the two DLLs stand; the benchmarks live in
// build\bench\, the bare host one folder deeper.
inline std::wstring ProgramFolder() {
  const std::wstring beside = ExeFolder() + L"..\\bin\\";
  if (GetFileAttributesW((beside + L"Scintilla.dll").c_str()) != INVALID_FILE_ATTRIBUTES) return beside;
  return ExeFolder() + L"..\\..\\bin\\";
}

// Scintilla.dll from the program's folder, its window class registered as
// the program registers it.
inline bool LoadScintilla() {
  HMODULE module = LoadLibraryW((ProgramFolder() + L"Scintilla.dll").c_str());
  if (!module) return false;
  using RegisterClassesFn = int(__stdcall*)(void*);
  auto registerClasses = reinterpret_cast<RegisterClassesFn>(
      reinterpret_cast<void*>(GetProcAddress(module, "Scintilla_RegisterClasses")));
  if (registerClasses) registerClasses(GetModuleHandleW(nullptr));
  return true;
}

struct Memory {
  size_t workingSet = 0;
  size_t peakWorkingSet = 0;
};

inline Memory ProcessMemory() {
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof(counters);
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return {counters.WorkingSetSize, counters.PeakWorkingSetSize};
}

// Runs this executable again with the arguments and returns what it wrote
// to its standard output; empty when it failed.
inline std::string RunChild(const std::wstring& arguments) {
  wchar_t exe[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &inherit, 0)) return {};
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = writeEnd;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  std::wstring commandLine = L"\"" + std::wstring(exe) + L"\" " + arguments;
  PROCESS_INFORMATION process = {};
  const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                      &startup, &process);
  CloseHandle(writeEnd);
  std::string output;
  if (started) {
    char buffer[4096];
    DWORD got = 0;
    while (ReadFile(readEnd, buffer, sizeof(buffer), &got, nullptr) && got > 0) output.append(buffer, got);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process.hProcess, &code);
    if (code != 0) output.clear();
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  }
  CloseHandle(readEnd);
  return output;
}

}  // namespace bench
