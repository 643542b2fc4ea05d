"""Print Preview, printing and Page Setup in the real program: the empty
document's messages, the preview's page turning by keys and buttons, its
painted bar in a dark and a light theme, Cancel in the pagination dialog,
the preview's size and where it is kept, printing through the print dialog
to the test printer (from the editor and from the preview), and the values
that Page Setup keeps."""
import re
import subprocess

import harness
from harness import TavroTestCase, windows_path, printed_pages

WM_CLOSE = 0x0010
WM_COMMAND = 0x0111
WM_THEME_CHANGED = 0x8001
PREVIEW, PRINT, PAGE_SETUP = 601, 602, 603
PREV, NEXT, PRINT_BUTTON, CLOSE = 610, 611, 612, 613
THEME_DARK, THEME_LIGHT = 3101, 3102
TITLE = "Tavro - Print Preview"
PRINT_TITLE = "Tavro - Print"
PRINT_DIALOG = "Print"        # Wine's print dialog
SETUP_DIALOG = "Setup Page"   # Wine's page setup dialog
SCREEN = (1280, 900)          # the harness's Xvfb

# Payload offsets of the page settings.
MARGIN_LEFT, MARGIN_TOP, MARGIN_RIGHT, MARGIN_BOTTOM = 10936, 10940, 10944, 10948
PAPER_WIDTH, PAPER_HEIGHT, PREVIEW_WIDTH, PREVIEW_HEIGHT = 10952, 10956, 10960, 10964
SHOW_SPLASH = 36691

# Wine's page setup dialog: the margin fields (millimetres).
SETUP_LEFT, SETUP_TOP, SETUP_RIGHT, SETUP_BOTTOM = 1155, 1156, 1157, 1158

# Colours of the preview's bar, as (r, g, b): controlText, controlTextDisabled, controlHover.
BAR_COLOURS = {
    THEME_DARK: {"text": (0xDC, 0xDC, 0xDC), "disabled": (0x64, 0x64, 0x64), "hover": (0x3A, 0x3A, 0x3E)},
    THEME_LIGHT: {"text": (0x3C, 0x3C, 0x3C), "disabled": (0xA0, 0xA0, 0xA0), "hover": (0xEB, 0xEB, 0xEB)},
}

PAGE_LINE = re.compile(r"^\[PrintPreview\] Page (\d+) / (\d+)\n$")


def i32(value):
    return value.to_bytes(4, "little", signed=True)


def numbered_lines(count):
    return "".join(f"Line {n:03d} of the document with some words to fill it\r\n" for n in range(1, count + 1))


def colours(png, box):
    """The distinct (r, g, b) colours within a box (x, y, width, height) of a screenshot."""
    x, y, width, height = box
    out = subprocess.run(["convert", str(png), "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-depth", "8",
                          "-unique-colors", "txt:-"], capture_output=True, text=True, check=True).stdout
    return {tuple(int(v) for v in m.groups()) for m in re.finditer(r"\((\d+),(\d+),(\d+)", out)}


