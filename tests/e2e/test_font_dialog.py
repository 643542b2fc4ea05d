"""The program's own Font dialog: its controls with the font of a settings
file the test wrote, the family list (outline fonts once each, sorted, no
vertical names), the size field's rule, the two plain message boxes, OK
applying to the editor, its lexer styles, the line-number strip, the status
bar and the file, Cancel changing nothing, and pictures in a dark and a
light theme."""
import subprocess

import harness
from harness import TavroTestCase, utf16_field, windows_path

TITLE = "Font - Tavro"
NAME, FAMILIES, SIZE, SIZES, BOLD, ITALIC, PREVIEW, OK, CANCEL = 7501, 7502, 7503, 7504, 7505, 7506, 7507, 1, 2
SIZE_LIST = ["6", "7", "8", "9", "10", "11", "12", "14", "16", "18", "20", "22", "24", "26", "28", "36", "48", "72"]
NO_FONT = "Molimo odaberite font."
SIZE_RANGE = "Veli\u00c4\u008dina fonta mora biti izme\u00c4\u2018u 1 i 144."

THEME_INDEX, FONT_SIZE, FONT_NAME, FONT_BOLD, FONT_ITALIC, SPLASH_FIELD = 0, 8, 12, 140, 141, 36691
BM_GETCHECK, BM_CLICK, LB_SETCURSEL, LBN_SELCHANGE = 0x00F0, 0x00F5, 0x0186, 1
WM_CONTEXTMENU = 0x007B
SCI_STYLEGETBOLD, SCI_STYLEGETITALIC, SCI_STYLEGETSIZE, SCI_STYLEGETFONT = 2483, 2484, 2485, 2486
STYLE_DEFAULT, CPP_KEYWORD_STYLE = 32, 5
TRUETYPE_FONTTYPE = 4


def u32(value):
    return value.to_bytes(4, "little")


class FontDialogCase(TavroTestCase):
    def start(self, name="Liberation Mono", size=11, bold=0, italic=0, theme=1, *args):
        """Tavro with the font of a settings file the test wrote."""
        self.tavro.start_with_settings({FONT_NAME: utf16_field(name, 64), FONT_SIZE: u32(size),
                                        FONT_BOLD: bytes([bold]), FONT_ITALIC: bytes([italic]),
                                        THEME_INDEX: u32(theme), SPLASH_FIELD: b"\x00"}, *args)
        self.main = self.tavro.main_window()
        self.editor = self.tavro.child(self.main, "Scintilla")["hwnd"]
        self.tavro.settle(self.main)

    def open(self):
        self.tavro.post(self.main, harness.WM_COMMAND, 210)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.dialog)}

    def checked(self, control):
        return self.tavro.send(self.controls[control], BM_GETCHECK) == 1

    def select(self, control, row):
        """A row chosen in a list, as a click on it reports."""
        self.tavro.send(self.controls[control], LB_SETCURSEL, row)
        self.tavro.send(self.dialog, harness.WM_COMMAND, (LBN_SELCHANGE << 16) | control, self.controls[control])

    def select_family(self, family):
        self.select(FAMILIES, self.tavro.list_items(self.controls[FAMILIES])[1].index(family))

    def type_size(self, text):
        """The size field's text replaced at once (EN_CHANGE follows)."""
        self.tavro.request("set-text", self.controls[SIZE], text)
        self.tavro.settle(self.dialog)

    def preview_ink(self, png):
        """(width, height, pixel digest) of the text drawn in the preview,
        from a screenshot."""
        box = next(row for row in self.tavro.children(self.dialog) if row["id"] == PREVIEW)
        out = subprocess.run(["convert", str(png), "-crop",
                              f"{box['right'] - box['left']}x{box['bottom'] - box['top']}+{box['left']}+{box['top']}",
                              "+repage", "-trim", "-format", "%w %h %#", "info:"],
                             capture_output=True, text=True, check=True).stdout.split()
        return int(out[0]), int(out[1]), out[2]

    def wait_preview(self, check):
        """Screenshots until the preview's ink passes check and stays the
        same in the next shot (a shot may catch a paint half done); returns
        that ink."""
        shots = []

        def settled(png):
            shots.append(self.preview_ink(png))
            return len(shots) >= 2 and shots[-1] == shots[-2] and check(shots[-1])

        self.tavro.screenshot_until("preview", settled, what="the preview drawn as expected")
        return shots[-1]

    def close_with(self, button):
        self.tavro.press(self.dialog, button)
        self.tavro.wait_gone(self.dialog)
        self.tavro.settle(self.main)

    def stored_font(self):
        data = self.tavro.settings_path().read_bytes()[16:]
        name = data[FONT_NAME:FONT_NAME + 128].decode("utf-16-le").split("\0")[0]
        return name, int.from_bytes(data[FONT_SIZE:FONT_SIZE + 4], "little", signed=True), data[FONT_BOLD], \
            data[FONT_ITALIC]

    def editor_font(self, style=STYLE_DEFAULT):
        return (self.tavro.send_text(self.editor, SCI_STYLEGETFONT, style),
                self.tavro.send(self.editor, SCI_STYLEGETSIZE, style),
                self.tavro.send(self.editor, SCI_STYLEGETBOLD, style),
                self.tavro.send(self.editor, SCI_STYLEGETITALIC, style))

    def status_font(self):
        status = self.tavro.child(self.main, "msctls_statusbar32")["hwnd"]
        return self.tavro.request("status-part", status, 5)

    def families(self):
        """What the system enumerates: (type, name) rows."""
        rows = [line.split(" ", 1) for line in self.tavro.request("font-families").splitlines() if line]
        return [(int(kind), name) for kind, name in rows]


