// Any document through MD Preview: the line model and the page writer never
// fail, every line is classified, and a page of any text closes (an empty
// text makes no page).
#include <cstdint>
#include <cstdlib>
#include <string>

#include "export/markdown_html.h"
#include "export/markdown_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Pairs of bytes as UTF-16 units, so that lone surrogate halves come too.
  std::wstring text;
  for (size_t i = 0; i + 1 < size; i += 2) text += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
  for (std::wstring_view line : SplitMarkdownLines(text)) {
    ClassifyMarkdownLine(line, L"Segoe UI", 11);
    ParseMarkdownInlines(TrimMarkdownLine(line), L"Segoe UI", 11, false);
  }
  MarkdownPageStyle style;
  style.title = "fuzz";
  const std::string page = BuildMarkdownHtmlPage(text, style);
  static const std::string kEnd = "</html>\n";
  if (text.empty() ? !page.empty()
                   : page.size() < kEnd.size() || page.compare(page.size() - kEnd.size(), kEnd.size(), kEnd) != 0)
    std::abort();
  return 0;
}
