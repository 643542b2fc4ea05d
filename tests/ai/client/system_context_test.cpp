// The system-information text from fixed facts, the file's write and read
// rules in the test's own folder, and the system text of a request.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ai/client/system_context.h"
#include "ai/client/system_info.h"
#include "settings/data_folders.h"
#include "settings/profiles.h"
#include "settings/settings.h"
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

// Everything of the knowledge text after the instance list.
const wchar_t kFixedKnowledge[] =
    L"\n# TAVRO EDITOR:\n"
    L"  Version: " TAVRO_VERSION_TEXT L" | Win32/Scintilla/Lexilla | Author: Dravo\n"
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
    L"  Manager: default instance only | parallel run: supported\n";

// The first line of text that starts with label, without its line feed;
// empty when there is none.
std::wstring LineOf(const std::wstring& text, const std::wstring& label) {
  const std::wstring lines = L"\n" + text;
  size_t at = lines.find(L"\n" + label);
  if (at == std::wstring::npos) return L"";
  ++at;
  return lines.substr(at, lines.find(L'\n', at) - at);
}

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// The test's folder without its closing backslash, as an application folder.
std::wstring AppFolder() {
  std::wstring folder = TestFolder();
  if (!folder.empty() && folder.back() == L'\\') folder.pop_back();
  return folder;
}

// A settings string field set to text, cut to fit with its terminator.
template <size_t N>
void SetField(wchar_t (&field)[N], const wchar_t* text) {
  size_t length = wcslen(text) < N - 1 ? wcslen(text) : N - 1;
  wmemcpy(field, text, length);
  field[length] = L'\0';
}

// A name no other process of this machine uses.
std::wstring UniqueName(const wchar_t* stem) {
  return stem + std::to_wstring(GetCurrentProcessId()) + L"x" + std::to_wstring(GetTickCount64() % 100000);
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

TEST(SystemContextTime, EveryMonthAndWeekdayInEnglish) {
  const wchar_t* months[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                             L"July",    L"August",   L"September", L"October", L"November", L"December"};
  const wchar_t* days[] = {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"};
  for (int month = 1; month <= 12; ++month) {
    int weekday = month % 7;
    std::wstring text = FormatTimeText(Time(987, month, 3, weekday, 0, 0, 0, 0));
    EXPECT_EQ(LineOf(text, L"CURRENT_DATE: "),
              std::wstring(L"CURRENT_DATE: ") + days[weekday] + L", " + months[month - 1] + L" 3, 0987");
    EXPECT_EQ(LineOf(text, L"CURRENT_DAY: "), std::wstring(L"CURRENT_DAY: ") + days[weekday]);
  }
  EXPECT_EQ(LineOf(FormatTimeText(Time(2026, 12, 31, 4, 23, 59, 58, 0)), L"CURRENT_TIME: "),
            L"CURRENT_TIME: 2026-12-31 23:59:58");
}

TEST(SystemContextTime, ThisMachinesClock) {
  std::wstring text = BuildTimeText();
  const wchar_t* labels[] = {L"CURRENT_TIME: ",   L"CURRENT_DATE: ",   L"CURRENT_DAY: ", L"CURRENT_HOUR: ",
                             L"CURRENT_MINUTE: ", L"CURRENT_SECOND: ", L"TIMEZONE_UTC: "};
  size_t at = 0;
  for (const wchar_t* label : labels) {
    ASSERT_EQ(text.compare(at, wcslen(label), label), 0) << Narrow(text);
    at = text.find(L'\n', at) + 1;
  }
  EXPECT_EQ(at, text.size());
  SYSTEMTIME now;
  GetLocalTime(&now);
  EXPECT_EQ(LineOf(text, L"CURRENT_TIME: ").substr(14, 4), std::to_wstring(now.wYear));
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
            L"Tavro_Version: " TAVRO_VERSION_TEXT L"\n");
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
            L"Tavro_Version: " TAVRO_VERSION_TEXT L"\n");
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

TEST(SystemContextMachine, OperatingSystemLine) {
  MachineFacts f = Desktop();
  EXPECT_EQ(LineOf(FormatMachineText(f), L"OS: "), L"OS: Windows 11 Professional Build 22631 x64");
  f.buildNumber = 22000;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"OS: "), L"OS: Windows 11 Professional Build 22000 x64");
  f.buildNumber = 21999;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"OS: "), L"OS: Windows 10 Professional Build 21999 x64");
  f.majorVersion = 6;
  f.buildNumber = 9600;
  f.x64 = false;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"OS: "), L"OS: Windows 6 Professional Build 9600 x86");
  // Without RtlGetVersion: "unknown" and build 0, whatever the record holds.
  f.versionFound = false;
  f.edition = L"unknown";
  EXPECT_EQ(LineOf(FormatMachineText(f), L"OS: "), L"OS: Windows unknown unknown Build 0 x86");
  EXPECT_EQ(LineOf(FormatMachineText(f), L"CPU_ARCH: "), L"CPU_ARCH: x86");
}

