#include "ai/client/transport.h"

#include "ai/chat/ai_state.h"

HINTERNET g_aiSession = nullptr;
bool g_aiSessionReady = false;

void OpenAiSession() {
  InitializeCriticalSection(&g_aiSessionLock);
  EnterCriticalSection(&g_aiSessionLock);
  g_aiSession = WinHttpOpen(kAiUserAgent, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                            WINHTTP_NO_PROXY_BYPASS, 0);
  g_aiSessionReady = g_aiSession != nullptr;
  LeaveCriticalSection(&g_aiSessionLock);
}
