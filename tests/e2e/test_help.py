"""The Help window of the real program: opened from the toolbar and by its
command, one at a time, at the size and on the topic of its last close; topics
changed by click and keys; scrolling; a theme change while it is open; what it
stores at close. And the splash screen before the main window: shown when the
setting is on, not when it is off nor in a Viewer, ended by a key or clicks."""
import subprocess

import harness
from harness import TavroTestCase, windows_path

WM_CLOSE = 0x0010
WM_KEYDOWN = 0x0100
WM_MOUSEMOVE = 0x0200
WM_LBUTTONDOWN = 0x0201
WM_LBUTTONUP = 0x0202
WM_MOUSEWHEEL = 0x020A
WM_VSCROLL = 0x0115
SB_LINEDOWN, SB_PAGEUP, SB_PAGEDOWN, SB_TOP, SB_BOTTOM = 1, 2, 3, 6, 7
HELP_COMMAND = 4001
THEME_COMMAND = 3101  # + row
TITLE = "Tavro - Help"
SPLASH = "TavroSplash"
TOOLBAR = "TavroToolbar"

# Payload offsets of the settings the Help window and the splash use.
THEME, HELP_WIDTH, HELP_HEIGHT, HELP_TOPIC, SHOW_SPLASH = 0, 10968, 10972, 10976, 36691

# dialogBackground and toolbarBackground of the theme rows used here, as (r, g, b).
DIALOG_BACKGROUND = {0: (0x1E, 0x1E, 0x21), 1: (0xF2, 0xF2, 0xF2), 5: (0xF2, 0xE6, 0xD0)}
SIDE_BACKGROUND = {0: (0x19, 0x19, 0x1B), 1: (0xF5, 0xF5, 0xF5), 5: (0xF2, 0xE8, 0xD7)}

TOPIC_TITLES = ["Getting started", "Keyboard shortcuts", "Themes", "File formats", "Export & Print", "MD Preview",
                "AI Assistant", "Regular Expressions", "Syntax Highlighting", "Known limitations", "About Tavro"]


