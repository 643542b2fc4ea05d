#include "shell/command_table.h"

#include <cwchar>
#include <cwctype>

const std::vector<AcceleratorKey>& CommandKeys() {
  static const std::vector<AcceleratorKey> keys = {
      {kCmdFont, true, true, L'F'},        {kCmdPrint, true, false, L'P'},
      {kCmdRegexSearch, true, true, L'H'}, {kCmdNew, true, false, L'N'},
      {kCmdOpen, true, false, L'O'},       {kCmdSave, true, false, L'S'},
      {kCmdSaveAs, true, true, L'S'},      {kCmdUndo, true, false, L'Z'},
      {kCmdRedo, true, false, L'Y'},       {kCmdCut, true, false, L'X'},
      {kCmdCopy, true, false, L'C'},       {kCmdPaste, true, false, L'V'},
      {kCmdSelectAll, true, false, L'A'},  {kCmdFindReplace, true, false, L'H'},
      {kCmdFindReplace, true, false, L'F'},
  };
  return keys;
}

std::wstring ShortcutText(int id) {
  // The first key of a command is the one shown: Ctrl+H for Find & Replace.
  for (const AcceleratorKey& key : CommandKeys()) {
    if (key.id != id) continue;
    std::wstring text = key.control ? L"Ctrl+" : L"";
    if (key.shift) text += L"Shift+";
    text += key.key;
    return text;
  }
  return L"";
}

unsigned TransparencyOfCommand(int id) {
  if (id < kCmdTransparencyFirst || id > kCmdTransparencyLast) return 0;
  return static_cast<unsigned>(id - kCmdTransparencyFirst) * 10;
}

std::wstring MarkdownPreviewQuestion(int lines) {
  wchar_t text[256];
  swprintf(text, 256,
           L"This Markdown file has ~%d lines.\n\nFull Markdown preview would be slow.\nOpen as plain text in Tavro "
           L"Viewer instead?",
           lines);
  return text;
}

bool IsMarkdownPath(const std::wstring& path) {
  if (path.size() < 3) return false;
  const wchar_t* tail = path.c_str() + path.size() - 3;
  return tail[0] == L'.' && std::towlower(tail[1]) == L'm' && std::towlower(tail[2]) == L'd';
}
