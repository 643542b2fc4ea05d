#include "ai/client/transport.h"

#include "ai/client/ai_state.h"
#include "ai/client/providers.h"
#include "ai/client/system_context.h"
#include "base/heap_text.h"
#include "base/messages.h"
#include "base/text_convert.h"
#include "settings/settings.h"

namespace {

constexpr INTERNET_PORT kHttpsPort = 443;
constexpr int kTimeoutMs = 30000;
constexpr wchar_t kCancelledText[] = L"Request cancelled by user.";

// Takes the request handle in flight, if nobody took it yet, and closes it.
void CloseRequestHandle() {
  if (HINTERNET request = g_aiRequestHandle.exchange(nullptr)) WinHttpCloseHandle(request);
}

bool Cancelled() { return g_aiCancelRequested.load() != 0; }

// The settings fields of a request, read without a lock: the record's
// strings are fixed arrays, so a torn read gives a wrong text, no crash.
ProviderSettings ReadProviderSettings() {
  ProviderSettings settings;
  settings.provider = g_settings.aiProvider;
  settings.apiKey = g_settings.apiKey;
  settings.accountId = g_settings.accountId;
  settings.model = g_settings.modelName;
  settings.customEndpoint = g_settings.customEndpoint;
  settings.temperatureHundredths = g_settings.temperatureHundredths;
  settings.maxTokens = g_settings.maxTokens;
  return settings;
}

// The worker's body once the session is known: true with the answer, or
// false with the text to post.
bool RunChatRequest(HINTERNET session, const AiRequestArgs& args, std::wstring& answer, std::wstring& failure) {
  ProviderSettings settings = ReadProviderSettings();
  std::wstring systemText = BuildSystemContext();
  ProviderCall call;
  if (!PlanChatRequest(settings, systemText, args.history, args.message, call, failure)) return false;
  std::string response;
  std::wstring error;
  if (!HttpsPost(session, call.host, call.path, call.body, call.authorization, response, error)) {
    failure = error.empty() ? RequestFailedText(settings.provider) : error;
    return false;
  }
  std::string extracted = ExtractChatAnswer(response);
  if (extracted.empty()) {
    failure = EmptyAnswerText(settings.provider);
    return false;
  }
  answer = Utf8ToWide(extracted);
  return true;
}

}  // namespace

void OpenAiSession() {
  InitializeCriticalSection(&g_aiSessionLock);
  EnterCriticalSection(&g_aiSessionLock);
  g_aiSession = WinHttpOpen(kAiUserAgent, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                            WINHTTP_NO_PROXY_BYPASS, 0);
  g_aiSessionReady = g_aiSession != nullptr;
  LeaveCriticalSection(&g_aiSessionLock);
}

void CloseAiSession() { DeleteCriticalSection(&g_aiSessionLock); }

bool HttpsPost(HINTERNET session, const std::wstring& host, const std::wstring& path, const std::string& body,
               const std::wstring& extraHeader, std::string& response, std::wstring& error) {
  response.clear();
  error.clear();
  HINTERNET connection = WinHttpConnect(session, host.c_str(), kHttpsPort, 0);
  if (!connection) {
    error = L"WinHttpConnect failed";
    return false;
  }
  HINTERNET request = WinHttpOpenRequest(connection, L"POST", path.c_str(), nullptr, WINHTTP_NO_REFERER,
                                         WINHTTP_DEFAULT_ACCEPT_TYPES, WINHTTP_FLAG_SECURE);
  if (!request) {
    WinHttpCloseHandle(connection);
    error = L"WinHttpOpenRequest failed";
    return false;
  }
  g_aiRequestHandle.exchange(request);
  if (Cancelled()) {
    CloseRequestHandle();
    WinHttpCloseHandle(connection);
    error = kCancelledText;
    return false;
  }
  WinHttpSetTimeouts(request, kTimeoutMs, kTimeoutMs, kTimeoutMs, kTimeoutMs);
  WinHttpAddRequestHeaders(request, L"Content-Type: application/json", static_cast<DWORD>(-1),
                           WINHTTP_ADDREQ_FLAG_ADD);
  if (!extraHeader.empty()) {
    WinHttpAddRequestHeaders(request, extraHeader.c_str(), static_cast<DWORD>(-1), WINHTTP_ADDREQ_FLAG_ADD);
  }
  auto* data = const_cast<char*>(body.data());
  auto length = static_cast<DWORD>(body.size());
  if (!WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, data, length, length, 0) ||
      !WinHttpReceiveResponse(request, nullptr)) {
    DWORD code = GetLastError();
    // Time-outs, name and TLS failures all end in the one text; the code
    // isn't shown to the user.
    bool cancelled = Cancelled() || code == ERROR_WINHTTP_OPERATION_CANCELLED || code == ERROR_INVALID_HANDLE;
    error = cancelled ? kCancelledText : L"HTTP request failed";
    CloseRequestHandle();
    WinHttpCloseHandle(connection);
    return false;
  }
  DWORD status = 0;
  DWORD statusSize = sizeof(status);
  WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER, WINHTTP_HEADER_NAME_BY_INDEX,
                      &status, &statusSize, WINHTTP_NO_HEADER_INDEX);
  bool readFailed = false;
  for (;;) {
    DWORD available = 0;
    // A failed query ends the body like a zero: what was read counts.
    if (!WinHttpQueryDataAvailable(request, &available) || available == 0) break;
    if (Cancelled()) {
      error = kCancelledText;
      readFailed = true;
      break;
    }
    std::string chunk(available, '\0');
    DWORD read = 0;
    if (!WinHttpReadData(request, chunk.data(), available, &read)) {
      error = Cancelled() ? kCancelledText : L"WinHttpReadData failed.";
      readFailed = true;
      break;
    }
    response.append(chunk.data(), read);
  }
  CloseRequestHandle();
  WinHttpCloseHandle(connection);
  if (readFailed) return false;
  if (status == 200) return true;
  error = HttpStatusErrorText(status, response);
  return false;
}

