#include "ai/client/providers.h"

#include "ai/client/chat_request.h"
#include "base/text_convert.h"

namespace {

// One row per provider, in the order of AiProvider.
struct ProviderTexts {
  const wchar_t* displayName;
  const wchar_t* emptyAnswer;
  const wchar_t* requestFailed;
  const wchar_t* connectionFailed;
  const wchar_t* unexpectedAnswer;
};

constexpr ProviderTexts kProviderTexts[] = {
    {L"Groq", L"Empty response from Groq. Check model name.", L"Groq request failed", L"Groq connection failed",
     L"Unexpected response from Groq API"},
    {L"Cloudflare AI", L"Empty response from Cloudflare.", L"Cloudflare request failed",
     L"Cloudflare connection failed", L"Unexpected response from Cloudflare API"},
    {L"Mistral AI", L"Empty response from Mistral AI. Check model name.", L"Mistral AI request failed",
     L"Mistral AI connection failed", L"Unexpected response from Mistral AI API"},
};
constexpr uint32_t kProviderCount = sizeof(kProviderTexts) / sizeof(kProviderTexts[0]);

// The failure texts of a value the dispatch already refused are Mistral AI's.
const ProviderTexts& FailureTexts(uint32_t provider) {
  return kProviderTexts[provider < kProviderCount ? provider : kProviderMistral];
}

}  // namespace

const wchar_t* ProviderDisplayName(uint32_t provider) {
  return provider < kProviderCount ? kProviderTexts[provider].displayName : L"Unknown";
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

const wchar_t* EmptyAnswerText(uint32_t provider) { return FailureTexts(provider).emptyAnswer; }

const wchar_t* RequestFailedText(uint32_t provider) { return FailureTexts(provider).requestFailed; }

const wchar_t* ConnectionFailedText(uint32_t provider) { return FailureTexts(provider).connectionFailed; }

const wchar_t* UnexpectedAnswerText(uint32_t provider) { return FailureTexts(provider).unexpectedAnswer; }

namespace {

ProviderCall MakeCall(const ProviderSettings& settings, std::string body) {
  ProviderEndpoint endpoint = ResolveProviderEndpoint(settings.provider, settings.accountId, settings.customEndpoint);
  return {endpoint.host, endpoint.path, std::move(body), L"Authorization: Bearer " + settings.apiKey};
}

// What a request and the connection test tell the user when the settings
// can't make a call; the two word them differently.
struct RefusalTexts {
  const wchar_t* cloudflareKey;
  const wchar_t* cloudflareAccount;
  std::wstring mistralKey;
  const wchar_t* unknownProvider;
};

// The provider's key and account checks; false with the refusal text.
bool SettingsCanCall(const ProviderSettings& settings, const RefusalTexts& texts, std::wstring& failure) {
  switch (settings.provider) {
    case kProviderGroq:
      if (settings.apiKey.empty()) failure = GroqKeyMissingText();
      break;
    case kProviderCloudflare:
      if (settings.apiKey.empty()) failure = texts.cloudflareKey;
      else if (settings.accountId.empty()) failure = texts.cloudflareAccount;
      break;
    case kProviderMistral:
      if (settings.apiKey.empty()) failure = texts.mistralKey;
      break;
    default:
      failure = texts.unknownProvider;
  }
  return failure.empty();
}

}  // namespace

bool PlanChatRequest(const ProviderSettings& settings, const std::wstring& systemText,
                     const std::vector<ChatTurn>& history, const std::wstring& message, ProviderCall& call,
                     std::wstring& failure) {
  failure.clear();
  const RefusalTexts texts = {L"Cloudflare API key is not set.", L"Cloudflare Account ID is missing.",
                              MistralKeyMissingText(), L"Unknown AI provider selected in settings."};
  if (!SettingsCanCall(settings, texts, failure)) return false;
  std::wstring model = settings.model;
  if (settings.provider == kProviderCloudflare && model.empty()) model = kCloudflareDefaultModel;
  float temperature = static_cast<float>(settings.temperatureHundredths) / 100.0f;
  call = MakeCall(settings, BuildChatRequestBody(model, systemText, history, message, temperature, settings.maxTokens));
  return true;
}

bool PlanConnectionTest(const ProviderSettings& settings, ProviderCall& call, std::wstring& failure) {
  failure.clear();
  const RefusalTexts texts = {L"Cloudflare API key is not set. Get it from your Cloudflare dashboard.",
                              L"Cloudflare Account ID is missing.\n\nFind it in your Cloudflare dashboard.",
                              L"Mistral AI API key is not set", L"Unknown AI provider selected in settings"};
  if (!SettingsCanCall(settings, texts, failure)) return false;
  std::wstring model = settings.model;
  // The test also replaces the old default name; a real request doesn't.
  if (settings.provider == kProviderCloudflare && (model.empty() || model == L"llama3.1-8b")) {
    model = kCloudflareDefaultModel;
  }
  call = MakeCall(settings, BuildChatRequestBody(model, L"", {}, L"Reply with exactly: OK", 0.1f, 10));
  return true;
}

bool ConnectionTestAccepts(uint32_t provider, const std::string& answer) {
  if (provider == kProviderCloudflare) return !answer.empty();
  return answer.find("OK") != std::string::npos;
}
