// The Recent Files submenu of the editor's menu as the live popup holds it:
// built from the slots of g_settings and the files on disk when the menu opens.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "document/recent_files.h"
#include "presentation/dark_menu.h"
#include "settings/settings.h"
#include "shell/editor_menu.h"
#include "tests/common/test_folder.h"

namespace {

constexpr UINT kGetMenuOfPopup = 0x01E1;  // MN_GETHMENU

struct Row {
  std::wstring label;
  UINT id = 0;
  bool grayed = false;
  HMENU submenu = nullptr;
};

std::vector<Row> Rows(HMENU menu) {
  std::vector<Row> rows;
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_DATA | MIIM_ID | MIIM_STATE | MIIM_SUBMENU;
    GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
    Row row;
    if (auto* data = reinterpret_cast<const MenuItemData*>(info.dwItemData)) row.label = data->label;
    row.id = info.wID;
    row.grayed = (info.fState & MFS_DISABLED) != 0;
    row.submenu = info.hSubMenu;
    rows.push_back(row);
  }
  return rows;
}

// What the open popup held, read while it is tracked.
std::vector<Row> g_recent;
std::vector<std::vector<Row>> g_itemMenus;

BOOL CALLBACK ReadPopup(HWND window, LPARAM) {
  wchar_t className[16] = {};
  GetClassNameW(window, className, 16);
  if (wcscmp(className, L"#32768") != 0 || !IsWindowVisible(window)) return TRUE;
  auto menu = reinterpret_cast<HMENU>(SendMessageW(window, kGetMenuOfPopup, 0, 0));
  for (const Row& row : Rows(menu)) {
    if (row.label != L"Recent Files") continue;
    g_recent = Rows(row.submenu);
    for (const Row& item : g_recent)
      if (item.submenu) g_itemMenus.push_back(Rows(item.submenu));
  }
  return FALSE;
}

void CALLBACK ReadAndClose(HWND, UINT, UINT_PTR timer, DWORD) {
  EnumThreadWindows(GetCurrentThreadId(), ReadPopup, 0);
  if (g_recent.empty()) return;  // not shown yet
  KillTimer(nullptr, timer);
  EndMenu();
}

LRESULT CALLBACK Owner(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_MEASUREITEM && MeasureMenuItem(window, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
  if (message == WM_DRAWITEM && DrawMenuItem(reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) return TRUE;
  return DefWindowProcW(window, message, wParam, lParam);
}

class RecentSubmenu : public ::testing::Test {
 protected:
  void SetUp() override {
    memset(g_settings.recentFiles, 0, sizeof(g_settings.recentFiles));
    g_recent.clear();
    g_itemMenus.clear();
    WNDCLASSW wc = {};
    wc.lpfnWndProc = Owner;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = L"RecentSubmenuOwner";
    RegisterClassW(&wc);
    owner_ = CreateWindowExW(0, wc.lpszClassName, L"owner", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200, nullptr, nullptr,
                             wc.hInstance, nullptr);
    ASSERT_NE(owner_, nullptr);
    SetForegroundWindow(owner_);
  }

  void TearDown() override {
    memset(g_settings.recentFiles, 0, sizeof(g_settings.recentFiles));
    if (owner_) DestroyWindow(owner_);
  }

  void Open() {
    SetTimer(nullptr, 0, 50, ReadAndClose);
    ShowEditorContextMenu(owner_, {50, 50});
    ASSERT_FALSE(g_recent.empty());
  }

  void Put(int slot, const std::wstring& path) { CopySettingsText(g_settings.recentFiles[slot], 260, path); }

  HWND owner_ = nullptr;
};

TEST_F(RecentSubmenu, TenFilesNumberedOneToColonWithTheMissingMarked) {
  for (int i = 0; i < 10; ++i) {
    std::wstring path = TestPath(L"f" + std::to_wstring(i) + L".txt");
    if (i != 3) {
      ASSERT_TRUE(WriteFileBytes(path, "x"));
    }
    Put(i, path);
  }
  Open();
  ASSERT_EQ(g_recent.size(), 12u);
  EXPECT_EQ(g_recent[0].label, L"1.  f0.txt");
  EXPECT_EQ(g_recent[3].label, L"4.  f3.txt  \u2297");
  EXPECT_EQ(g_recent[8].label, L"9.  f8.txt");
  EXPECT_EQ(g_recent[9].label, L":.  f9.txt");
  EXPECT_EQ(g_recent[11].label, L"Clear All");
  EXPECT_EQ(g_recent[11].id, 7020u);
  EXPECT_FALSE(g_recent[11].grayed);
  ASSERT_EQ(g_itemMenus.size(), 10u);
  EXPECT_EQ(g_itemMenus[9][0].label, L"Open");
  EXPECT_EQ(g_itemMenus[9][0].id, 7009u);
  EXPECT_EQ(g_itemMenus[9][1].label, L"Remove from list");
  EXPECT_EQ(g_itemMenus[9][1].id, 7019u);
  // Open is greyed for the file that is gone, Remove is not.
  EXPECT_TRUE(g_itemMenus[3][0].grayed);
  EXPECT_FALSE(g_itemMenus[3][1].grayed);
  EXPECT_FALSE(g_itemMenus[2][0].grayed);
}

TEST_F(RecentSubmenu, TheFirstEmptySlotEndsTheList) {
  std::wstring path = TestPath(L"only.txt");
  ASSERT_TRUE(WriteFileBytes(path, "x"));
  Put(0, path);
  Put(2, path);  // after a gap: not shown
  Open();
  ASSERT_EQ(g_recent.size(), 3u);
  EXPECT_EQ(g_recent[0].label, L"1.  only.txt");
  EXPECT_EQ(g_recent[2].label, L"Clear All");
}

TEST_F(RecentSubmenu, EmptyListShowsAGreyedRowAndGreyedClearAll) {
  Open();
  ASSERT_EQ(g_recent.size(), 3u);
  EXPECT_EQ(g_recent[0].label, L"(empty)");
  EXPECT_TRUE(g_recent[0].grayed);
  EXPECT_TRUE(g_recent[2].grayed);
  EXPECT_EQ(g_recent[2].id, 7020u);
}

}  // namespace
