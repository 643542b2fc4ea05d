"""The Regex Search dialog of the real program: Find / Next and Find Prev,
Find All in batches on its worker with Find More, Cancel and the maximum,
the results list and progress bar, Replace and Replace All, the results
file and session log read from disk, Open Results, Apply and the colour
setting, the histories, and the look in a dark and a light theme. Buttons
are clicked with BM_CLICK, which returns once the dialog has handled the
click; a Find All ends later, on the worker, and is waited for by its
status line."""
import re
import subprocess

import harness
from harness import TavroTestCase, utf16_field, windows_path

WM_COMMAND, WM_CLOSE, WM_SETTEXT = 0x0111, 0x0010, 0x000C
BM_GETCHECK, BM_SETCHECK, BM_CLICK = 0x00F0, 0x00F1, 0x00F5
CB_GETCOUNT, CB_GETCURSEL, CB_SETCURSEL = 0x0146, 0x0147, 0x014E
CBN_EDITCHANGE = 5
PBM_GETPOS = 0x0408
SCI_GETLENGTH, SCI_GOTOPOS, SCI_SETSEL = 2006, 2025, 2160
SCI_GETSELECTIONSTART, SCI_GETSELECTIONEND, SCI_SETTEXT, SCI_GETCURRENTPOS = 2143, 2145, 2181, 2008
SCI_CANUNDO, SCI_EMPTYUNDOBUFFER, SCI_GETMODIFY = 2174, 2175, 2159
SCI_INDICGETFORE, SCI_INDICGETALPHA = 2083, 2524
SCI_INDICATORVALUEAT, SCI_INDICATOREND = 2507, 2509
WM_THEME_CHANGED = 0x8001
CMD_REGEX = 817
TITLE = "Regex Search - Tavro"

PATTERN, REPLACEMENT, MATCH_CASE, WHOLE_WORD, PRESERVE_CASE = 801, 802, 803, 804, 805
BATCH, MAXIMUM, LINE_NUMBERS, FORMAT = 806, 807, 808, 809
FIND_NEXT, REPLACE, REPLACE_ALL, CANCEL, OPEN_RESULTS, CLOSE, STATUS = 810, 811, 812, 813, 814, 815, 816
PATTERN_LABEL, REPLACE_LABEL, OPTIONS, BATCH_LABEL, MAX_LABEL, FORMAT_LABEL = 819, 820, 821, 822, 823, 824
RESULTS, COLOR, PROGRESS, APPLY, FIND_ALL, FIND_PREV = 825, 826, 827, 828, 829, 830
REGEX_INDICATOR = 11

# Payload offsets of the settings record.
PATTERN_HISTORY, REPLACE_HISTORY = 10991, 21231
REGEX_FLAGS = 31471  # match case, whole word, preserve case, line numbers
BATCH_SIZE, MAX_MATCHES, OUTPUT_FORMAT, COLOR_RESULTS = 31475, 31479, 31483, 31487

RESULTS_NAME = re.compile(r"^regex_(\d{8})_(\d{6})_(\d{3,})\.txt$")


def u32(value):
    return value.to_bytes(4, "little")


