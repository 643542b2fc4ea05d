// The Regex Search dialog: pattern and replacement with their histories,
// the options, the results list and progress bar, and the buttons that
// start each operation of search/regex_search.h.
#include "search/regex_dialog.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <cwchar>
#include <string>
#include <vector>

#include "base/app_state.h"
#include "base/heap_text.h"
#include "base/messages.h"
#include "presentation/dark_menu.h"
#include "presentation/dialog_theme.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "resources/resource_ids.h"
#include "search/regex_results.h"
#include "search/regex_search.h"
#include "settings/settings.h"
#include "settings/temp_files.h"

namespace {

constexpr int kFieldUnits = 512;  // the fields are read with room for 511 units
constexpr size_t kRegexHistoryRows = 10;

constexpr int kPushButtons[] = {IDC_REGEX_FIND_NEXT,    IDC_REGEX_REPLACE, IDC_REGEX_REPLACE_ALL,
                                IDC_REGEX_CANCEL,       IDC_REGEX_OPEN_RESULTS, IDC_REGEX_CLOSE,
                                IDC_REGEX_APPLY,        IDC_REGEX_FIND_ALL, IDC_REGEX_FIND_PREV};
constexpr int kUnstyledControls[] = {IDC_REGEX_MATCH_CASE,   IDC_REGEX_WHOLE_WORD,    IDC_REGEX_PRESERVE_CASE,
                                     IDC_REGEX_LINE_NUMBERS, IDC_REGEX_COLOR_RESULTS, IDC_REGEX_OPTIONS};
constexpr int kCombos[] = {IDC_REGEX_PATTERN, IDC_REGEX_REPLACEMENT};
const wchar_t* const kFormats[] = {L"Only matches", L"With line numbers", L"Full lines"};

// Everything the dialog keeps, on the interface thread only.
struct RegexDialogState {
  HBRUSH dialogBrush = nullptr;
  HBRUSH editBrush = nullptr;
  HBRUSH staticBrush = nullptr;
  HBRUSH listBrush = nullptr;
  bool swept = false;  // the sweep of old results files ran
};

RegexDialogState g_regexDialog;

HWND Item(HWND dialog, int id) { return GetDlgItem(dialog, id); }

bool Checked(HWND dialog, int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }

std::wstring FieldText(HWND dialog, int id, int units = kFieldUnits) {
  std::vector<wchar_t> text(static_cast<size_t>(units), L'\0');
  GetDlgItemTextW(dialog, id, text.data(), units);
  return text.data();
}

void SetStatus(HWND dialog, const std::wstring& text) { SetDlgItemTextW(dialog, IDC_REGEX_STATUS, text.c_str()); }

// Newest first; a row already there moves to the front.
void PushRegexHistory(wchar_t (*history)[kFieldUnits], const std::wstring& text) {
  if (text.empty()) return;
  const std::wstring row = text.substr(0, kFieldUnits - 1);
  size_t found = kRegexHistoryRows - 1;
  for (size_t k = 0; k < kRegexHistoryRows; ++k) {
    if (row == std::wstring(history[k], wcsnlen(history[k], kFieldUnits))) {
      found = k;
      break;
    }
  }
  for (size_t k = found; k > 0; --k) std::wmemcpy(history[k], history[k - 1], kFieldUnits);
  std::wmemset(history[0], L'\0', kFieldUnits);
  std::wmemcpy(history[0], row.data(), row.size());
}

void FillCombo(HWND dialog, int id, const wchar_t (*history)[kFieldUnits]) {
  SendDlgItemMessageW(dialog, id, CB_LIMITTEXT, kFieldUnits - 1, 0);
  for (size_t k = 0; k < kRegexHistoryRows; ++k) {
    const std::wstring row(history[k], wcsnlen(history[k], kFieldUnits));
    if (!row.empty()) SendDlgItemMessageW(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
  }
}

void SetFindAllCaption(HWND dialog, bool more) {
  SetDlgItemTextW(dialog, IDC_REGEX_FIND_ALL, more ? L"Find More" : L"Find All");
}

void StoreOptions(HWND dialog) {
  g_settings.regexMatchCase = Checked(dialog, IDC_REGEX_MATCH_CASE) ? 1 : 0;
  g_settings.regexWholeWord = Checked(dialog, IDC_REGEX_WHOLE_WORD) ? 1 : 0;
  g_settings.regexPreserveCase = Checked(dialog, IDC_REGEX_PRESERVE_CASE) ? 1 : 0;
  g_settings.regexLineNumbers = Checked(dialog, IDC_REGEX_LINE_NUMBERS) ? 1 : 0;
  g_settings.regexColorResults = Checked(dialog, IDC_REGEX_COLOR_RESULTS) ? 1 : 0;
  g_settings.regexBatchSize = GetDlgItemInt(dialog, IDC_REGEX_BATCH_SIZE, nullptr, FALSE);
  g_settings.regexMaxMatches = GetDlgItemInt(dialog, IDC_REGEX_MAX_MATCHES, nullptr, FALSE);
  const LRESULT format = SendDlgItemMessageW(dialog, IDC_REGEX_OUTPUT_FORMAT, CB_GETCURSEL, 0, 0);
  g_settings.regexOutputFormat = format < 0 ? 0 : static_cast<uint32_t>(format);
}

// -- operations ---------------------------------------------------------------

void FindStep(HWND dialog, bool forward) {
  const std::wstring pattern = FieldText(dialog, IDC_REGEX_PATTERN);
  if (pattern.empty()) {
    SetStatus(dialog, L"Please enter a pattern.");
    return;
  }
  SetStatus(dialog, RegexFindStep(pattern, Checked(dialog, IDC_REGEX_MATCH_CASE),
                                  Checked(dialog, IDC_REGEX_WHOLE_WORD), forward));
}

void ReplaceOne(HWND dialog) {
  const std::wstring pattern = FieldText(dialog, IDC_REGEX_PATTERN);
  const std::wstring replacement = FieldText(dialog, IDC_REGEX_REPLACEMENT);
  if (pattern.empty()) {
    SetStatus(dialog, L"Please enter a pattern.");
    return;
  }
  SetStatus(dialog, RegexReplaceSelection(pattern, replacement, Checked(dialog, IDC_REGEX_MATCH_CASE),
                                          Checked(dialog, IDC_REGEX_WHOLE_WORD),
                                          Checked(dialog, IDC_REGEX_PRESERVE_CASE)));
}

void ReplaceAll(HWND dialog) {
  const std::wstring pattern = FieldText(dialog, IDC_REGEX_PATTERN);
  const std::wstring replacement = FieldText(dialog, IDC_REGEX_REPLACEMENT);
  size_t count = 0;
  const std::wstring status =
      RegexReplaceAll(pattern, replacement, Checked(dialog, IDC_REGEX_MATCH_CASE),
                      Checked(dialog, IDC_REGEX_WHOLE_WORD), Checked(dialog, IDC_REGEX_PRESERVE_CASE), count);
  if (count > 0) {
    SendDlgItemMessageW(dialog, IDC_REGEX_RESULTS, LB_RESETCONTENT, 0, 0);
    EnableWindow(Item(dialog, IDC_REGEX_FIND_NEXT), TRUE);
    EnableWindow(Item(dialog, IDC_REGEX_REPLACE_ALL), TRUE);
  }
  SetStatus(dialog, status);
  SetFindAllCaption(dialog, false);
}

void FindAll(HWND dialog) {
  const std::wstring pattern = FieldText(dialog, IDC_REGEX_PATTERN);
  const std::wstring replacement = FieldText(dialog, IDC_REGEX_REPLACEMENT);
  if (pattern.empty()) {
    SetStatus(dialog, L"Please enter a pattern.");
    return;
  }
  const bool continuation = FieldText(dialog, IDC_REGEX_FIND_ALL, 32) == L"Find More";
  const LRESULT format = SendDlgItemMessageW(dialog, IDC_REGEX_OUTPUT_FORMAT, CB_GETCURSEL, 0, 0);
  // A running search ends first, so that its last batch lands before the
  // list is emptied rather than after.
  if (g_searchRunning.load()) StopRegexSearch();
  if (!continuation) SendDlgItemMessageW(dialog, IDC_REGEX_RESULTS, LB_RESETCONTENT, 0, 0);
  StartRegexSearch(dialog, pattern, replacement, Checked(dialog, IDC_REGEX_MATCH_CASE),
                   Checked(dialog, IDC_REGEX_WHOLE_WORD), Checked(dialog, IDC_REGEX_PRESERVE_CASE), continuation,
                   GetDlgItemInt(dialog, IDC_REGEX_BATCH_SIZE, nullptr, FALSE),
                   GetDlgItemInt(dialog, IDC_REGEX_MAX_MATCHES, nullptr, FALSE),
                   Checked(dialog, IDC_REGEX_LINE_NUMBERS), format < 0 ? 0 : static_cast<uint32_t>(format));
}

void CancelSearch(HWND dialog) {
  if (!g_searchRunning.load()) return;
  g_searchCancel = true;
  SetStatus(dialog, L"Cancelling...");
  EnableWindow(Item(dialog, IDC_REGEX_CANCEL), FALSE);
}

void Apply(HWND dialog) {
  StoreOptions(dialog);
  SaveSettings(g_settings);
  std::lock_guard<std::mutex> lock(g_regexSessionLock);
  RegexSession& session = g_regexSession;
  session.batchSize = g_settings.regexBatchSize;
  session.maxMatches = g_settings.regexMaxMatches;
  session.matchCase = g_settings.regexMatchCase != 0;
  session.wholeWord = g_settings.regexWholeWord != 0;
  session.preserveCase = g_settings.regexPreserveCase != 0;
  session.lineNumbers = g_settings.regexLineNumbers != 0;
  session.outputFormat = g_settings.regexOutputFormat;
  if (g_settings.regexColorResults && !session.matches.empty()) HighlightRegexMatches(session.matches);
  if (!g_settings.regexColorResults) ClearRegexIndicator();
  SetStatus(dialog, L"Settings saved.");
}

// -- worker messages ----------------------------------------------------------

void OnProgress(HWND dialog, LPARAM lParam) {
  auto* text = reinterpret_cast<wchar_t*>(lParam);
  if (text) SetStatus(dialog, text);
  uint64_t position = 0, length = 0;
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    position = g_regexSession.position;
    length = g_regexSession.documentWide.size();
  }
  if (length > 0)
    SendDlgItemMessageW(dialog, IDC_REGEX_PROGRESS, PBM_SETPOS,
                        static_cast<WPARAM>(static_cast<double>(position) * 100.0 / static_cast<double>(length)), 0);
  FreeHeapText(text);
}

void OnDone(HWND dialog, WPARAM code, LPARAM lParam) {
  auto* request = reinterpret_cast<RegexSearchRequest*>(lParam);
  if (!IsCurrentRegexRequest(request)) {
    delete request;  // of a search that a newer one replaced
    return;
  }
  SendDlgItemMessageW(dialog, IDC_REGEX_PROGRESS, PBM_SETPOS, 100, 0);
  for (int id : {IDC_REGEX_FIND_NEXT, IDC_REGEX_REPLACE, IDC_REGEX_REPLACE_ALL, IDC_REGEX_OPEN_RESULTS})
    EnableWindow(Item(dialog, id), TRUE);
  EnableWindow(Item(dialog, IDC_REGEX_CANCEL), FALSE);
  uint64_t total = 0;
  bool more = false;
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    total = g_regexSession.totalMatches;
    more = g_regexSession.hasMore && total > 0;
  }
  SetFindAllCaption(dialog, more);
  if (code == 2) SetStatus(dialog, L"Invalid regex pattern.");
  else if (code == 1) SetStatus(dialog, L"Found " + std::to_wstring(total) + L" matches.");
  else SetStatus(dialog, L"Search complete. Found " + std::to_wstring(total) + L" matches.");
  g_searchRunning = false;
  delete request;
}

