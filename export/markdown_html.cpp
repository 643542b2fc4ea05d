#include "export/markdown_html.h"

#include <cstdio>

#include "base/text_convert.h"
#include "export/markdown_model.h"

namespace {

// UTF-8 of one UTF-16 unit on its own; a surrogate half can't be converted
// and comes out as U+FFFD.
void AppendUnitUtf8(std::string& out, wchar_t unit) {
  unsigned u = static_cast<unsigned>(unit) & 0xFFFF;
  if (u >= 0xD800 && u <= 0xDFFF) u = 0xFFFD;
  if (u < 0x80) {
    out += static_cast<char>(u);
  } else if (u < 0x800) {
    out += static_cast<char>(0xC0 | (u >> 6));
    out += static_cast<char>(0x80 | (u & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (u >> 12));
    out += static_cast<char>(0x80 | ((u >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (u & 0x3F));
  }
}

void CloseLists(std::string& out, bool& ulOpen, bool& olOpen) {
  if (ulOpen) out += "</ul>\n";
  if (olOpen) out += "</ol>\n";
  ulOpen = olOpen = false;
}

void AppendWrapped(std::string& out, const char* open, std::wstring_view text, const char* close) {
  out += open;
  AppendHtmlInlines(out, text);
  out += close;
}

void AppendStyleSheet(std::string& out, const MarkdownPageStyle& style) {
  const std::string heading = HtmlColour(style.heading), rule = HtmlColour(style.rule),
                    secondary = HtmlColour(style.secondary);
  out += "  <style>\n";
  out += "    * { margin: 0; padding: 0; box-sizing: border-box; }\n";
  out += "    body { background: " + HtmlColour(style.background) + "; color: " + HtmlColour(style.text) +
         "; font-family: '" + WideToUtf8(style.fontFamily) + "', 'Segoe UI', sans-serif; font-size: " +
         std::to_string(style.fontSize) + "pt; line-height: 1.6; }\n";
  out += "    .content { max-width: 860px; margin: 0 auto; padding: 40px 32px; }\n";
  out += "    h1 { font-size: 2em;   color: " + heading + "; border-bottom: 1px solid " + rule +
         "; padding-bottom: 6px; margin: 1.2em 0 0.5em; }\n";
  out += "    h2 { font-size: 1.5em; color: " + heading + "; margin: 1em 0 0.4em; }\n";
  out += "    h3 { font-size: 1.2em; color: " + heading + "; margin: 0.8em 0 0.3em; }\n";
  out += "    p  { margin: 0.4em 0; }\n";
  out += "    ul, ol { margin: 0.3em 0 0.3em 1.6em; }\n";
  out += "    li { margin: 0.15em 0; }\n";
  out += "    blockquote { border-left: 3px solid " + rule + "; margin: 0.5em 0; padding: 0.2em 0 0.2em 1em; color: " +
         secondary + "; font-style: italic; }\n";
  out += "    hr { border: none; border-top: 1px solid " + rule + "; margin: 1em 0; }\n";
  out += "    code { background: " + HtmlColour(style.codeBackground) + "; color: " + secondary +
         "; font-family: 'Courier New', monospace; font-size: 0.9em; padding: 1px 4px; border-radius: 3px; }\n";
  out += "    strong { color: " + heading + "; }\n";
  out += "  </style>\n";
}

}  // namespace

std::string HtmlColour(uint32_t colorref) {
  char text[8];
  std::snprintf(text, sizeof(text), "#%02X%02X%02X", colorref & 0xFF, (colorref >> 8) & 0xFF, (colorref >> 16) & 0xFF);
  return text;
}

void AppendEscapedHtml(std::string& out, std::wstring_view text) {
  for (wchar_t unit : text) {
    switch (unit) {
      case L'\t': out += "    "; break;
      case L'"': out += "&quot;"; break;
      case L'&': out += "&amp;"; break;
      case L'\'': out += "&#39;"; break;
      case L'<': out += "&lt;"; break;
      case L'>': out += "&gt;"; break;
      default: AppendUnitUtf8(out, unit);
    }
  }
}

std::string EscapeHtml(std::wstring_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 5);
  AppendEscapedHtml(out, text);
  return out;
}

void AppendHtmlInlines(std::string& out, std::wstring_view s) {
  bool strongOn = false, emOn = false, codeOn = false;
  // The buffer is always one stretch of the line: markers end it.
  size_t bufferStart = 0;
  size_t i = 0;
  const size_t n = s.size();
  auto flush = [&] {
    if (i > bufferStart) AppendEscapedHtml(out, s.substr(bufferStart, i - bufferStart));
  };
  while (i < n) {
    wchar_t c = s[i];
    bool before = i > 0, after = i + 1 < n;
    if (!codeOn) {
      if (c == L'*' && after && s[i + 1] == L'*') {
        flush();
        out += strongOn ? "</strong>" : "<strong>";
        strongOn = !strongOn;
        i += 2;
        bufferStart = i;
        continue;
      }
      if ((c == L'*' || c == L'_') && !(before && s[i - 1] == c) && !(after && s[i + 1] == c)) {
        flush();
        out += emOn ? "</em>" : "<em>";
        emOn = !emOn;
        ++i;
        bufferStart = i;
        continue;
      }
    }
    if (c == L'`') {
      flush();
      out += codeOn ? "</code>" : "<code>";
      codeOn = !codeOn;
      ++i;
      bufferStart = i;
      continue;
    }
    ++i;
  }
  flush();
  if (codeOn) out += "</code>";
  if (emOn) out += "</em>";
  if (strongOn) out += "</strong>";
}

std::string RenderHtmlInlines(std::wstring_view text) {
  std::string out;
  AppendHtmlInlines(out, text);
  return out;
}

std::string BuildMarkdownHtmlPage(std::wstring_view text, const MarkdownPageStyle& style) {
  std::string out;
  if (text.empty()) return out;
  out.reserve(65536);
  out += "<!DOCTYPE html>\n<html>\n<head>\n";
  out += "  <meta charset=\"UTF-8\">\n";
  out += "  <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n";
  out += "  <title>" + style.title + "</title>\n";
  AppendStyleSheet(out, style);
  out += "</head>\n<body>\n<div class=\"content\">\n";
  bool ulOpen = false, olOpen = false;
  using T = MarkdownBlockType;
  for (std::wstring_view line : SplitMarkdownLines(text)) {
    std::wstring_view s = TrimMarkdownLine(line);
    MarkdownLineKind kind = KindOfTrimmedLine(s);
    std::wstring_view body = s.substr(kind.textStart);
    switch (kind.type) {
      case T::ListItem:
        if (olOpen) out += "</ol>\n";
        olOpen = false;
        if (!ulOpen) out += "<ul>\n";
        ulOpen = true;
        AppendWrapped(out, "  <li>", body, "</li>\n");
        break;
      case T::NumberedItem:
        if (ulOpen) out += "</ul>\n";
        ulOpen = false;
        if (!olOpen) out += "<ol>\n";
        olOpen = true;
        AppendWrapped(out, "  <li>", body, "</li>\n");
        break;
      default:
        CloseLists(out, ulOpen, olOpen);
        switch (kind.type) {
          case T::Empty: out += "<p></p>\n"; break;
          case T::Rule: out += "<hr>\n"; break;
          case T::Heading3: AppendWrapped(out, "<h3>", body, "</h3>\n"); break;
          case T::Heading2: AppendWrapped(out, "<h2>", body, "</h2>\n"); break;
          case T::Heading1: AppendWrapped(out, "<h1>", body, "</h1>\n"); break;
          case T::Quote: AppendWrapped(out, "<blockquote>", body, "</blockquote>\n"); break;
          default: AppendWrapped(out, "<p>", body, "</p>\n"); break;
        }
    }
  }
  CloseLists(out, ulOpen, olOpen);
  out += "</div>\n</body>\n</html>\n";
  return out;
}
