#include "ai/panel/panel_rules.h"

#include <cstdio>

namespace {

constexpr size_t kButtonTitleMax = 20;
constexpr size_t kButtonTitleCut = 17;
constexpr size_t kMenuTitleMax = 40;
constexpr size_t kMenuTitleCut = 37;
constexpr int kMinimumThumb = 20;

std::wstring Shortened(const std::wstring& text, size_t max, size_t cut) {
  return text.size() > max ? text.substr(0, cut) + L"..." : text;
}

bool IsTrimmed(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

}  // namespace

PanelLayout ComputePanelLayout(int width, int height, int inputHeight) {
  PanelLayout layout;
  int y = height - 54 - inputHeight;
  if (y < kInputTopMin) y = kInputTopMin;
  int splitter = height - inputHeight - 59;
  if (splitter < kSplitterTopMin) splitter = kSplitterTopMin;
  layout.inputTop = y;
  layout.splitterTop = splitter;
  layout.title = {0, 0, 90, 27};
  layout.history = {94, 0, 130, 27};
  layout.connection = {width - 108, 0, 100, 27};
  layout.transcript = {0, 28, width, y - 33};
  layout.input = {8, y, width - 30, height - 54 - y};
  layout.inputScroll = {width - 20, y, 12, height - 54 - y};
  layout.aiSettings = {8, height - 51, 85, 26};
  layout.newChat = {99, height - 51, 75, 26};
  layout.send = {width - 78, height - 51, 70, 26};
  layout.status = {8, height - 22, width - 16, 18};
  return layout;
}

int DraggedInputHeight(int startHeight, int upward) {
  int height = startHeight + upward;
  if (height < kInputHeightMin) height = kInputHeightMin;
  if (height > kInputHeightMax) height = kInputHeightMax;
  return height;
}

std::wstring HistoryButtonText(bool keepHistory, bool chatHasMessages, const std::wstring& title) {
  if (!keepHistory) return L"History (disabled)";
  if (chatHasMessages && title != L"New Chat") return Shortened(title, kButtonTitleMax, kButtonTitleCut);
  return L"Chat History";
}

std::wstring HistoryMenuRowText(const std::wstring& title) {
  if (title.empty()) return L"Untitled Chat";
  return Shortened(title, kMenuTitleMax, kMenuTitleCut);
}

std::wstring ChatStartLine(const std::wstring& createdAt, int hour, int minute) {
  wchar_t clock[16];
  swprintf(clock, 16, L"%02d:%02d", hour, minute);
  return L"\nChat started: " + createdAt + L"   |   Opened: " + clock + L"\n\n";
}

std::wstring TrimMessage(const std::wstring& text) {
  size_t begin = 0, end = text.size();
  while (begin < end && IsTrimmed(text[begin])) ++begin;
  while (end > begin && IsTrimmed(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

std::wstring TranscriptEntry(bool isUser, const std::wstring& text) {
  const std::wstring trimmed = TrimMessage(text);
  if (trimmed.empty()) return {};
  return (isUser ? L"YOU: " : L"AI: ") + trimmed + L"\n\n";
}

bool InputTakesCharacter(size_t length, unsigned character) {
  if (length < kInputLimit) return true;
  return character == 8 || character == 13 || character == 27 || character == 127;
}

std::wstring CutToInputLimit(const std::wstring& text) {
  return text.size() > kInputLimit ? text.substr(0, kInputLimit) : text;
}

InputScroll MeasureInputScroll(int lineCount, int firstLine, int clientHeight, int lineHeight, int trackHeight) {
  InputScroll scroll;
  scroll.page = lineHeight > 0 ? clientHeight / lineHeight : 1;
  if (scroll.page < 1) scroll.page = 1;
  scroll.max = lineCount - 1;
  if (scroll.max < 0) scroll.max = 0;
  const int range = scroll.max - scroll.page + 1;  // the last first line that can be shown
  scroll.position = firstLine;
  if (scroll.position > range) scroll.position = range;
  if (scroll.position < 0) scroll.position = 0;
  scroll.visible = lineCount > scroll.page;
  scroll.thumbHeight = trackHeight * scroll.page / (scroll.max + 1);
  if (scroll.thumbHeight < kMinimumThumb) scroll.thumbHeight = kMinimumThumb;
  scroll.thumbTop = range > 0 ? scroll.position * (trackHeight - scroll.thumbHeight) / range : 0;
  return scroll;
}

uint32_t PanelButtonFill(bool darkTheme, PanelButtonKind kind, bool pressed) {
  // Columns: dark normal, dark pressed, light normal, light pressed.
  static constexpr uint32_t kFills[4][4] = {
      {0x2A2626, 0x2A2626, 0xE4E1E1, 0xE4E1E1},  // disabled
      {0x413430, 0x4B3C37, 0xEBDCD2, 0xDCCDC3},  // plain button
      {0x8C5528, 0x824B23, 0xFAD7B9, 0xEBC3A0},  // Send, idle
      {0x2D2D78, 0x32328C, 0xC8C8FA, 0xAFAFEB},  // Send, generating
  };
  return kFills[static_cast<int>(kind)][(darkTheme ? 0 : 2) + (pressed ? 1 : 0)];
}
