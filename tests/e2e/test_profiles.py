"""The profile manager of the real program: its list and buttons, creating,
renaming, deleting and activating profiles with the files and folders on disk,
the name rule's boxes, the 500 ms refresh, and the answer of an instance of
another profile."""
import shutil

import harness
from harness import TavroTestCase, utf16_field

TITLE = "Manage Profiles - Tavro AI"
LIST, NEW, RENAME, DELETE, ACTIVATE, STATUS, CLOSE = 10001, 10002, 10003, 10004, 10005, 10006, 2
INPUT_FIELD = 139
LB_SETCURSEL, LBN_SELCHANGE = 0x0186, 1
THEME, API_KEY = 0, 36952
DEFAULT_STATUS = "Default profile (always active) - cannot be renamed or deleted."
INVALID_NAME = "Max 25 characters. Only letters, numbers, hyphens, and underscores allowed."
NAME_TAKEN = "A profile with this name already exists."


def u32(value):
    return value.to_bytes(4, "little")


class ProfilesCase(TavroTestCase):
    def start_default(self, theme=1, key="sk-profile-key"):
        """The default instance with a settings file the test wrote."""
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({THEME: u32(theme), API_KEY: utf16_field(key, 256)})
        self.tavro.start()
        self.main = self.tavro.main_window()
        self.tavro.settle(self.main)

    @property
    def folder(self):
        return self.tavro.appdata / "Tavro"

    def profile_file(self, name):
        return self.folder / "profiles" / f"tavro_{name}.cfg"

    def chat_folder(self, name):
        return self.folder / "chats" / name

    def place_profile(self, name, chats=True):
        """A profile made by hand: a copy of the default's file and, with
        chats, a chat folder with an index and one chat."""
        self.profile_file(name).parent.mkdir(exist_ok=True)
        shutil.copyfile(self.tavro.settings_path(), self.profile_file(name))
        if chats:
            self.chat_folder(name).mkdir(parents=True, exist_ok=True)
            (self.chat_folder(name) / "index.json").write_text("[]")
            (self.chat_folder(name) / "chat_1.json").write_text("{}")

    def open_manager(self):
        self.tavro.post(self.main, harness.WM_COMMAND, 4020)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.dialog)}

    def rows(self):
        return self.tavro.list_items(self.controls[LIST])

    def status(self):
        return self.tavro.text(self.controls[STATUS])

    def select(self, label):
        index = self.rows()[1].index(label) if label is not None else -1
        self.tavro.send(self.controls[LIST], LB_SETCURSEL, index)
        self.tavro.send(self.dialog, harness.WM_COMMAND, (LBN_SELCHANGE << 16) | LIST, self.controls[LIST])

    def click(self, control_id):
        # Posted: the buttons open modal boxes.
        self.tavro.post(self.controls[control_id], 0x00F5)  # BM_CLICK

    def answer_input(self, title, text, prompt):
        box = self.tavro.find_dialog(title)
        self.assertIn(prompt, self.tavro.dialog_texts(box))
        field = next(row for row in self.tavro.children(box) if row["id"] == INPUT_FIELD)
        self.assertEqual(field["text"], "")  # empty, even for a rename
        self.tavro.chars(field["hwnd"], text)
        self.tavro.wait_for(lambda: self.tavro.text(field["hwnd"]), text)
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)

    def expect_box(self, title, text, button="OK"):
        box = self.tavro.find_dialog(title)
        self.assertIn(text, self.tavro.dialog_texts(box))
        self.tavro.press(box, button)
        self.tavro.wait_gone(box)

    def wait_status(self, text):
        return self.tavro.wait_for(self.status, text, what=f"the status {text!r}")

    def close_manager(self):
        self.tavro.press(self.dialog, "Close")
        self.tavro.wait_gone(self.dialog)


