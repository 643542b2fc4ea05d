// The page of the "HTML" export for code: the text with the colours, weight
// and slant the editor's lexer gave each byte, beside a column of line
// numbers. Plain data in, bytes out; the worker that runs it lives in
// styled_html_export.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// Each editor style's look, as the editor reports it (colours 0x00BBGGRR).
struct StyleLooks {
  uint32_t fore[128] = {};
  uint32_t back[128] = {};
  bool bold[128] = {};
  bool italic[128] = {};
};

struct StyledHtmlPage {
  std::string text;          // the document as UTF-8
  std::string styles;        // one style byte per byte of text
  std::string fontName;      // UTF-8
  std::string docName;       // UTF-8, not escaped in the title
  StyleLooks looks;
  uint32_t pageBackground = 0;  // editorBackground of the theme row
};

// (start, length) of each line: up to, not including, each LF; one more line
// after the last LF, so there is always at least one.
std::vector<std::pair<int32_t, int32_t>> LineIndex(const std::string& text);

// Tab to four spaces; quote, ampersand, apostrophe, less and greater as
// entities; every other byte as it is.
std::string EscapeHtmlBytes(const std::string& bytes);
void AppendEscapedHtml(std::string& out, const char* bytes, size_t count);

// How often the code column reports: every 50 lines up to 1,000 lines, else
// every hundredth of them.
int32_t StyledHtmlProgressStep(int32_t lineCount);

// Called before each line of the code column with its index; false stops
// the page (a cancel). Null: never stops.
using LineHook = std::function<bool(int32_t index)>;

// The whole page; false when the hook stopped it.
bool BuildStyledHtml(const StyledHtmlPage& page, std::string& out, const LineHook& beforeLine = nullptr);
