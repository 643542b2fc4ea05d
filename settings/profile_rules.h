// The rules of the profile manager that need no window: what a profile may be
// called, how the list shows a profile, and what the status line says as the
// selection moves. The dialog and its boxes are the shell's.
#pragma once

#include <string>

// A profile name has 1 to 25 characters, each a letter or digit by iswalnum,
// "-" or "_". "default" passes: creating it meets the default profile's file.
constexpr size_t kMaxProfileNameLength = 25;
bool IsValidProfileName(const std::wstring& name);

// The list's row of a profile: its name, with " (active)" for this process's.
std::wstring ProfileListLabel(const std::wstring& name, bool active);

// Buttons and status line for a selection, after a selection change and at
// every tick of the refresh timer.
struct ProfileSelectionView {
  bool activateEnabled = false;
  std::wstring status;  // the status line's text after the change
};
// selected: the selected profile's name, or null when nothing is selected.
// running: whether that profile has a running instance (this one counts).
// status: the status line's text now. A status that isn't one of the two
// selection messages (told apart by "running" or "Default profile") stays.
ProfileSelectionView ViewOfSelection(const std::wstring* selected, bool running, const std::wstring& status);

// The manager's texts that carry a name.
std::wstring RunningStatusText(const std::wstring& name);
std::wstring LaunchedStatusText(const std::wstring& name);
std::wstring DeleteQuestionText(const std::wstring& name);
std::wstring RenamedText(const std::wstring& oldName, const std::wstring& newName);
std::wstring AlreadyActiveText(const std::wstring& name);

constexpr wchar_t kDefaultProfileStatus[] = L"Default profile (always active) - cannot be renamed or deleted.";
