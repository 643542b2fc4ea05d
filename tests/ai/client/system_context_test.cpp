// The system-information text from fixed facts, the file's write and read
// rules in the test's own folder, and the system text of a request.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "ai/client/system_context.h"
#include "ai/client/system_info.h"
#include "tests/common/test_folder.h"

namespace {

LocalTimeFacts Time(int year, int month, int day, int weekday, int hour, int minute, int second, int bias,
                    bool known = true) {
  LocalTimeFacts t;
  t.year = year;
  t.month = month;
  t.day = day;
  t.weekday = weekday;
  t.hour = hour;
  t.minute = minute;
  t.second = second;
  t.biasMinutes = bias;
  t.zoneKnown = known;
  return t;
}

// A desktop machine with every query answered.
MachineFacts Desktop() {
  MachineFacts f;
  f.versionFound = true;
  f.majorVersion = 10;
  f.buildNumber = 22631;
  f.edition = L"Professional";
  f.x64 = true;
  f.localeName = L"de-DE";
  f.processorName = L"Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz";
  f.processorMhz = 3600;
  f.logicalProcessors = 8;
  f.ramTotal = 34359738368ULL - 1;  // just under 32 GiB: rounded down
  f.ramAvailable = 17179869184ULL;
  f.memoryLoad = 47;
  f.displayDeviceFound = true;
  f.displayDeviceString = L"NVIDIA GeForce RTX 2070";
  f.monitors = 2;
  f.screenWidth = 2560;
  f.screenHeight = 1440;
  f.screenDcFound = true;
  f.dpi = 144;
  f.diskFound = true;
  f.diskFree = 107374182400ULL;
  f.diskTotal = 536870912000ULL;
  f.powerFound = true;
  f.batteryFlag = 128;
  f.acLineStatus = 1;
  f.batteryLifePercent = 255;
  f.batteryLifeTime = 0xFFFFFFFFu;
  f.internetConnected = true;
  f.connectionFlags = 2 | 4;
  f.userName = L"anna";
  f.computerName = L"STUDIO";
  f.tickCount = 3ULL * 3600000 + 25 * 60000 + 59000;
  return f;
}



}  // namespace

TEST(SystemContextTime, ExactBlockInEnglish) {
  EXPECT_EQ(FormatTimeText(Time(2026, 11, 22, 0, 9, 5, 7, -60)),
            L"CURRENT_TIME: 2026-11-22 09:05:07\n"
            L"CURRENT_DATE: Sunday, November 22, 2026\n"
            L"CURRENT_DAY: Sunday\n"
            L"CURRENT_HOUR: 09\n"
            L"CURRENT_MINUTE: 05\n"
            L"CURRENT_SECOND: 07\n"
            L"TIMEZONE_UTC: +1.0\n");
}

TEST(SystemContextTime, ZoneOffsets) {
  auto zoneLine = [](int bias, bool known) {
    std::wstring text = FormatTimeText(Time(2026, 7, 4, 6, 23, 59, 59, bias, known));
    return text.substr(text.find(L"TIMEZONE_UTC: "));
  };
  // Summer time in UTC+1: the standard bias still says +1.0.
  EXPECT_EQ(zoneLine(-60, true), L"TIMEZONE_UTC: +1.0\n");
  EXPECT_EQ(zoneLine(-330, true), L"TIMEZONE_UTC: +5.5\n");
  EXPECT_EQ(zoneLine(300, true), L"TIMEZONE_UTC: -5.0\n");
  EXPECT_EQ(zoneLine(0, true), L"TIMEZONE_UTC: +0.0\n");
  EXPECT_EQ(zoneLine(-60, false), L"TIMEZONE_UTC: +0.0\n");
  EXPECT_NE(FormatTimeText(Time(2026, 7, 4, 6, 23, 59, 59, 0)).find(L"CURRENT_DATE: Saturday, July 4, 2026\n"),
            std::wstring::npos);
}

