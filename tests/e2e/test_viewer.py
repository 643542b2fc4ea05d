"""The Viewer: read-only, its own look, no instance rules, no Lexilla."""
import shutil

import harness
from harness import TavroTestCase, windows_path

SCI_GETFIRSTVISIBLELINE = 2152


class ViewerTest(TavroTestCase):
    def start_viewer(self, text="viewer line\r\n"):
        doc = self.write_file("big.txt", text)
        self.tavro.start("--viewer", windows_path(doc))
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - big.txt")
        editor = self.tavro.child(viewer, "Scintilla")
        return viewer, editor, doc

    def test_viewer_shows_the_file_and_ignores_typing_and_page_down(self):
        text = "".join(f"line {n}\r\n" for n in range(300))
        viewer, editor, _ = self.start_viewer(text)
        hwnd = editor["hwnd"]
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(hwnd), text), text)
        self.assertEqual(len(self.tavro.children(viewer)), 1)  # no toolbar, status bar or strip
        # Both return once the Viewer has handled the keys.
        self.tavro.type("typed", window=viewer)
        self.tavro.keys("Next", "Next", "Return", "Delete", window=viewer)
        self.assertEqual(self.tavro.text(hwnd), text)
        self.assertEqual(self.tavro.send(hwnd, SCI_GETFIRSTVISIBLELINE), 0)
        shot = self.tavro.screenshot("viewer")
        # Parchment paper: #F5EEDC, sampled low in the page, clear of the text.
        x = (editor["left"] + editor["right"]) // 2
        self.assertEqual(self.tavro.pixel(shot, editor["right"] - 40, editor["bottom"] - 40), (0xF5, 0xEE, 0xDC))
        # The start logs the load, if any, before this line.
        self.tavro.wait_log("Tavro: Main window created\n")
        self.assertNotIn("Tavro: Loading lexilla.dll\n", self.tavro.log_lines())

    def test_ctrl_a_ctrl_c_copies_the_text(self):
        viewer, editor, _ = self.start_viewer("copy me\r\nall of me")
        self.tavro.wait_for(lambda: self.tavro.text(editor["hwnd"]), "copy me\r\nall of me")
        self.tavro.request("set-clipboard", "before")
        self.tavro.keys("ctrl+a", "ctrl+c", window=viewer)
        self.assertEqual(self.tavro.wait_for(self.tavro.clipboard, "copy me\r\nall of me"), "copy me\r\nall of me")

    def test_viewers_take_no_instance_mutex(self):
        self.tavro.start()
        self.tavro.main_window()
        self.start_viewer()
        doc2 = self.write_file("other.txt", "second viewer")
        self.tavro.start("--viewer", windows_path(doc2))
        self.tavro.find_window("TavroMainWindow", "Tavro Viewer - other.txt")
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 3)

    def test_viewer_takes_position_and_size_from_its_startup_info(self):
        self.tavro.start()  # the session's first process; the Viewer comes from inside Wine
        self.tavro.main_window()
        doc = self.write_file("placed.txt", "placed text")
        exe = windows_path(harness.BIN / "Tavro.exe")
        self.tavro.request("spawn", 140, 60, 740, 860, f'"{exe}" --viewer "{windows_path(doc)}"')
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - placed.txt")
        row = next(r for r in self.tavro.windows("TavroMainWindow") if r["hwnd"] == viewer)
        self.assertEqual((row["left"], row["top"], row["right"] - row["left"], row["bottom"] - row["top"]),
                         (140, 60, 740, 860))

    def test_viewer_without_startup_info_is_660_by_820(self):
        viewer, _, _ = self.start_viewer()
        row = next(r for r in self.tavro.windows("TavroMainWindow") if r["hwnd"] == viewer)
        self.assertEqual((row["right"] - row["left"], row["bottom"] - row["top"]), (660, 820))

    def test_viewer_alone_opens_an_empty_window(self):
        self.tavro.start("--viewer")
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro - Viewer")
        self.tavro.settle(viewer)  # what the start posted is done
        self.assertEqual(self.tavro.text(self.tavro.child(viewer, "Scintilla")["hwnd"]), "")
        self.assertEqual([row["cls"] for row in self.tavro.windows("")], ["TavroMainWindow"])  # no prompt

    def test_viewer_runs_without_lexilla(self):
        folder = self.tavro.work / "no-lexilla"
        folder.mkdir()
        for name in ("Tavro.exe", "Scintilla.dll"):
            shutil.copy2(harness.BIN / name, folder / name)
        doc = self.write_file("plain.txt", "no colours needed")
        self.tavro.start("--viewer", windows_path(doc), exe=folder / "Tavro.exe")
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - plain.txt")
        self.assertTrue(self.tavro.alive(viewer))


if __name__ == "__main__":
    harness.main()
