#include "shell/profile_manager.h"

#include <string>
#include <vector>

#include "base/app_state.h"
#include "presentation/dialog_theme.h"
#include "presentation/message_box.h"
#include "resources/resource_ids.h"
#include "settings/profile_rules.h"
#include "settings/profiles.h"
#include "shell/profile_actions.h"

namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMs = 500;
constexpr wchar_t kSelectFirst[] = L"Select a profile first.";

// The dialog's working state.
struct ProfileManagerState {
  DialogTheme theme;
  std::vector<ProfileInfo> rows;  // the list's rows as last filled
};

LRESULT SendList(HWND dialog, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendDlgItemMessageW(dialog, IDC_PROFILE_LIST, message, wParam, lParam);
}

const ProfileInfo* Selected(HWND dialog, const ProfileManagerState& state) {
  const LRESULT index = SendList(dialog, LB_GETCURSEL);
  return index >= 0 && static_cast<size_t>(index) < state.rows.size() ? &state.rows[index] : nullptr;
}

std::wstring Status(HWND dialog) {
  wchar_t text[256] = {};
  GetDlgItemTextW(dialog, IDC_PROFILE_STATUS, text, 256);
  return text;
}

void SetStatus(HWND dialog, const std::wstring& text) {
  if (Status(dialog) != text) SetDlgItemTextW(dialog, IDC_PROFILE_STATUS, text.c_str());
}

// "Activate" and the status line for the selection; at a selection change
// and at every tick, so that a profile started or ended elsewhere shows.
void RefreshSelection(HWND dialog, const ProfileManagerState& state) {
  const ProfileInfo* selected = Selected(dialog, state);
  const bool running = selected && IsProfileRunning(selected->name);
  const ProfileSelectionView view = ViewOfSelection(selected ? &selected->name : nullptr, running, Status(dialog));
  EnableWindow(GetDlgItem(dialog, IDC_PROFILE_ACTIVATE), view.activateEnabled);
  SetStatus(dialog, view.status);
}

// The list from the store, with the named profile selected, or this
// process's profile when the name is empty or gone.
void FillList(HWND dialog, ProfileManagerState& state, const std::wstring& select) {
  state.rows = ListProfiles();
  SendList(dialog, LB_RESETCONTENT);
  LRESULT chosen = LB_ERR;
  for (size_t i = 0; i < state.rows.size(); ++i) {
    const ProfileInfo& row = state.rows[i];
    const LRESULT index =
        SendList(dialog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ProfileListLabel(row.name, row.active).c_str()));
    if (select.empty() ? row.active : row.name == select) chosen = index;
  }
  if (chosen == LB_ERR) {
    for (size_t i = 0; i < state.rows.size(); ++i) {
      if (state.rows[i].active) chosen = static_cast<LRESULT>(i);
    }
  }
  SendList(dialog, LB_SETCURSEL, chosen);
  RefreshSelection(dialog, state);
}

void OnNew(HWND dialog, ProfileManagerState& state) {
  if (!CreateProfile(dialog)) return;
  FillList(dialog, state, std::wstring());
  SetStatus(dialog, L"Profile created.");
}

void OnRename(HWND dialog, ProfileManagerState& state) {
  const ProfileInfo* selected = Selected(dialog, state);
  if (!selected) return SetStatus(dialog, kSelectFirst);
  if (selected->name == kDefaultProfileName) return SetStatus(dialog, L"Cannot rename default profile.");
  if (IsProfileRunning(selected->name)) return SetStatus(dialog, L"Cannot rename a running profile.");
  const std::wstring oldName = selected->name;
  // The old name goes into the buffer, yet the box's field starts empty:
  // the user types the whole new name.
  wchar_t newName[kInputBoxCapacity] = {};
  oldName.copy(newName, kInputBoxCapacity - 1);
  for (;;) {
    if (!ShowInputBox(dialog, L"Rename Profile", L"Enter new profile name:", newName)) return;
    if (RenameProfile(oldName, newName, dialog)) break;
  }
  FillList(dialog, state, newName);
  SetStatus(dialog, L"Profile renamed.");
}

void OnDelete(HWND dialog, ProfileManagerState& state) {
  const ProfileInfo* selected = Selected(dialog, state);
  if (!selected) return SetStatus(dialog, kSelectFirst);
  if (!DeleteProfile(selected->name, dialog)) return;
  FillList(dialog, state, std::wstring());
  SetStatus(dialog, L"Profile deleted.");
}

void OnActivate(HWND dialog, ProfileManagerState& state) {
  const ProfileInfo* selected = Selected(dialog, state);
  if (!selected) return SetStatus(dialog, kSelectFirst);
  const std::wstring name = selected->name;
  ActivateProfile(name, dialog);
  SetStatus(dialog, LaunchedStatusText(name));  // after a failure too
}

INT_PTR CALLBACK ProfileManagerProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<ProfileManagerState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG:
      state = reinterpret_cast<ProfileManagerState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      ApplyDialogTheme(dialog, state->theme);
      FillList(dialog, *state, std::wstring());
      CentreOnOwner(dialog);
      SetTimer(dialog, kRefreshTimer, kRefreshMs, nullptr);
      return TRUE;
    case WM_TIMER:
      if (wParam == kRefreshTimer && state) RefreshSelection(dialog, *state);
      return TRUE;
    case WM_COMMAND:
      if (!state) break;
      switch (LOWORD(wParam)) {
        case IDC_PROFILE_LIST:
          if (HIWORD(wParam) == LBN_SELCHANGE) RefreshSelection(dialog, *state);
          return TRUE;
        case IDC_PROFILE_NEW:
          OnNew(dialog, *state);
          return TRUE;
        case IDC_PROFILE_RENAME:
          OnRename(dialog, *state);
          return TRUE;
        case IDC_PROFILE_DELETE:
          OnDelete(dialog, *state);
          return TRUE;
        case IDC_PROFILE_ACTIVATE:
          OnActivate(dialog, *state);
          return TRUE;
        case IDCANCEL:
          EndDialog(dialog, IDCANCEL);
          return TRUE;
      }
      break;
    case WM_DESTROY:
      KillTimer(dialog, kRefreshTimer);
      if (state) ReleaseDialogTheme(dialog, state->theme);
      break;
    default: {
      INT_PTR result = FALSE;
      if (state && DialogThemeMessage(state->theme, message, wParam, lParam, result)) return result;
      break;
    }
  }
  return FALSE;
}

}  // namespace

void ShowProfileManager(HWND owner) {
  if (!IsDefaultProfileName(g_profileName)) {
    ShowMessageBox(owner, kBoxOk, L"Profile Manager",
                   L"Profile management is only available from the default instance.\n\nPlease launch Tavro without "
                   L"--profile parameter to manage profiles.");
    return;
  }
  ProfileManagerState state;
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_PROFILES), owner, ProfileManagerProc,
                  reinterpret_cast<LPARAM>(&state));
}
