#include "shell/menu_model.h"

#include "document/save_prompt.h"
#include "presentation/themes.h"
#include "shell/command_table.h"

namespace {

MenuEntry Item(const wchar_t* label, int id, bool disabled = false, bool checked = false) {
  MenuEntry entry;
  entry.label = label;
  entry.shortcut = ShortcutText(id);
  entry.id = id;
  entry.isDisabled = disabled;
  entry.isChecked = checked;
  return entry;
}

MenuEntry Separator() {
  MenuEntry entry;
  entry.isSeparator = true;
  return entry;
}

MenuEntry Submenu(const std::wstring& label, std::vector<MenuEntry> children) {
  MenuEntry entry;
  entry.label = label;
  entry.children = std::move(children);
  return entry;
}

MenuEntry RecentFilesSubmenu(const EditorMenuState& state) {
  std::vector<MenuEntry> items;
  for (size_t n = 0; n < state.recentFiles.size() && n < 10; ++n) {
    bool exists = n < state.recentExists.size() && state.recentExists[n];
    // "1" plus the slot as a character code: the tenth slot shows ":".
    std::wstring label(1, static_cast<wchar_t>(L'1' + n));
    label += L".  " + DocumentName(state.recentFiles[n]);
    if (!exists) label += L"  \u2297";
    items.push_back(Submenu(label, {Item(L"Open", kCmdRecentOpenFirst + static_cast<int>(n), !exists),
                                    Item(L"Remove from list", kCmdRecentRemoveFirst + static_cast<int>(n))}));
  }
  if (items.empty()) items.push_back(Item(L"(empty)", 0, true));
  items.push_back(Separator());
  items.push_back(Item(L"Clear All", kCmdRecentClear, state.recentFiles.empty()));
  return Submenu(L"Recent Files", std::move(items));
}

}  // namespace

std::vector<MenuEntry> BuildEditorMenu(const EditorMenuState& state) {
  std::vector<MenuEntry> themes;
  for (unsigned i = 0; i < kThemeCount; ++i)
    themes.push_back(Item(kThemeNames[i], kCmdThemeFirst + static_cast<int>(i), false, state.themeIndex == i));
  static const wchar_t* const kTransparencyLabels[] = {L"0%  (opaque)", L"10%", L"20%", L"30%", L"40%", L"50%"};
  std::vector<MenuEntry> transparency;
  for (int i = 0; i < 6; ++i)
    transparency.push_back(Item(kTransparencyLabels[i], kCmdTransparencyFirst + i, false,
                                state.transparencyPercent == static_cast<unsigned>(i * 10)));

  return {
      Item(L"Undo", kCmdUndo, !state.canUndo),
      Item(L"Redo", kCmdRedo, !state.canRedo),
      Separator(),
      Item(L"Cut", kCmdCut, !state.hasSelection),
      Item(L"Copy", kCmdCopy, !state.hasSelection),
      Item(L"Paste", kCmdPaste, !state.clipboardHasText),
      Separator(),
      Item(L"Select All", kCmdSelectAll, state.documentEmpty),
      Separator(),
      Item(L"Find & Replace", kCmdFindReplace),
      Item(L"Regex Search...", kCmdRegexSearch),
      Separator(),
      Item(L"Font...", kCmdFont),
      Separator(),
      Submenu(L"View", {Item(L"Line Numbers", kCmdLineNumbers, false, state.lineNumbers),
                        Item(L"Word Wrap", kCmdWordWrap, false, state.wordWrap)}),
      Submenu(L"Export", {Item(L"PDF...", kCmdExportFirst), Item(L"HTML...", kCmdExportFirst + 1),
                          Item(L"RTF...", kCmdExportFirst + 2), Item(L"TXT...", kCmdExportFirst + 3)}),
      Submenu(L"Print", {Item(L"Page Setup...", kCmdPageSetup), Item(L"Print Preview...", kCmdPrintPreview),
                         Item(L"Print...", kCmdPrint)}),
      Separator(),
      Item(L"MD Preview (HTML)", kCmdMarkdownPreview, !state.filePathIsMarkdown),
      Separator(),
      Submenu(L"Theme", std::move(themes)),
      Submenu(L"Transparency", std::move(transparency)),
      Separator(),
      Item(L"Save", kCmdSave, !state.modified),
      Item(L"Save As...", kCmdSaveAs),
      Separator(),
      RecentFilesSubmenu(state),
      Separator(),
      Item(L"New", kCmdNew),
      Item(L"Open...", kCmdOpen),
  };
}
