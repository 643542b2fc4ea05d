#include "ai/client/system_context.h"

#include <windows.h>

#include <wininet.h>

#include "base/app_state.h"
#include "base/text_convert.h"
#include "settings/data_folders.h"
#include "settings/profiles.h"
#include "settings/settings.h"

namespace {


// A REG_SZ value of HKEY_LOCAL_MACHINE into a buffer of the given bytes.
// False, with value untouched, when it can't be read.
bool ReadMachineString(const wchar_t* key, const wchar_t* name, DWORD bufferBytes, std::wstring& value) {
  HKEY handle;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key, 0, KEY_READ, &handle) != ERROR_SUCCESS) return false;
  std::wstring buffer(bufferBytes / sizeof(wchar_t), L'\0');
  DWORD size = bufferBytes;
  LONG result = RegQueryValueExW(handle, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer.data()), &size);
  RegCloseKey(handle);
  if (result != ERROR_SUCCESS) return false;
  buffer.resize(wcsnlen(buffer.c_str(), size / sizeof(wchar_t)));
  value = buffer;
  return true;
}

// A settings string up to its terminator, or the whole field without one.
template <size_t N>
std::wstring FieldText(const wchar_t (&field)[N]) {
  return std::wstring(field, wcsnlen(field, N));
}

using RtlGetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOW*);

}  // namespace

LocalTimeFacts ReadLocalTime() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  TIME_ZONE_INFORMATION zone;
  DWORD zoneResult = GetTimeZoneInformation(&zone);
  LocalTimeFacts t;
  t.year = now.wYear;
  t.month = now.wMonth;
  t.day = now.wDay;
  t.weekday = now.wDayOfWeek;
  t.hour = now.wHour;
  t.minute = now.wMinute;
  t.second = now.wSecond;
  t.zoneKnown = zoneResult == 1 || zoneResult == 2;
  t.biasMinutes = zone.Bias;
  return t;
}

std::wstring BuildTimeText() { return FormatTimeText(ReadLocalTime()); }

MachineFacts ReadMachineFacts() {
  MachineFacts f;
  if (HMODULE ntdll = GetModuleHandleW(L"ntdll.dll")) {
    auto rtlGetVersion = reinterpret_cast<RtlGetVersionFunction>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
    if (rtlGetVersion) {
      OSVERSIONINFOW version = {};
      version.dwOSVersionInfoSize = sizeof(version);
      rtlGetVersion(&version);
      f.versionFound = true;
      f.majorVersion = version.dwMajorVersion;
      f.buildNumber = version.dwBuildNumber;
    }
  }
  ReadMachineString(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion", L"EditionID", 256, f.edition);
  SYSTEM_INFO system;
  GetNativeSystemInfo(&system);
  f.x64 = system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64;
  f.logicalProcessors = system.dwNumberOfProcessors;
  wchar_t locale[LOCALE_NAME_MAX_LENGTH] = L"";
  GetUserDefaultLocaleName(locale, LOCALE_NAME_MAX_LENGTH);
  f.localeName = locale;
  const wchar_t* processorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
  ReadMachineString(processorKey, L"ProcessorNameString", 512, f.processorName);
  HKEY handle;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, processorKey, 0, KEY_READ, &handle) == ERROR_SUCCESS) {
    DWORD mhz = 0;
    DWORD size = sizeof(mhz);
    if (RegQueryValueExW(handle, L"~MHz", nullptr, nullptr, reinterpret_cast<BYTE*>(&mhz), &size) == ERROR_SUCCESS) {
      f.processorMhz = mhz;
    }
    RegCloseKey(handle);
  }
  MEMORYSTATUSEX memory = {};
  memory.dwLength = sizeof(memory);
  if (GlobalMemoryStatusEx(&memory)) {
    f.ramTotal = memory.ullTotalPhys;
    f.ramAvailable = memory.ullAvailPhys;
    f.memoryLoad = memory.dwMemoryLoad;
  }
  DISPLAY_DEVICEW device = {};
  device.cb = sizeof(device);
  if (EnumDisplayDevicesW(nullptr, 0, &device, 0)) {
    f.displayDeviceFound = true;
    f.displayDeviceString = device.DeviceString;
  }
  f.monitors = GetSystemMetrics(SM_CMONITORS);
  f.screenWidth = GetSystemMetrics(SM_CXSCREEN);
  f.screenHeight = GetSystemMetrics(SM_CYSCREEN);
  if (HDC screen = GetDC(nullptr)) {
    f.screenDcFound = true;
    f.dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
  }
  ULARGE_INTEGER available, total, free;
  if (GetDiskFreeSpaceExW(L"C:\\", &available, &total, &free)) {
    f.diskFound = true;
    f.diskFree = free.QuadPart;
    f.diskTotal = total.QuadPart;
  }
  SYSTEM_POWER_STATUS power;
  if (GetSystemPowerStatus(&power)) {
    f.powerFound = true;
    f.batteryFlag = power.BatteryFlag;
    f.acLineStatus = power.ACLineStatus;
    f.batteryLifePercent = power.BatteryLifePercent;
    f.batteryLifeTime = power.BatteryLifeTime;
  }
  DWORD flags = 0;
  f.internetConnected = InternetGetConnectedState(&flags, 0) != FALSE;
  f.connectionFlags = flags;
  wchar_t user[128] = L"";
  DWORD userSize = 128;
  if (GetUserNameW(user, &userSize)) f.userName = user;
  wchar_t computer[16] = L"";
  DWORD computerSize = 16;
  if (GetComputerNameW(computer, &computerSize)) f.computerName = computer;
  f.tickCount = GetTickCount64();
  return f;
}

