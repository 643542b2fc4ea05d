// Process-wide state of the AI assistant shared between threads.
#pragma once

#include <windows.h>

extern CRITICAL_SECTION g_aiHistoryLock;  // guards the live conversation list
