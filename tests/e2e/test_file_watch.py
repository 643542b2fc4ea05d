"""The watch on the document's file in the real program: the handle that
keeps Windows programs from deleting or renaming it, and the question at the
next activation of the window when the file has gone anyway."""
import os
import shutil

import harness
from harness import TavroTestCase, windows_path

TITLE = "Tavro \u00e2\u20ac\u201d File Changed"
MOVED = "was moved or renamed outside of Tavro.\n\nDo you want to save it to the original location?"
DELETED = "was deleted from disk.\n\nDo you want to save it to the original location?"
ERROR_SHARING_VIOLATION = 32
CMD_SAVE_AS = 1004


class FileWatchTest(TavroTestCase):
    def start_with(self, path):
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {path.name}")
        return main

    def other_window(self):
        """Another program's window to switch to: a Viewer of its own, placed
        beside the main window."""
        other = self.write_file("other.txt", "another program")
        self.tavro.start("--viewer", windows_path(other))
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - other.txt")
        self.tavro.move(viewer, 940, 0, 330, 400)
        return viewer

    def click_inside(self, hwnd):
        """A click in the middle of a window, the user's way to bring it to the front."""
        width, height, x, y = self.tavro.client(hwnd)
        self.tavro.click_at(x + width // 2, y + height // 2)

    def leave(self, other):
        self.click_inside(other)
        self.tavro.wait_for(lambda: int(self.tavro.request("foreground")), other, what="the other window in front")

    def come_back(self, main):
        # On the status bar, where a click changes nothing else.
        self.click_inside(self.tavro.child(main, "msctls_statusbar32")["hwnd"])

    def question(self):
        return self.tavro.find_dialog(TITLE)

    def questions_shown(self):
        return [row for row in self.tavro.windows("") if row["text"] == TITLE]

    def assert_no_question(self, main):
        """Once the window is in front with its focus and has handled all it
        was sent, no question is up."""
        self.tavro.wait_focus(main)
        self.tavro.settle(main)
        self.assertEqual(self.questions_shown(), [])

    def answer(self, box, button):
        self.tavro.press(box, button)
        self.tavro.wait_gone(box)

    def test_open_file_can_be_neither_deleted_nor_renamed_by_windows_programs(self):
        path = self.write_file("held.txt", "held")
        main = self.start_with(path)
        # FileLoad's handle shares reading and writing but not deleting.
        self.assertEqual(self.tavro.try_delete(path), ERROR_SHARING_VIOLATION)
        self.assertEqual(self.tavro.try_move(path, self.tavro.work / "moved.txt"), ERROR_SHARING_VIOLATION)
        self.assertEqual(path.read_bytes(), b"held")
        other = self.other_window()
        self.leave(other)
        self.come_back(main)
        self.assert_no_question(main)

    def test_file_gone_from_its_folder_is_offered_back_and_yes_writes_it_anew(self):
        path = self.write_file("kept.txt", "kept text")
        main = self.start_with(path)
        # A failed load of another file gives up the handle; the old text stays.
        binary = self.write_file("picture.png", b"\x89PNG\r\n\x1a\n" + bytes(64))
        self.tavro.keys("ctrl+o")
        dialog, name = self.tavro.file_dialog("Open File - Tavro")
        self.tavro.enter_file_name(dialog, name, binary)
        self.tavro.wait_gone(dialog)
        self.answer(self.tavro.find_dialog("Tavro - Cannot Open"), "OK")
        self.tavro.keys("ctrl+Home")
        self.tavro.type("more ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - kept.txt *")
        # Without the handle a Windows program may delete it.
        self.assertEqual(self.tavro.try_delete(path), 0)
        other = self.other_window()
        self.leave(other)
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"kept.txt" {MOVED}')
        self.tavro.screenshot("moved-question")
        self.answer(box, "Save")  # Yes
        # No handle: the stream route makes the file anew.
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - kept.txt"), "Tavro - kept.txt")
        self.assertEqual(path.read_bytes(), b"more kept text")
        # And now it is held again.
        self.assertEqual(self.tavro.try_delete(path), ERROR_SHARING_VIOLATION)

    def test_folder_gone_too_says_deleted_and_no_leaves_an_untitled_document(self):
        folder = self.tavro.work / "folder"
        folder.mkdir()
        path = folder / "b.txt"
        path.write_text("inside")
        main = self.start_with(path)
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.type("more ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - b.txt *")
        other = self.other_window()
        self.leave(other)
        shutil.rmtree(folder)  # as a drive that went away: Linux ignores the sharing
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"b.txt" {DELETED}')
        self.answer(box, "Don't Save")  # No
        # The text stays as an untitled document, still marked modified.
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled *"),
                         "Tavro - Untitled *")
        self.assertEqual(self.tavro.text(editor), "more inside")
        self.assertFalse(folder.exists())
        # Untitled now: the next activation asks nothing.
        self.leave(other)
        self.come_back(main)
        self.assert_no_question(main)

    def test_no_on_an_unmodified_document_shows_untitled_without_the_mark(self):
        path = self.write_file("plain.txt", "plain")
        main = self.start_with(path)
        other = self.other_window()
        self.leave(other)
        os.remove(path)
        self.come_back(main)
        self.answer(self.question(), "Don't Save")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled"), "Tavro - Untitled")
        self.assertFalse(path.exists())

    def test_cancel_asks_again_at_the_next_activation(self):
        path = self.write_file("c.txt", "cancelled")
        main = self.start_with(path)
        other = self.other_window()
        self.leave(other)
        os.remove(path)
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"c.txt" {MOVED}')
        self.answer(box, "Cancel")
        # Back from its own box the window does not ask at once.
        self.assert_no_question(main)
        self.assertEqual(self.tavro.title(main), "Tavro - c.txt")
        self.assertFalse(path.exists())
        self.leave(other)
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"c.txt" {MOVED}')
        self.answer(box, "Cancel")
        self.assertEqual(self.tavro.title(main), "Tavro - c.txt")

    def test_yes_with_the_handle_still_held_recreates_nothing(self):
        path = self.write_file("h.txt", "handle")
        main = self.start_with(path)
        self.tavro.type("new ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - h.txt *")
        other = self.other_window()
        self.leave(other)
        os.remove(path)
        self.come_back(main)
        self.answer(self.question(), "Save")  # Yes: the text goes through the old handle
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - h.txt"), "Tavro - h.txt")
        self.assertFalse(path.exists())
        # Still gone, so the next activation asks again.
        self.leave(other)
        self.come_back(main)
        self.answer(self.question(), "Cancel")

    def test_content_changed_by_another_program_leaves_no_trace(self):
        path = self.write_file("shared.txt", "mine")
        main = self.start_with(path)
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        other = self.other_window()
        self.leave(other)
        path.write_bytes(b"written elsewhere")  # the handle shares writing
        self.come_back(main)
        self.assert_no_question(main)
        self.assertEqual(self.tavro.text(editor), "mine")
        self.assertEqual(self.tavro.title(main), "Tavro - shared.txt")

    def test_untitled_document_never_asks(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.type("never saved")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled *")
        other = self.other_window()
        self.leave(other)
        self.come_back(main)
        self.assert_no_question(main)

    def test_file_removed_in_the_background_is_reported_at_the_next_activation(self):
        path = self.write_file("bg.txt", "background")
        main = self.start_with(path)
        other = self.other_window()
        self.leave(other)
        os.remove(path)
        # In the background: the window handles its messages and asks nothing.
        self.tavro.settle(main)
        self.assertEqual(int(self.tavro.request("foreground")), other)
        self.assertEqual(self.questions_shown(), [])
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"bg.txt" {MOVED}')
        self.answer(box, "Cancel")

    def test_save_as_on_an_opened_file_leaves_the_new_name_missing(self):
        path = self.write_file("old.txt", "old")
        main = self.start_with(path)
        target = self.tavro.work / "new.txt"
        self.tavro.command(main, CMD_SAVE_AS)
        dialog, name = self.tavro.file_dialog("Save As - Tavro")
        self.tavro.enter_file_name(dialog, name, target)
        self.tavro.wait_gone(dialog)
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - new.txt")
        self.assertFalse(target.exists())  # written through the old file's handle
        other = self.other_window()
        self.leave(other)
        self.come_back(main)
        box = self.question()
        self.assertEqual(self.tavro.dialog_texts(box)[0], f'"new.txt" {MOVED}')
        self.answer(box, "Cancel")


if __name__ == "__main__":
    harness.main()
