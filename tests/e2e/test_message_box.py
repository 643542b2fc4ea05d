"""The dark message box in a host process of its own: every kind with its
buttons, ids and results, Esc and the close button, the input field, and the
colours of the theme row of the moment on the screen."""
import time

import harness
from harness import TavroTestCase, windows_path

HOST = harness.BUILD / "tests" / "bin" / "message_box_host.exe"

WM_CLOSE = 0x0010
WM_COMMAND = 0x0111
BM_CLICK = 0x00F5
BM_SETSTATE = 0x00F3
IDCANCEL = 2

OK, CANCEL, YES, NO = 131, 132, 133, 134

# Per kind: the control texts of buttons 2501.. and the result of each.
KINDS = {
    0: (["Save", "Don't Save", "Cancel"], [YES, NO, CANCEL]),
    1: (["OK", "Cancel"], [OK, CANCEL]),
    2: (["OK"], [OK]),
    3: (["Yes", "No"], [YES, NO]),
    4: (["OK", "Cancel"], [OK, CANCEL]),
}

# (windowBackground, editorBackground, controlBackground, controlHover,
# controlBorder) of the six theme rows.
THEMES = {
    0: ("#1E1E1E", "#1C1C1E", "#28282A", "#3A3A3E", "#46464B"),
    1: ("#FAFAFA", "#FFFFFF", "#FFFFFF", "#EBEBEB", "#D2D2D2"),
    2: ("#E4EEFF", "#EBF4FF", "#F0F8FF", "#DCEAFC", "#B4C8E6"),
    3: ("#E4FAE4", "#EBFFEB", "#F0FFF0", "#DAF5DA", "#A0D2A0"),
    4: ("#1C1C1A", "#20201E", "#282825", "#3A3934", "#44423C"),
    5: ("#F8EEDE", "#FFF8EB", "#FFF5E4", "#F0E4D0", "#C8AC8C"),
}


def rgb(hex_colour):
    return tuple(int(hex_colour[i:i + 2], 16) for i in (1, 3, 5))


