// The chat transport: one synchronous HTTPS POST per request, on a worker
// thread that serves one request and ends, plus the connection test of the
// AI Settings dialog. Results reach the main window as posted messages.
#pragma once

#include <windows.h>

#include <winhttp.h>

#include <string>
#include <vector>

#include "ai/client/chat_request.h"

constexpr wchar_t kAiUserAgent[] = L"Tavro Editor/1.0";

// The heap block handed to the worker, which owns it and frees it.
struct AiRequestArgs {
  HWND window = nullptr;  // where results are posted
  std::wstring message;   // the new user message
  std::vector<ChatTurn> history;  // earlier turns, oldest first
};

// Initialises g_aiSessionLock and opens the session under it. A failure is
// not reported here; the first request reports it.
void OpenAiSession();
// The mirror of OpenAiSession when the main window goes: deletes the lock.
// The session handle stays open, as a worker that isn't waited for may
// still be using it until the process ends.
void CloseAiSession();

// One POST to host:443 over TLS. True when status 200 came back with a body
// read to its end; otherwise false with error set, or left empty.
bool HttpsPost(HINTERNET session, const std::wstring& host, const std::wstring& path, const std::string& body,
               const std::wstring& extraHeader, std::string& response, std::wstring& error);

// Returns at once; a send while a worker runs is dropped silently. Results
// come as WM_AI_ANSWER, WM_AI_REQUEST_ENDED and WM_AI_REQUEST_FAILED.
void StartAiRequest(HWND window, const std::wstring& message, const std::vector<ChatTurn>& history);

// Thread body; takes an AiRequestArgs* it frees.
DWORD WINAPI AiWorkerThread(LPVOID args);

// The AI Settings dialog's test, synchronous on the caller's thread, with
// the values of the settings record at the time of the call.
bool TestAiConnection(std::wstring& error);
