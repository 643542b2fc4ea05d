"""The Settings dialog of the real program: every control with the values of
a settings file the test wrote, OK in its order with the effects in the
editor and the window and the file on disk, the transparency refusals, the
mode question in both directions, Cancel, Esc and the close box, the
auto-save timer that only OK starts, and the dialog in a dark and a light
theme."""
import time

import harness
from harness import TavroTestCase, utf16_field, windows_path

TITLE = "Tavro - Settings"
BOX_TITLE = "Tavro \u00e2\u20ac\u201d Settings"
REFUSAL = "Transparency must be a number between 0 and 50."
CLASSIC, AI_MOD, THEME, TRANSPARENCY = 341, 342, 302, 303
SELECT_FONT, FONT_LINE, LINE_NUMBERS, WORD_WRAP = 311, 312, 313, 314
AUTO_SAVE, INTERVAL, SOUND_KEY, SOUND_ENTER, SPLASH, OK, CANCEL = 321, 322, 331, 332, 172, 1, 2

# Payload offsets of the settings record.
THEME_INDEX, EDITOR_MODE, FONT_SIZE, FONT_NAME, FONT_BOLD, FONT_ITALIC = 0, 4, 8, 12, 140, 141
WORD_WRAP_FIELD, LINE_NUMBERS_FIELD = 142, 143
TRANSPARENCY_FIELD, AUTO_SAVE_FIELD = 682, 686
SOUND_KEY_FIELD, SOUND_ENTER_FIELD, SPLASH_FIELD = 36689, 36690, 36691

BM_GETCHECK, BM_CLICK, CB_SETCURSEL = 0x00F0, 0x00F5, 0x014E
WM_CONTEXTMENU, WM_KEYDOWN, VK_ESCAPE = 0x007B, 0x0100, 0x1B
SCI_GETWRAPMODE, SCI_GETHSCROLLBAR = 2269, 2131
THEME_COMMAND = 3101  # to 3106, one a theme
THEMES = ["Tavro Dark", "Tavro Light", "Azure", "Green", "Night", "Sepia"]
INTERVALS = ["1 min", "5 min", "10 min", "30 min", "60 min"]


def u32(value):
    return value.to_bytes(4, "little")


