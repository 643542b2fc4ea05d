#include "shell/status_text.h"

#include <cwchar>

std::wstring StatusLineColumnText(int firstVisibleLine, int caretY, int textHeight, int column) {
  if (textHeight < 1) textHeight = 16;
  int line = firstVisibleLine + 1 + caretY / textHeight;
  if (line < 1) line = 1;
  wchar_t text[64];
  swprintf(text, 64, L"  Ln %d, Col %d", line, column + 1);
  return text;
}

std::wstring StatusSelectionText(bool hasSelection, int characters) {
  if (!hasSelection) return L"";
  wchar_t text[64];
  swprintf(text, 64, L"  Sel: %d", characters);
  return text;
}

std::wstring StatusEncodingText(int encoding) {
  static const wchar_t* const kNames[] = {L"UTF-8 BOM", L"UTF-8", L"UTF-16 LE", L"UTF-16 BE", L"ANSI"};
  return std::wstring(L"  ") + (encoding >= 0 && encoding <= 4 ? kNames[encoding] : L"UTF-8");
}

std::wstring StatusLineEndingText(int eolMode) {
  static const wchar_t* const kNames[] = {L"CRLF", L"CR", L"LF"};
  return std::wstring(L"  ") + (eolMode >= 0 && eolMode <= 2 ? kNames[eolMode] : L"?");
}

std::wstring StatusZoomText(int zoom) {
  wchar_t text[32];
  swprintf(text, 32, L"  %d%%", zoom * 10 + 100);
  return text;
}

std::wstring StatusFontText(const std::wstring& fontName, int fontSize, bool bold, bool italic) {
  wchar_t size[32];
  swprintf(size, 32, L"%dpt", fontSize);
  std::wstring text = L"  " + fontName + L" " + size;
  if (bold && italic) text += L" Bold Italic";
  else if (bold) text += L" Bold";
  else if (italic) text += L" Italic";
  return text;
}
