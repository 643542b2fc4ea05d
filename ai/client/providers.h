// The three chat providers: names, endpoints and the texts of their failures.
// Plain data and rules; the transport around them lives in transport.cpp.
#pragma once

#include <cstdint>
#include <string>

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