class SettingsDialogCase(TavroTestCase):
    def start(self, changes=None, *args):
        """Tavro with a settings file the test wrote."""
        self.tavro.start_with_settings({SPLASH_FIELD: b"\x00", **(changes or {})}, *args)
        self.main = self.tavro.main_window()
        self.editor = self.tavro.child(self.main, "Scintilla")["hwnd"]
        self.tavro.settle(self.main)

    def open(self):
        self.tavro.post(self.main, harness.WM_COMMAND, 6001)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.dialog)}
        return self.dialog

    def checked(self, control):
        return self.tavro.send(self.controls[control], BM_GETCHECK) == 1

    def click(self, control):
        """A click on a check or radio box, handled when this returns."""
        self.tavro.send(self.controls[control], BM_CLICK)
        self.tavro.settle(self.dialog)

    def choose(self, combo, row):
        self.tavro.send(self.controls[combo], CB_SETCURSEL, row)

    def set_field(self, control, text):
        self.tavro.request("set-text", self.controls[control], text)

    def close_with(self, button):
        self.tavro.press(self.dialog, button)
        self.tavro.wait_gone(self.dialog)
        self.tavro.settle(self.main)

    def start_modified(self, changes=None):
        """Tavro on mode.txt ("text"), modified by "more " in front."""
        doc = self.write_file("mode.txt", "text")
        self.start(changes, windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - mode.txt")
        self.add_text("more ")
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - mode.txt *")
        return doc

    def add_text(self, text):
        """Text in at the caret (SCI_ADDTEXT), which modifies the document."""
        self.tavro.request("send-string", self.editor, 2001, len(text), text)

    def stored(self, offset, size=1):
        return int.from_bytes(self.tavro.settings_path().read_bytes()[16 + offset:16 + offset + size], "little")

    def alpha(self):
        return int(self.tavro.request("layered-alpha", self.main))

    def strip_shown(self):
        return "TavroMargin" in self.tavro.child_boxes(self.main)

    def panel_shown(self):
        return any(row["cls"] == "TavroAiPanel" and row["visible"] for row in self.tavro.children(self.main))


class ControlsTest(SettingsDialogCase):
    def test_every_control_shows_the_stored_values(self):
        self.start({THEME_INDEX: u32(2), FONT_NAME: utf16_field("Liberation Serif", 64), FONT_SIZE: u32(14),
                    FONT_BOLD: b"\x01", WORD_WRAP_FIELD: b"\x00", TRANSPARENCY_FIELD: u32(30),
                    AUTO_SAVE_FIELD: u32(10), SOUND_KEY_FIELD: b"\x01", SOUND_ENTER_FIELD: b"\x00"})
        self.open()
        self.assertEqual(self.tavro.text(self.controls[CLASSIC]), "Tavro Classic (no AI)")
        self.assertEqual(self.tavro.text(self.controls[AI_MOD]), "Tavro QORL (AI online)")
        self.assertTrue(self.checked(CLASSIC))
        self.assertFalse(self.checked(AI_MOD))
        self.assertEqual(self.tavro.list_items(self.controls[THEME]), (2, THEMES))
        self.assertEqual(self.tavro.text(self.controls[TRANSPARENCY]), "30")
        self.assertEqual(self.tavro.text(self.controls[SELECT_FONT]), "Select Font...")
        self.assertEqual(self.tavro.text(self.controls[FONT_LINE]), "Font: Liberation Serif, 14 pt Bold")
        self.assertEqual(self.tavro.text(self.controls[LINE_NUMBERS]), "Line numbers")
        self.assertTrue(self.checked(LINE_NUMBERS))
        self.assertEqual(self.tavro.text(self.controls[WORD_WRAP]), "Word wrap")
        self.assertFalse(self.checked(WORD_WRAP))
        self.assertEqual(self.tavro.text(self.controls[AUTO_SAVE]), "Enable")
        self.assertTrue(self.checked(AUTO_SAVE))
        self.assertEqual(self.tavro.list_items(self.controls[INTERVAL]), (2, INTERVALS))
        self.assertTrue(self.tavro.enabled(self.controls[INTERVAL]))
        self.assertEqual(self.tavro.text(self.controls[SOUND_KEY]), "Enable sound on key press")
        self.assertTrue(self.checked(SOUND_KEY))
        self.assertEqual(self.tavro.text(self.controls[SOUND_ENTER]), "Enable sound on new line (Enter)")
        self.assertFalse(self.checked(SOUND_ENTER))
        self.assertEqual(self.tavro.text(self.controls[SPLASH]), "Show splash screen on startup")
        self.assertFalse(self.checked(SPLASH))
        self.assertEqual(self.tavro.text(self.controls[OK]), "OK")
        self.assertEqual(self.tavro.text(self.controls[CANCEL]), "Cancel")
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("Editor Mode", "Theme:", "Transparency:", "(0 - 50)", "Auto-save", "Interval:"):
            self.assertIn(label, texts)
        self.tavro.screenshot("settings-azure")
        self.close_with("Cancel")

    def test_ai_mode_and_a_theme_index_of_nine_show_as_such(self):
        self.start({EDITOR_MODE: u32(1), THEME_INDEX: u32(9), AUTO_SAVE_FIELD: u32(0)})
        self.open()
        self.assertTrue(self.checked(AI_MOD))
        self.assertFalse(self.checked(CLASSIC))
        self.assertEqual(self.tavro.list_items(self.controls[THEME])[0], 0)  # 9 reads as row 0
        self.assertFalse(self.checked(AUTO_SAVE))
        self.assertEqual(self.tavro.list_items(self.controls[INTERVAL])[0], 1)  # "5 min" when off
        self.assertFalse(self.tavro.enabled(self.controls[INTERVAL]))
        self.close_with("Cancel")

    def test_dark_and_light_pictures(self):
        for theme in (0, 1):
            with self.subTest(theme=THEMES[theme]):
                if theme == 0:
                    self.start({THEME_INDEX: u32(0), AUTO_SAVE_FIELD: u32(5)})
                else:
                    self.tavro.send(self.main, harness.WM_COMMAND, THEME_COMMAND + theme)
                    self.tavro.settle(self.main)
                self.open()
                colour = (0x1E, 0x1E, 0x21) if theme == 0 else (0xF2, 0xF2, 0xF2)  # dialogBackground
                _, _, x, y = self.tavro.client(self.dialog)
                self.tavro.screenshot_until(f"settings-{theme}", lambda png: self.tavro.pixel(png, x + 3, y + 3) == colour,
                                            what=f"the dialog painted in {THEMES[theme]}")
                self.close_with("Cancel")

    def test_the_transparency_field_has_no_context_menu(self):
        self.start()
        self.open()
        # Sent: it returns only once handled; a menu would hold it open.
        self.assertEqual(self.tavro.send(self.controls[TRANSPARENCY], WM_CONTEXTMENU, self.controls[TRANSPARENCY],
                                         0xFFFFFFFF), 0)
        self.tavro.settle(self.dialog)
        self.assertEqual(self.tavro.count_windows("#32768"), 0)
        self.close_with("Cancel")

    def test_unticking_enable_disables_the_interval_list(self):
        self.start({AUTO_SAVE_FIELD: u32(30)})
        self.open()
        self.assertTrue(self.tavro.enabled(self.controls[INTERVAL]))
        self.click(AUTO_SAVE)
        self.assertFalse(self.tavro.enabled(self.controls[INTERVAL]))
        self.click(AUTO_SAVE)
        self.assertTrue(self.tavro.enabled(self.controls[INTERVAL]))
        self.close_with("Cancel")


class OkTest(SettingsDialogCase):
    def test_ok_applies_everything_and_saves_it(self):
        self.start({THEME_INDEX: u32(1)})
        self.open()
        self.click(WORD_WRAP)
        self.click(LINE_NUMBERS)
        self.set_field(TRANSPARENCY, "50")
        self.choose(THEME, 4)
        self.click(SOUND_KEY)
        self.click(SOUND_ENTER)
        self.click(SPLASH)  # was off: now on
        self.close_with("OK")
        self.assertEqual(self.tavro.send(self.editor, SCI_GETWRAPMODE), 0)
        self.assertEqual(self.tavro.send(self.editor, SCI_GETHSCROLLBAR), 1)
        self.assertFalse(self.tavro.wait_for(self.strip_shown, False))
        self.assertEqual(self.alpha(), 128)
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 50)
        self.assertEqual(self.stored(THEME_INDEX, 4), 4)
        self.assertEqual(self.stored(WORD_WRAP_FIELD), 0)
        self.assertEqual(self.stored(LINE_NUMBERS_FIELD), 0)
        self.assertEqual(self.stored(SOUND_KEY_FIELD), 1)
        self.assertEqual(self.stored(SOUND_ENTER_FIELD), 1)
        self.assertEqual(self.stored(SPLASH_FIELD), 1)
        self.assertEqual(self.stored(AUTO_SAVE_FIELD, 4), 0)
        self.assertEqual(self.stored(EDITOR_MODE, 4), 0)
        # And back: wrap, strip, no transparency.
        self.open()
        self.click(WORD_WRAP)
        self.click(LINE_NUMBERS)
        self.set_field(TRANSPARENCY, "0")
        self.close_with("OK")
        self.assertEqual(self.tavro.send(self.editor, SCI_GETWRAPMODE), 1)
        self.assertEqual(self.tavro.send(self.editor, SCI_GETHSCROLLBAR), 0)
        self.assertTrue(self.tavro.wait_for(self.strip_shown, True))
        self.assertEqual(int(self.tavro.request("exstyle", self.main)) & 0x80000, 0)
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 0)
        self.assertEqual(self.stored(WORD_WRAP_FIELD), 1)
        self.assertEqual(self.stored(LINE_NUMBERS_FIELD), 1)

    def test_fifty_is_accepted_fifty_one_and_empty_refused(self):
        self.start({TRANSPARENCY_FIELD: u32(20)})
        before = self.tavro.settings_path().read_bytes()
        self.open()
        for typed in ("51", ""):
            with self.subTest(typed=typed):
                self.set_field(TRANSPARENCY, typed)
                self.tavro.press(self.dialog, "OK")
                box = self.tavro.find_dialog(BOX_TITLE)
                self.assertIn(REFUSAL, self.tavro.dialog_texts(box))
                self.tavro.press(box, "OK")
                self.tavro.wait_gone(box)
                self.tavro.settle(self.dialog)
                self.assertTrue(self.tavro.shown(self.dialog))  # stays open
                self.assertEqual(self.tavro.text(self.controls[TRANSPARENCY]), "20")  # the old value back
                self.assertEqual(self.tavro.settings_path().read_bytes(), before)
        self.set_field(TRANSPARENCY, "50")
        self.close_with("OK")
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 50)
        self.assertEqual(self.alpha(), 128)

    def test_select_font_runs_the_font_dialog_and_the_line_follows(self):
        self.start({FONT_NAME: utf16_field("Liberation Mono", 64), FONT_SIZE: u32(11)})
        self.open()
        self.tavro.press(self.dialog, "Select Font...")
        font = self.tavro.find_dialog("Font - Tavro")
        self.tavro.settle(font)
        sizes = {row["id"]: row["hwnd"] for row in self.tavro.children(font)}[7504]
        self.tavro.send(sizes, 0x0186, 9)  # LB_SETCURSEL: 18
        self.tavro.send(font, harness.WM_COMMAND, (1 << 16) | 7504, sizes)  # LBN_SELCHANGE
        self.tavro.press(font, "OK")
        self.tavro.wait_gone(font)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(self.controls[FONT_LINE]),
                                             "Font: Liberation Mono, 18 pt"), "Font: Liberation Mono, 18 pt")
        self.assertEqual(self.stored(FONT_SIZE, 4), 18)  # the Font dialog saved it already
        self.close_with("Cancel")
        self.assertEqual(self.stored(FONT_SIZE, 4), 18)


