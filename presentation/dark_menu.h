// The program's own popup menus, drawn in the theme: the editor's context
// menu and the small menu of edit fields.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "presentation/menu_entry.h"

// One owner-drawn item; kept until the next menu is built, since the items
// must outlive the popup.
struct MenuItemData {
  std::wstring label;
  std::wstring shortcut;
  bool isSeparator = false;
  bool isDisabled = false;
  bool isChecked = false;
  bool inEditMenu = false;  // measured and drawn by the edit-field rules
};

// Builds a popup from the menu model; the items go to the process-wide list.
HMENU BuildPopupMenu(const std::vector<MenuEntry>& entries, bool editMenu);
// Frees the items of the last menu.
void FreeMenuItems();
// How many items are alive, for tests.
size_t LiveMenuItemCount();

// Frees the last menu's items, builds a popup of entries and tracks it at a
// screen point ((-1, -1) takes the cursor); destroyed again on return. The
// result is that of TrackPopupMenuEx with flags.
UINT ShowPopupMenu(const std::vector<MenuEntry>& entries, bool editMenu, HWND owner, POINT screenPoint, UINT flags);
// A row of a menu, and a separator.
MenuEntry MenuRow(const wchar_t* label, const wchar_t* shortcut, int id, bool enabled);
MenuEntry MenuSeparator();

// Whether the clipboard holds text that a Paste would insert.
bool ClipboardHasText();
// WM_MEASUREITEM and WM_DRAWITEM of the menus; false when not ours.
bool MeasureMenuItem(HWND window, MEASUREITEMSTRUCT* item);
bool DrawMenuItem(const DRAWITEMSTRUCT* item);

// The menu of an edit field: Undo, Cut, Copy, Paste, Delete, Select All.
void ShowEditContextMenu(HWND edit, HWND owner, POINT screenPoint);
// Gives the "Edit" child of a combo box that menu, once.
void AttachEditContextMenu(HWND combo, HWND owner);
// Gives an edit field that menu, once.
void AttachFieldContextMenu(HWND edit, HWND owner);
