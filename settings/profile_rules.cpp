#include "settings/profile_rules.h"

#include <cwctype>

#include "base/app_state.h"

namespace {

constexpr wchar_t kActiveSuffix[] = L" (active)";

}  // namespace

bool IsValidProfileName(const std::wstring& name) {
  if (name.empty() || name.size() > kMaxProfileNameLength) return false;
  for (wchar_t c : name) {
    if (!std::iswalnum(static_cast<wint_t>(c)) && c != L'-' && c != L'_') return false;
  }
  return true;
}

std::wstring ProfileListLabel(const std::wstring& name, bool active) {
  return active ? name + kActiveSuffix : name;
}

ProfileSelectionView ViewOfSelection(const std::wstring* selected, bool running, const std::wstring& status) {
  ProfileSelectionView view;
  view.activateEnabled = selected && !running;
  if (selected && *selected == kDefaultProfileName) {
    view.status = kDefaultProfileStatus;
  } else if (selected && running) {
    view.status = RunningStatusText(*selected);
  } else if (status.find(L"running") != std::wstring::npos || status.find(L"Default profile") != std::wstring::npos) {
    view.status.clear();
  } else {
    view.status = status;
  }
  return view;
}

std::wstring RunningStatusText(const std::wstring& name) { return L"Profile \"" + name + L"\" is currently running."; }

std::wstring LaunchedStatusText(const std::wstring& name) { return L"Profile \"" + name + L"\" launched."; }

std::wstring DeleteQuestionText(const std::wstring& name) {
  return L"Delete profile \"" + name + L"\"?\n\nThis cannot be undone.";
}

std::wstring RenamedText(const std::wstring& oldName, const std::wstring& newName) {
  return L"Profile \"" + oldName + L"\" renamed to \"" + newName + L"\".";
}

std::wstring AlreadyActiveText(const std::wstring& name) { return L"Profile \"" + name + L"\" is already active."; }
