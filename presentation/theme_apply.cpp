// Switching themes and painting the editor, title bars and buttons in them.
#include <windows.h>

#include <dwmapi.h>
#include <uxtheme.h>

#include <string>

#include "Scintilla.h"
#include "presentation/help_window.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "settings/settings.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "base/text_convert.h"

namespace {

constexpr DWORD kDarkModeAttribute = 20;
constexpr DWORD kDarkModeAttributeEarly = 19;  // the same attribute on early Windows 10 builds
constexpr int kElementSelectionInactiveText = 16;
constexpr int kElementSelectionInactiveBack = 17;
constexpr UINT kRedrawFrame = SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED;

// Fold margin, caret and both selections, as the editor and its set-up share them.
void ApplyCaretAndSelection(const ThemeColors& row) {
  SendEditor(SCI_SETFOLDMARGINCOLOUR, 1, row.editorBackground);
  SendEditor(SCI_SETFOLDMARGINHICOLOUR, 1, row.editorBackground);
  SendEditor(SCI_SETCARETFORE, row.caretColour);
  SendEditor(SCI_SETSELBACK, 1, row.selectionBackground);
  SendEditor(SCI_SETSELFORE, 1, row.selectionText);
  SendEditor(SCI_SETELEMENTCOLOUR, kElementSelectionInactiveBack, row.selectionBackground | 0xFF000000u);
  SendEditor(SCI_SETELEMENTCOLOUR, kElementSelectionInactiveText, row.selectionText | 0xFF000000u);
}

}  // namespace

void SetDarkTitleAttribute(HWND window, bool dark) {
  if (!window) return;
  BOOL value = dark ? TRUE : FALSE;
  DwmSetWindowAttribute(window, kDarkModeAttribute, &value, sizeof(value));
}

void SetDarkTitleBar(HWND window, bool dark) {
  if (!window) return;
  BOOL value = dark ? TRUE : FALSE;
  if (FAILED(DwmSetWindowAttribute(window, kDarkModeAttribute, &value, sizeof(value))))
    DwmSetWindowAttribute(window, kDarkModeAttributeEarly, &value, sizeof(value));
  SetWindowPos(window, nullptr, 0, 0, 0, 0, kRedrawFrame);
}

void SetupEditor() {
  if (!g_hwndEditor) return;
  const ThemeColors& row = CurrentTheme();
  SendEditor(SCI_SETCODEPAGE, SC_CP_UTF8);
  SendEditor(SCI_SETEOLMODE, SC_EOL_CRLF);
  SendEditor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>(WideToUtf8(g_fontName).c_str()));
  SendEditor(SCI_STYLESETSIZE, STYLE_DEFAULT, g_fontSize);
  SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold ? 1 : 0);
  SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic ? 1 : 0);
  SendEditor(SCI_STYLECLEARALL);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
  ApplyCaretAndSelection(row);
  for (int margin = 0; margin < 5; ++margin) SendEditor(SCI_SETMARGINWIDTHN, margin, 0);
  SendEditor(SCI_SETMARGINBACKN, 0, row.marginBackground);
  SendEditor(SCI_STYLESETBACK, STYLE_LINENUMBER, row.marginBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_LINENUMBER, row.marginText);
  SendEditor(SCI_SETMARGINLEFT, 0, 6);
  SendEditor(SCI_SETWRAPMODE, g_wordWrap ? SC_WRAP_WORD : SC_WRAP_NONE);
  SendEditor(SCI_SETHSCROLLBAR, g_wordWrap ? 0 : 1);
  SendEditor(SCI_SETTABWIDTH, 4);
  SendEditor(SCI_SETINDENT, 4);
  SendEditor(SCI_SETUSETABS, 0);  // the Tab key inserts four spaces
  SendEditor(SCI_SETCARETPERIOD, 500);
  SendEditor(SCI_SETCARETWIDTH, 2);
  SendEditor(SCI_SETMOUSESELECTIONRECTANGULARSWITCH, 0);
  SendEditor(SCI_SETINDENTATIONGUIDES, SC_IV_NONE);
  SendEditor(SCI_SETVSCROLLBAR, 1);
  SendEditor(SCI_SETMODEVENTMASK, SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT);
  SendEditor(SCI_USEPOPUP, SC_POPUP_NEVER);  // the program has its own context menu
}

