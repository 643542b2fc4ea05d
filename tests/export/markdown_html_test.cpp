#include "export/markdown_html.h"

#include <gtest/gtest.h>

namespace {

MarkdownPageStyle TestStyle() {
  MarkdownPageStyle style;
  style.title = "notes.md";
  style.background = 0x00332211;      // #112233
  style.text = 0x00665544;            // #445566
  style.heading = 0x00998877;         // #778899
  style.secondary = 0x00CCBBAA;       // #AABBCC
  style.rule = 0x00FFEEDD;            // #DDEEFF
  style.codeBackground = 0x00030201;  // #010203
  style.fontFamily = L"Segoe UI";
  style.fontSize = 10;
  return style;
}

const std::string kHead =
    "<!DOCTYPE html>\n<html>\n<head>\n"
    "  <meta charset=\"UTF-8\">\n"
    "  <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n"
    "  <title>notes.md</title>\n"
    "  <style>\n"
    "    * { margin: 0; padding: 0; box-sizing: border-box; }\n"
    "    body { background: #112233; color: #445566; font-family: 'Segoe UI', 'Segoe UI', sans-serif; "
    "font-size: 10pt; line-height: 1.6; }\n"
    "    .content { max-width: 860px; margin: 0 auto; padding: 40px 32px; }\n"
    "    h1 { font-size: 2em;   color: #778899; border-bottom: 1px solid #DDEEFF; padding-bottom: 6px; "
    "margin: 1.2em 0 0.5em; }\n"
    "    h2 { font-size: 1.5em; color: #778899; margin: 1em 0 0.4em; }\n"
    "    h3 { font-size: 1.2em; color: #778899; margin: 0.8em 0 0.3em; }\n"
    "    p  { margin: 0.4em 0; }\n"
    "    ul, ol { margin: 0.3em 0 0.3em 1.6em; }\n"
    "    li { margin: 0.15em 0; }\n"
    "    blockquote { border-left: 3px solid #DDEEFF; margin: 0.5em 0; padding: 0.2em 0 0.2em 1em; "
    "color: #AABBCC; font-style: italic; }\n"
    "    hr { border: none; border-top: 1px solid #DDEEFF; margin: 1em 0; }\n"
    "    code { background: #010203; color: #AABBCC; font-family: 'Courier New', monospace; font-size: 0.9em; "
    "padding: 1px 4px; border-radius: 3px; }\n"
    "    strong { color: #778899; }\n"
    "  </style>\n"
    "</head>\n<body>\n<div class=\"content\">\n";
const std::string kTail = "</div>\n</body>\n</html>\n";

std::string Body(const wchar_t* text) {
  std::string page = BuildMarkdownHtmlPage(text, TestStyle());
  EXPECT_EQ(page.substr(0, kHead.size()), kHead);
  EXPECT_EQ(page.substr(page.size() - kTail.size()), kTail);
  return page.substr(kHead.size(), page.size() - kHead.size() - kTail.size());
}

TEST(MarkdownHtml, WholeSmallDocument) {
  const wchar_t* text =
      L"# Title\r\n"
      L"Some **bold** and *em* text.\r\n"
      L"\r\n"
      L"- one\r\n"
      L"- two\r\n"
      L"1. first\r\n"
      L"> a quote\r\n"
      L"---\r\n"
      L"`a*b*` & <c>";
  EXPECT_EQ(BuildMarkdownHtmlPage(text, TestStyle()),
            kHead +
                "<h1>Title</h1>\n"
                "<p>Some <strong>bold</strong> and <em>em</em> text.</p>\n"
                "<p></p>\n"
                "<ul>\n"
                "  <li>one</li>\n"
                "  <li>two</li>\n"
                "</ul>\n"
                "<ol>\n"
                "  <li>first</li>\n"
                "</ol>\n"
                "<blockquote>a quote</blockquote>\n"
                "<hr>\n"
                "<p><code>a*b*</code> &amp; &lt;c&gt;</p>\n" +
                kTail);
}

TEST(MarkdownHtml, EmptyTextGivesNoPage) { EXPECT_EQ(BuildMarkdownHtmlPage(L"", TestStyle()), ""); }

TEST(MarkdownHtml, TitleIsNotEscapedAndFontComesFromTheStyle) {
  MarkdownPageStyle style = TestStyle();
  style.title = "a&b<c.md";
  style.fontFamily = L"Georgia";
  style.fontSize = 14;
  std::string page = BuildMarkdownHtmlPage(L"x", style);
  EXPECT_NE(page.find("  <title>a&b<c.md</title>\n"), std::string::npos);
  EXPECT_NE(page.find("font-family: 'Georgia', 'Segoe UI', sans-serif; font-size: 14pt;"), std::string::npos);
}

TEST(MarkdownHtml, Blocks) {
  EXPECT_EQ(Body(L"### h3\n## h2\n#### four"), "<h3>h3</h3>\n<h2>h2</h2>\n<p>#### four</p>\n");
  EXPECT_EQ(Body(L"***\n___\n----"), "<hr>\n<hr>\n<p>----</p>\n");
  EXPECT_EQ(Body(L"# \n### "), "<p>#</p>\n<p>###</p>\n");  // headings with trailing blanks
  EXPECT_EQ(Body(L"100. x\n1.5. y\na. z"), "<p>100. x</p>\n<p>1.5. y</p>\n<p>a. z</p>\n");
  // Numbers restart; a blank line or a paragraph ends the list.
  EXPECT_EQ(Body(L"7. a\n\n2. b"), "<ol>\n  <li>a</li>\n</ol>\n<p></p>\n<ol>\n  <li>b</li>\n</ol>\n");
  EXPECT_EQ(Body(L"- a\ntext\n- b"), "<ul>\n  <li>a</li>\n</ul>\n<p>text</p>\n<ul>\n  <li>b</li>\n</ul>\n");
  EXPECT_EQ(Body(L"- a\n1. b"), "<ul>\n  <li>a</li>\n</ul>\n<ol>\n  <li>b</li>\n</ol>\n");
  EXPECT_EQ(Body(L"1. a\n* b"), "<ol>\n  <li>a</li>\n</ol>\n<ul>\n  <li>b</li>\n</ul>\n");
  EXPECT_EQ(Body(L"- last"), "<ul>\n  <li>last</li>\n</ul>\n");
  EXPECT_EQ(Body(L"\n\n"), "<p></p>\n<p></p>\n");
  EXPECT_EQ(Body(L"   indented   "), "<p>indented</p>\n");
}

TEST(MarkdownHtml, InlinesCloseInTheirFixedOrder) {
  EXPECT_EQ(RenderHtmlInlines(L"**open"), "<strong>open</strong>");
  EXPECT_EQ(RenderHtmlInlines(L"**a *b `c"), "<strong>a <em>b <code>c</code></em></strong>");
  EXPECT_EQ(RenderHtmlInlines(L"**a *b** c*"), "<strong>a <em>b</strong> c</em>");  // crossed, as the flags say
  EXPECT_EQ(RenderHtmlInlines(L"*x"), "<em>x</em>");
  EXPECT_EQ(RenderHtmlInlines(L"_x_"), "<em>x</em>");
  EXPECT_EQ(RenderHtmlInlines(L"*a_"), "<em>a</em>");
  EXPECT_EQ(RenderHtmlInlines(L"snake_case"), "snake<em>case</em>");
  EXPECT_EQ(RenderHtmlInlines(L"__x__"), "__x__");
  EXPECT_EQ(RenderHtmlInlines(L"***b***"), "<strong>*b</strong>*");
  EXPECT_EQ(RenderHtmlInlines(L""), "");
}

TEST(MarkdownHtml, CodeSpansAreLiteral) {
  EXPECT_EQ(RenderHtmlInlines(L"`*x*` y"), "<code>*x*</code> y");
  EXPECT_EQ(RenderHtmlInlines(L"`**_`"), "<code>**_</code>");
  EXPECT_EQ(RenderHtmlInlines(L"`a\tb`"), "<code>a    b</code>");
}

TEST(MarkdownHtml, HeadingTextStartsNotStrong) {
  EXPECT_EQ(Body(L"# a **b**"), "<h1>a <strong>b</strong></h1>\n");
}

TEST(MarkdownHtml, Escaping) {
  EXPECT_EQ(EscapeHtml(L"\t\"&'<>x"), "    &quot;&amp;&#39;&lt;&gt;x");
  EXPECT_EQ(EscapeHtml(L"\u00e9\u20ac"), "\xC3\xA9\xE2\x82\xAC");
  // Outside the Basic Multilingual Plane: each half alone, two replacement characters.
  EXPECT_EQ(EscapeHtml(L"\U0001F600"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Body(L"\U0001F600"), "<p>\xEF\xBF\xBD\xEF\xBF\xBD</p>\n");
  EXPECT_EQ(Body(L"a\tb"), "<p>a    b</p>\n");
  EXPECT_EQ(EscapeHtml(L"a\\b"), "a\\b");
}

TEST(MarkdownHtml, Colours) {
  EXPECT_EQ(HtmlColour(0x00332211), "#112233");
  EXPECT_EQ(HtmlColour(0), "#000000");
}

}  // namespace
