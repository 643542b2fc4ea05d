"""Tools that aren't built yet say so: each routed command, and the load's
calls into parts still to come, write one debug line and change nothing."""
import harness
from harness import TavroTestCase, windows_path

WM_COMMAND = 0x0111

# Command id and the line its tool writes until the tool exists.
PENDING_COMMANDS = [
    (601, "[ShowPrintPreview] not built yet\n"),
    (602, "[PrintDocument] not built yet\n"),
    (603, "[ShowPageSetup] not built yet\n"),
    (7000, "[OpenRecentFile] not built yet\n"),
    (7010, "[RemoveRecentFile] not built yet\n"),
    (7020, "[ClearRecentFiles] not built yet\n"),
]


class PendingTools(TavroTestCase):
    def test_each_pending_command_writes_its_line_once(self):
        self.tavro.start()
        main = self.tavro.main_window()
        title = self.tavro.title(main)
        for command, line in PENDING_COMMANDS:
            before = self.tavro.log_lines().count(line)
            # Sent: the command has been handled when the call returns.
            self.tavro.send(main, WM_COMMAND, command, 0)
            count = self.tavro.wait_for(lambda: self.tavro.log_lines().count(line), before + 1)
            self.assertEqual(count, before + 1, line)
        self.assertEqual(self.tavro.title(main), title)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 1)

    def test_start_and_load_name_the_parts_still_to_come(self):
        doc = self.write_file("notes.txt", "some text")
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - notes.txt"), "Tavro - notes.txt")
        self.assertTrue(self.tavro.wait_log("[AddRecentFile] not built yet\n"))


if __name__ == "__main__":
    harness.main()
