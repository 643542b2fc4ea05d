// The system-information file "locally.qrl" in the application folder: one
// file for all profiles, rewritten on the main thread from time to time and
// read by the request worker to tell the model about its machine.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ai/client/system_info.h"
#include "settings/profiles.h"

constexpr wchar_t kSystemInfoFileName[] = L"locally.qrl";
constexpr unsigned long kSystemInfoMaxBytes = 65536;  // more than this counts as damaged

// The clock and zone right now.
LocalTimeFacts ReadLocalTime();
std::wstring BuildTimeText();

// The machine facts right now; failed queries leave their defaults.
MachineFacts ReadMachineFacts();

// Profiles of this user whose instance mutex exists: name and mutex name,
// in the profile store's order, this instance's own profile included.
std::vector<std::pair<std::wstring, std::wstring>> ListActiveProfiles();

// The same test over a given listing of profiles.
std::vector<std::pair<std::wstring, std::wstring>> ListActiveProfilesAmong(const std::vector<ProfileInfo>& profiles);

std::wstring BuildKnowledgeText();
std::wstring BuildSystemInfoText();

// <app>\locally.qrl; empty without an application folder.
std::wstring SystemInfoFilePath();

// Header and body, UTF-8 without BOM, LF line ends, read-only afterwards.
// Failures are silent: the file keeps its last content.
void WriteSystemInfoFile();
void WriteSystemInfoFileAt(const std::wstring& path);

// The file's bytes, writing it first when it is missing; the designed
// stand-in texts when it can't be opened, read or is too large.
std::string ReadSystemInfoFile();
std::string ReadSystemInfoFileAt(const std::wstring& path);

// The system text of a request, from the file and the settings record.
std::wstring BuildSystemContext();
