#include "export/rtf_writer.h"

#include <cstdio>

uint32_t DarkenForPaper(uint32_t colour) {
  const uint32_t red = colour & 0xFF, green = (colour >> 8) & 0xFF, blue = (colour >> 16) & 0xFF;
  const float brightness = 0.299f * static_cast<float>(red) + 0.587f * static_cast<float>(green) +
                           0.114f * static_cast<float>(blue);
  if (static_cast<int>(brightness) <= 180) return colour;
  return (red * 35 / 100) | ((green * 35 / 100) << 8) | ((blue * 35 / 100) << 16);
}

RtfColours BuildRtfColours(const uint32_t (&fore)[128]) {
  RtfColours colours;
  for (int n = 0; n < 128; ++n) {
    size_t at = 0;
    while (at < colours.table.size() && colours.table[at] != fore[n]) ++at;
    if (at == colours.table.size()) colours.table.push_back(fore[n]);
    colours.index[n] = static_cast<int>(at) + 1;
  }
  return colours;
}

void AppendRtfEscaped(std::string& out, const char* bytes, size_t count) {
  char number[24];
  for (size_t i = 0; i < count; ++i) {
    const unsigned char byte = static_cast<unsigned char>(bytes[i]);
    switch (byte) {
      case '\\': out += "\\\\"; continue;
      case '{': out += "\\{"; continue;
      case '}': out += "\\}"; continue;
      case '\r': continue;
      case '\n': out += "\\par\r\n"; continue;
      case '\t': out += "\\tab "; continue;
    }
    if (byte < 0x80) {
      out += static_cast<char>(byte);
      continue;
    }
    int further;
    uint32_t code;
    if (byte >= 0xC0 && byte <= 0xDF) {
      further = 1;
      code = byte & 0x1F;
    } else if (byte >= 0xE0 && byte <= 0xEF) {
      further = 2;
      code = byte & 0x0F;
    } else if (byte >= 0xF0 && byte <= 0xF7) {
      further = 3;
      code = byte & 0x07;
    } else {
      out += '?';
      continue;
    }
    // A sequence cut short by the run's end keeps the bits it got.
    for (int k = 0; k < further && i + 1 < count; ++k) {
      ++i;
      code = (code << 6) | (static_cast<unsigned char>(bytes[i]) & 0x3F);
    }
    if (code >= 0x10000) {
      out += '?';
      continue;
    }
    std::snprintf(number, sizeof(number), "\\u%d?", static_cast<int>(static_cast<int16_t>(code)));
    out += number;
  }
}

std::string BuildRtf(const RtfDocument& document) {
  const RtfColours colours = BuildRtfColours(document.looks.fore);
  std::string out;
  out.reserve(document.text.size() * 4);
  out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat\r\n";
  out += "{\\fonttbl{\\f0\\fmodern\\fcharset0 ";
  out += document.fontName.substr(0, 128);
  out += ";}}\r\n";
  out += "{\\colortbl ;";
  char entry[64];
  for (uint32_t colour : colours.table) {
    std::snprintf(entry, sizeof(entry), "\\red%u\\green%u\\blue%u;", colour & 0xFF, (colour >> 8) & 0xFF,
                  (colour >> 16) & 0xFF);
    out += entry;
  }
  out += "}\r\n\\viewkind4\\uc1\\pard\\sl0\\slmult0";
  out += "\\f0\\fs" + std::to_string(document.fontSize * 2) + " ";

  const std::string& text = document.text;
  const auto styleAt = [&document](size_t at) {
    const int style = at < document.styles.size() ? static_cast<unsigned char>(document.styles[at]) : 0;
    return style >= 128 ? 0 : style;
  };
  size_t at = 0;
  while (at < text.size()) {
    const int style = styleAt(at);
    size_t end = at + 1;
    while (end < text.size() && styleAt(end) == style) ++end;
    const bool bold = document.looks.bold[style], italic = document.looks.italic[style];
    out += "{\\cf" + std::to_string(colours.index[style]) + " ";
    if (bold) out += "\\b ";
    if (italic) out += "\\i ";
    AppendRtfEscaped(out, text.data() + at, end - at);
    if (bold) out += "\\b0 ";
    if (italic) out += "\\i0 ";
    out += "}";
    at = end;
  }
  out += "\r\n}\r\n";
  return out;
}

int RtfWritePercent(size_t written, size_t total) {
  if (total == 0) return 5;
  return static_cast<int>(static_cast<unsigned long long>(written) * 88 / total + 5);
}