TEST(SystemContextMachine, ProcessorNameCleaning) {
  EXPECT_EQ(CleanProcessorName(L"Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz"), L"Intel Core i7-9700K CPU");
  EXPECT_EQ(CleanProcessorName(L"AMD Ryzen 7 5800X 8-Core Processor"), L"AMD Ryzen 7 5800X 8-Core Processor");
  EXPECT_EQ(CleanProcessorName(L"\t  AMD Ryzen 7 5800X 8-Core Processor \t"), L"AMD Ryzen 7 5800X 8-Core Processor");
  // Only the first of each mark goes, in the order (R), (TM), (r), (tm).
  EXPECT_EQ(CleanProcessorName(L"A(R) B(R) C(tm)(r)"), L"A B(R) C");
  EXPECT_EQ(CleanProcessorName(L""), L"");
  EXPECT_EQ(CleanProcessorName(L"@ 3GHz"), L"");
}

TEST(SystemContextMachine, WindowsVersionWords) {
  MachineFacts f;
  EXPECT_EQ(WindowsVersionWord(f), L"unknown");
  f.versionFound = true;
  f.majorVersion = 10;
  f.buildNumber = 22000;
  EXPECT_EQ(WindowsVersionWord(f), L"11");
  f.buildNumber = 21999;
  EXPECT_EQ(WindowsVersionWord(f), L"10");
  f.majorVersion = 6;
  EXPECT_EQ(WindowsVersionWord(f), L"6");
}

TEST(SystemContextMachine, DeviceNameOfEightyUnitsStays) {
  std::wstring eighty(80, L'G');
  EXPECT_EQ(ShortDeviceName(eighty), eighty);
  EXPECT_EQ(ShortDeviceName(eighty + L"H"), eighty + L"...");
}

TEST(SystemContextMachine, DesktopBlockExactly) {
  EXPECT_EQ(FormatMachineText(Desktop()),
            L"OS: Windows 11 Professional Build 22631 x64\n"
            L"OS_LANGUAGE: de-DE\n"
            L"CPU_NAME: Intel Core i7-9700K CPU\n"
            L"CPU_CORES: 8\n"
            L"CPU_SPEED_MHZ: 3600\n"
            L"CPU_ARCH: x64\n"
            L"RAM_TOTAL_GB: 31\n"
            L"RAM_AVAILABLE_GB: 16\n"
            L"RAM_USED_PERCENT: 47\n"
            L"GPU_NAME: NVIDIA GeForce RTX 2070\n"
            L"DISPLAY_MONITORS: 2\n"
            L"DISPLAY_RESOLUTION: 2560x1440\n"
            L"DISPLAY_DPI: 144\n"
            L"DISPLAY_SCALE: 150%\n"
            L"DISK_C_FREE_GB: 100\n"
            L"DISK_C_TOTAL_GB: 500\n"
            L"BATTERY: not present (desktop/AC)\n"
            L"NETWORK_INTERNET: connected\n"
            L"NETWORK_TYPE: LAN/Ethernet\n"
            L"User: anna\n"
            L"Computer: STUDIO\n"
            L"Uptime: 3h 25m\n"
            L"Tavro_Version: 1.1.0.0\n");
}

TEST(SystemContextMachine, FailedQueriesDropOrDefaultTheirLines) {
  MachineFacts f;  // nothing answered
  EXPECT_EQ(FormatMachineText(f),
            L"OS: Windows unknown unknown Build 0 x86\n"
            L"OS_LANGUAGE: \n"
            L"CPU_NAME: \n"
            L"CPU_CORES: 0\n"
            L"CPU_SPEED_MHZ: 0\n"
            L"CPU_ARCH: x86\n"
            L"RAM_TOTAL_GB: 0\n"
            L"RAM_AVAILABLE_GB: 0\n"
            L"RAM_USED_PERCENT: 0\n"
            L"GPU_NAME: not available\n"
            L"DISPLAY_MONITORS: 0\n"
            L"DISPLAY_RESOLUTION: 0x0\n"
            L"NETWORK_INTERNET: disconnected\n"
            L"User: \n"
            L"Computer: \n"
            L"Uptime: 0h 0m\n"
            L"Tavro_Version: 1.1.0.0\n");
}

TEST(SystemContextMachine, ScaleRoundsTowardZero) {
  MachineFacts f = Desktop();
  f.dpi = 120;
  EXPECT_NE(FormatMachineText(f).find(L"DISPLAY_DPI: 120\nDISPLAY_SCALE: 125%\n"), std::wstring::npos);
  f.dpi = 97;
  EXPECT_NE(FormatMachineText(f).find(L"DISPLAY_SCALE: 101%\n"), std::wstring::npos);
}

