// Process-wide state of the AI assistant shared between threads.
#pragma once

#include <windows.h>

#include <winhttp.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "ai/client/chat_request.h"

extern CRITICAL_SECTION g_aiHistoryLock;  // guards the live conversation list
extern CRITICAL_SECTION g_aiSessionLock;  // guards g_aiSession and g_aiSessionReady

extern HINTERNET g_aiSession;  // opened once with the main window; never closed
extern bool g_aiSessionReady;  // the session was opened

// Bytes written by exchange and read plainly, shared by the main thread and
// the one request worker.
extern std::atomic<uint8_t> g_aiRequestBusy;      // a worker is running
extern std::atomic<uint8_t> g_aiCancelRequested;  // stop what is in flight
// The request handle in flight; whoever takes it by exchange closes it.
extern std::atomic<HINTERNET> g_aiRequestHandle;
extern HANDLE g_aiWorkerThread;  // the last worker started

// The AI Settings dialog while it is open, else null.
extern HWND g_hwndAiSettingsDialog;

// Whether the network is online, as the connectivity watch last saw it; false
// until that watch runs.
extern std::atomic<bool> g_isOnline;

// The send pipeline's side: the panel shows Stop while this is set.
extern std::atomic<uint8_t> g_aiGenerating;
extern std::atomic<uint8_t> g_aiFirstPiecePending;  // the next answer text opens its reply
extern std::atomic<uint8_t> g_aiTopicFlagged;       // the last message hit the topic words
// The thinking dots, main thread only: the timer while they run, where their
// text begins in the transcript (-1 when none) and the frame shown.
extern UINT_PTR g_aiThinkingTimer;
extern intptr_t g_aiThinkingPos;
extern int32_t g_aiThinkingFrame;
// The live conversation, oldest first, and the reply in progress; both under g_aiHistoryLock.
extern std::vector<ChatTurn> g_aiLiveHistory;
extern std::wstring g_aiAnswerBuffer;
