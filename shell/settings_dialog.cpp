#include "shell/settings_dialog.h"

#include <uxtheme.h>

#include "Scintilla.h"
#include "ai/panel/ai_panel.h"
#include "document/document.h"
#include "presentation/dialog_theme.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"
#include "shell/commands.h"
#include "shell/mode_switch.h"
#include "shell/settings_rules.h"
#include "shell/shell.h"

namespace {

// The title's dash came out garbled; it stays as it stands.
constexpr wchar_t kSettingsBoxTitle[] = L"Tavro \u00e2\u20ac\u201d Settings";
constexpr wchar_t kTransparencyRefusal[] = L"Transparency must be a number between 0 and 50.";

// The dialog's working state.
struct SettingsDialogState {
  DialogTheme theme;
  uint32_t modeAtOpening = 0;
};

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

LRESULT SendItem(HWND dialog, int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendDlgItemMessageW(dialog, id, message, wParam, lParam);
}

bool Checked(HWND dialog, int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }

void Check(HWND dialog, int id, bool on) { CheckDlgButton(dialog, id, on ? BST_CHECKED : BST_UNCHECKED); }

// The chosen row's item data, or -1 with no row.
int64_t SelectedData(HWND dialog, int id) {
  const LRESULT row = SendItem(dialog, id, CB_GETCURSEL);
  return row == CB_ERR ? -1 : static_cast<int64_t>(SendItem(dialog, id, CB_GETITEMDATA, static_cast<WPARAM>(row)));
}

void ShowFontLine(HWND dialog) {
  SetDlgItemTextW(dialog, IDC_SETTINGS_FONT_LINE,
                  SettingsFontLine(g_fontName, g_fontSize, g_settings.fontBold != 0, g_settings.fontItalic != 0).c_str());
}

void FillControls(HWND dialog) {
  const bool aiMod = g_settings.editorMode == 1;
  CheckRadioButton(dialog, IDC_SETTINGS_CLASSIC, IDC_SETTINGS_AI_MOD, aiMod ? IDC_SETTINGS_AI_MOD : IDC_SETTINGS_CLASSIC);
  for (unsigned i = 0; i < kThemeCount; ++i) {
    const LRESULT row = SendItem(dialog, IDC_SETTINGS_THEME, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(kThemeNames[i]));
    SendItem(dialog, IDC_SETTINGS_THEME, CB_SETITEMDATA, static_cast<WPARAM>(row), i);
  }
  SendItem(dialog, IDC_SETTINGS_THEME, CB_SETCURSEL, static_cast<WPARAM>(ThemeRowOf(g_themeIndex)));
  SetDlgItemInt(dialog, IDC_SETTINGS_TRANSPARENCY, g_settings.transparencyPercent, FALSE);
  ShowFontLine(dialog);
  Check(dialog, IDC_SETTINGS_LINE_NUMBERS, g_lineNumbers);
  Check(dialog, IDC_SETTINGS_WORD_WRAP, g_wordWrap);
  for (const IntervalRow& interval : kIntervalRows) {
    const LRESULT row =
        SendItem(dialog, IDC_SETTINGS_INTERVAL, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(interval.label));
    SendItem(dialog, IDC_SETTINGS_INTERVAL, CB_SETITEMDATA, static_cast<WPARAM>(row), interval.minutes);
  }
  SendItem(dialog, IDC_SETTINGS_INTERVAL, CB_SETCURSEL,
           static_cast<WPARAM>(IntervalRowOf(g_settings.autoSaveMinutes)));
  Check(dialog, IDC_SETTINGS_AUTO_SAVE, g_settings.autoSaveMinutes > 0);
  EnableWindow(Item(dialog, IDC_SETTINGS_INTERVAL), g_settings.autoSaveMinutes > 0);
  Check(dialog, IDC_SETTINGS_SOUND_KEY, g_settings.soundOnKey != 0);
  Check(dialog, IDC_SETTINGS_SOUND_ENTER, g_settings.soundOnEnter != 0);
  Check(dialog, IDC_SETTINGS_SPLASH, g_settings.showSplash != 0);
}

void OnInit(HWND dialog, SettingsDialogState& state) {
  g_hwndSettings = dialog;
  state.modeAtOpening = g_settings.editorMode;
  state.theme.dialogColours = true;
  ApplyDialogTheme(dialog, state.theme);  // title bar, plain group and check boxes, owner-drawn buttons
  for (int id : {IDC_SETTINGS_THEME, IDC_SETTINGS_INTERVAL})
    SetWindowTheme(Item(dialog, id), WindowThemeClass(CurrentTheme()), nullptr);
  FillControls(dialog);
  CentreOnOwner(dialog);
  SuppressContextMenu(Item(dialog, IDC_SETTINGS_TRANSPARENCY));
}

// The order matters: a stop at the mode question leaves the transparency
// and the auto-save interval already stored in memory.
void OnOk(HWND dialog) {
  BOOL isNumber = FALSE;
  const UINT percent = GetDlgItemInt(dialog, IDC_SETTINGS_TRANSPARENCY, &isNumber, FALSE);
  if (!TransparencyAccepted(isNumber != FALSE, percent)) {
    SetDlgItemInt(dialog, IDC_SETTINGS_TRANSPARENCY, g_settings.transparencyPercent, FALSE);
    ShowMessageBox(dialog, kBoxOk, kSettingsBoxTitle, kTransparencyRefusal);
    return;
  }
  g_settings.transparencyPercent = percent;
  const int64_t themeData = SelectedData(dialog, IDC_SETTINGS_THEME);
  const unsigned theme = themeData < 0 ? g_settings.themeIndex : static_cast<unsigned>(themeData);
  g_settings.autoSaveMinutes =
      ChosenAutoSaveMinutes(Checked(dialog, IDC_SETTINGS_AUTO_SAVE), SelectedData(dialog, IDC_SETTINGS_INTERVAL));

  auto* state = reinterpret_cast<SettingsDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  const uint32_t mode = Checked(dialog, IDC_SETTINGS_AI_MOD) ? 1 : 0;
  const bool modeChanged = mode != state->modeAtOpening;
  if (modeChanged && !ConfirmDiscardOrSave(dialog)) return;

  g_settings.editorMode = mode;
  g_lineNumbers = Checked(dialog, IDC_SETTINGS_LINE_NUMBERS);
  g_wordWrap = Checked(dialog, IDC_SETTINGS_WORD_WRAP);
  g_settings.lineNumbers = g_lineNumbers ? 1 : 0;
  g_settings.wordWrap = g_wordWrap ? 1 : 0;
  g_settings.soundOnKey = Checked(dialog, IDC_SETTINGS_SOUND_KEY) ? 1 : 0;
  g_settings.soundOnEnter = Checked(dialog, IDC_SETTINGS_SOUND_ENTER) ? 1 : 0;

  HWND main = g_hwndMain;
  if (g_hwndEditor) {
    SendMessageW(g_hwndEditor, WM_SETREDRAW, FALSE, 0);
    SendEditor(SCI_SETWRAPMODE, g_wordWrap ? SC_WRAP_WORD : SC_WRAP_NONE);
    SendEditor(SCI_SETHSCROLLBAR, g_wordWrap ? 0 : 1);
  }
  if (g_hwndMargin) {
    ShowWindow(g_hwndMargin, g_lineNumbers ? SW_SHOW : SW_HIDE);
    RefreshMarginWidth();
  }
  if (main) ApplyTransparency(main, g_settings.transparencyPercent);
  if (main) RestartAutoSaveTimer(main, g_settings.autoSaveMinutes);  // the one place that starts auto-save

  if (theme == g_themeIndex) {
    g_settings.themeIndex = theme;
    SetDarkTitleBar(main, ThemeTitleBarDark(theme));
  } else {
    ApplyTheme(theme, true);
    ApplyPanelTheme();
  }
  if (modeChanged && main) SetEditorModeQuietly(main, mode == 1);

  if (g_hwndEditor) {
    SendMessageW(g_hwndEditor, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(g_hwndEditor, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  }
  if (main) {
    RedrawWindow(main, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    PostMessageW(main, WM_SIZE, 0, 0);
  }
  g_settings.showSplash = Checked(dialog, IDC_SETTINGS_SPLASH) ? 1 : 0;
  SaveSettings(g_settings);
  EndDialog(dialog, IDOK);
}

// Cancel, Esc and the close box: the stored theme is the live one again.
void OnCancel(HWND dialog) {
  g_themeIndex = g_settings.themeIndex;
  SetDarkTitleBar(g_hwndMain, ThemeTitleBarDark(g_themeIndex));
  EndDialog(dialog, IDCANCEL);
}

INT_PTR CALLBACK SettingsDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<SettingsDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG:
      state = reinterpret_cast<SettingsDialogState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      OnInit(dialog, *state);
      return TRUE;
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_DRAWITEM: {
      INT_PTR result = FALSE;
      if (state && DialogThemeMessage(state->theme, message, wParam, lParam, result)) return result;
      break;
    }
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_SETTINGS_AUTO_SAVE:
          EnableWindow(Item(dialog, IDC_SETTINGS_INTERVAL), Checked(dialog, IDC_SETTINGS_AUTO_SAVE));
          return TRUE;
        case IDC_SETTINGS_SELECT_FONT:
          // The Font dialog applies its own result at once.
          if (OpenFontDialog(dialog)) ShowFontLine(dialog);
          return TRUE;
        case IDOK:
          OnOk(dialog);
          return TRUE;
        case IDCANCEL:
          OnCancel(dialog);
          return TRUE;
      }
      break;
    case WM_CLOSE:
      OnCancel(dialog);
      return TRUE;
    case WM_DESTROY:
      if (g_hwndSettings == dialog) g_hwndSettings = nullptr;
      if (state) ReleaseDialogTheme(dialog, state->theme);
      break;
  }
  return FALSE;
}

}  // namespace

void ShowSettingsDialog(HWND owner) {
  SettingsDialogState state;
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_SETTINGS), owner, SettingsDialogProc,
                  reinterpret_cast<LPARAM>(&state));
}