TEST(SystemContextMachine, BatteryLines) {
  MachineFacts f = Desktop();
  EXPECT_EQ(FormatMachineText(f).find(L"BATTERY_AC"), std::wstring::npos);  // no battery, no AC line
  f.batteryFlag = 1;
  f.acLineStatus = 0;
  f.batteryLifePercent = 83;
  f.batteryLifeTime = 5400;
  std::wstring text = FormatMachineText(f);
  EXPECT_NE(text.find(L"DISK_C_TOTAL_GB: 500\nBATTERY_AC: on battery\nBATTERY_PERCENT: 83%\nBATTERY_REMAINING: 90 "
                      L"min\nNETWORK_INTERNET: "),
            std::wstring::npos)
      << text;
  f.acLineStatus = 255;  // unknown counts as on battery
  f.batteryLifePercent = 255;
  f.batteryLifeTime = 0xFFFFFFFFu;
  text = FormatMachineText(f);
  EXPECT_NE(text.find(L"BATTERY_AC: on battery\nBATTERY_PERCENT: not available\nNETWORK_INTERNET: "),
            std::wstring::npos)
      << text;
  f.acLineStatus = 1;
  EXPECT_NE(FormatMachineText(f).find(L"BATTERY_AC: plugged in\n"), std::wstring::npos);
  f.powerFound = false;
  EXPECT_EQ(FormatMachineText(f).find(L"BATTERY"), std::wstring::npos);
}

TEST(SystemContextMachine, NetworkTypeTakesTheFirstFlagInOrder) {
  MachineFacts f = Desktop();
  auto typeLine = [&](uint32_t flags) {
    f.connectionFlags = flags;
    std::wstring text = FormatMachineText(f);
    size_t at = text.find(L"NETWORK_TYPE: ");
    return at == std::wstring::npos ? std::wstring() : text.substr(at, text.find(L'\n', at) - at);
  };
  EXPECT_EQ(typeLine(1 | 2 | 4 | 16), L"NETWORK_TYPE: modem");
  EXPECT_EQ(typeLine(2 | 16), L"NETWORK_TYPE: LAN/Ethernet");
  EXPECT_EQ(typeLine(4 | 16), L"NETWORK_TYPE: proxy");
  EXPECT_EQ(typeLine(16), L"NETWORK_TYPE: RAS/VPN");
  EXPECT_EQ(typeLine(8 | 32), L"NETWORK_TYPE: unknown");
  f.internetConnected = false;
  EXPECT_EQ(typeLine(2), L"");
}

TEST(SystemContextKnowledge, TwoActiveProfiles) {
  std::wstring text = FormatKnowledgeText({L"default", L"work"});
  EXPECT_EQ(text,
            L"\n# TAVRO ACTIVE INSTANCES:\n"
            L"ACTIVE_PROFILE: default\n"
            L"ACTIVE_PROFILE: work\n"
            L"ACTIVE_PROFILE_COUNT: 2\n"
            L"\n# TAVRO EDITOR:\n"
            L"  Version: 1.1.0.0 | Win32/Scintilla/Lexilla | Author: Dravo\n"
            L"  Free for personal use\n"
            L"\n# CLOUDFLARE WORKERS AI (May 2026):\n"
            L"  @cf/meta/llama-3.1-8b-instruct               | default\n"
            L"  @cf/meta/llama-3.3-70b-instruct-fp8-fast     | higher quality\n"
            L"  @cf/meta/llama-4-scout-17b-16e-instruct      | multimodal\n"
            L"  @cf/mistralai/mistral-small-3.1-24b-instruct | vision+tools\n"
            L"  @cf/zai-org/glm-4.7-flash                    | 131K context\n"
            L"  @cf/qwen/qwen3-30b-a3b-fp8                   | efficient\n"
            L"  @cf/nvidia/nemotron-3-120b-a12b              | agentic tasks\n"
            L"  @cf/openai/gpt-oss-120b                      | open-weight\n"
            L"  @cf/deepseek-ai/deepseek-r1-distill-qwen-32b | reasoning\n"
            L"  Registration: https://dash.cloudflare.com | Free: 10,000 neurons/day\n"
            L"\n# TAVRO AI PROVIDERS:\n"
            L"  Groq:      14,400 req/day | https://console.groq.com/keys\n"
            L"  Cloudflare: 10,000 neurons/day | https://dash.cloudflare.com\n"
            L"  Mistral:   1B tokens/month | https://console.mistral.ai\n"
            L"\n# TAVRO PROFILES:\n"
            L"  Each profile: own .cfg, API key, chat history\n"
            L"  Default: %APPDATA%\\Tavro\\tavro.cfg\n"
            L"  Custom:  %APPDATA%\\Tavro\\profiles\\tavro_name.cfg\n"
            L"  Manager: default instance only | parallel run: supported\n");
}