void StartAiRequest(HWND window, const std::wstring& message, const std::vector<ChatTurn>& history) {
  if (g_aiRequestBusy.load()) return;  // not queued: the send is dropped
  g_aiCancelRequested.exchange(0);
  g_aiRequestBusy.exchange(1);
  auto* args = new AiRequestArgs{window, message, history};
  if (g_aiWorkerThread) {
    // A worker still finishing its last lines isn't waited for.
    WaitForSingleObject(g_aiWorkerThread, 0);
    CloseHandle(g_aiWorkerThread);
    g_aiWorkerThread = nullptr;
  }
  g_aiWorkerThread = CreateThread(nullptr, 0, AiWorkerThread, args, 0, nullptr);
  if (!g_aiWorkerThread) {
    g_aiRequestBusy.exchange(0);
    delete args;
    PostHeapText(window, WM_AI_REQUEST_FAILED, L"Failed to start worker thread");
  }
}

DWORD WINAPI AiWorkerThread(LPVOID parameter) {
  auto* args = static_cast<AiRequestArgs*>(parameter);
  EnterCriticalSection(&g_aiSessionLock);
  HINTERNET session = g_aiSession;
  bool ready = g_aiSessionReady;
  LeaveCriticalSection(&g_aiSessionLock);
  if (!session || !ready) {
    // The one path without an end message.
    PostHeapText(args->window, WM_AI_REQUEST_FAILED, L"WinHTTP session not initialized");
    delete args;
    g_aiRequestBusy.exchange(0);
    return 0;
  }
  std::wstring answer;
  std::wstring failure;
  if (RunChatRequest(session, *args, answer, failure)) {
    if (!Cancelled()) PostHeapText(args->window, WM_AI_ANSWER, answer);  // a stopped answer is dropped
  } else {
    PostHeapText(args->window, WM_AI_REQUEST_FAILED, failure);  // failures are posted even after Stop
  }
  if (!Cancelled()) PostMessageW(args->window, WM_AI_REQUEST_ENDED, 0, 0);
  delete args;
  g_aiRequestBusy.exchange(0);  // last of all
  return 0;
}

bool TestAiConnection(std::wstring& error) {
  error.clear();
  if (!g_aiSession) {  // no lock here, unlike the worker
    error = L"WinHTTP not initialized";
    return false;
  }
  ProviderSettings settings = ReadProviderSettings();
  ProviderCall call;
  if (!PlanConnectionTest(settings, call, error)) return false;
  std::string response;
  if (!HttpsPost(g_aiSession, call.host, call.path, call.body, call.authorization, response, error)) {
    if (error.empty()) error = ConnectionFailedText(settings.provider);
    return false;
  }
  if (!ConnectionTestAccepts(settings.provider, ExtractChatAnswer(response))) {
    error = UnexpectedAnswerText(settings.provider);
    return false;
  }
  return true;
}
