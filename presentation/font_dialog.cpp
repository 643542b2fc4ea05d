#include "presentation/font_dialog.h"

#include <uxtheme.h>

#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/text_convert.h"
#include "presentation/dialog_theme.h"
#include "presentation/font_rules.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"

namespace {

// The dialog works on this process-wide copy, so Cancel needs no undo. It
// lives from one opening to the next.
struct FontScratch {
  wchar_t pendingName[64] = {};
  int32_t pendingSize = 0;
  bool pendingBold = false;
  bool pendingItalic = false;
  bool fontAccepted = false;
};
FontScratch g_fontScratch;

FontDialogHooks g_hooks;

// One dialog's GDI objects, from WM_INITDIALOG to WM_DESTROY.
struct FontDialogState {
  DialogTheme theme;
  HFONT previewFont = nullptr;  // the last font made for the preview
  HBRUSH selectedRow = nullptr;  // #0078D4 behind a selected row
};

constexpr int kRowHeight = 18;
constexpr int kRowTextIndent = 6;
constexpr int kFamilyRowPoints = 10;
constexpr COLORREF kSelectedRow = RGB(0x00, 0x78, 0xD4);
constexpr wchar_t kMessageTitle[] = L"Tavro";
// These two stay in their language and with their garbled letters.
constexpr wchar_t kNoFontText[] = L"Molimo odaberite font.";
constexpr wchar_t kSizeRangeText[] = L"Veli\u00c4\u008dina fonta mora biti izme\u00c4\u2018u 1 i 144.";

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

LRESULT SendItem(HWND dialog, int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendDlgItemMessageW(dialog, id, message, wParam, lParam);
}

HFONT MakeFont(HDC dc, int points, bool bold, bool italic, const wchar_t* face) {
  return CreateFontW(-MulDiv(points, GetDeviceCaps(dc, LOGPIXELSY), 72), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL,
                     italic ? TRUE : FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_TT_ONLY_PRECIS, CLIP_DEFAULT_PRECIS,
                     CLEARTYPE_QUALITY, DEFAULT_PITCH, face);
}

void ShowPreview(HWND dialog, FontDialogState& state) {
  HWND preview = Item(dialog, IDC_FONT_PREVIEW);
  HDC dc = GetDC(preview);
  HFONT font = MakeFont(dc, g_fontScratch.pendingSize, g_fontScratch.pendingBold, g_fontScratch.pendingItalic,
                        g_fontScratch.pendingName);
  ReleaseDC(preview, dc);
  SendMessageW(preview, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  InvalidateRect(preview, nullptr, TRUE);
  // The font the control had before is this dialog's own only when it was
  // made here; the dialog's font belongs to the dialog.
  if (state.previewFont) DeleteObject(state.previewFont);
  state.previewFont = font;
}

int CALLBACK CollectFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD fontType, LPARAM lParam) {
  auto* names = reinterpret_cast<std::vector<std::wstring>*>(lParam);
  if (KeepFontFamily(font->lfFaceName, (fontType & TRUETYPE_FONTTYPE) != 0)) names->push_back(font->lfFaceName);
  return 1;
}

void FillFamilies(HWND dialog) {
  std::vector<std::wstring> names;
  LOGFONTW wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  HDC dc = GetDC(dialog);
  EnumFontFamiliesExW(dc, &wanted, CollectFamily, reinterpret_cast<LPARAM>(&names), 0);
  ReleaseDC(dialog, dc);
  for (const std::wstring& name : names) {
    // One row per family, whatever the character sets it comes in.
    if (SendItem(dialog, IDC_FONT_FAMILIES, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(name.c_str())) == LB_ERR)
      SendItem(dialog, IDC_FONT_FAMILIES, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  }
}

void SelectRow(HWND dialog, int id, LRESULT row) {
  if (row == LB_ERR || row < 0) return;
  SendItem(dialog, id, LB_SETCURSEL, static_cast<WPARAM>(row));
  SendItem(dialog, id, LB_SETTOPINDEX, static_cast<WPARAM>(TopRowFor(static_cast<int>(row))));
}

void OnInit(HWND dialog, FontDialogState& state) {
  const ThemeColors& row = CurrentTheme();
  state.theme.dialogColours = true;
  ApplyDialogTheme(dialog, state.theme);  // title bar, owner-drawn OK and Cancel, plain check boxes
  state.selectedRow = CreateSolidBrush(kSelectedRow);
  for (HWND window : {dialog, Item(dialog, IDC_FONT_FAMILIES), Item(dialog, IDC_FONT_SIZES)})
    SetWindowTheme(window, WindowThemeClass(row), nullptr);

  FillFamilies(dialog);
  for (int size : kFontSizes)
    SendItem(dialog, IDC_FONT_SIZES, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::to_wstring(size).c_str()));

  CopySettingsText(g_fontScratch.pendingName, 64, g_settings.fontName);
  g_fontScratch.pendingSize = g_settings.fontSize;
  g_fontScratch.pendingBold = g_settings.fontBold != 0;
  g_fontScratch.pendingItalic = g_settings.fontItalic != 0;

  const LPARAM name = reinterpret_cast<LPARAM>(g_fontScratch.pendingName);
  if (g_fontScratch.pendingName[0]) {
    LRESULT found = SendItem(dialog, IDC_FONT_FAMILIES, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), name);
    if (found == LB_ERR) found = SendItem(dialog, IDC_FONT_FAMILIES, LB_FINDSTRING, static_cast<WPARAM>(-1), name);
    SelectRow(dialog, IDC_FONT_FAMILIES, found);
  }
  SelectRow(dialog, IDC_FONT_SIZES, FontSizeRow(g_fontScratch.pendingSize));

