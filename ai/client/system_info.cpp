#include "ai/client/system_info.h"

#include <cstdio>

#include "ai/client/chat_request.h"
#include "base/text_convert.h"
#include "ai/client/providers.h"

namespace {

const wchar_t* const kWeekdays[] = {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday",
                                    L"Saturday"};
const wchar_t* const kMonths[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                  L"July",    L"August",   L"September", L"October", L"November", L"December"};

// Numbers only: %s means different things to the C libraries in play, so
// texts are joined by hand.
std::wstring Number(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof(buffer), format, value);
  return std::wstring(buffer, buffer + std::char_traits<char>::length(buffer));
}

std::wstring Padded(long long value, int width) {
  std::wstring text = std::to_wstring(value < 0 ? -value : value);
  if (static_cast<int>(text.size()) < width) text.insert(0, width - text.size(), L'0');
  return value < 0 ? L"-" + text : text;
}

std::wstring Stamp(const LocalTimeFacts& t) {
  return Padded(t.year, 4) + L"-" + Padded(t.month, 2) + L"-" + Padded(t.day, 2) + L" " + Padded(t.hour, 2) + L":" +
         Padded(t.minute, 2) + L":" + Padded(t.second, 2);
}

const wchar_t* NameAt(const wchar_t* const* names, int count, int index) {
  return index >= 0 && index < count ? names[index] : L"";
}

void EraseFirst(std::wstring& text, const wchar_t* piece) {
  size_t at = text.find(piece);
  if (at != std::wstring::npos) text.erase(at, std::char_traits<wchar_t>::length(piece));
}

std::wstring Line(const std::wstring& label, const std::wstring& value) { return label + value + L"\n"; }

}  // namespace

std::wstring FormatTimeText(const LocalTimeFacts& t) {
  const wchar_t* weekday = NameAt(kWeekdays, 7, t.weekday);
  const wchar_t* month = NameAt(kMonths, 12, t.month - 1);
  // The standard offset: daylight saving isn't applied.
  float zone = t.zoneKnown ? static_cast<float>(-t.biasMinutes) / 60.0f : 0.0f;
  return L"CURRENT_TIME: " + Stamp(t) + L"\n" + L"CURRENT_DATE: " + weekday + L", " + month + L" " +
         std::to_wstring(t.day) + L", " + Padded(t.year, 4) + L"\n" + L"CURRENT_DAY: " + weekday + L"\n" +
         L"CURRENT_HOUR: " + Padded(t.hour, 2) + L"\n" + L"CURRENT_MINUTE: " + Padded(t.minute, 2) + L"\n" +
         L"CURRENT_SECOND: " + Padded(t.second, 2) + L"\n" + L"TIMEZONE_UTC: " + Number("%+.1f", zone) + L"\n";
}

std::wstring CleanProcessorName(const std::wstring& raw) {
  std::wstring name = raw;
  for (const wchar_t* mark : {L"(R)", L"(TM)", L"(r)", L"(tm)"}) EraseFirst(name, mark);
  size_t at = name.find(L'@');
  if (at != std::wstring::npos) name.erase(at);
  size_t first = name.find_first_not_of(L" \t");
  if (first == std::wstring::npos) return L"";
  size_t last = name.find_last_not_of(L" \t");
  return name.substr(first, last - first + 1);
}

std::wstring WindowsVersionWord(const MachineFacts& facts) {
  if (!facts.versionFound) return L"unknown";
  if (facts.majorVersion == 10) return facts.buildNumber >= 22000 ? L"11" : L"10";
  return std::to_wstring(facts.majorVersion);
}

std::wstring ShortDeviceName(const std::wstring& name) {
  return name.size() > 80 ? name.substr(0, 80) + L"..." : name;
}