void ApplyEditorTheme() {
  const ThemeColors& row = CurrentTheme();
  SetDarkTitleAttribute(g_hwndMain, (row.isDark & 0xFF) != 0);
  if (!g_hwndEditor) return;
  SendEditor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>(WideToUtf8(g_fontName).c_str()));
  SendEditor(SCI_STYLESETSIZE, STYLE_DEFAULT, g_fontSize);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, row.editorBackground);
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, row.editorText);
  ApplyCaretAndSelection(row);
  RestyleCurrentLanguage();
  SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, g_settings.fontBold ? 1 : 0);
  SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, g_settings.fontItalic ? 1 : 0);
  for (int margin = 0; margin < 5; ++margin) SendEditor(SCI_SETMARGINWIDTHN, margin, 0);
  for (HWND window : {g_hwndMargin, g_hwndStatus, g_hwndToolbar})
    if (window) InvalidateRect(window, nullptr, TRUE);
  SetWindowTheme(g_hwndEditor, WindowThemeClass(row), nullptr);
  SetWindowPos(g_hwndEditor, nullptr, 0, 0, 0, 0, kRedrawFrame);
}

void ApplyTheme(unsigned index, bool chosen) {
  if (index >= kThemeCount) return;
  g_themeChosen = chosen;
  g_themeIndex = index;
  g_settings.themeIndex = index;
  ApplyEditorTheme();
  SetDarkTitleBar(g_hwndMain, ThemeTitleBarDark(index));
  if (g_hwndMargin && IsWindowVisible(g_hwndMargin)) InvalidateRect(g_hwndMargin, nullptr, TRUE);
  SaveSettings(g_settings);
  if (g_hwndSettings) {
    HWND list = GetDlgItem(g_hwndSettings, IDC_SETTINGS_THEME);
    SendMessageW(list, CB_SETCURSEL, index, 0);
    InvalidateRect(list, nullptr, TRUE);
  }
  if (g_hwndFind) PostMessageW(g_hwndFind, WM_THEME_CHANGED, index, 0);
  if (g_hwndRegex) PostMessageW(g_hwndRegex, WM_THEME_CHANGED, index, 0);
  if (g_hwndHelp) PostMessageW(g_hwndHelp, WM_THEME_CHANGED, index, 0);
}

void SyncSystemTheme(HWND window) {
  if (g_themeChosen) {
    SetDarkTitleBar(window, SyncedTitleBarDark(g_settings.themeIndex));
    return;
  }
  DWORD value = 1, size = sizeof(value);
  if (RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                   L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &value, &size) != ERROR_SUCCESS)
    value = 1;
  SetDarkTitleBar(window, value == 0);
  unsigned wanted = value != 0 ? 1 : 0;
  if (wanted != g_themeIndex) ApplyTheme(wanted, false);
}