TEST(SystemContextMachine, GraphicsLine) {
  MachineFacts f = Desktop();
  std::wstring eighty = L"AMD Radeon";
  while (eighty.size() < 80) eighty += L'X';
  f.displayDeviceString = eighty;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"GPU_NAME: "), L"GPU_NAME: " + eighty);
  f.displayDeviceString = eighty + L"YZ";
  EXPECT_EQ(LineOf(FormatMachineText(f), L"GPU_NAME: "), L"GPU_NAME: " + eighty + L"...");
  f.displayDeviceFound = false;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"GPU_NAME: "), L"GPU_NAME: not available");
}

TEST(SystemContextMachine, AFailedDiskQueryDropsBothDiskLines) {
  MachineFacts f = Desktop();
  f.diskFound = false;
  std::wstring text = FormatMachineText(f);
  EXPECT_EQ(text.find(L"DISK_C_"), std::wstring::npos);
  EXPECT_NE(text.find(L"DISPLAY_SCALE: 150%\nBATTERY: not present (desktop/AC)\n"), std::wstring::npos) << Narrow(text);
}

TEST(SystemContextMachine, NoScreenContextDropsDpiAndScale) {
  MachineFacts f = Desktop();
  f.screenDcFound = false;
  std::wstring text = FormatMachineText(f);
  EXPECT_EQ(text.find(L"DISPLAY_DPI"), std::wstring::npos);
  EXPECT_EQ(text.find(L"DISPLAY_SCALE"), std::wstring::npos);
  EXPECT_NE(text.find(L"DISPLAY_RESOLUTION: 2560x1440\nDISK_C_FREE_GB: 100\n"), std::wstring::npos) << Narrow(text);
}

TEST(SystemContextMachine, AFailedPowerQueryDropsEveryBatteryLine) {
  MachineFacts f = Desktop();
  f.powerFound = false;
  std::wstring text = FormatMachineText(f);
  EXPECT_EQ(text.find(L"BATTERY"), std::wstring::npos);
  EXPECT_NE(text.find(L"DISK_C_TOTAL_GB: 500\nNETWORK_INTERNET: connected\n"), std::wstring::npos) << Narrow(text);
}

TEST(SystemContextMachine, FullBatteryPluggedIn) {
  MachineFacts f = Desktop();
  f.batteryFlag = 8;  // charging
  f.acLineStatus = 1;
  f.batteryLifePercent = 100;
  f.batteryLifeTime = 59;  // under a minute
  EXPECT_NE(FormatMachineText(f).find(L"\nBATTERY_AC: plugged in\nBATTERY_PERCENT: 100%\nBATTERY_REMAINING: 0 min\n"
                                      L"NETWORK_INTERNET: "),
            std::wstring::npos);
  f.batteryLifePercent = 254;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"BATTERY_PERCENT: "), L"BATTERY_PERCENT: 254%");
}

TEST(SystemContextMachine, UptimeHoursAndMinutes) {
  MachineFacts f = Desktop();
  f.tickCount = 50ULL * 3600000 + 59 * 60000 + 59999;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"Uptime: "), L"Uptime: 50h 59m");
  f.tickCount = 59999;
  EXPECT_EQ(LineOf(FormatMachineText(f), L"Uptime: "), L"Uptime: 0h 0m");
}

TEST(SystemContextKnowledge, TwoActiveProfiles) {
  EXPECT_EQ(FormatKnowledgeText({L"default", L"work"}),
            std::wstring(L"\n# TAVRO ACTIVE INSTANCES:\n"
                         L"ACTIVE_PROFILE: default\n"
                         L"ACTIVE_PROFILE: work\n"
                         L"ACTIVE_PROFILE_COUNT: 2\n") +
                kFixedKnowledge);
}

TEST(SystemContextKnowledge, NoActiveProfile) {
  EXPECT_EQ(FormatKnowledgeText({}),
            std::wstring(L"\n# TAVRO ACTIVE INSTANCES:\n"
                         L"ACTIVE_PROFILES: none\n") +
                kFixedKnowledge);
}

