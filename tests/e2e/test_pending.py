"""Tools that aren't built yet say so: each routed command writes one debug
line and changes nothing."""
import harness
from harness import TavroTestCase

WM_COMMAND = 0x0111

# Command id and the line its tool writes until the tool exists.
PENDING_COMMANDS = [
    (210, "[ShowFontDialog] not built yet\n"),
    (6001, "[ShowSettingsDialog] not built yet\n"),
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


if __name__ == "__main__":
    harness.main()