TEST(SystemContextKnowledge, NoActiveProfile) {
  std::wstring text = FormatKnowledgeText({});
  EXPECT_EQ(text.rfind(L"\n# TAVRO ACTIVE INSTANCES:\nACTIVE_PROFILES: none\n\n# TAVRO EDITOR:\n  Version", 0), 0u);
  EXPECT_EQ(text.find(L"ACTIVE_PROFILE_COUNT"), std::wstring::npos);
}

TEST(SystemContextKnowledge, InstructionsCloseTheBody) {
  const std::wstring instructions =
      L"\n# AI INSTRUCTIONS:\n"
      L"# - You MAY report any data explicitly listed above.\n"
      L"# - Fields marked 'not available' must be reported as 'not available'.\n"
      L"# - Do NOT add, infer, or guess any data not listed above.\n"
      L"# - Do NOT use training knowledge to fill in hardware details.\n"
      L"# - Do NOT list or mention fields marked 'not available' unless user explicitly asks.\n"
      L"# - For Cloudflare models: use ONLY the list from TAVRO KNOWLEDGE BASE above.\n"
      L"# - For active profiles: report ONLY what ACTIVE_PROFILE entries list above.\n";
  EXPECT_EQ(InstructionsText(), instructions);
  LocalTimeFacts t = Time(2026, 1, 2, 5, 3, 4, 5, 0);
  std::wstring body = FormatSystemInfoText(t, Desktop(), {L"default"});
  EXPECT_EQ(body, FormatTimeText(t) + FormatMachineText(Desktop()) + FormatKnowledgeText({L"default"}) + instructions);
  EXPECT_EQ(FormatSystemInfoHeader(t),
            L"# QORL System Information\n# Generated: 2026-01-02 03:04:05\n# DO NOT EDIT - Auto-generated\n");
}

TEST(SystemContextCompose, FileAndPromptAndProvider) {
  EXPECT_EQ(ComposeSystemContext("A\xC3\xA9", L"Be kind.", 1, L"@cf/x"),
            L"[System Context]\nA\u00E9\n\nBe kind.\n\nAI_Provider: Cloudflare AI\nAI_Model: @cf/x");
}

TEST(SystemContextCompose, EmptiedPromptLeavesFourLineFeeds) {
  EXPECT_EQ(ComposeSystemContext("A", L"", 0, L"m"), L"[System Context]\nA\n\n\n\nAI_Provider: Groq\nAI_Model: m");
}

TEST(SystemContextCompose, EmptyFileGivesThePromptAlone) {
  EXPECT_EQ(ComposeSystemContext("", L"P", 2, L""), L"P\n\nAI_Provider: Mistral AI\nAI_Model: ");
  EXPECT_EQ(ComposeSystemContext("", L"P", 9, L"m"), L"P\n\nAI_Provider: Unknown\nAI_Model: m");
}