std::vector<std::pair<std::wstring, std::wstring>> ListActiveProfilesAmong(const std::vector<ProfileInfo>& profiles) {
  std::vector<std::pair<std::wstring, std::wstring>> active;
  for (const ProfileInfo& profile : profiles) {
    std::wstring mutexName = kInstanceMutexPrefix + profile.name;
    if (HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, mutexName.c_str())) {
      CloseHandle(mutex);
      active.emplace_back(profile.name, mutexName);
    }
  }
  return active;
}

std::vector<std::pair<std::wstring, std::wstring>> ListActiveProfiles() {
  return ListActiveProfilesAmong(ListProfiles());
}

std::wstring BuildKnowledgeText() {
  std::vector<std::wstring> names;
  for (const auto& entry : ListActiveProfiles()) names.push_back(entry.first);
  return FormatKnowledgeText(names);
}

std::wstring BuildSystemInfoText() {
  std::wstring text = BuildTimeText();
  text += FormatMachineText(ReadMachineFacts());
  text += BuildKnowledgeText();
  return text + InstructionsText();
}

std::wstring SystemInfoFilePath() {
  std::wstring folder = GetAppDataFolder();
  return folder.empty() ? std::wstring() : folder + L"\\" + kSystemInfoFileName;
}

void WriteSystemInfoFileAt(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  std::string bytes = WideToUtf8(FormatSystemInfoHeader(ReadLocalTime())) + WideToUtf8(BuildSystemInfoText());
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
}

void WriteSystemInfoFile() {
  std::wstring path = SystemInfoFilePath();
  if (!path.empty()) WriteSystemInfoFileAt(path);
}

std::string ReadSystemInfoFileAt(const std::wstring& path) {
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) WriteSystemInfoFileAt(path);
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "System information unavailable.";
  LARGE_INTEGER size = {};
  GetFileSizeEx(file, &size);
  if (size.QuadPart > static_cast<LONGLONG>(kSystemInfoMaxBytes)) {
    CloseHandle(file);
    return "System information file error.";
  }
  std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  BOOL ok = bytes.empty() || ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  if (!ok) return "System information unavailable.";
  bytes.resize(read);
  return bytes;
}

std::string ReadSystemInfoFile() { return ReadSystemInfoFileAt(SystemInfoFilePath()); }

std::wstring BuildSystemContext() {
  return ComposeSystemContext(ReadSystemInfoFile(), FieldText(g_settings.systemPrompt), g_settings.aiProvider,
                              FieldText(g_settings.modelName));
}