class RegexCase(TavroTestCase):
    def open_dialog(self, text="", settings=None):
        """Tavro with a document of that text, then the dialog from its
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
        self.reopen()

    def reopen(self):
        self.tavro.send(self.main, WM_COMMAND, CMD_REGEX)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.dialog)}

    def close(self):
        self.click(CLOSE)
        self.tavro.wait_gone(self.dialog)

    # -- the dialog ------------------------------------------------------------
    def fill(self, pattern, replacement=None):
        self.tavro.request("set-text", self.controls[PATTERN], pattern)
        if replacement is not None:
            self.tavro.request("set-text", self.controls[REPLACEMENT], replacement)

    def edit_pattern(self, pattern):
        """A new pattern with the change notice that typing gives."""
        self.tavro.request("set-text", self.controls[PATTERN], pattern)
        self.tavro.send(self.dialog, WM_COMMAND, (CBN_EDITCHANGE << 16) | PATTERN, self.controls[PATTERN])

    def set_number(self, control_id, value):
        self.tavro.request("set-text", self.controls[control_id], str(value))

    def set_check(self, control_id, on):
        self.tavro.send(self.controls[control_id], BM_SETCHECK, 1 if on else 0)

    def checked(self, control_id):
        return self.tavro.send(self.controls[control_id], BM_GETCHECK) == 1

    def click(self, control_id):
        self.tavro.send(self.controls[control_id], BM_CLICK)

    def status(self):
        return self.tavro.text(self.controls[STATUS])

    def caption(self):
        return self.tavro.text(self.controls[FIND_ALL])

    def enabled(self, control_id):
        return self.tavro.enabled(self.controls[control_id])

    def rows(self):
        return self.tavro.list_items(self.controls[RESULTS])[1]

    def find_all(self, expected_status, timeout=60):
        """Clicks Find All (or Find More) and waits for the run's last status."""
        self.click(FIND_ALL)
        self.tavro.wait_for(self.status, expected_status, timeout=timeout)
        self.tavro.settle(self.dialog)

    # -- the editor and the files ------------------------------------------------
    def set_document(self, text, selection=(0, 0)):
        self.tavro.request("send-string", self.editor, SCI_SETTEXT, 0, text)
        self.tavro.send(self.editor, SCI_EMPTYUNDOBUFFER)
        self.select(*selection)

    def select(self, anchor, caret):
        self.tavro.send(self.editor, SCI_SETSEL, anchor, caret)

    def document(self):
        return self.tavro.text(self.editor)

    def selection(self):
        return self.tavro.send(self.editor, SCI_GETSELECTIONSTART), self.tavro.send(self.editor, SCI_GETSELECTIONEND)

    def marks(self):
        length = self.tavro.send(self.editor, SCI_GETLENGTH)
        ranges, position = [], 0
        while position < length:
            end = self.tavro.send(self.editor, SCI_INDICATOREND, REGEX_INDICATOR, position)
            if end <= position:
                end = length
            if self.tavro.send(self.editor, SCI_INDICATORVALUEAT, REGEX_INDICATOR, position):
                ranges.append((position, end))
            position = end
        return ranges

    def results_files(self):
        folder = self.tavro.appdata / "Tavro" / "tmp"
        return sorted(p for p in folder.glob("regex_*.txt")) if folder.exists() else []

    def only_results_file(self):
        files = self.results_files()
        self.assertEqual(len(files), 1, files)
        return files[0]

    def lines_of(self, path):
        data = path.read_bytes()
        self.assertNotIn(b"\r", data)
        return data.decode("utf-8").split("\n")

    def settings_bytes(self, offset, size):
        return self.tavro.settings_path().read_bytes()[16 + offset:16 + offset + size]

    def stored_history(self, offset):
        data = self.settings_bytes(offset, 10 * 1024)
        rows = [data[i * 1024:(i + 1) * 1024].decode("utf-16-le").split("\0")[0] for i in range(10)]
        return [row for row in rows if row]


HEADER_TOP = [
    "=" * 40,
    "           REGEX SEARCH RESULTS         ",
    "=" * 40,
    "",
    " TIPS:",
    "   \u2022 Ctrl+A  \u2192 Select all",
    "   \u2022 Ctrl+C  \u2192 Copy selected text",
    "=" * 40,
    "",
    "Regex Session Log",
]
CLOCK = r"\d\d:\d\d:\d\d"


