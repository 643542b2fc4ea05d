// The AI panel's rules without a window: where its controls stand, the
// splitter's limits, the texts of the history button and menu rows, the
// lines written to the transcript, the input box's limit, the input scroll
// bar's thumb and the owner-drawn buttons' colours.
#pragma once

#include <cstdint>
#include <string>

// Control ids.
constexpr int kAiPanelId = 8008;
constexpr int kPanelTitleId = 8006;
constexpr int kPanelConnectionId = 8007;
constexpr int kPanelHistoryButtonId = 8017;
constexpr int kPanelAiSettingsButtonId = 8004;
constexpr int kPanelNewChatButtonId = 8016;
constexpr int kPanelSendButtonId = 8002;
constexpr int kPanelSendCommandId = 8003;  // Enter in the input box
constexpr int kPanelStatusId = 8005;

constexpr int kInputHeightStart = 80;
constexpr int kInputHeightMin = 52;
constexpr int kInputHeightMax = 200;
constexpr int kInputTopMin = 73;
constexpr int kSplitterTopMin = 28;
constexpr int kSplitterHeight = 5;
constexpr size_t kInputLimit = 80000;

struct PanelBox {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const PanelBox& other) const {
    return x == other.x && y == other.y && width == other.width && height == other.height;
  }
};

struct PanelLayout {
  PanelBox title, history, connection, transcript, input, inputScroll, aiSettings, newChat, send, status;
  int inputTop = 0;     // Y: H - 54 - inputHeight, never less than 73
  int splitterTop = 0;  // H - inputHeight - 59, never less than 28
};

// The ten controls of a panel whose client area is width by height.
PanelLayout ComputePanelLayout(int width, int height, int inputHeight);

// inputHeight after a drag that moved the pointer up by `upward` pixels
// (negative: down) from where the drag began with `startHeight`: 52..200.
int DraggedInputHeight(int startHeight, int upward);

// The Chat History button: "History (disabled)" without history; the current
// chat's title when it has messages and is not called "New Chat" (above 20
// characters its first 17 and "..."); else "Chat History".
std::wstring HistoryButtonText(bool keepHistory, bool chatHasMessages, const std::wstring& title);

// A row of the Chat History menu: the title, "Untitled Chat" when empty,
// above 40 characters its first 37 and "...".
std::wstring HistoryMenuRowText(const std::wstring& title);

// "\nChat started: <createdAt>   |   Opened: HH:MM\n\n".
std::wstring ChatStartLine(const std::wstring& createdAt, int hour, int minute);

// Blanks, tabs, carriage returns and line feeds cut from both ends.
std::wstring TrimMessage(const std::wstring& text);

// "YOU: " or "AI: ", the trimmed text and a blank line; empty for a text
// that trims to nothing.
std::wstring TranscriptEntry(bool isUser, const std::wstring& text);

// Whether the input box takes a typed character at its current length: from
// 80000 on, only backspace, carriage return, escape and delete.
bool InputTakesCharacter(size_t length, unsigned character);
// A pasted text as the input box keeps it: its first 80000 characters.
std::wstring CutToInputLimit(const std::wstring& text);

// The custom scroll bar of the input box.
struct InputScroll {
  int max = 0;         // last line index
  int page = 1;        // lines in view, at least 1
  int position = 0;    // first line in view, within 0..max - page + 1
  bool visible = false;  // only when the lines exceed the page
  int thumbTop = 0;    // offset in the track
  int thumbHeight = 0;
};
InputScroll MeasureInputScroll(int lineCount, int firstLine, int clientHeight, int lineHeight, int trackHeight);

// Colours of the panel's owner-drawn buttons, BGR.
enum class PanelButtonKind { kDisabled, kPlain, kSendIdle, kSendGenerating };
uint32_t PanelButtonFill(bool darkTheme, PanelButtonKind kind, bool pressed);