class ModeTest(SettingsDialogCase):
    # The save prompt paints "Yes" and "No" over its buttons' texts "Save" and "Don't Save".
    def test_cancel_at_the_mode_question_stays_with_the_transparency_in_memory(self):
        self.start_modified()
        self.open()
        self.set_field(TRANSPARENCY, "40")
        self.click(AI_MOD)
        self.tavro.press(self.dialog, "OK")
        box = self.tavro.find_dialog("Tavro")
        self.assertIn('Save changes to "mode.txt"?', self.tavro.dialog_texts(box))
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.dialog)
        self.assertTrue(self.tavro.shown(self.dialog))
        self.assertEqual(self.alpha(), -1)  # not applied
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 0)  # not saved
        self.assertFalse(self.panel_shown())
        self.close_with("Cancel")
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 0)
        self.assertEqual(self.alpha(), -1)
        # In memory all the same: the next save of the record carries it.
        self.tavro.send(self.main, harness.WM_COMMAND, THEME_COMMAND + 1)
        self.tavro.settle(self.main)
        self.assertEqual(self.stored(TRANSPARENCY_FIELD, 4), 40)
        self.assertEqual(self.alpha(), -1)
        self.assertEqual(self.stored(EDITOR_MODE, 4), 0)

    def test_to_ai_mod_asks_and_switches_without_the_closing_box(self):
        self.start_modified()
        self.open()
        self.click(AI_MOD)
        self.tavro.press(self.dialog, "OK")
        box = self.tavro.find_dialog("Tavro")
        self.tavro.press(box, "Don't Save")
        self.tavro.wait_gone(self.dialog)
        self.assertTrue(self.tavro.wait_for(self.panel_shown, True))
        self.tavro.settle(self.main)
        self.assertEqual([row["cls"] for row in self.tavro.windows("") if row["visible"]], ["TavroMainWindow"])
        self.assertEqual(self.stored(EDITOR_MODE, 4), 1)
        self.assertEqual(self.tavro.title(self.main), "Tavro - mode.txt *")  # "No" kept the document as it was

    def test_to_classic_asks_too(self):
        doc = self.start_modified({EDITOR_MODE: u32(1)})
        self.assertTrue(self.tavro.wait_for(self.panel_shown, True))
        self.open()
        self.click(CLASSIC)
        self.tavro.press(self.dialog, "OK")
        box = self.tavro.find_dialog("Tavro")
        self.assertIn('Save changes to "mode.txt"?', self.tavro.dialog_texts(box))
        self.tavro.press(box, "Save")
        self.tavro.wait_gone(self.dialog)
        self.assertFalse(self.tavro.wait_for(self.panel_shown, False))
        self.assertEqual(self.stored(EDITOR_MODE, 4), 0)
        self.assertEqual(doc.read_bytes(), b"more text")
        self.assertEqual(self.tavro.title(self.main), "Tavro - mode.txt")

    def test_an_unchanged_mode_asks_nothing(self):
        self.start_modified()
        self.open()
        self.close_with("OK")
        self.assertEqual([row["cls"] for row in self.tavro.windows("") if row["visible"]], ["TavroMainWindow"])
        self.assertFalse(self.panel_shown())


