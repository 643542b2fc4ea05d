#include "ai/panel/ai_settings_dialog.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <string>

#include "ai/chat/chat_store.h"
#include "ai/client/ai_state.h"
#include "ai/client/system_context.h"
#include "ai/client/transport.h"
#include "ai/panel/ai_panel.h"
#include "ai/panel/ai_settings_rules.h"
#include "ai/panel/typing_animator.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "presentation/dark_menu.h"
#include "presentation/dialog_theme.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"

namespace {

constexpr UINT WM_REFILL_CHAT_COUNT = WM_APP + 230;  // nothing sends it yet; kept for the day something does
// The dialog's working state.
struct AiSettingsState {
  DialogTheme theme;
};

constexpr int kFields[] = {IDC_AI_ACCOUNT, IDC_AI_KEY, IDC_AI_MODEL};

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

std::wstring ItemText(HWND dialog, int id) {
  HWND item = Item(dialog, id);
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(item)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(item, text.data(), static_cast<int>(text.size()))));
  return text;
}

LRESULT SendItem(HWND dialog, int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendDlgItemMessageW(dialog, id, message, wParam, lParam);
}

void FillCombo(HWND dialog, int id, const ValueRow* rows, size_t count, size_t selected) {
  SendItem(dialog, id, CB_RESETCONTENT);
  for (size_t i = 0; i < count; ++i) {
    const LRESULT index = SendItem(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(rows[i].label));
    SendItem(dialog, id, CB_SETITEMDATA, index, rows[i].value);
  }
  SendItem(dialog, id, CB_SETCURSEL, selected);
}

int32_t SelectedValue(HWND dialog, int id, int32_t otherwise) {
  const LRESULT index = SendItem(dialog, id, CB_GETCURSEL);
  return index == CB_ERR ? otherwise : static_cast<int32_t>(SendItem(dialog, id, CB_GETITEMDATA, index));
}

bool Checked(HWND dialog, int id) { return SendItem(dialog, id, BM_GETCHECK) == BST_CHECKED; }

void EnableDependants(HWND dialog) {
  const bool typing = Checked(dialog, IDC_AI_TYPING);
  EnableWindow(Item(dialog, IDC_AI_TYPING_DELAY), typing);
  EnableWindow(Item(dialog, IDC_AI_TYPING_DELAY_TEXT), typing);
  EnableWindow(Item(dialog, IDC_AI_HISTORY_LIMIT), Checked(dialog, IDC_AI_KEEP_HISTORY));
}

void ShowTemperature(HWND dialog) {
  const int position = static_cast<int>(SendItem(dialog, IDC_AI_TEMPERATURE, TBM_GETPOS));
  SetDlgItemTextW(dialog, IDC_AI_TEMPERATURE_TEXT, TemperatureText(position).c_str());
}

void ShowDelay(HWND dialog) {
  const int position = static_cast<int>(SendItem(dialog, IDC_AI_TYPING_DELAY, TBM_GETPOS));
  SetDlgItemTextW(dialog, IDC_AI_TYPING_DELAY_TEXT, DelayText(position).c_str());
}

void ShowChatCount(HWND dialog) {
  const ChatInfo* chat = g_hwndAiPanel ? CurrentChat(GetChatHistory()) : nullptr;
  if (chat) SetDlgItemTextW(dialog, IDC_AI_CHAT_COUNT, ChatCountText(chat->messages.size(), g_settings.historyLimit).c_str());
}

void ShowResultLine(HWND dialog, bool online) {
  SetDlgItemTextW(dialog, IDC_AI_RESULT, ResultLineText(g_settings.apiKey[0] != L'\0', online).c_str());
}

