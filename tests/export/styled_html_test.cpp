#include "export/styled_html.h"

#include <gtest/gtest.h>

namespace {

// The fixed frame of a page with background #1E1E1E and font "Consolas".
std::string Head(const std::string& rules) {
  return "<!DOCTYPE html>\n<html>\n<head>\n"
         "    <meta charset=\"UTF-8\">\n"
         "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n"
         "    <title>a.cpp - Tavro Export</title>\n"
         "    <style>\n"
         "        * { margin: 0; padding: 0; box-sizing: border-box; }\n"
         "        body { background-color: #1E1E1E; font-family: 'Consolas', monospace; font-size: 11pt; "
         "line-height: 1.5; }\n"
         "        .code-container { display: flex; flex-direction: row; min-height: 100vh; }\n"
         "        .line-numbers { background-color: #1E1E1E; color: #606060; text-align: right; "
         "padding: 20px 10px 20px 20px; user-select: none; border-right: 1px solid #444; "
         "font-family: 'Consolas', monospace; font-size: 11pt; line-height: 1.5; min-width: 50px; }\n"
         "        .line-number { height: 1.5em; line-height: 1.5em; white-space: pre; }\n"
         "        .code-content { background-color: #1E1E1E; padding: 20px; flex: 1; overflow-x: auto; "
         "font-family: 'Consolas', monospace; font-size: 11pt; }\n"
         "        .code-line { height: 1.5em; line-height: 1.5em; white-space: pre; }\n" +
         rules + "    </style>\n</head>\n<body>\n<div class=\"code-container\">\n    <div class=\"line-numbers\">\n";
}

std::string Numbers(int count) {
  std::string out;
  for (int i = 1; i <= count; ++i) out += "        <div class=\"line-number\">" + std::to_string(i) + "</div>\n";
  return out + "    </div>\n    <div class=\"code-content\">\n";
}

const char kTail[] = "    </div>\n</div>\n</body>\n</html>";

StyledHtmlPage Page(const std::string& text, const std::string& styles) {
  StyledHtmlPage page;
  page.text = text;
  page.styles = styles;
  page.fontName = "Consolas";
  page.docName = "a.cpp";
  page.pageBackground = 0x1E1E1E;
  return page;
}

std::string Build(const StyledHtmlPage& page) {
  std::string out;
  EXPECT_TRUE(BuildStyledHtml(page, out));
  return out;
}

}  // namespace

TEST(StyledHtml, Escapes) {
  EXPECT_EQ(EscapeHtmlBytes("\t\"&'<>x"), "    &quot;&amp;&#39;&lt;&gt;x");
  EXPECT_EQ(EscapeHtmlBytes("\xE2\x82\xAC"), "\xE2\x82\xAC");
}

TEST(StyledHtml, LineIndex) {
  EXPECT_EQ(LineIndex("").size(), 1u);
  auto lines = LineIndex("ab\r\ncd\n");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], std::make_pair(0, 3));  // the CR stays in its line
  EXPECT_EQ(lines[1], std::make_pair(4, 2));
  EXPECT_EQ(lines[2], std::make_pair(7, 0));
}

TEST(StyledHtml, SmallPageExactBytes) {
  StyledHtmlPage page = Page("int a;\n\nb<c", std::string("\x05\x05\x05\x00\x0A\x0A\x00\x00\x00\x0A\x0A", 11));
  page.looks.fore[5] = 0x0000FF;  // red keyword
  page.looks.bold[5] = true;
  page.looks.fore[10] = 0x00FF00;
  page.looks.back[10] = 0x1E1E1E;  // the page's own background: no rule
  page.looks.back[11] = 0x202020;  // black text on its own background
  page.looks.italic[12] = true;
  const std::string rules =
      "        .s5 { color: #FF0000; font-weight: bold; }\n"
      "        .s10 { color: #00FF00; }\n"
      "        .s11 { background-color: #202020; }\n"
      "        .s12 { font-style: italic; }\n";
  const std::string code =
      "        <div class=\"code-line\"><span class=\"s5\">int</span><span class=\"s0\"> </span>"
      "<span class=\"s10\">a;</span></div>\n"
      "        <div class=\"code-line\"></div>\n"
      "        <div class=\"code-line\"><span class=\"s0\">b</span><span class=\"s10\">&lt;c</span></div>\n";
  EXPECT_EQ(Build(page), Head(rules) + Numbers(3) + code + kTail);
}

TEST(StyledHtml, TrailingBreakAddsAnEmptyNumberedLine) {
  StyledHtmlPage page = Page("x\r\n", std::string(3, '\0'));
  const std::string code =
      "        <div class=\"code-line\"><span class=\"s0\">x\r</span></div>\n"
      "        <div class=\"code-line\"></div>\n";
  EXPECT_EQ(Build(page), Head("") + Numbers(2) + code + kTail);
}

TEST(StyledHtml, StyleBitsAboveSevenAreMasked) {
  StyledHtmlPage page = Page("ab", std::string("\x83\x03", 2));
  EXPECT_NE(Build(page).find("<span class=\"s3\">ab</span>"), std::string::npos);
}

TEST(StyledHtml, EmptyDocumentHasOneLine) {
  StyledHtmlPage page = Page("", "");
  EXPECT_EQ(Build(page), Head("") + Numbers(1) + "        <div class=\"code-line\"></div>\n" + kTail);
}

TEST(StyledHtml, ProgressSteps) {
  EXPECT_EQ(StyledHtmlProgressStep(900), 50);
  EXPECT_EQ(StyledHtmlProgressStep(1000), 50);
  EXPECT_EQ(StyledHtmlProgressStep(5000), 50);
  EXPECT_EQ(StyledHtmlProgressStep(20000), 200);
}

TEST(StyledHtml, HookSeesEveryLineAndCanStop) {
  StyledHtmlPage page = Page("a\nb\nc", std::string(5, '\0'));
  std::vector<int32_t> seen;
  std::string out;
  EXPECT_FALSE(BuildStyledHtml(page, out, [&seen](int32_t index) {
    seen.push_back(index);
    return index < 1;
  }));
  EXPECT_EQ(seen, (std::vector<int32_t>{0, 1}));
}
