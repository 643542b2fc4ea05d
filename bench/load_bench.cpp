// FileLoad of 1, 10 and 100 MB files (UTF-8, UTF-8 with a byte order mark,
// UTF-16 LE) against the least any editor must do: one ReadFile of the whole
// file and one SCI_SETTEXT into a Scintilla control. Each case runs in a
// child process of its own, five times, and the medians are compared: the
// time of the load, and the growth of the working set at its peak over the
// working set before it, as a multiple of the file's size.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "bench/bench_util.h"
#include "document/document.h"
#include "presentation/presentation.h"

namespace {

constexpr wchar_t kHostClass[] = L"TavroLoadBenchHost";
constexpr int kRuns = 5;

struct FileCase {
  const wchar_t* name;
  int megabytes;
  int encoding;  // 0 UTF-8, 1 UTF-8 with BOM, 2 UTF-16 LE with BOM
};

constexpr FileCase kCases[] = {
    {L"utf8_1mb.txt", 1, 0},      {L"utf8bom_1mb.txt", 1, 1},      {L"utf16le_1mb.txt", 1, 2},
    {L"utf8_10mb.txt", 10, 0},    {L"utf8bom_10mb.txt", 10, 1},    {L"utf16le_10mb.txt", 10, 2},
    {L"utf8_100mb.txt", 100, 0},  {L"utf8bom_100mb.txt", 100, 1},  {L"utf16le_100mb.txt", 100, 2},
};

const char* kEncodingNames[] = {"UTF-8", "UTF-8 BOM", "UTF-16 LE"};

// A megabyte of ordinary lines, a few of them with letters beyond ASCII.
std::string TextBlock() {
  std::string block;
  int line = 0;
  while (block.size() < (1u << 20)) {
    char row[128];
    std::snprintf(row, sizeof(row), "%07d  The quick brown fox jumps over the lazy dog%s\r\n", line,
                  line % 16 == 0 ? " \xC3\xBC\xC3\xA9 \xE2\x80\x94 na\xC3\xAFve" : "");
    block += row;
    ++line;
  }
  block.resize(1u << 20);
  while (!block.empty() && (static_cast<unsigned char>(block.back()) & 0xC0) == 0x80) block.pop_back();
  if (!block.empty() && static_cast<unsigned char>(block.back()) >= 0xC0) block.pop_back();
  return block;
}

bool WriteCase(const std::wstring& path, const FileCase& c, const std::string& block) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  std::string chunk = block;
  std::string head;
  if (c.encoding == 1) head = "\xEF\xBB\xBF";
  if (c.encoding == 2) {
    // Half the block's lines, so that a chunk of UTF-16 is about a megabyte too.
    head = "\xFF\xFE";
    const std::string half = block.substr(0, block.find("\r\n", block.size() / 2) + 2);
    const int units = MultiByteToWideChar(CP_UTF8, 0, half.data(), static_cast<int>(half.size()), nullptr, 0);
    std::wstring wide(units, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, half.data(), static_cast<int>(half.size()), wide.data(), units);
    chunk.assign(reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t));
  }
  DWORD written = 0;
  bool ok = WriteFile(file, head.data(), static_cast<DWORD>(head.size()), &written, nullptr);
  const size_t target = static_cast<size_t>(c.megabytes) << 20;
  for (size_t total = 0; ok && total + chunk.size() <= target; total += chunk.size())
    ok = WriteFile(file, chunk.data(), static_cast<DWORD>(chunk.size()), &written, nullptr);
  CloseHandle(file);
  return ok;
}

size_t FileSize(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return 0;
  return (static_cast<size_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

// The least a load can be: read the whole file and hand it to the control,
// past a BOM, or converted once when it is UTF-16.
bool BaselineLoad(HWND editor, const wchar_t* path) {
  HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const DWORD size = GetFileSize(file, nullptr);
  std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size) + 1]);
  DWORD read = 0;
  const bool ok = ReadFile(file, bytes.get(), size, &read, nullptr) && read == size;
  CloseHandle(file);
  if (!ok) return false;
  bytes[size] = '\0';
  const char* text = bytes.get();
  if (size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) text += 3;
  if (size >= 2 && std::memcmp(text, "\xFF\xFE", 2) == 0) {
    const wchar_t* units = reinterpret_cast<const wchar_t*>(bytes.get() + 2);
    const int count = static_cast<int>((size - 2) / 2);
    const int length = WideCharToMultiByte(CP_UTF8, 0, units, count, nullptr, 0, nullptr, nullptr);
    std::unique_ptr<char[]> utf8(new char[static_cast<size_t>(length) + 1]);
    WideCharToMultiByte(CP_UTF8, 0, units, count, utf8.get(), length, nullptr, nullptr);
    utf8[length] = '\0';
    bytes.reset();
    SendMessageW(editor, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(utf8.get()));
    return true;
  }
  SendMessageW(editor, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  return true;
}