TEST(SystemContextKnowledge, OneActiveProfileIsCountedToo) {
  EXPECT_EQ(FormatKnowledgeText({L"work"}),
            std::wstring(L"\n# TAVRO ACTIVE INSTANCES:\nACTIVE_PROFILE: work\nACTIVE_PROFILE_COUNT: 1\n") +
                kFixedKnowledge);
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
        L"Computer: ", L"Uptime: ", L"Tavro_Version: " TAVRO_VERSION_TEXT L"\n", L"\n# TAVRO ACTIVE INSTANCES:\n",
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

TEST(SystemContextFile, HeaderTimeAndValidUtf8) {
  std::wstring path = TestPath(L"locally.qrl");
  WriteSystemInfoFileAt(path);
  std::string bytes = ReadFileBytes(path);
  ASSERT_GT(bytes.size(), 90u);
  // "# Generated: YYYY-MM-DD HH:MM:SS"
  const std::string stamp = bytes.substr(39, 19);
  for (size_t i = 0; i < stamp.size(); ++i) {
    char expected = i == 4 || i == 7 ? '-' : i == 10 ? ' ' : i == 13 || i == 16 ? ':' : '0';
    if (expected == '0') {
      EXPECT_TRUE(stamp[i] >= '0' && stamp[i] <= '9') << stamp;
    } else {
      EXPECT_EQ(stamp[i], expected) << stamp;
    }
  }
  EXPECT_GT(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                0),
            0);
  EXPECT_EQ(bytes.back(), '\n');
  EXPECT_NE(bytes.find("\n# AI INSTRUCTIONS:\n"), std::string::npos);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SystemContextFile, TheKeyStaysOutOfTheFile) {
  AppSettings saved = g_settings;
  const wchar_t marker[] = L"gsk_SECRETMARKER123";
  SetField(g_settings.apiKey, marker);
  std::wstring path = TestPath(L"locally.qrl");
  WriteSystemInfoFileAt(path);
  std::string bytes = ReadFileBytes(path);
  g_settings = saved;
  EXPECT_EQ(bytes.find("SECRETMARKER"), std::string::npos);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SystemContextFile, AFailedWriteLeavesTheFileWritableAndUnchanged) {
  std::wstring path = TestPath(L"locally.qrl");
  ASSERT_TRUE(WriteFileBytes(path, "last content"));
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
  HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  WriteSystemInfoFileAt(path);
  CloseHandle(reader);
  EXPECT_EQ(ReadFileBytes(path), "last content");
  DWORD attributes = GetFileAttributesW(path.c_str());
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_FALSE(attributes & FILE_ATTRIBUTE_READONLY);
}

TEST(SystemContextFile, NoFolderNoFileNoComplaint) {
  std::wstring path = TestPath(L"missing\\locally.qrl");
  WriteSystemInfoFileAt(path);
  EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
  // The read finds nothing even after its write: the stand-in text.
  EXPECT_EQ(ReadSystemInfoFileAt(path), "System information unavailable.");
}

TEST(SystemContextFile, TwoReadersShareTheFile) {
  std::wstring path = TestPath(L"shared.qrl");
  ASSERT_TRUE(WriteFileBytes(path, "facts\n"));
  HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  EXPECT_EQ(ReadSystemInfoFileAt(path), "facts\n");
  CloseHandle(reader);
}

TEST(SystemContextFile, TheDesignedPathInTheApplicationFolder) {
  const std::wstring app = GetAppDataFolder();
  ASSERT_FALSE(app.empty());
  const std::wstring path = app + L"\\locally.qrl";
  EXPECT_EQ(SystemInfoFilePath(), path);
  WriteSystemInfoFile();
  DWORD attributes = GetFileAttributesW(path.c_str());
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(attributes & FILE_ATTRIBUTE_READONLY);
  std::string bytes = ReadSystemInfoFile();
  EXPECT_EQ(bytes.rfind("# QORL System Information\n# Generated: ", 0), 0u);
  EXPECT_EQ(bytes, ReadFileBytes(path));
}

