"""What the main window makes it releases, once: a failed creation leaves
the start-up's fatal message on the screen until the user presses OK."""
import shutil

import harness

WM_GETTEXTLENGTH = 0x000E


class FailedCreation(harness.TavroTestCase):
    def test_failed_create_keeps_both_fatal_messages_until_pressed(self):
        folder = self.tavro.work / "no-editor-class"
        folder.mkdir()
        shutil.copy2(harness.BIN / "Tavro.exe", folder / "Tavro.exe")
        shutil.copy2(harness.BIN / "lexilla.dll", folder / "lexilla.dll")
        shutil.copy2(harness.BUILD / "tests" / "bin" / "fake-scintilla" / "Scintilla.dll", folder / "Scintilla.dll")
        self.tavro.start(exe=folder / "Tavro.exe")

        # WM_CREATE's own message, shown while the window is being created.
        first = self.tavro.find_dialog("Tavro \u00e2\u20ac\u201d Fatal Error")
        self.assertIn("CRITICAL: Cannot create Scintilla control.\nMake sure Scintilla.dll is next to Tavro.exe.",
                      self.tavro.dialog_texts(first))
        self.tavro.press(first, "OK")

        # The start-up's message after the failed creation. A quit message
        # posted by the destroyed window would end its loop at once.
        second = self.tavro.find_dialog("Tavro - Fatal Error")
        self.assertIn("Failed to create main window.", self.tavro.dialog_texts(second))
        # A message sent to the box returns only once its loop has run it:
        # the loop is alive and the box is still up afterwards.
        self.tavro.send(second, WM_GETTEXTLENGTH)
        self.tavro.send(second, WM_GETTEXTLENGTH)
        self.assertTrue(self.tavro.alive(second))
        self.assertIsNone(self.tavro.process.poll(), "the program ended under its own fatal message")
        self.tavro.press(second, "OK")
        self.assertEqual(self.tavro.wait_exit(), 1)

        log = self.tavro.log_lines()
        self.assertIn("Tavro: ERROR - Failed to create main window\n", log)
        self.assertIn("[WM_CREATE] Failed; released what it made\n", log)
        # Only what the creation made is released: no shut-down of a window that never ran.
        for line in ("[Tavro] WM_DESTROY: Signalling connection check shutdown...\n",
                     "[Tavro] WM_DESTROY: Saving current chat...\n", "[WM_DESTROY] Settings saved\n"):
            self.assertNotIn(line, log)


if __name__ == "__main__":
    harness.main()