class CancelTest(SettingsDialogCase):
    def change_everything(self):
        self.click(AI_MOD)
        self.choose(THEME, 3)
        self.set_field(TRANSPARENCY, "10")
        self.click(LINE_NUMBERS)
        self.click(WORD_WRAP)
        self.click(AUTO_SAVE)
        self.click(SOUND_KEY)
        self.click(SPLASH)

    def test_cancel_esc_and_the_close_box_change_nothing(self):
        self.start({THEME_INDEX: u32(1)})
        before = self.tavro.settings_path().read_bytes()
        for way in ("Cancel", "Esc", "close box"):
            with self.subTest(way=way):
                self.open()
                self.change_everything()
                if way == "Cancel":
                    self.tavro.press(self.dialog, "Cancel")
                elif way == "Esc":
                    self.tavro.keys("Escape", window=self.dialog)
                else:
                    self.tavro.post(self.dialog, harness.WM_CLOSE)
                self.tavro.wait_gone(self.dialog)
                self.tavro.settle(self.main)
                self.assertEqual(self.tavro.settings_path().read_bytes(), before)
                self.assertEqual(self.tavro.send(self.editor, SCI_GETWRAPMODE), 1)
                self.assertTrue(self.strip_shown())
                self.assertEqual(self.alpha(), -1)
                self.assertFalse(self.panel_shown())

    def test_a_theme_change_while_open_moves_the_list(self):
        self.start({THEME_INDEX: u32(1)})
        self.open()
        self.assertEqual(self.tavro.list_items(self.controls[THEME])[0], 1)
        self.tavro.post(self.main, harness.WM_COMMAND, THEME_COMMAND + 5)  # Sepia, from behind the dialog
        self.assertEqual(self.tavro.wait_until(lambda: self.tavro.list_items(self.controls[THEME])[0],
                                               lambda row: row == 5), 5)
        self.close_with("Cancel")
        self.assertEqual(self.stored(THEME_INDEX, 4), 5)


