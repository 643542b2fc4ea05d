#include <gtest/gtest.h>

#include "ai/client/providers.h"

TEST(Providers, DisplayNames) {
  EXPECT_STREQ(ProviderDisplayName(0), L"Groq");
  EXPECT_STREQ(ProviderDisplayName(1), L"Cloudflare AI");
  EXPECT_STREQ(ProviderDisplayName(2), L"Mistral AI");
  EXPECT_STREQ(ProviderDisplayName(3), L"Unknown");
  EXPECT_STREQ(ProviderDisplayName(0xFFFFFFFFu), L"Unknown");
}

TEST(Providers, DefaultEndpoints) {
  ProviderEndpoint groq = ResolveProviderEndpoint(kProviderGroq, L"", L"");
  EXPECT_EQ(groq.host, L"api.groq.com");
  EXPECT_EQ(groq.path, L"/openai/v1/chat/completions");
  ProviderEndpoint cloudflare = ResolveProviderEndpoint(kProviderCloudflare, L"abc123", L"");
  EXPECT_EQ(cloudflare.host, L"api.cloudflare.com");
  EXPECT_EQ(cloudflare.path, L"/client/v4/accounts/abc123/ai/v1/chat/completions");
  ProviderEndpoint mistral = ResolveProviderEndpoint(kProviderMistral, L"", L"");
  EXPECT_EQ(mistral.host, L"api.mistral.ai");
  EXPECT_EQ(mistral.path, L"/v1/chat/completions");
}

TEST(Providers, CustomEndpointReplacesHostAndPathWhole) {
  ProviderEndpoint e = ResolveProviderEndpoint(kProviderMistral, L"", L"https://proxy.example.org/my/chat");
  EXPECT_EQ(e.host, L"proxy.example.org");
  EXPECT_EQ(e.path, L"/my/chat");  // nothing appended
}

TEST(Providers, CustomEndpointWithHttpSchemeIsTheSame) {
  ProviderEndpoint e = ResolveProviderEndpoint(kProviderMistral, L"", L"http://proxy.example.org/v1/x");
  EXPECT_EQ(e.host, L"proxy.example.org");
  EXPECT_EQ(e.path, L"/v1/x");
}

TEST(Providers, CustomEndpointWithoutSchemeSplitsAtTheFirstSolidus) {
  ProviderEndpoint e = ResolveProviderEndpoint(kProviderMistral, L"", L"host.test/a/b/c");
  EXPECT_EQ(e.host, L"host.test");
  EXPECT_EQ(e.path, L"/a/b/c");
  // A port written into the value stays part of the host name.
  e = ResolveProviderEndpoint(kProviderMistral, L"", L"https://host.test:8443/p");
  EXPECT_EQ(e.host, L"host.test:8443");
  EXPECT_EQ(e.path, L"/p");
}

TEST(Providers, BareHostLeavesTheDefaults) {
  for (const wchar_t* value : {L"https://proxy.example.org", L"proxy.example.org", L"http://x"}) {
    ProviderEndpoint e = ResolveProviderEndpoint(kProviderMistral, L"", value);
    EXPECT_EQ(e.host, L"api.mistral.ai") << value;
    EXPECT_EQ(e.path, L"/v1/chat/completions") << value;
  }
}

TEST(Providers, SolidusRightAfterTheSchemeGivesAnEmptyHost) {
  ProviderEndpoint e = ResolveProviderEndpoint(kProviderMistral, L"", L"https:///v1");
  EXPECT_EQ(e.host, L"");
  EXPECT_EQ(e.path, L"/v1");
}

TEST(Providers, CustomEndpointIsIgnoredByGroqAndCloudflare) {
  ProviderEndpoint groq = ResolveProviderEndpoint(kProviderGroq, L"", L"https://localhost/x");
  EXPECT_EQ(groq.host, L"api.groq.com");
  EXPECT_EQ(groq.path, L"/openai/v1/chat/completions");
  ProviderEndpoint cf = ResolveProviderEndpoint(kProviderCloudflare, L"id", L"https://localhost/x");
  EXPECT_EQ(cf.host, L"api.cloudflare.com");
  EXPECT_EQ(cf.path, L"/client/v4/accounts/id/ai/v1/chat/completions");
}

