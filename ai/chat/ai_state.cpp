#include "ai/chat/ai_state.h"

CRITICAL_SECTION g_aiHistoryLock;
CRITICAL_SECTION g_aiSessionLock;
