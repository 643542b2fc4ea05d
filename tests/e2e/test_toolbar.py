"""The toolbar of the real program: its buttons pressed at their painted
places, the enabled rules, the mode caption, and its colours on the screen."""
import subprocess

import harness
from harness import TavroTestCase, windows_path

WM_MOUSEMOVE = 0x0200
WM_LBUTTONDOWN = 0x0201
WM_LBUTTONUP = 0x0202
WM_SET_TOOLBAR_MODE = 1027
WM_THEME_CHANGED = 0x8001
TOOLBAR = "TavroToolbar"
NAMES = ["New", "Open", "Save", "Export", "Settings", "Profiles", "Mode", "Help"]
DARK_ROWS = (0, 4)


# toolbarBackground of each theme row, as (r, g, b).
TOOLBAR_BACKGROUNDS = [(0x19, 0x19, 0x1B), (0xF5, 0xF5, 0xF5), (0xDC, 0xE8, 0xFA), (0xDC, 0xF5, 0xDC),
                       (0x1A, 0x1A, 0x18), (0xF2, 0xE8, 0xD7)]


def region(png, box):
    """The raw RGB bytes of a rectangle (x, y, width, height) of a screenshot."""
    x, y, width, height = box
    return subprocess.run(["convert", str(png), "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                          capture_output=True, check=True).stdout


class ToolbarTest(TavroTestCase):
    def start(self, *args):
        self.tavro.start(*args)
        main = self.tavro.main_window()
        # Laid out once the window is shown: the bar then spans the client area.
        width = lambda: self.tavro.child(main, TOOLBAR)["right"] - self.tavro.child(main, TOOLBAR)["left"]
        client_width = self.tavro.wait_for(lambda: self.tavro.client(main)[0] if width() == self.tavro.client(main)[0]
                                           else -1, self.tavro.client(main)[0])
        self.assertEqual(width(), client_width)
        bar = self.tavro.child(main, TOOLBAR)
        self.assertTrue(bar["visible"])
        return main, bar

    def centre(self, bar, index):
        """The middle of a button in the bar's client coordinates."""
        width = bar["right"] - bar["left"]
        first = max(8, (width - 656) // 2)
        return first + index * 83 + 37, 21

    def press(self, bar, index, send=True):
        x, y = self.centre(bar, index)
        lparam = (y << 16) | x
        self.tavro.send(bar["hwnd"], WM_MOUSEMOVE, 0, lparam)
        if send:
            self.tavro.send(bar["hwnd"], WM_LBUTTONDOWN, 1, lparam)
        else:
            # A button whose command opens a modal dialog would hold a sent message.
            self.tavro.post(bar["hwnd"], WM_LBUTTONDOWN, 1, lparam)
        self.tavro.post(bar["hwnd"], WM_LBUTTONUP, 0, lparam)

    def test_bar_spans_the_top_of_the_window(self):
        main, bar = self.start()
        left, top = self.tavro.client(main)[2:4]
        self.assertEqual((bar["left"], bar["top"]), (left, top))
        self.assertEqual(bar["bottom"] - bar["top"], 44)
        self.assertEqual(bar["right"] - bar["left"], self.tavro.client(main)[0])

    def test_save_is_disabled_until_an_edit(self):
        main, bar = self.start()
        self.press(bar, 2)  # sent: had Save run its dialog, this would not have returned
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")
        self.tavro.type("x")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled *"), "Tavro - Untitled *")
        self.press(bar, 2, send=False)
        dialog = self.tavro.find_dialog("Save As - Tavro")
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)

    def test_open_and_new(self):
        doc = self.write_file("toolbar.txt", "some text")
        main, bar = self.start(windows_path(doc))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - toolbar.txt"),
                         "Tavro - toolbar.txt")
        self.press(bar, 0)
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")
        self.assertEqual(self.tavro.text(self.tavro.child(main, "Scintilla")["hwnd"]), "")
        self.press(bar, 1, send=False)
        dialog = self.tavro.find_dialog("Open File - Tavro")
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)

    def test_profiles_only_in_the_default_instance(self):
        title = "Manage Profiles - Tavro AI"
        main, bar = self.start("--profile=work")
        self.press(bar, 5, send=False)
        self.press(bar, 7)  # Help, pressed after it, is handled in order
        self.tavro.find_dialog("Tavro - Help")
        self.assertNotIn(title, [row["text"] for row in self.tavro.windows("#32770")])
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        main, bar = self.start()
        self.press(bar, 5, send=False)
        dialog = self.tavro.find_dialog(title)
        self.tavro.press(dialog, "Close")
        self.tavro.wait_gone(dialog)

    def test_other_buttons_send_their_commands(self):
        main, bar = self.start()
        # Export opens its modal dialog.
        self.press(bar, 3, send=False)
        export = self.tavro.find_dialog("Tavro - Export")
        self.tavro.press(export, "Cancel")
        self.tavro.wait_gone(export)
        # Settings opens its modal dialog.
        self.press(bar, 4, send=False)
        settings = self.tavro.find_dialog("Tavro - Settings")
        self.tavro.press(settings, "Cancel")
        self.tavro.wait_gone(settings)
        # The mode button switches to AI Mod, which ends in a message box.
        self.press(bar, 6, send=False)
        box = self.tavro.find_dialog("Tavro AI Mod")
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.assertTrue(self.tavro.wait_for(
            lambda: any(row["cls"] == "TavroAiPanel" and row["visible"] for row in self.tavro.children(main)), True))

    def screenshot_until(self, name, check, what, timeout=30):
        """Screenshots until check(png) holds; fails the test when time is up."""
        return self.tavro.screenshot_until(name, check, timeout, what)

    def test_mode_caption_follows_the_flag(self):
        main, bar = self.start()
        x, _ = self.centre(bar, 6)
        box = (bar["left"] + x - 30, bar["top"] + 12, 60, 20)
        background = self.tavro.pixel(self.tavro.screenshot("mode-start"), bar["left"] + x - 33, bar["top"] + 29)
        # The caption "AI Mod" is painted once the button shows text pixels.
        first = region(self.screenshot_until(
            "mode-ai-mod", lambda png: len(set(region(png, box))) > 3, "the mode caption"), box)
        self.tavro.send(bar["hwnd"], WM_SET_TOOLBAR_MODE, 1, 0)
        self.screenshot_until("mode-classic", lambda png: region(png, box) != first, "the caption \"Classic\"")
        self.tavro.send(bar["hwnd"], WM_SET_TOOLBAR_MODE, 0, 0)
        self.screenshot_until("mode-ai-mod-again", lambda png: region(png, box) == first, "the caption \"AI Mod\" again")
        self.assertTrue(background)

    def test_colours_in_all_six_themes(self):
        main, bar = self.start()
        for theme in range(6):
            self.tavro.send(main, WM_THEME_CHANGED, theme, 0)
            dark = theme in DARK_ROWS
            accent = (0x1E, 0x26, 0x32) if dark else (0xE1, 0xE8, 0xF5)
            background = TOOLBAR_BACKGROUNDS[theme]
            export_x, y = self.centre(bar, 3)

            def painted(png):
                return (self.tavro.pixel(png, bar["left"] + 3, bar["top"] + 20) == background and
                        self.tavro.pixel(png, bar["left"] + export_x - 30, bar["top"] + y + 8) == accent)

            self.screenshot_until(f"theme-{theme}", painted, f"the toolbar colours of theme {theme}")


if __name__ == "__main__":
    harness.main()
