#include "ai/panel/send_pipeline.h"

#include <string>
#include <vector>

#include "ai/chat/chat_store.h"
#include "ai/client/ai_state.h"
#include "ai/client/transport.h"
#include "ai/panel/ai_panel.h"
#include "ai/panel/send_rules.h"
#include "ai/panel/typing_animator.h"
#include "base/app_state.h"
#include "base/heap_text.h"
#include "base/messages.h"
#include "presentation/message_box.h"
#include "settings/settings.h"

namespace {

bool KeepHistory() { return g_settings.keepHistory != 0; }
bool TypingAnimation() { return g_settings.typingAnimation != 0; }
int32_t HistoryLimit() { return static_cast<int32_t>(g_settings.historyLimit); }

size_t StoredMessageCount() {
  const ChatInfo* chat = CurrentChat(GetChatHistory());
  return chat ? chat->messages.size() : 0;
}

void StartThinking(HWND window) {
  const intptr_t length = TranscriptLength();
  if (length < 0) return;
  g_aiThinkingFrame = 0;
  g_aiThinkingPos = length;
  AppendTranscript(kThinkingFrames[0]);
  ScrollTranscriptToEnd();
  g_aiThinkingTimer = SetTimer(window, kThinkingTimer, kThinkingIntervalMs, nullptr);
}

void StopThinking(HWND window) {
  if (g_aiThinkingTimer) {
    KillTimer(window, kThinkingTimer);
    g_aiThinkingTimer = 0;
  }
  if (g_aiThinkingPos >= 0) ReplaceTranscriptTail(g_aiThinkingPos, L"");
  g_aiThinkingPos = -1;
}

void EmptyAnswerBuffer() {
  EnterCriticalSection(&g_aiHistoryLock);
  g_aiAnswerBuffer.clear();
  LeaveCriticalSection(&g_aiHistoryLock);
}

// The chat had no room: a new one, empty and current, and the message sent
// again into it.
void SendIntoNewChat(HWND window, const std::wstring& message) {
  NewChat(GetChatHistory());
  EnterCriticalSection(&g_aiHistoryLock);
  g_aiLiveHistory.clear();
  LeaveCriticalSection(&g_aiHistoryLock);
  RefreshHistoryButton();
  ClearTranscript();
  if (const ChatInfo* chat = CurrentChat(GetChatHistory())) WriteChatStartLine(chat->createdAt);
  SetPanelStatus(L"New chat started");
  PostHeapText(window, WM_AI_SEND, message);
}

// The limit step: true when the message goes on into this chat.
bool PassChatLimit(HWND window, const std::wstring& message) {
  const int32_t limit = HistoryLimit();
  const ChatLimitPrompt prompt = ChatLimitPromptFor(KeepHistory(), limit, StoredMessageCount());
  if (prompt == ChatLimitPrompt::kNone) return true;
  const std::wstring text = ChatLimitText(prompt, limit);
  if (prompt == ChatLimitPrompt::kNewChatOnly) {
    if (ShowMessageBox(window, kBoxYesNo, kChatLimitTitle, text.c_str()) == kResultYes)
      SendIntoNewChat(window, message);
    return false;
  }
  switch (ShowMessageBox(window, kBoxYesNoCancel, kChatLimitTitle, text.c_str())) {
    case kResultYes:
      g_settings.historyLimit = kRaisedHistoryLimit;
      SaveSettings(g_settings);
      PostMessageW(window, WM_AI_SETTINGS_CHANGED, 0, 0);
      return true;
    case kResultNo:
      SendIntoNewChat(window, message);
      return false;
    default:
      return false;
  }
}

// The answer joins the live conversation and the stored chat.
void CommitAnswer() {
  if (!KeepHistory()) return;
  std::wstring answer;
  EnterCriticalSection(&g_aiHistoryLock);
  if (!g_aiAnswerBuffer.empty()) {
    g_aiLiveHistory.push_back({false, g_aiAnswerBuffer});
    answer.swap(g_aiAnswerBuffer);
  }
  LeaveCriticalSection(&g_aiHistoryLock);
  if (answer.empty()) return;
  AddMessage(GetChatHistory(), false, answer);
  RefreshHistoryButton();
}

void AppendDisclaimerIfFlagged() {
  if (g_aiTopicFlagged.load()) WriteDisclaimer();
}

}  // namespace

