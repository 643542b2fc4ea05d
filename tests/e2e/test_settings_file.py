"""The settings file as the real program leaves it on disk, and what start-up
does with the last file and the window geometry it holds."""
import os
import stat

import harness
from harness import TavroTestCase, windows_path, utf16_field

FIRST_RUN = 144
LAST_FILE_PATH = 162


class SettingsFileTest(TavroTestCase):
    def first_start(self, *args):
        self.tavro.start(*args)
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None

    def test_first_start_writes_a_valid_read_only_file(self):
        self.tavro.start()
        self.tavro.main_window()
        path = self.tavro.settings_path()
        # Written before the window exists, because firstRun was set.
        self.assertTrue(path.exists())
        data = path.read_bytes()
        self.assertEqual(len(data), harness.SETTINGS_SIZE)
        self.assertEqual(data[:4], b"TAVR")
        self.assertEqual(int.from_bytes(data[4:8], "little"), 21)
        self.assertEqual(int.from_bytes(data[8:12], "little"), harness.SETTINGS_PAYLOAD)
        self.assertEqual(int.from_bytes(data[12:16], "little"), harness.settings_checksum(data[16:]))
        self.assertEqual(data[16 + FIRST_RUN], 0)
        self.assertFalse(os.stat(path).st_mode & (stat.S_IWUSR | stat.S_IWGRP | stat.S_IWOTH))
        self.assertIn("[LoadSettings] File not found, using defaults\n", self.tavro.log_lines())

    def test_the_default_profile_by_name_uses_tavro_cfg_and_makes_no_profiles_folder(self):
        self.first_start("--profile=default")
        self.assertTrue(self.tavro.wait_log("[WM_DESTROY] Settings saved\n"))
        self.assertEqual(len(self.tavro.settings_path().read_bytes()), harness.SETTINGS_SIZE)
        self.assertFalse((self.tavro.appdata / "Tavro" / "profiles").exists())
        # Another profile does get the folder, with its own file in it.
        self.first_start("--profile=work")
        self.assertTrue(self.tavro.settings_path("work").exists())

    def test_damaged_file_falls_back_to_defaults_and_is_rewritten(self):
        self.first_start()
        path = self.tavro.settings_path()
        os.chmod(path, 0o644)
        path.write_bytes(path.read_bytes()[:40317])
        self.tavro.start()
        self.tavro.main_window()
        self.assertIn("[LoadSettings] Checksum mismatch, using defaults\n", self.tavro.log_lines())
        self.assertEqual(len(path.read_bytes()), harness.SETTINGS_SIZE)

    def test_last_file_that_was_deleted_is_cleared_on_disk_at_once(self):
        self.first_start()
        gone = self.tavro.work / "gone.txt"
        self.tavro.patch_settings({LAST_FILE_PATH: utf16_field(windows_path(gone), 260)})
        self.tavro.start()
        main = self.tavro.main_window()
        # The start clears it after showing the window, before taking messages.
        self.tavro.settle(main)
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")
        data = self.tavro.settings_path().read_bytes()
        self.assertEqual(data[16 + LAST_FILE_PATH:16 + LAST_FILE_PATH + 2], b"\0\0")
        self.assertEqual(int.from_bytes(data[12:16], "little"), harness.settings_checksum(data[16:]))
        self.assertIn("[wWinMain] Loading last file for profile: \n", self.tavro.log_lines())

    def test_last_file_loads_first_then_the_command_line_file(self):
        last = self.write_file("last.txt", "the last file")
        given = self.write_file("given.txt", "the given file")
        self.first_start()
        self.tavro.patch_settings({LAST_FILE_PATH: utf16_field(windows_path(last), 260)})
        self.tavro.start(windows_path(given))
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - given.txt"), "Tavro - given.txt")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.assertEqual(self.tavro.text(editor), "the given file")
        loads = [line for line in self.tavro.log_lines() if line.startswith("Tavro: FileLoad called for: ")]
        self.assertEqual(loads[-2:], [f"Tavro: FileLoad called for: {windows_path(last)}\n",
                                      f"Tavro: FileLoad called for: {windows_path(given)}\n"])

    def test_exit_remembers_the_open_file(self):
        doc = self.write_file("remembered.txt", "keep me")
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - remembered.txt")
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        data = self.tavro.settings_path().read_bytes()
        stored = data[16 + LAST_FILE_PATH:16 + LAST_FILE_PATH + 520].decode("utf-16-le").split("\0")[0]
        self.assertEqual(stored, windows_path(doc))
        self.assertIn("[CollectSettings] Saved lastFilePath\n", self.tavro.log_lines())

    def test_window_geometry_comes_from_the_settings(self):
        self.first_start()
        geometry = {145: (100).to_bytes(4, "little", signed=True), 149: (80).to_bytes(4, "little", signed=True),
                    153: (700).to_bytes(4, "little", signed=True), 157: (500).to_bytes(4, "little", signed=True)}
        self.tavro.patch_settings(geometry)
        self.tavro.start()
        main = self.tavro.main_window()
        row = next(r for r in self.tavro.windows("TavroMainWindow") if r["hwnd"] == main)
        self.assertEqual((row["left"], row["top"], row["right"] - row["left"], row["bottom"] - row["top"]),
                         (100, 80, 700, 500))
        self.assertIn("Tavro: Window size: 700 x 500, pos: 100, 80\n", self.tavro.log_lines())


if __name__ == "__main__":
    harness.main()
