#include "shell/command_line.h"

#include <cwctype>

namespace {
constexpr wchar_t kProfileOption[] = L"--profile=";
constexpr wchar_t kViewerOption[] = L"--viewer";
}  // namespace

std::wstring SanitizeProfileName(const std::wstring& name) {
  std::wstring out = name;
  for (wchar_t& c : out)
    if (!std::iswalnum(static_cast<wint_t>(c)) && c != L'-' && c != L'_') c = L'_';
  return out;
}

StartupArguments ParseStartupArguments(const std::vector<std::wstring>& args) {
  StartupArguments result;
  const size_t prefixLength = sizeof(kProfileOption) / sizeof(wchar_t) - 1;
  for (size_t i = 1; i < args.size(); ++i)
    if (args[i].compare(0, prefixLength, kProfileOption) == 0)
      result.profileName = SanitizeProfileName(args[i].substr(prefixLength));

  result.viewer = args.size() >= 2 && args[1] == kViewerOption;
  if (result.viewer && args.size() >= 3) {
    result.hasFileToOpen = true;
    result.fileToOpen = args[2];
  } else if (args.size() >= 2 && args[1].compare(0, 2, L"--") != 0) {
    result.hasFileToOpen = true;
    result.fileToOpen = args[1];
  }
  return result;
}
