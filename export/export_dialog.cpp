#include "export/export_dialog.h"

#include <commctrl.h>

#include "base/app_state.h"
#include "base/messages.h"
#include "export/export_document.h"
#include "export/export_formats.h"
#include "presentation/dialog_theme.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"

namespace {

constexpr int kButtonCorner = 8;
constexpr int kButtonFontHeight = -13;
constexpr int kHighlightInset = 4;
constexpr COLORREF kDarkHighlight = RGB(0x64, 0x64, 0x6E);
constexpr UINT_PTR kHoverSubclass = 1;

// The dialog's one record, from WM_INITDIALOG to WM_DESTROY.
struct ExportDialogState {
  HBRUSH background = nullptr;  // dialogBackground
  HBRUSH list = nullptr;        // listBackground, behind the format list
  HFONT buttonFont = nullptr;
  HWND hovered = nullptr;       // the button under the mouse
  int chosen = -1;              // the format id Export was pressed with
};

ExportDialogState* StateOf(HWND dialog) {
  return reinterpret_cast<ExportDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

void MakeBrushes(ExportDialogState& state) {
  const ThemeColors& row = CurrentTheme();
  if (state.background) DeleteObject(state.background);
  if (state.list) DeleteObject(state.list);
  state.background = CreateSolidBrush(row.dialogBackground);
  state.list = CreateSolidBrush(row.listBackground);
}

// Hover tracking of the two owner-drawn buttons.
LRESULT CALLBACK ButtonHover(HWND button, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data) {
  auto* state = reinterpret_cast<ExportDialogState*>(data);
  switch (message) {
    case WM_MOUSEMOVE:
      if (state->hovered != button) {
        HWND before = state->hovered;
        state->hovered = button;
        if (before) InvalidateRect(before, nullptr, FALSE);
        InvalidateRect(button, nullptr, FALSE);
        TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, button, 0};
        TrackMouseEvent(&track);
      }
      break;
    case WM_MOUSELEAVE:
      if (state->hovered == button) state->hovered = nullptr;
      InvalidateRect(button, nullptr, FALSE);
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(button, ButtonHover, kHoverSubclass);
      break;
  }
  return DefSubclassProc(button, message, wParam, lParam);
}

// The closed format list in the theme: the system paints it, then its frame
// and drop button are painted over in the dialog's control colours.
LRESULT CALLBACK ComboFrame(HWND combo, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(combo, ComboFrame, kHoverSubclass);
  if (message != WM_PAINT) return DefSubclassProc(combo, message, wParam, lParam);
  const LRESULT result = DefSubclassProc(combo, message, wParam, lParam);
  const ThemeColors& row = CurrentTheme();
  COMBOBOXINFO info = {};
  info.cbSize = sizeof(info);
  GetComboBoxInfo(combo, &info);
  RECT client;
  GetClientRect(combo, &client);
  HDC dc = GetDC(combo);
  HBRUSH face = CreateSolidBrush(row.controlBackground);
  RECT button = info.rcButton;
  button.right = client.right - 1;
  button.top = client.top + 1;
  button.bottom = client.bottom - 1;
  FillRect(dc, &button, face);
  DeleteObject(face);
  // A small chevron in the middle of the button.
  HPEN arrow = CreatePen(PS_SOLID, 1, row.controlText);
  HGDIOBJ oldPen = SelectObject(dc, arrow);
  const int cx = (button.left + button.right) / 2, cy = (button.top + button.bottom) / 2;
  for (int k = 0; k < 2; ++k) {
    MoveToEx(dc, cx - 4, cy - 2 + k, nullptr);
    LineTo(dc, cx, cy + 2 + k);
    LineTo(dc, cx + 5, cy - 3 + k);
  }
  HBRUSH border = CreateSolidBrush(row.controlBorder);
  FrameRect(dc, &client, border);
  RECT inner = {client.left + 1, client.top + 1, client.right - 1, client.bottom - 1};
  HBRUSH fill = CreateSolidBrush(row.listBackground);
  FrameRect(dc, &inner, fill);
  DeleteObject(fill);
  DeleteObject(border);
  SelectObject(dc, oldPen);
  DeleteObject(arrow);
  ReleaseDC(combo, dc);
  return result;
}

void DrawButton(const ExportDialogState& state, const DRAWITEMSTRUCT& item) {
  const ThemeColors& row = CurrentTheme();
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  const bool hovered = state.hovered == item.hwndItem;
  HDC dc = item.hDC;
  RECT box = item.rcItem;
  FillRect(dc, &box, state.background);
  PaintRoundBox(dc, box, pressed ? row.controlBorder : hovered ? row.controlHover : row.controlBackground,
                hovered ? row.buttonBorderFocused : row.controlBorder, kButtonCorner);
  if (hovered && !pressed) {
    HPEN line = CreatePen(PS_SOLID, 1, (row.isDark & 0xFF) ? kDarkHighlight : RGB(255, 255, 255));
    HGDIOBJ oldPen = SelectObject(dc, line);
    MoveToEx(dc, box.left + kHighlightInset, box.top + 1, nullptr);
    LineTo(dc, box.right - kHighlightInset, box.top + 1);
    SelectObject(dc, oldPen);
    DeleteObject(line);
  }
  wchar_t label[32] = {};
  GetWindowTextW(item.hwndItem, label, 32);
  HGDIOBJ oldFont = SelectObject(dc, state.buttonFont);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, hovered ? row.controlTextActive : row.controlText);
  if (pressed) OffsetRect(&box, 0, 1);
  DrawTextW(dc, label, -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, oldFont);
}

