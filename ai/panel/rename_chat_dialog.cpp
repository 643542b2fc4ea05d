// The Rename Chat dialog: label, field, OK and Cancel, built in memory and
// painted in the panel's colours with its own owner-drawn buttons.
#include "ai/panel/rename_chat_dialog.h"

#include <uxtheme.h>

#include "ai/panel/ai_panel.h"
#include "presentation/dialog_template.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"

namespace {

constexpr int kLabelId = 100;
constexpr int kFieldId = 101;
constexpr int kTitleCapacity = 256;  // characters of the field, terminator included

// The dialog's working state.
struct RenameState {
  std::wstring* title = nullptr;
  HBRUSH background = nullptr;
  HBRUSH field = nullptr;
};

bool IsDarkTheme() { return (CurrentTheme().isDark & 0xFF) != 0; }

INT_PTR CALLBACK RenameProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<RenameState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG: {
      state = reinterpret_cast<RenameState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      const ThemeColors& row = CurrentTheme();
      state->background = CreateSolidBrush(row.windowBackground);
      state->field = CreateSolidBrush(row.editorBackground);
      SetDarkTitleBar(dialog, IsDarkTheme());
      HWND field = GetDlgItem(dialog, kFieldId);
      SetWindowTheme(field, WindowThemeClass(row), nullptr);
      SendMessageW(field, EM_LIMITTEXT, kTitleCapacity - 1, 0);
      SetWindowTextW(field, state->title->substr(0, kTitleCapacity - 1).c_str());
      SendMessageW(field, EM_SETSEL, 0, -1);
      SetFocus(field);
      return FALSE;  // the focus is set
    }
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetBkColor(dc, CurrentTheme().windowBackground);
      SetTextColor(dc, CurrentTheme().dialogText);
      return reinterpret_cast<INT_PTR>(state->background);
    }
    case WM_CTLCOLOREDIT: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetBkColor(dc, CurrentTheme().editorBackground);
      SetTextColor(dc, CurrentTheme().editorText);
      return reinterpret_cast<INT_PTR>(state->field);
    }
    case WM_DRAWITEM:
      PaintPanelButton(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), state->background, PanelButtonKind::kPlain,
                       nullptr);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) {
        wchar_t text[kTitleCapacity] = {};
        GetDlgItemTextW(dialog, kFieldId, text, kTitleCapacity);
        *state->title = text;
        EndDialog(dialog, IDOK);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      if (state) {
        DeleteObject(state->background);
        DeleteObject(state->field);
      }
      break;
  }
  return FALSE;
}

}  // namespace

bool ShowRenameChatDialog(HWND owner, std::wstring& title) {
  TemplateWriter t;
  WriteDialogHeader(t, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER, 4, 200, 66, L"Rename Chat");
  t.Item(WS_CHILD | WS_VISIBLE | SS_LEFT, 0, {7, 7, 186, 9}, kLabelId, kStaticClass, L"Enter new chat name:");
  t.Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, {7, 19, 186, 13}, kFieldId,
         kEditClass, L"");
  t.Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, {87, 44, 50, 14}, IDOK, kButtonClass, L"OK");
  t.Item(WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, {143, 44, 50, 14}, IDCANCEL, kButtonClass, L"Cancel");
  t.AlignDword();
  RenameState state;
  std::wstring edited = title;
  state.title = &edited;
  const INT_PTR result = DialogBoxIndirectParamW(GetModuleHandleW(nullptr),
                                                 reinterpret_cast<LPCDLGTEMPLATEW>(t.words.data()), owner,
                                                 RenameProc, reinterpret_cast<LPARAM>(&state));
  if (result != IDOK) return false;
  title = edited;
  return true;
}
