#include "ai/client/ai_state.h"

CRITICAL_SECTION g_aiHistoryLock;
CRITICAL_SECTION g_aiSessionLock;

HINTERNET g_aiSession = nullptr;
bool g_aiSessionReady = false;

std::atomic<uint8_t> g_aiRequestBusy{0};
std::atomic<uint8_t> g_aiCancelRequested{0};
std::atomic<HINTERNET> g_aiRequestHandle{nullptr};
HANDLE g_aiWorkerThread = nullptr;

std::atomic<uint8_t> g_aiGenerating{0};
std::atomic<uint8_t> g_aiFirstPiecePending{0};
std::atomic<uint8_t> g_aiTopicFlagged{0};
UINT_PTR g_aiThinkingTimer = 0;
intptr_t g_aiThinkingPos = -1;
int32_t g_aiThinkingFrame = 0;
std::vector<ChatTurn> g_aiLiveHistory;
std::wstring g_aiAnswerBuffer;
std::atomic<bool> g_isOnline{false};
HWND g_hwndAiSettingsDialog = nullptr;
