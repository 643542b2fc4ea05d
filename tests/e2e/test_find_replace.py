"""The Find and Replace dialog of the real program: its controls, Find Next
and Find Prev with and without wrap, Highlight All, Replace and Replace All
with their options, the marks they leave in the editor, every status text,
the histories and options in the settings file, and the look in a dark and a
light theme. Each button is clicked through the dialog; a sent click returns
once the dialog has handled it, so the editor's text and selection are read
back straight after."""
import re
import subprocess

import harness
from harness import TavroTestCase, utf16_field, windows_path

WM_COMMAND, WM_CLOSE = 0x0111, 0x0010
BM_GETCHECK, BM_SETCHECK, BM_CLICK = 0x00F0, 0x00F1, 0x00F5
CB_GETCOUNT, CB_GETLBTEXT = 0x0146, 0x0148
SCI_GETLENGTH, SCI_GETCURRENTPOS, SCI_GOTOPOS, SCI_SETSEL = 2006, 2008, 2025, 2160
SCI_GETSELECTIONSTART, SCI_GETSELECTIONEND, SCI_SETTEXT = 2143, 2145, 2181
SCI_CANUNDO, SCI_EMPTYUNDOBUFFER, SCI_UNDO = 2174, 2175, 2176
SCI_INDICGETFORE, SCI_INDICGETALPHA = 2083, 2524
SCI_INDICATORVALUEAT, SCI_INDICATOREND = 2507, 2509
WM_THEME_CHANGED = 0x8001
CMD_FIND = 2007
TITLE = "Tavro - Find & Replace"

FIND_WHAT, REPLACE_WITH = 501, 502
MATCH_CASE, WHOLE_WORD, WRAP, PRESERVE_CASE, IN_SELECTION, COLOR_RESULTS = 503, 504, 505, 506, 507, 508
FIND_NEXT, FIND_PREV, REPLACE, REPLACE_ALL, HIGHLIGHT_ALL, CLOSE, STATUS = 510, 511, 512, 513, 514, 515, 516
OPTIONS, WHAT_LABEL, REPLACE_LABEL, STATUS_LABEL = 517, 518, 519, 520
HIGHLIGHT, REPLACED, CURRENT = 8, 9, 10

# Payload offsets of the settings record.
THEME = 0
FIND_FLAGS = 690  # match case, whole word, wrap, preserve case, in selection, color results
FIND_HISTORY, REPLACE_HISTORY = 696, 5816


def u32(value):
    return value.to_bytes(4, "little")


def history_field(rows):
    return b"".join(utf16_field(row, 256) for row in rows + [""] * (10 - len(rows)))


class FindCase(TavroTestCase):
    def open_dialog(self, text="", settings=None):
        """Tavro with a document of that text, then the dialog from the Find
        command. settings: payload changes written before the start."""
        if settings:
            self.tavro.start()
            self.tavro.post(self.tavro.main_window(), WM_CLOSE)
            self.assertEqual(self.tavro.wait_exit(), 0)
            self.tavro.process = None
            self.tavro.patch_settings(settings)
        doc = self.write_file("doc.txt", text)
        self.tavro.start(windows_path(doc))
        self.main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(self.main), "Tavro - doc.txt")
        self.editor = self.tavro.child(self.main, "Scintilla")["hwnd"]
        self.tavro.send(self.main, WM_COMMAND, CMD_FIND)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.dialog)}

    # -- the dialog ------------------------------------------------------------
    def fill(self, search, replacement=None):
        self.tavro.request("set-text", self.controls[FIND_WHAT], search)
        if replacement is not None:
            self.tavro.request("set-text", self.controls[REPLACE_WITH], replacement)

    def set_check(self, control_id, on):
        self.tavro.send(self.controls[control_id], BM_SETCHECK, 1 if on else 0)

    def checked(self, control_id):
        return self.tavro.send(self.controls[control_id], BM_GETCHECK) == 1

    def click(self, control_id):
        self.tavro.send(self.controls[control_id], BM_CLICK)

    def status(self):
        return self.tavro.text(self.controls[STATUS])

    def combo_rows(self, control_id):
        hwnd = self.controls[control_id]
        return self.tavro.send(hwnd, CB_GETCOUNT)

    # -- the editor --------------------------------------------------------------
    def set_document(self, text, selection=(0, 0)):
        """New text with no undo history and the given selection."""
        self.tavro.request("send-string", self.editor, SCI_SETTEXT, 0, text)
        self.tavro.send(self.editor, SCI_EMPTYUNDOBUFFER)
        self.select(*selection)

    def select(self, anchor, caret):
        self.tavro.send(self.editor, SCI_SETSEL, anchor, caret)

    def document(self):
        return self.tavro.text(self.editor)

    def selection(self):
        return self.tavro.send(self.editor, SCI_GETSELECTIONSTART), self.tavro.send(self.editor, SCI_GETSELECTIONEND)

    def marks(self, indicator):
        """The ranges that carry an indicator, in byte positions."""
        length = self.tavro.send(self.editor, SCI_GETLENGTH)
        ranges, position = [], 0
        while position < length:
            end = self.tavro.send(self.editor, SCI_INDICATOREND, indicator, position)
            if end <= position:
                end = length
            if self.tavro.send(self.editor, SCI_INDICATORVALUEAT, indicator, position):
                ranges.append((position, end))
            position = end
        return ranges

    def settings_bytes(self, offset, size):
        return self.tavro.settings_path().read_bytes()[16 + offset:16 + offset + size]

    def stored_history(self, offset):
        data = self.settings_bytes(offset, 10 * 512)
        rows = [data[i * 512:(i + 1) * 512].decode("utf-16-le").split("\0")[0] for i in range(10)]
        return [row for row in rows if row]


