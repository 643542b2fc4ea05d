#include "presentation/dark_menu.h"

#include <commctrl.h>

#include <memory>

#include "presentation/menu_layout.h"
#include "settings/settings.h"

namespace {

constexpr UINT_PTR kEditMenuSubclassId = 0x7A11;
constexpr wchar_t kEditMenuProperty[] = L"TavroEditMenu";

std::vector<std::unique_ptr<MenuItemData>> g_menuItems;

HFONT MenuFont(int weight) {
  return CreateFontW(-11, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
}

bool IsOurs(ULONG_PTR data) {
  for (const auto& item : g_menuItems)
    if (reinterpret_cast<ULONG_PTR>(item.get()) == data) return true;
  return false;
}

int TextWidth(HDC dc, const std::wstring& text) {
  if (text.empty()) return 0;
  SIZE size = {};
  GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
  return size.cx;
}

void Track(HMENU menu, HWND owner, POINT point, UINT flags, UINT* chosen) {
  MENUINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = MIM_BACKGROUND | MIM_APPLYTOSUBMENUS;
  info.hbrBack = CreateSolidBrush(MenuColorRow(g_themeIndex).background);
  SetMenuInfo(menu, &info);
  if (point.x == -1 && point.y == -1) GetCursorPos(&point);
  UINT result = TrackPopupMenuEx(menu, flags, point.x, point.y, owner, nullptr);
  if (chosen) *chosen = result;
  MENUINFO back = {};
  back.cbSize = sizeof(back);
  back.fMask = MIM_BACKGROUND;
  if (GetMenuInfo(menu, &back) && back.hbrBack) DeleteObject(back.hbrBack);
  DestroyMenu(menu);
}

LRESULT CALLBACK EditMenuSubclass(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR owner) {
  switch (message) {
    case WM_CONTEXTMENU: {
      POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      if (point.x == -1 && point.y == -1) {  // from the keyboard: under the field
        RECT rect;
        GetWindowRect(edit, &rect);
        point = {rect.left + 4, rect.bottom};
      }
      ShowEditContextMenu(edit, reinterpret_cast<HWND>(owner), point);
      return 0;
    }
    case WM_RBUTTONUP: {
      POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      ClientToScreen(edit, &point);
      ShowEditContextMenu(edit, reinterpret_cast<HWND>(owner), point);
      return 0;
    }
    case WM_NCDESTROY:
      RemovePropW(edit, kEditMenuProperty);
      RemoveWindowSubclass(edit, EditMenuSubclass, kEditMenuSubclassId);
      break;
  }
  return DefSubclassProc(edit, message, wParam, lParam);
}

}  // namespace

void FreeMenuItems() { g_menuItems.clear(); }

size_t LiveMenuItemCount() { return g_menuItems.size(); }

HMENU BuildPopupMenu(const std::vector<MenuEntry>& entries, bool editMenu) {
  HMENU menu = CreatePopupMenu();
  for (const MenuEntry& entry : entries) {
    auto data = std::make_unique<MenuItemData>();
    data->label = entry.label;
    data->shortcut = entry.children.empty() ? entry.shortcut : L"";
    data->isSeparator = entry.isSeparator;
    data->isDisabled = entry.isDisabled;
    data->isChecked = entry.isChecked;
    data->inEditMenu = editMenu;
    UINT flags = MF_OWNERDRAW | (entry.isDisabled ? MF_GRAYED : 0) | (entry.isSeparator ? MF_SEPARATOR : 0);
    UINT_PTR id = static_cast<UINT_PTR>(entry.id);
    if (!entry.children.empty()) {
      flags |= MF_POPUP;
      id = reinterpret_cast<UINT_PTR>(BuildPopupMenu(entry.children, editMenu));
    }
    AppendMenuW(menu, flags, id, reinterpret_cast<LPCWSTR>(data.get()));
    g_menuItems.push_back(std::move(data));
  }
  return menu;
}

MenuEntry MenuRow(const wchar_t* label, const wchar_t* shortcut, int id, bool enabled) {
  MenuEntry entry;
  entry.label = label;
  entry.shortcut = shortcut;
  entry.id = id;
  entry.isDisabled = !enabled;
  return entry;
}

MenuEntry MenuSeparator() {
  MenuEntry entry;
  entry.isSeparator = true;
  return entry;
}

bool ClipboardHasText() {
  return IsClipboardFormatAvailable(CF_UNICODETEXT) || IsClipboardFormatAvailable(CF_TEXT);
}

UINT ShowPopupMenu(const std::vector<MenuEntry>& entries, bool editMenu, HWND owner, POINT screenPoint, UINT flags) {
  FreeMenuItems();
  UINT chosen = 0;
  Track(BuildPopupMenu(entries, editMenu), owner, screenPoint, flags, &chosen);
  return chosen;
}

bool MeasureMenuItem(HWND window, MEASUREITEMSTRUCT* item) {
  if (item->CtlType != ODT_MENU || !IsOurs(item->itemData)) return false;
  auto* data = reinterpret_cast<const MenuItemData*>(item->itemData);
  HDC dc = GetDC(window);
  HFONT font = MenuFont(FW_NORMAL);
  HGDIOBJ old = SelectObject(dc, font);
  int label = TextWidth(dc, data->label), shortcut = TextWidth(dc, data->shortcut);
  SelectObject(dc, old);
  DeleteObject(font);
  ReleaseDC(window, dc);
  MenuItemSize size = data->inEditMenu ? MeasureEditMenuItem(data->isSeparator, label, shortcut)
                                       : MeasureEditorMenuItem(data->isSeparator, label, shortcut);
  item->itemWidth = static_cast<UINT>(size.width);
  item->itemHeight = static_cast<UINT>(size.height);
  return true;
}

bool DrawMenuItem(const DRAWITEMSTRUCT* item) {
  if (item->CtlType != ODT_MENU || !IsOurs(item->itemData)) return false;
  auto* data = reinterpret_cast<const MenuItemData*>(item->itemData);
  const MenuColors& colors = MenuColorRow(g_themeIndex);
  HDC dc = item->hDC;
  RECT rect = item->rcItem;
  const bool selected = (item->itemState & ODS_SELECTED) != 0;

  HBRUSH background = CreateSolidBrush(colors.background);
  FillRect(dc, &rect, background);
  DeleteObject(background);
  if (data->isSeparator) {
    HPEN pen = CreatePen(PS_SOLID, 1, colors.separator);
    HGDIOBJ old = SelectObject(dc, pen);
    int middle = (rect.top + rect.bottom) / 2;
    MoveToEx(dc, rect.left + (data->inEditMenu ? 8 : 26), middle, nullptr);
    LineTo(dc, rect.right - 5, middle);
    SelectObject(dc, old);
    DeleteObject(pen);
    return true;
  }
  if (selected && !data->isDisabled) {
    HBRUSH fill = CreateSolidBrush(colors.selection);
    HGDIOBJ oldBrush = SelectObject(dc, fill);
    HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
    RoundRect(dc, rect.left + 3, rect.top + 1, rect.right - 3, rect.bottom - 1, 10, 10);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(fill);
  }
  COLORREF text = data->isDisabled ? colors.disabledText : selected ? colors.selectedText : colors.text;
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, text);
  if (data->isChecked) {
    HFONT bold = MenuFont(600);
    HGDIOBJ old = SelectObject(dc, bold);
    RECT mark = {rect.left + 5, rect.top, rect.left + 22, rect.bottom};
    DrawTextW(dc, L"\u2713", -1, &mark, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(dc, old);
    DeleteObject(bold);
  }
  HFONT font = MenuFont(FW_NORMAL);
  HGDIOBJ old = SelectObject(dc, font);
  RECT label = {rect.left + 28, rect.top, rect.right - 8, rect.bottom};
  DrawTextW(dc, data->label.c_str(), -1, &label, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  if (!data->shortcut.empty()) {
    SetTextColor(dc, selected && !data->isDisabled ? colors.selectedText : colors.disabledText);
    RECT keys = {rect.left, rect.top, rect.right - 12, rect.bottom};
    DrawTextW(dc, data->shortcut.c_str(), -1, &keys, DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  }
  SelectObject(dc, old);
  DeleteObject(font);
  return true;
}

void ShowEditContextMenu(HWND edit, HWND owner, POINT screenPoint) {
  DWORD start = 0, end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const bool readOnly = (GetWindowLongPtrW(edit, GWL_STYLE) & ES_READONLY) != 0;
  EditMenuRules rules = EditMenuEnabled(SendMessageW(edit, EM_CANUNDO, 0, 0) != 0, end > start, ClipboardHasText(),
                                        GetWindowTextLengthW(edit) == 0, readOnly);
  const MenuEntry separator = MenuSeparator();
  std::vector<MenuEntry> entries = {
      MenuRow(L"Undo", L"Ctrl+Z", 1, rules.undo),   separator,
      MenuRow(L"Cut", L"Ctrl+X", 2, rules.cut),     MenuRow(L"Copy", L"Ctrl+C", 3, rules.copy),
      MenuRow(L"Paste", L"Ctrl+V", 4, rules.paste), MenuRow(L"Delete", L"", 5, rules.clear),
      separator,                                    MenuRow(L"Select All", L"Ctrl+A", 6, rules.selectAll),
  };
  UINT chosen = ShowPopupMenu(entries, true, owner, screenPoint, TPM_RETURNCMD | TPM_RIGHTBUTTON);
  switch (chosen) {
    case 1: SendMessageW(edit, WM_UNDO, 0, 0); break;
    case 2: SendMessageW(edit, WM_CUT, 0, 0); break;
    case 3: SendMessageW(edit, WM_COPY, 0, 0); break;
    case 4: SendMessageW(edit, WM_PASTE, 0, 0); break;
    case 5: SendMessageW(edit, WM_CLEAR, 0, 0); break;
    case 6: SendMessageW(edit, EM_SETSEL, 0, -1); break;
  }
  SetFocus(edit);
}

void AttachEditContextMenu(HWND combo, HWND owner) {
  HWND edit = FindWindowExW(combo, nullptr, L"Edit", nullptr);
  if (edit) AttachFieldContextMenu(edit, owner);
}

void AttachFieldContextMenu(HWND edit, HWND owner) {
  // Once per field. The MinGW import library has no GetWindowSubclass, so a
  // property marks a field that has the menu already.
  if (GetPropW(edit, kEditMenuProperty)) return;
  SetPropW(edit, kEditMenuProperty, reinterpret_cast<HANDLE>(1));
  SetWindowSubclass(edit, EditMenuSubclass, kEditMenuSubclassId, reinterpret_cast<DWORD_PTR>(owner));
}