// One load in this process: "<ms> <peak growth in bytes> <editor length>".
int RunCase(const wchar_t* method, const wchar_t* path) {
  if (!bench::LoadScintilla()) return 2;
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kHostClass;
  RegisterClassW(&windowClass);
  HWND host = CreateWindowExW(0, kHostClass, L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr, nullptr,
                              windowClass.hInstance, nullptr);
  HWND editor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD | WS_VISIBLE, 0, 0, 800, 600, host, nullptr,
                                windowClass.hInstance, nullptr);
  if (!host || !editor) return 3;
  const bool tavro = std::wcscmp(method, L"tavro") == 0;
  if (tavro) {
    g_hInstance = windowClass.hInstance;
    g_hwndMain = host;
    g_hwndEditor = editor;
    SetupEditor();
  } else {
    SendMessageW(editor, SCI_SETCODEPAGE, SC_CP_UTF8, 0);
  }
  const bench::Memory before = bench::ProcessMemory();
  const double start = bench::NowMs();
  const bool ok = tavro ? FileLoad(host, path) : BaselineLoad(editor, path);
  const double elapsed = bench::NowMs() - start;
  const bench::Memory after = bench::ProcessMemory();
  if (!ok) return 4;
  std::printf("%.3f %zu %lld\n", elapsed, after.peakWorkingSet - before.workingSet,
              static_cast<long long>(SendMessageW(editor, SCI_GETLENGTH, 0, 0)));
  return 0;
}

struct Sample {
  double ms = 0;
  double peak = 0;
  long long length = 0;
};

bool Measure(const wchar_t* method, const std::wstring& path, Sample& sample) {
  const std::string out = bench::RunChild(std::wstring(L"--child ") + method + L" \"" + path + L"\"");
  size_t peak = 0;
  return std::sscanf(out.c_str(), "%lf %zu %lld", &sample.ms, &peak, &sample.length) == 3 &&
         (sample.peak = static_cast<double>(peak), true);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc >= 4 && std::wcscmp(argv[1], L"--child") == 0) return RunCase(argv[2], argv[3]);

  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder = std::wstring(temp) + L"tavro_load_bench\\";
  CreateDirectoryW(folder.c_str(), nullptr);
  const std::string block = TextBlock();

  std::printf("FileLoad against ReadFile + SCI_SETTEXT, median of %d runs each, one process per run\n", kRuns);
  std::printf("%-10s %6s %12s %12s %7s %12s %12s\n", "encoding", "MB", "load ms", "baseline ms", "ratio",
              "load peak", "base peak");
  int failures = 0;
  for (const FileCase& c : kCases) {
    const std::wstring path = folder + c.name;
    if (FileSize(path) < (static_cast<size_t>(c.megabytes) << 19) && !WriteCase(path, c, block)) {
      std::printf("cannot write %ls\n", path.c_str());
      return 1;
    }
    const double size = static_cast<double>(FileSize(path));
    std::vector<double> loadMs, baseMs, loadPeak, basePeak;
    for (int run = 0; run < kRuns; ++run) {
      Sample load, base;
      // Alternating, so that neither side always runs on a warmer machine.
      const bool ok = run % 2 ? Measure(L"baseline", path, base) && Measure(L"tavro", path, load)
                              : Measure(L"tavro", path, load) && Measure(L"baseline", path, base);
      if (!ok || load.length != base.length) {
        std::printf("%ls: run %d failed (lengths %lld and %lld)\n", c.name, run, load.length, base.length);
        ++failures;
        continue;
      }
      loadMs.push_back(load.ms);
      baseMs.push_back(base.ms);
      loadPeak.push_back(load.peak / size);
      basePeak.push_back(base.peak / size);
    }
    if (loadMs.empty()) continue;
    const double load = bench::Median(loadMs), base = bench::Median(baseMs);
    std::printf("%-10s %6d %12.1f %12.1f %6.2fx %11.2fx %11.2fx\n", kEncodingNames[c.encoding], c.megabytes, load,
                base, load / base, bench::Median(loadPeak), bench::Median(basePeak));
    std::fflush(stdout);
  }
  std::printf("peak: growth of the working set during the load, as a multiple of the file's size\n");
  return failures ? 1 : 0;
}