class DialogTests(RegexCase):
    def test_controls_defaults_and_the_histories_at_close(self):
        self.open_dialog("alpha beta alpha")
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("Pattern:", "Replace:", "Match case", "Whole word", "Preserve case", "Color results",
                      "Options", "Batch size:", "Max matches (0 = unlimited):", "Include line numbers",
                      "Output format:", "Apply", "Find / Next", "Find Prev", "Replace", "Find All", "Replace All",
                      "Open Results", "Cancel", "Close", "Ready"):
            self.assertIn(label, texts)
        for control_id in (PATTERN, REPLACEMENT, BATCH, MAXIMUM, FORMAT, RESULTS, PROGRESS, PATTERN_LABEL,
                           REPLACE_LABEL, OPTIONS, BATCH_LABEL, MAX_LABEL, FORMAT_LABEL):
            self.assertIn(control_id, self.controls)
        self.assertEqual(self.tavro.text(self.controls[BATCH]), "300")
        self.assertEqual(self.tavro.text(self.controls[MAXIMUM]), "1000")
        self.assertEqual(self.tavro.send(self.controls[FORMAT], CB_GETCOUNT), 3)
        self.assertEqual(self.tavro.send(self.controls[FORMAT], CB_GETCURSEL), 1)
        self.assertEqual([self.checked(i) for i in (MATCH_CASE, WHOLE_WORD, PRESERVE_CASE, LINE_NUMBERS, COLOR)],
                         [False, False, False, True, True])
        self.assertEqual([self.enabled(i) for i in (FIND_NEXT, REPLACE, REPLACE_ALL, CANCEL, OPEN_RESULTS, FIND_PREV)],
                         [True, True, True, False, False, True])
        # Empty pattern: every button says so.
        for button in (FIND_NEXT, FIND_PREV, REPLACE, FIND_ALL, REPLACE_ALL):
            self.click(button)
            self.assertEqual(self.status(), "Please enter a pattern.", button)
        # The command again brings the same dialog forward.
        self.tavro.send(self.main, WM_COMMAND, CMD_REGEX)
        self.assertEqual(len([row for row in self.tavro.windows("") if row["text"] == TITLE]), 1)
        # A pattern used many times goes to the history only at close, and
        # only the one standing in the field then.
        for pattern in ("alp", "alpha", "beta"):
            self.fill(pattern)
            self.click(FIND_NEXT)
        self.assertEqual(self.stored_history(PATTERN_HISTORY), [])
        self.fill("alpha", "gamma")
        self.set_check(MATCH_CASE, True)
        self.set_number(BATCH, 25)
        self.close()
        self.assertEqual(self.stored_history(PATTERN_HISTORY), ["alpha"])
        self.assertEqual(self.stored_history(REPLACE_HISTORY), ["gamma"])
        self.assertEqual(self.settings_bytes(REGEX_FLAGS, 4), bytes([1, 0, 0, 1]))
        self.assertEqual(self.settings_bytes(BATCH_SIZE, 4), u32(25))
        # Opened again: the histories fill the lists, and Open Results waits
        # for a Find All although the session's file is on disk.
        self.assertTrue(self.results_files())
        self.reopen()
        self.assertEqual(self.tavro.send(self.controls[PATTERN], CB_GETCOUNT), 1)
        self.assertEqual(self.tavro.send(self.controls[REPLACEMENT], CB_GETCOUNT), 1)
        self.assertFalse(self.enabled(OPEN_RESULTS))
        self.assertEqual(self.status(), "Ready")