class MessageBoxTest(TavroTestCase):
    def open_box(self, kind, title, text, theme=None):
        """Starts the host with one box and returns (process, box)."""
        args = [str(kind), title, text] + ([str(theme)] if theme is not None else [])
        process = self.tavro.start(*args, exe=HOST)
        return process, self.tavro.find_dialog(title)

    def buttons(self, box):
        return sorted((row for row in self.tavro.children(box) if row["cls"] == "Button"), key=lambda r: r["id"])

    def static(self, box):
        return next(row for row in self.tavro.children(box) if row["id"] == 2500)

    def assert_exit(self, process, code):
        self.assertEqual(self.tavro.wait_exit(process=process), code)

    def assert_pixel(self, png, x, y, hex_colour, what):
        self.assertEqual(self.tavro.pixel(png, x, y), rgb(hex_colour), f"{what} at {x},{y}")

    def settled_screenshot(self, name, x, y, expected):
        """A screenshot once the box has painted the point x, y in the expected
        colour, or the last one when the time is up, for the asserts to explain."""
        try:
            return self.tavro.screenshot_until(name, lambda png: self.tavro.pixel(png, x, y) == expected,
                                               what=f"{expected} at {x},{y}")
        except harness.WaitTimeout:
            return self.tavro.screenshot(name)

    def check_kind(self, kind, title, text):
        """Each button of the kind, one box at a time, gives its result."""
        texts, results = KINDS[kind]
        for index, result in enumerate(results):
            process, box = self.open_box(kind, title, text)
            self.assertEqual(self.tavro.title(box), title)
            self.assertEqual(self.static(box)["text"], text.replace("\\n", "\n"))
            buttons = self.buttons(box)
            self.assertEqual([b["id"] for b in buttons], list(range(2501, 2501 + len(texts))))
            self.assertEqual([b["text"] for b in buttons], texts)
            self.tavro.post(buttons[index]["hwnd"], BM_CLICK)
            self.assert_exit(process, result)

    # -- kinds, buttons and results ----------------------------------------
    def test_kind0_yes_no_cancel(self):
        self.check_kind(0, "Tavro", r"Save changes to notes.txt?\n\nThe file was changed.")

    def test_kind0_escape_and_close_cancel(self):
        process, box = self.open_box(0, "Save Question", "Save changes?")
        self.tavro.keys("Escape", title_regex="^Save Question$")
        self.assert_exit(process, CANCEL)
        process, box = self.open_box(0, "Save Question", "Save changes?")
        self.tavro.post(box, WM_CLOSE)
        self.assert_exit(process, CANCEL)

    def test_kind0_is_pressed_by_its_control_texts(self):
        for text, result in (("Save", YES), ("Don't Save", NO), ("Cancel", CANCEL)):
            process, box = self.open_box(0, "Tavro", "Save changes?")
            self.tavro.press(box, text)
            self.assert_exit(process, result)

    def test_kind1_ok_cancel(self):
        self.check_kind(1, "Go On?", "Continue with the export?")
        process, box = self.open_box(1, "Go On?", "Continue with the export?")
        self.tavro.post(box, WM_COMMAND, IDCANCEL)
        self.assert_exit(process, CANCEL)

    def test_kind2_ok(self):
        self.check_kind(2, "Tavro - Cannot Open", r"Cannot open binary file.\n\n")
        process, box = self.open_box(2, "Report", "All done.")
        self.tavro.press(box, "OK")
        self.assert_exit(process, OK)

    def test_kind2_escape_and_close_give_ok(self):
        process, box = self.open_box(2, "Report", "All done.")
        self.tavro.keys("Escape", title_regex="^Report$")
        self.assert_exit(process, OK)
        process, box = self.open_box(2, "Report", "All done.")
        self.tavro.post(box, WM_COMMAND, IDCANCEL)
        self.assert_exit(process, OK)
        process, box = self.open_box(2, "Report", "All done.")
        self.tavro.post(box, WM_CLOSE)
        self.assert_exit(process, OK)

    def test_kind2_enter_presses_the_default_button(self):
        process, box = self.open_box(2, "Report", "All done.")
        self.tavro.keys("Return", title_regex="^Report$")
        self.assert_exit(process, OK)

    def test_kind3_yes_no(self):
        self.check_kind(3, "Replace?", r"Replace the file?\nIt exists.")
        process, box = self.open_box(3, "Replace?", "Replace the file?")
        self.tavro.keys("Escape", title_regex=r"^Replace\?$")
        self.assert_exit(process, CANCEL)

    def test_kind4_buttons_and_escape(self):
        self.check_kind(4, "Name", "Name of the profile:")
        process, box = self.open_box(4, "Name", "Name of the profile:")
        self.tavro.keys("Escape", title_regex="^Name$")
        self.assert_exit(process, CANCEL)

    # -- the input field -----------------------------------------------------
    def input_box(self, title="New Profile", prompt="Name of the profile:", theme=None):
        self.out = self.tavro.work / f"input-{time.monotonic_ns()}.txt"
        self.tavro.env["TAVRO_INPUT_OUT"] = windows_path(self.out)
        process, box = self.open_box(4, title, prompt, theme)
        edit = next(row for row in self.tavro.children(box) if row["id"] == 139)
        return process, box, edit

    def test_kind4_returns_the_typed_text(self):
        process, box, edit = self.input_box()
        self.assertEqual(edit["cls"], "Edit")
        self.assertEqual(edit["text"], "")  # the field starts empty
        self.assertEqual(self.static(box)["text"], "Name of the profile:")
        # Keys go to the field: it has the focus from the start.
        self.tavro.type("work notes", title_regex="^New Profile$")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(edit["hwnd"]), "work notes"), "work notes")
        self.tavro.post(self.buttons(box)[0]["hwnd"], BM_CLICK)
        self.assert_exit(process, OK)
        self.assertEqual(self.out.read_bytes(), b"work notes")

    def test_kind4_text_is_written_as_utf8(self):
        process, box, edit = self.input_box()
        self.tavro.chars(edit["hwnd"], "Gr\u00fc\u00dfe \u4e2d")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(edit["hwnd"]), "Gr\u00fc\u00dfe \u4e2d"),
                         "Gr\u00fc\u00dfe \u4e2d")
        self.tavro.keys("Return", title_regex="^New Profile$")  # Enter is OK
        self.assert_exit(process, OK)
        self.assertEqual(self.out.read_bytes(), "Gr\u00fc\u00dfe \u4e2d".encode("utf-8"))

    def test_kind4_field_holds_63_characters(self):
        process, box, edit = self.input_box()
        self.tavro.chars(edit["hwnd"], "".join(chr(ord("a") + i % 26) for i in range(70)))
        expected = "".join(chr(ord("a") + i % 26) for i in range(63))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(edit["hwnd"]), expected), expected)
        self.tavro.command(box, 2501)
        self.assert_exit(process, OK)
        self.assertEqual(self.out.read_text("utf-8"), expected)

    def test_kind4_cancel_and_escape_keep_nothing(self):
        process, box, edit = self.input_box()
        self.tavro.chars(edit["hwnd"], "dropped")
        self.tavro.wait_for(lambda: self.tavro.text(edit["hwnd"]), "dropped")
        self.tavro.command(box, 2502)
        self.assert_exit(process, CANCEL)
        self.assertFalse(self.out.exists())
        process, box, edit = self.input_box()
        self.tavro.chars(edit["hwnd"], "dropped too")
        self.tavro.wait_for(lambda: self.tavro.text(edit["hwnd"]), "dropped too")
        self.tavro.post(box, WM_CLOSE)
        self.assert_exit(process, CANCEL)
        self.assertFalse(self.out.exists())

    def test_kind4_ok_on_an_empty_field(self):
        process, box, edit = self.input_box()
        self.tavro.press(box, "OK")
        self.assert_exit(process, OK)
        self.assertEqual(self.out.read_bytes(), b"")

    # -- layout on the screen ------------------------------------------------
    def test_buttons_are_equal_and_centred(self):
        for kind, count in ((0, 3), (1, 2), (2, 1)):
            process, box = self.open_box(kind, f"Row {kind}", "Some text\nof two lines")
            buttons = self.buttons(box)
            static = self.static(box)
            self.assertEqual(len(buttons), count)
            widths = {b["right"] - b["left"] for b in buttons}
            self.assertEqual(len(widths), 1)
            self.assertEqual(len({b["top"] for b in buttons}), 1)
            self.assertGreater(buttons[0]["top"], static["bottom"])
            if count > 1:
                gaps = {buttons[i + 1]["left"] - buttons[i]["left"] for i in range(count - 1)}
                self.assertEqual(len(gaps), 1)
            # The row is centred under the static, which spans the box less equal margins.
            left_gap = buttons[0]["left"] - static["left"]
            right_gap = static["right"] - buttons[-1]["right"]
            self.assertLessEqual(abs(left_gap - right_gap), 2, (kind, left_gap, right_gap))
            self.tavro.post(box, WM_CLOSE)
            self.tavro.wait_exit(process=process)

    def test_long_text_widens_the_box_up_to_a_limit(self):
        sizes = []
        for length in (10, 80, 200):
            process, box = self.open_box(2, f"Width {length}", "x" * length)
            static = self.static(box)
            sizes.append(static["right"] - static["left"])
            self.tavro.post(box, WM_CLOSE)
            self.tavro.wait_exit(process=process)
        self.assertLess(sizes[0], sizes[1])
        self.assertLess(sizes[1], sizes[2])
        # 220, 340 and 400 dialog units less the two margins of 7.
        self.assertAlmostEqual(sizes[1] / sizes[0], 326 / 206, delta=0.03)
        self.assertAlmostEqual(sizes[2] / sizes[0], 386 / 206, delta=0.03)

    # -- colours ---------------------------------------------------------------
    def sample_points(self, box):
        """Points of the background clear of text and buttons, a button's face
        and its left edge."""
        static = self.static(box)
        first = self.buttons(box)[0]
        below = min(row["top"] for row in self.tavro.children(box) if row["id"] != 2500)  # field or buttons
        middle = (first["top"] + first["bottom"]) // 2
        return {
            "background below the text": (static["left"] + 3, (static["bottom"] + below) // 2),
            "background left of the buttons": (static["left"] + 3, middle),
            "face": (first["left"] + 4, middle),
            "border": (first["left"], middle),
        }

    def assert_theme_colours(self, png, points, theme, pressed=False):
        window, _, face, hover, border = THEMES[theme]
        self.assert_pixel(png, *points["background below the text"], window, "windowBackground")
        self.assert_pixel(png, *points["background left of the buttons"], window, "windowBackground")
        self.assert_pixel(png, *points["face"], hover if pressed else face, "controlHover" if pressed else "controlBackground")
        self.assert_pixel(png, *points["border"], border, "controlBorder")

    def test_dark_theme_colours(self):
        process, box = self.open_box(0, "Tavro", r"Save changes to notes.txt?\n\nThe file was changed.", theme=0)
        points = self.sample_points(box)
        png = self.settled_screenshot("dark", *points["face"], rgb(THEMES[0][2]))
        self.assert_theme_colours(png, points, 0)
        # A pressed button paints its face in controlHover.
        first = self.buttons(box)[0]
        self.tavro.post(first["hwnd"], BM_SETSTATE, 1)
        png = self.settled_screenshot("dark-pressed", *points["face"], rgb(THEMES[0][3]))
        self.assert_theme_colours(png, points, 0, pressed=True)
        self.tavro.post(first["hwnd"], BM_SETSTATE, 0)
        self.tavro.keys("Escape", title_regex="^Tavro$")
        self.assert_exit(process, CANCEL)

    def test_light_theme_colours(self):
        process, box, edit = self.input_box(title="Light Box", theme=1)
        points = self.sample_points(box)
        png = self.settled_screenshot("light", *points["face"], rgb(THEMES[1][2]))
        self.assert_theme_colours(png, points, 1)
        # The field's inside, right of any text, is editorBackground.
        self.assert_pixel(png, edit["right"] - 8, (edit["top"] + edit["bottom"]) // 2, THEMES[1][1], "editorBackground")
        self.tavro.post(box, WM_CLOSE)
        self.assert_exit(process, CANCEL)

    def test_every_theme_row_paints_the_box(self):
        for theme in THEMES:
            title = f"Theme {theme}"
            process, box = self.open_box(1, title, "Colours of the row.", theme=theme)
            points = self.sample_points(box)
            png = self.settled_screenshot(f"theme{theme}", *points["face"], rgb(THEMES[theme][2]))
            self.assert_theme_colours(png, points, theme)
            self.tavro.post(box, WM_CLOSE)
            self.assert_exit(process, CANCEL)

    def test_theme_index_past_the_table_paints_row_0(self):
        process, box = self.open_box(2, "Nine", "Index nine.", theme=9)
        points = self.sample_points(box)
        png = self.settled_screenshot("index9", *points["face"], rgb(THEMES[0][2]))
        self.assert_theme_colours(png, points, 0)
        self.tavro.post(box, WM_CLOSE)
        self.assert_exit(process, OK)


if __name__ == "__main__":
    harness.main()
