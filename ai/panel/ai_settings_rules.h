// The AI Settings dialog's rules without a window: its tables, the texts of
// its read-outs and result line, and what each of its buttons does to the
// settings record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "settings/settings.h"

struct AiProviderRow {
  const wchar_t* name;
  const wchar_t* defaultModel;  // put into the model field when the provider is chosen
  bool needsKey;                // enables the key field; true for all three
};
constexpr size_t kAiProviderCount = 3;
extern const AiProviderRow kAiProviders[kAiProviderCount];

// A combo row and the value it stands for.
struct ValueRow {
  const wchar_t* label;
  int32_t value;
};
constexpr size_t kHistoryLimitRowCount = 5;
extern const ValueRow kHistoryLimitRows[kHistoryLimitRowCount];
constexpr size_t kPanelSizeRowCount = 3;
extern const ValueRow kPanelSizeRows[kPanelSizeRowCount];
constexpr size_t kMaxTokenRowCount = 5;
extern const ValueRow kMaxTokenRows[kMaxTokenRowCount];

// The row selected for a stored value: another history limit takes the
// first row; a panel size outside 30..50, or between the rows, the 50 row; a
// token limit that is no row, the 2048 row.
size_t HistoryLimitRow(int32_t value);
size_t PanelSizeRow(int32_t percent);
size_t MaxTokenRow(int32_t value);

constexpr int kTemperatureMin = 1, kTemperatureMax = 200;
constexpr int kDelayMin = 5, kDelayMax = 100, kDelayTick = 10, kDelayShownOutOfRange = 25;

// "0.70" for 70 hundredths.
std::wstring TemperatureText(int hundredths);
// "25 ms".
std::wstring DelayText(int ms);
// The slider's position for a stored delay: below 5 or above 100 shows 25.
int ShownDelay(uint32_t storedMs);
// "%d / %d messages": exchanges in the chat (messages halved) and the limit.
std::wstring ChatCountText(size_t messages, uint32_t limit);
// The result line at opening and after a change of network.
std::wstring ResultLineText(bool hasKey, bool online);
// The result line after a connection test.
std::wstring TestResultText(bool ok, const std::wstring& error);
constexpr wchar_t kTestingText[] = L"Testing connection...";
constexpr wchar_t kResetText[] = L"Reset to default values.";

// The four values a connection test tries: provider, account id, key, model.
struct AiCandidates {
  uint32_t provider = 0;
  std::wstring accountId, apiKey, modelName;
};
AiCandidates TakeCandidates(const AppSettings& record);
// Writes them into the record, each cut to its field.
void PutCandidates(AppSettings& record, const AiCandidates& candidates);

// Reset to Defaults: provider Groq, no account or key, its default model,
// temperature 0.70, 2048 tokens, history kept at 20, panel 50 %, typing on at
// 25 ms. The prompt and the custom endpoint stay.
void ResetAiSettings(AppSettings& record);