TEST(Providers, StatusTexts) {
  EXPECT_EQ(HttpStatusErrorText(401, "{\"error\":{\"message\":\"Invalid API Key\"}}"), L"HTTP 401: Invalid API Key");
  EXPECT_EQ(HttpStatusErrorText(500, ""), L"HTTP 500");
  EXPECT_EQ(HttpStatusErrorText(404, "{\"error\":\"not found\"}"), L"HTTP 404: not found");
  EXPECT_EQ(HttpStatusErrorText(0, "garbage"), L"HTTP 0");
  EXPECT_EQ(HttpStatusErrorText(403, "{\"message\":\"caf\xC3\xA9\"}"), L"HTTP 403: caf\u00E9");
}

TEST(Providers, TooLargeAndRateLimitDropTheProvidersDetail) {
  const char* body = "{\"error\":{\"message\":\"tokens exceeded\"}}";
  EXPECT_EQ(HttpStatusErrorText(413, body),
            L"Request too large: reduce chat history length in AI Settings or start a new chat (New Chat button).");
  EXPECT_EQ(HttpStatusErrorText(429, body),
            L"Rate limit reached. Wait a moment, then try again. Consider switching to Cloudflare or Mistral AI "
            L"provider.");
}

TEST(Providers, KeyMissingTextsNameTheConsoles) {
  EXPECT_EQ(GroqKeyMissingText(), L"Groq API key is not set. Get a free key at console.groq.com");
  EXPECT_EQ(MistralKeyMissingText(), L"Mistral AI API key is not set. Get a free key at console.mistral.ai");
}

namespace {

ProviderSettings Settings(uint32_t provider, const wchar_t* key, const wchar_t* model = L"",
                          const wchar_t* account = L"", const wchar_t* endpoint = L"") {
  ProviderSettings s;
  s.provider = provider;
  s.apiKey = key;
  s.model = model;
  s.accountId = account;
  s.customEndpoint = endpoint;
  s.temperatureHundredths = 70;
  s.maxTokens = 2048;
  return s;
}

}  // namespace

TEST(ProviderRequest, GroqSendsTheEmptyModelAndTheKeyAsStored) {
  ProviderCall call;
  std::wstring failure;
  ASSERT_TRUE(PlanChatRequest(Settings(kProviderGroq, L" gsk key "), L"", {}, L"Hi", call, failure));
  EXPECT_EQ(call.host, L"api.groq.com");
  EXPECT_EQ(call.path, L"/openai/v1/chat/completions");
  EXPECT_EQ(call.authorization, L"Authorization: Bearer  gsk key ");  // no trimming
  EXPECT_EQ(call.body,
            "{\"model\":\"\",\"stream\":false,\"temperature\":0.7,\"max_tokens\":2048,"
            "\"messages\":[{\"role\":\"user\",\"content\":\"Hi\"}]}");
  EXPECT_TRUE(failure.empty());
}

TEST(ProviderRequest, CloudflareTakesTheDefaultModelAndTheAccountPath) {
  ProviderCall call;
  std::wstring failure;
  std::vector<ChatTurn> history = {{true, L"a"}, {false, L"b"}};
  ASSERT_TRUE(
      PlanChatRequest(Settings(kProviderCloudflare, L"cf", L"", L"acc"), L"sys", history, L"c", call, failure));
  EXPECT_EQ(call.host, L"api.cloudflare.com");
  EXPECT_EQ(call.path, L"/client/v4/accounts/acc/ai/v1/chat/completions");
  EXPECT_EQ(call.body,
            "{\"model\":\"@cf/meta/llama-3.1-8b-instruct\",\"stream\":false,\"temperature\":0.7,\"max_tokens\":2048,"
            "\"messages\":[{\"role\":\"system\",\"content\":\"sys\"},{\"role\":\"user\",\"content\":\"a\"},"
            "{\"role\":\"assistant\",\"content\":\"b\"},{\"role\":\"user\",\"content\":\"c\"}]}");
  // The real request keeps the old default name that the test replaces.
  ASSERT_TRUE(PlanChatRequest(Settings(kProviderCloudflare, L"cf", L"llama3.1-8b", L"acc"), L"", {}, L"c", call,
                              failure));
  EXPECT_NE(call.body.find("\"model\":\"llama3.1-8b\""), std::string::npos);
}