std::wstring FormatMachineText(const MachineFacts& f) {
  const wchar_t* arch = f.x64 ? L"x64" : L"x86";
  std::wstring text;
  text += L"OS: Windows " + WindowsVersionWord(f) + L" " + f.edition + L" Build " +
          std::to_wstring(f.versionFound ? f.buildNumber : 0) + L" " + arch + L"\n";
  text += Line(L"OS_LANGUAGE: ", f.localeName);
  text += Line(L"CPU_NAME: ", CleanProcessorName(f.processorName));
  text += Line(L"CPU_CORES: ", std::to_wstring(f.logicalProcessors));
  text += Line(L"CPU_SPEED_MHZ: ", std::to_wstring(f.processorMhz));
  text += Line(L"CPU_ARCH: ", arch);
  text += Line(L"RAM_TOTAL_GB: ", std::to_wstring(f.ramTotal >> 30));
  text += Line(L"RAM_AVAILABLE_GB: ", std::to_wstring(f.ramAvailable >> 30));
  text += Line(L"RAM_USED_PERCENT: ", std::to_wstring(f.memoryLoad));
  text += f.displayDeviceFound ? Line(L"GPU_NAME: ", ShortDeviceName(f.displayDeviceString))
                               : L"GPU_NAME: not available\n";
  text += Line(L"DISPLAY_MONITORS: ", std::to_wstring(f.monitors));
  text += Line(L"DISPLAY_RESOLUTION: ", std::to_wstring(f.screenWidth) + L"x" + std::to_wstring(f.screenHeight));
  if (f.screenDcFound) {
    text += Line(L"DISPLAY_DPI: ", std::to_wstring(f.dpi));
    text += L"DISPLAY_SCALE: " + std::to_wstring(f.dpi * 100 / 96) + L"%\n";
  }
  if (f.diskFound) {
    text += Line(L"DISK_C_FREE_GB: ", std::to_wstring(f.diskFree >> 30));
    text += Line(L"DISK_C_TOTAL_GB: ", std::to_wstring(f.diskTotal >> 30));
  }
  if (f.powerFound) {
    if (f.batteryFlag == 128) {
      text += L"BATTERY: not present (desktop/AC)\n";
    } else {
      text += Line(L"BATTERY_AC: ", f.acLineStatus == 1 ? L"plugged in" : L"on battery");
      text += f.batteryLifePercent < 255 ? L"BATTERY_PERCENT: " + std::to_wstring(f.batteryLifePercent) + L"%\n"
                                         : std::wstring(L"BATTERY_PERCENT: not available\n");
      if (f.batteryLifeTime != 0xFFFFFFFFu) {
        text += L"BATTERY_REMAINING: " + std::to_wstring(f.batteryLifeTime / 60) + L" min\n";
      }
    }
  }
  text += Line(L"NETWORK_INTERNET: ", f.internetConnected ? L"connected" : L"disconnected");
  if (f.internetConnected) {
    const wchar_t* type = L"unknown";
    if (f.connectionFlags & 1) type = L"modem";
    else if (f.connectionFlags & 2) type = L"LAN/Ethernet";
    else if (f.connectionFlags & 4) type = L"proxy";
    else if (f.connectionFlags & 16) type = L"RAS/VPN";
    text += Line(L"NETWORK_TYPE: ", type);
  }
  text += Line(L"User: ", f.userName);
  text += Line(L"Computer: ", f.computerName);
  text += L"Uptime: " + std::to_wstring(f.tickCount / 3600000) + L"h " + std::to_wstring(f.tickCount / 60000 % 60) +
          L"m\n";
  text += Line(L"Tavro_Version: ", kTavroVersion);
  return text;
}

