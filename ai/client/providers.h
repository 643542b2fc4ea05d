// The three chat providers: names, endpoints and the texts of their failures.
// Plain data and rules; the transport around them lives in transport.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ai/client/chat_request.h"

// Values of the settings field aiProvider.
enum AiProvider : uint32_t {
  kProviderGroq = 0,
  kProviderCloudflare = 1,
  kProviderMistral = 2,
};

// "Groq", "Cloudflare AI", "Mistral AI"; "Unknown" for any other value.
const wchar_t* ProviderDisplayName(uint32_t provider);

// The providers' public API hosts.
constexpr wchar_t kGroqApiHost[] = L"api.groq.com";
constexpr wchar_t kCloudflareApiHost[] = L"api.cloudflare.com";
constexpr wchar_t kMistralApiHost[] = L"api.mistral.ai";

// Where a user gets a key: the console hosts of the key-missing texts, and
// the web addresses the model is told about.
constexpr wchar_t kGroqConsoleHost[] = L"console.groq.com";
constexpr wchar_t kMistralConsoleHost[] = L"console.mistral.ai";
constexpr wchar_t kGroqKeysUrl[] = L"https://console.groq.com/keys";
constexpr wchar_t kCloudflareDashboardUrl[] = L"https://dash.cloudflare.com";
constexpr wchar_t kMistralConsoleUrl[] = L"https://console.mistral.ai";

// Cloudflare's model when modelName is empty.
constexpr wchar_t kCloudflareDefaultModel[] = L"@cf/meta/llama-3.1-8b-instruct";

struct ProviderEndpoint {
  std::wstring host;
  std::wstring path;
};

// Host and path of a request. customEndpoint counts for Mistral AI only:
// the scheme is dropped, host and path split at the first solidus, and a
// value without a solidus leaves the defaults in force. The connection is
// TLS on port 443 whatever the value says.
ProviderEndpoint ResolveProviderEndpoint(uint32_t provider, const std::wstring& accountId,
                                         const std::wstring& customEndpoint);

// The text of a POST that came back with a status other than 200.
std::wstring HttpStatusErrorText(uint32_t status, const std::string& body);

// "Groq API key is not set. Get a free key at console.groq.com" and the
// same for Mistral AI.
std::wstring GroqKeyMissingText();
std::wstring MistralKeyMissingText();

// Texts of a request that failed, per provider; Mistral AI's for any value
// the dispatch already refused.
const wchar_t* EmptyAnswerText(uint32_t provider);
const wchar_t* RequestFailedText(uint32_t provider);
// The same for the AI Settings dialog's connection test.
const wchar_t* ConnectionFailedText(uint32_t provider);
const wchar_t* UnexpectedAnswerText(uint32_t provider);

// The settings fields a request reads.
struct ProviderSettings {
  uint32_t provider = 0;
  std::wstring apiKey;
  std::wstring accountId;
  std::wstring model;
  std::wstring customEndpoint;
  int32_t temperatureHundredths = 0;
  int32_t maxTokens = 0;
};

// One POST as it will go out.
struct ProviderCall {
  std::wstring host;
  std::wstring path;
  std::string body;
  std::wstring authorization;  // "Authorization: Bearer " and the key exactly as stored
};

// A chat request: the provider's checks, its model and endpoint, the body.
// False with the user's text when a key, the account or the provider is wrong.
bool PlanChatRequest(const ProviderSettings& settings, const std::wstring& systemText,
                     const std::vector<ChatTurn>& history, const std::wstring& message, ProviderCall& call,
                     std::wstring& failure);

// The connection test: "Reply with exactly: OK", no system text or history,
// temperature 0.1, 10 tokens, and the test's own texts.
bool PlanConnectionTest(const ProviderSettings& settings, ProviderCall& call, std::wstring& failure);

// The connection test's accepted answer: "OK" anywhere for Groq and
// Mistral AI, anything non-empty for Cloudflare.
bool ConnectionTestAccepts(uint32_t provider, const std::string& answer);