// The format list's rows, in the list's colours.
void DrawFormatItem(const ExportDialogState& state, const DRAWITEMSTRUCT& item) {
  const ThemeColors& row = CurrentTheme();
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  HDC dc = item.hDC;
  RECT box = item.rcItem;
  HBRUSH fill = selected ? CreateSolidBrush(row.selectionBackground) : nullptr;
  FillRect(dc, &box, fill ? fill : state.list);
  if (fill) DeleteObject(fill);
  if (item.itemID == static_cast<UINT>(-1) || item.itemID >= static_cast<UINT>(kExportFormatCount)) return;
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, selected ? row.selectionText : row.editorText);
  box.left += 4;
  DrawTextW(dc, kExportFormats[item.itemID].label, -1, &box, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void ShowDescription(HWND dialog) {
  const auto row = static_cast<int>(SendDlgItemMessageW(dialog, IDC_EXPORT_FORMAT, CB_GETCURSEL, 0, 0));
  if (row < 0 || row >= kExportFormatCount) return;
  SetDlgItemTextW(dialog, IDC_EXPORT_DESCRIPTION, kExportFormats[row].description);
}

void OnInit(HWND dialog, ExportDialogState* state) {
  SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(state));
  MakeBrushes(*state);
  state->buttonFont = CreateFontW(kButtonFontHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                                  L"Segoe UI");
  HWND list = GetDlgItem(dialog, IDC_EXPORT_FORMAT);
  for (const ExportFormat& format : kExportFormats)
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(format.label));
  SendMessageW(list, CB_SETCURSEL, 0, 0);
  SetWindowSubclass(list, ComboFrame, kHoverSubclass, 0);
  ShowDescription(dialog);
  for (int id : {IDOK, IDCANCEL}) {
    HWND button = GetDlgItem(dialog, id);
    SetWindowLongPtrW(button, GWL_STYLE, (GetWindowLongPtrW(button, GWL_STYLE) & ~BS_TYPEMASK) | BS_OWNERDRAW);
    SetWindowSubclass(button, ButtonHover, kHoverSubclass, reinterpret_cast<DWORD_PTR>(state));
  }
  HICON icon = LoadIconW(g_hInstance, MAKEINTRESOURCEW(IDI_TAVRO));
  SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
  SendMessageW(dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
  SetDarkTitleBar(dialog, (CurrentTheme().isDark & 0xFF) != 0);
  CentreOnOwner(dialog);
}

INT_PTR CALLBACK ExportDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    OnInit(dialog, reinterpret_cast<ExportDialogState*>(lParam));
    return TRUE;
  }
  ExportDialogState* state = StateOf(dialog);
  if (!state) return FALSE;
  const ThemeColors& row = CurrentTheme();
  switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      SetBkColor(reinterpret_cast<HDC>(wParam), row.dialogBackground);
      SetTextColor(reinterpret_cast<HDC>(wParam), row.dialogText);
      return reinterpret_cast<INT_PTR>(state->background);
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLOREDIT:
      SetBkColor(reinterpret_cast<HDC>(wParam), row.listBackground);
      SetTextColor(reinterpret_cast<HDC>(wParam), row.editorText);
      return reinterpret_cast<INT_PTR>(state->list);
    case WM_DRAWITEM: {
      const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item->CtlType == ODT_BUTTON) DrawButton(*state, *item);
      if (item->CtlType == ODT_COMBOBOX) DrawFormatItem(*state, *item);
      return TRUE;
    }
    case WM_THEME_CHANGED:
      MakeBrushes(*state);
      SetDarkTitleBar(dialog, (CurrentTheme().isDark & 0xFF) != 0);
      RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_EXPORT_FORMAT:
          if (HIWORD(wParam) == CBN_SELCHANGE) ShowDescription(dialog);
          return TRUE;
        case IDOK: {
          const auto chosen = static_cast<int>(SendDlgItemMessageW(dialog, IDC_EXPORT_FORMAT, CB_GETCURSEL, 0, 0));
          state->chosen = chosen >= 0 && chosen < kExportFormatCount ? kExportFormats[chosen].id : -1;
          EndDialog(dialog, 1);
          return TRUE;
        }
        case IDCANCEL:
          EndDialog(dialog, 2);
          return TRUE;
      }
      return FALSE;
    case WM_CLOSE:
      EndDialog(dialog, 2);
      return TRUE;
    case WM_DESTROY:
      DeleteObject(state->background);
      DeleteObject(state->list);
      DeleteObject(state->buttonFont);
      // The record is ShowExportDialog's: the choice outlives the window.
      SetWindowLongPtrW(dialog, DWLP_USER, 0);
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowExportDialog(HWND owner) {
  ExportDialogState state;
  const INT_PTR result = DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_EXPORT), owner, ExportDialogProc,
                                         reinterpret_cast<LPARAM>(&state));
  // The dialog is gone before the export begins.
  if (result == 1 && state.chosen >= 0) ExportDocument(g_hwndMain, state.chosen);
}
