#include "ai/client/providers.h"

#include "ai/client/chat_request.h"

const wchar_t* ProviderDisplayName(uint32_t provider) {
  switch (provider) {
    case kProviderGroq: return L"Groq";
    case kProviderCloudflare: return L"Cloudflare AI";
    case kProviderMistral: return L"Mistral AI";
    default: return L"Unknown";
  }
}

ProviderEndpoint ResolveProviderEndpoint(uint32_t provider, const std::wstring& accountId,
                                         const std::wstring& customEndpoint) {
  switch (provider) {
    case kProviderGroq: return {kGroqApiHost, L"/openai/v1/chat/completions"};
    case kProviderCloudflare:
      return {kCloudflareApiHost, L"/client/v4/accounts/" + accountId + L"/ai/v1/chat/completions"};
    case kProviderMistral: break;
    default: return {};
  }
  ProviderEndpoint endpoint{kMistralApiHost, L"/v1/chat/completions"};
  if (customEndpoint.empty()) return endpoint;
  std::wstring rest = customEndpoint;
  if (rest.compare(0, 8, L"https://") == 0) {
    rest.erase(0, 8);
  } else if (rest.compare(0, 7, L"http://") == 0) {
    rest.erase(0, 7);
  }
  size_t slash = rest.find(L'/');
  if (slash == std::wstring::npos) return endpoint;  // a bare host changes nothing
  endpoint.host = rest.substr(0, slash);
  endpoint.path = rest.substr(slash);
  return endpoint;
}

std::wstring HttpStatusErrorText(uint32_t status, const std::string& body) {
  if (status == 413) {
    return L"Request too large: reduce chat history length in AI Settings or start a new chat (New Chat button).";
  }
  if (status == 429) {
    return L"Rate limit reached. Wait a moment, then try again. Consider switching to Cloudflare or Mistral AI provider.";
  }
  std::string detail = ExtractJsonString(body, "message");
  if (detail.empty()) detail = ExtractJsonString(body, "error");
  std::wstring text = L"HTTP " + std::to_wstring(status);
  if (!detail.empty()) text += L": " + Utf8ToWide(detail);
  return text;
}

std::wstring GroqKeyMissingText() {
  return std::wstring(L"Groq API key is not set. Get a free key at ") + kGroqConsoleHost;
}

std::wstring MistralKeyMissingText() {
  return std::wstring(L"Mistral AI API key is not set. Get a free key at ") + kMistralConsoleHost;
}
