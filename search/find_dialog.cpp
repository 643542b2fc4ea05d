// The Find and Replace dialog: Find Next and Find Prev, Highlight All,
// Replace and Replace All over the editor. The first four share one cached
// list of matches that the editor's own search made; Replace All scans the
// text in memory and writes the result back as one edit.
#include "search/find_dialog.h"

#include <uxtheme.h>

#include <string>
#include <vector>

#include "Scintilla.h"
#include "base/app_state.h"
#include "base/messages.h"
#include "base/text_convert.h"
#include "presentation/dark_menu.h"
#include "presentation/dialog_theme.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "search/case_rules.h"
#include "search/editor_replace.h"
#include "search/find_rules.h"
#include "search/search.h"
#include "settings/settings.h"
#include "settings/temp_files.h"

namespace {

// Colour classes of the status line.
constexpr int kStatusNeutral = 0;
constexpr int kStatusWarning = 1;
constexpr int kStatusSuccess = 2;
constexpr COLORREF kWarningText = RGB(0xFF, 0xB4, 0x00);
constexpr COLORREF kSuccessText = RGB(0x28, 0xA0, 0x50);

// The fields are read with room for 255 units and the terminator.
constexpr int kFieldLimit = 256;

constexpr int kPushButtons[] = {IDC_FIND_NEXT, IDC_FIND_PREV, IDC_FIND_REPLACE, IDC_FIND_REPLACE_ALL,
                                IDC_FIND_HIGHLIGHT_ALL, IDC_FIND_CLOSE};
constexpr int kUnstyledControls[] = {IDC_FIND_MATCH_CASE,    IDC_FIND_WHOLE_WORD,    IDC_FIND_WRAP,
                                     IDC_FIND_PRESERVE_CASE, IDC_FIND_IN_SELECTION, IDC_FIND_COLOR_RESULTS,
                                     IDC_FIND_OPTIONS};
constexpr int kCombos[] = {IDC_FIND_WHAT, IDC_FIND_REPLACE_WITH};

// Everything the dialog keeps between clicks, on the interface thread only.
struct FindDialogState {
  std::vector<FindMatch> matches;  // of query in the whole document, in document order
  std::wstring query;              // what matches was built for; empty: nothing cached
  bool queryMatchCase = false;
  bool queryWholeWord = false;
  int statusKind = kStatusNeutral;
  HBRUSH dialogBrush = nullptr;
  HBRUSH editBrush = nullptr;
  HBRUSH staticBrush = nullptr;
  HBRUSH listBrush = nullptr;
  COLORREF listBrushColour = 0;
  bool swept = false;  // the temp-file sweep of the first opening ran
};

FindDialogState g_find;

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

bool Checked(HWND dialog, int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }

std::wstring FieldText(HWND dialog, int id) {
  wchar_t text[kFieldLimit] = {};
  GetDlgItemTextW(dialog, id, text, kFieldLimit);
  return text;
}

void SetStatus(HWND dialog, const std::wstring& text, int kind) {
  g_find.statusKind = kind;
  SetDlgItemTextW(dialog, IDC_FIND_STATUS, text.c_str());
  InvalidateRect(Item(dialog, IDC_FIND_STATUS), nullptr, TRUE);
}

void EmptyFindCache() {
  g_find.matches.clear();
  g_find.query.clear();
}

void SelectAndShow(const FindMatch& match) {
  SendEditor(SCI_SETSEL, match.start, match.end);
  SendEditor(SCI_SCROLLCARET);
}

std::string SelectedText() {
  const Sci_Position start = SendEditor(SCI_GETSELECTIONSTART), end = SendEditor(SCI_GETSELECTIONEND);
  std::string buffer(static_cast<size_t>(end - start) + 1, '\0');
  SendEditor(SCI_GETSELTEXT, 0, reinterpret_cast<LPARAM>(buffer.data()));
  buffer.resize(static_cast<size_t>(end - start));
  return buffer;
}

void RefillCombo(HWND dialog, int id, const wchar_t (*history)[kHistoryUnits], const std::wstring& typed) {
  SendDlgItemMessageW(dialog, id, CB_RESETCONTENT, 0, 0);
  for (const std::wstring& row : HistoryRows(history))
    SendDlgItemMessageW(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
  SetDlgItemTextW(dialog, id, typed.c_str());
}

// At the start of every search and replace (not of Highlight All): the texts
// go to the front of their histories, the settings file is written, and the
// combo boxes show the new order with the typed texts back in place.
void HistoryStep(HWND dialog, const std::wstring& search, const std::wstring* replacement) {
  PushHistory(g_settings.findHistory, search);
  if (replacement) PushHistory(g_settings.replaceHistory, *replacement);
  SaveSettings(g_settings);
  RefillCombo(dialog, IDC_FIND_WHAT, g_settings.findHistory, search);
  if (replacement) RefillCombo(dialog, IDC_FIND_REPLACE_WITH, g_settings.replaceHistory, *replacement);
}

// The list of matches by the editor's own search, whole word and case as
// the editor defines them.
void CollectFindMatches(const std::wstring& text, bool matchCase, bool wholeWord) {
  g_find.matches.clear();
  g_find.query = text;
  g_find.queryMatchCase = matchCase;
  g_find.queryWholeWord = wholeWord;
  const std::string utf8 = WideToUtf8(text);
  const Sci_Position length = SendEditor(SCI_GETLENGTH);
  const int flags = (matchCase ? SCFIND_MATCHCASE : 0) | (wholeWord ? SCFIND_WHOLEWORD : 0);
  Sci_Position p = 0;
  while (p < length) {
    Sci_TextToFind find = {};
    find.chrg.cpMin = static_cast<Sci_PositionCR>(p);
    find.chrg.cpMax = static_cast<Sci_PositionCR>(length);
    find.lpstrText = utf8.c_str();
    if (SendEditor(SCI_FINDTEXT, flags, reinterpret_cast<LPARAM>(&find)) == -1) break;
    if (find.chrgText.cpMin >= find.chrgText.cpMax) break;
    g_find.matches.push_back({static_cast<int32_t>(find.chrgText.cpMin), static_cast<int32_t>(find.chrgText.cpMax)});
    p = find.chrgText.cpMax;
  }
}

void CollectIfKeyChanged(const std::wstring& text, bool matchCase, bool wholeWord) {
  if (text != g_find.query || matchCase != g_find.queryMatchCase || wholeWord != g_find.queryWholeWord)
    CollectFindMatches(text, matchCase, wholeWord);
}

void FindStep(HWND dialog, bool forward) {
  const std::wstring text = FieldText(dialog, IDC_FIND_WHAT);
  if (text.empty()) return;
  const bool matchCase = Checked(dialog, IDC_FIND_MATCH_CASE), wholeWord = Checked(dialog, IDC_FIND_WHOLE_WORD);
  const bool wrap = Checked(dialog, IDC_FIND_WRAP);
  HistoryStep(dialog, text, nullptr);
  CollectIfKeyChanged(text, matchCase, wholeWord);
  if (g_find.matches.empty()) {
    SetStatus(dialog, L"No matches.", kStatusWarning);
    return;
  }
  const int index = PickMatch(g_find.matches, SendEditor(SCI_GETCURRENTPOS), SendEditor(SCI_GETSELECTIONSTART),
                              forward, wrap);
  if (index < 0) {
    SetStatus(dialog, L"No more matches.", kStatusWarning);
    return;
  }
  const FindMatch match = g_find.matches[static_cast<size_t>(index)];
  ClearIndicator(kIndicatorCurrentMatch);
  ConfigureFindIndicator(kIndicatorCurrentMatch, kCurrentColour, kCurrentAlpha);
  FillIndicator(kIndicatorCurrentMatch, match.start, match.end - match.start);
  SelectAndShow(match);
  SetStatus(dialog, MatchCountText(g_find.matches.size()), kStatusNeutral);
}

void ReplaceCurrentMatch(HWND dialog) {
  const std::wstring text = FieldText(dialog, IDC_FIND_WHAT);
  if (text.empty()) return;
  const std::wstring replacement = FieldText(dialog, IDC_FIND_REPLACE_WITH);
  const bool matchCase = Checked(dialog, IDC_FIND_MATCH_CASE), preserveCase = Checked(dialog, IDC_FIND_PRESERVE_CASE);
  HistoryStep(dialog, text, &replacement);
  const Sci_Position start = SendEditor(SCI_GETSELECTIONSTART);
  // Replace never replaces without a selection that is the search text.
  if (start == SendEditor(SCI_GETSELECTIONEND)) {
    FindStep(dialog, true);
    return;
  }
  const std::string selected = SelectedText();
  if (!SelectionMatches(selected, WideToUtf8(text), matchCase)) {
    FindStep(dialog, true);
    return;
  }
  const std::string newText = WideToUtf8(preserveCase ? ApplyPreserveCase(replacement, selected) : replacement);
  SendEditor(SCI_REPLACESEL, 0, reinterpret_cast<LPARAM>(newText.c_str()));
  // Marks of earlier replacements stay: they pile up until something clears them.
  ConfigureFindIndicator(kIndicatorReplaced, kReplacedColour, kReplacedAlpha);
  FillIndicator(kIndicatorReplaced, start, static_cast<Sci_Position>(newText.size()));
  // The edit's change notice has marked the document modified and refreshed
  // the title and the toolbar.
  EmptyFindCache();
  // Shown only until the search below writes its own status.
  SetStatus(dialog, L"Replaced. Searching for next...", kStatusSuccess);
  FindStep(dialog, true);
}

void ReplaceAllInDocument(HWND dialog) {
  const std::wstring text = FieldText(dialog, IDC_FIND_WHAT);
  if (text.empty()) return;
  const std::wstring replacement = FieldText(dialog, IDC_FIND_REPLACE_WITH);
  const bool matchCase = Checked(dialog, IDC_FIND_MATCH_CASE), wholeWord = Checked(dialog, IDC_FIND_WHOLE_WORD);
  const bool preserveCase = Checked(dialog, IDC_FIND_PRESERVE_CASE);
  const bool colour = Checked(dialog, IDC_FIND_COLOR_RESULTS), inSelection = Checked(dialog, IDC_FIND_IN_SELECTION);
  HistoryStep(dialog, text, &replacement);

  int64_t start = 0, end = SendEditor(SCI_GETLENGTH);
  if (inSelection) {
    const int64_t selectionStart = SendEditor(SCI_GETSELECTIONSTART);
    const int64_t selectionEnd = SendEditor(SCI_GETSELECTIONEND);
    if (selectionStart == selectionEnd) {
      SetStatus(dialog, L"No text selected. Running on entire document.", kStatusWarning);
      // The stored setting follows only when the dialog closes.
      CheckDlgButton(dialog, IDC_FIND_IN_SELECTION, BST_UNCHECKED);
    } else {
      start = selectionStart;
      end = selectionEnd;
    }
  }
  const int count = ReplaceAllInEditor({text, replacement, matchCase, wholeWord, preserveCase, colour}, start, end);
  if (count == 0) {
    SetStatus(dialog, L"No occurrences found.", kStatusWarning);
    return;
  }
  // The edit's change notice has marked the document modified and refreshed
  // the title and the toolbar.
  SetStatus(dialog, ReplacedCountText(count), kStatusSuccess);
  EmptyFindCache();
}

void HighlightAllMatches(HWND dialog) {
  const std::wstring text = FieldText(dialog, IDC_FIND_WHAT);
  if (text.empty()) return;
  const bool matchCase = Checked(dialog, IDC_FIND_MATCH_CASE), wholeWord = Checked(dialog, IDC_FIND_WHOLE_WORD);
  const bool colour = Checked(dialog, IDC_FIND_COLOR_RESULTS);
  ClearIndicator(kIndicatorHighlightAll);
  ClearIndicator(kIndicatorCurrentMatch);
  CollectIfKeyChanged(text, matchCase, wholeWord);
  if (g_find.matches.empty()) {
    SetStatus(dialog, L"No matches found.", kStatusWarning);
    return;
  }
  // Without colour the operation only counts.
  if (colour) {
    ConfigureFindIndicator(kIndicatorHighlightAll, kHighlightColour, kHighlightAlpha);
    FillIndicatorRanges(kIndicatorHighlightAll, g_find.matches);
    SelectAndShow(g_find.matches.back());
  }
  SetStatus(dialog, MatchCountText(g_find.matches.size()), kStatusSuccess);
}

// -- appearance ---------------------------------------------------------------

void DeleteBrushes() {
  for (HBRUSH* brush : {&g_find.dialogBrush, &g_find.editBrush, &g_find.staticBrush, &g_find.listBrush}) {
    if (*brush) DeleteObject(*brush);
    *brush = nullptr;
  }
}

void MakeBrushes() {
  const ThemeColors& row = CurrentTheme();
  g_find.dialogBrush = CreateSolidBrush(row.dialogBackground);
  g_find.editBrush = CreateSolidBrush(row.editorBackground);
  g_find.staticBrush = CreateSolidBrush(row.dialogBackground);
  g_find.listBrush = CreateSolidBrush(row.listBackground);
  g_find.listBrushColour = row.listBackground;
}

void ApplyThemeNames(HWND dialog) {
  const wchar_t* themeClass = WindowThemeClass(CurrentTheme());
  SetWindowTheme(dialog, themeClass, nullptr);
  for (int id : kCombos) SetWindowTheme(Item(dialog, id), themeClass, nullptr);
}

// The frame is dark whatever the theme until a theme change says otherwise.
void RedrawFrameDark(HWND dialog) {
  SetDarkTitleAttribute(dialog, true);
  SetWindowPos(dialog, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
}

void InitDialog(HWND dialog) {
  g_hwndFind = dialog;
  SetDarkTitleAttribute(dialog, true);
  ApplyThemeNames(dialog);
  for (int id : kUnstyledControls) SetWindowTheme(Item(dialog, id), L"", L"");
  ThemeGroupBox(Item(dialog, IDC_FIND_OPTIONS));  // Wine's own drawing ignores the caption colour
  for (int id : kPushButtons) {
    HWND button = Item(dialog, id);
    SetWindowLongPtrW(button, GWL_STYLE, (GetWindowLongPtrW(button, GWL_STYLE) & ~BS_TYPEMASK) | BS_OWNERDRAW);
  }
  DeleteBrushes();
  MakeBrushes();
  RefillCombo(dialog, IDC_FIND_WHAT, g_settings.findHistory, L"");
  RefillCombo(dialog, IDC_FIND_REPLACE_WITH, g_settings.replaceHistory, L"");
  for (int id : kCombos) AttachEditContextMenu(Item(dialog, id), dialog);
  const struct {
    int id;
    uint8_t value;
  } boxes[] = {{IDC_FIND_MATCH_CASE, g_settings.findMatchCase},       {IDC_FIND_WHOLE_WORD, g_settings.findWholeWord},
               {IDC_FIND_WRAP, g_settings.findWrapAround},            {IDC_FIND_PRESERVE_CASE, g_settings.findPreserveCase},
               {IDC_FIND_IN_SELECTION, g_settings.findInSelection}, {IDC_FIND_COLOR_RESULTS, g_settings.findColorResults}};
  for (const auto& box : boxes) CheckDlgButton(dialog, box.id, box.value ? BST_CHECKED : BST_UNCHECKED);
  SetStatus(dialog, L"", kStatusNeutral);
  CentreOnOwner(dialog);
  SendMessageW(dialog, DM_SETDEFID, IDC_FIND_NEXT, 0);
  SetFocus(Item(dialog, IDC_FIND_WHAT));
}

void OnThemeChanged(HWND dialog) {
  SetDarkTitleBar(dialog, (CurrentTheme().isDark & 0xFF) != 0);
  ApplyThemeNames(dialog);
  DeleteBrushes();
  MakeBrushes();
  RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void OnClose(HWND dialog) {
  g_settings.findMatchCase = Checked(dialog, IDC_FIND_MATCH_CASE) ? 1 : 0;
  g_settings.findWholeWord = Checked(dialog, IDC_FIND_WHOLE_WORD) ? 1 : 0;
  g_settings.findWrapAround = Checked(dialog, IDC_FIND_WRAP) ? 1 : 0;
  g_settings.findPreserveCase = Checked(dialog, IDC_FIND_PRESERVE_CASE) ? 1 : 0;
  g_settings.findInSelection = Checked(dialog, IDC_FIND_IN_SELECTION) ? 1 : 0;
  g_settings.findColorResults = Checked(dialog, IDC_FIND_COLOR_RESULTS) ? 1 : 0;
  SaveSettings(g_settings);
  SetDlgItemTextW(dialog, IDC_FIND_HIGHLIGHT_ALL, L"Highlight All");
  // Replaced-text marks stay in the document.
  ClearIndicator(kIndicatorHighlightAll);
  ClearIndicator(kIndicatorCurrentMatch);
  EmptyFindCache();
  DestroyWindow(dialog);
}

INT_PTR ColourStatic(HWND dialog, HDC dc, HWND control) {
  const ThemeColors& row = CurrentTheme();
  COLORREF text = row.dialogText;
  if (control == Item(dialog, IDC_FIND_STATUS)) {
    if (g_find.statusKind == kStatusWarning) text = kWarningText;
    if (g_find.statusKind == kStatusSuccess) text = kSuccessText;
  }
  SetTextColor(dc, text);
  SetBkMode(dc, TRANSPARENT);
  return reinterpret_cast<INT_PTR>(g_find.staticBrush);
}

INT_PTR CALLBACK FindDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      InitDialog(dialog);
      return FALSE;  // the focus is set
    case WM_ACTIVATE:
      SetDarkTitleAttribute(dialog, true);
      if (LOWORD(wParam) != WA_INACTIVE) RedrawFrameDark(dialog);
      return FALSE;
    case WM_ERASEBKGND: {
      RECT client;
      GetClientRect(dialog, &client);
      FillRect(reinterpret_cast<HDC>(wParam), &client, g_find.dialogBrush);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return TRUE;
    }
    case WM_CTLCOLORDLG:
      return reinterpret_cast<INT_PTR>(g_find.dialogBrush);
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return ColourStatic(dialog, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_CTLCOLOREDIT: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().editorText);
      SetBkColor(dc, CurrentTheme().editorBackground);
      return reinterpret_cast<INT_PTR>(g_find.editBrush);
    }
    case WM_CTLCOLORLISTBOX: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      const ThemeColors& row = CurrentTheme();
      SetTextColor(dc, row.editorText);
      SetBkColor(dc, row.listBackground);
      if (g_find.listBrushColour != row.listBackground) {
        if (g_find.listBrush) DeleteObject(g_find.listBrush);
        g_find.listBrush = CreateSolidBrush(row.listBackground);
        g_find.listBrushColour = row.listBackground;
      }
      return reinterpret_cast<INT_PTR>(g_find.listBrush);
    }
    case WM_DRAWITEM: {
      const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item->CtlType == ODT_MENU) return DrawMenuItem(item);
      DrawThemedButton(item);
      return TRUE;
    }
    case WM_MEASUREITEM:
      return MeasureMenuItem(dialog, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam));
    case WM_THEME_CHANGED:
      OnThemeChanged(dialog);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_FIND_NEXT: FindStep(dialog, true); return TRUE;
        case IDC_FIND_PREV: FindStep(dialog, false); return TRUE;
        case IDC_FIND_REPLACE: ReplaceCurrentMatch(dialog); return TRUE;
        case IDC_FIND_REPLACE_ALL: ReplaceAllInDocument(dialog); return TRUE;
        case IDC_FIND_HIGHLIGHT_ALL: HighlightAllMatches(dialog); return TRUE;
        case IDC_FIND_CLOSE:
        case IDCANCEL:
          SendMessageW(dialog, WM_CLOSE, 0, 0);
          return TRUE;
      }
      break;
    case WM_CLOSE:
      OnClose(dialog);
      return TRUE;
    case WM_DESTROY:
      DeleteBrushes();
      g_hwndFind = nullptr;
      if (g_hwndEditor) SetFocus(g_hwndEditor);
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowFindDialog(HWND owner) {
  if (!g_find.swept) {
    g_find.swept = true;
    SweepFindTempFiles();
  }
  if (g_hwndFind && IsWindow(g_hwndFind)) {
    SetForegroundWindow(g_hwndFind);
    SetFocus(Item(g_hwndFind, IDC_FIND_WHAT));
    return;
  }
  g_hwndFind = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_FIND), owner, FindDialogProc, 0);
  if (g_hwndFind) ShowWindow(g_hwndFind, SW_SHOW);
}

void InvalidateFindCache() {
  EmptyFindCache();
  if (g_hwndFind && g_hwndEditor && SendEditor(SCI_GETLENGTH) > 0) ClearIndicator(kIndicatorCurrentMatch);
}
