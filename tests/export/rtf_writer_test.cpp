#include "export/rtf_writer.h"

#include <gtest/gtest.h>

namespace {

std::string Escaped(const std::string& bytes) {
  std::string out;
  AppendRtfEscaped(out, bytes.data(), bytes.size());
  return out;
}

RtfDocument Document(const std::string& text, const std::string& styles) {
  RtfDocument document;
  document.text = text;
  document.styles = styles;
  document.fontName = "Consolas";
  document.fontSize = 11;
  return document;
}

}  // namespace

TEST(RtfWriter, EscapeRows) {
  EXPECT_EQ(Escaped("a\\b{c}d"), "a\\\\b\\{c\\}d");
  EXPECT_EQ(Escaped("x\r\ny"), "x\\par\r\ny");
  EXPECT_EQ(Escaped("x\ry"), "xy");  // a lone CR is dropped with no break
  EXPECT_EQ(Escaped("\tz"), "\\tab z");
  EXPECT_EQ(Escaped("\x01~\x7F"), "\x01~\x7F");
  EXPECT_EQ(Escaped("\xC3\xA9"), "\\u233?");
  EXPECT_EQ(Escaped("\xE2\x82\xAC"), "\\u8364?");      // euro sign
  EXPECT_EQ(Escaped("\xEF\xBC\xA1"), "\\u-223?");      // U+FF21, negative as a signed 16-bit value
  EXPECT_EQ(Escaped("\xF0\x9F\x98\x80"), "?");          // an emoji: one question mark
  EXPECT_EQ(Escaped("\x80\xF8"), "??");                 // stray bytes
  EXPECT_EQ(Escaped("\xE2\x82"), "\\u130?");  // cut short: the bits it got, 0x2 << 6 | 0x2
}

TEST(RtfWriter, DarkenForPaper) {
  EXPECT_EQ(DarkenForPaper(0xFFFFFF), 0x595959u);  // white becomes 89, 89, 89
  // Grey 181 is above 180 and darkens; 180 stays.
  EXPECT_EQ(DarkenForPaper(0xB5B5B5), 0x3F3F3Fu);
  EXPECT_EQ(DarkenForPaper(0xB4B4B4), 0xB4B4B4u);
  EXPECT_EQ(DarkenForPaper(0x0000FF), 0x0000FFu);  // pure red: brightness 76
}

TEST(RtfWriter, ColourTableInFirstSeenOrder) {
  uint32_t fore[128] = {};
  fore[0] = 0x112233;
  fore[1] = 0x0000FF;
  fore[2] = 0x112233;
  RtfColours colours = BuildRtfColours(fore);
  ASSERT_EQ(colours.table.size(), 3u);  // 0x112233, red, black for the rest
  EXPECT_EQ(colours.table[0], 0x112233u);
  EXPECT_EQ(colours.table[1], 0x0000FFu);
  EXPECT_EQ(colours.table[2], 0u);
  EXPECT_EQ(colours.index[0], 1);
  EXPECT_EQ(colours.index[1], 2);
  EXPECT_EQ(colours.index[2], 1);
  EXPECT_EQ(colours.index[3], 3);
}

TEST(RtfWriter, SmallDocumentExactBytes) {
  RtfDocument document = Document("int x;\r\n{y}\n", std::string("\x05\x05\x05\x00\x07\x07\x07\x07\x00\x00\x00\x00\x00", 13));
  for (uint32_t& fore : document.looks.fore) fore = 0x202020;
  document.looks.fore[5] = 0x0000FF;
  document.looks.bold[5] = true;
  document.looks.fore[7] = 0x808000;
  document.looks.italic[7] = true;
  document.looks.bold[7] = true;
  const std::string expected =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat\r\n"
      "{\\fonttbl{\\f0\\fmodern\\fcharset0 Consolas;}}\r\n"
      "{\\colortbl ;\\red32\\green32\\blue32;\\red255\\green0\\blue0;\\red0\\green128\\blue128;}\r\n"
      "\\viewkind4\\uc1\\pard\\sl0\\slmult0\\f0\\fs22 "
      "{\\cf2 \\b int\\b0 }{\\cf1  }{\\cf3 \\b \\i x;\\par\r\n\\b0 \\i0 }{\\cf1 \\{y\\}\\par\r\n}"
      "\r\n}\r\n";
  EXPECT_EQ(BuildRtf(document), expected);
}

TEST(RtfWriter, StyleBytesOf128AndAboveCountAsZero) {
  RtfDocument document = Document("ab", std::string("\x80\x00", 2));
  document.looks.fore[0] = 0x0000FF;
  const std::string rtf = BuildRtf(document);
  EXPECT_NE(rtf.find("{\\cf1 ab}"), std::string::npos);
}

TEST(RtfWriter, FontNameCutAt128Bytes) {
  RtfDocument document = Document("a", std::string(1, '\0'));
  document.fontName = std::string(200, 'F');
  const std::string rtf = BuildRtf(document);
  EXPECT_NE(rtf.find("fcharset0 " + std::string(128, 'F') + ";}}"), std::string::npos);
}

TEST(RtfWriter, EmptyTextHasNoRuns) {
  RtfDocument document = Document("", "");
  const std::string rtf = BuildRtf(document);
  const std::string tail = "}\r\n\\viewkind4\\uc1\\pard\\sl0\\slmult0\\f0\\fs22 \r\n}\r\n";
  EXPECT_EQ(rtf.substr(rtf.size() - tail.size()), tail);
}

TEST(RtfWriter, WritePercent) {
  EXPECT_EQ(RtfWritePercent(0, 1000), 5);
  EXPECT_EQ(RtfWritePercent(1000, 1000), 93);
  EXPECT_EQ(RtfWritePercent(262144, 600000), 43);
}