def region(png, box):
    """The raw RGB bytes of a rectangle (x, y, width, height) of a screenshot."""
    x, y, width, height = box
    return subprocess.run(["convert", str(png), "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                          capture_output=True, check=True).stdout


def i32(value):
    return value.to_bytes(4, "little", signed=True)


class HelpCase(TavroTestCase):
    def start_with(self, changes, *args):
        """A second start, on a settings file the first one wrote and the test changed."""
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({SHOW_SPLASH: b"\x00", **changes})
        self.tavro.start(*args)
        self.main = self.tavro.main_window()
        self.tavro.settle(self.main)
        return self.main

    def settings(self):
        data = self.tavro.settings_path().read_bytes()[16:]
        read = lambda offset: int.from_bytes(data[offset:offset + 4], "little", signed=True)
        return read(HELP_WIDTH), read(HELP_HEIGHT), read(HELP_TOPIC)

    def open_help(self):
        self.tavro.command(self.main, HELP_COMMAND)
        help_window = self.tavro.find_dialog(TITLE)
        self.tavro.wait_until(lambda: self.tavro.shown(help_window), what="the Help window shown")
        self.tavro.settle(help_window)
        return help_window

    def size(self, hwnd):
        fields = self.tavro.request("describe", hwnd).split("\t")
        left, top, right, bottom = (int(v) for v in fields[4:8])
        return right - left, bottom - top

    def close_help(self, help_window):
        self.tavro.post(help_window, WM_CLOSE)
        self.tavro.wait_gone(help_window)
        self.tavro.settle(self.main)

    def help_windows(self):
        return [row for row in self.tavro.windows("#32770") if row["text"] == TITLE]

    def screen_point(self, hwnd, x, y):
        _, _, ox, oy = self.tavro.client(hwnd)
        return ox + x, oy + y

    def pixel_at(self, png, hwnd, x, y):
        return self.tavro.pixel(png, *self.screen_point(hwnd, x, y))

    def selected_row(self, png, hwnd):
        """The side-bar row whose selection bar (x = 4 to 7) is painted, or None."""
        rows = [self.pixel_at(png, hwnd, 5, 40 + 12 + row * 32 + 16) for row in range(11)]
        plain = [colour for colour in rows if rows.count(colour) > 1]
        marked = [row for row, colour in enumerate(rows) if colour not in plain]
        return marked[0] if len(marked) == 1 else None

    def wait_topic(self, hwnd, topic, name):
        self.tavro.settle(hwnd)
        self.tavro.screenshot_until(name, lambda png: self.selected_row(png, hwnd) == topic,
                                    what=f"topic {topic} selected")


class HelpWindowTest(HelpCase):
    def test_opens_from_the_toolbar_and_the_command_and_only_once(self):
        main = self.start_with({})
        bar = self.tavro.child(main, TOOLBAR)
        width = bar["right"] - bar["left"]
        x, y = max(8, (width - 656) // 2) + 7 * 83 + 37, 21
        self.tavro.send(bar["hwnd"], WM_MOUSEMOVE, 0, (y << 16) | x)
        self.tavro.send(bar["hwnd"], WM_LBUTTONDOWN, 1, (y << 16) | x)
        self.tavro.send(bar["hwnd"], WM_LBUTTONUP, 0, (y << 16) | x)
        help_window = self.tavro.find_dialog(TITLE)
        self.assertTrue(self.tavro.wait_until(lambda: self.tavro.shown(help_window)))
        # The default size on a 1280 x 900 screen: 70 and 80 per cent, at most 860 by 680.
        self.assertEqual(self.size(help_window), (860, 680))
        # A second command, and the toolbar again, bring the same window forward.
        self.tavro.send(main, harness.WM_COMMAND, HELP_COMMAND, 0)
        self.tavro.send(bar["hwnd"], WM_LBUTTONDOWN, 1, (y << 16) | x)
        self.tavro.send(bar["hwnd"], WM_LBUTTONUP, 0, (y << 16) | x)
        self.tavro.settle(main)
        self.assertEqual([row["hwnd"] for row in self.help_windows()], [help_window])
        self.assertEqual(int(self.tavro.request("foreground")), help_window)
        self.assertEqual(self.size(help_window), (860, 680))
        # Modeless: the editor goes on working beside it.
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.chars(editor, "typed beside help")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "typed beside help"), "typed beside help")
        self.assertTrue(self.tavro.alive(help_window))

    def test_reopens_at_the_size_and_on_the_topic_of_the_last_close(self):
        self.start_with({HELP_WIDTH: i32(700), HELP_HEIGHT: i32(500), HELP_TOPIC: i32(6)})
        help_window = self.open_help()
        self.assertEqual(self.size(help_window), (700, 500))
        self.wait_topic(help_window, 6, "topic6")
        self.tavro.move(help_window, 100, 80, 640, 460)
        self.tavro.settle(help_window)
        self.close_help(help_window)
        self.assertEqual(self.settings(), (640, 460, 6))
        help_window = self.open_help()
        self.assertEqual(self.size(help_window), (640, 460))
        self.wait_topic(help_window, 6, "topic6-again")

    def test_stored_values_out_of_range_give_the_defaults(self):
        self.start_with({HELP_WIDTH: i32(499), HELP_HEIGHT: i32(500), HELP_TOPIC: i32(11)})
        help_window = self.open_help()
        self.assertEqual(self.size(help_window), (860, 680))
        self.wait_topic(help_window, 0, "topic0")
        self.close_help(help_window)
        self.assertEqual(self.settings(), (860, 680, 0))

    def test_a_stored_width_of_550_is_used_once(self):
        self.start_with({HELP_WIDTH: i32(550), HELP_HEIGHT: i32(400), HELP_TOPIC: i32(-1)})
        help_window = self.open_help()
        self.assertEqual(self.size(help_window), (550, 400))
        # A size set later is held to the minimum of 600 by 420.
        self.tavro.move(help_window, 40, 40, 550, 400)
        self.tavro.settle(help_window)
        self.assertEqual(self.size(help_window), (600, 420))

    def test_topics_change_by_click_and_by_keys(self):
        self.start_with({HELP_TOPIC: i32(0)})
        help_window = self.open_help()
        self.wait_topic(help_window, 0, "start")
        # A click on the fourth row.
        x, y = self.screen_point(help_window, 100, 40 + 12 + 3 * 32 + 16)
        self.tavro.x_input(help_window, ["mousemove", x, y], ["click", 1])
        self.wait_topic(help_window, 3, "clicked")
        self.tavro.keys("Down", "Down", window=help_window)
        self.wait_topic(help_window, 5, "down")
        self.tavro.keys("Left", window=help_window)
        self.wait_topic(help_window, 4, "left")
        self.tavro.keys("Right", "Up", "Up", window=help_window)
        self.wait_topic(help_window, 3, "right-up")
        # At the last topic Down and Right do nothing; at the first, Up and Left.
        x, y = self.screen_point(help_window, 100, 40 + 12 + 10 * 32 + 16)
        self.tavro.x_input(help_window, ["mousemove", x, y], ["click", 1])
        self.wait_topic(help_window, 10, "last")
        self.tavro.keys("Down", "Right", window=help_window)
        self.wait_topic(help_window, 10, "still-last")
        x, y = self.screen_point(help_window, 100, 40 + 12 + 16)
        self.tavro.x_input(help_window, ["mousemove", x, y], ["click", 1])
        self.tavro.keys("Up", "Left", window=help_window)
        self.wait_topic(help_window, 0, "still-first")
        self.tavro.keys("Right", "Right", window=help_window)
        self.wait_topic(help_window, 2, "right")
        # Esc closes it, and the topic is stored.
        self.tavro.keys("Escape", window=help_window)
        self.tavro.wait_gone(help_window)
        self.tavro.settle(self.main)
        self.assertEqual(self.settings()[2], 2)
        self.assertTrue(self.tavro.alive(self.main))

    def view(self, hwnd, name):
        """A screenshot of the content area's rows, with the window's thread settled first."""
        self.tavro.settle(hwnd)
        return self.tavro.screenshot(name)

    def rows(self, png, hwnd, top, height):
        """The pixels of the content area from that row down, for height rows."""
        width, _, ox, oy = self.tavro.client(hwnd)
        return region(png, (ox + 190, oy + 40 + top, width - 190, height))

    def assert_shift(self, before, after, hwnd, delta, what):
        """The text moved up by delta pixels (down for a negative delta) between the two views."""
        height = 160
        if delta >= 0:
            same = self.rows(after, hwnd, 20, height) == self.rows(before, hwnd, 20 + delta, height)
        else:
            same = self.rows(before, hwnd, 20, height) == self.rows(after, hwnd, 20 - delta, height)
        self.assertTrue(same, what)

    def scroll(self, hwnd, code, name):
        self.tavro.send(hwnd, WM_VSCROLL, code)
        return self.view(hwnd, name)

    def test_scrolling(self):
        self.start_with({HELP_TOPIC: i32(7)})
        help_window = self.open_help()
        page = self.tavro.client(help_window)[1] - 40
        top = self.view(help_window, "top")
        line = self.scroll(help_window, SB_LINEDOWN, "line")
        self.assert_shift(top, line, help_window, 20, "a line is 20 pixels")
        # The wheel moves 40 per message, whatever the delta.
        x, y = self.screen_point(help_window, 400, 300)
        self.tavro.send(help_window, WM_MOUSEWHEEL, (0x10000 - 360) << 16, (y << 16) | x)
        wheel = self.view(help_window, "wheel")
        self.assert_shift(line, wheel, help_window, 40, "a wheel message is 40 pixels")
        self.tavro.send(help_window, WM_MOUSEWHEEL, 120 << 16, (y << 16) | x)
        self.assert_shift(wheel, self.view(help_window, "wheel-up"), help_window, -40, "the wheel back up")
        # Top, then a page: ten lines back up from it show what stood above the first view's bottom.
        self.scroll(help_window, SB_TOP, "top-again")
        self.assertEqual(self.rows(self.view(help_window, "top-again"), help_window, 0, page),
                         self.rows(top, help_window, 0, page))
        self.scroll(help_window, SB_PAGEDOWN, "page")
        for _ in range(10):
            self.tavro.send(help_window, WM_VSCROLL, 0)  # SB_LINEUP
        back = self.view(help_window, "page-less-ten-lines")
        self.assertEqual(self.rows(back, help_window, 0, 150), self.rows(top, help_window, page - 200, 150))
        # The bottom: a line further changes nothing, a line up moves 20.
        bottom = self.scroll(help_window, SB_BOTTOM, "bottom")
        self.assertEqual(self.rows(self.scroll(help_window, SB_LINEDOWN, "below-bottom"), help_window, 0, page),
                         self.rows(bottom, help_window, 0, page))
        self.tavro.send(help_window, WM_MOUSEWHEEL, (0x10000 - 120) << 16, (y << 16) | x)
        self.assertEqual(self.rows(self.view(help_window, "wheel-at-bottom"), help_window, 0, page),
                         self.rows(bottom, help_window, 0, page))
        self.assert_shift(bottom, self.scroll(help_window, 0, "bottom-up"), help_window, -20, "a line up")
        # Page Down and Page Up on the keyboard are the scroll bar's pages.
        self.scroll(help_window, SB_TOP, "top-keys")
        self.tavro.keys("Next", window=help_window)
        self.tavro.send(help_window, WM_VSCROLL, SB_PAGEUP)
        self.assertEqual(self.rows(self.view(help_window, "keys-page"), help_window, 0, page),
                         self.rows(top, help_window, 0, page))
        self.tavro.keys("Next", "Next", "Prior", "Prior", window=help_window)
        self.assertEqual(self.rows(self.view(help_window, "keys-back"), help_window, 0, page),
                         self.rows(top, help_window, 0, page))
        # Clicking the selected row keeps the position; another topic starts at its top.
        scrolled = self.scroll(help_window, SB_LINEDOWN, "before-click")
        row = 40 + 12 + 7 * 32 + 16
        self.tavro.send(help_window, WM_LBUTTONDOWN, 1, (row << 16) | 100)
        self.tavro.send(help_window, WM_MOUSEMOVE, 0, (600 << 16) | 600)
        self.assertEqual(self.rows(self.view(help_window, "same-row"), help_window, 0, page),
                         self.rows(scrolled, help_window, 0, page))
        self.tavro.keys("Up", "Down", window=help_window)
        self.tavro.send(help_window, WM_MOUSEMOVE, 0, (600 << 16) | 600)
        self.assertEqual(self.rows(self.view(help_window, "topic-again"), help_window, 0, page),
                         self.rows(top, help_window, 0, page))

    def test_follows_a_theme_change_while_open(self):
        self.start_with({THEME: i32(0), HELP_TOPIC: i32(2)})
        help_window = self.open_help()
        content = (190 + 8, 40 + 6)
        side = (100, 40 + 12 + 11 * 32 + 8)
        png = self.tavro.screenshot_until(
            "dark", lambda png: self.pixel_at(png, help_window, *content) == DIALOG_BACKGROUND[0])
        self.assertEqual(self.pixel_at(png, help_window, *side), SIDE_BACKGROUND[0])
        for row in (1, 5):
            self.tavro.send(self.main, harness.WM_COMMAND, THEME_COMMAND + row, 0)
            self.tavro.settle(help_window)
            png = self.tavro.screenshot_until(
                f"theme{row}", lambda png: self.pixel_at(png, help_window, *content) == DIALOG_BACKGROUND[row],
                what=f"the content in theme {row}")
            self.assertEqual(self.pixel_at(png, help_window, *side), SIDE_BACKGROUND[row])
        self.assertEqual([row["hwnd"] for row in self.help_windows()], [help_window])

    def test_screenshots_of_topics_in_a_dark_and_a_light_theme(self):
        self.start_with({THEME: i32(0), HELP_TOPIC: i32(0)})
        help_window = self.open_help()
        self.tavro.move(help_window, 20, 20, 860, 680)
        for theme in (0, 1):
            if theme:
                self.tavro.send(self.main, harness.WM_COMMAND, THEME_COMMAND + theme, 0)
            for topic in (0, 1, 6, 7, 10):
                row = 40 + 12 + topic * 32 + 16
                self.tavro.send(help_window, WM_LBUTTONDOWN, 1, (row << 16) | 100)
                self.tavro.send(help_window, WM_MOUSEMOVE, 0, (600 << 16) | 600)
                self.tavro.settle(help_window)
                content = (190 + 8, 40 + 6)
                self.tavro.screenshot_until(
                    f"theme{theme}-topic{topic}",
                    lambda png: self.selected_row(png, help_window) == topic
                    and self.pixel_at(png, help_window, *content) == DIALOG_BACKGROUND[theme])


class SplashTest(HelpCase):
    def wait_splash(self):
        return self.tavro.find_window(SPLASH, "", timeout=60)

    def test_the_splash_comes_before_the_main_window(self):
        self.tavro.start()  # a first start: showSplash is on by default
        splash = self.wait_splash()
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 0)
        self.assertNotIn("Tavro: Loading Scintilla.dll\n", self.tavro.log_lines())
        fields = self.tavro.request("describe", splash).split("\t")
        left, top, right, bottom = (int(v) for v in fields[4:8])
        self.assertEqual((right - left, bottom - top), (500, 320))
        self.assertEqual(((left + right) // 2, (top + bottom) // 2), (640, 450))
        self.tavro.screenshot("splash")
        # With no input it goes by itself, and the program goes on with its main window.
        main = self.tavro.main_window(timeout=60)
        self.assertFalse(self.tavro.alive(splash))
        self.tavro.settle(main)
        self.assertTrue(self.tavro.alive(main))
        log = self.tavro.log_lines()
        self.assertLess(log.index("Tavro: Loading Scintilla.dll\n"), log.index("Tavro: Window shown\n"))
        # The splash's quit did not end the main loop: the window answers and closes normally.
        self.tavro.send(main, harness.WM_COMMAND, HELP_COMMAND, 0)
        self.tavro.find_dialog(TITLE)
        self.tavro.post(main, WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)

    def test_a_key_ends_the_splash_at_once(self):
        self.tavro.start()
        splash = self.wait_splash()
        self.tavro.post(splash, WM_KEYDOWN, 0x41, 0)
        self.tavro.wait_gone(splash)
        main = self.tavro.main_window()
        self.tavro.settle(main)
        self.assertTrue(self.tavro.alive(main))

    def test_a_click_starts_the_fade_and_a_second_click_ends_it(self):
        self.tavro.start()
        splash = self.wait_splash()
        self.tavro.post(splash, WM_LBUTTONDOWN, 1, (100 << 16) | 100)
        self.tavro.post(splash, WM_LBUTTONDOWN, 1, (100 << 16) | 100)
        self.tavro.wait_gone(splash)
        main = self.tavro.main_window()
        self.tavro.settle(main)
        self.assertTrue(self.tavro.alive(main))

    def test_no_splash_when_off(self):
        self.tavro.start()
        self.wait_splash()
        self.tavro.post(self.tavro.main_window(timeout=60), WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({SHOW_SPLASH: b"\x00"})
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.settle(main)
        self.assertEqual(self.tavro.count_windows(SPLASH), 0)
        self.assertTrue(self.tavro.wait_log("Tavro: Window shown\n"))

    def test_no_splash_in_a_viewer(self):
        doc = self.write_file("view.txt", "viewer text")
        self.tavro.start("--viewer", windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.settle(main)
        self.assertTrue(self.tavro.wait_log("Tavro: Viewer mode enabled\n"))
        self.assertEqual(self.tavro.count_windows(SPLASH), 0)


if __name__ == "__main__":
    harness.main()
