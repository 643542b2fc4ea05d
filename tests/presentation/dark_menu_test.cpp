// Dark menus: colour rows, measuring, the edit-field rules, item lifetime.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "presentation/dark_menu.h"
#include "presentation/menu_layout.h"

namespace {

uint32_t Colour(const char* hex) {
  uint32_t rgb = static_cast<uint32_t>(std::stoul(hex + 1, nullptr, 16));
  return ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16);
}

// Unused, Selection, Background, Text, Selected text, Disabled text, Separator.
const char* const kRows[6][7] = {
    {"#202020", "#0078D4", "#1C1C1C", "#DCDCDC", "#FFFFFF", "#5A5A5A", "#373737"},
    {"#FFFFFF", "#0078D4", "#FCFCFC", "#141414", "#FFFFFF", "#AAAAAA", "#D7D7D7"},
    {"#EBF3FF", "#0064C8", "#E1EBFC", "#0A1E50", "#FFFFFF", "#96AAD2", "#AFC8EE"},
    {"#EBFFEB", "#008C3C", "#E1FAE1", "#003C00", "#FFFFFF", "#82B982", "#A5E1A5"},
    {"#242422", "#4B5F87", "#1C1C1A", "#D2D2C3", "#F0F0E1", "#5F5F55", "#3A3A36"},
    {"#FCF3E4", "#9B5F2D", "#F5EBDA", "#4B2D14", "#FFF8EB", "#B9A087", "#D4BC9E"},
};
const char* const kExtra[6] = {"#303030", "#D2D2D2", "#A5BEE4", "#9BD79B", "#32322E", "#CAB294"};

TEST(MenuColours, EveryCellOfBothTables) {
  for (unsigned row = 0; row < 6; ++row) {
    const MenuColors& c = MenuColorRow(row);
    const uint32_t got[7] = {c.unused, c.selection, c.background, c.text, c.selectedText, c.disabledText, c.separator};
    for (int column = 0; column < 7; ++column)
      EXPECT_EQ(got[column], Colour(kRows[row][column])) << "row " << row << " column " << column;
    EXPECT_EQ(EditorMenuExtraColour(row), Colour(kExtra[row])) << row;
  }
}

TEST(MenuColours, IndexOfSixOrMoreReadsRowZero) {
  EXPECT_EQ(&MenuColorRow(6), &MenuColorRow(0));
  EXPECT_EQ(&MenuColorRow(99), &MenuColorRow(0));
  EXPECT_EQ(EditorMenuExtraColour(7), EditorMenuExtraColour(0));
}

TEST(MenuMeasuring, EditorMenu) {
  EXPECT_EQ(MeasureEditorMenuItem(true, 500, 0).height, 7);
  EXPECT_EQ(MeasureEditorMenuItem(true, 500, 0).width, 190);
  EXPECT_EQ(MeasureEditorMenuItem(false, 30, 0).width, 190);
  EXPECT_EQ(MeasureEditorMenuItem(false, 30, 0).height, 20);
  EXPECT_EQ(MeasureEditorMenuItem(false, 120, 50).width, 120 + 40 + 50 + 24);
  EXPECT_EQ(MeasureEditorMenuItem(false, 170, 0).width, 210);
}

TEST(MenuMeasuring, EditFieldMenuHasAMinimumOf160) {
  EXPECT_EQ(MeasureEditMenuItem(false, 30, 0).width, 160);
  EXPECT_EQ(MeasureEditMenuItem(false, 30, 40).width, 160);
  EXPECT_EQ(MeasureEditMenuItem(false, 80, 40).width, 80 + 40 + 40 + 24);
  EXPECT_EQ(MeasureEditMenuItem(true, 0, 0).height, 7);
}

TEST(EditFieldMenu, EmptyClipboardDisablesPaste) {
  EXPECT_FALSE(EditMenuEnabled(true, true, false, false, false).paste);
  EXPECT_TRUE(EditMenuEnabled(true, true, true, false, false).paste);
}

TEST(EditFieldMenu, ReadOnlyFieldOffersOnlyCopyAndSelectAll) {
  EditMenuRules rules = EditMenuEnabled(true, true, true, false, true);
  EXPECT_FALSE(rules.undo);
  EXPECT_FALSE(rules.cut);
  EXPECT_FALSE(rules.paste);
  EXPECT_FALSE(rules.clear);
  EXPECT_TRUE(rules.copy);
  EXPECT_TRUE(rules.selectAll);
}

TEST(EditFieldMenu, SelectionAndEmptiness) {
  EditMenuRules none = EditMenuEnabled(false, false, true, true, false);
  EXPECT_FALSE(none.undo);
  EXPECT_FALSE(none.cut);
  EXPECT_FALSE(none.copy);
  EXPECT_FALSE(none.clear);
  EXPECT_FALSE(none.selectAll);
  EXPECT_TRUE(none.paste);
}

TEST(MenuItems, ASecondMenuFreesTheFirstMenusItems) {
  MenuEntry sub;
  sub.label = L"View";
  sub.children.resize(2);
  sub.children[0].label = L"Line Numbers";
  sub.children[1].label = L"Word Wrap";
  std::vector<MenuEntry> entries(3);
  entries[0].label = L"Undo";
  entries[1].isSeparator = true;
  entries[2] = sub;
  FreeMenuItems();
  HMENU first = BuildPopupMenu(entries, false);
  EXPECT_EQ(LiveMenuItemCount(), 5u);  // three items and the two of the submenu
  EXPECT_EQ(GetMenuItemCount(first), 3);
  DestroyMenu(first);
  FreeMenuItems();
  EXPECT_EQ(LiveMenuItemCount(), 0u);
  HMENU second = BuildPopupMenu({entries[0]}, true);
  EXPECT_EQ(LiveMenuItemCount(), 1u);
  DestroyMenu(second);
  FreeMenuItems();
}

}  // namespace
