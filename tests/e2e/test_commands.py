"""Commands through keys and WM_COMMAND: accelerators, Open, transparency,
themes, line numbers, word wrap and the Markdown preview's line limit."""
import harness
from harness import TavroTestCase, windows_path

SCI_GETWRAPMODE = 2269
SCI_GETSELECTIONEND = 2145
WS_EX_LAYERED = 0x80000


class CommandsTest(TavroTestCase):
    def start(self, *args):
        self.tavro.start(*args)
        main = self.tavro.main_window()
        return main, self.tavro.child(main, "Scintilla")["hwnd"]

    def test_ctrl_s_on_an_untitled_document_opens_save_as(self):
        main, editor = self.start()
        self.tavro.type("draft")
        self.tavro.keys("ctrl+s")
        dialog = self.tavro.find_dialog("Save As - Tavro")
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)

    def test_ctrl_a_and_ctrl_c_reach_the_editor_through_the_table(self):
        main, editor = self.start()
        self.tavro.type("copy these words")
        self.tavro.keys("ctrl+a", "ctrl+c")
        self.assertEqual(self.tavro.wait_for(self.tavro.clipboard, "copy these words"), "copy these words")
        self.tavro.keys("End", "ctrl+v")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "copy these wordscopy these words"),
                         "copy these wordscopy these words")
        self.tavro.keys("ctrl+z")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(editor), "copy these words"), "copy these words")

    def test_open_dialog_loads_the_chosen_file(self):
        doc = self.write_file("chosen.txt", "opened through the dialog")
        main, editor = self.start()
        self.tavro.keys("ctrl+o")
        dialog, name = self.tavro.file_dialog("Open File - Tavro")
        self.tavro.settle(dialog)  # painted, for the picture
        self.tavro.screenshot("open-dialog")
        self.tavro.enter_file_name(dialog, name, doc)
        self.tavro.wait_gone(dialog)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - chosen.txt"), "Tavro - chosen.txt")
        self.assertEqual(self.tavro.text(editor), "opened through the dialog")

    def run_command(self, main, command_id):
        """Sends the command, so it returns once handled, and waits for what
        it posted: the settings file is then whole, not half rewritten."""
        self.tavro.send(main, harness.WM_COMMAND, command_id)
        self.tavro.settle(main)

    def stored_byte(self, offset):
        return self.tavro.settings_path().read_bytes()[16 + offset]

    def test_transparency_is_applied_and_saved_at_once(self):
        main, _ = self.start()
        self.run_command(main, 6102)
        self.assertEqual(int(self.tavro.request("exstyle", main)) & WS_EX_LAYERED, WS_EX_LAYERED)
        self.assertEqual(self.stored_byte(682), 20)
        self.run_command(main, 6100)
        self.assertEqual(int(self.tavro.request("exstyle", main)) & WS_EX_LAYERED, 0)
        self.assertEqual(self.stored_byte(682), 0)

    def test_theme_commands_choose_the_row(self):
        main, _ = self.start()
        self.run_command(main, 3103)
        self.assertEqual(self.stored_byte(0), 2)

    def test_line_numbers_and_word_wrap_toggle(self):
        main, editor = self.start()
        self.assertIn("TavroMargin", self.tavro.child_boxes(main))
        self.tavro.command(main, 3001)
        self.assertEqual(self.tavro.wait_for(lambda: "TavroMargin" in self.tavro.child_boxes(main), False), False)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.child_boxes(main)["Scintilla"][0], 0), 0)
        self.tavro.command(main, 3001)
        self.assertTrue(self.tavro.wait_for(lambda: "TavroMargin" in self.tavro.child_boxes(main), True))
        self.assertEqual(self.tavro.send(editor, SCI_GETWRAPMODE), 1)
        self.tavro.command(main, 3002)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.send(editor, SCI_GETWRAPMODE), 0), 0)

    def test_markdown_preview_asks_above_30000_lines(self):
        doc = self.write_file("huge.md", "line\r\n" * 30000)  # 30001 lines with the empty last one
        main, _ = self.start(windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - huge.md")
        self.tavro.command(main, 3201)
        box = self.tavro.find_dialog("Tavro - MD Preview")
        self.assertIn("This Markdown file has ~30001 lines.\n\nFull Markdown preview would be slow.\n"
                      "Open as plain text in Tavro Viewer instead?", self.tavro.dialog_texts(box))
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)

    def test_markdown_preview_of_30000_lines_asks_nothing(self):
        doc = self.write_file("big.md", "line\r\n" * 29999 + "last")
        self.tavro.remove_html_handler()
        main, _ = self.start(windows_path(doc))
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - big.md")
        self.tavro.command(main, 3201)
        # No question: the preview runs and reports.
        box = self.tavro.find_dialog("Tavro - MD Export")
        self.assertTrue(any(text.startswith("MD exported successfully.\n\nLines: 30000\n")
                            for text in self.tavro.dialog_texts(box)))
        self.assertNotIn("Tavro - MD Preview", [row["text"] for row in self.tavro.windows("")])
        self.tavro.press(box, "OK")


if __name__ == "__main__":
    harness.main()