  SendItem(dialog, IDC_FONT_NAME, EM_LIMITTEXT, 63);
  SetDlgItemTextW(dialog, IDC_FONT_NAME, g_fontScratch.pendingName);
  SetDlgItemInt(dialog, IDC_FONT_SIZE, static_cast<UINT>(g_fontScratch.pendingSize), TRUE);
  CheckDlgButton(dialog, IDC_FONT_BOLD, g_fontScratch.pendingBold ? BST_CHECKED : BST_UNCHECKED);
  CheckDlgButton(dialog, IDC_FONT_ITALIC, g_fontScratch.pendingItalic ? BST_CHECKED : BST_UNCHECKED);
  ShowPreview(dialog, state);
  SuppressContextMenu(Item(dialog, IDC_FONT_NAME));
  SuppressContextMenu(Item(dialog, IDC_FONT_SIZE));
  CentreOnOwner(dialog);
}

std::wstring RowText(HWND list, int row) {
  const LRESULT length = SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
  if (length == LB_ERR) return {};
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

void DrawRow(HWND dialog, const FontDialogState& state, const DRAWITEMSTRUCT* item) {
  const ThemeColors& row = CurrentTheme();
  HDC dc = item->hDC;
  RECT rect = item->rcItem;
  if (item->itemID != static_cast<UINT>(-1)) {
    const bool selected = (item->itemState & ODS_SELECTED) != 0;
    FillRect(dc, &rect, selected ? state.selectedRow : state.theme.list);
    const std::wstring text = RowText(item->hwndItem, static_cast<int>(item->itemID));
    HFONT own = nullptr;
    if (item->CtlID == IDC_FONT_FAMILIES) own = MakeFont(dc, kFamilyRowPoints, false, false, text.c_str());
    HGDIOBJ oldFont = SelectObject(
        dc, own ? own : reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, selected ? RGB(0xFF, 0xFF, 0xFF) : row.editorText);
    RECT textRect = rect;
    textRect.left += kRowTextIndent;
    DrawTextW(dc, text.c_str(), -1, &textRect, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(dc, oldFont);
    if (own) DeleteObject(own);
  }
  if (item->itemState & ODS_FOCUS) DrawFocusRect(dc, &rect);
}

void OnFamilyChosen(HWND dialog, FontDialogState& state) {
  const LRESULT row = SendItem(dialog, IDC_FONT_FAMILIES, LB_GETCURSEL);
  if (row == LB_ERR) return;
  CopySettingsText(g_fontScratch.pendingName, 64, RowText(Item(dialog, IDC_FONT_FAMILIES), static_cast<int>(row)));
  SetDlgItemTextW(dialog, IDC_FONT_NAME, g_fontScratch.pendingName);
  ShowPreview(dialog, state);
}

void OnSizeChosen(HWND dialog, FontDialogState& state) {
  const LRESULT row = SendItem(dialog, IDC_FONT_SIZES, LB_GETCURSEL);
  if (row == LB_ERR || row >= kFontSizeCount) return;
  g_fontScratch.pendingSize = kFontSizes[row];
  SetDlgItemInt(dialog, IDC_FONT_SIZE, static_cast<UINT>(g_fontScratch.pendingSize), TRUE);
  ShowPreview(dialog, state);
}

// A typed size from 1 to 144 counts; anything else leaves all as it is.
void OnSizeTyped(HWND dialog, FontDialogState& state) {
  wchar_t field[kSizeFieldChars + 1] = {};
  GetDlgItemTextW(dialog, IDC_FONT_SIZE, field, kSizeFieldChars + 1);
  const int size = SizeFieldNumber(field);
  if (!FontSizeAllowed(size)) return;
  g_fontScratch.pendingSize = size;
  ShowPreview(dialog, state);
  const int row = FontSizeRow(size);
  if (row >= 0) SendItem(dialog, IDC_FONT_SIZES, LB_SETCURSEL, static_cast<WPARAM>(row));
}

// The pending values become the live font and the record's.
void TakePendingFont() {
  CopySettingsText(g_fontName, 64, g_fontScratch.pendingName);
  g_fontSize = g_fontScratch.pendingSize;
  CopySettingsText(g_settings.fontName, 64, g_fontScratch.pendingName);
  g_settings.fontSize = g_fontScratch.pendingSize;
  g_settings.fontBold = g_fontScratch.pendingBold ? 1 : 0;
  g_settings.fontItalic = g_fontScratch.pendingItalic ? 1 : 0;
}

void OnOk(HWND dialog) {
  if (!g_fontScratch.pendingName[0]) {
    MessageBoxW(dialog, kNoFontText, kMessageTitle, MB_OK | MB_ICONWARNING);
    return;
  }
  if (!FontSizeAllowed(g_fontScratch.pendingSize)) {
    MessageBoxW(dialog, kSizeRangeText, kMessageTitle, MB_OK | MB_ICONWARNING);
    return;
  }
  TakePendingFont();
  SaveSettings(g_settings);
  if (g_hwndEditor) {
    SendEditor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>(WideToUtf8(g_fontName).c_str()));
    SendEditor(SCI_STYLESETSIZE, STYLE_DEFAULT, g_fontSize);
    SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold);
    SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic);
    RestyleCurrentLanguage();
  }
  if (g_hooks.refreshViews) g_hooks.refreshViews();
  if (g_hwndEditor) InvalidateRect(g_hwndEditor, nullptr, TRUE);
  if (g_hooks.updateStatusFont) g_hooks.updateStatusFont();
  g_fontScratch.fontAccepted = true;
  EndDialog(dialog, IDOK);
}

