// ai_transport_driver: runs the chat transport against whatever server the
// settings point at, for the end-to-end transport tests. Settings come from
// the options, the command says what to do, and every message the worker
// posts is printed as one JSON line:
//   {"event":"answer","text":"..."}  {"event":"ended"}  {"event":"failed","text":"..."}
//   {"event":"test","ok":true,"error":""}  {"event":"done","busy":0}
//
// options:  --provider N --key K --account A --model M --endpoint E --prompt P
//           --temperature HUNDREDTHS --max-tokens N --no-session
// commands: request TEXT [u:TEXT | a:TEXT ...]   one request with that history
//           request-stop-on-file FLAG TEXT       Stop once the file FLAG exists, then make FLAG.done
//           request-twice TEXT                   a second send right behind the first
//           post-cancelled                       HttpsPost with cancel already set
//           test-connection                      the AI Settings dialog's test
//           test-connection-after-stop           the same, after a Stop
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "ai/client/ai_state.h"
#include "ai/client/chat_request.h"
#include "ai/client/providers.h"
#include "ai/client/transport.h"
#include "settings/settings.h"
#include "shell/shell.h"

namespace {

void Print(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

std::string Quoted(const std::wstring& text) { return "\"" + JsonEscape(text) + "\""; }

void CopyField(wchar_t* field, size_t units, const wchar_t* value) { wcsncpy_s(field, units, value, _TRUNCATE); }

// Prints every message the worker posted, freeing the texts as the main
// window would.
void DrainMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    auto* text = reinterpret_cast<wchar_t*>(message.lParam);
    if (message.message == WM_AI_ANSWER) {
      Print("{\"event\":\"answer\",\"text\":" + Quoted(text) + "}");
    } else if (message.message == WM_AI_REQUEST_ENDED) {
      Print("{\"event\":\"ended\"}");
    } else if (message.message == WM_AI_REQUEST_FAILED) {
      Print("{\"event\":\"failed\",\"text\":" + (text ? Quoted(text) : std::string("null")) + "}");
    } else {
      continue;
    }
    if (text) HeapFree(GetProcessHeap(), 0, text);
  }
}

void WaitForWorker() {
  if (g_aiWorkerThread) WaitForSingleObject(g_aiWorkerThread, 120000);
  // The worker clears busy after its last post; give it those instructions.
  for (int i = 0; i < 200 && g_aiRequestBusy.load(); ++i) Sleep(10);
  DrainMessages();
}

void PrintTest(bool ok, const std::wstring& error) {
  Print(std::string("{\"event\":\"test\",\"ok\":") + (ok ? "true" : "false") + ",\"error\":" + Quoted(error) + "}");
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  SetDefaultSettings(g_settings);
  InitializeCriticalSection(&g_aiHistoryLock);
  bool openSession = true;
  int i = 1;
  while (i < argc && wcsncmp(argv[i], L"--", 2) == 0) {
    std::wstring option = argv[i++];
    if (option == L"--no-session") {
      openSession = false;
      continue;
    }
    if (i >= argc) return 2;
    const wchar_t* value = argv[i++];
    if (option == L"--provider") g_settings.aiProvider = static_cast<uint32_t>(_wtoi(value));
    else if (option == L"--key") CopyField(g_settings.apiKey, 256, value);
    else if (option == L"--account") CopyField(g_settings.accountId, 128, value);
    else if (option == L"--model") CopyField(g_settings.modelName, 128, value);
    else if (option == L"--endpoint") CopyField(g_settings.customEndpoint, 256, value);
    else if (option == L"--prompt") CopyField(g_settings.systemPrompt, 1024, value);
    else if (option == L"--temperature") g_settings.temperatureHundredths = _wtoi(value);
    else if (option == L"--max-tokens") g_settings.maxTokens = _wtoi(value);
    else return 2;
  }
  if (i >= argc) return 2;
  if (openSession) {
    OpenAiSession();
  } else {
    InitializeCriticalSection(&g_aiSessionLock);
  }
  HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  std::wstring command = argv[i];
  std::vector<std::wstring> rest(argv + i + 1, argv + argc);

  if (command == L"request" && !rest.empty()) {
    std::vector<ChatTurn> history;
    for (size_t k = 1; k < rest.size(); ++k) history.push_back({rest[k].compare(0, 2, L"u:") == 0, rest[k].substr(2)});
    StartAiRequest(window, rest[0], history);
    WaitForWorker();
  } else if (command == L"request-stop-on-file" && rest.size() == 2) {
    // The test says when: once its provider holds the request, and it lets
    // the answer go only after FLAG.done, so the stop lands in the wait.
    StartAiRequest(window, rest[1], {});
    for (int i = 0; i < 12000 && GetFileAttributesW(rest[0].c_str()) == INVALID_FILE_ATTRIBUTES; ++i) Sleep(10);
    g_aiCancelRequested.exchange(1);  // what Stop does: the handle is left alone
    Print(std::string("{\"event\":\"stopped\",\"busy\":") + std::to_string(g_aiRequestBusy.load()) + "}");
    HANDLE done = CreateFileW((rest[0] + L".done").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (done != INVALID_HANDLE_VALUE) CloseHandle(done);
    WaitForWorker();
  } else if (command == L"request-twice" && rest.size() == 1) {
    StartAiRequest(window, rest[0], {});
    HANDLE first = g_aiWorkerThread;
    StartAiRequest(window, rest[0] + L" again", {});
    Print(std::string("{\"event\":\"second\",\"same_worker\":") + (g_aiWorkerThread == first ? "true" : "false") +
          "}");
    WaitForWorker();
  } else if (command == L"post-cancelled") {
    g_aiCancelRequested.exchange(1);
    std::string response;
    std::wstring error;
    ProviderEndpoint endpoint = ResolveProviderEndpoint(g_settings.aiProvider, g_settings.accountId,
                                                        g_settings.customEndpoint);
    bool ok = HttpsPost(g_aiSession, endpoint.host, endpoint.path, "{}", L"", response, error);
    PrintTest(ok, error);
  } else if (command == L"test-connection" || command == L"test-connection-after-stop") {
    if (command == L"test-connection-after-stop") g_aiCancelRequested.exchange(1);
    std::wstring error;
    bool ok = TestAiConnection(error);
    PrintTest(ok, error);
  } else {
    return 2;
  }
  Print(std::string("{\"event\":\"done\",\"busy\":") + std::to_string(g_aiRequestBusy.load()) + "}");
  return 0;
}