TEST(SystemContextCompose, BuiltFromTheFileAndTheSettings) {
  AppSettings saved = g_settings;
  SetField(g_settings.systemPrompt, L"");
  g_settings.aiProvider = 2;
  SetField(g_settings.modelName, L"mistral-small-latest");
  std::wstring text = BuildSystemContext();
  std::string file = ReadFileBytes(SystemInfoFilePath());
  g_settings = saved;
  EXPECT_EQ(text.rfind(L"[System Context]\n# QORL System Information\n# Generated: ", 0), 0u);
  // The emptied prompt: four line feeds between the file and the provider.
  const std::wstring tail =
      L"ACTIVE_PROFILE entries list above.\n\n\n\n\nAI_Provider: Mistral AI\nAI_Model: mistral-small-latest";
  ASSERT_GE(text.size(), tail.size());
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
  EXPECT_EQ(text, ComposeSystemContext(file, L"", 2, L"mistral-small-latest"));
}

TEST(SystemContextCompose, SettingsFieldsWithoutTerminatorStopAtTheirEnd) {
  AppSettings saved = g_settings;
  for (wchar_t& c : g_settings.modelName) c = L'm';
  SetField(g_settings.systemPrompt, L"Prompt");
  g_settings.aiProvider = 7;
  std::wstring text = BuildSystemContext();
  g_settings = saved;
  const std::wstring tail = L"\n\nAI_Provider: Unknown\nAI_Model: " + std::wstring(128, L'm');
  ASSERT_GE(text.size(), tail.size());
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
  EXPECT_NE(text.find(L"\n\nPrompt\n\nAI_Provider: Unknown"), std::wstring::npos);
}

TEST(SystemContextProfiles, ActiveAmongAGivenListInItsOrder) {
  const std::wstring folder = AppFolder() + L"\\profiles";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  const std::wstring running = UniqueName(L"sysctxrun");
  const std::wstring idle = UniqueName(L"sysctxidle");
  const std::wstring unlisted = UniqueName(L"sysctxnofile");
  for (const std::wstring& name : {running, idle}) {
    ASSERT_TRUE(WriteFileBytes(folder + L"\\tavro_" + name + L".cfg", ""));
  }
  HANDLE runningMutex = CreateMutexW(nullptr, FALSE, (L"Local\\Tavro_Instance_" + running).c_str());
  HANDLE unlistedMutex = CreateMutexW(nullptr, FALSE, (L"Local\\Tavro_Instance_" + unlisted).c_str());
  ASSERT_NE(runningMutex, nullptr);
  ASSERT_NE(unlistedMutex, nullptr);

  auto active = ListActiveProfilesAmong(ListProfilesIn(AppFolder(), L""));
  ASSERT_EQ(active.size(), 1u);
  EXPECT_EQ(active[0].first, running);
  EXPECT_EQ(active[0].second, L"Local\\Tavro_Instance_" + running);

  // Given by hand: the list's order holds, and a name without a file counts
  // as soon as it is listed.
  std::vector<ProfileInfo> given = {{unlisted, L"", false}, {idle, L"", false}, {running, L"", true}};
  active = ListActiveProfilesAmong(given);
  ASSERT_EQ(active.size(), 2u);
  EXPECT_EQ(active[0].first, unlisted);
  EXPECT_EQ(active[1].first, running);

  CloseHandle(unlistedMutex);
  CloseHandle(runningMutex);
  EXPECT_TRUE(ListActiveProfilesAmong(ListProfilesIn(AppFolder(), L"")).empty());
}

TEST(SystemContextProfiles, AProfileOfTheStoreWithARunningInstance) {
  const std::wstring profiles = GetProfilesFolder();
  ASSERT_FALSE(profiles.empty());
  const std::wstring name = UniqueName(L"sysctx");
  const std::wstring file = profiles + L"\\tavro_" + name + L".cfg";
  ASSERT_TRUE(WriteFileBytes(file, ""));
  HANDLE mutex = CreateMutexW(nullptr, FALSE, (L"Local\\Tavro_Instance_" + name).c_str());
  ASSERT_NE(mutex, nullptr);
  bool listed = false;
  for (const auto& entry : ListActiveProfiles()) {
    if (entry.first == name) listed = entry.second == L"Local\\Tavro_Instance_" + name;
  }
  std::wstring knowledge = BuildKnowledgeText();
  CloseHandle(mutex);
  bool listedAfter = false;
  for (const auto& entry : ListActiveProfiles()) listedAfter = listedAfter || entry.first == name;
  DeleteFileW(file.c_str());
  EXPECT_TRUE(listed);
  EXPECT_NE(knowledge.find(L"\nACTIVE_PROFILE: " + name + L"\n"), std::wstring::npos);
  EXPECT_NE(knowledge.find(L"\nACTIVE_PROFILE_COUNT: "), std::wstring::npos);
  EXPECT_FALSE(listedAfter);
}