// Every control from the settings record.
void FillControls(HWND dialog) {
  SendItem(dialog, IDC_AI_PROVIDER, CB_RESETCONTENT);
  for (size_t i = 0; i < kAiProviderCount; ++i) {
    const LRESULT index = SendItem(dialog, IDC_AI_PROVIDER, CB_ADDSTRING, 0,
                                   reinterpret_cast<LPARAM>(kAiProviders[i].name));
    SendItem(dialog, IDC_AI_PROVIDER, CB_SETITEMDATA, index, static_cast<LPARAM>(i));
  }
  SendItem(dialog, IDC_AI_PROVIDER, CB_SETCURSEL, g_settings.aiProvider < kAiProviderCount ? g_settings.aiProvider : 0);
  for (int id : kFields) SendItem(dialog, id, EM_LIMITTEXT, 0);  // the record's fields cut what is too long
  SetDlgItemTextW(dialog, IDC_AI_ACCOUNT, g_settings.accountId);
  SetDlgItemTextW(dialog, IDC_AI_KEY, g_settings.apiKey);
  SetDlgItemTextW(dialog, IDC_AI_MODEL, g_settings.modelName);
  EnableWindow(Item(dialog, IDC_AI_KEY), kAiProviders[SelectedValue(dialog, IDC_AI_PROVIDER, 0)].needsKey);
  FillCombo(dialog, IDC_AI_PANEL_SIZE, kPanelSizeRows, kPanelSizeRowCount, PanelSizeRow(g_settings.aiPanelPercent));
  SendItem(dialog, IDC_AI_TEMPERATURE, TBM_SETRANGE, TRUE, MAKELPARAM(kTemperatureMin, kTemperatureMax));
  SendItem(dialog, IDC_AI_TEMPERATURE, TBM_SETPOS, TRUE, g_settings.temperatureHundredths);
  ShowTemperature(dialog);
  FillCombo(dialog, IDC_AI_MAX_TOKENS, kMaxTokenRows, kMaxTokenRowCount, MaxTokenRow(g_settings.maxTokens));
  SendItem(dialog, IDC_AI_KEEP_HISTORY, BM_SETCHECK, g_settings.keepHistory ? BST_CHECKED : BST_UNCHECKED);
  FillCombo(dialog, IDC_AI_HISTORY_LIMIT, kHistoryLimitRows, kHistoryLimitRowCount,
            HistoryLimitRow(static_cast<int32_t>(g_settings.historyLimit)));
  ShowChatCount(dialog);
  SendItem(dialog, IDC_AI_TYPING, BM_SETCHECK, g_settings.typingAnimation ? BST_CHECKED : BST_UNCHECKED);
  SendItem(dialog, IDC_AI_TYPING_DELAY, TBM_SETRANGE, TRUE, MAKELPARAM(kDelayMin, kDelayMax));
  SendItem(dialog, IDC_AI_TYPING_DELAY, TBM_SETTICFREQ, kDelayTick);
  SendItem(dialog, IDC_AI_TYPING_DELAY, TBM_SETPOS, TRUE, ShownDelay(g_settings.typingDelayMs));
  ShowDelay(dialog);
  EnableDependants(dialog);
}

void MirrorIntoAnimator() {
  TypingAnimator& animator = GetTypingAnimator();
  AnimatorSetDelay(animator, static_cast<int>(g_settings.typingDelayMs));
  AnimatorSetEnabled(animator, g_settings.typingAnimation != 0);  // wakes it
}

void SaveTwice() {
  SaveSettings(g_settings);
  SaveSettings(g_settings);
}

void PostClientSize() {
  if (!g_hwndMain) return;
  RECT client;
  GetClientRect(g_hwndMain, &client);
  PostMessageW(g_hwndMain, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
}

void OnTestConnection(HWND dialog) {
  AiCandidates candidates;
  candidates.provider = static_cast<uint32_t>(SelectedValue(dialog, IDC_AI_PROVIDER, 0));
  candidates.accountId = ItemText(dialog, IDC_AI_ACCOUNT);
  candidates.apiKey = ItemText(dialog, IDC_AI_KEY);
  candidates.modelName = ItemText(dialog, IDC_AI_MODEL);
  const AiCandidates before = TakeCandidates(g_settings);
  EnableWindow(Item(dialog, IDC_AI_TEST), FALSE);
  SetDlgItemTextW(dialog, IDC_AI_RESULT, kTestingText);
  PutCandidates(g_settings, candidates);
  std::wstring error;
  // On this thread: the dialog doesn't paint until the test returns.
  const bool ok = TestAiConnection(error);
  SetDlgItemTextW(dialog, IDC_AI_RESULT, TestResultText(ok, error).c_str());
  if (ok) {
    MirrorIntoAnimator();
    SaveTwice();
    if (g_hwndMain && g_hwndAiPanel) SetPanelConnectionText(L"Connected");
    WriteSystemInfoFile();
    PostClientSize();
  } else {
    SetPanelConnectionText(L"Not connected");
    PutCandidates(g_settings, before);
    MirrorIntoAnimator();
    SaveSettings(g_settings);
  }
  EnableWindow(Item(dialog, IDC_AI_TEST), TRUE);
}

void OnReset(HWND dialog) {
  ResetAiSettings(g_settings);
  MirrorIntoAnimator();
  SaveTwice();
  if (g_hwndAiPanel) SetPanelConnectionText(L"Not connected");
  FillControls(dialog);
  SetDlgItemTextW(dialog, IDC_AI_RESULT, kResetText);
}

void OnSave(HWND dialog) {
  TypingAnimator& animator = GetTypingAnimator();
  int delay = static_cast<int>(SendItem(dialog, IDC_AI_TYPING_DELAY, TBM_GETPOS));
  delay = delay < 0 ? 0 : delay > kDelayMax ? kDelayMax : delay;
  AnimatorSetDelay(animator, delay);
  g_settings.typingDelayMs = static_cast<uint32_t>(delay);
  SaveSettings(g_settings);

  AiCandidates candidates;
  candidates.provider = static_cast<uint32_t>(SelectedValue(dialog, IDC_AI_PROVIDER, 0));
  candidates.accountId = ItemText(dialog, IDC_AI_ACCOUNT);
  candidates.apiKey = ItemText(dialog, IDC_AI_KEY);
  candidates.modelName = ItemText(dialog, IDC_AI_MODEL);
  PutCandidates(g_settings, candidates);
  g_settings.temperatureHundredths = static_cast<int32_t>(SendItem(dialog, IDC_AI_TEMPERATURE, TBM_GETPOS));
  g_settings.maxTokens = SelectedValue(dialog, IDC_AI_MAX_TOKENS, g_settings.maxTokens);
  g_settings.keepHistory = Checked(dialog, IDC_AI_KEEP_HISTORY) ? 1 : 0;
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_SETTINGS_CHANGED, 0, 0);
  g_settings.historyLimit =
      static_cast<uint32_t>(SelectedValue(dialog, IDC_AI_HISTORY_LIMIT, static_cast<int32_t>(g_settings.historyLimit)));
  g_settings.aiPanelPercent = SelectedValue(dialog, IDC_AI_PANEL_SIZE, g_settings.aiPanelPercent);
  if (g_hwndMain) {
    SetWindowPos(g_hwndMain, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    PostMessageW(g_hwndMain, WM_PANEL_SIZE_CHANGED, 0, 0);
  }

  g_settings.typingAnimation = Checked(dialog, IDC_AI_TYPING) ? 1 : 0;
  if (delay >= kDelayMin && delay <= kDelayMax) g_settings.typingDelayMs = static_cast<uint32_t>(delay);
  MirrorIntoAnimator();
  SaveTwice();
  if (g_hwndAiPanel) RefreshConnectionLabels();
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_AI_STATUS_REFRESH, 0, 0);
  PostClientSize();
  WriteSystemInfoFile();
  EndDialog(dialog, IDOK);
}