class IntervalTest(SettingsDialogCase):
    def test_unticking_enable_stores_zero_and_reopens_disabled_on_five(self):
        self.start({AUTO_SAVE_FIELD: u32(30)})
        self.open()
        self.click(AUTO_SAVE)
        self.close_with("OK")
        self.assertEqual(self.stored(AUTO_SAVE_FIELD, 4), 0)
        self.open()
        self.assertFalse(self.checked(AUTO_SAVE))
        self.assertFalse(self.tavro.enabled(self.controls[INTERVAL]))
        self.assertEqual(self.tavro.list_items(self.controls[INTERVAL]), (1, INTERVALS))
        self.close_with("Cancel")

    def test_a_stored_seven_shows_one_minute_until_confirmed(self):
        self.start({AUTO_SAVE_FIELD: u32(7)})
        self.open()
        self.assertTrue(self.checked(AUTO_SAVE))
        self.assertEqual(self.tavro.list_items(self.controls[INTERVAL]), (0, INTERVALS))
        self.close_with("Cancel")
        self.assertEqual(self.stored(AUTO_SAVE_FIELD, 4), 7)
        self.open()
        self.close_with("OK")
        self.assertEqual(self.stored(AUTO_SAVE_FIELD, 4), 1)

    def test_ticking_enable_without_a_row_stores_five(self):
        self.start({AUTO_SAVE_FIELD: u32(0)})
        self.open()
        self.click(AUTO_SAVE)
        self.choose(INTERVAL, -1 & 0xFFFFFFFF)  # no row
        self.close_with("OK")
        self.assertEqual(self.stored(AUTO_SAVE_FIELD, 4), 5)


class AutoSaveTimerTest(SettingsDialogCase):
    def test_only_ok_starts_the_timer(self):
        """A stored minute does nothing in a new run; Cancel starts nothing;
        OK on "1 min" saves the document within the minute after."""
        doc = self.write_file("auto.txt", "start")
        self.start({AUTO_SAVE_FIELD: u32(1)}, windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - auto.txt")
        self.add_text("new ")
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - auto.txt *")
        modified_at = time.monotonic()
        self.open()
        self.assertEqual(self.tavro.list_items(self.controls[INTERVAL])[0], 0)
        self.close_with("Cancel")
        # A running timer of one minute would tick within 75 s of the edit:
        # watched, the file must not change in all that time.
        with self.assertRaises(harness.WaitTimeout):
            self.tavro.wait_until(lambda: doc.read_bytes() != b"start",
                                  timeout=max(0.0, 75 - (time.monotonic() - modified_at)),
                                  what="an auto-save that no timer should make")
        self.tavro.settle(self.main)
        self.assertEqual(doc.read_bytes(), b"start")
        self.assertEqual(self.tavro.title(self.main), "Tavro - auto.txt *")
        self.open()
        confirmed_at = time.monotonic()
        self.close_with("OK")
        self.assertEqual(self.tavro.wait_for(doc.read_bytes, b"new start", timeout=100), b"new start")
        self.assertGreater(time.monotonic() - confirmed_at, 50)  # by the timer, not by OK
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - auto.txt"),
                         "Tavro - auto.txt")


if __name__ == "__main__":
    harness.main()