TEST(ProviderRequest, MistralHonoursTheCustomEndpoint) {
  ProviderCall call;
  std::wstring failure;
  ASSERT_TRUE(PlanChatRequest(Settings(kProviderMistral, L"m", L"mistral-small", L"", L"https://localhost/v9/chat"),
                              L"", {}, L"x", call, failure));
  EXPECT_EQ(call.host, L"localhost");
  EXPECT_EQ(call.path, L"/v9/chat");
  EXPECT_EQ(call.authorization, L"Authorization: Bearer m");
}

TEST(ProviderRequest, TemperatureIsHundredthsAsAFloat) {
  ProviderCall call;
  std::wstring failure;
  ProviderSettings s = Settings(kProviderMistral, L"m");
  s.temperatureHundredths = 33;
  s.maxTokens = 5;
  ASSERT_TRUE(PlanChatRequest(s, L"", {}, L"x", call, failure));
  EXPECT_NE(call.body.find("\"temperature\":0.33,\"max_tokens\":5,"), std::string::npos) << call.body;
  s.temperatureHundredths = 100;
  ASSERT_TRUE(PlanChatRequest(s, L"", {}, L"x", call, failure));
  EXPECT_NE(call.body.find("\"temperature\":1,"), std::string::npos) << call.body;
}

TEST(ProviderRequest, RefusalTextsOfTheRequest) {
  ProviderCall call;
  std::wstring failure;
  EXPECT_FALSE(PlanChatRequest(Settings(kProviderGroq, L""), L"", {}, L"x", call, failure));
  EXPECT_EQ(failure, L"Groq API key is not set. Get a free key at console.groq.com");
  EXPECT_FALSE(PlanChatRequest(Settings(kProviderCloudflare, L"", L"", L"acc"), L"", {}, L"x", call, failure));
  EXPECT_EQ(failure, L"Cloudflare API key is not set.");
  EXPECT_FALSE(PlanChatRequest(Settings(kProviderCloudflare, L"k", L"", L""), L"", {}, L"x", call, failure));
  EXPECT_EQ(failure, L"Cloudflare Account ID is missing.");
  EXPECT_FALSE(PlanChatRequest(Settings(kProviderMistral, L""), L"", {}, L"x", call, failure));
  EXPECT_EQ(failure, L"Mistral AI API key is not set. Get a free key at console.mistral.ai");
  EXPECT_FALSE(PlanChatRequest(Settings(3, L"k"), L"", {}, L"x", call, failure));
  EXPECT_EQ(failure, L"Unknown AI provider selected in settings.");
}

TEST(ProviderRequest, RefusalTextsOfTheConnectionTest) {
  ProviderCall call;
  std::wstring failure;
  EXPECT_FALSE(PlanConnectionTest(Settings(kProviderGroq, L""), call, failure));
  EXPECT_EQ(failure, L"Groq API key is not set. Get a free key at console.groq.com");
  EXPECT_FALSE(PlanConnectionTest(Settings(kProviderCloudflare, L"", L"", L"acc"), call, failure));
  EXPECT_EQ(failure, L"Cloudflare API key is not set. Get it from your Cloudflare dashboard.");
  EXPECT_FALSE(PlanConnectionTest(Settings(kProviderCloudflare, L"k"), call, failure));
  EXPECT_EQ(failure, L"Cloudflare Account ID is missing.\n\nFind it in your Cloudflare dashboard.");
  EXPECT_FALSE(PlanConnectionTest(Settings(kProviderMistral, L""), call, failure));
  EXPECT_EQ(failure, L"Mistral AI API key is not set");
  EXPECT_FALSE(PlanConnectionTest(Settings(9, L"k"), call, failure));
  EXPECT_EQ(failure, L"Unknown AI provider selected in settings");
}