class FindTests(RegexCase):
    def test_find_next_prev_the_wrap_empty_matches_and_the_log(self):
        self.open_dialog("one two\nthree two\n")
        self.fill("t\\w+")
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (4, 7))
        self.assertEqual(self.status(), 'Found: "two" at position 4')
        self.assertEqual(self.marks(), [(4, 7)])
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETFORE, REGEX_INDICATOR), 0x00DCFF)
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, REGEX_INDICATOR), 70)
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (8, 13))
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (14, 17))
        # No match after the caret: the first of the document.
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (4, 7))
        # Find Prev: the last match before the anchor, else the document's last.
        self.select(14, 17)
        self.click(FIND_PREV)
        self.assertEqual(self.selection(), (8, 13))
        self.assertEqual(self.status(), 'Found: "three" at position 8')
        self.select(2, 2)
        self.click(FIND_PREV)
        self.assertEqual(self.selection(), (14, 17))
        # An empty match at the caret: two clicks stay on it.
        self.fill("x*")
        self.select(3, 3)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), 'Found: "" at position 3')
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), 'Found: "" at position 3')
        self.assertEqual(self.selection(), (3, 3))
        # Non-ASCII text: the status counts UTF-16 units, the log bytes.
        self.set_document("d\u00e9j\u00e0 vu\nd\u00e9j\u00e0 vu")
        self.fill("vu")
        self.select(8, 8)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), 'Found: "vu" at position 13')
        self.assertEqual(self.selection(), (17, 19))
        lines = self.lines_of(self.only_results_file())
        self.assertEqual(lines[:4], ["Regex Session Log", "Pattern: t\\w+", "=" * 40, ""])
        self.assertRegex(lines[4], rf"^\[FIND\] {CLOCK} \u2014 Ln 1, Col 4$")
        self.assertEqual(lines[5:7], ["  two", ""])
        self.assertRegex(lines[16], rf"^\[FIND PREV\] {CLOCK} \u2014 Ln 2, Col 8$")
        self.assertEqual(lines[17], "  three")
        # The log stays open between entries: one session header for all.
        self.assertEqual(lines.count("Regex Session Log"), 1)
        self.assertRegex(lines[-4], rf"^\[FIND\] {CLOCK} \u2014 Ln 2, Col 17$")
        self.assertEqual(lines[-3:], ["  vu", "", ""])

    def test_an_invalid_pattern_on_every_button(self):
        self.open_dialog("abc abc")
        self.fill("(", "x")
        self.select(0, 3)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No match found.")
        self.click(REPLACE)
        self.assertEqual(self.status(), "Selection does not match pattern.")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "No matches found to replace.")
        self.find_all("Invalid regex pattern.")
        self.assertEqual(self.results_files(), [])  # compilation comes first
        self.assertEqual(self.document(), "abc abc")
        self.assertEqual(self.caption(), "Find All")