void OnMatches(HWND dialog, LPARAM lParam) {
  auto* records = reinterpret_cast<std::vector<RegexMatch>*>(lParam);
  HWND list = Item(dialog, IDC_REGEX_RESULTS);
  {
    std::lock_guard<std::mutex> lock(g_regexSessionLock);
    if (g_settings.regexColorResults) HighlightRegexMatches(*records);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    for (const RegexMatch& record : *records) {
      const std::wstring row = ListRowText(record, g_regexSession.documentWide, g_regexSession.outputFormat,
                                           g_regexSession.lineNumbers);
      SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
    }
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  if (count > 0) SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(count - 1), 0);
  delete records;
}

// -- appearance ---------------------------------------------------------------

void DeleteBrushes() {
  for (HBRUSH* brush : {&g_regexDialog.dialogBrush, &g_regexDialog.editBrush, &g_regexDialog.staticBrush,
                        &g_regexDialog.listBrush}) {
    if (*brush) DeleteObject(*brush);
    *brush = nullptr;
  }
}

void MakeBrushes() {
  const ThemeColors& row = CurrentTheme();
  g_regexDialog.dialogBrush = CreateSolidBrush(row.dialogBackground);
  g_regexDialog.editBrush = CreateSolidBrush(row.editorBackground);
  g_regexDialog.staticBrush = CreateSolidBrush(row.dialogBackground);
  g_regexDialog.listBrush = CreateSolidBrush(row.listBackground);
}