TEST(ProviderRequest, ConnectionTestBody) {
  ProviderCall call;
  std::wstring failure;
  ASSERT_TRUE(PlanConnectionTest(Settings(kProviderGroq, L"k", L"llama-3.1-8b-instant"), call, failure));
  EXPECT_EQ(call.body,
            "{\"model\":\"llama-3.1-8b-instant\",\"stream\":false,\"temperature\":0.1,\"max_tokens\":10,"
            "\"messages\":[{\"role\":\"user\",\"content\":\"Reply with exactly: OK\"}]}");
  EXPECT_EQ(call.path, L"/openai/v1/chat/completions");
}

TEST(ProviderRequest, ConnectionTestReplacesCloudflaresOldModelName) {
  ProviderCall call;
  std::wstring failure;
  for (const wchar_t* model : {L"", L"llama3.1-8b"}) {
    ASSERT_TRUE(PlanConnectionTest(Settings(kProviderCloudflare, L"k", model, L"a"), call, failure));
    EXPECT_NE(call.body.find("\"model\":\"@cf/meta/llama-3.1-8b-instruct\""), std::string::npos) << call.body;
  }
  ASSERT_TRUE(PlanConnectionTest(Settings(kProviderCloudflare, L"k", L"llama3.1-8b ", L"a"), call, failure));
  EXPECT_NE(call.body.find("\"model\":\"llama3.1-8b \""), std::string::npos);  // exact match only
}

TEST(ProviderRequest, ConnectionTestSuccessRules) {
  EXPECT_TRUE(ConnectionTestAccepts(kProviderGroq, "OK"));
  EXPECT_TRUE(ConnectionTestAccepts(kProviderGroq, "Sure: OK."));
  EXPECT_FALSE(ConnectionTestAccepts(kProviderGroq, "ok"));
  EXPECT_FALSE(ConnectionTestAccepts(kProviderGroq, "O K"));
  EXPECT_TRUE(ConnectionTestAccepts(kProviderMistral, "xOKx"));
  EXPECT_FALSE(ConnectionTestAccepts(kProviderMistral, "Ok"));
  EXPECT_FALSE(ConnectionTestAccepts(kProviderMistral, ""));
  EXPECT_TRUE(ConnectionTestAccepts(kProviderCloudflare, "no"));  // anything not empty
  EXPECT_FALSE(ConnectionTestAccepts(kProviderCloudflare, ""));
}

TEST(ProviderRequest, FailureTextsPerProvider) {
  EXPECT_STREQ(EmptyAnswerText(kProviderGroq), L"Empty response from Groq. Check model name.");
  EXPECT_STREQ(EmptyAnswerText(kProviderCloudflare), L"Empty response from Cloudflare.");
  EXPECT_STREQ(EmptyAnswerText(kProviderMistral), L"Empty response from Mistral AI. Check model name.");
  EXPECT_STREQ(RequestFailedText(kProviderGroq), L"Groq request failed");
  EXPECT_STREQ(RequestFailedText(kProviderCloudflare), L"Cloudflare request failed");
  EXPECT_STREQ(RequestFailedText(kProviderMistral), L"Mistral AI request failed");
  EXPECT_STREQ(ConnectionFailedText(kProviderGroq), L"Groq connection failed");
  EXPECT_STREQ(ConnectionFailedText(kProviderCloudflare), L"Cloudflare connection failed");
  EXPECT_STREQ(ConnectionFailedText(kProviderMistral), L"Mistral AI connection failed");
  EXPECT_STREQ(UnexpectedAnswerText(kProviderGroq), L"Unexpected response from Groq API");
  EXPECT_STREQ(UnexpectedAnswerText(kProviderCloudflare), L"Unexpected response from Cloudflare API");
  EXPECT_STREQ(UnexpectedAnswerText(kProviderMistral), L"Unexpected response from Mistral AI API");
}
