#include "export/styled_html.h"

#include "export/markdown_html.h"

namespace {

void AppendDecimal(std::string& out, int value) {
  char digits[12];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0);
  while (count > 0) out += digits[--count];
}

void AppendFontRule(std::string& out, const std::string& font) {
  out += "font-family: '";
  out += font;
  out += "', monospace; font-size: 11pt;";
}

void AppendHead(std::string& out, const StyledHtmlPage& page) {
  const std::string background = HtmlColour(page.pageBackground);
  out += "<!DOCTYPE html>\n<html>\n<head>\n";
  out += "    <meta charset=\"UTF-8\">\n";
  out += "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n";
  out += "    <title>" + page.docName + " - Tavro Export</title>\n";
  out += "    <style>\n";
  out += "        * { margin: 0; padding: 0; box-sizing: border-box; }\n";
  out += "        body { background-color: " + background + "; ";
  AppendFontRule(out, page.fontName);
  out += " line-height: 1.5; }\n";
  out += "        .code-container { display: flex; flex-direction: row; min-height: 100vh; }\n";
  out += "        .line-numbers { background-color: " + background + "; ";
  out += "color: #606060; text-align: right; padding: 20px 10px 20px 20px; ";
  out += "user-select: none; border-right: 1px solid #444; ";
  AppendFontRule(out, page.fontName);
  out += " line-height: 1.5; min-width: 50px; }\n";
  out += "        .line-number { height: 1.5em; line-height: 1.5em; white-space: pre; }\n";
  out += "        .code-content { background-color: " + background + "; ";
  out += "padding: 20px; flex: 1; overflow-x: auto; ";
  AppendFontRule(out, page.fontName);
  out += " }\n";
  out += "        .code-line { height: 1.5em; line-height: 1.5em; white-space: pre; }\n";
}

void AppendStyleRules(std::string& out, const StyleLooks& looks, uint32_t pageBackground) {
  for (int n = 0; n < 128; ++n) {
    const uint32_t fore = looks.fore[n], back = looks.back[n];
    if (fore == 0 && back == 0 && !looks.bold[n] && !looks.italic[n]) continue;
    out += "        .s" + std::to_string(n) + " { ";
    // A black foreground is 0 and inherits the browser's default.
    if (fore != 0) out += "color: " + HtmlColour(fore) + "; ";
    if (back != 0 && back != pageBackground) out += "background-color: " + HtmlColour(back) + "; ";
    if (looks.bold[n]) out += "font-weight: bold; ";
    if (looks.italic[n]) out += "font-style: italic; ";
    out += "}\n";
  }
}

void AppendSpans(std::string& out, const StyledHtmlPage& page, int32_t start, int32_t length) {
  const char* text = page.text.data();
  const auto styleAt = [&page](int32_t at) {
    return at < static_cast<int32_t>(page.styles.size()) ? static_cast<unsigned char>(page.styles[at]) & 127 : 0;
  };
  const int32_t end = start + length;
  int32_t at = start;
  while (at < end) {
    const int style = styleAt(at);
    int32_t runEnd = at + 1;
    while (runEnd < end && styleAt(runEnd) == style) ++runEnd;
    // A run has at least one byte, and every byte escapes to at least one,
    // so no span comes out empty.
    out += "<span class=\"s";
    AppendDecimal(out, style);
    out += "\">";
    AppendEscapedHtml(out, text + at, static_cast<size_t>(runEnd - at));
    out += "</span>";
    at = runEnd;
  }
}

}  // namespace

std::vector<std::pair<int32_t, int32_t>> LineIndex(const std::string& text) {
  std::vector<std::pair<int32_t, int32_t>> lines;
  int32_t start = 0;
  const int32_t size = static_cast<int32_t>(text.size());
  for (int32_t at = 0; at < size; ++at) {
    if (text[at] != '\n') continue;
    lines.emplace_back(start, at - start);
    start = at + 1;
  }
  lines.emplace_back(start, size - start);
  return lines;
}

void AppendEscapedHtml(std::string& out, const char* bytes, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    switch (bytes[i]) {
      case '\t': out += "    "; break;
      case '"': out += "&quot;"; break;
      case '&': out += "&amp;"; break;
      case '\'': out += "&#39;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      default: out += bytes[i]; break;
    }
  }
}

std::string EscapeHtmlBytes(const std::string& bytes) {
  std::string out;
  out.reserve(bytes.size());
  AppendEscapedHtml(out, bytes.data(), bytes.size());
  return out;
}

int32_t StyledHtmlProgressStep(int32_t lineCount) { return lineCount <= 1000 ? 50 : lineCount / 100; }

bool BuildStyledHtml(const StyledHtmlPage& page, std::string& out, const LineHook& beforeLine) {
  const auto lines = LineIndex(page.text);
  const size_t length = page.text.size();
  out.clear();
  out.reserve(length + (length + 10000) * 2);
  AppendHead(out, page);
  AppendStyleRules(out, page.looks, page.pageBackground);
  out += "    </style>\n</head>\n<body>\n";
  out += "<div class=\"code-container\">\n";
  out += "    <div class=\"line-numbers\">\n";
  for (size_t i = 0; i < lines.size(); ++i)
    out += "        <div class=\"line-number\">" + std::to_string(i + 1) + "</div>\n";
  out += "    </div>\n";
  out += "    <div class=\"code-content\">\n";
  for (size_t i = 0; i < lines.size(); ++i) {
    if (beforeLine && !beforeLine(static_cast<int32_t>(i))) return false;
    out += "        <div class=\"code-line\">";
    AppendSpans(out, page, lines[i].first, lines[i].second);
    out += "</div>\n";
  }
  out += "    </div>\n</div>\n</body>\n</html>";
  return true;
}
