// The editor's context menu as plain data: what it holds and which items are
// enabled or checked, worked out from the editor's state without a window.
#pragma once

#include <string>
#include <vector>

#include "presentation/menu_entry.h"

// What the menu's rules look at when it opens.
struct EditorMenuState {
  bool canUndo = false;
  bool canRedo = false;
  bool hasSelection = false;
  bool clipboardHasText = false;
  bool documentEmpty = true;
  bool modified = false;
  bool filePathIsMarkdown = false;  // the path ends in ".md", any case
  bool lineNumbers = true;
  bool wordWrap = true;
  unsigned themeIndex = 0;
  unsigned transparencyPercent = 0;
  std::vector<std::wstring> recentFiles;  // newest first, filled slots only
  std::vector<bool> recentExists;         // one per recent file: still on disk
};

// The whole menu, top to bottom, with its submenus.
std::vector<MenuEntry> BuildEditorMenu(const EditorMenuState& state);
