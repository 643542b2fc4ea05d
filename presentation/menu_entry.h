// One entry of a popup menu as plain data: what the owner-drawn menus are
// built from.
#pragma once

#include <string>
#include <vector>

struct MenuEntry {
  std::wstring label;     // empty for a separator
  std::wstring shortcut;  // drawn right-aligned; may be empty
  int id = 0;             // command id; 0 for separators and submenus
  bool isSeparator = false;
  bool isDisabled = false;
  bool isChecked = false;
  std::vector<MenuEntry> children;  // non-empty: a submenu
};
