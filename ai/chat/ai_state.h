// Process-wide state of the AI assistant shared between threads.
#pragma once

#include <windows.h>

extern CRITICAL_SECTION g_aiHistoryLock;  // guards the live conversation list
extern CRITICAL_SECTION g_aiSessionLock;  // guards the HTTP session of the requests