TEST(SystemContextFile, WrittenWithHeaderUtf8LfAndReadOnly) {
  std::wstring path = TestPath(L"locally.qrl");
  WriteSystemInfoFileAt(path);
  std::string bytes = ReadFileBytes(path);
  EXPECT_EQ(bytes.rfind("# QORL System Information\n# Generated: ", 0), 0u) << bytes.substr(0, 80);
  EXPECT_EQ(bytes.substr(39 + 19, 32), "\n# DO NOT EDIT - Auto-generated\n");
  EXPECT_EQ(bytes.substr(90, 14), "CURRENT_TIME: ");
  EXPECT_EQ(bytes.find('\r'), std::string::npos);
  EXPECT_NE(bytes.substr(0, 3), "\xEF\xBB\xBF");
  DWORD attributes = GetFileAttributesW(path.c_str());
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_READONLY);
  // Rewritten over its own read-only attribute.
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  ASSERT_TRUE(WriteFileBytes(path, "old"));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  WriteSystemInfoFileAt(path);
  EXPECT_EQ(ReadFileBytes(path).rfind("# QORL System Information\n", 0), 0u);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SystemContextFile, ThisMachinesLinesInOrder) {
  std::wstring text = BuildSystemInfoText();
  size_t at = 0;
  for (const wchar_t* label :
       {L"CURRENT_TIME: ", L"CURRENT_DATE: ", L"CURRENT_DAY: ", L"CURRENT_HOUR: ", L"CURRENT_MINUTE: ",
        L"CURRENT_SECOND: ", L"TIMEZONE_UTC: ", L"OS: Windows ", L"OS_LANGUAGE: ", L"CPU_NAME: ", L"CPU_CORES: ",
        L"CPU_SPEED_MHZ: ", L"CPU_ARCH: x64\n", L"RAM_TOTAL_GB: ", L"RAM_AVAILABLE_GB: ", L"RAM_USED_PERCENT: ",
        L"GPU_NAME: ", L"DISPLAY_MONITORS: ", L"DISPLAY_RESOLUTION: ", L"NETWORK_INTERNET: ", L"User: ",
        L"Computer: ", L"Uptime: ", L"Tavro_Version: 1.1.0.0\n", L"\n# TAVRO ACTIVE INSTANCES:\n",
        L"\n# TAVRO EDITOR:\n", L"\n# AI INSTRUCTIONS:\n"}) {
    size_t found = text.find(label, at);
    ASSERT_NE(found, std::wstring::npos) << "missing or out of order: " << std::string(label, label + wcslen(label));
    at = found;
  }
}

TEST(SystemContextFile, MissingFileIsWrittenByTheRead) {
  std::wstring path = TestPath(L"fresh.qrl");
  std::string bytes = ReadSystemInfoFileAt(path);
  EXPECT_EQ(bytes.rfind("# QORL System Information\n", 0), 0u);
  EXPECT_EQ(bytes, ReadFileBytes(path));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SystemContextFile, SizeLimitIs65536Bytes) {
  std::wstring path = TestPath(L"big.qrl");
  ASSERT_TRUE(WriteFileBytes(path, std::string(65536, 'x')));
  EXPECT_EQ(ReadSystemInfoFileAt(path), std::string(65536, 'x'));
  ASSERT_TRUE(WriteFileBytes(path, std::string(65537, 'x')));
  EXPECT_EQ(ReadSystemInfoFileAt(path), "System information file error.");
}

TEST(SystemContextFile, AnEmptyFileReadsEmpty) {
  std::wstring path = TestPath(L"empty.qrl");
  ASSERT_TRUE(WriteFileBytes(path, ""));
  EXPECT_EQ(ReadSystemInfoFileAt(path), "");
}

TEST(SystemContextFile, AFileHeldByAWriterIsUnavailable) {
  std::wstring path = TestPath(L"held.qrl");
  ASSERT_TRUE(WriteFileBytes(path, "content"));
  HANDLE writer = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(writer, INVALID_HANDLE_VALUE);
  EXPECT_EQ(ReadSystemInfoFileAt(path), "System information unavailable.");
  // And a writer that meets a reader gives up without a word.
  CloseHandle(writer);
  HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  WriteSystemInfoFileAt(path);
  CloseHandle(reader);
  EXPECT_EQ(ReadFileBytes(path), "content");
}

TEST(SystemContextProfiles, ActiveProfilesAreThoseWithAnInstanceMutex) {
  auto active = ListActiveProfiles();
  for (const auto& entry : active) EXPECT_NE(entry.first, L"default");
  HANDLE mutex = CreateMutexW(nullptr, FALSE, L"Local\\Tavro_Instance_default");
  ASSERT_NE(mutex, nullptr);
  active = ListActiveProfiles();
  ASSERT_FALSE(active.empty());
  EXPECT_EQ(active[0].first, L"default");
  EXPECT_EQ(active[0].second, L"Local\\Tavro_Instance_default");
  EXPECT_NE(BuildKnowledgeText().find(L"ACTIVE_PROFILE: default\n"), std::wstring::npos);
  CloseHandle(mutex);
  for (const auto& entry : ListActiveProfiles()) EXPECT_NE(entry.first, L"default");
}