void ApplyViewerLook(HWND window) {
  if (!g_hwndEditor) return;
  const COLORREF text = RGB(0x2D, 0x1E, 0x0F), paper = RGB(0xF5, 0xEE, 0xDC);
  SendEditor(SCI_STYLESETFONT, STYLE_DEFAULT, reinterpret_cast<LPARAM>("Georgia"));
  SendEditor(SCI_STYLESETSIZE, STYLE_DEFAULT, 12);
  SendEditor(SCI_STYLESETBOLD, STYLE_DEFAULT, 0);
  SendEditor(SCI_STYLESETITALIC, STYLE_DEFAULT, 0);
  SendEditor(SCI_STYLECLEARALL);
  SendEditor(SCI_STYLESETBACK, STYLE_DEFAULT, paper);
  SendEditor(SCI_STYLESETFORE, STYLE_DEFAULT, text);
  SendEditor(SCI_STYLECLEARALL);
  SendEditor(SCI_SETFOLDMARGINCOLOUR, 1, paper);
  SendEditor(SCI_SETFOLDMARGINHICOLOUR, 1, paper);
  SendEditor(SCI_SETCARETFORE, RGB(0x50, 0x32, 0x14));
  SendEditor(SCI_SETCARETPERIOD, 0);
  SendEditor(SCI_SETCARETWIDTH, 1);
  SendEditor(SCI_SETSELBACK, 1, RGB(0xC8, 0xB4, 0x8C));
  SendEditor(SCI_SETSELFORE, 1, RGB(0x14, 0x0A, 0x00));
  SendEditor(SCI_SETWRAPMODE, SC_WRAP_WORD);
  SendEditor(SCI_SETHSCROLLBAR, 0);
  SendEditor(SCI_SETMARGINLEFT, 0, 28);
  SendEditor(SCI_SETMARGINRIGHT, 0, 28);
  SetDarkTitleAttribute(window, false);
  SetWindowTheme(g_hwndEditor, L"Explorer", nullptr);
}

void DrawThemedButton(const DRAWITEMSTRUCT* item) {
  const ThemeColors& row = CurrentTheme();
  const bool pressed = (item->itemState & ODS_SELECTED) != 0;
  const bool focused = (item->itemState & ODS_FOCUS) != 0;
  HDC dc = item->hDC;
  RECT rect = item->rcItem;

  HBRUSH face = CreateSolidBrush(pressed ? row.buttonFacePressed : row.buttonFace);
  HGDIOBJ oldBrush = SelectObject(dc, face);
  HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
  RoundRect(dc, rect.left, rect.top, rect.right, rect.bottom, 8, 8);
  HPEN border = CreatePen(PS_SOLID, 1, focused ? row.buttonBorderFocused : row.buttonBorder);
  SelectObject(dc, border);
  SelectObject(dc, GetStockObject(NULL_BRUSH));
  RoundRect(dc, rect.left, rect.top, rect.right, rect.bottom, 8, 8);
  HPEN highlight = nullptr;
  if (!pressed) {
    highlight = CreatePen(PS_SOLID, 1, (row.isDark & 0xFF) ? RGB(0x50, 0x50, 0x5A) : RGB(0xFF, 0xFF, 0xFF));
    SelectObject(dc, highlight);
    MoveToEx(dc, rect.left + 4, rect.top + 1, nullptr);
    LineTo(dc, rect.right - 4, rect.top + 1);
  }
  SelectObject(dc, oldPen);
  SelectObject(dc, oldBrush);
  DeleteObject(face);
  DeleteObject(border);
  if (highlight) DeleteObject(highlight);

  wchar_t caption[64] = {};
  GetWindowTextW(item->hwndItem, caption, 64);
  HFONT font = CreateFontW(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
  HGDIOBJ oldFont = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  // A disabled button keeps its face and shows its label in the muted colour.
  SetTextColor(dc, (item->itemState & ODS_DISABLED) ? row.controlTextDisabled : row.buttonText);
  if (pressed) OffsetRect(&rect, 0, 1);
  DrawTextW(dc, caption, -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  SelectObject(dc, oldFont);
  DeleteObject(font);
}

void DrawPenLine(HDC dc, int x1, int y1, int x2, int y2, COLORREF colour, int width) {
  HPEN pen = CreatePen(PS_SOLID, width, colour);
  HGDIOBJ old = SelectObject(dc, pen);
  MoveToEx(dc, x1, y1, nullptr);
  LineTo(dc, x2, y2);
  SelectObject(dc, old);
  DeleteObject(pen);
}