void ApplyTheme(HWND dialog, AiSettingsState& state) {
  ApplyDialogTheme(dialog, state.theme);
  for (int id : kFields) SetWindowTheme(Item(dialog, id), WindowThemeClass(CurrentTheme()), nullptr);
}

INT_PTR CALLBACK AiSettingsProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<AiSettingsState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG:
      state = reinterpret_cast<AiSettingsState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      g_hwndAiSettingsDialog = dialog;
      ApplyTheme(dialog, *state);
      FillControls(dialog);
      ShowResultLine(dialog, g_isOnline.load());
      for (int id : kFields) AttachFieldContextMenu(Item(dialog, id), dialog);
      return TRUE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_DRAWITEM: {
      INT_PTR result = FALSE;
      if (message == WM_DRAWITEM && DrawMenuItem(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) return TRUE;
      if (state && DialogThemeMessage(state->theme, message, wParam, lParam, result)) return result;
      break;
    }
    case WM_MEASUREITEM:
      return MeasureMenuItem(dialog, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
    case WM_HSCROLL:
      if (reinterpret_cast<HWND>(lParam) == Item(dialog, IDC_AI_TEMPERATURE)) ShowTemperature(dialog);
      if (reinterpret_cast<HWND>(lParam) == Item(dialog, IDC_AI_TYPING_DELAY)) ShowDelay(dialog);
      return TRUE;
    case WM_AI_CONNECTIVITY_CHANGED:
      ShowResultLine(dialog, wParam == 1);
      return TRUE;
    case WM_REFILL_CHAT_COUNT:
      ShowChatCount(dialog);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_AI_PROVIDER:
          if (HIWORD(wParam) == CBN_SELCHANGE) {
            const int32_t provider = SelectedValue(dialog, IDC_AI_PROVIDER, 0);
            SetDlgItemTextW(dialog, IDC_AI_MODEL, kAiProviders[provider].defaultModel);
            EnableWindow(Item(dialog, IDC_AI_KEY), kAiProviders[provider].needsKey);
          }
          return TRUE;
        case IDC_AI_KEEP_HISTORY:
        case IDC_AI_TYPING:
          EnableDependants(dialog);
          return TRUE;
        case IDC_AI_TEST:
          OnTestConnection(dialog);
          return TRUE;
        case IDC_AI_RESET:
          OnReset(dialog);
          return TRUE;
        case IDOK:
          OnSave(dialog);
          return TRUE;
        case IDCANCEL:
          EndDialog(dialog, IDCANCEL);
          return TRUE;
      }
      break;
    case WM_DESTROY:
      if (g_hwndAiSettingsDialog == dialog) g_hwndAiSettingsDialog = nullptr;
      if (state) ReleaseDialogTheme(dialog, state->theme);
      break;
  }
  return FALSE;
}

}  // namespace

INT_PTR ShowAiSettingsDialog(HWND owner) {
  AiSettingsState state;
  return DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_AI_SETTINGS), owner, AiSettingsProc,
                         reinterpret_cast<LPARAM>(&state));
}

void ShowConnectivityInAiSettings(bool online) {
  if (g_hwndAiSettingsDialog) ShowResultLine(g_hwndAiSettingsDialog, online);
}
