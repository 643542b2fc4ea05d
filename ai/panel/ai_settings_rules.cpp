#include "ai/panel/ai_settings_rules.h"

#include <cwchar>
#include <memory>

#include "ai/client/providers.h"

const AiProviderRow kAiProviders[kAiProviderCount] = {
    {ProviderDisplayName(kProviderGroq), kDefaultModelName, true},
    {ProviderDisplayName(kProviderCloudflare), kCloudflareDefaultModel, true},
    {ProviderDisplayName(kProviderMistral), L"mistral-small-latest", true},
};

const ValueRow kHistoryLimitRows[kHistoryLimitRowCount] = {
    {L"Disabled (single-turn)", 0}, {L"5 messages", 5}, {L"10 messages", 10}, {L"20 messages", 20},
    {L"50 messages", 50}};

const ValueRow kPanelSizeRows[kPanelSizeRowCount] = {
    {L"30% (Editor 70%)", 30}, {L"40% (Editor 60%)", 40}, {L"50% (Editor 50%)", 50}};

const ValueRow kMaxTokenRows[kMaxTokenRowCount] = {
    {L"512", 512}, {L"1024", 1024}, {L"2048", 2048}, {L"4096", 4096}, {L"8192", 8192}};

namespace {

size_t RowOf(const ValueRow* rows, size_t count, int32_t value, size_t otherwise) {
  for (size_t i = 0; i < count; ++i)
    if (rows[i].value == value) return i;
  return otherwise;
}

void CopyField(wchar_t* field, size_t units, const std::wstring& value) {
  const size_t length = value.size() < units ? value.size() : units - 1;
  wmemcpy(field, value.data(), length);
  wmemset(field + length, L'\0', units - length);
}

}  // namespace

size_t HistoryLimitRow(int32_t value) { return RowOf(kHistoryLimitRows, kHistoryLimitRowCount, value, 0); }

size_t PanelSizeRow(int32_t percent) {
  return RowOf(kPanelSizeRows, kPanelSizeRowCount, percent, kPanelSizeRowCount - 1);
}

size_t MaxTokenRow(int32_t value) { return RowOf(kMaxTokenRows, kMaxTokenRowCount, value, 2); }

std::wstring TemperatureText(int hundredths) {
  wchar_t text[32];
  swprintf(text, 32, L"%.2f", hundredths / 100.0);
  return text;
}

std::wstring DelayText(int ms) { return std::to_wstring(ms) + L" ms"; }

int ShownDelay(uint32_t storedMs) {
  return storedMs < static_cast<uint32_t>(kDelayMin) || storedMs > static_cast<uint32_t>(kDelayMax)
             ? kDelayShownOutOfRange
             : static_cast<int>(storedMs);
}

std::wstring ChatCountText(size_t messages, uint32_t limit) {
  return std::to_wstring(messages / 2) + L" / " + std::to_wstring(static_cast<int32_t>(limit)) + L" messages";
}

std::wstring ResultLineText(bool hasKey, bool online) {
  if (!hasKey) return L"No API key configured.";
  return online ? L"Connected" : L"Offline - no internet connection";
}

std::wstring TestResultText(bool ok, const std::wstring& error) {
  return ok ? L"Connection successful!" : L"Connection failed: " + error;
}

AiCandidates TakeCandidates(const AppSettings& record) {
  return {record.aiProvider, record.accountId, record.apiKey, record.modelName};
}

void PutCandidates(AppSettings& record, const AiCandidates& candidates) {
  record.aiProvider = candidates.provider;
  CopyField(record.accountId, sizeof(record.accountId) / sizeof(wchar_t), candidates.accountId);
  CopyField(record.apiKey, sizeof(record.apiKey) / sizeof(wchar_t), candidates.apiKey);
  CopyField(record.modelName, sizeof(record.modelName) / sizeof(wchar_t), candidates.modelName);
}

void ResetAiSettings(AppSettings& record) {
  const auto defaults = std::make_unique<AppSettings>();
  SetDefaultSettings(*defaults);
  PutCandidates(record, TakeCandidates(*defaults));
  record.temperatureHundredths = defaults->temperatureHundredths;
  record.maxTokens = defaults->maxTokens;
  record.keepHistory = defaults->keepHistory;
  record.historyLimit = defaults->historyLimit;
  record.aiPanelPercent = defaults->aiPanelPercent;
  record.typingAnimation = defaults->typingAnimation;
  record.typingDelayMs = defaults->typingDelayMs;
}
