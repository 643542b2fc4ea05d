"""Start-up of the real program: the main window, the editor child, a file
from the command line, and the fatal message without Scintilla.dll."""
import shutil

import harness
from harness import TavroTestCase, windows_path


class StartupTest(TavroTestCase):
    def test_file_on_command_line_is_shown(self):
        content = "first line of the sample\r\nzweite Zeile: \u00e9\u00e8 \u2014 \u4e2d\u6587\r\n"
        sample = self.write_file("sample.txt", content)
        self.tavro.start(windows_path(sample))
        main = self.tavro.main_window()
        editor = self.tavro.child(main, "Scintilla")
        self.assertTrue(editor["visible"])
        text = self.tavro.wait_for(lambda: self.tavro.text(editor["hwnd"]), content)
        self.assertEqual(text, content)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - sample.txt"),
                         "Tavro - sample.txt")
        log = self.tavro.log_lines()
        for line in ("Tavro: wWinMain started\n", "Tavro: Scintilla.dll loaded\n", "Tavro: Main window created\n",
                     "[WM_USER_OPEN_FILE] FileLoad SUCCESS\n"):
            self.assertIn(line, log)

        shot = self.tavro.screenshot("file-shown")
        # The editor paints its page in the default theme (Tavro Dark) where
        # Wine put it on the screen.
        middle_x = (editor["left"] + editor["right"]) // 2
        middle_y = (editor["top"] + editor["bottom"]) // 2
        self.assertEqual(self.tavro.pixel(shot, middle_x, middle_y), (0x1C, 0x1C, 0x1E))

    def test_no_last_file_is_said_also_with_a_command_line_file(self):
        sample = self.write_file("only.txt", "from the command line")
        self.tavro.start(windows_path(sample))
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - only.txt"), "Tavro - only.txt")
        log = self.tavro.log_lines()
        self.assertIn("Tavro: No file to load (untitled document)\n", log)
        # Said at start-up, before the posted file is loaded by the loop.
        self.assertLess(log.index("Tavro: No file to load (untitled document)\n"),
                        log.index("[WM_USER_OPEN_FILE] Received\n"))

    def test_a_restored_last_file_is_not_called_untitled(self):
        untitled = "Tavro: No file to load (untitled document)\n"
        self.tavro.start()  # the first run writes the settings file
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(self.tavro.log_lines().count(untitled), 1)
        last = self.write_file("last.txt", "restored")
        self.tavro.patch_settings({162: harness.utf16_field(windows_path(last), 260)})
        self.tavro.process = None
        self.tavro.start()
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - last.txt"), "Tavro - last.txt")
        # The restore is step 22 itself: once its line is there, step 22 is done.
        self.assertTrue(self.tavro.wait_log("[wWinMain] Loading last file for profile: \n"))
        self.assertEqual(self.tavro.log_lines().count(untitled), 1)

    def test_without_a_file_the_document_is_untitled_and_takes_typing(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled"), "Tavro - Untitled")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.assertEqual(self.tavro.text(editor), "")
        self.tavro.type("typed through X")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "typed through X"), "typed through X")

    def test_close_ends_the_process_with_code_zero(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertTrue(self.tavro.wait_log("Tavro: Exiting with code 0\n"))

    def test_missing_scintilla_is_fatal(self):
        lonely = self.tavro.work / "lonely"
        lonely.mkdir()
        shutil.copy2(harness.BIN / "Tavro.exe", lonely / "Tavro.exe")
        self.tavro.start(exe=lonely / "Tavro.exe")
        box = self.tavro.find_dialog("Tavro - Fatal Error")
        self.assertIn("Scintilla.dll not found.\nPlace Scintilla.dll next to Tavro.exe.", self.tavro.dialog_texts(box))
        self.tavro.screenshot("fatal")
        self.tavro.press(box, "OK")
        self.assertEqual(self.tavro.wait_exit(), 1)
        self.assertIn("Tavro: ERROR - Scintilla.dll not found\n", self.tavro.log_lines())

    def test_missing_lexilla_is_fatal(self):
        folder = self.tavro.work / "no-lexilla"
        folder.mkdir()
        for name in ("Tavro.exe", "Scintilla.dll"):
            shutil.copy2(harness.BIN / name, folder / name)
        self.tavro.start(exe=folder / "Tavro.exe")
        box = self.tavro.find_dialog("Tavro - Fatal Error")
        self.assertIn("lexilla.dll not found.\nPlace lexilla.dll next to Tavro.exe.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.assertEqual(self.tavro.wait_exit(), 1)
        self.assertIn("Tavro: ERROR - lexilla.dll not found\n", self.tavro.log_lines())

    def test_lexilla_without_create_lexer_is_fatal(self):
        folder = self.tavro.work / "old-lexilla"
        folder.mkdir()
        for name in ("Tavro.exe", "Scintilla.dll"):
            shutil.copy2(harness.BIN / name, folder / name)
        shutil.copy2(harness.BUILD / "tests" / "bin" / "fake-lexilla" / "lexilla.dll", folder / "lexilla.dll")
        self.tavro.start(exe=folder / "Tavro.exe")
        box = self.tavro.find_dialog("Tavro - Fatal Error")
        self.assertIn("lexilla.dll: CreateLexer not found.\nLexilla verzija nije kompatibilna.",
                      self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.assertEqual(self.tavro.wait_exit(), 1)
        self.assertIn("Tavro: ERROR - CreateLexer not found in lexilla.dll\n", self.tavro.log_lines())


if __name__ == "__main__":
    harness.main()