void ApplyThemeNames(HWND dialog, bool withFormat) {
  const wchar_t* themeClass = (CurrentTheme().isDark & 0xFF) ? L"DarkMode_Explorer" : L"Explorer";
  SetWindowTheme(dialog, themeClass, nullptr);
  for (int id : kCombos) SetWindowTheme(Item(dialog, id), themeClass, nullptr);
  if (withFormat) SetWindowTheme(Item(dialog, IDC_REGEX_OUTPUT_FORMAT), themeClass, nullptr);
}

void InitDialog(HWND dialog) {
  g_hwndRegex = dialog;
  SetDarkTitleAttribute(dialog, (CurrentTheme().isDark & 0xFF) != 0);
  ApplyThemeNames(dialog, false);
  for (int id : kUnstyledControls) SetWindowTheme(Item(dialog, id), L"", L"");
  ThemeGroupBox(Item(dialog, IDC_REGEX_OPTIONS));
  for (int id : kPushButtons) {
    HWND button = Item(dialog, id);
    SetWindowLongPtrW(button, GWL_STYLE, (GetWindowLongPtrW(button, GWL_STYLE) & ~BS_TYPEMASK) | BS_OWNERDRAW);
  }
  FillCombo(dialog, IDC_REGEX_PATTERN, g_settings.regexPatternHistory);
  FillCombo(dialog, IDC_REGEX_REPLACEMENT, g_settings.regexReplaceHistory);
  for (int id : kCombos) AttachEditContextMenu(Item(dialog, id), dialog);
  const struct {
    int id;
    uint8_t value;
  } boxes[] = {{IDC_REGEX_MATCH_CASE, g_settings.regexMatchCase},
               {IDC_REGEX_WHOLE_WORD, g_settings.regexWholeWord},
               {IDC_REGEX_PRESERVE_CASE, g_settings.regexPreserveCase},
               {IDC_REGEX_LINE_NUMBERS, g_settings.regexLineNumbers},
               {IDC_REGEX_COLOR_RESULTS, g_settings.regexColorResults}};
  for (const auto& box : boxes) CheckDlgButton(dialog, box.id, box.value ? BST_CHECKED : BST_UNCHECKED);
  SetDlgItemInt(dialog, IDC_REGEX_BATCH_SIZE, g_settings.regexBatchSize, FALSE);
  SetDlgItemInt(dialog, IDC_REGEX_MAX_MATCHES, g_settings.regexMaxMatches, FALSE);
  for (const wchar_t* format : kFormats)
    SendDlgItemMessageW(dialog, IDC_REGEX_OUTPUT_FORMAT, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(format));
  SendDlgItemMessageW(dialog, IDC_REGEX_OUTPUT_FORMAT, CB_SETCURSEL, g_settings.regexOutputFormat, 0);
  SendDlgItemMessageW(dialog, IDC_REGEX_PROGRESS, PBM_SETRANGE32, 0, 100);
  DeleteBrushes();
  MakeBrushes();
  SetStatus(dialog, L"Ready");
  EnableWindow(Item(dialog, IDC_REGEX_OPEN_RESULTS), FALSE);
  EnableWindow(Item(dialog, IDC_REGEX_CANCEL), FALSE);
  CentreOnOwner(dialog);
}

