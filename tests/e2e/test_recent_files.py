"""Recent Files in the real program: the ten slots of the settings file on
disk after opens, saves and restarts, the submenu of the editor's menu,
opening from it, a file that has gone, removing and clearing."""
import harness
from harness import TavroTestCase, windows_path, utf16_field

RECENT_FILES = 31489  # payload offset of ten slots of 260 UTF-16 units
SLOT_BYTES = 520
CMD_SAVE_AS = 1004
CMD_OPEN_RECENT = 7000
CMD_REMOVE_RECENT = 7010
CMD_CLEAR_RECENT = 7020
MISSING_TITLE = "Tavro \u00e2\u20ac\u201d Recent Files"
CLEAR_TITLE = "Tavro - Recent Files"
SCI_GETTEXT_LENGTH = 2183

# Heights of the editor menu's rows: items 20, separators 7; 3 pixels of frame.
MENU_FRAME = 3
RECENT_FILES_ROW_TOP = 403  # Undo .. Save As... and their separators above it


class RecentFilesTest(TavroTestCase):
    # -- the settings file -----------------------------------------------
    def slots_on_disk(self):
        data = self.tavro.settings_path().read_bytes()
        start = 16 + RECENT_FILES
        return [data[start + i * SLOT_BYTES:start + (i + 1) * SLOT_BYTES].decode("utf-16-le").split("\0")[0]
                for i in range(10)]

    def wait_slots(self, paths):
        expected = [windows_path(p) if not isinstance(p, str) else p for p in paths]
        expected += [""] * (10 - len(expected))
        return self.tavro.wait_for(self.slots_on_disk, expected, what=f"the recent list {expected}")

    def first_start(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None

    def write_list(self, paths):
        """Puts these paths in the slots of a settings file the program wrote."""
        changes = {RECENT_FILES + i * SLOT_BYTES: utf16_field(windows_path(p), 260) for i, p in enumerate(paths)}
        self.tavro.patch_settings(changes)

    # -- the program -----------------------------------------------------
    def start(self, *args, title="Tavro - Untitled"):
        self.tavro.start(*args)
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), title)
        return main

    def open_through_dialog(self, main, path):
        self.tavro.keys("ctrl+o")
        dialog, name = self.tavro.file_dialog("Open File - Tavro")
        self.tavro.enter_file_name(dialog, name, path)
        self.tavro.wait_gone(dialog)
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {path.name}")

    def answer(self, box, button):
        self.tavro.press(box, button)
        self.tavro.wait_gone(box)

    def windows_titled(self, title):
        return [row for row in self.tavro.windows("") if row["text"] == title]

    # -- the menu --------------------------------------------------------
    def click(self, window, x, y, button=1):
        self.tavro.x_input(window, ("mousemove", x, y, "click", button))

    def popups(self, count):
        return self.tavro.wait_until(lambda: self.tavro.windows("#32768"), lambda rows: len(rows) == count,
                                     what=f"{count} open popup menus")

    def open_recent_submenu(self, main):
        """Opens the editor's menu and its Recent Files submenu; returns both popups."""
        box = self.tavro.child(main, "Scintilla")
        self.click(main, box["left"] + 100, box["top"] + 20, 3)
        menu = self.popups(1)[0]
        self.click(main, menu["left"] + 60, menu["top"] + MENU_FRAME + RECENT_FILES_ROW_TOP + 10)
        submenu = next(row for row in self.popups(2) if row["hwnd"] != menu["hwnd"])
        return menu, submenu

    # -- tests -----------------------------------------------------------
    def test_opens_go_on_top_once_each_save_as_adds_nothing_and_the_list_outlives_a_restart(self):
        a = self.write_file("a.txt", "a")
        b = self.write_file("b.txt", "b")
        main = self.start(windows_path(a), title="Tavro - a.txt")
        self.wait_slots([a])  # the command line's file
        self.open_through_dialog(main, b)
        self.wait_slots([b, a])
        self.open_through_dialog(main, a)
        self.assertEqual(self.wait_slots([a, b])[:3], [windows_path(a), windows_path(b), ""])
        # Save As writes the open file and names another: the list stays.
        target = self.tavro.work / "c.txt"
        self.tavro.command(main, CMD_SAVE_AS)
        dialog, name = self.tavro.file_dialog("Save As - Tavro")
        self.tavro.enter_file_name(dialog, name, target)
        self.tavro.wait_gone(dialog)
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - c.txt")
        # The exit writes the whole record as it stands, after the question
        # about the new name, which has no file.
        self.tavro.post(main, harness.WM_CLOSE)
        self.answer(self.tavro.find_dialog("Tavro"), "Don't Save")
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.assertTrue(self.tavro.wait_log("[WM_DESTROY] Settings saved\n"))
        self.assertEqual(self.slots_on_disk(), [windows_path(a), windows_path(b)] + [""] * 8)

        # After a restart the same file in another spelling moves up as spelt now.
        upper = windows_path(a)[:-len("a.txt")] + "A.TXT"
        main = self.start(upper, title="Tavro - A.TXT")
        self.wait_slots([upper, b])
        c = self.write_file("c.txt", "c")
        self.open_through_dialog(main, c)
        self.wait_slots([c, upper, b])

    def test_an_eleventh_file_drops_the_oldest(self):
        files = [self.write_file(f"f{i}.txt", str(i)) for i in range(11)]
        self.first_start()
        self.write_list(reversed(files[:10]))  # f9 newest .. f0 oldest
        main = self.start(windows_path(files[10]), title="Tavro - f10.txt")
        self.wait_slots(list(reversed(files[1:])))

    def test_submenu_lists_the_files_and_opens_one(self):
        files = [self.write_file(f"file{i}.txt", f"text {i}") for i in range(10)]
        missing = files[1]
        missing.unlink()
        self.first_start()
        self.write_list(files)
        main = self.start()
        menu, submenu = self.open_recent_submenu(main)
        # Ten files, a separator and Clear All, in the frame.
        self.assertEqual(submenu["bottom"] - submenu["top"], 2 * MENU_FRAME + 10 * 20 + 7 + 20)
        # The submenu of the tenth file, the one labelled ":".
        self.click(main, submenu["left"] + 60, submenu["top"] + MENU_FRAME + 9 * 20 + 10)
        item_menu = next(row for row in self.popups(3) if row["hwnd"] not in (menu["hwnd"], submenu["hwnd"]))
        self.assertEqual(item_menu["bottom"] - item_menu["top"], 2 * MENU_FRAME + 2 * 20)  # Open, Remove from list
        self.tavro.settle(main)
        shot = self.tavro.screenshot("recent-submenu")
        self.assertTrue(shot.exists())
        # Open: the tenth file becomes the document and goes to the top.
        self.click(main, item_menu["left"] + 40, item_menu["top"] + MENU_FRAME + 10)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - file9.txt"), "Tavro - file9.txt")
        self.wait_slots([files[9]] + files[:9])

    def test_empty_list_shows_the_empty_row_and_clear_all(self):
        main = self.start()
        _, submenu = self.open_recent_submenu(main)
        # "(empty)", a separator and "Clear All".
        self.assertEqual(submenu["bottom"] - submenu["top"], 2 * MENU_FRAME + 20 + 7 + 20)
        self.tavro.settle(main)
        self.tavro.screenshot("recent-submenu-empty")

    def test_missing_recent_file_is_offered_for_removal_and_the_document_stays(self):
        keep = self.write_file("keep.txt", "keep")
        gone = self.tavro.work / "gone.txt"
        doc = self.write_file("doc.txt", "document")
        self.first_start()
        self.write_list([gone, keep])
        main = self.start(windows_path(doc), title="Tavro - doc.txt")
        self.wait_slots([doc, gone, keep])
        self.tavro.type("edited ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - doc.txt *")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]

        self.tavro.command(main, CMD_OPEN_RECENT + 1)
        box = self.tavro.find_dialog(MISSING_TITLE)
        self.assertEqual(self.tavro.dialog_texts(box)[0],
                         '"gone.txt" no longer exists on disk.\n\nRemove it from the Recent Files list?')
        self.tavro.screenshot("missing-recent-file")
        self.answer(box, "No")
        self.tavro.settle(main)
        self.assertEqual(self.slots_on_disk()[:3], [windows_path(doc), windows_path(gone), windows_path(keep)])

        self.tavro.command(main, CMD_OPEN_RECENT + 1)
        self.answer(self.tavro.find_dialog(MISSING_TITLE), "Yes")
        self.wait_slots([doc, keep])
        # No save question came, and the document is as it was.
        self.tavro.settle(main)
        self.assertEqual(self.windows_titled("Tavro"), [])
        self.assertEqual(self.tavro.title(main), "Tavro - doc.txt *")
        self.assertEqual(self.tavro.text(editor), "edited document")

        # An empty slot does nothing.
        self.tavro.command(main, CMD_OPEN_RECENT + 5)
        self.tavro.settle(main)
        self.assertEqual(self.windows_titled(MISSING_TITLE), [])
        self.assertEqual(self.tavro.title(main), "Tavro - doc.txt *")

    def test_open_from_the_list_asks_to_save_first(self):
        other = self.write_file("other.txt", "other text")
        doc = self.write_file("doc.txt", "document")
        self.first_start()
        self.write_list([other])
        main = self.start(windows_path(doc), title="Tavro - doc.txt")
        self.wait_slots([doc, other])
        self.tavro.type("changed ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - doc.txt *")
        self.tavro.command(main, CMD_OPEN_RECENT + 1)
        box = self.tavro.find_dialog("Tavro")
        self.assertEqual(self.tavro.dialog_texts(box)[0], 'Save changes to "doc.txt"?')
        self.answer(box, "Cancel")
        self.tavro.settle(main)
        self.assertEqual(self.tavro.title(main), "Tavro - doc.txt *")
        self.tavro.command(main, CMD_OPEN_RECENT + 1)
        self.answer(self.tavro.find_dialog("Tavro"), "Don't Save")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - other.txt"), "Tavro - other.txt")
        self.wait_slots([other, doc])
        self.assertEqual(doc.read_bytes(), b"document")

    def test_remove_from_list_moves_the_rest_up(self):
        files = [self.write_file(f"r{i}.txt", str(i)) for i in range(3)]
        self.first_start()
        self.write_list(files)
        main = self.start()
        self.tavro.command(main, CMD_REMOVE_RECENT + 1)
        self.wait_slots([files[0], files[2]])
        self.tavro.command(main, CMD_REMOVE_RECENT + 9)  # an empty slot: cleared again, nothing moves
        self.tavro.settle(main)
        self.assertEqual(self.slots_on_disk()[:3], [windows_path(files[0]), windows_path(files[2]), ""])

    def test_clear_all_asks_and_empties_every_slot(self):
        files = [self.write_file(f"k{i}.txt", str(i)) for i in range(3)]
        self.first_start()
        self.write_list(files)
        main = self.start()
        self.tavro.command(main, CMD_CLEAR_RECENT)
        box = self.tavro.find_dialog(CLEAR_TITLE)
        self.assertEqual(self.tavro.dialog_texts(box)[0], "Clear the entire Recent Files list?")
        self.answer(box, "No")
        self.tavro.settle(main)
        self.assertEqual(self.slots_on_disk()[:3], [windows_path(f) for f in files])
        self.tavro.command(main, CMD_CLEAR_RECENT)
        self.answer(self.tavro.find_dialog(CLEAR_TITLE), "Yes")
        start = 16 + RECENT_FILES
        data = self.tavro.wait_until(lambda: self.tavro.settings_path().read_bytes(),
                                     lambda d: d[start:start + 5200] == bytes(5200), what="5200 zero bytes")
        self.assertEqual(int.from_bytes(data[12:16], "little"), harness.settings_checksum(data[16:]))


if __name__ == "__main__":
    harness.main()
