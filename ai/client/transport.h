// The one HTTPS session of the chat requests.
#pragma once

#include <windows.h>

#include <winhttp.h>

extern HINTERNET g_aiSession;    // opened once with the main window; never closed
extern bool g_aiSessionReady;    // the session was opened

constexpr wchar_t kAiUserAgent[] = L"Tavro Editor/1.0";

// Initialises g_aiSessionLock and opens the session under it. A failure is
// not reported here; the first request reports it.
void OpenAiSession();
