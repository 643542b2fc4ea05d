// The code exports: the styled HTML page of 20,000 lines and the RTF of
// 50,000 lines, each at twice the size too, against the baseline of writing
// the same text unstyled to a file. Twice the lines should take at most 2.2
// times as long.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "export/rtf_writer.h"
#include "export/styled_html.h"

namespace {

// C-like lines with every escape of both writers, and style runs that
// change every few bytes as a lexer's would.
void Document(int lines, std::string& text, std::string& styles) {
  static const char* const kLines[] = {
      "int main(int argc, char** argv) {",
      "\tconst char* s = \"a <b> & 'c'\"; // comment \xE2\x82\xAC",
      "\tif (argc > 1) { return 1; }",
      "\t/* block {comment} with \\ backslash */",
      "}",
  };
  text.clear();
  styles.clear();
  for (int i = 0; i < lines; ++i) {
    const std::string line = std::string(kLines[i % 5]) + "\r\n";
    for (size_t k = 0; k < line.size(); ++k) styles += static_cast<char>((k / 4) % 12);
    text += line;
  }
}

StyleLooks Looks() {
  StyleLooks looks;
  for (int n = 0; n < 128; ++n) {
    looks.fore[n] = static_cast<uint32_t>(n * 0x030507);
    looks.bold[n] = n % 5 == 1;
    looks.italic[n] = n % 7 == 2;
  }
  return looks;
}

double WriteFileMs(const std::wstring& path, const std::string& bytes) {
  const double start = bench::NowMs();
  FILE* file = _wfopen(path.c_str(), L"wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
  return bench::NowMs() - start;
}

struct Figures {
  double exportMs, baselineMs;
};

template <typename Build>
Figures Measure(const char* what, int lines, const Build& build) {
  std::string text, styles;
  Document(lines, text, styles);
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  const std::wstring out = std::wstring(folder) + L"code_export_bench.out";
  std::vector<double> exported, baseline;
  size_t bytes = 0;
  for (int round = 0; round < 9; ++round) {
    const double start = bench::NowMs();
    const std::string result = build(text, styles);
    bytes = result.size();
    WriteFileMs(out, result);
    exported.push_back(bench::NowMs() - start);
    baseline.push_back(WriteFileMs(out, text));
  }
  DeleteFileW(out.c_str());
  Figures figures = {bench::Median(exported), bench::Median(baseline)};
  std::printf("%s %6d lines, %8zu bytes in: %8.2f ms (%zu bytes out), plain write %6.2f ms, ratio %.1f\n", what,
              lines, text.size(), figures.exportMs, bytes, figures.baselineMs, figures.exportMs / figures.baselineMs);
  return figures;
}

std::string Html(const std::string& text, const std::string& styles) {
  StyledHtmlPage page;
  page.text = text;
  page.styles = styles;
  page.fontName = "Consolas";
  page.docName = "bench.cpp";
  page.looks = Looks();
  page.pageBackground = 0x1E1C1C;
  std::string out;
  BuildStyledHtml(page, out);
  return out;
}

std::string Rtf(const std::string& text, const std::string& styles) {
  RtfDocument document;
  document.text = text;
  document.styles = styles;
  document.fontName = "Consolas";
  document.looks = Looks();
  return BuildRtf(document);
}

}  // namespace

int wmain() {
  const Figures html = Measure("styled HTML", 20000, Html);
  const Figures html2 = Measure("styled HTML", 40000, Html);
  const Figures rtf = Measure("RTF        ", 50000, Rtf);
  const Figures rtf2 = Measure("RTF        ", 100000, Rtf);
  std::printf("twice the lines: HTML %.2fx the time, RTF %.2fx (target <= 2.2x)\n", html2.exportMs / html.exportMs,
              rtf2.exportMs / rtf.exportMs);
  return 0;
}
