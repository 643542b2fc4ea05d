#include "shell/commands.h"

#include <shobjidl.h>

#include <string>

#include "Scintilla.h"
#include "ai/panel/ai_panel.h"
#include "document/document.h"
#include "document/recent_files.h"
#include "export/export_dialog.h"
#include "export/export_document.h"
#include "export/markdown_export.h"
#include "export/page_setup.h"
#include "export/print_document.h"
#include "export/print_preview.h"
#include "export/viewer_handoff.h"
#include "presentation/font_dialog.h"
#include "presentation/help_window.h"
#include "presentation/message_box.h"
#include "presentation/presentation.h"
#include "presentation/themes.h"
#include "search/find_dialog.h"
#include "search/regex_dialog.h"
#include "search/regex_search.h"
#include "search/search.h"
#include "settings/settings.h"
#include "shell/mode_switch.h"
#include "shell/open_document.h"
#include "shell/profile_manager.h"
#include "shell/settings_dialog.h"
#include "shell/shell.h"
#include "shell/toolbar.h"

namespace {

// The file types of the Open dialog, in order; the first is chosen.
const COMDLG_FILTERSPEC kOpenFileTypes[] = {
    {L"All Text Files",
     L"*.txt;*.md;*.cpp;*.h;*.c;*.hpp;*.cxx;*.cc;*.json;*.xml;*.ini;*.log;*.csv;*.bat;*.cmd;*.py;*.js;*.css;*.html"},
    {L"Text Files", L"*.txt"},
    {L"Source Files", L"*.cpp;*.h;*.c;*.hpp"},
    {L"Markdown", L"*.md"},
    {L"All Files", L"*.*"},
};

void OpenDocument(HWND window) {
  if (!ConfirmDiscardOrSave(window)) return;
  IFileOpenDialog* dialog = nullptr;
  if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dialog)))) {
    ShowMessageBox(window, kBoxOk, kGarbledErrorTitle, L"Failed to create file dialog.");
    return;
  }
  FILEOPENDIALOGOPTIONS options = 0;
  dialog->GetOptions(&options);
  dialog->SetOptions(options | FOS_FILEMUSTEXIST | FOS_PATHMUSTEXIST);
  dialog->SetFileTypes(ARRAYSIZE(kOpenFileTypes), kOpenFileTypes);
  dialog->SetFileTypeIndex(1);
  dialog->SetTitle(L"Open File - Tavro");
  std::wstring path;
  if (SUCCEEDED(dialog->Show(window))) {
    IShellItem* item = nullptr;
    if (SUCCEEDED(dialog->GetResult(&item))) {
      PWSTR chosen = nullptr;
      if (SUCCEEDED(item->GetDisplayName(SIGDN_FILESYSPATH, &chosen))) {
        path = chosen;
        CoTaskMemFree(chosen);
      }
      item->Release();
    }
  }
  dialog->Release();
  if (!path.empty()) OpenDocumentPath(window, path, OpenSource::kOpenDialog);
}

void SetTransparency(HWND window, unsigned percent) {
  g_settings.transparencyPercent = percent;
  ApplyTransparency(window, percent);
  SaveSettings(g_settings);
}

// The views above the presentation layer that follow the editor's font.
void RefreshFontViews() {
  RefreshMarginWidth();
  ApplyPanelTheme();
}

void ToggleLineNumbers(HWND window) {
  g_lineNumbers = !g_lineNumbers;
  if (g_hwndMargin) ShowWindow(g_hwndMargin, g_lineNumbers ? SW_SHOW : SW_HIDE);
  RefreshMarginWidth();
  PostMessageW(window, WM_SIZE, 0, 0);
}

void ToggleWordWrap() {
  g_wordWrap = !g_wordWrap;
  SendEditor(SCI_SETWRAPMODE, g_wordWrap ? SC_WRAP_WORD : SC_WRAP_NONE);
  SendEditor(SCI_SETHSCROLLBAR, g_wordWrap ? 0 : 1);
  if (g_hwndMargin) InvalidateRect(g_hwndMargin, nullptr, FALSE);
}

void PreviewMarkdown(HWND window) {
  int lines = static_cast<int>(SendEditor(SCI_GETLINECOUNT));
  if (lines <= kMarkdownPreviewLineLimit) {
    ExportMarkdownHtml(window, L"");
    return;
  }
  if (ShowMessageBox(window, kBoxYesNo, L"Tavro - MD Preview", MarkdownPreviewQuestion(lines).c_str()) == kResultYes)
    OpenPreviewTextInViewer(window);
}

}  // namespace