class ManagerTests(ProfilesCase):
    def test_the_dialog_with_its_list_and_the_present_profile_selected(self):
        self.start_default()
        self.place_profile("hand", chats=False)
        self.open_manager()
        for control_id in (LIST, NEW, RENAME, DELETE, ACTIVATE, STATUS, CLOSE):
            self.assertIn(control_id, self.controls)
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("Available Profiles:", "New Profile...", "Rename", "Delete", "Activate", "Close"):
            self.assertIn(label, texts)
        selected, rows = self.rows()
        self.assertEqual(rows, ["default (active)", "hand"])
        self.assertEqual(selected, 0)
        self.assertEqual(self.status(), DEFAULT_STATUS)
        self.assertFalse(self.tavro.enabled(self.controls[ACTIVATE]))
        # Centred on the main window.
        describe = lambda hwnd: [int(v) for v in self.tavro.request("describe", hwnd).split("\t")[4:8]]
        box, owner = describe(self.dialog), describe(self.main)
        self.assertLessEqual(abs((box[0] + box[2]) - (owner[0] + owner[2])), 2)
        self.assertLessEqual(abs((box[1] + box[3]) - (owner[1] + owner[3])), 2)

        self.select("hand")
        self.assertTrue(self.tavro.enabled(self.controls[ACTIVATE]))
        self.assertEqual(self.status(), "")
        self.select(None)
        self.click(RENAME)
        self.wait_status("Select a profile first.")
        self.click(DELETE)
        self.click(ACTIVATE)
        self.tavro.settle(self.dialog)
        self.assertEqual(self.status(), "Select a profile first.")
        self.assertFalse(self.tavro.enabled(self.controls[ACTIVATE]))
        self.tavro.screenshot("light")
        self.close_manager()

    def test_the_dialog_in_a_dark_theme(self):
        self.start_default(theme=0)
        self.place_profile("work", chats=False)
        self.open_manager()
        self.select("work")
        png = self.tavro.screenshot("dark")
        # The list is painted in the theme's editor colours, not white.
        _, _, x, y = self.tavro.client(self.controls[LIST])
        self.assertNotEqual(self.tavro.pixel(png, x + 120, y + 60), (255, 255, 255))
        self.close_manager()

    def test_create_with_the_name_rule_and_a_copy_of_the_settings(self):
        self.start_default(key="sk-copied")
        self.open_manager()
        self.click(NEW)
        self.answer_input("New Profile", "a" * 26, "Enter profile name:")
        self.expect_box("Invalid Name", INVALID_NAME)
        self.answer_input("New Profile", "my work", "Enter profile name:")
        self.expect_box("Invalid Name", INVALID_NAME)
        self.answer_input("New Profile", "my.work", "Enter profile name:")
        self.expect_box("Invalid Name", INVALID_NAME)
        self.answer_input("New Profile", "default", "Enter profile name:")
        self.expect_box("Profile Exists", NAME_TAKEN)
        name = "b" * 25
        self.answer_input("New Profile", name, "Enter profile name:")
        self.tavro.settle(self.dialog)
        self.assertEqual(self.rows(), (0, ["default (active)", name]))
        self.assertFalse(self.tavro.enabled(self.controls[ACTIVATE]))
        data = self.profile_file(name).read_bytes()
        self.assertEqual(len(data), harness.SETTINGS_SIZE)
        self.assertEqual(data[16 + API_KEY:16 + API_KEY + 18].decode("utf-16-le"), "sk-copied")
        # "Profile created." lasts until the next tick, which names the default again.
        self.wait_status(DEFAULT_STATUS)
        self.assertFalse(self.chat_folder(name).exists())

        # Cancel ends the loop and creates nothing.
        self.click(NEW)
        box = self.tavro.find_dialog("New Profile")
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.dialog)
        self.assertEqual(self.rows()[1], ["default (active)", name])

    def test_a_file_placed_by_hand_appears_at_the_next_refill(self):
        self.start_default()
        self.open_manager()
        self.assertEqual(self.rows()[1], ["default (active)"])
        self.place_profile("hand", chats=False)
        self.click(NEW)
        self.answer_input("New Profile", "made", "Enter profile name:")
        self.tavro.settle(self.dialog)
        self.assertEqual(sorted(self.rows()[1]), ["default (active)", "hand", "made"])

    def test_rename_moves_the_file_and_the_chats(self):
        self.start_default()
        self.place_profile("work")
        self.place_profile("home", chats=False)
        self.open_manager()
        self.select("default (active)")
        self.click(RENAME)
        self.tavro.settle(self.dialog)
        self.assertIn(self.status(), ("Cannot rename default profile.", DEFAULT_STATUS))

        self.select("work")
        self.click(RENAME)
        self.answer_input("Rename Profile", "new name", "Enter new profile name:")
        self.expect_box("Invalid Name", INVALID_NAME)
        self.answer_input("Rename Profile", "home", "Enter new profile name:")
        self.expect_box("Name Exists", NAME_TAKEN)
        self.answer_input("Rename Profile", "job", "Enter new profile name:")
        self.expect_box("Profile Renamed", 'Profile "work" renamed to "job".')
        self.tavro.settle(self.dialog)
        selected, rows = self.rows()
        self.assertEqual(sorted(rows), ["default (active)", "home", "job"])
        self.assertEqual(rows[selected], "job")
        self.assertEqual(self.status(), "Profile renamed.")
        self.assertFalse(self.profile_file("work").exists())
        self.assertEqual(len(self.profile_file("job").read_bytes()), harness.SETTINGS_SIZE)
        self.assertFalse(self.chat_folder("work").exists())
        self.assertEqual((self.chat_folder("job") / "index.json").read_text(), "[]")
        self.assertTrue((self.chat_folder("job") / "chat_1.json").exists())

        # Without a chat folder there is nothing to migrate and no warning:
        # the next box is the report itself.
        self.select("home")
        self.click(RENAME)
        self.answer_input("Rename Profile", "house", "Enter new profile name:")
        self.expect_box("Profile Renamed", 'Profile "home" renamed to "house".')
        self.assertTrue(self.profile_file("house").exists())
        self.assertFalse(self.chat_folder("house").exists())

        # Cancel leaves the name as it was.
        self.tavro.settle(self.dialog)
        self.select("job")
        self.click(RENAME)
        box = self.tavro.find_dialog("Rename Profile")
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.assertTrue(self.profile_file("job").exists())

    def test_delete_asks_and_takes_the_file_and_the_chats(self):
        self.start_default()
        self.place_profile("work")
        self.open_manager()
        self.select("default (active)")
        self.click(DELETE)
        self.expect_box("Cannot Delete", "Cannot delete the default profile.")
        self.select("work")
        self.click(DELETE)
        self.expect_box("Delete Profile", 'Delete profile "work"?\n\nThis cannot be undone.', button="No")
        self.assertTrue(self.profile_file("work").exists())
        self.click(DELETE)
        self.expect_box("Delete Profile", 'Delete profile "work"?\n\nThis cannot be undone.', button="Yes")
        self.tavro.settle(self.dialog)
        self.assertFalse(self.profile_file("work").exists())
        self.assertFalse(self.chat_folder("work").exists())
        # Refilled, with the present profile selected again.
        self.assertEqual(self.rows(), (0, ["default (active)"]))
        self.assertFalse(self.tavro.enabled(self.controls[ACTIVATE]))
        self.wait_status(DEFAULT_STATUS)


