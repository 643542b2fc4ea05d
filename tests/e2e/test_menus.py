"""The editor's dark context menu on the real window: it opens on the right
button, paints in the theme's menu colours and its items send commands."""
import harness
from harness import TavroTestCase

SCI_GETSELECTIONSTART = 2143
SCI_GETSELECTIONEND = 2145
WM_THEME_CHANGED = 0x8001

# Background of the menu's colour table, rows 0 and 1.
MENU_BACKGROUND = {0: (0x1C, 0x1C, 0x1C), 1: (0xFC, 0xFC, 0xFC)}
SELECT_ALL_TOP = 20 * 2 + 7 + 20 * 3 + 7  # Undo, Redo | Cut, Copy, Paste | Select All


class MenusTest(TavroTestCase):
    def click(self, window, x, y, button):
        """A click through X, returning once the window has handled it."""
        self.tavro.x_input(window, ("mousemove", x, y, "click", button))

    def open_menu(self, main, editor):
        box = self.tavro.child(main, "Scintilla")
        self.click(main, box["left"] + 200, box["top"] + 150, 3)
        return self.tavro.wait_until(lambda: self.tavro.windows("#32768"), what="the popup menu")[0]

    def test_menu_opens_in_the_theme_and_select_all_works(self):
        self.tavro.start()
        main = self.tavro.main_window()
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.type("hello menu")
        for index in (0, 1):
            self.tavro.send(main, WM_THEME_CHANGED, index)
            menu = self.open_menu(main, editor)
            # Between the label and the shortcut of the Undo row, once the menu has painted.
            point = (menu["left"] + 150, menu["top"] + 12)
            try:
                shot = self.tavro.screenshot_until(f"menu-theme-{index}",
                                                   lambda png: self.tavro.pixel(png, *point) == MENU_BACKGROUND[index],
                                                   what="the menu painted in the theme")
            except harness.WaitTimeout:
                shot = self.tavro.screenshot(f"menu-theme-{index}")
            self.assertEqual(self.tavro.pixel(shot, *point), MENU_BACKGROUND[index])
            self.assertGreaterEqual(menu["right"] - menu["left"], 190)
            if index == 0:
                self.tavro.keys("Escape", title_regex="^Tavro")
                self.tavro.wait_for(lambda: len(self.tavro.windows("#32768")), 0)
        # Click "Select All" in the light menu.
        inset = 3
        self.click(main, menu["left"] + 60, menu["top"] + inset + SELECT_ALL_TOP + 10, 1)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.send(editor, SCI_GETSELECTIONEND), 10), 10)
        self.assertEqual(self.tavro.send(editor, SCI_GETSELECTIONSTART), 0)

    def test_viewer_shows_no_menu(self):
        doc = self.write_file("v.txt", "viewer text")
        self.tavro.start("--viewer", harness.windows_path(doc))
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - v.txt")
        box = self.tavro.child(viewer, "Scintilla")
        # Handled, the click would have opened a menu by now.
        self.click(viewer, box["left"] + 100, box["top"] + 100, 3)
        self.assertEqual(self.tavro.windows("#32768"), [])


if __name__ == "__main__":
    harness.main()
