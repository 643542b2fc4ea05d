// The send pipeline's rules without a window: the topic scan, the chat
// limit's question, the lines it writes to the transcript and the trimming
// of the live conversation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ai/client/chat_request.h"

// A copy with A-Z lowered and every other unit as it stands: what towlower
// does in the C locale, which this process never leaves.
std::wstring LowerAsciiUnits(const std::wstring& text);
// Whether the lowered message contains a row of the topic word table.
bool HitsTopicWords(const std::wstring& message);

// The question put before a send into a full chat.
enum class ChatLimitPrompt {
  kNone,            // send
  kRaiseOrNewChat,  // Yes raises the limit to 50, No starts a new chat, Cancel drops the message
  kNewChatOnly,     // Yes starts a new chat, anything else drops the message
};
constexpr int32_t kRaisedHistoryLimit = 50;
constexpr wchar_t kChatLimitTitle[] = L"Chat Limit Reached";
// With history kept, a limit L of at least 1 and at least 2 L stored
// messages: the new-chat box from L 50 on, else the raise box.
ChatLimitPrompt ChatLimitPromptFor(bool keepHistory, int32_t limit, size_t storedMessages);
std::wstring ChatLimitText(ChatLimitPrompt prompt, int32_t limit);

// "AI: " and the answer without its leading blanks, tabs and line ends.
std::wstring AnswerTranscriptText(const std::wstring& answer);
// "Error: " and the text, "Error: unknown" for none; the status line's form.
std::wstring FailureText(const wchar_t* text);

constexpr wchar_t kStopLine[] = L"\n\n[Generation stopped by user]\n\n";
constexpr wchar_t kDisclaimerText[] = L"AI can make mistakes. Verify important information.\n\n";
constexpr wchar_t kThinkingStatus[] = L"AI is thinking...";

// The thinking animation: five frames of equal width (no-break spaces pad).
constexpr int kThinkingFrameCount = 5;
constexpr unsigned kThinkingIntervalMs = 380;
extern const wchar_t* const kThinkingFrames[kThinkingFrameCount];

// Drops the oldest turns until 2 L remain, for a limit L above 0.
void TrimLiveHistory(std::vector<ChatTurn>& turns, int32_t limit);
