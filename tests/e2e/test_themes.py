"""The six themes on the real main window: editor paper and ink sampled from
the screen match the table, the choice is saved, bad indexes read row 0."""
import harness
from harness import TavroTestCase, windows_path

WM_THEME_CHANGED = 0x8001

# editorBackground and editorText of each row, as (r, g, b).
ROWS = [
    ("Tavro Dark", (0x1C, 0x1C, 0x1E), (0xD4, 0xD4, 0xD4)),
    ("Tavro Light", (0xFF, 0xFF, 0xFF), (0x00, 0x00, 0x00)),
    ("Azure", (0xEB, 0xF4, 0xFF), (0x0A, 0x14, 0x32)),
    ("Green", (0xEB, 0xFF, 0xEB), (0x00, 0x28, 0x00)),
    ("Night", (0x20, 0x20, 0x1E), (0xDC, 0xDA, 0xC8)),
    ("Sepia", (0xFF, 0xF8, 0xEB), (0x3C, 0x23, 0x0C)),
]
# statusBackground of each row.
STATUS_BACKGROUNDS = [(0x16, 0x16, 0x18), (0xF0, 0xF0, 0xF0), (0xD2, 0xE0, 0xF5), (0xD2, 0xEE, 0xD2),
                      (0x16, 0x16, 0x14), (0xEB, 0xE0, 0xCD)]
BLOCKS = "\u2588" * 12


class ThemesTest(TavroTestCase):
    def open_blocks(self):
        doc = self.write_file("blocks.txt", BLOCKS + "\r\n" + BLOCKS + "\r\n")
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - blocks.txt")
        return main, self.tavro.child(main, "Scintilla")

    def paper_and_ink(self, shot, editor):
        paper = self.tavro.pixel(shot, editor["right"] - 60, editor["bottom"] - 60)
        # The middle of the second row of full blocks, clear of their edges.
        ink = self.tavro.pixel(shot, editor["left"] + 30, editor["top"] + 30)
        return paper, ink

    def status_fill(self, shot, main):
        """A pixel of the status bar's empty selection part, clear of text and lines."""
        status = self.tavro.child(main, "msctls_statusbar32")
        x = status["right"] - 510 + 50
        return self.tavro.pixel(shot, x, (status["top"] + status["bottom"]) // 2 + 1)

    def painted(self, name, main, editor, row):
        """A screenshot once the window has repainted in the row's colours, or
        the last one taken when the time is up, for the asserts to explain."""
        self.tavro.settle(main)
        wanted = ROWS[row][1:]
        try:
            return self.tavro.screenshot_until(
                name, lambda shot: self.paper_and_ink(shot, editor) == wanted
                and self.status_fill(shot, main) == STATUS_BACKGROUNDS[row], what=f"the colours of row {row}")
        except harness.WaitTimeout:
            return self.tavro.screenshot(name)

    def stored_index(self):
        data = self.tavro.settings_path().read_bytes()
        return int.from_bytes(data[16:20], "little")

    def test_each_theme_paints_the_editor_in_its_colours_and_is_saved(self):
        main, editor = self.open_blocks()
        for index, (name, paper, ink) in enumerate(ROWS):
            self.tavro.send(main, WM_THEME_CHANGED, index)
            shot = self.painted(name.replace(" ", "-"), main, editor, index)
            got_paper, got_ink = self.paper_and_ink(shot, editor)
            self.assertEqual(got_paper, paper, name)
            self.assertEqual(got_ink, ink, name)
            self.assertEqual(self.status_fill(shot, main), STATUS_BACKGROUNDS[index], name)
            self.assertEqual(self.stored_index(), index, name)

    def test_index_six_changes_nothing(self):
        main, editor = self.open_blocks()
        self.tavro.send(main, WM_THEME_CHANGED, 5)
        self.tavro.send(main, WM_THEME_CHANGED, 6)
        shot = self.painted("after-six", main, editor, 5)
        self.assertEqual(self.paper_and_ink(shot, editor), ROWS[5][1:])
        self.assertEqual(self.stored_index(), 5)

    def test_stored_index_nine_paints_row_zero_and_stays_nine(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.tavro.wait_exit()
        self.tavro.process = None
        self.tavro.patch_settings({0: (9).to_bytes(4, "little")})
        main, editor = self.open_blocks()
        shot = self.painted("index-nine", main, editor, 0)
        self.assertEqual(self.paper_and_ink(shot, editor), ROWS[0][1:])
        self.assertEqual(self.stored_index(), 9)


if __name__ == "__main__":
    harness.main()