class ControlsTest(FontDialogCase):
    def test_controls_show_the_stored_font(self):
        self.start("Liberation Mono", 14, bold=1, italic=1)
        self.open()
        self.assertEqual(self.tavro.text(self.controls[NAME]), "Liberation Mono")
        selected, rows = self.tavro.list_items(self.controls[FAMILIES])
        self.assertEqual(rows[selected], "Liberation Mono")
        self.assertEqual(self.tavro.list_items(self.controls[SIZES]), (SIZE_LIST.index("14"), SIZE_LIST))
        self.assertEqual(self.tavro.text(self.controls[SIZE]), "14")
        self.assertEqual(self.tavro.text(self.controls[BOLD]), "Bold")
        self.assertTrue(self.checked(BOLD))
        self.assertEqual(self.tavro.text(self.controls[ITALIC]), "Italic")
        self.assertTrue(self.checked(ITALIC))
        self.assertEqual(self.tavro.text(self.controls[PREVIEW]), "AaBbCcDd 0123456789")
        self.assertEqual(self.tavro.text(self.controls[OK]), "OK")
        self.assertEqual(self.tavro.text(self.controls[CANCEL]), "Cancel")
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("Font:", "Size:", "Preview:"):
            self.assertIn(label, texts)
        _, _, x, y = self.tavro.client(self.dialog)
        self.tavro.screenshot_until("font-light", lambda png: self.tavro.pixel(png, x + 2, y + 2) == (0xF2, 0xF2, 0xF2),
                                    what="the dialog on Tavro Light's dialogBackground")
        self.close_with("Cancel")

    def test_dark_picture(self):
        self.start("DejaVu Sans Mono", 12, theme=0)
        self.open()
        _, _, x, y = self.tavro.client(self.dialog)
        self.tavro.screenshot_until("font-dark", lambda png: self.tavro.pixel(png, x + 2, y + 2) == (0x1E, 0x1E, 0x21),
                                    what="the dialog on Tavro Dark's dialogBackground")
        self.close_with("Cancel")

    def test_family_list_holds_outline_fonts_once_each_sorted(self):
        self.start()
        self.open()
        rows = self.tavro.list_items(self.controls[FAMILIES])[1]
        system = self.families()
        outline = {name for kind, name in system if kind & TRUETYPE_FONTTYPE and not name.startswith("@")}
        self.assertEqual(set(rows), outline)
        self.assertEqual(len(rows), len(set(name.casefold() for name in rows)))  # no duplicates
        self.assertEqual(rows, sorted(rows, key=str.casefold))
        self.assertFalse([name for name in rows if name.startswith("@")])
        # The system has fonts that aren't outline fonts; none of them shows.
        raster = {name for kind, name in system if not kind & TRUETYPE_FONTTYPE} - outline
        self.assertTrue(raster)
        self.assertFalse(raster & set(rows))
        # And the stand-ins that the program's own faces fall back to are there.
        for family in ("DejaVu Sans", "DejaVu Sans Mono", "Liberation Mono", "Liberation Sans", "Liberation Serif"):
            self.assertIn(family, rows)

    def test_edits_have_no_context_menu(self):
        self.start()
        self.open()
        for control in (NAME, SIZE):
            with self.subTest(control=control):
                # Sent: it returns only once handled; a menu would hold it open.
                self.assertEqual(self.tavro.send(self.controls[control], WM_CONTEXTMENU, self.controls[control],
                                                 0xFFFFFFFF), 0)
                self.tavro.settle(self.dialog)
                self.assertEqual(self.tavro.count_windows("#32768"), 0)
        self.close_with("Cancel")