class FindAllTests(RegexCase):
    def test_batches_find_more_the_maximum_and_the_results_file(self):
        self.open_dialog("".join(f"item {n}\n" for n in range(10)))
        self.fill("item \\d")
        self.set_number(BATCH, 3)
        self.set_number(MAXIMUM, 7)
        self.find_all("Found 3 matches.")
        self.assertEqual(self.caption(), "Find More")
        self.assertEqual(self.rows()[0:2], ["Ln 1  Col 0  item 0", "Ln 2  Col 7  item 1"])
        self.assertEqual(self.tavro.send(self.controls[PROGRESS], PBM_GETPOS), 100)
        self.assertTrue(self.enabled(OPEN_RESULTS))
        self.assertFalse(self.enabled(CANCEL))
        self.assertEqual(self.marks()[:2], [(0, 6), (7, 13)])
        self.find_all("Found 6 matches.")
        self.assertEqual(self.caption(), "Find More")
        # The last run is cut to the maximum; the footer closes the search.
        self.find_all("Found 7 matches.")
        self.assertEqual(self.caption(), "Find All")
        self.assertEqual(len(self.rows()), 7)
        self.assertEqual(self.rows()[-1], "Ln 7  Col 42  item 6")
        path = self.only_results_file()
        self.assertRegex(path.name, RESULTS_NAME)
        lines = self.lines_of(path)
        self.assertEqual(lines[:10], HEADER_TOP)
        self.assertEqual(lines[10], "Pattern:    item \\d")
        self.assertRegex(lines[11], rf"^Match case: No  \|  Whole word: No  \|  Started: {CLOCK}$")
        self.assertEqual(lines[12:14], ["=" * 39, ""])
        self.assertEqual(lines[14:21], [f"[{n // 3 + 1}] Ln {n + 1}  Pos {7 * n}-{7 * n + 6}: item {n}"
                                        for n in range(7)])
        self.assertEqual(lines[21], "")
        self.assertRegex(lines[22], rf"^\[FIND ALL\] {CLOCK} \u2014 Search complete$")
        self.assertEqual(lines[23:], ["", "=" * 40, "Total matches found: 7", ""])

    def test_a_changed_pattern_starts_a_fresh_search_and_file(self):
        self.open_dialog("foo\nfoo\nfoo\nfoo\n")
        self.fill("foo")
        self.set_number(BATCH, 2)
        self.find_all("Found 2 matches.")
        self.assertEqual(self.caption(), "Find More")
        self.edit_pattern("fo+")
        self.assertEqual(self.caption(), "Find All")
        self.find_all("Found 2 matches.")
        files = self.results_files()
        self.assertEqual(len(files), 2)
        # Both from the same day: the second name's number is one more.
        a, b = (RESULTS_NAME.match(p.name) for p in files)
        if a.group(1) == b.group(1):
            self.assertEqual(sorted([int(a.group(3)), int(b.group(3))]), [1, 2])
        self.assertEqual(len(self.rows()), 2)
        newest = max(files, key=lambda p: int(RESULTS_NAME.match(p.name).group(3)))
        self.assertIn("Pattern:    fo+", self.lines_of(newest))

    def test_edge_cases_of_the_engine(self):
        self.open_dialog("")
        # No match: a complete file with an empty body and the footer.
        self.set_document("nothing here")
        self.fill("caf\u00e9|zz")
        self.find_all("Search complete. Found 0 matches.")
        lines = self.lines_of(self.only_results_file())
        self.assertEqual(lines[10], "Pattern:    caf\u00e9|zz")  # UTF-8 in the file
        self.assertEqual(lines[14], "")
        self.assertEqual(lines[-2], "Total matches found: 0")
        self.assertEqual(self.caption(), "Find All")
        # Batch size 0: stops before the first search.
        self.set_document("aaa")
        self.fill("a")
        self.set_number(BATCH, 0)
        self.find_all("Found 0 matches.")
        self.assertEqual(self.caption(), "Find All")
        # ^foo matches right after a previous match: each search is a new subject.
        self.set_number(BATCH, 300)
        self.set_document("foofoo bar\nfoo")
        self.fill("^foo")
        self.find_all("Search complete. Found 2 matches.")
        self.assertEqual(self.rows(), ["Ln 1  Col 0  foo", "Ln 1  Col 3  foo"])
        # Whole word with an alternation keeps the boundaries round both branches.
        self.set_check(WHOLE_WORD, True)
        self.set_document("concat cats cat dogma dog")
        self.fill("cat|dog")
        self.find_all("Search complete. Found 2 matches.")
        self.assertEqual(self.rows(), ["Ln 1  Col 12  cat", "Ln 1  Col 22  dog"])
        self.set_check(WHOLE_WORD, False)
        # Empty matches: repeated within a batch, none painted.
        self.set_document("ab")
        self.fill("x*")
        self.set_number(BATCH, 3)
        self.find_all("Found 3 matches.")
        self.assertEqual(self.rows(), ["Ln 1  Col 0  ", "Ln 1  Col 1  ", "Ln 1  Col 1  "])
        self.assertEqual(self.marks(), [])
        self.assertEqual(self.caption(), "Find More")
        # Formats of the list: the rows already there stay as written.
        self.set_number(BATCH, 300)
        self.set_document("first line\nsecond hit here\n")
        self.fill("hit")
        for fmt, numbers, row in ((0, True, "hit"), (1, False, "[18-21]  hit"), (2, True, "Ln 2  second hit here"),
                                  (2, False, "second hit here")):
            self.tavro.send(self.controls[FORMAT], CB_SETCURSEL, fmt)
            self.set_check(LINE_NUMBERS, numbers)
            self.edit_pattern("hit")
            self.find_all("Search complete. Found 1 matches.")
            self.assertEqual(self.rows(), [row], (fmt, numbers))
        # With format 0 the file holds the bare matches.
        self.tavro.send(self.controls[FORMAT], CB_SETCURSEL, 0)
        self.edit_pattern("hit|line")
        self.find_all("Search complete. Found 2 matches.")
        newest = [p for p in self.results_files() if "Pattern:    hit|line" in p.read_text("utf-8")]
        self.assertEqual(self.lines_of(newest[0])[14:16], ["line", "hit"])

    def test_cancel_during_a_long_run_and_open_results_closing_the_file(self):
        # Each hit costs the engine many milliseconds of backtracking over
        # the x's before it, so a batch of 300 takes a good while.
        self.open_dialog("a hit first\n" + "".join("x" * 1500 + " hit\n" for _ in range(2000)))
        self.fill("hit")
        self.set_number(BATCH, 1)
        self.find_all("Found 1 matches.")
        self.assertTrue(self.enabled(OPEN_RESULTS))
        self.edit_pattern("\\w+y|hit")
        self.set_number(BATCH, 300)
        self.click(FIND_ALL)
        self.assertFalse(self.enabled(FIND_NEXT))
        self.assertTrue(self.enabled(CANCEL))
        self.assertTrue(self.enabled(FIND_PREV))
        # The worker is in its batch once the file's header is on disk.
        path = self.tavro.wait_until(lambda: [p for p in self.results_files() if p.stat().st_size > 0],
                                     what="the results file")[0]
        self.tavro.screenshot("mid-run")
        # Open Results during the run closes the file: nothing more goes in.
        self.click(OPEN_RESULTS)
        self.assertEqual(self.status(), "Results opened in Tavro Viewer (will close with main window).")
        size = path.stat().st_size
        self.click(CANCEL)
        self.assertEqual(self.status(), "Cancelling...")
        self.assertFalse(self.enabled(CANCEL))
        self.tavro.wait_until(lambda: re.fullmatch(r"Found \d+ matches\.", self.status()), timeout=120,
                              what="the end of the cancelled run")
        found = int(re.search(r"\d+", self.status()).group())
        self.assertLess(found, 300)
        self.assertEqual(self.caption(), "Find More" if found else "Find All")
        self.assertTrue(self.enabled(FIND_NEXT))
        self.assertEqual(path.stat().st_size, size)
        self.assertNotIn("Total matches found", path.read_text("utf-8"))
        # Find All is never disabled: a click during a run stops that run first.
        before = len(self.results_files())
        self.edit_pattern("\\w+y|hit")
        self.click(FIND_ALL)
        self.tavro.wait_until(lambda: len(self.results_files()) == before + 1, what="the long run's file")
        self.edit_pattern("first")
        self.find_all("Search complete. Found 1 matches.", timeout=120)
        self.assertEqual(self.rows(), ["Ln 1  Col 6  first"])
        self.assertEqual(self.caption(), "Find All")

    def test_open_results_starts_a_viewer_each_time(self):
        self.open_dialog("a b a")
        self.fill("a")
        self.assertFalse(self.enabled(OPEN_RESULTS))  # until a Find All has ended
        self.find_all("Search complete. Found 2 matches.")
        self.click(OPEN_RESULTS)
        self.assertEqual(self.status(), "Results opened in Tavro Viewer (will close with main window).")
        name = self.only_results_file().name
        first = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - " + name)
        self.assertIn("Total matches found: 2", self.viewer_text(first))
        # Each opening starts a Viewer of its own.
        self.click(OPEN_RESULTS)
        self.assertEqual(self.status(), "Results opened in Tavro Viewer (will close with main window).")
        self.tavro.wait_until(lambda: [w for w in self.tavro.windows("TavroMainWindow")
                                       if w["text"] == "Tavro Viewer - " + name and w["hwnd"] != first],
                              what="a second Viewer")

    def viewer_text(self, viewer):
        return self.tavro.text(self.tavro.child(viewer, "Scintilla")["hwnd"])