def button_box(client_width, button):
    """A preview button's box in client coordinates: the group of 360 is
    centred, at least 8 in; each is 84 by 28 from y = 8, 8 apart."""
    left = max(8, (client_width - 360) // 2) + button * 92
    return left, 8, 84, 28


class PrintCase(TavroTestCase):
    def open_document(self, text, name="notes.txt", theme=THEME_DARK):
        doc = self.write_file(name, text)
        self.tavro.start(windows_path(doc))
        self.main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(self.main), f"Tavro - {name}")
        self.tavro.send(self.main, WM_COMMAND, theme, 0)
        return self.main

    def restart_with(self, changes, text, name="notes.txt"):
        """A second start on the settings file of the first, changed as given."""
        doc = self.write_file(name, text)
        self.tavro.process = None
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({SHOW_SPLASH: b"\x00", **changes})
        self.tavro.start(windows_path(doc))
        self.main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(self.main), f"Tavro - {name}")
        return self.main

    def settings_i32(self, offset):
        data = self.tavro.settings_path().read_bytes()[16:]
        return int.from_bytes(data[offset:offset + 4], "little", signed=True)

    def pages_shown(self):
        """(page, count) of every page the preview has shown so far, in order."""
        return [tuple(int(v) for v in m.groups()) for m in map(PAGE_LINE.match, self.tavro.log_lines()) if m]

    def open_preview(self):
        shown = len(self.pages_shown())
        self.tavro.command(self.main, PREVIEW)
        self.tavro.wait_until(lambda: len(self.pages_shown()) > shown, timeout=60, what="the preview's first page")
        preview = self.tavro.find_dialog(TITLE)
        self.tavro.wait_until(lambda: self.tavro.shown(preview), what="the preview shown")
        self.tavro.settle(preview)
        return preview

    def size(self, hwnd):
        fields = self.tavro.request("describe", hwnd).split("\t")
        left, top, right, bottom = (int(v) for v in fields[4:8])
        return left, top, right - left, bottom - top

    def click(self, window, box):
        width, height, x, y = self.tavro.client(window)
        bx, by, bw, bh = box
        self.tavro.x_input(window, ("mousemove", x + bx + bw // 2, y + by + bh // 2, "click", 1))

    def bar_button_colours(self, png, preview, button):
        width, _, x, y = self.tavro.client(preview)
        bx, by, bw, bh = button_box(width, button)
        return colours(png, (x + bx + 6, y + by + 4, bw - 12, bh - 8))

    def bar_is(self, png, preview, theme, prev_on, next_on):
        look = BAR_COLOURS[theme]
        return all((look["text"] in found) == on and (look["disabled"] in found) != on
                   for found, on in ((self.bar_button_colours(png, preview, button), on)
                                     for button, on in ((0, prev_on), (1, next_on), (2, True), (3, True))))

    def bar_screenshot(self, name, preview, theme, prev_on, next_on):
        """A screenshot once the bar shows those buttons enabled (painting
        comes after the input that asked for it), checked in detail."""
        try:
            png = self.tavro.screenshot_until(name, lambda png: self.bar_is(png, preview, theme, prev_on, next_on),
                                              what="the bar's enabled buttons")
        except harness.WaitTimeout:
            png = self.tavro.screenshot(name)
        self.assert_bar(png, preview, theme, prev_on, next_on)
        return png

    def assert_bar(self, png, preview, theme, prev_on, next_on):
        look = BAR_COLOURS[theme]
        for button, on in ((0, prev_on), (1, next_on), (2, True), (3, True)):
            found = self.bar_button_colours(png, preview, button)
            self.assertEqual(look["text"] in found, on, f"button {button}: {sorted(found)}")
            self.assertEqual(look["disabled"] in found, not on, f"button {button}: {sorted(found)}")

    def close_preview(self, preview):
        self.tavro.post(preview, WM_CLOSE)
        self.tavro.wait_gone(preview)
        self.tavro.settle(self.main)

    def no_window_titled(self, title):
        return [r for r in self.tavro.windows("") if r["text"] == title] == []

    # -- the empty document ------------------------------------------------
    def test_empty_document_shows_the_message_and_no_dialog_in_both_commands(self):
        self.tavro.install_test_printer()
        self.tavro.start()
        self.main = self.tavro.main_window()
        self.tavro.command(self.main, PREVIEW)
        box = self.tavro.find_dialog(TITLE)
        self.assertIn("The document is empty. Nothing to preview.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.main)
        self.assertTrue(self.no_window_titled(TITLE))
        self.assertEqual(self.pages_shown(), [])
        # Ctrl+P: the same for printing, and no print dialog.
        self.tavro.keys("ctrl+p", window=self.main)
        box = self.tavro.find_dialog(PRINT_TITLE)
        self.assertIn("The document is empty. Nothing to print.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.main)
        self.assertTrue(self.no_window_titled(PRINT_DIALOG))
        self.assertFalse([line for line in self.tavro.log_lines() if line.startswith("[PrintDocument]")])

    # -- turning pages -----------------------------------------------------
    def test_preview_turns_pages_with_keys_and_buttons(self):
        self.open_document(numbered_lines(200))
        preview = self.open_preview()
        (page, count), = self.pages_shown()
        self.assertEqual(page, 1)
        self.assertGreaterEqual(count, 3)
        self.assertFalse(self.tavro.enabled(self.main))  # modal
        png = self.bar_screenshot("preview-dark", preview, THEME_DARK, prev_on=False, next_on=True)

        # Keys: Right and Page Down forward, Left and Page Up back.
        for key, expected in (("Right", 2), ("Next", 3), ("Left", 2), ("Prior", 1)):
            self.tavro.keys(key, window=preview)
            self.tavro.wait_for(lambda: self.pages_shown()[-1], (expected, count), what=f"page {expected} after {key}")
        # At page 1 going back does nothing: the keys are handled and no page is shown.
        shown = len(self.pages_shown())
        self.tavro.keys("Left", "Prior", window=preview)
        self.assertEqual(len(self.pages_shown()), shown)

        # Buttons: a click on Next, then a posted Next, then a click on Prev.
        self.click(preview, button_box(self.tavro.client(preview)[0], 1))
        self.tavro.wait_for(lambda: self.pages_shown()[-1], (2, count), what="page 2 after a click on Next")
        self.tavro.post(preview, WM_COMMAND, NEXT)
        self.tavro.wait_for(lambda: self.pages_shown()[-1], (3, count), what="page 3 after command 611")
        self.click(preview, button_box(self.tavro.client(preview)[0], 0))
        self.tavro.wait_for(lambda: self.pages_shown()[-1], (2, count), what="page 2 after a click on Prev")

        # To the last page: Next goes dark and does nothing.
        for page in range(3, count + 1):
            self.tavro.keys("Right", window=preview)
            self.tavro.wait_for(lambda: self.pages_shown()[-1], (page, count))
        shown = len(self.pages_shown())
        self.click(preview, button_box(self.tavro.client(preview)[0], 1))
        self.tavro.keys("Right", "Next", window=preview)
        self.assertEqual(len(self.pages_shown()), shown)
        # The pointer over Next: disabled, so no hover look; over Prev it has one.
        width, _, x, y = self.tavro.client(preview)
        png = self.bar_screenshot("preview-dark-last", preview, THEME_DARK, prev_on=True, next_on=False)
        self.assertNotIn(BAR_COLOURS[THEME_DARK]["hover"], self.bar_button_colours(png, preview, 1))
        bx, by, bw, bh = button_box(width, 0)
        self.tavro.x_input(preview, ("mousemove", x + bx + bw // 2, y + by + bh // 2))
        self.tavro.screenshot_until("preview-dark-hover",
                                    lambda png: self.tavro.pixel(png, x + bx + 4, y + by + bh // 2)
                                    == BAR_COLOURS[THEME_DARK]["hover"], what="the hovered Prev in controlHover")

        # Esc closes it; the main window takes input again.
        self.tavro.keys("Escape", window=preview)
        self.tavro.wait_gone(preview)
        self.tavro.wait_until(lambda: self.tavro.enabled(self.main), what="the main window enabled")

        # In the light theme.
        self.tavro.send(self.main, WM_COMMAND, THEME_LIGHT, 0)
        preview = self.open_preview()
        self.assertEqual(self.pages_shown()[-1], (1, count))
        png = self.bar_screenshot("preview-light", preview, THEME_LIGHT, prev_on=False, next_on=True)
        width, height, x, y = self.tavro.client(preview)
        self.assertEqual(self.tavro.pixel(png, x + 2, y + 2), (0xF5, 0xF5, 0xF5))  # toolbarBackground
        self.assertEqual(self.tavro.pixel(png, x + 2, y + height - 2), (0xF2, 0xF2, 0xF2))  # dialogBackground
        self.assertEqual(self.tavro.pixel(png, x + width // 2, y + 43), (0xD2, 0xD2, 0xD2))  # separator
        self.close_preview(preview)

    def test_one_page_document_has_prev_and_next_disabled(self):
        self.open_document("hello\r\nworld\r\n")
        preview = self.open_preview()
        self.assertEqual(self.pages_shown(), [(1, 1)])
        png = self.bar_screenshot("preview-one-page", preview, THEME_DARK, prev_on=False, next_on=False)
        width, height, x, y = self.tavro.client(preview)
        # The sheet: white, centred below the bar, with its shadow at the lower right.
        self.assertEqual(self.tavro.pixel(png, x + width // 2, y + 44 + (height - 44) // 2), (255, 255, 255))
        self.tavro.keys("Right", "Next", "Left", "Prior", window=preview)
        self.tavro.post(preview, WM_COMMAND, NEXT)
        self.tavro.post(preview, WM_COMMAND, PREV)
        self.click(preview, button_box(width, 1))
        self.click(preview, button_box(width, 0))
        self.assertEqual(self.pages_shown(), [(1, 1)])
        # The Close button closes it.
        self.click(preview, button_box(width, 3))
        self.tavro.wait_gone(preview)

    def test_a_theme_change_reaches_the_open_preview(self):
        self.open_document(numbered_lines(80))
        preview = self.open_preview()
        width, height, x, y = self.tavro.client(preview)
        png = self.bar_screenshot("preview-before-theme", preview, THEME_DARK, prev_on=False, next_on=True)
        self.assertEqual(self.tavro.pixel(png, x + 2, y + 2), (0x19, 0x19, 0x1B))  # dark toolbarBackground
        # The theme changes under the modal window; its notice repaints the bar and the page area.
        self.tavro.send(self.main, WM_COMMAND, THEME_LIGHT, 0)
        self.tavro.post(preview, WM_THEME_CHANGED, 1)
        png = self.tavro.screenshot_until("preview-after-theme",
                                          lambda png: self.tavro.pixel(png, x + 2, y + 2) == (0xF5, 0xF5, 0xF5),
                                          what="the light bar")
        self.assertEqual(self.tavro.pixel(png, x + 2, y + height - 2), (0xF2, 0xF2, 0xF2))
        self.assert_bar(png, preview, THEME_LIGHT, prev_on=False, next_on=True)
        self.assertEqual(self.pages_shown()[-1][0], 1)
        self.close_preview(preview)

    # -- the pagination dialog ---------------------------------------------
    def test_cancel_in_the_pagination_dialog_shows_no_preview_and_no_message(self):
        self.open_document(numbered_lines(300))
        # The worker is the first thread of the program's own that the preview starts.
        self.tavro.request("hold-thread", self.tavro.request("pid", self.main), 1)
        self.tavro.command(self.main, PREVIEW)
        dialog = self.tavro.find_dialog(TITLE)
        self.tavro.wait_until(lambda: self.tavro.request("held-thread") != "0", what="the worker held")
        self.tavro.settle(dialog)
        self.tavro.screenshot("pagination-dialog")
        width, height, x, y = self.tavro.client(dialog)
        # The painted Cancel: centred, its bottom 10 pixels above the client's.
        self.tavro.x_input(dialog, ("mousemove", x + width // 2, y + height - 21, "click", 1))
        self.tavro.settle(dialog)
        self.tavro.screenshot("pagination-cancelling")
        self.assertTrue(self.tavro.alive(dialog))  # only the worker's end closes it
        self.tavro.request("release-thread")
        self.tavro.wait_gone(dialog)
        self.tavro.wait_until(lambda: self.tavro.enabled(self.main), what="the main window enabled")
        self.tavro.settle(self.main)
        self.assertTrue(self.no_window_titled(TITLE))
        self.assertEqual(self.pages_shown(), [])

    # -- the preview's size ------------------------------------------------
    def test_preview_size_from_the_settings_and_kept_at_close(self):
        # A stored width of 639 is ignored: 65 per cent of 1280 by 85 per cent of 900, centred.
        self.restart_with({PREVIEW_WIDTH: i32(639), PREVIEW_HEIGHT: i32(600)}, numbered_lines(80))
        preview = self.open_preview()
        self.assertEqual(self.size(preview), ((1280 - 832) // 2, (900 - 765) // 2, 832, 765))
        # Dragged smaller than 640 by 480, it stays at the minimum.
        self.tavro.move(preview, 100, 100, 500, 300)
        self.tavro.settle(preview)
        self.assertEqual(self.size(preview)[2:], (640, 480))
        self.tavro.move(preview, 100, 100, 700, 520)
        self.tavro.settle(preview)
        self.assertEqual(self.size(preview)[2:], (700, 520))
        self.tavro.keys("Escape", window=preview)
        self.tavro.wait_gone(preview)
        self.tavro.wait_for(lambda: (self.settings_i32(PREVIEW_WIDTH), self.settings_i32(PREVIEW_HEIGHT)),
                            (700, 520), what="the size in the settings file")
        # Stored and within the limits, it is used.
        preview = self.open_preview()
        self.assertEqual(self.size(preview), ((1280 - 700) // 2, (900 - 520) // 2, 700, 520))
        self.close_preview(preview)

        # Wider than the screen: ignored too.
        self.tavro.post(self.main, WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.restart_with({PREVIEW_WIDTH: i32(1281), PREVIEW_HEIGHT: i32(600)}, numbered_lines(80))
        preview = self.open_preview()
        self.assertEqual(self.size(preview)[2:], (832, 765))
        self.close_preview(preview)

    # -- printing ----------------------------------------------------------
    def print_through_dialog(self):
        dialog = self.tavro.find_dialog(PRINT_DIALOG)
        self.tavro.settle(dialog)
        printer = next(r for r in self.tavro.children(dialog) if r["cls"] == "ComboBox")
        self.assertEqual(printer["text"], "Microsoft Print to PDF")
        self.tavro.press(dialog, "OK")
        self.tavro.wait_gone(dialog)

    def test_print_through_the_dialog_to_the_test_printer(self):
        spool = self.tavro.install_test_printer()
        self.open_document(numbered_lines(120), name="report.txt")
        self.tavro.keys("ctrl+p", window=self.main)
        self.print_through_dialog()
        self.tavro.wait_log("[PrintDocument] Printed 3 page(s) of report.txt\n", timeout=120)
        pages = printed_pages(spool)
        self.assertEqual(len(pages), 3)
        text = [[line.strip() for line in page.splitlines() if line.strip()] for page in pages]
        line = re.compile(r"^Line (\d{3}) of the document with some words to fill it$")
        numbers = []
        for number, page in enumerate(text, 1):
            # Each page ends with its number, under a run of whole lines in order.
            self.assertRegex(page[-1].replace("\u00ad", "-"), rf"^-\s*{number}\s*-$")
            runs = [int(line.match(row).group(1)) for row in page[:-1]]
            self.assertEqual(runs, list(range(runs[0], runs[0] + len(runs))), page)
            numbers.append(runs)
        # The line that crossed a page's bottom belongs to that page but isn't
        # drawn there: at each page end at most one line is missing.
        self.assertEqual(numbers[0][0], 1)
        self.assertEqual(numbers[-1][-1], 120)
        for page, following in zip(numbers, numbers[1:]):
            self.assertIn(following[0] - page[-1], (1, 2))
        png = harness.printed_page_png(spool, 1, harness.ARTIFACTS / f"{self.tavro.name}.printed-page1.png", dpi=150)
        width, height = (int(v) for v in subprocess.run(["identify", "-format", "%w %h", str(png)], capture_output=True,
                                                        text=True, check=True).stdout.split())
        darkest = lambda box: min(min(c) for c in colours(png, box))
        # Black text in the body; the footer, below the last line, in grey 0x646464 at its darkest (give or take the
        # conversions to PDF and PNG), not black and not the preview's 0x808080.
        self.assertLessEqual(darkest((0, height // 20, width, height * 8 // 10)), 0x10)
        self.assertIn(darkest((0, height * 94 // 100, width, height * 6 // 100)), range(0x60, 0x69))

    def test_cancelled_print_dialog_prints_nothing(self):
        spool = self.tavro.install_test_printer()
        self.open_document(numbered_lines(10))
        self.tavro.command(self.main, PRINT)
        dialog = self.tavro.find_dialog(PRINT_DIALOG)
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.wait_log("[PrintDocument] Cancelled\n")
        self.assertFalse(spool.exists())
        self.assertTrue(self.no_window_titled(PRINT_TITLE))

    def test_printing_from_the_preview_leaves_it_open(self):
        spool = self.tavro.install_test_printer()
        self.open_document(numbered_lines(120))
        preview = self.open_preview()
        self.click(preview, button_box(self.tavro.client(preview)[0], 2))
        self.print_through_dialog()
        self.tavro.wait_log("[PrintDocument] Printed 3 page(s) of notes.txt\n", timeout=120)
        self.assertEqual(len(printed_pages(spool)), 3)
        self.tavro.settle(preview)
        self.assertTrue(self.tavro.shown(preview))
        self.assertFalse(self.tavro.enabled(self.main))  # still modal over it
        # And it still turns pages.
        self.tavro.keys("Right", window=preview)
        self.tavro.wait_for(lambda: self.pages_shown()[-1], (2, 3))
        self.close_preview(preview)
        self.tavro.wait_until(lambda: self.tavro.enabled(self.main), what="the main window enabled")

    # -- page setup --------------------------------------------------------
    def margins(self):
        return tuple(self.settings_i32(o) for o in (MARGIN_LEFT, MARGIN_TOP, MARGIN_RIGHT, MARGIN_BOTTOM))

    def paper(self):
        return self.settings_i32(PAPER_WIDTH), self.settings_i32(PAPER_HEIGHT)

    def set_margins(self, dialog, values):
        fields = {r["id"]: r["hwnd"] for r in self.tavro.children(dialog)}
        for field, value in zip((SETUP_LEFT, SETUP_TOP, SETUP_RIGHT, SETUP_BOTTOM), values):
            self.tavro.request("set-text", fields[field], value)
            self.assertEqual(self.tavro.text(fields[field]), value)

    def test_page_setup_keeps_its_values_after_ok_and_none_after_cancel(self):
        self.tavro.install_test_printer()
        # US Letter in the file: the dialog shows the printer's paper, and that is what OK keeps.
        self.restart_with({PAPER_WIDTH: i32(21590), PAPER_HEIGHT: i32(27940)}, numbered_lines(200))
        self.assertEqual(self.margins(), (1500, 1500, 1500, 1500))
        preview = self.open_preview()
        pages_before = self.pages_shown()[-1][1]
        self.close_preview(preview)
        before = self.tavro.settings_path().read_bytes()
        # Cancel: the file stays as it was, byte for byte.
        self.tavro.command(self.main, PAGE_SETUP)
        dialog = self.tavro.find_dialog(SETUP_DIALOG)
        self.tavro.settle(dialog)
        fields = {r["id"]: r["text"] for r in self.tavro.children(dialog)}
        self.assertEqual([fields[f] for f in (SETUP_LEFT, SETUP_TOP, SETUP_RIGHT, SETUP_BOTTOM)], ["15"] * 4)
        self.set_margins(dialog, ["30", "30", "30", "30"])
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.wait_log("[ShowPageSetup] Cancelled\n")
        self.assertEqual(self.tavro.settings_path().read_bytes(), before)

        # OK: the margins and the printer's A4, saved at once.
        self.tavro.command(self.main, PAGE_SETUP)
        dialog = self.tavro.find_dialog(SETUP_DIALOG)
        self.tavro.settle(dialog)
        self.tavro.screenshot("page-setup")
        self.set_margins(dialog, ["20", "50", "25", "60"])
        self.tavro.press(dialog, "OK")
        self.tavro.wait_gone(dialog)
        self.tavro.wait_log("[ShowPageSetup] Margins and paper size saved\n")
        self.assertEqual(self.margins(), (2000, 5000, 2500, 6000))
        self.assertEqual(self.paper(), (20990, 29700))  # A4 as Wine's PostScript driver gives it

        # The dialog offers the kept values the next time.
        self.tavro.command(self.main, PAGE_SETUP)
        dialog = self.tavro.find_dialog(SETUP_DIALOG)
        self.tavro.settle(dialog)
        fields = {r["id"]: r["text"] for r in self.tavro.children(dialog)}
        self.assertEqual([fields[f] for f in (SETUP_LEFT, SETUP_TOP, SETUP_RIGHT, SETUP_BOTTOM)],
                         ["20", "50", "25", "60"])
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        # And the preview's frame follows: 110 mm less height, more pages.
        preview = self.open_preview()
        self.assertGreater(self.pages_shown()[-1][1], pages_before)
        self.close_preview(preview)

    def test_without_any_printer_page_setup_and_print_end_at_the_systems_notice(self):
        self.open_document(numbered_lines(10))
        before = self.tavro.settings_path().read_bytes()
        # Wine's dialogs need a printer to open at all: they say so in a box of their own.
        self.tavro.command(self.main, PAGE_SETUP)
        notice = self.tavro.wait_until(lambda: next((r["hwnd"] for r in self.tavro.windows("#32770")
                                                     if r["text"] in ("Error", SETUP_DIALOG)), None),
                                       what="the system's notice")
        self.assertEqual(self.tavro.title(notice), "Error")
        self.tavro.press(notice, "OK")
        self.tavro.wait_gone(notice)
        self.tavro.wait_until(lambda: any(line.startswith("[ShowPageSetup] Dialog failed")
                                          for line in self.tavro.log_lines()), what="the page setup's end")
        self.assertEqual(self.tavro.settings_path().read_bytes(), before)
        self.tavro.command(self.main, PRINT)
        notice = self.tavro.find_dialog(PRINT_DIALOG)
        self.assertTrue(any("install a printer" in t for t in self.tavro.dialog_texts(notice)))
        self.tavro.press(notice, "OK")
        self.tavro.wait_gone(notice)
        self.tavro.wait_until(lambda: any(line.startswith("[PrintDocument] Dialog failed")
                                          for line in self.tavro.log_lines()), what="the print's end")
        self.assertTrue(self.no_window_titled(PRINT_TITLE))


if __name__ == "__main__":
    harness.main()