class DialogTests(FindCase):
    def test_controls_texts_and_options_from_the_settings(self):
        self.open_dialog("text", settings={
            FIND_FLAGS: bytes([1, 0, 1, 1, 0, 1]),
            FIND_HISTORY: history_field(["newest", "older"]),
            REPLACE_HISTORY: history_field(["", "kept"])})
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("Find what:", "Replace with:", "Options", "Match case", "Whole word", "Wrap around",
                      "Preserve case", "Replace in selection", "Color results", "Find Next", "Find Prev", "Replace",
                      "Replace All", "Highlight All", "Close", "Status:"):
            self.assertIn(label, texts)
        for control_id in (FIND_WHAT, REPLACE_WITH, STATUS, OPTIONS, WHAT_LABEL, REPLACE_LABEL, STATUS_LABEL):
            self.assertIn(control_id, self.controls)
        self.assertEqual([self.checked(i) for i in range(MATCH_CASE, COLOR_RESULTS + 1)],
                         [True, False, True, True, False, True])
        # The histories fill the lists, empty rows skipped; the fields start empty.
        self.assertEqual(self.combo_rows(FIND_WHAT), 2)
        self.assertEqual(self.combo_rows(REPLACE_WITH), 1)
        self.assertEqual(self.tavro.text(self.controls[FIND_WHAT]), "")
        self.assertEqual(self.status(), "")
        # Centred on the main window, to the pixel of integer halves.
        main = self.tavro.request("describe", self.main).split("\t")
        own = self.tavro.request("describe", self.dialog).split("\t")
        left, top, right, bottom = (int(v) for v in main[4:8])
        d_left, d_top, d_right, d_bottom = (int(v) for v in own[4:8])
        self.assertEqual(d_left, left + ((right - left) - (d_right - d_left)) // 2)
        self.assertEqual(d_top, top + ((bottom - top) - (d_bottom - d_top)) // 2)
        # The command again brings the same dialog forward: one at most.
        self.tavro.send(self.main, WM_COMMAND, CMD_FIND)
        self.assertEqual(self.tavro.find_dialog(TITLE), self.dialog)
        self.assertEqual(len([row for row in self.tavro.windows("") if row["text"] == TITLE]), 1)
        self.tavro.wait_focus(self.dialog)
        # The options reach the file only at close.
        self.set_check(MATCH_CASE, False)
        self.set_check(IN_SELECTION, True)
        self.assertEqual(self.settings_bytes(FIND_FLAGS, 6), bytes([1, 0, 1, 1, 0, 1]))
        self.click(CLOSE)
        self.tavro.wait_gone(self.dialog)
        self.assertEqual(self.settings_bytes(FIND_FLAGS, 6), bytes([0, 0, 1, 1, 1, 1]))

    def test_the_keys_open_it_and_closing_gives_the_editor_the_focus(self):
        doc = self.write_file("doc.txt", "text")
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - doc.txt")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.keys("ctrl+f", window=main)
        dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(dialog)
        self.tavro.wait_focus(dialog, self.tavro.child(dialog, "ComboBox")["hwnd"])
        self.tavro.post(dialog, WM_CLOSE)
        self.tavro.wait_gone(dialog)
        self.tavro.wait_focus(main, editor)
        self.tavro.keys("ctrl+h", window=main)
        self.assertTrue(self.tavro.find_dialog(TITLE))

    def test_an_empty_search_text_does_nothing_anywhere(self):
        self.open_dialog("foo bar foo")
        self.select(4, 7)
        self.fill("", "x")
        for button in (FIND_NEXT, FIND_PREV, REPLACE, REPLACE_ALL, HIGHLIGHT_ALL):
            self.click(button)
            self.assertEqual(self.status(), "", button)
            self.assertEqual(self.document(), "foo bar foo")
            self.assertEqual(self.selection(), (4, 7))
        self.assertEqual(self.combo_rows(FIND_WHAT), 0)
        self.assertEqual(self.combo_rows(REPLACE_WITH), 0)
        self.assertEqual(self.stored_history(FIND_HISTORY), [])
        self.assertEqual(self.stored_history(REPLACE_HISTORY), [])
        self.assertEqual(self.marks(CURRENT) + self.marks(HIGHLIGHT) + self.marks(REPLACED), [])

    def test_each_search_and_replace_writes_its_history(self):
        self.open_dialog("alpha beta")
        self.fill("alpha")
        self.click(FIND_NEXT)
        self.assertEqual(self.stored_history(FIND_HISTORY), ["alpha"])
        self.fill("beta", "")
        self.click(FIND_PREV)
        self.assertEqual(self.stored_history(FIND_HISTORY), ["beta", "alpha"])
        self.fill("alpha", "gamma")
        self.click(REPLACE)
        self.assertEqual(self.stored_history(FIND_HISTORY), ["alpha", "beta"])
        self.assertEqual(self.stored_history(REPLACE_HISTORY), ["gamma"])  # the empty one wasn't recorded
        self.assertEqual(self.combo_rows(FIND_WHAT), 2)
        self.assertEqual(self.tavro.text(self.controls[FIND_WHAT]), "alpha")  # the typed text stays
        self.assertEqual(self.tavro.text(self.controls[REPLACE_WITH]), "gamma")
        # Highlight All counts but records nothing.
        self.fill("delta")
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.stored_history(FIND_HISTORY), ["alpha", "beta"])


class FindTests(FindCase):
    def test_find_next_and_prev_with_and_without_wrap(self):
        self.open_dialog("foo bar foo baz foo")
        self.fill("foo")
        self.set_check(WRAP, False)
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (0, 3))
        self.assertEqual(self.status(), "3 matches found.")
        self.assertEqual(self.marks(CURRENT), [(0, 3)])
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETFORE, CURRENT), 0xD77800)
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, CURRENT), 80)
        # The selection put the caret at its end: the next click goes on from there.
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (8, 11))
        self.assertEqual(self.marks(CURRENT), [(8, 11)])
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (16, 19))
        # After the last match, without wrap.
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No more matches.")
        self.assertEqual(self.selection(), (16, 19))
        # With wrap, back to the first.
        self.set_check(WRAP, True)
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (0, 3))
        self.assertEqual(self.status(), "3 matches found.")
        # Find Prev at the first match: with wrap to the last, without none.
        self.click(FIND_PREV)
        self.assertEqual(self.selection(), (16, 19))
        self.click(FIND_PREV)
        self.assertEqual(self.selection(), (8, 11))
        self.set_check(WRAP, False)
        self.select(0, 3)
        self.click(FIND_PREV)
        self.assertEqual(self.status(), "No more matches.")
        self.assertEqual(self.selection(), (0, 3))
        # The caret after the last match, without wrap: the selection stays.
        self.select(19, 19)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No more matches.")
        self.assertEqual(self.selection(), (19, 19))
        self.fill("nothing")
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No matches.")

    def test_an_edit_between_two_clicks_rebuilds_the_list(self):
        self.open_dialog("foo foo")
        self.fill("foo")
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "2 matches found.")
        self.assertEqual(self.marks(CURRENT), [(0, 3)])
        self.tavro.send(self.editor, SCI_GOTOPOS, 7)
        self.tavro.chars(self.editor, " foo")
        self.tavro.wait_for(self.document, "foo foo foo")
        self.assertEqual(self.marks(CURRENT), [])  # the edit took the current mark away
        self.select(0, 0)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "3 matches found.")
        self.assertEqual(self.tavro.title(self.main), "Tavro - doc.txt *")

    def test_whole_word_and_match_case_in_find(self):
        self.open_dialog("foo Foo foo_bar foobar")
        self.fill("foo")
        self.set_check(WHOLE_WORD, True)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "2 matches found.")  # the editor's word rule: foo_bar is one word
        self.set_check(MATCH_CASE, True)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "1 match found.")
        self.assertEqual(self.selection(), (0, 3))

    def test_highlight_all_with_and_without_colour(self):
        self.open_dialog("foo bar foo bar foo")
        self.fill("foo")
        self.click(FIND_NEXT)
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.status(), "3 matches found.")
        self.assertEqual(self.marks(HIGHLIGHT), [(0, 3), (8, 11), (16, 19)])
        self.assertEqual(self.marks(CURRENT), [])
        self.assertEqual(self.selection(), (16, 19))
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETFORE, HIGHLIGHT), 0x00DCFF)
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, HIGHLIGHT), 70)
        # Without colour it only counts: the marks go, the selection stays.
        self.set_check(COLOR_RESULTS, False)
        self.select(4, 4)
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.status(), "3 matches found.")
        self.assertEqual(self.marks(HIGHLIGHT), [])
        self.assertEqual(self.selection(), (4, 4))
        self.fill("nothing")
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.status(), "No matches found.")
        self.assertEqual(self.stored_history(FIND_HISTORY), ["foo"])


    def test_options_are_not_stored_when_the_main_window_goes_first(self):
        self.open_dialog("text")
        self.set_check(MATCH_CASE, True)
        self.tavro.post(self.main, WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(self.settings_bytes(FIND_FLAGS, 6), bytes([0, 0, 1, 0, 0, 1]))


class ReplaceTests(FindCase):
    def test_replace_only_replaces_a_selection_equal_to_the_search_text(self):
        self.open_dialog("foo Foo FOO")
        self.fill("foo", "bar")
        self.set_check(COLOR_RESULTS, False)  # Replace marks all the same
        # No selection: Replace only searches.
        self.click(REPLACE)
        self.assertEqual(self.document(), "foo Foo FOO")
        self.assertEqual(self.selection(), (0, 3))
        self.assertEqual(self.status(), "3 matches found.")
        # Now the selection is the search text: replaced, marked, and on to the next.
        self.click(REPLACE)
        self.assertEqual(self.document(), "bar Foo FOO")
        self.assertEqual(self.marks(REPLACED), [(0, 3)])
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETFORE, REPLACED), 0x00A5FF)
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, REPLACED), 80)
        self.assertEqual(self.selection(), (4, 7))
        self.assertEqual(self.status(), "2 matches found.")
        self.assertEqual(self.tavro.title(self.main), "Tavro - doc.txt *")
        # A selection that differs in ASCII case only is accepted without match case.
        self.click(REPLACE)
        self.assertEqual(self.document(), "bar bar FOO")
        self.assertEqual(self.marks(REPLACED), [(0, 3), (4, 7)])  # the marks pile up
        self.assertEqual(self.selection(), (8, 11))
        # A selection that isn't the search text: only searches.
        self.select(0, 3)
        self.click(REPLACE)
        self.assertEqual(self.document(), "bar bar FOO")
        self.assertEqual(self.selection(), (8, 11))
        self.assertEqual(self.status(), "1 match found.")
        # With match case, FOO is not foo.
        self.set_check(MATCH_CASE, True)
        self.click(REPLACE)
        self.assertEqual(self.document(), "bar bar FOO")
        self.assertEqual(self.status(), "No matches.")

    def test_replace_folds_ascii_only(self):
        text = "\u00c4rger \u00e4rger"
        self.open_dialog(text)
        self.fill("\u00e4rger", "wut")
        self.select(0, 6)  # Ärger, which the editor's own search may find
        self.click(REPLACE)
        self.assertEqual(self.document(), text)
        self.assertEqual(self.selection(), (7, 13))
        self.click(REPLACE)
        self.assertEqual(self.document(), "\u00c4rger wut")

    def test_replace_with_preserve_case(self):
        self.open_dialog("Foo foo FOO")
        self.fill("foo", "bAR")
        self.set_check(PRESERVE_CASE, True)
        self.select(0, 3)
        self.click(REPLACE)
        self.assertEqual(self.document(), "Bar foo FOO")
        self.click(REPLACE)
        self.assertEqual(self.document(), "Bar bar FOO")
        self.click(REPLACE)
        self.assertEqual(self.document(), "Bar bar Bar")  # capitals count as a capital first letter only


