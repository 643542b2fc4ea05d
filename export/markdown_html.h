// Markdown to one self-contained HTML page: an inline style sheet from six
// colours of the theme, the blocks of the dialect line by line, no scripts
// and no external references.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What the page takes from outside its text.
struct MarkdownPageStyle {
  std::string title;         // UTF-8, written as it is
  uint32_t background = 0;   // COLORREF values, 0x00BBGGRR
  uint32_t text = 0;
  uint32_t heading = 0;
  uint32_t secondary = 0;
  uint32_t rule = 0;
  uint32_t codeBackground = 0;
  std::wstring fontFamily;
  int fontSize = 10;
};

// "#RRGGBB" of a COLORREF.
std::string HtmlColour(uint32_t colorref);

// Each UTF-16 unit converted alone to UTF-8 (so half a surrogate pair gives
// the replacement character), then tab, quote, ampersand, apostrophe, less
// and greater replaced.
std::string EscapeHtml(std::wstring_view text);
void AppendEscapedHtml(std::string& out, std::wstring_view text);

// The inline markers of one line as strong, em and code elements; what is
// still open at the end closes in the order code, em, strong.
std::string RenderHtmlInlines(std::wstring_view text);
void AppendHtmlInlines(std::string& out, std::wstring_view text);

// The whole page; empty for empty text.
std::string BuildMarkdownHtmlPage(std::wstring_view text, const MarkdownPageStyle& style);

// The style of the live theme, prose font and document name.
MarkdownPageStyle CurrentMarkdownPageStyle();

// Builds the page and writes it in one write. False for empty text, a file
// that can't be opened, or a failed write.
bool WriteMarkdownHtmlWithStyle(const std::wstring& outputPath, std::wstring_view text,
                                const MarkdownPageStyle& style);
bool WriteMarkdownHtml(const std::wstring& outputPath, const std::wstring& text);
