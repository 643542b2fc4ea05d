"""Saving in the real program: Save As through the common dialog, the handle
route and the stream route, the BOM rule, and the prompt before closing."""
import os
import shutil

import harness
from harness import TavroTestCase, windows_path

CMD_NEW = 1001
CMD_SAVE = 1003
CMD_SAVE_AS = 1004
SCI_SETTEXT = 2181
SCI_GOTOPOS = 2025
SAVE_AS = "Save As - Tavro"


class SaveTest(TavroTestCase):
    def start_with(self, name=None, data=None):
        if name is None:
            self.tavro.start()
        else:
            path = self.write_file(name, data)
            self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        if name is not None:
            self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}")
        return main, editor

    def open_save_as(self, main):
        self.tavro.command(main, CMD_SAVE_AS)
        return self.tavro.file_dialog(SAVE_AS)

    def save_as_through_dialog(self, main, target):
        dialog, name = self.open_save_as(main)
        self.tavro.settle(dialog)  # painted, for the picture
        self.tavro.screenshot("save-as-dialog")
        self.tavro.enter_file_name(dialog, name, target)
        self.tavro.wait_gone(dialog)

    def test_new_type_save_as_then_edit_and_save(self):
        main, editor = self.start_with()
        self.tavro.type("first words")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled *"), "Tavro - Untitled *")
        target = self.tavro.work / "fresh.txt"
        self.save_as_through_dialog(main, target)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - fresh.txt"), "Tavro - fresh.txt")
        self.assertEqual(target.read_bytes(), b"first words")  # encoding 1: no BOM
        # The new file stays open, readers allowed, deleting refused.
        self.assertNotEqual(self.tavro.try_delete(target), 0)

        self.tavro.keys("End", "Return")
        self.tavro.type("second line")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - fresh.txt *")
        self.tavro.command(main, CMD_SAVE)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - fresh.txt"), "Tavro - fresh.txt")
        self.assertEqual(target.read_bytes(), self.tavro.text(editor).encode("utf-8"))
        self.assertEqual(target.read_bytes(), b"first words\r\nsecond line")

    def test_save_of_an_untitled_document_goes_through_save_as(self):
        main, editor = self.start_with()
        self.tavro.type("draft")
        self.tavro.command(main, CMD_SAVE)
        dialog = self.tavro.find_dialog(SAVE_AS)
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.settle(main)  # whatever the cancelled save went on to do is done
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled *")
        self.assertEqual(self.tavro.text(editor), "draft")

    def test_shorter_save_leaves_no_old_tail(self):
        main, editor = self.start_with("long.txt", "a long line of text that will shrink\r\n")
        self.tavro.keys("ctrl+a", "Delete")
        self.tavro.type("short")
        self.tavro.command(main, CMD_SAVE)
        path = self.tavro.work / "long.txt"
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b"short"), b"short")

    def test_empty_document_saves_as_zero_bytes_or_just_the_bom(self):
        main, editor = self.start_with("plain.txt", "text")
        self.tavro.keys("ctrl+a", "Delete")
        self.tavro.command(main, CMD_SAVE)
        path = self.tavro.work / "plain.txt"
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b""), b"")

    def test_utf8_bom_document_keeps_its_bom(self):
        main, editor = self.start_with("bom.txt", b"\xef\xbb\xbfold")
        self.tavro.keys("ctrl+a", "Delete")
        self.tavro.type("new")
        self.tavro.command(main, CMD_SAVE)
        path = self.tavro.work / "bom.txt"
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b"\xef\xbb\xbfnew"), b"\xef\xbb\xbfnew")
        self.tavro.keys("ctrl+a", "Delete")
        self.tavro.command(main, CMD_SAVE)
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b"\xef\xbb\xbf"), b"\xef\xbb\xbf")

    def test_utf16_document_is_written_as_utf8_without_bom(self):
        text = "\u00fcber \u00e9t\u00e9\r\n"
        main, editor = self.start_with("wide.txt", b"\xff\xfe" + text.encode("utf-16-le"))
        self.tavro.keys("ctrl+End")
        self.tavro.type("x")
        self.tavro.command(main, CMD_SAVE)
        path = self.tavro.work / "wide.txt"
        expected = (text + "x").encode("utf-8")
        self.assertEqual(self.tavro.wait_for(path.read_bytes, expected), expected)

    def test_save_as_on_an_opened_file_writes_the_old_file(self):
        main, editor = self.start_with("old.txt", "old")
        self.tavro.keys("ctrl+End")
        self.tavro.type(" plus")
        target = self.tavro.work / "renamed.txt"
        self.save_as_through_dialog(main, target)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - renamed.txt"),
                         "Tavro - renamed.txt")
        self.assertEqual((self.tavro.work / "old.txt").read_bytes(), b"old plus")
        self.tavro.settle(main)
        self.assertFalse(target.exists())

    def test_save_that_cannot_open_its_file_reports_and_keeps_the_document_modified(self):
        main, editor = self.start_with()
        self.tavro.type("precious")
        target = self.tavro.work / "locked.txt"
        self.tavro.request("hold-file", windows_path(target))  # no sharing at all
        dialog, name = self.open_save_as(main)
        self.tavro.enter_file_name(dialog, name, target)
        # The file exists (held open), so the dialog asks to replace it first,
        # in a box with the dialog's own title.
        confirm = self.tavro.wait_until(
            lambda: next((row["hwnd"] for row in self.tavro.windows("#32770")
                          if row["text"] == SAVE_AS and row["hwnd"] != dialog), None),
            what="the question whether to replace the file")
        self.tavro.press(confirm, "Yes")
        box = self.tavro.find_dialog("Tavro \u00e2\u20ac\u201d Error")
        self.assertIn("Cannot save file.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.tavro.wait_gone(dialog)
        self.tavro.settle(main)
        # Nothing is lost: the text stays and the document stays modified (the
        # title is only refreshed by a save that ran).
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled *")
        self.assertEqual(self.tavro.text(editor), "precious")


class ClosePromptTest(TavroTestCase):
    # The prompt is of the Yes, No and Cancel kind; its buttons paint "Yes",
    # "No" and "Cancel" over the control texts "Save", "Don't Save" and "Cancel".
    def start_modified(self, name="a.txt", content="original"):
        path = self.write_file(name, content)
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}")
        return main, path

    def close_and_get_prompt(self, main):
        self.tavro.post(main, harness.WM_CLOSE)
        return self.tavro.find_dialog("Tavro")

    def test_modified_document_asks_and_cancel_keeps_it_open(self):
        main, path = self.start_modified()
        self.tavro.type("edit ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - a.txt *")
        box = self.close_and_get_prompt(main)
        self.assertIn('Save changes to "a.txt"?', self.tavro.dialog_texts(box))
        self.tavro.screenshot("close-prompt")
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.tavro.settle(main)  # the close that was cancelled has run to its end
        self.assertTrue(self.tavro.alive(main))
        self.assertEqual(path.read_bytes(), b"original")

    def test_no_closes_without_saving(self):
        main, path = self.start_modified()
        self.tavro.type("edit ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - a.txt *")
        self.tavro.press(self.close_and_get_prompt(main), "Don't Save")
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(path.read_bytes(), b"original")

    def test_yes_saves_then_closes(self):
        main, path = self.start_modified()
        self.tavro.type("edit ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - a.txt *")
        self.tavro.press(self.close_and_get_prompt(main), "Save")
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(path.read_bytes(), b"edit original")

    def test_unmodified_document_closes_without_asking(self):
        main, path = self.start_modified()
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)

    def test_file_removed_behind_the_programs_back_asks_to_restore(self):
        main, path = self.start_modified()
        os.remove(path)  # Linux ignores the Windows sharing the handle asks for
        box = self.close_and_get_prompt(main)
        self.assertIn('"a.txt" was moved or renamed while open in Tavro.\n'
                      'Do you want to restore it to the original location?', self.tavro.dialog_texts(box))
        self.tavro.screenshot("restore-prompt")
        # Yes with the handle still held writes through it and recreates nothing.
        self.tavro.press(box, "Save")
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertFalse(path.exists())

    def test_restore_without_a_handle_recreates_the_file(self):
        # A failed load of another file gives up the handle; the old text stays.
        main, path = self.start_modified("kept.txt", "kept text")
        binary = self.write_file("picture.png", b"\x89PNG\r\n\x1a\n" + bytes(64))
        self.tavro.keys("ctrl+o")
        dialog, name = self.tavro.file_dialog("Open File - Tavro")
        self.tavro.enter_file_name(dialog, name, binary)
        self.tavro.wait_gone(dialog)
        refusal = self.tavro.find_dialog("Tavro - Cannot Open")
        self.tavro.press(refusal, "OK")
        self.tavro.wait_gone(refusal)
        os.remove(path)
        box = self.close_and_get_prompt(main)
        self.assertIn('"kept.txt" was moved or renamed while open in Tavro.\n'
                      'Do you want to restore it to the original location?', self.tavro.dialog_texts(box))
        self.tavro.press(box, "Save")
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual(path.read_bytes(), b"kept text")

    def test_file_removed_with_its_folder_counts_as_deleted(self):
        folder = self.tavro.work / "folder"
        folder.mkdir()
        path = folder / "b.txt"
        path.write_text("inside")
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - b.txt")
        self.tavro.type("more ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - b.txt *")
        shutil.rmtree(folder)
        box = self.close_and_get_prompt(main)
        self.assertIn('"b.txt" was deleted from disk while open in Tavro.\nDo you want to save your changes?',
                      self.tavro.dialog_texts(box))
        self.tavro.press(box, "Don't Save")
        self.assertEqual(self.tavro.wait_exit(), 0)

    def test_new_asks_first_and_empties_the_document(self):
        main, path = self.start_modified()
        self.tavro.type("edit ")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - a.txt *")
        self.tavro.command(main, CMD_NEW)
        box = self.tavro.find_dialog("Tavro")
        self.tavro.press(box, "Don't Save")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled"), "Tavro - Untitled")
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.assertEqual(self.tavro.text(editor), "")
        self.assertEqual(self.tavro.try_delete(path), 0)  # the file was let go


if __name__ == "__main__":
    harness.main()