class ReplaceAllTests(FindCase):
    def test_replace_all_is_one_undo_step(self):
        self.open_dialog("foo Foo FOO foo_bar")
        self.fill("foo", "bar")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "4 occurrence(s) replaced.")
        self.assertEqual(self.document(), "bar bar bar bar_bar")
        self.assertEqual(self.marks(REPLACED), [(0, 3), (4, 7), (8, 11), (12, 15)])
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, REPLACED), 120)
        self.assertEqual(self.tavro.title(self.main), "Tavro - doc.txt *")
        self.tavro.send(self.editor, SCI_UNDO)
        self.assertEqual(self.document(), "foo Foo FOO foo_bar")
        self.assertEqual(self.tavro.send(self.editor, SCI_CANUNDO), 0)

    def test_preserve_case_match_case_and_no_hits(self):
        self.open_dialog("Foo foo FOO fOO")
        self.fill("foo", "newName")
        self.set_check(PRESERVE_CASE, True)
        self.click(REPLACE_ALL)
        self.assertEqual(self.document(), "Newname newname Newname newname")
        self.assertEqual(self.status(), "4 occurrence(s) replaced.")
        self.set_document("Foo foo FOO")
        self.set_check(PRESERVE_CASE, False)
        self.set_check(MATCH_CASE, True)
        self.click(REPLACE_ALL)
        self.assertEqual(self.document(), "Foo newName FOO")
        self.assertEqual(self.status(), "1 occurrence(s) replaced.")
        self.fill("absent", "x")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "No occurrences found.")
        self.assertEqual(self.document(), "Foo newName FOO")

    def test_search_equal_to_replacement_reports_no_occurrences(self):
        self.open_dialog("foo and foo")
        self.fill("foo", "foo")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "No occurrences found.")
        self.assertEqual(self.document(), "foo and foo")
        self.assertEqual(self.tavro.send(self.editor, SCI_CANUNDO), 0)
        self.assertEqual(self.tavro.title(self.main), "Tavro - doc.txt")

    def test_whole_word_counts_differ_between_find_and_replace_all(self):
        self.open_dialog("foo foo_bar foobar")
        self.fill("foo", "X")
        self.set_check(WHOLE_WORD, True)
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.status(), "1 match found.")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "2 occurrence(s) replaced.")
        self.assertEqual(self.document(), "X X_bar foobar")

    def test_in_selection_with_no_selection_runs_on_the_whole_document(self):
        self.open_dialog("foo foo foo", settings={FIND_FLAGS + 4: bytes([1])})
        self.assertTrue(self.checked(IN_SELECTION))
        self.fill("foo", "bar")
        self.click(REPLACE_ALL)
        self.assertFalse(self.checked(IN_SELECTION))
        self.assertEqual(self.status(), "3 occurrence(s) replaced.")
        self.assertEqual(self.document(), "bar bar bar")
        self.assertEqual(self.settings_bytes(FIND_FLAGS + 4, 1), bytes([1]))  # stored only at close
        self.click(CLOSE)
        self.tavro.wait_gone(self.dialog)
        self.assertEqual(self.settings_bytes(FIND_FLAGS + 4, 1), bytes([0]))

    def test_in_a_selection_its_edges_are_word_boundaries(self):
        self.open_dialog("xfoo foox foo")
        self.fill("foo", "bar")
        self.set_check(WHOLE_WORD, True)
        self.set_check(IN_SELECTION, True)
        self.select(1, 8)
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "2 occurrence(s) replaced.")
        self.assertEqual(self.document(), "xbar barx foo")
        self.assertEqual(self.marks(REPLACED), [(1, 4), (5, 8)])
        self.tavro.send(self.editor, SCI_UNDO)
        self.assertEqual(self.document(), "xfoo foox foo")

    def test_marks_of_replaced_text_with_colour_off_and_after_close(self):
        self.open_dialog("one two one two")
        self.fill("one", "ONE")
        self.set_check(MATCH_CASE, True)
        self.select(0, 3)
        self.click(REPLACE)
        self.assertEqual(self.marks(REPLACED), [(0, 3)])
        # Colour off: Replace All in a selection elsewhere leaves the mark as it was.
        self.set_check(COLOR_RESULTS, False)
        self.set_check(IN_SELECTION, True)
        self.fill("two", "2")
        self.select(4, 15)
        self.click(REPLACE_ALL)
        self.assertEqual(self.document(), "ONE 2 one 2")
        self.assertEqual(self.marks(REPLACED), [(0, 3)])
        # Colour on: the old marks go and the new ones come.
        self.set_check(COLOR_RESULTS, True)
        self.fill("one", "1")
        self.select(4, 11)
        self.click(REPLACE_ALL)
        self.assertEqual(self.document(), "ONE 2 1 2")
        self.assertEqual(self.marks(REPLACED), [(6, 7)])
        self.fill("2")
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.marks(HIGHLIGHT), [(4, 5), (8, 9)])
        # Closing clears Highlight All and the current match but not replaced text.
        self.click(CLOSE)
        self.tavro.wait_gone(self.dialog)
        self.assertEqual(self.marks(HIGHLIGHT), [])
        self.assertEqual(self.marks(REPLACED), [(6, 7)])