class LongLineTests(RegexCase):
    def test_a_line_too_long_for_the_engine_is_no_match_not_a_crash(self):
        # ".*" over a line recurses once per character in the engine: a 1 MB
        # line fits the search threads' stack, a 4 MB one doesn't.
        self.open_dialog("y" * (1 << 20) + "\n" + "z" * (4 << 20))
        self.tavro.send(self.editor, 2268, 0)  # SCI_SETWRAPMODE: none
        self.fill("y.*")
        self.find_all("Search complete. Found 1 matches.", timeout=120)
        self.assertEqual(self.marks(), [(0, 1 << 20)])
        self.fill("z.*")
        self.find_all("Search complete. Found 0 matches.", timeout=120)
        self.assertEqual(self.caption(), "Find All")
        self.select(0, 0)
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), "No match found.")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "No matches found to replace.")
        # The program goes on as before.
        self.fill("y{3}")
        self.click(FIND_NEXT)
        self.assertEqual(self.status(), 'Found: "yyy" at position 0')
        self.assertTrue(self.tavro.alive(self.main))


class ReplaceTests(RegexCase):
    def test_replace_with_groups_preserve_case_and_the_log(self):
        self.open_dialog("John Smith\nJANE DOE\n")
        self.fill("(\\w+) (\\w+)", "$2, $1")
        self.click(REPLACE)
        self.assertEqual(self.status(), "No selection. Use Find/Next first.")
        self.click(FIND_NEXT)
        self.assertEqual(self.selection(), (0, 10))
        self.click(REPLACE)
        self.assertEqual(self.document(), "Smith, John\nJANE DOE\n")
        self.assertEqual(self.selection(), (0, 11))
        self.assertEqual(self.status(), 'Replaced: "John Smith" \u2192 "$2, $1"')
        self.assertEqual(self.marks(), [(0, 11)])
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETFORE, REGEX_INDICATOR), 0x64C864)
        self.assertEqual(self.tavro.send(self.editor, SCI_INDICGETALPHA, REGEX_INDICATOR), 80)
        self.assertTrue(self.tavro.send(self.editor, SCI_CANUNDO))
        # A selection that isn't the match: the first match at or after its start.
        self.set_check(PRESERVE_CASE, True)
        self.fill("jane", "mary")
        self.select(12, 14)
        self.click(REPLACE)
        self.assertEqual(self.document(), "Smith, John\nMARY DOE\n")
        # Nothing from the selection on: no replacement.
        self.fill("john")
        self.select(15, 17)
        self.click(REPLACE)
        self.assertEqual(self.status(), "Selection does not match pattern.")
        lines = self.lines_of(self.only_results_file())
        self.assertRegex(lines[4], rf"^\[FIND\] {CLOCK} \u2014 Ln 1, Col 0$")
        self.assertRegex(lines[7], rf"^\[REPLACE\] {CLOCK} \u2014 Replaced 1 match$")
        self.assertEqual(lines[8:11], ["  Before: John Smith", "  After:  $2, $1", ""])

    def test_replace_all_is_one_step_without_undo(self):
        self.open_dialog("a1 b2 c3")
        self.fill("x")
        self.find_all("Search complete. Found 0 matches.")
        self.fill("(\\w)(\\d)")
        self.find_all("Search complete. Found 3 matches.")
        self.assertEqual(len(self.rows()), 3)
        self.tavro.send(self.editor, SCI_GOTOPOS, 5)
        self.fill("(\\w)(\\d)", "$2$1$9")
        self.click(REPLACE_ALL)
        self.assertEqual(self.status(), "Replaced 3 occurrence(s).")
        # Without Preserve case the library's format rules: $9 of no group is empty.
        self.assertEqual(self.document(), "1a 2b 3c")
        self.assertEqual(self.tavro.send(self.editor, SCI_CANUNDO), 0)
        self.assertEqual(self.tavro.send(self.editor, SCI_GETCURRENTPOS), 0)
        self.assertEqual(self.rows(), [])
        self.assertEqual(self.marks(), [])
        self.assertEqual(self.caption(), "Find All")
        self.assertEqual(self.tavro.title(self.main), "Tavro - doc.txt *")
        # The entry goes to the finished Find All's file, after a new session header.
        newest = max(self.results_files(), key=lambda p: int(RESULTS_NAME.match(p.name).group(3)))
        lines = self.lines_of(newest)
        at = lines.index("Pattern: (\\w)(\\d)")
        self.assertEqual(lines[at - 1], "Regex Session Log")
        self.assertRegex(lines[at + 3], rf"^\[REPLACE ALL\] {CLOCK} \u2014 Replaced 3 match\(es\)$")
        self.assertEqual(lines[at + 4], "  Pattern: (\\w)(\\d)  ->  $2$1$9")
        # With Preserve case the tool's own expansion: $$ stays.
        self.set_check(PRESERVE_CASE, True)
        self.fill("(\\d)(\\w)", "$$")
        self.click(REPLACE_ALL)
        self.assertEqual(self.document(), "$$ $$ $$")


