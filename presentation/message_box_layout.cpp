#include "presentation/message_box_layout.h"

#include <algorithm>

namespace {

constexpr int kOk = 131;
constexpr int kCancel = 132;
constexpr int kYes = 133;
constexpr int kNo = 134;

struct KindRow {
  int buttonCount;
  const wchar_t* captions[kMessageBoxMaxButtons];
  const wchar_t* controlTexts[kMessageBoxMaxButtons];
  int results[kMessageBoxMaxButtons];
};

// Kind 0 is the save question: its controls carry the texts of that question,
// while the buttons paint the plain Yes, No and Cancel.
constexpr KindRow kKinds[5] = {
    {3, {L"Yes", L"No", L"Cancel"}, {L"Save", L"Don't Save", L"Cancel"}, {kYes, kNo, kCancel}},
    {2, {L"OK", L"Cancel", nullptr}, {L"OK", L"Cancel", nullptr}, {kOk, kCancel, 0}},
    {1, {L"OK", nullptr, nullptr}, {L"OK", nullptr, nullptr}, {kOk, 0, 0}},
    {2, {L"Yes", L"No", nullptr}, {L"Yes", L"No", nullptr}, {kYes, kNo, 0}},
    {2, {L"OK", L"Cancel", nullptr}, {L"OK", L"Cancel", nullptr}, {kOk, kCancel, 0}},
};

const KindRow& RowOf(int kind) { return kKinds[NormalizeMessageBoxKind(kind)]; }

bool ValidButton(int kind, int buttonIndex) { return buttonIndex >= 0 && buttonIndex < RowOf(kind).buttonCount; }

}  // namespace

int NormalizeMessageBoxKind(int kind) { return kind >= 0 && kind <= 4 ? kind : 2; }

void MeasureMessageBoxText(const std::wstring& text, int* longestLine, int* lineCount) {
  int longest = 0, current = 0, lines = 1;
  for (wchar_t c : text) {
    if (c == L'\n') {
      ++lines;
      current = 0;
    } else if (c != L'\r') {
      longest = std::max(longest, ++current);
    }
  }
  *longestLine = longest;
  *lineCount = lines;
}

int MessageBoxButtonCount(int kind) { return RowOf(kind).buttonCount; }

const wchar_t* MessageBoxButtonCaption(int kind, int buttonIndex) {
  return ValidButton(kind, buttonIndex) ? RowOf(kind).captions[buttonIndex] : nullptr;
}

const wchar_t* MessageBoxButtonControlText(int kind, int buttonIndex) {
  return ValidButton(kind, buttonIndex) ? RowOf(kind).controlTexts[buttonIndex] : nullptr;
}

int MessageBoxButtonResult(int kind, int buttonIndex) {
  return ValidButton(kind, buttonIndex) ? RowOf(kind).results[buttonIndex] : 0;
}

int MessageBoxEscapeResult(int kind) { return NormalizeMessageBoxKind(kind) == 2 ? kOk : kCancel; }

MessageBoxLayout ComputeMessageBoxLayout(int kind, const std::wstring& text) {
  MessageBoxLayout layout = {};
  layout.kind = NormalizeMessageBoxKind(kind);
  MeasureMessageBoxText(text, &layout.longestLine, &layout.lineCount);

  layout.width = std::clamp(layout.longestLine * 4 + 20, kMessageBoxMinWidth, kMessageBoxMaxWidth);
  layout.textHeight = layout.lineCount * 10 + 4;
  const bool input = layout.kind == 4;
  layout.buttonY = layout.textHeight + (input ? 25 : 11);
  layout.height = layout.textHeight + (layout.kind == 0 ? 31 : input ? 43 : 29);

  layout.text = {7, 7, layout.width - 14, layout.textHeight};
  layout.hasEdit = input;
  if (input) layout.edit = {7, layout.textHeight + 11, layout.width - 14, 12};

  const KindRow& row = RowOf(layout.kind);
  layout.buttonCount = row.buttonCount;
  const int rowWidth = kMessageBoxButtonWidth + (row.buttonCount - 1) * kMessageBoxButtonPitch;  // 162, 106, 50
  const int firstX = (layout.width - rowWidth) / 2;
  for (int i = 0; i < row.buttonCount; ++i) {
    MessageBoxButtonLayout& button = layout.buttons[i];
    button.rect = {firstX + i * kMessageBoxButtonPitch, layout.buttonY, kMessageBoxButtonWidth,
                   kMessageBoxButtonHeight};
    button.id = kMessageBoxFirstButtonId + i;
    button.caption = row.captions[i];
    button.controlText = row.controlTexts[i];
    button.result = row.results[i];
  }
  return layout;
}