void ApplyTransparency(HWND window, unsigned percent) {
  LONG_PTR style = GetWindowLongPtrW(window, GWL_EXSTYLE);
  if (percent == 0) {
    SetWindowLongPtrW(window, GWL_EXSTYLE, style & ~static_cast<LONG_PTR>(WS_EX_LAYERED));
  } else {
    SetWindowLongPtrW(window, GWL_EXSTYLE, style | WS_EX_LAYERED);
    SetLayeredWindowAttributes(window, 0, TransparencyAlpha(percent), LWA_ALPHA);
  }
}

bool OpenFontDialog(HWND owner) {
  FontDialogHooks hooks;
  hooks.refreshViews = RefreshFontViews;
  hooks.updateStatusFont = UpdateStatusFont;
  SetFontDialogHooks(hooks);
  return ShowFontDialog(owner);
}

void NewDocument(HWND window) {
  if (!ConfirmDiscardOrSave(window)) return;
  CloseDocumentHandle();
  SendEditor(SCI_SETREADONLY, 0);
  SendEditor(SCI_CLEARALL);
  SendEditor(SCI_EMPTYUNDOBUFFER);
  g_filePath.clear();
  g_modified = false;
  g_encoding = kUtf8;
  SendEditor(SCI_SETEOLMODE, SC_EOL_CRLF);
  ApplyLanguage(L"");
  UpdateTitle();
  UpdateStatusBar();
  RefreshToolbar();
  // A large document's memory goes back to the system.
  HeapCompact(GetProcessHeap(), 0);
  SetProcessWorkingSetSize(GetCurrentProcess(), static_cast<SIZE_T>(-1), static_cast<SIZE_T>(-1));
  InvalidateRect(g_hwndEditor, nullptr, TRUE);
  if (g_hwndMargin) InvalidateRect(g_hwndMargin, nullptr, TRUE);
  UpdateWindow(window);
  ClearSearchIndicators();
}

bool HandleCommand(HWND window, int id) {
  if (id >= kCmdThemeFirst && id <= kCmdThemeLast) {
    ApplyTheme(static_cast<unsigned>(id - kCmdThemeFirst), true);
    ApplyPanelTheme();
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    return true;
  }
  if (id >= kCmdTransparencyFirst && id <= kCmdTransparencyLast) {
    SetTransparency(window, TransparencyOfCommand(id));
    return true;
  }
  if (id >= kCmdExportFirst && id <= kCmdExportLast) {
    ExportDocument(window, id - kCmdExportFirst);
    return true;
  }
  if (id >= kCmdRecentOpenFirst && id < kCmdRecentOpenFirst + 10) {
    OpenRecentFile(window, id - kCmdRecentOpenFirst);
    return true;
  }
  if (id >= kCmdRecentRemoveFirst && id < kCmdRecentRemoveFirst + 10) {
    RemoveRecentFile(id - kCmdRecentRemoveFirst);
    return true;
  }
  switch (id) {
    case kCmdFont: OpenFontDialog(window); return true;
    case kCmdPrintPreview: ShowPrintPreview(window); return true;
    case kCmdPrint: PrintDocument(window); return true;
    case kCmdPageSetup: ShowPageSetup(window); return true;
    case kCmdRegexSearch:
      SetRegexResultsOpener(OpenFileInViewer);  // results files go to a Viewer of this program
      ShowRegexDialog(window);
      return true;
    case kCmdNew: NewDocument(window); return true;
    case kCmdOpen: OpenDocument(window); return true;
    case kCmdSave: FileSave(window); return true;
    case kCmdSaveAs: FileSaveAs(window); return true;
    case kCmdExit: SendMessageW(window, WM_CLOSE, 0, 0); return true;
    case kCmdUndo: SendEditor(SCI_UNDO); return true;
    case kCmdRedo: SendEditor(SCI_REDO); return true;
    case kCmdCut: SendEditor(SCI_CUT); return true;
    case kCmdCopy: SendEditor(SCI_COPY); return true;
    case kCmdPaste: SendEditor(SCI_PASTE); return true;
    case kCmdSelectAll: SendEditor(SCI_SELECTALL); return true;
    case kCmdFindReplace: ShowFindDialog(window); return true;
    case kCmdLineNumbers: ToggleLineNumbers(window); return true;
    case kCmdWordWrap: ToggleWordWrap(); return true;
    case kCmdMarkdownPreview: PreviewMarkdown(window); return true;
    case kCmdExportDialog: ShowExportDialog(window); return true;
    case kCmdHelp: ShowHelp(window); return true;
    case kCmdProfiles: ShowProfileManager(window); return true;
    case kCmdModeSwitch: SwitchEditorMode(window); return true;
    case kCmdSettings: ShowSettingsDialog(window); return true;
    case kCmdRecentClear: ClearRecentFiles(window); return true;
  }
  return false;
}