class RunningProfileTests(ProfilesCase):
    def test_activate_starts_an_instance_of_the_profile(self):
        self.start_default(key="sk-for-work")
        self.open_manager()
        self.click(NEW)
        self.answer_input("New Profile", "work", "Enter profile name:")
        self.tavro.settle(self.dialog)
        self.select("work")
        self.assertTrue(self.tavro.enabled(self.controls[ACTIVATE]))
        self.click(ACTIVATE)
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled", timeout=60)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 2)
        # The refresh sees the new instance soon, without a refill.
        self.wait_status('Profile "work" is currently running.')
        self.assertFalse(self.tavro.enabled(self.controls[ACTIVATE]))
        self.click(RENAME)
        self.tavro.settle(self.dialog)
        self.assertIn(self.status(), ("Cannot rename a running profile.", 'Profile "work" is currently running.'))

        # The new instance reads and writes the profile's file: a theme
        # command saves its settings there and nowhere else.
        self.tavro.settle(work)
        self.tavro.send(work, harness.WM_COMMAND, 3103)
        self.tavro.settle(work)
        data = self.profile_file("work").read_bytes()
        self.assertEqual(data[16 + THEME], 2)
        self.assertEqual(data[16 + API_KEY:16 + API_KEY + 22].decode("utf-16-le"), "sk-for-work")
        self.assertEqual(self.tavro.settings_path().read_bytes()[16 + THEME], 1)

        # Once it has ended, "Activate" comes back and the message goes.
        self.tavro.post(work, harness.WM_CLOSE)
        self.tavro.wait_gone(work)
        self.tavro.wait_for(lambda: self.tavro.enabled(self.controls[ACTIVATE]), True)
        self.wait_status("")

    def test_a_running_profile_can_be_deleted_and_its_next_save_writes_it_again(self):
        self.start_default()
        self.place_profile("work")
        self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.tavro.settle(work)
        self.open_manager()
        self.select("work")
        self.wait_status('Profile "work" is currently running.')
        self.click(DELETE)
        self.expect_box("Delete Profile", 'Delete profile "work"?\n\nThis cannot be undone.', button="Yes")
        self.tavro.settle(self.dialog)
        self.assertFalse(self.profile_file("work").exists())
        self.assertEqual(self.rows(), (0, ["default (active)"]))
        self.tavro.send(work, harness.WM_COMMAND, 3103)
        self.tavro.settle(work)
        self.assertEqual(self.profile_file("work").read_bytes()[16 + THEME], 2)

    def test_an_instance_of_another_profile_answers_with_a_box(self):
        self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.tavro.post(work, harness.WM_COMMAND, 4020)
        self.expect_box("Profile Manager",
                        "Profile management is only available from the default instance.\n\n"
                        "Please launch Tavro without --profile parameter to manage profiles.")
        self.tavro.settle(work)
        self.assertNotIn(TITLE, [row["text"] for row in self.tavro.windows("#32770")])


if __name__ == "__main__":
    harness.main()