INT_PTR CALLBACK FontDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* state = reinterpret_cast<FontDialogState*>(GetWindowLongPtrW(dialog, DWLP_USER));
  switch (message) {
    case WM_INITDIALOG:
      state = reinterpret_cast<FontDialogState*>(lParam);
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      OnInit(dialog, *state);
      return TRUE;
    case WM_MEASUREITEM: {
      auto* measure = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
      if (measure->CtlType != ODT_LISTBOX) break;
      measure->itemHeight = kRowHeight;
      return TRUE;
    }
    case WM_DRAWITEM: {
      const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item->CtlType == ODT_LISTBOX && state) {
        DrawRow(dialog, *state, item);
        return TRUE;
      }
      INT_PTR result = FALSE;
      if (state && DialogThemeMessage(state->theme, message, wParam, lParam, result)) return result;
      break;
    }
    case WM_CTLCOLORSTATIC:
      if (state && reinterpret_cast<HWND>(lParam) == Item(dialog, IDC_FONT_PREVIEW)) {
        const ThemeColors& row = CurrentTheme();
        HDC dc = reinterpret_cast<HDC>(wParam);
        SetTextColor(dc, row.editorText);
        SetBkColor(dc, row.dialogBackground);
        SetBkMode(dc, TRANSPARENT);
        return reinterpret_cast<INT_PTR>(state->theme.background);
      }
      [[fallthrough]];
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: {
      INT_PTR result = FALSE;
      if (state && DialogThemeMessage(state->theme, message, wParam, lParam, result)) return result;
      break;
    }
    case WM_COMMAND:
      if (!state) break;
      switch (LOWORD(wParam)) {
        case IDC_FONT_FAMILIES:
          if (HIWORD(wParam) == LBN_SELCHANGE) OnFamilyChosen(dialog, *state);
          return TRUE;
        case IDC_FONT_SIZES:
          if (HIWORD(wParam) == LBN_SELCHANGE) OnSizeChosen(dialog, *state);
          return TRUE;
        case IDC_FONT_SIZE:
          if (HIWORD(wParam) == EN_CHANGE) OnSizeTyped(dialog, *state);
          return TRUE;
        case IDC_FONT_BOLD:
          g_fontScratch.pendingBold = IsDlgButtonChecked(dialog, IDC_FONT_BOLD) == BST_CHECKED;
          ShowPreview(dialog, *state);
          return TRUE;
        case IDC_FONT_ITALIC:
          g_fontScratch.pendingItalic = IsDlgButtonChecked(dialog, IDC_FONT_ITALIC) == BST_CHECKED;
          ShowPreview(dialog, *state);
          return TRUE;
        case IDOK:
          OnOk(dialog);
          return TRUE;
        case IDCANCEL:
          EndDialog(dialog, IDCANCEL);
          return TRUE;
      }
      break;
    case WM_DESTROY:
      if (state) {
        if (state->previewFont) DeleteObject(state->previewFont);
        state->previewFont = nullptr;
        DeleteObject(state->selectedRow);
        state->selectedRow = nullptr;
        ReleaseDialogTheme(dialog, state->theme);
      }
      break;
  }
  return FALSE;
}

}  // namespace

void SetFontDialogHooks(const FontDialogHooks& hooks) { g_hooks = hooks; }

bool ShowFontDialog(HWND owner) {
  g_fontScratch.fontAccepted = false;
  FontDialogState state;
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_FONT), owner, FontDialogProc,
                  reinterpret_cast<LPARAM>(&state));
  if (!g_fontScratch.fontAccepted) return false;
  TakePendingFont();
  if (g_hwndMain) PostMessageW(g_hwndMain, WM_SIZE, 0, 0);
  if (g_hooks.updateStatusFont) g_hooks.updateStatusFont();
  SaveSettings(g_settings);
  return true;
}