class ColourTests(RegexCase):
    def test_apply_turns_the_marks_off_and_on_and_colour_off_fills_no_list(self):
        self.open_dialog("foo bar foo")
        self.fill("foo")
        self.find_all("Search complete. Found 2 matches.")
        self.assertEqual(self.marks(), [(0, 3), (8, 11)])
        self.set_check(COLOR, False)
        self.set_number(BATCH, 50)
        self.click(APPLY)
        self.assertEqual(self.status(), "Settings saved.")
        self.assertEqual(self.marks(), [])
        self.assertEqual(self.settings_bytes(COLOR_RESULTS, 1), b"\x00")
        self.assertEqual(self.settings_bytes(BATCH_SIZE, 4), u32(50))
        self.set_check(COLOR, True)
        self.click(APPLY)
        self.assertEqual(self.marks(), [(0, 3), (8, 11)])
        # With the stored setting off the list gets no rows: only the counts.
        self.set_check(COLOR, False)
        self.click(APPLY)
        self.find_all("Search complete. Found 2 matches.")
        self.assertEqual(self.rows(), [])
        self.assertEqual(self.marks(), [])
        self.assertIn("[1] Ln 1  Pos 8-11: foo", self.lines_of(max(
            self.results_files(), key=lambda p: int(RESULTS_NAME.match(p.name).group(3)))))


