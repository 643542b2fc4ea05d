// The text of the system-information file from plain facts: the clock, the
// machine, the running profiles and the fixed knowledge and instructions.
// No system calls here; system_context.cpp gathers the facts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tavro_version.h"

// A local date and time, as the clock gives it.
struct LocalTimeFacts {
  int year = 0, month = 1, day = 1, weekday = 0;  // weekday 0 is Sunday
  int hour = 0, minute = 0, second = 0;
  int32_t biasMinutes = 0;  // standard bias: UTC = local + bias
  bool zoneKnown = false;   // the zone query answered 1 or 2
};

// Everything the machine block reports, with a flag per query that can fail.
struct MachineFacts {
  bool versionFound = false;  // RtlGetVersion was there
  uint32_t majorVersion = 0;
  uint32_t buildNumber = 0;
  std::wstring edition = L"unknown";
  bool x64 = false;
  std::wstring localeName;
  std::wstring processorName;  // as the registry holds it
  uint32_t processorMhz = 0;
  uint32_t logicalProcessors = 0;
  uint64_t ramTotal = 0;
  uint64_t ramAvailable = 0;
  uint32_t memoryLoad = 0;
  bool displayDeviceFound = false;
  std::wstring displayDeviceString;
  int monitors = 0;
  int screenWidth = 0;
  int screenHeight = 0;
  bool screenDcFound = false;
  int dpi = 0;
  bool diskFound = false;
  uint64_t diskFree = 0;
  uint64_t diskTotal = 0;
  bool powerFound = false;
  uint8_t batteryFlag = 0;
  uint8_t acLineStatus = 0;
  uint8_t batteryLifePercent = 0;
  uint32_t batteryLifeTime = 0;
  bool internetConnected = false;
  uint32_t connectionFlags = 0;
  std::wstring userName;
  std::wstring computerName;
  uint64_t tickCount = 0;
};

// "CURRENT_TIME: ..." down to "TIMEZONE_UTC: ...", each line ending in LF.
std::wstring FormatTimeText(const LocalTimeFacts& time);

// "Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz" -> "Intel Core i7-9700K CPU".
std::wstring CleanProcessorName(const std::wstring& raw);

// "11", "10", another major version, or "unknown".
std::wstring WindowsVersionWord(const MachineFacts& facts);

// A display device string of more than 80 units: its first 80 and "...".
std::wstring ShortDeviceName(const std::wstring& name);

// The lines from "OS: " to "Tavro_Version: ".
std::wstring FormatMachineText(const MachineFacts& facts);

// The instance list and the fixed knowledge of providers and profiles.
std::wstring FormatKnowledgeText(const std::vector<std::wstring>& activeProfiles);

// The closing rules for the model.
std::wstring InstructionsText();

// The whole body of the file: time, machine, knowledge, instructions.
std::wstring FormatSystemInfoText(const LocalTimeFacts& time, const MachineFacts& facts,
                                  const std::vector<std::wstring>& activeProfiles);

// The three header lines with the time of writing.
std::wstring FormatSystemInfoHeader(const LocalTimeFacts& time);

// The system text of a request from the file's bytes, the user's prompt and
// the provider in use: "[System Context]\n", file, "\n\n", prompt (or the
// prompt alone when the file read empty), then the provider and model lines.
std::wstring ComposeSystemContext(const std::string& fileUtf8, const std::wstring& systemPrompt, uint32_t provider,
                                  const std::wstring& modelName);