void OnThemeChanged(HWND dialog) {
  SetDarkTitleBar(dialog, (CurrentTheme().isDark & 0xFF) != 0);
  ApplyThemeNames(dialog, true);
  DeleteBrushes();
  MakeBrushes();
  InvalidateRect(dialog, nullptr, TRUE);
  RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  RedrawWindow(Item(dialog, IDC_REGEX_RESULTS), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE);
}

void OnClose(HWND dialog) {
  if (g_searchRunning.load()) StopRegexSearch();
  const std::wstring pattern = FieldText(dialog, IDC_REGEX_PATTERN);
  const std::wstring replacement = FieldText(dialog, IDC_REGEX_REPLACEMENT);
  if (!pattern.empty()) PushRegexHistory(g_settings.regexPatternHistory, pattern);
  if (!replacement.empty()) PushRegexHistory(g_settings.regexReplaceHistory, replacement);
  StoreOptions(dialog);
  ClearRegexIndicator();
  SaveSettings(g_settings);
  CloseResultsFile();
  DestroyWindow(dialog);
}

INT_PTR CALLBACK RegexDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      InitDialog(dialog);
      return TRUE;
    case WM_ERASEBKGND: {
      RECT client;
      GetClientRect(dialog, &client);
      FillRect(reinterpret_cast<HDC>(wParam), &client, g_regexDialog.dialogBrush);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
      return TRUE;
    }
    case WM_CTLCOLORDLG:
      return reinterpret_cast<INT_PTR>(g_regexDialog.dialogBrush);
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().dialogText);
      SetBkMode(dc, TRANSPARENT);
      return reinterpret_cast<INT_PTR>(g_regexDialog.staticBrush);
    }
    case WM_CTLCOLOREDIT: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().editorText);
      SetBkColor(dc, CurrentTheme().editorBackground);
      return reinterpret_cast<INT_PTR>(g_regexDialog.editBrush);
    }
    case WM_CTLCOLORLISTBOX: {
      HDC dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, CurrentTheme().editorText);
      SetBkColor(dc, CurrentTheme().listBackground);
      return reinterpret_cast<INT_PTR>(g_regexDialog.listBrush);
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
    case WM_REGEX_PROGRESS:
      OnProgress(dialog, lParam);
      return TRUE;
    case WM_REGEX_DONE:
      OnDone(dialog, wParam, lParam);
      return TRUE;
    case WM_REGEX_MATCHES:
      OnMatches(dialog, lParam);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_REGEX_PATTERN:
          if (HIWORD(wParam) == CBN_EDITCHANGE) SetFindAllCaption(dialog, false);
          return TRUE;
        case IDC_REGEX_FIND_NEXT: FindStep(dialog, true); return TRUE;
        case IDC_REGEX_FIND_PREV: FindStep(dialog, false); return TRUE;
        case IDC_REGEX_REPLACE: ReplaceOne(dialog); return TRUE;
        case IDC_REGEX_FIND_ALL: FindAll(dialog); return TRUE;
        case IDC_REGEX_REPLACE_ALL: ReplaceAll(dialog); return TRUE;
        case IDC_REGEX_CANCEL: CancelSearch(dialog); return TRUE;
        case IDC_REGEX_OPEN_RESULTS: SetStatus(dialog, OpenRegexResults(dialog)); return TRUE;
        case IDC_REGEX_APPLY: Apply(dialog); return TRUE;
        case IDC_REGEX_CLOSE:
        case IDCANCEL:
          SendMessageW(dialog, WM_CLOSE, 0, 0);
          return TRUE;
      }
      break;
    case WM_CLOSE:
      OnClose(dialog);
      return TRUE;
    case WM_DESTROY:
      StopRegexSearch();  // when the main window goes first
      DeleteBrushes();
      g_hwndRegex = nullptr;
      return TRUE;
  }
  return FALSE;
}

}  // namespace

void ShowRegexDialog(HWND owner) {
  if (!g_regexDialog.swept) {
    g_regexDialog.swept = true;
    SweepRegexTempFiles();
  }
  if (g_hwndRegex && IsWindow(g_hwndRegex)) {
    SetForegroundWindow(g_hwndRegex);
    return;
  }
  HWND parent = g_hwndMain ? g_hwndMain : owner;
  g_hwndRegex = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_REGEX), parent, RegexDialogProc, 0);
  if (!g_hwndRegex) {
    OutputDebugStringW(L"ShowRegexDialog: FAILED\n");
    return;
  }
  ShowWindow(g_hwndRegex, SW_SHOW);
}
