"""The status bar's parts as the user reads them: the encoding of what was
loaded and saved, and a selection counted in characters."""
import harness
from harness import TavroTestCase, windows_path

STATUS = "msctls_statusbar32"
WM_COMMAND = 0x0111
CMD_SAVE = 1003
SCI_SELECTALL = 2013


class StatusBarTest(TavroTestCase):
    def open(self, name, data):
        path = self.write_file(name, data)
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}"), f"Tavro - {name}")
        return main, path

    def part(self, main, index):
        return self.tavro.request("status-part", self.tavro.child(main, STATUS)["hwnd"], index)

    def wait_part(self, main, index, expected):
        return self.tavro.wait_for(lambda: self.part(main, index), expected)

    def test_one_byte_and_empty_files_are_utf8(self):
        main, _ = self.open("one.txt", b"x")
        self.assertEqual(self.wait_part(main, 2, "  UTF-8"), "  UTF-8")
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        main, _ = self.open("empty.txt", b"")
        self.assertEqual(self.wait_part(main, 2, "  UTF-8"), "  UTF-8")

    def test_a_saved_utf16_document_says_utf16_until_it_is_loaded_again(self):
        text = "wide \u00e9 text"
        main, path = self.open("wide.txt", b"\xff\xfe" + text.encode("utf-16-le"))
        self.assertEqual(self.wait_part(main, 2, "  UTF-16 LE"), "  UTF-16 LE")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.keys("ctrl+End")
        self.tavro.type("!")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), text + "!"), text + "!")
        # Sent: the save has run when the call returns.
        self.tavro.send(main, WM_COMMAND, CMD_SAVE, 0)
        self.assertEqual(self.tavro.wait_for(path.read_bytes, (text + "!").encode("utf-8")),
                         (text + "!").encode("utf-8"))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - wide.txt"), "Tavro - wide.txt")
        self.assertEqual(self.part(main, 2), "  UTF-16 LE")

        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - wide.txt"), "Tavro - wide.txt")
        self.assertEqual(self.wait_part(main, 2, "  UTF-8"), "  UTF-8")

    def test_a_selection_outside_ascii_counts_characters_not_bytes(self):
        main, _ = self.open("accents.txt", "\u00e9\u00e8\u00ea \u4e2d\u6587".encode("utf-8"))
        self.assertEqual(self.part(main, 1), "")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.send(editor, SCI_SELECTALL)
        # Six characters in twelve bytes.
        self.assertEqual(self.wait_part(main, 1, "  Sel: 6"), "  Sel: 6")


if __name__ == "__main__":
    harness.main()
