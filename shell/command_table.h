// The command table: ids, menu labels and the keys of accelerator table 103.
#pragma once

#include <string>
#include <vector>

enum CommandId {
  kCmdFont = 210,
  kCmdPrintPreview = 601,
  kCmdPrint = 602,
  kCmdPageSetup = 603,
  kCmdRegexSearch = 817,
  kCmdNew = 1001,
  kCmdOpen = 1002,
  kCmdSave = 1003,
  kCmdSaveAs = 1004,
  kCmdExit = 1005,
  kCmdUndo = 2001,
  kCmdRedo = 2002,
  kCmdCut = 2003,
  kCmdCopy = 2004,
  kCmdPaste = 2005,
  kCmdSelectAll = 2006,
  kCmdFindReplace = 2007,
  kCmdLineNumbers = 3001,
  kCmdWordWrap = 3002,
  kCmdThemeFirst = 3101,  // to 3106, theme 0 to 5
  kCmdThemeLast = 3106,
  kCmdMarkdownPreview = 3201,
  kCmdExportDialog = 3333,
  kCmdHelp = 4001,
  kCmdProfiles = 4020,
  kCmdModeSwitch = 4021,
  kCmdSettings = 6001,
  kCmdTransparencyFirst = 6100,  // to 6105: 0, 10, ... 50 per cent
  kCmdTransparencyLast = 6105,
  kCmdExportFirst = 6667,  // to 6670: PDF, HTML, RTF, TXT
  kCmdExportLast = 6670,
  kCmdRecentOpenFirst = 7000,  // to 7009
  kCmdRecentRemoveFirst = 7010,  // to 7019
  kCmdRecentClear = 7020,
};

// One key of the accelerator table.
struct AcceleratorKey {
  int id;
  bool control;
  bool shift;
  wchar_t key;  // virtual key: an upper-case letter
};

// Every key of the table, Ctrl+H and Ctrl+F both for Find & Replace.
const std::vector<AcceleratorKey>& CommandKeys();

// "Ctrl+Shift+F" and the like: the shortcut text drawn in the menu.
std::wstring ShortcutText(int id);

// Transparency of a command 6100..6105: 0, 10, 20, 30, 40 or 50.
unsigned TransparencyOfCommand(int id);

// Markdown preview runs at once up to this many lines; above it asks first.
constexpr int kMarkdownPreviewLineLimit = 30000;
// "This Markdown file has ~%d lines. ..." for the preview's question.
std::wstring MarkdownPreviewQuestion(int lines);

// True when the path ends in ".md", in any case.
bool IsMarkdownPath(const std::wstring& path);
