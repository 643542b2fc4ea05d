// Shows one message box through the program's own dialog service, for the
// end-to-end tests: message_box_host KIND TITLE TEXT [THEME]
// The two characters \n in TEXT stand for a line feed. The exit code is the
// box's result; for kind 4 the confirmed text goes, UTF-8 encoded, to the file
// named by TAVRO_INPUT_OUT when that is set.
#include <windows.h>

#include <cwchar>
#include <string>

#include "presentation/message_box.h"
#include "settings/settings.h"

namespace {

std::wstring WithLineFeeds(const wchar_t* text) {
  std::wstring out;
  for (const wchar_t* p = text; *p; ++p) {
    if (p[0] == L'\\' && p[1] == L'n') {
      out += L'\n';
      ++p;
    } else {
      out += *p;
    }
  }
  return out;
}

bool WriteUtf8(const wchar_t* path, const wchar_t* text) {
  const int length = static_cast<int>(wcslen(text));
  std::string bytes;
  if (length > 0) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<size_t>(size));
    WideCharToMultiByte(CP_UTF8, 0, text, length, bytes.data(), size, nullptr, nullptr);
  }
  HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool ok = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                  written == bytes.size();
  CloseHandle(file);
  return ok;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 4) return 1;
  // Any number, so the host can show how an unknown kind is laid out.
  const auto kind = static_cast<MessageBoxKind>(_wtoi(argv[1]));
  const std::wstring text = WithLineFeeds(argv[3]);
  if (argc > 4) g_themeIndex = static_cast<uint32_t>(_wtoi(argv[4]));

  if (kind != kBoxInput) return ShowMessageBox(nullptr, kind, argv[2], text.c_str());

  wchar_t buffer[kInputBoxCapacity] = L"";
  if (!ShowInputBox(nullptr, argv[2], text.c_str(), buffer)) return kResultCancel;
  wchar_t path[MAX_PATH];
  const DWORD length = GetEnvironmentVariableW(L"TAVRO_INPUT_OUT", path, MAX_PATH);
  if (length > 0 && length < MAX_PATH && !WriteUtf8(path, buffer)) return 2;
  return kResultOk;
}
