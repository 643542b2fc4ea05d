#include "export/markdown_model.h"

#include <cwctype>

namespace {

// Typefaces that mark an editor set up for code; Markdown prose is not set in them.
const wchar_t* const kCodeFonts[] = {L"Courier New",   L"Consolas",      L"Lucida Console",
                                     L"Cascadia Code", L"Cascadia Mono", L"Fira Code",
                                     L"Source Code Pro", L"Inconsolata", L"Monaco"};

bool SameIgnoringCase(const std::wstring& a, const wchar_t* b) {
  size_t i = 0;
  for (; i < a.size() && b[i]; ++i)
    if (std::towlower(a[i]) != std::towlower(b[i])) return false;
  return i == a.size() && !b[i];
}

bool StartsWith(std::wstring_view text, std::wstring_view head) { return text.substr(0, head.size()) == head; }

bool IsTrimmed(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

}  // namespace

void ProseFontFor(const std::wstring& editorFont, int editorSize, std::wstring& fontName, int& pointSize) {
  for (const wchar_t* code : kCodeFonts) {
    if (SameIgnoringCase(editorFont, code)) {
      fontName = L"Segoe UI";
      pointSize = 10;
      return;
    }
  }
  if (editorFont.empty()) {
    fontName = L"Segoe UI";
    pointSize = 10;
    return;
  }
  fontName = editorFont;
  pointSize = editorSize < 1 ? 10 : editorSize;
}

std::vector<std::wstring_view> SplitMarkdownLines(std::wstring_view text) {
  std::vector<std::wstring_view> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find_first_of(L"\r\n", start);
    if (end == std::wstring_view::npos) {
      lines.push_back(text.substr(start));
      break;
    }
    lines.push_back(text.substr(start, end - start));
    start = end + ((text[end] == L'\r' && end + 1 < text.size() && text[end + 1] == L'\n') ? 2 : 1);
  }
  return lines;
}

std::wstring_view TrimMarkdownLine(std::wstring_view line) {
  size_t begin = 0, end = line.size();
  while (begin < end && IsTrimmed(line[begin])) ++begin;
  while (end > begin && IsTrimmed(line[end - 1])) --end;
  return line.substr(begin, end - begin);
}

MarkdownLineKind KindOfTrimmedLine(std::wstring_view s) {
  using T = MarkdownBlockType;
  const size_t n = s.size();
  if (n == 0) return {T::Empty, 0, 0};
  if (s == L"---" || s == L"***" || s == L"___") return {T::Rule, n, 0};
  if (n >= 5 && StartsWith(s, L"### ")) return {T::Heading3, 4, 0};
  if (n >= 4 && StartsWith(s, L"## ")) return {T::Heading2, 3, 0};
  if (n >= 3 && StartsWith(s, L"# ")) return {T::Heading1, 2, 0};
  if (n >= 3 && (StartsWith(s, L"- ") || StartsWith(s, L"* "))) return {T::ListItem, 2, 0};
  if (n >= 3 && StartsWith(s, L"> ")) return {T::Quote, 2, 0};
  if (n >= 2) {
    size_t dot = s.find(L". ");
    if (dot == 1 || dot == 2) {
      bool digits = true;
      for (size_t i = 0; i < dot; ++i)
        if (!std::iswdigit(s[i])) digits = false;
      if (digits) {
        // The value as _wtoi reads it: the leading ASCII digits.
        int value = 0;
        for (size_t i = 0; i < dot && s[i] >= L'0' && s[i] <= L'9'; ++i) value = value * 10 + (s[i] - L'0');
        return {T::NumberedItem, dot + 2, value};
      }
    }
  }
  return {T::Paragraph, 0, 0};
}

int32_t MarkdownBlockPointSize(MarkdownBlockType type, int32_t baseSize) {
  switch (type) {
    case MarkdownBlockType::Heading1: return 22;
    case MarkdownBlockType::Heading2: return 18;
    case MarkdownBlockType::Heading3: return 15;
    default: return baseSize;
  }
}

std::vector<MarkdownRun> ParseMarkdownInlines(std::wstring_view s, const std::wstring& fontName, int32_t pointSize,
                                              bool startBold) {
  std::vector<MarkdownRun> runs;
  bool bold = startBold, italic = false, code = false;
  std::wstring buffer;
  auto flush = [&] {
    if (buffer.empty()) return;
    MarkdownRun run;
    run.text = buffer;
    if (code) {
      run.fontName = L"Courier New";
      run.pointSize = pointSize - 1 < 8 ? 8 : pointSize - 1;
    } else {
      run.fontName = fontName;
      run.pointSize = pointSize;
    }
    run.bold = bold;
    run.italic = italic;
    run.code = code;
    runs.push_back(std::move(run));
    buffer.clear();
  };
  size_t i = 0;
  const size_t n = s.size();
  while (i < n) {
    wchar_t c = s[i];
    bool before = i > 0, after = i + 1 < n;
    if (c == L'*' && after && s[i + 1] == L'*') {
      flush();
      bold = !bold;
      i += 2;
    } else if (c == L'*' && !(before && s[i - 1] == L'*') && !(after && s[i + 1] == L'*')) {
      flush();
      italic = !italic;
      ++i;
    } else if (c == L'_' && !(before && s[i - 1] == L'_') && !(after && s[i + 1] == L'_')) {
      flush();
      italic = !italic;
      ++i;
    } else if (c == L'`') {
      flush();
      code = !code;
      ++i;
    } else {
      buffer += c;
      ++i;
    }
  }
  flush();
  return runs;
}

MarkdownBlock ClassifyMarkdownLine(std::wstring_view line, const std::wstring& fontName, int32_t pointSize) {
  std::wstring_view trimmed = TrimMarkdownLine(line);
  MarkdownLineKind kind = KindOfTrimmedLine(trimmed);
  MarkdownBlock block;
  block.type = kind.type;
  block.number = kind.number;
  if (kind.type == MarkdownBlockType::Empty || kind.type == MarkdownBlockType::Rule) return block;
  bool heading = kind.type == MarkdownBlockType::Heading1 || kind.type == MarkdownBlockType::Heading2 ||
                 kind.type == MarkdownBlockType::Heading3;
  block.runs = ParseMarkdownInlines(trimmed.substr(kind.textStart), fontName,
                                    MarkdownBlockPointSize(kind.type, pointSize), heading);
  return block;
}