class LookTests(RegexCase):
    BACKGROUND = {0: (0x1E, 0x1E, 0x21), 1: (0xF2, 0xF2, 0xF2)}

    def test_mid_run_and_with_results_in_a_dark_and_a_light_theme(self):
        # Ordinary lines first, then lines that keep the engine busy.
        prose = "".join(f"Line {n}: the hit of the day, a hit again\n" for n in range(30))
        self.open_dialog(prose + "".join("x" * 1500 + " hit\n" for _ in range(300)))
        self.tavro.send(self.editor, 2268, 0)  # SCI_SETWRAPMODE: none, so the lines stay whole
        left, top, right, bottom = (int(v) for v in self.tavro.request("describe", self.dialog).split("\t")[4:8])
        self.tavro.move(self.dialog, max(0, 1280 - (right - left)), 0, right - left, bottom - top)
        for index in (0, 1):
            self.tavro.send(self.main, WM_THEME_CHANGED, index)
            self.tavro.settle(self.dialog)
            self.edit_pattern("\\w+y|hit")
            self.set_number(BATCH, 100)
            self.click(FIND_ALL)
            self.tavro.wait_until(lambda: [p for p in self.results_files() if p.stat().st_size > 0],
                                  what="the run under way")
            self.tavro.screenshot(f"mid-run-{index}")
            self.tavro.wait_for(self.status, "Found 100 matches.", timeout=180)
            self.tavro.settle(self.dialog)
            width, height, x, y = self.tavro.client(self.dialog)
            point = (x + 4, y + height - 4)
            shot = self.tavro.screenshot_until(f"results-{index}", lambda png: self.tavro.pixel(png, *point)
                                               == self.BACKGROUND[index], what="the dialog in the theme")
            self.assertEqual(self.tavro.pixel(shot, *point), self.BACKGROUND[index])
            for path in self.results_files():
                path.unlink()


if __name__ == "__main__":
    harness.main()