std::wstring FormatKnowledgeText(const std::vector<std::wstring>& activeProfiles) {
  std::wstring text = L"\n# TAVRO ACTIVE INSTANCES:\n";
  if (activeProfiles.empty()) {
    text += L"ACTIVE_PROFILES: none\n";
  } else {
    for (const std::wstring& name : activeProfiles) text += Line(L"ACTIVE_PROFILE: ", name);
    text += Line(L"ACTIVE_PROFILE_COUNT: ", std::to_wstring(activeProfiles.size()));
  }
  const std::wstring dashboard = kCloudflareDashboardUrl;
  text += L"\n# TAVRO EDITOR:\n";
  text += std::wstring(L"  Version: ") + kTavroVersion + L" | Win32/Scintilla/Lexilla | Author: Dravo\n";
  text += L"  Free for personal use\n";
  text += L"\n# CLOUDFLARE WORKERS AI (May 2026):\n";
  text += L"  @cf/meta/llama-3.1-8b-instruct               | default\n";
  text += L"  @cf/meta/llama-3.3-70b-instruct-fp8-fast     | higher quality\n";
  text += L"  @cf/meta/llama-4-scout-17b-16e-instruct      | multimodal\n";
  text += L"  @cf/mistralai/mistral-small-3.1-24b-instruct | vision+tools\n";
  text += L"  @cf/zai-org/glm-4.7-flash                    | 131K context\n";
  text += L"  @cf/qwen/qwen3-30b-a3b-fp8                   | efficient\n";
  text += L"  @cf/nvidia/nemotron-3-120b-a12b              | agentic tasks\n";
  text += L"  @cf/openai/gpt-oss-120b                      | open-weight\n";
  text += L"  @cf/deepseek-ai/deepseek-r1-distill-qwen-32b | reasoning\n";
  text += L"  Registration: " + dashboard + L" | Free: 10,000 neurons/day\n";
  text += L"\n# TAVRO AI PROVIDERS:\n";
  text += L"  Groq:      14,400 req/day | " + std::wstring(kGroqKeysUrl) + L"\n";
  text += L"  Cloudflare: 10,000 neurons/day | " + dashboard + L"\n";
  text += L"  Mistral:   1B tokens/month | " + std::wstring(kMistralConsoleUrl) + L"\n";
  text += L"\n# TAVRO PROFILES:\n";
  text += L"  Each profile: own .cfg, API key, chat history\n";
  text += L"  Default: %APPDATA%\\Tavro\\tavro.cfg\n";
  text += L"  Custom:  %APPDATA%\\Tavro\\profiles\\tavro_name.cfg\n";
  text += L"  Manager: default instance only | parallel run: supported\n";
  return text;
}

std::wstring InstructionsText() {
  return L"\n# AI INSTRUCTIONS:\n"
         L"# - You MAY report any data explicitly listed above.\n"
         L"# - Fields marked 'not available' must be reported as 'not available'.\n"
         L"# - Do NOT add, infer, or guess any data not listed above.\n"
         L"# - Do NOT use training knowledge to fill in hardware details.\n"
         L"# - Do NOT list or mention fields marked 'not available' unless user explicitly asks.\n"
         L"# - For Cloudflare models: use ONLY the list from TAVRO KNOWLEDGE BASE above.\n"
         L"# - For active profiles: report ONLY what ACTIVE_PROFILE entries list above.\n";
}

std::wstring FormatSystemInfoText(const LocalTimeFacts& time, const MachineFacts& facts,
                                  const std::vector<std::wstring>& activeProfiles) {
  return FormatTimeText(time) + FormatMachineText(facts) + FormatKnowledgeText(activeProfiles) + InstructionsText();
}

std::wstring FormatSystemInfoHeader(const LocalTimeFacts& time) {
  return L"# QORL System Information\n# Generated: " + Stamp(time) + L"\n# DO NOT EDIT - Auto-generated\n";
}

std::wstring ComposeSystemContext(const std::string& fileUtf8, const std::wstring& systemPrompt, uint32_t provider,
                                  const std::wstring& modelName) {
  std::wstring text = fileUtf8.empty() ? systemPrompt
                                       : L"[System Context]\n" + Utf8ToWide(fileUtf8) + L"\n\n" + systemPrompt;
  return text + L"\n\nAI_Provider: " + ProviderDisplayName(provider) + L"\nAI_Model: " + modelName;
}
