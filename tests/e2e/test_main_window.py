"""The main window as hub: children laid out, title and status bar following
the document, the line-number strip, minimum size, closing other profiles."""
import harness
from harness import TavroTestCase, windows_path

SCI_SETZOOM = 2373
STATUS = "msctls_statusbar32"


class MainWindowTest(TavroTestCase):
    def start(self, *args):
        self.tavro.start(*args)
        main = self.tavro.main_window()
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        return main, editor

    def status_part0(self, main):
        return self.tavro.text(self.tavro.child(main, STATUS)["hwnd"])

    def test_children_follow_a_resize(self):
        main, _ = self.start()
        self.tavro.move(main, 20, 20, 1000, 700)
        self.tavro.settle(main)  # the resize and whatever it posted are handled
        width, height, _, _ = self.tavro.client(main)
        boxes = self.tavro.child_boxes(main)
        sx, sy, sw, sh = boxes[STATUS]
        self.assertEqual((sx, sy + sh, sw), (0, height, width))
        strip = boxes["TavroMargin"]
        editor = boxes["Scintilla"]
        self.assertEqual(strip[:2], (0, 44))
        self.assertEqual(editor, (strip[2], 44, width - strip[2], height - sh - 44))
        self.assertEqual(strip[3], editor[3])
        self.tavro.move(main, 20, 20, 800, 600)
        self.tavro.settle(main)
        width, height, _, _ = self.tavro.client(main)
        editor = self.tavro.child_boxes(main)["Scintilla"]
        self.assertEqual(editor[0] + editor[2], width)
        self.tavro.screenshot("normal-window")

    def test_window_never_gets_smaller_than_640_by_480(self):
        main, _ = self.start()
        self.tavro.move(main, 0, 0, 300, 200)
        self.tavro.settle(main)
        row = next(r for r in self.tavro.windows("TavroMainWindow") if r["hwnd"] == main)
        self.assertEqual((row["right"] - row["left"], row["bottom"] - row["top"]), (640, 480))

    def test_typing_marks_the_title_and_moves_the_status(self):
        doc = self.write_file("notes.txt", "abc\r\ndef\r\n")
        main, editor = self.start(windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - notes.txt")
        self.assertEqual(self.tavro.wait_for(lambda: self.status_part0(main), "  Ln 1, Col 1"), "  Ln 1, Col 1")
        self.tavro.keys("Down", "End")
        self.tavro.type("gh")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - notes.txt *"),
                         "Tavro - notes.txt *")
        self.assertEqual(self.tavro.wait_for(lambda: self.status_part0(main), "  Ln 2, Col 6"), "  Ln 2, Col 6")

    def test_strip_widens_with_digits_and_zoom(self):
        main, editor = self.start()
        narrow = self.tavro.child_boxes(main)["TavroMargin"][2]
        self.tavro.send(editor, SCI_SETZOOM, 8)
        self.tavro.wait_until(lambda: self.tavro.child_boxes(main)["TavroMargin"][2], lambda width: width > narrow,
                              what=f"a strip wider than {narrow}")
        self.tavro.send(editor, SCI_SETZOOM, 0)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.child_boxes(main)["TavroMargin"][2], narrow), narrow)
        doc = self.write_file("long.txt", "".join(f"{n}\r\n" for n in range(1200)))
        self.tavro.stop()
        self.tavro = harness.TavroSession(self.id().split(".", 1)[-1] + "_long")
        self.addCleanup(self.tavro.stop)
        main, editor = self.start(windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - long.txt")
        # Four digits instead of three.
        self.tavro.wait_until(lambda: self.tavro.child_boxes(main)["TavroMargin"][2], lambda width: width > narrow,
                              what=f"a strip wider than {narrow}")
        self.tavro.screenshot("four-digit-strip")

    def test_closing_the_default_instance_closes_other_profiles(self):
        main, _ = self.start()
        work_process = self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(self.tavro.wait_exit(process=work_process), 0)
        self.assertFalse(self.tavro.alive(work))

    def test_other_profile_with_changes_asks_and_may_stay(self):
        main, _ = self.start()
        work_process = self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.tavro.type("unsaved", title_regex=r"^Tavro  \[ work \]")
        self.tavro.wait_for(lambda: self.tavro.title(work), "Tavro  [ work ]  Untitled *")
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        box = self.tavro.find_dialog("Tavro")
        self.assertIn('Save changes to "Untitled"?', self.tavro.dialog_texts(box))
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.tavro.settle(work)  # the cancelled close has run to its end
        self.assertTrue(self.tavro.alive(work))
        self.assertIsNone(work_process.poll())

    def test_other_profiles_do_not_close_the_default(self):
        main, _ = self.start()
        work_process = self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.tavro.post(work, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(process=work_process), 0)
        self.tavro.settle(main)  # anything the closing profile asked of it is handled
        self.assertTrue(self.tavro.alive(main))

    def test_destroy_logs_in_order(self):
        main, _ = self.start()
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        lines = self.tavro.log_lines()
        wanted = ["[WM_DESTROY] Starting...\n", "[Tavro] WM_DESTROY: Signalling connection check shutdown...\n",
                  "[Tavro] WM_DESTROY: Saving current chat...\n", "[CollectSettings] Cleared lastFilePath\n",
                  "[WM_DESTROY] Settings saved\n", "Tavro: Cleaning up resources\n", "Tavro: Exiting with code 0\n"]
        positions = [lines.index(line) for line in wanted]
        self.assertEqual(positions, sorted(positions))


if __name__ == "__main__":
    harness.main()
