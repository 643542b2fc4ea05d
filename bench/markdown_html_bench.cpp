// Markdown to HTML of a 30,000-line document and of one twice as long,
// against the baseline of copying the same text into an HTML-escaped buffer.
// The page should grow with the lines: twice the lines, at most 2.2 times
// the time.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "bench/bench_util.h"

#include "export/markdown_html.h"

namespace {

// Every kind of line, with inline markers, escapes and a tab in between.
std::wstring Document(int lines) {
  static const wchar_t* const kLines[] = {
      L"# A heading with **bold** words",
      L"Some prose with *emphasis*, `code & more` and a <tag> in it.",
      L"- a list item with snake_case and __underscores__",
      L"- another item",
      L"1. numbered, \"quoted\" and 'single'",
      L"2. second\twith a tab",
      L"> a quote of some length, to be escaped: a < b > c & d",
      L"",
      L"---",
      L"### smaller heading ***crossed** markers*",
  };
  std::wstring text;
  for (int i = 0; i < lines; ++i) {
    text += kLines[i % 10];
    text += L"\r\n";
  }
  return text;
}

struct Figures {
  double pageMs, baselineMs;
  size_t bytes;
};

Figures Measure(int lines) {
  const std::wstring text = Document(lines);
  MarkdownPageStyle style;
  style.title = "bench.md";
  style.fontFamily = L"Segoe UI";
  size_t bytes = 0;
  double pageMs = bench::BestMs(7, [&] { bytes = BuildMarkdownHtmlPage(text, style).size(); });
  size_t escaped = 0;
  double baselineMs = bench::BestMs(7, [&] { escaped = EscapeHtml(text).size(); });
  std::printf("%6d lines, %8zu characters: page %8.2f ms (%zu bytes), escaped copy %8.2f ms (%zu bytes), ratio %.2f\n",
              lines, text.size(), pageMs, bytes, baselineMs, escaped, pageMs / baselineMs);
  return {pageMs, baselineMs, bytes};
}

}  // namespace

int wmain() {
  Figures single = Measure(30000);
  Figures twice = Measure(60000);
  std::printf("twice the lines: page %.2fx the time (target <= 2.2x), escaped copy %.2fx\n",
              twice.pageMs / single.pageMs, twice.baselineMs / single.baselineMs);
  return 0;
}
