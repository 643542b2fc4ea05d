#include "ai/panel/send_rules.h"

#include "ai/panel/topic_words.h"

namespace {

bool IsBlank(wchar_t unit) { return unit == L' ' || unit == L'\t' || unit == L'\r' || unit == L'\n'; }

}  // namespace

const wchar_t* const kThinkingFrames[kThinkingFrameCount] = {L"AI: \u25CF\u00A0\u00A0\u00A0", L"AI: \u25CF\u25CF\u00A0\u00A0",
                                                             L"AI: \u25CF\u25CF\u25CF", L"AI: \u25CF\u25CF\u00A0\u00A0",
                                                             L"AI: \u25CF\u00A0\u00A0\u00A0"};

std::wstring LowerAsciiUnits(const std::wstring& text) {
  std::wstring lowered = text;
  for (wchar_t& unit : lowered)
    if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit - L'A' + L'a');
  return lowered;
}

bool HitsTopicWords(const std::wstring& message) {
  const std::wstring lowered = LowerAsciiUnits(message);
  for (const wchar_t* row : kTopicWords)
    if (lowered.find(row) != std::wstring::npos) return true;
  return false;
}

ChatLimitPrompt ChatLimitPromptFor(bool keepHistory, int32_t limit, size_t storedMessages) {
  if (!keepHistory || limit < 1 || storedMessages < 2 * static_cast<size_t>(limit)) return ChatLimitPrompt::kNone;
  return limit >= kRaisedHistoryLimit ? ChatLimitPrompt::kNewChatOnly : ChatLimitPrompt::kRaiseOrNewChat;
}

std::wstring ChatLimitText(ChatLimitPrompt prompt, int32_t limit) {
  const std::wstring count = std::to_wstring(limit);
  if (prompt == ChatLimitPrompt::kNewChatOnly)
    return L"This chat has reached the maximum limit of " + count +
           L" messages.\n\nWould you like to start a new chat?\n\nYes: Start a new chat\nNo: Don't send the message";
  const std::wstring raised = std::to_wstring(kRaisedHistoryLimit);
  return L"This chat has reached the limit of " + count + L" messages.\n\nWould you like to increase the limit to " +
         raised + L" and continue this chat?\n\nYes: Increase limit to " + raised +
         L" and continue\nNo: Start a new chat\nCancel: Don't send the message";
}

std::wstring AnswerTranscriptText(const std::wstring& answer) {
  size_t start = 0;
  while (start < answer.size() && IsBlank(answer[start])) ++start;
  return L"AI: " + answer.substr(start);
}

std::wstring FailureText(const wchar_t* text) { return std::wstring(L"Error: ") + (text ? text : L"unknown"); }

void TrimLiveHistory(std::vector<ChatTurn>& turns, int32_t limit) {
  if (limit <= 0) return;
  const size_t keep = 2 * static_cast<size_t>(limit);
  if (turns.size() > keep) turns.erase(turns.begin(), turns.end() - static_cast<std::ptrdiff_t>(keep));
}
