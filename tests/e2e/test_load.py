"""Document load in the real program: encodings, binary refusals with their
boxes, the kept handle, read-only files and reloading."""
import os

import harness
from harness import TavroTestCase, windows_path

SCI_GETEOLMODE = 2030
SCI_GETREADONLY = 2140


class LoadTest(TavroTestCase):
    def open_and_read(self, path):
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        return main, editor

    def assert_refused(self, data, log_line, title, text):
        path = self.write_file("refused.bin", data)
        self.tavro.start(windows_path(path))
        box = self.tavro.find_dialog(title)
        self.assertIn(text, self.tavro.dialog_texts(box))
        self.tavro.screenshot("refused")
        self.tavro.press(box, "OK")
        main = self.tavro.main_window()
        self.assertTrue(self.tavro.wait_log("[WM_USER_OPEN_FILE] FileLoad FAILED\n"))
        self.assertIn(log_line, self.tavro.log_lines())
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")
        self.assertEqual(self.tavro.text(self.tavro.child(main, "Scintilla")["hwnd"]), "")
        # The refused file is not held open.
        self.assertEqual(self.tavro.try_delete(path), 0)

    def test_utf8_bom_file_shows_text_without_bom(self):
        main, editor = self.open_and_read(self.write_file("bom.txt", b"\xef\xbb\xbfcaf\xc3\xa9\r\nline"))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "caf\u00e9\r\nline"), "caf\u00e9\r\nline")
        self.assertEqual(self.tavro.send(editor, SCI_GETEOLMODE), 0)

    def test_utf16_le_and_be_files_are_converted(self):
        text = "\u00c4rger \u4e2d\n\u00fcber\n"
        main, editor = self.open_and_read(self.write_file("le.txt", b"\xff\xfe" + text.encode("utf-16-le")))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), text), text)
        self.assertEqual(self.tavro.send(editor, SCI_GETEOLMODE), 2)  # LF only

    def test_utf16_be_file_is_swapped(self):
        text = "big \u00e9ndian\rmac\r"
        main, editor = self.open_and_read(self.write_file("be.txt", b"\xfe\xff" + text.encode("utf-16-be")))
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), text), text)
        self.assertEqual(self.tavro.send(editor, SCI_GETEOLMODE), 1)  # CR only

    def test_text_stops_at_the_first_zero_byte(self):
        main, editor = self.open_and_read(self.write_file("zeros.txt", b"a\0b\0c"))
        self.assertTrue(self.tavro.wait_log("[WM_USER_OPEN_FILE] FileLoad SUCCESS\n"))
        self.assertEqual(self.tavro.text(editor), "a")

    def test_known_binary_format_is_refused(self):
        self.assert_refused(b"\x89PNG\r\n\x1a\n" + bytes(range(256)),
                            "Tavro: ERROR - Known binary format detected (PDF/EXE/ZIP/Image)\n",
                            "Tavro - Cannot Open", "Cannot open binary file.\n\n")

    def test_text_starting_with_pk_is_refused_as_binary(self):
        self.assert_refused(b"PKG notes\r\nmore text\r\n",
                            "Tavro: ERROR - Known binary format detected (PDF/EXE/ZIP/Image)\n",
                            "Tavro - Cannot Open", "Cannot open binary file.\n\n")

    def test_third_zero_byte_is_refused(self):
        self.assert_refused(b"ab\0cd\0ef\0gh", "Tavro: ERROR - Binary file detected (too many nulls)\n",
                            "Tavro - Cannot Open",
                            "This file appears to be a binary file and cannot be opened as text.")

    def test_sixth_control_byte_is_refused(self):
        self.assert_refused(b"text\x01\x02\x03\x04\x05\x06 more",
                            "Tavro: ERROR - Binary file detected (too many control chars)\n",
                            "Tavro - Cannot Open",
                            "This file contains binary control characters and cannot be opened as text.")

    def test_missing_file_reports_not_found(self):
        missing = self.tavro.work / "nowhere.txt"
        self.tavro.start(windows_path(missing))
        box = self.tavro.find_dialog("Tavro - Error")
        self.assertIn(f"File not found (error 2).\n\n{windows_path(missing)}", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.assertTrue(self.tavro.wait_log("[WM_USER_OPEN_FILE] FileLoad FAILED\n"))

    def test_open_document_cannot_be_deleted_but_empty_file_keeps_handle(self):
        path = self.write_file("empty.txt", b"")
        main, editor = self.open_and_read(path)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - empty.txt"), "Tavro - empty.txt")
        self.assertEqual(self.tavro.text(editor), "")
        self.assertEqual(self.tavro.send(editor, SCI_GETEOLMODE), 0)  # unchanged from the new-document CRLF
        self.assertEqual(self.tavro.try_delete(path), 32)  # sharing violation: the handle is held
        self.assertTrue(path.exists())

    def test_read_only_file_opens_and_can_be_edited(self):
        path = self.write_file("locked.txt", "read only text")
        os.chmod(path, 0o444)
        main, editor = self.open_and_read(path)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "read only text"), "read only text")
        self.assertEqual(self.tavro.send(editor, SCI_GETREADONLY), 0)
        self.tavro.type("X")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "Xread only text"), "Xread only text")

    def test_reloading_the_open_file_works(self):
        # The same file as last file and on the command line: sent first, then
        # posted again while its handle is still held.
        path = self.write_file("again.txt", "same text")
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.tavro.wait_exit()
        self.tavro.patch_settings({162: harness.utf16_field(windows_path(path), 260)})
        self.tavro.process = None
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.assertTrue(self.tavro.wait_log("[WM_USER_OPEN_FILE] FileLoad SUCCESS\n"))
        lines = self.tavro.log_lines()
        self.assertTrue(self.tavro.wait_for(
            lambda: self.tavro.log_lines().count("[WM_USER_OPEN_FILE] FileLoad SUCCESS\n"), 2) == 2, lines)
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.assertEqual(self.tavro.text(editor), "same text")
        self.assertEqual(self.tavro.title(main), "Tavro - again.txt")

    def test_load_arriving_while_an_error_box_shows_is_refused_by_the_guard(self):
        # The last file is sent first and refused with a box; the command-line
        # file, posted before it, arrives inside that box's loop.
        binary = self.write_file("picture.png", b"\x89PNG\r\n\x1a\n" + bytes(64))
        given = self.write_file("given.txt", "the given file")
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.tavro.wait_exit()
        self.tavro.process = None
        self.tavro.patch_settings({162: harness.utf16_field(windows_path(binary), 260)})
        self.tavro.start(windows_path(given))
        box = self.tavro.find_dialog("Tavro - Cannot Open")
        self.assertTrue(self.tavro.wait_log("Tavro: FileLoad already in progress, skipping\n"))
        self.assertEqual(len(self.tavro.windows("#32770")), 1)  # no second box
        self.tavro.press(box, "OK")
        main = self.tavro.main_window()
        self.assertTrue(self.tavro.wait_log("[WM_USER_OPEN_FILE] FileLoad FAILED\n"))
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")


if __name__ == "__main__":
    harness.main()