class LookTests(FindCase):
    # dialogBackground and dialogText of rows 0 and 1.
    BACKGROUND = {0: (0x1E, 0x1E, 0x21), 1: (0xF2, 0xF2, 0xF2)}
    TEXT = {0: (0xDC, 0xDC, 0xDC), 1: (0x14, 0x14, 0x14)}
    WARNING, SUCCESS = (0xFF, 0xB4, 0x00), (0x28, 0xA0, 0x50)

    def status_colours(self, png):
        """The colours of the status line's pixels in a screenshot."""
        left, top, right, bottom = (int(v) for v in
                                    self.tavro.request("describe", self.controls[STATUS]).split("\t")[4:8])
        out = subprocess.run(["convert", str(png), "-crop", f"{right - left}x{bottom - top}+{left}+{top}", "-depth",
                              "8", "-unique-colors", "txt:-"], capture_output=True, text=True, check=True).stdout
        return {tuple(int(v) for v in m) for m in re.findall(r"\((\d+),(\d+),(\d+)", out)}

    def status_in(self, name, colour):
        self.tavro.settle(self.dialog)
        shot = self.tavro.screenshot_until(name, lambda png: colour in self.status_colours(png),
                                           what=f"the status line in {colour}")
        self.assertIn(colour, self.status_colours(shot))

    def check_theme(self, index):
        self.tavro.send(self.main, WM_THEME_CHANGED, index)
        self.tavro.settle(self.dialog)
        # Each kind of status has its colour: neutral, warning, success.
        self.fill("foo")
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "3 matches found.")
        self.status_in(f"neutral-{index}", self.TEXT[index])
        self.fill("absent")
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No matches.")
        self.status_in(f"warning-{index}", self.WARNING)
        self.fill("foo")
        self.click(HIGHLIGHT_ALL)
        self.assertEqual(self.status(), "3 matches found.")
        self.status_in(f"success-{index}", self.SUCCESS)
        width, height, x, y = self.tavro.client(self.dialog)
        point = (x + 6, y + height - 6)
        shot = self.tavro.screenshot_until(f"theme-{index}", lambda png: self.tavro.pixel(png, *point)
                                           == self.BACKGROUND[index], what="the dialog in the theme")
        self.assertEqual(self.tavro.pixel(shot, *point), self.BACKGROUND[index])

    def test_the_dialog_and_highlighted_matches_in_a_dark_and_a_light_theme(self):
        self.open_dialog("Find the word foo here, foo there\r\nand foo everywhere.\r\n")
        # Beside the text, at its own size.
        left, top, right, bottom = (int(v) for v in self.tavro.request("describe", self.dialog).split("\t")[4:8])
        self.tavro.move(self.dialog, 600, 320, right - left, bottom - top)
        self.fill("foo", "bar")
        self.check_theme(0)
        self.check_theme(1)

    def test_the_fields_have_the_dark_edit_menu(self):
        self.open_dialog("text")
        self.fill("some words")
        combo = self.tavro.request("describe", self.controls[FIND_WHAT]).split("\t")
        left, top = int(combo[4]), int(combo[5])
        self.tavro.x_input(self.dialog, ("mousemove", left + 20, top + 8, "click", 3))
        menu = self.tavro.wait_until(lambda: self.tavro.windows("#32768"), what="the edit menu")[0]
        self.assertGreaterEqual(menu["right"] - menu["left"], 160)
        self.tavro.screenshot("edit-menu")
        self.tavro.keys("Escape", window=self.dialog)
        self.tavro.wait_for(lambda: len(self.tavro.windows("#32768")), 0)


if __name__ == "__main__":
    harness.main()