void OnAiSend(HWND window, wchar_t* text) {
  const std::wstring message = text ? text : L"";
  FreeHeapText(text);
  g_aiFirstPiecePending.exchange(1);
  g_aiTopicFlagged.exchange(HitsTopicWords(message) ? 1 : 0);
  if (g_aiRequestBusy.load()) return;  // a stopped request hasn't returned yet: the message is dropped
  if (!PassChatLimit(window, message)) return;

  SetGeneratingState(true);
  SetPanelStatus(kThinkingStatus);
  WriteUserMessage(message);
  StartThinking(window);

  std::vector<ChatTurn> history;
  if (KeepHistory()) {
    EnterCriticalSection(&g_aiHistoryLock);
    history = g_aiLiveHistory;
    g_aiLiveHistory.push_back({true, message});
    TrimLiveHistory(g_aiLiveHistory, HistoryLimit());
    LeaveCriticalSection(&g_aiHistoryLock);
    AddMessage(GetChatHistory(), true, message);
    RefreshHistoryButton();
  }
  if (TypingAnimation()) AnimatorStart(GetTypingAnimator());
  StartAiRequest(window, message, history);
}

void OnAiAnswer(HWND window, wchar_t* text) {
  const std::wstring answer = text ? text : L"";
  FreeHeapText(text);
  std::wstring shown = answer;
  if (g_aiFirstPiecePending.exchange(0)) {
    StopThinking(window);
    shown = AnswerTranscriptText(answer);
  }
  if (TypingAnimation()) AnimatorEnqueue(GetTypingAnimator(), shown);
  else AppendTranscript(shown);
  if (KeepHistory()) {
    EnterCriticalSection(&g_aiHistoryLock);
    g_aiAnswerBuffer += answer;
    LeaveCriticalSection(&g_aiHistoryLock);
  }
}

void OnAiRequestEnded(HWND) {
  if (TypingAnimation()) {
    AnimatorFinish(GetTypingAnimator());  // the rest follows its WM_AI_TYPING_ENDED
    return;
  }
  if (!g_hwndAiPanel) return;
  SetGeneratingState(false);
  SetPanelStatus(L"Ready");
  AppendDisclaimerIfFlagged();
  CommitAnswer();
}

void OnAiTypingEnded(HWND, bool stopped) {
  if (g_hwndAiPanel) {
    SetGeneratingState(false);
    SetPanelStatus(stopped ? L"Stopped" : L"Ready");
  }
  if (stopped) {
    EmptyAnswerBuffer();
    return;
  }
  AppendDisclaimerIfFlagged();
  CommitAnswer();
}

void OnAiStop(HWND window) {
  StopThinking(window);
  AnimatorStop(GetTypingAnimator());
  g_aiCancelRequested.exchange(1);
  g_aiFirstPiecePending.exchange(1);
  EmptyAnswerBuffer();
  SetGeneratingState(false);
  SetPanelStatus(L"Stopped.");
  AppendTranscript(kStopLine);
}

void OnAiRequestFailed(HWND window, wchar_t* text) {
  const std::wstring line = FailureText(text);
  FreeHeapText(text);
  StopThinking(window);
  AnimatorStop(GetTypingAnimator());
  g_aiFirstPiecePending.exchange(1);
  if (!g_hwndAiPanel) return;
  SetGeneratingState(false);
  SetPanelStatus(line);
  AppendTranscript(line + L"\n\n");
}

void OnThinkingTimer(HWND) {
  if (g_aiThinkingPos < 0) return;
  g_aiThinkingFrame = (g_aiThinkingFrame + 1) % kThinkingFrameCount;
  ReplaceTranscriptTail(g_aiThinkingPos, kThinkingFrames[g_aiThinkingFrame]);
}