class FamilyTest(FontDialogCase):
    def test_a_prefix_selects_the_first_family_that_begins_with_it(self):
        self.start("Liberation")
        self.open()
        selected, rows = self.tavro.list_items(self.controls[FAMILIES])
        self.assertEqual(rows[selected], [name for name in rows if name.lower().startswith("liberation")][0])
        self.assertEqual(self.tavro.text(self.controls[NAME]), "Liberation")  # the field shows the stored name
        self.close_with("Cancel")

    def test_a_family_gone_from_the_system_is_kept_at_ok(self):
        self.start("Gone Family Sans", 12)
        self.open()
        self.assertEqual(self.tavro.list_items(self.controls[FAMILIES])[0], -1)
        self.assertEqual(self.tavro.text(self.controls[NAME]), "Gone Family Sans")
        self.close_with("OK")
        self.assertEqual(self.stored_font(), ("Gone Family Sans", 12, 0, 0))
        self.assertEqual(self.editor_font()[0], "Gone Family Sans")

    def test_typing_in_the_name_field_changes_nothing(self):
        self.start("Liberation Mono", 12)
        self.open()
        self.tavro.request("set-text", self.controls[NAME], "DejaVu Serif")
        self.tavro.settle(self.dialog)
        self.close_with("OK")
        self.assertEqual(self.stored_font()[0], "Liberation Mono")


class SizeTest(FontDialogCase):
    def test_zero_and_145_leave_the_preview_at_the_last_valid_size(self):
        self.start("Liberation Mono", 11)
        self.open()
        small = self.wait_preview(lambda ink: ink[1] > 0)
        self.select(SIZES, SIZE_LIST.index("20"))
        self.assertEqual(self.tavro.text(self.controls[SIZE]), "20")
        large = self.wait_preview(lambda ink: ink[1] > small[1])
        for typed in ("0", "145"):
            with self.subTest(typed=typed):
                self.type_size(typed)
                self.assertEqual(self.tavro.list_items(self.controls[SIZES])[0], SIZE_LIST.index("20"))
                # Bold redraws the preview in the pending size: other strokes, as high as before.
                self.tavro.press(self.dialog, "Bold")
                bold = self.wait_preview(lambda ink: ink[2] != large[2])
                self.assertEqual(bold[1], large[1])
                self.tavro.press(self.dialog, "Bold")
                large = self.wait_preview(lambda ink: ink[2] != bold[2])
                self.assertEqual(large[1], bold[1])
        self.close_with("OK")
        self.assertEqual(self.stored_font()[1], 20)
        self.assertEqual(self.editor_font()[1], 20)

    def test_thirteen_is_kept_though_the_list_has_no_such_row(self):
        self.start("Liberation Mono", 11)
        self.open()
        eleven = self.wait_preview(lambda ink: ink[1] > 0)
        self.type_size("13")
        self.wait_preview(lambda ink: ink[1] > eleven[1])  # the preview follows
        self.assertEqual(self.tavro.list_items(self.controls[SIZES])[0], SIZE_LIST.index("11"))  # nothing cleared
        self.type_size("24")
        self.assertEqual(self.tavro.list_items(self.controls[SIZES])[0], SIZE_LIST.index("24"))  # a listed one selects
        self.type_size("13")
        self.close_with("OK")
        self.assertEqual(self.stored_font()[1], 13)
        self.assertEqual(self.editor_font()[1], 13)

    def test_a_stored_200_shows_and_ok_refuses_it_until_a_valid_size(self):
        self.start("Liberation Mono", 200)
        before = self.tavro.settings_path().read_bytes()
        self.open()
        self.assertEqual(self.tavro.text(self.controls[SIZE]), "200")
        self.assertEqual(self.tavro.list_items(self.controls[SIZES])[0], -1)
        self.tavro.press(self.dialog, "OK")
        box = self.tavro.find_dialog("Tavro")
        self.assertIn(SIZE_RANGE, self.tavro.dialog_texts(box))
        # The system's own box, with its warning icon (control 1088), not the dark one.
        self.assertIn(1088, [row["id"] for row in self.tavro.children(box)])
        self.tavro.screenshot("size-message")
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.dialog)
        self.assertTrue(self.tavro.shown(self.dialog))
        self.assertEqual(self.tavro.settings_path().read_bytes(), before)
        self.select(SIZES, SIZE_LIST.index("12"))
        self.close_with("OK")
        self.assertEqual(self.stored_font(), ("Liberation Mono", 12, 0, 0))

    def test_an_empty_family_is_refused(self):
        self.start("", 11)
        self.open()
        self.tavro.press(self.dialog, "OK")
        box = self.tavro.find_dialog("Tavro")
        self.assertIn(NO_FONT, self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.dialog)
        self.assertTrue(self.tavro.shown(self.dialog))
        self.select_family("DejaVu Serif")
        self.assertEqual(self.tavro.text(self.controls[NAME]), "DejaVu Serif")
        self.close_with("OK")
        self.assertEqual(self.stored_font(), ("DejaVu Serif", 11, 0, 0))


