// Replace All of a short word over a 20 MB document with 1,000,000 hits.
// (a) The scan that builds the new text and the list of replaced ranges,
//     against a baseline that builds the same text with a plain loop over
//     std::wstring::find.
// (b) The whole Replace All in a Scintilla control (fetch, scan, one
//     replacement of the range, and the marks), with "Color results" on and off.
// Each is measured at the size and at twice the size, to show it linear.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/text_convert.h"
#include "bench/bench_util.h"
#include "search/editor_replace.h"
#include "search/find_rules.h"

namespace {

constexpr char kLine[] = "lorem ipsum foo dol\n";  // 20 bytes, one hit
constexpr size_t kLines = 1000000;

std::string Document(size_t lines) {
  std::string text;
  text.reserve(lines * (sizeof(kLine) - 1));
  for (size_t i = 0; i < lines; ++i) text += kLine;
  return text;
}

std::wstring Baseline(const std::wstring& text, const std::wstring& search, const std::wstring& replacement) {
  std::wstring out;
  out.reserve(text.size());
  size_t p = 0;
  for (;;) {
    const size_t hit = text.find(search, p);
    if (hit == std::wstring::npos) break;
    out.append(text, p, hit - p);
    out += replacement;
    p = hit + search.size();
  }
  out.append(text, p, std::wstring::npos);
  return out;
}

struct ScanFigures {
  double baseline, matchCase, folded, wholeWord;
  bool same;
};

ScanFigures MeasureScan(size_t lines) {
  const std::string text = Document(lines);
  const std::wstring wide = Utf8ToWide(text);
  ReplaceAllRequest request;
  request.range = text;
  request.search = "foo";
  request.replacement = "quux";
  ScanFigures f{};
  std::wstring expected;
  f.baseline = bench::BestMs(5, [&] { expected = Baseline(wide, L"foo", L"quux"); });
  ReplaceAllResult result;
  request.matchCase = true;
  f.matchCase = bench::BestMs(5, [&] { result = BuildReplaceAll(request); });
  f.same = result.output == WideToUtf8(expected) && result.count == static_cast<int>(lines);
  request.matchCase = false;
  f.folded = bench::BestMs(5, [&] { result = BuildReplaceAll(request); });
  f.same = f.same && result.output == WideToUtf8(expected);
  request.wholeWord = true;
  f.wholeWord = bench::BestMs(5, [&] { result = BuildReplaceAll(request); });
  f.same = f.same && result.output == WideToUtf8(expected);
  return f;
}

double MeasureEditor(size_t lines, bool colour) {
  const std::string text = Document(lines);
  ReplaceAllOptions options;
  options.search = L"foo";
  options.replacement = L"quux";
  options.colourResults = colour;
  double best = 1e300;
  for (int i = 0; i < 3; ++i) {
    SendEditor(SCI_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendEditor(SCI_EMPTYUNDOBUFFER);
    const double start = bench::NowMs();
    const int count = ReplaceAllInEditor(options, 0, SendEditor(SCI_GETLENGTH));
    best = std::min(best, bench::NowMs() - start);
    if (count != static_cast<int>(lines)) std::printf("  unexpected count %d\n", count);
  }
  return best;
}

bool CreateEditor() {
  wchar_t exe[MAX_PATH];
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  std::wstring folder = exe;
  folder.resize(folder.find_last_of(L'\\') + 1);
  HMODULE scintilla = LoadLibraryW((folder + L"..\\bin\\Scintilla.dll").c_str());
  if (!scintilla) return false;
  using RegisterClassesFn = int(__stdcall*)(void*);
  auto registerClasses = reinterpret_cast<RegisterClassesFn>(
      reinterpret_cast<void*>(GetProcAddress(scintilla, "Scintilla_RegisterClasses")));
  if (registerClasses) registerClasses(GetModuleHandleW(nullptr));
  g_hwndEditor = CreateWindowExW(0, L"Scintilla", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
  if (!g_hwndEditor) return false;
  SendEditor(SCI_SETCODEPAGE, SC_CP_UTF8);
  SendEditor(SCI_SETMODEVENTMASK, SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT);
  return true;
}

}  // namespace

int wmain() {
  std::printf("Replace All of \"foo\" by \"quux\", %zu lines of %zu bytes, one hit a line\n", kLines,
              sizeof(kLine) - 1);
  std::printf("(a) the scan that builds the text, best of 5\n");
  const ScanFigures one = MeasureScan(kLines), two = MeasureScan(2 * kLines);
  for (const auto& [label, f] : {std::pair{"20 MB", one}, std::pair{"40 MB", two}}) {
    std::printf("  %s: baseline wstring::find %.1f ms; match case %.1f ms (%.2fx); folded %.1f ms (%.2fx); "
                "folded, whole word %.1f ms (%.2fx); same text: %s\n",
                label, f.baseline, f.matchCase, f.matchCase / f.baseline, f.folded, f.folded / f.baseline,
                f.wholeWord, f.wholeWord / f.baseline, f.same ? "yes" : "NO");
  }
  std::printf("  twice the document: baseline %.2fx, match case %.2fx, folded %.2fx, whole word %.2fx\n",
              two.baseline / one.baseline, two.matchCase / one.matchCase, two.folded / one.folded,
              two.wholeWord / one.wholeWord);

  if (!CreateEditor()) {
    std::printf("(b) no Scintilla control (error %lu): is bin/Scintilla.dll there?\n", GetLastError());
    return 1;
  }
  std::printf("(b) the whole Replace All in a Scintilla control, best of 3\n");
  for (bool colour : {false, true}) {
    const double a = MeasureEditor(kLines, colour), b = MeasureEditor(2 * kLines, colour);
    std::printf("  Color results %s: 20 MB %.0f ms, 40 MB %.0f ms, twice the document %.2fx\n", colour ? "on " : "off",
                a, b, b / a);
  }
  DestroyWindow(g_hwndEditor);
  return 0;
}
