// The AI Settings dialog's rules without a window.
#include "ai/panel/ai_settings_rules.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

TEST(AiSettingsRulesTest, ProvidersAndTheirDefaultModels) {
  EXPECT_STREQ(kAiProviders[0].name, L"Groq");
  EXPECT_STREQ(kAiProviders[0].defaultModel, L"llama-3.1-8b-instant");
  EXPECT_STREQ(kAiProviders[1].name, L"Cloudflare AI");
  EXPECT_STREQ(kAiProviders[1].defaultModel, L"@cf/meta/llama-3.1-8b-instruct");
  EXPECT_STREQ(kAiProviders[2].name, L"Mistral AI");
  EXPECT_STREQ(kAiProviders[2].defaultModel, L"mistral-small-latest");
  for (const AiProviderRow& row : kAiProviders) EXPECT_TRUE(row.needsKey);
}

TEST(AiSettingsRulesTest, ComboRowsAndTheRowOfAStoredValue) {
  EXPECT_STREQ(kHistoryLimitRows[0].label, L"Disabled (single-turn)");
  EXPECT_STREQ(kHistoryLimitRows[4].label, L"50 messages");
  EXPECT_EQ(HistoryLimitRow(0), 0u);
  EXPECT_EQ(HistoryLimitRow(20), 3u);
  EXPECT_EQ(HistoryLimitRow(50), 4u);
  EXPECT_EQ(HistoryLimitRow(7), 0u);  // another value: the first row
  EXPECT_STREQ(kPanelSizeRows[0].label, L"30% (Editor 70%)");
  EXPECT_EQ(PanelSizeRow(30), 0u);
  EXPECT_EQ(PanelSizeRow(40), 1u);
  EXPECT_EQ(PanelSizeRow(29), 2u);  // outside 30..50 counts as 50
  EXPECT_EQ(PanelSizeRow(75), 2u);
  EXPECT_EQ(MaxTokenRow(512), 0u);
  EXPECT_EQ(MaxTokenRow(8192), 4u);
  EXPECT_EQ(MaxTokenRow(3000), 2u);
}

TEST(AiSettingsRulesTest, ReadOuts) {
  EXPECT_EQ(TemperatureText(70), L"0.70");
  EXPECT_EQ(TemperatureText(1), L"0.01");
  EXPECT_EQ(TemperatureText(200), L"2.00");
  EXPECT_EQ(DelayText(5), L"5 ms");
  EXPECT_EQ(ShownDelay(5), 5);
  EXPECT_EQ(ShownDelay(100), 100);
  EXPECT_EQ(ShownDelay(4), 25);
  EXPECT_EQ(ShownDelay(101), 25);
  EXPECT_EQ(ChatCountText(7, 20), L"3 / 20 messages");
  EXPECT_EQ(ChatCountText(0, 0), L"0 / 0 messages");
}

TEST(AiSettingsRulesTest, ResultLines) {
  EXPECT_EQ(ResultLineText(false, true), L"No API key configured.");
  EXPECT_EQ(ResultLineText(true, true), L"Connected");
  EXPECT_EQ(ResultLineText(true, false), L"Offline - no internet connection");
  EXPECT_EQ(TestResultText(true, L""), L"Connection successful!");
  EXPECT_EQ(TestResultText(false, L"HTTP 401: Invalid API Key"), L"Connection failed: HTTP 401: Invalid API Key");
  EXPECT_STREQ(kTestingText, L"Testing connection...");
  EXPECT_STREQ(kResetText, L"Reset to default values.");
}

TEST(AiSettingsRulesTest, CandidatesGoInAndBackCutToTheirFields) {
  auto record = std::make_unique<AppSettings>();
  SetDefaultSettings(*record);
  const AiCandidates before = TakeCandidates(*record);
  PutCandidates(*record, {2, L"acct", std::wstring(300, L'k'), L"mistral-small"});
  EXPECT_EQ(record->aiProvider, 2u);
  EXPECT_EQ(std::wstring(record->accountId), L"acct");
  EXPECT_EQ(std::wstring(record->apiKey), std::wstring(255, L'k'));
  EXPECT_EQ(std::wstring(record->modelName), L"mistral-small");
  PutCandidates(*record, before);  // a failed test puts all four back
  const AiCandidates after = TakeCandidates(*record);
  EXPECT_EQ(after.provider, before.provider);
  EXPECT_EQ(after.accountId, before.accountId);
  EXPECT_EQ(after.apiKey, before.apiKey);
  EXPECT_EQ(after.modelName, before.modelName);
}

TEST(AiSettingsRulesTest, ResetToDefaultsEmptiesTheKeyAndKeepsPromptAndEndpoint) {
  auto record = std::make_unique<AppSettings>();
  SetDefaultSettings(*record);
  PutCandidates(*record, {1, L"acct", L"secret", L"model"});
  record->temperatureHundredths = 150;
  record->maxTokens = 512;
  record->keepHistory = 0;
  record->historyLimit = 5;
  record->aiPanelPercent = 30;
  record->typingAnimation = 0;
  record->typingDelayMs = 90;
  wcscpy(record->systemPrompt, L"Be brief.");
  wcscpy(record->customEndpoint, L"https://localhost/x");
  ResetAiSettings(*record);
  EXPECT_EQ(record->aiProvider, 0u);
  EXPECT_EQ(std::wstring(record->accountId), L"");
  EXPECT_EQ(std::wstring(record->apiKey), L"");
  EXPECT_EQ(std::wstring(record->modelName), L"llama-3.1-8b-instant");
  EXPECT_EQ(record->temperatureHundredths, 70);
  EXPECT_EQ(record->maxTokens, 2048);
  EXPECT_EQ(record->keepHistory, 1);
  EXPECT_EQ(record->historyLimit, 20u);
  EXPECT_EQ(record->aiPanelPercent, 50);
  EXPECT_EQ(record->typingAnimation, 1);
  EXPECT_EQ(record->typingDelayMs, 25u);
  EXPECT_EQ(std::wstring(record->systemPrompt), L"Be brief.");
  EXPECT_EQ(std::wstring(record->customEndpoint), L"https://localhost/x");
}

}  // namespace