class ApplyTest(FontDialogCase):
    def test_ok_applies_to_editor_styles_strip_status_and_file(self):
        doc = self.write_file("code.cpp", "int main() { return 0; }\n" * 120)
        self.start("Liberation Mono", 10, 0, 0, 1, windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - code.cpp")
        strip = self.tavro.child_boxes(self.main)["TavroMargin"][2]
        self.assertEqual(self.status_font(), "  Liberation Mono 10pt")
        self.open()
        self.select_family("DejaVu Sans Mono")
        self.select(SIZES, SIZE_LIST.index("20"))
        self.tavro.press(self.dialog, "Bold")
        self.tavro.settle(self.dialog)
        self.assertTrue(self.checked(BOLD))
        self.close_with("OK")
        self.assertEqual(self.editor_font(), ("DejaVu Sans Mono", 20, 1, 0))
        # The lexer's styles took the new face and size, and kept their own weights.
        self.assertEqual(self.editor_font(CPP_KEYWORD_STYLE)[:3], ("DejaVu Sans Mono", 20, 1))
        self.assertEqual(self.tavro.wait_for(self.status_font, "  DejaVu Sans Mono 20pt Bold"),
                         "  DejaVu Sans Mono 20pt Bold")
        self.assertGreater(self.tavro.wait_until(lambda: self.tavro.child_boxes(self.main)["TavroMargin"][2],
                                                 lambda width: width > strip), strip)
        self.assertEqual(self.stored_font(), ("DejaVu Sans Mono", 20, 1, 0))

    def test_italic_alone(self):
        self.start("Liberation Serif", 12)
        self.open()
        self.tavro.press(self.dialog, "Italic")
        self.tavro.settle(self.dialog)
        self.close_with("OK")
        self.assertEqual(self.editor_font(), ("Liberation Serif", 12, 0, 1))
        self.assertEqual(self.stored_font(), ("Liberation Serif", 12, 0, 1))
        self.assertEqual(self.status_font(), "  Liberation Serif 12pt Italic")

    def test_cancel_and_the_close_box_after_many_changes_leave_everything(self):
        self.start("Liberation Mono", 11)
        before = self.tavro.settings_path().read_bytes()
        editor = self.editor_font()
        for way in ("Cancel", "close box"):
            with self.subTest(way=way):
                self.open()
                self.select_family("DejaVu Serif")
                self.select(SIZES, SIZE_LIST.index("36"))
                self.type_size("40")
                self.tavro.press(self.dialog, "Bold")
                self.tavro.press(self.dialog, "Italic")
                self.tavro.settle(self.dialog)
                if way == "Cancel":
                    self.tavro.press(self.dialog, "Cancel")
                else:
                    self.tavro.post(self.dialog, harness.WM_CLOSE)
                self.tavro.wait_gone(self.dialog)
                self.tavro.settle(self.main)
                self.assertEqual(self.tavro.settings_path().read_bytes(), before)
                self.assertEqual(self.editor_font(), editor)
                self.assertEqual(self.status_font(), "  Liberation Mono 11pt")


if __name__ == "__main__":
    harness.main()
