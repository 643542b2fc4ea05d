// The command table against the accelerators and the menu rules.
#include <windows.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>

#include "shell/command_table.h"
#include "shell/menu_model.h"
#include "tests/common/test_folder.h"

namespace {

#pragma pack(push, 2)
struct AcceleratorEntry {
  WORD flags;
  WORD key;
  WORD id;
  WORD padding;
};
#pragma pack(pop)

using Key = std::tuple<int, bool, bool, int>;  // id, control, shift, virtual key

TEST(Accelerators, Table103HoldsEveryKeyOfTheCommandTableAndNothingElse) {
  HMODULE exe = LoadLibraryExW((ProgramFolder() + L"Tavro.exe").c_str(), nullptr,
                               LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  ASSERT_NE(exe, nullptr);
  HRSRC found = FindResourceW(exe, MAKEINTRESOURCEW(103), RT_ACCELERATOR);
  ASSERT_NE(found, nullptr);
  auto* entries = static_cast<const AcceleratorEntry*>(LockResource(LoadResource(exe, found)));
  size_t count = SizeofResource(exe, found) / sizeof(AcceleratorEntry);
  std::multiset<Key> inExe;
  for (size_t i = 0; i < count; ++i) {
    EXPECT_TRUE(entries[i].flags & FVIRTKEY);
    EXPECT_FALSE(entries[i].flags & FALT);
    inExe.insert(Key(entries[i].id, (entries[i].flags & FCONTROL) != 0, (entries[i].flags & FSHIFT) != 0,
                     entries[i].key));
  }
  FreeLibrary(exe);
  std::multiset<Key> designed;
  for (const AcceleratorKey& key : CommandKeys()) designed.insert(Key(key.id, key.control, key.shift, key.key));
  EXPECT_EQ(inExe, designed);
  EXPECT_EQ(designed.size(), 15u);
}

TEST(Accelerators, FindAndReplaceHasTwoKeysAndShowsCtrlH) {
  int keys = 0;
  for (const AcceleratorKey& key : CommandKeys()) keys += key.id == kCmdFindReplace;
  EXPECT_EQ(keys, 2);
  EXPECT_EQ(ShortcutText(kCmdFindReplace), L"Ctrl+H");
  EXPECT_EQ(ShortcutText(kCmdRegexSearch), L"Ctrl+Shift+H");
  EXPECT_EQ(ShortcutText(kCmdSaveAs), L"Ctrl+Shift+S");
  EXPECT_EQ(ShortcutText(kCmdPrint), L"Ctrl+P");
  EXPECT_EQ(ShortcutText(kCmdPrintPreview), L"");
}

TEST(Transparency, CommandsGiveTenPercentSteps) {
  EXPECT_EQ(TransparencyOfCommand(6100), 0u);
  EXPECT_EQ(TransparencyOfCommand(6101), 10u);
  EXPECT_EQ(TransparencyOfCommand(6105), 50u);
}

TEST(MarkdownPreview, QuestionAndPathRule) {
  EXPECT_EQ(MarkdownPreviewQuestion(30001),
            L"This Markdown file has ~30001 lines.\n\nFull Markdown preview would be slow.\nOpen as plain text in Tavro "
            L"Viewer instead?");
  EXPECT_EQ(kMarkdownPreviewLineLimit, 30000);
  EXPECT_TRUE(IsMarkdownPath(L"C:\\notes\\README.MD"));
  EXPECT_TRUE(IsMarkdownPath(L"a.md"));
  EXPECT_FALSE(IsMarkdownPath(L"a.mdx"));
  EXPECT_FALSE(IsMarkdownPath(L"md"));
  EXPECT_FALSE(IsMarkdownPath(L""));
}

const MenuEntry* Find(const std::vector<MenuEntry>& menu, const std::wstring& label) {
  for (const MenuEntry& entry : menu) {
    if (entry.label == label) return &entry;
    if (const MenuEntry* inner = Find(entry.children, label)) return inner;
  }
  return nullptr;
}

std::wstring Outline(const std::vector<MenuEntry>& menu) {
  std::wstring text;
  for (const MenuEntry& entry : menu) text += entry.isSeparator ? L"|" : entry.label + L";";
  return text;
}

TEST(EditorMenu, StructureTopToBottom) {
  EditorMenuState state;
  EXPECT_EQ(Outline(BuildEditorMenu(state)),
            L"Undo;Redo;|Cut;Copy;Paste;|Select All;|Find & Replace;Regex Search...;|Font...;|View;Export;Print;|"
            L"MD Preview (HTML);|Theme;Transparency;|Save;Save As...;|Recent Files;|New;Open...;");
  auto menu = BuildEditorMenu(state);
  EXPECT_EQ(Outline(Find(menu, L"View")->children), L"Line Numbers;Word Wrap;");
  EXPECT_EQ(Outline(Find(menu, L"Export")->children), L"PDF...;HTML...;RTF...;TXT...;");
  EXPECT_EQ(Outline(Find(menu, L"Print")->children), L"Page Setup...;Print Preview...;Print...;");
  EXPECT_EQ(Outline(Find(menu, L"Theme")->children), L"Tavro Dark;Tavro Light;Azure;Green;Night;Sepia;");
  EXPECT_EQ(Outline(Find(menu, L"Transparency")->children), L"0%  (opaque);10%;20%;30%;40%;50%;");
  EXPECT_EQ(Find(menu, L"Find & Replace")->shortcut, L"Ctrl+H");
  EXPECT_EQ(Find(menu, L"Open...")->id, kCmdOpen);
}

TEST(EditorMenu, EnabledStateRules) {
  EditorMenuState state;  // nothing to undo, no selection, empty clipboard, empty unmodified untitled doc
  auto menu = BuildEditorMenu(state);
  for (const wchar_t* label : {L"Undo", L"Redo", L"Cut", L"Copy", L"Paste", L"Select All", L"Save", L"MD Preview (HTML)"})
    EXPECT_TRUE(Find(menu, label)->isDisabled) << testing::PrintToString(std::wstring(label));
  for (const wchar_t* label : {L"Find & Replace", L"Save As...", L"New", L"Open...", L"Font..."})
    EXPECT_FALSE(Find(menu, label)->isDisabled);

  state.canUndo = state.canRedo = state.hasSelection = state.clipboardHasText = state.modified = true;
  state.documentEmpty = false;
  state.filePathIsMarkdown = true;
  menu = BuildEditorMenu(state);
  for (const wchar_t* label : {L"Undo", L"Redo", L"Cut", L"Copy", L"Paste", L"Select All", L"Save", L"MD Preview (HTML)"})
    EXPECT_FALSE(Find(menu, label)->isDisabled);
}

TEST(EditorMenu, ChecksFollowTheLiveValues) {
  EditorMenuState state;
  state.themeIndex = 2;
  state.transparencyPercent = 30;
  state.lineNumbers = false;
  state.wordWrap = true;
  auto menu = BuildEditorMenu(state);
  EXPECT_TRUE(Find(menu, L"Azure")->isChecked);
  EXPECT_FALSE(Find(menu, L"Tavro Dark")->isChecked);
  EXPECT_TRUE(Find(menu, L"30%")->isChecked);
  EXPECT_FALSE(Find(menu, L"0%  (opaque)")->isChecked);
  EXPECT_FALSE(Find(menu, L"Line Numbers")->isChecked);
  EXPECT_TRUE(Find(menu, L"Word Wrap")->isChecked);
}

TEST(EditorMenu, RecentFilesSubmenu) {
  EditorMenuState state;
  auto empty = Find(BuildEditorMenu(state), L"Recent Files")->children;
  EXPECT_EQ(Outline(empty), L"(empty);|Clear All;");
  EXPECT_TRUE(empty[0].isDisabled);
  EXPECT_TRUE(empty[2].isDisabled);

  for (int i = 0; i < 10; ++i) {
    state.recentFiles.push_back(L"C:\\docs\\f" + std::to_wstring(i) + L".txt");
    state.recentExists.push_back(i != 1);
  }
  auto menu = BuildEditorMenu(state);
  const auto& recent = Find(menu, L"Recent Files")->children;
  ASSERT_EQ(recent.size(), 12u);
  EXPECT_EQ(recent[0].label, L"1.  f0.txt");
  EXPECT_EQ(recent[1].label, L"2.  f1.txt  \u2297");
  EXPECT_EQ(recent[9].label, L":.  f9.txt");  // the tenth slot shows ":"
  EXPECT_EQ(Outline(recent[0].children), L"Open;Remove from list;");
  EXPECT_EQ(recent[0].children[0].id, 7000);
  EXPECT_EQ(recent[9].children[1].id, 7019);
  EXPECT_TRUE(recent[1].children[0].isDisabled);
  EXPECT_FALSE(recent[1].children[1].isDisabled);
  EXPECT_FALSE(recent[11].isDisabled);
  EXPECT_EQ(recent[11].id, 7020);
}

}  // namespace
