// PDF export of 5,000 and 10,000 lines of C++ on the printer named
// "Microsoft Print to PDF" (scripts/bench adds the test printer to its
// prefix): the whole pipeline, from the editor's styled text through the
// batches, the wrapping and the progress dialog to the file. The baseline is
// the same lines drawn with TextOutW on the same printer in the same font,
// a row at a time, with no pipeline. Twice the lines should take at most 2.2
// times as long.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "bench/bench_util.h"
#include "export/pdf_export.h"

namespace {

const char* const kLines[] = {
    "int main(int argc, char** argv) {",
    "    const char* s = \"a <b> & 'c'\";  // a comment of some length, as code has",
    "    if (argc > 1) { return compute(argc, argv, 42) + other_value * 3; }",
    "    /* block comment */ std::vector<std::string> names = {\"one\", \"two\", \"three\"};",
    "}",
};

std::string Document(int lines) {
  std::string text;
  for (int i = 0; i < lines; ++i) text += std::string(kLines[i % 5]) + "\r\n";
  return text;
}

using CreateLexerFn = void*(__stdcall*)(const char*);

HWND MakeEditor(HWND owner) {
  HWND editor = CreateWindowExW(0, L"Scintilla", L"", WS_CHILD, 0, 0, 800, 600, owner, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
  SendMessageW(editor, SCI_SETCODEPAGE, 65001, 0);
  SendMessageW(editor, SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>("Consolas"));
  SendMessageW(editor, SCI_STYLESETSIZE, STYLE_DEFAULT, 11);
  SendMessageW(editor, SCI_STYLECLEARALL, 0, 0);
  // The C++ lexer with a dark theme's colours, some bold and italic.
  HMODULE lexilla = LoadLibraryW((bench::ProgramFolder() + L"lexilla.dll").c_str());
  auto create = lexilla ? reinterpret_cast<CreateLexerFn>(reinterpret_cast<void*>(GetProcAddress(lexilla, "CreateLexer")))
                        : nullptr;
  if (create) {
    SendMessageW(editor, SCI_SETILEXER, 0, reinterpret_cast<LPARAM>(create("cpp")));
    SendMessageW(editor, SCI_SETKEYWORDS, 0, reinterpret_cast<LPARAM>("int char const if return"));
  }
  const COLORREF colours[] = {0xD4D4D4, 0x55996A, 0x55996A, 0x55996A, 0xA8CEB5, 0xD69C56, 0x7891CE, 0x7891CE};
  for (int style = 0; style < 8; ++style) {
    SendMessageW(editor, SCI_STYLESETFORE, style, colours[style]);
    SendMessageW(editor, SCI_STYLESETBOLD, style, style == 5);
    SendMessageW(editor, SCI_STYLESETITALIC, style, style == 2);
  }
  SendMessageW(editor, SCI_STYLESETFORE, 10, 0xB4B4B4);
  return editor;
}

// The pipeline: what ExportPdf does once the path is chosen.
double PipelineMs(HWND owner, HWND editor, const std::wstring& path) {
  const double start = bench::NowMs();
  RunCodePdfExport(owner, editor, path, L"bench.cpp");
  const double elapsed = bench::NowMs() - start;
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  return elapsed;
}

// The baseline: each line a row, drawn plainly, 60 rows a page.
double PlainDrawMs(const std::string& text, const std::wstring& path) {
  const double start = bench::NowMs();
  HDC dc = CreateDCW(L"WINSPOOL", kPdfPrinterName, nullptr, nullptr);
  if (!dc) return -1;
  DOCINFOW info = {};
  info.cbSize = sizeof(info);
  info.lpszDocName = L"bench.cpp";
  info.lpszOutput = path.c_str();
  StartDocW(dc, &info);
  HFONT font = CreateCodeFont(dc, L"Consolas", 11, false, false);
  HGDIOBJ old = SelectObject(dc, font);
  const int32_t row = PdfRowHeight(dc, font);
  size_t at = 0;
  int onPage = 0;
  StartPage(dc);
  while (at < text.size()) {
    size_t end = text.find("\r\n", at);
    if (end == std::string::npos) end = text.size();
    wchar_t wide[256];
    const int units = MultiByteToWideChar(CP_UTF8, 0, text.data() + at, static_cast<int>(end - at), wide, 256);
    if (onPage == 60) {
      EndPage(dc);
      StartPage(dc);
      onPage = 0;
    }
    TextOutW(dc, 240, 240 + onPage * row, wide, units);
    ++onPage;
    at = end + 2;
  }
  EndPage(dc);
  SelectObject(dc, old);
  EndDoc(dc);
  DeleteDC(dc);
  DeleteObject(font);
  return bench::NowMs() - start;
}

long long FileSize(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return -1;
  return (static_cast<long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

struct Figures {
  double pipelineMs, plainMs;
};

Figures Measure(HWND owner, HWND editor, int lines) {
  const std::string text = Document(lines);
  SendMessageW(editor, SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  const std::wstring out = std::wstring(folder) + L"pdf_export_bench.pdf";
  const std::wstring plain = std::wstring(folder) + L"pdf_export_bench_plain.ps";
  std::vector<double> pipeline, baseline;
  long long bytes = 0, plainBytes = 0;
  for (int round = 0; round < 3; ++round) {
    pipeline.push_back(PipelineMs(owner, editor, out));
    bytes = FileSize(out);
    baseline.push_back(PlainDrawMs(text, plain));
    plainBytes = FileSize(plain);
  }
  DeleteFileW(out.c_str());
  DeleteFileW(plain.c_str());
  // The best of the runs: the least disturbed by whatever else the machine does.
  Figures figures = {*std::min_element(pipeline.begin(), pipeline.end()),
                     *std::min_element(baseline.begin(), baseline.end())};
  std::printf("PDF export %6d lines: %9.1f ms (%lld bytes out), plain TextOutW %8.1f ms (%lld bytes), ratio %.2f\n",
              lines, figures.pipelineMs, bytes, figures.plainMs, plainBytes, figures.pipelineMs / figures.plainMs);
  return figures;
}

}  // namespace

int wmain() {
  g_hInstance = GetModuleHandleW(nullptr);
  if (!bench::LoadScintilla()) {
    std::printf("no Scintilla.dll\n");
    return 1;
  }
  HDC probe = CreateDCW(L"WINSPOOL", kPdfPrinterName, nullptr, nullptr);
  if (!probe) {
    std::printf("no printer \"Microsoft Print to PDF\" in this prefix (scripts/bench adds the test printer)\n");
    return 1;
  }
  DeleteDC(probe);
  HWND owner = CreateWindowExW(0, L"STATIC", L"pdf bench", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                               g_hInstance, nullptr);
  HWND editor = MakeEditor(owner);
  g_hwndEditor = editor;
  const Figures small = Measure(owner, editor, 5000);
  const Figures large = Measure(owner, editor, 10000);
  std::printf("twice the lines: %.2fx the time (target <= 2.2x); plain drawing %.2fx\n",
              large.pipelineMs / small.pipelineMs, large.plainMs / small.plainMs);
  DestroyWindow(owner);
  return 0;
}
