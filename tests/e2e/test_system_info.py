"""The system-information file "locally.qrl" as the running program keeps it:
rewritten on each tick of timer 5003 in AI Mod only, read-only between writes,
and written by a request's worker when it is missing."""
import os
import stat
import time

import harness
from harness import TavroTestCase

WM_TIMER = 0x0113
SYSTEM_INFO_TIMER = 5003
EDITOR_MODE = 4  # payload offset of editorMode


class SystemInfoFileTest(TavroTestCase):
    def start_in_mode(self, mode):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, harness.WM_CLOSE)
        self.tavro.wait_exit()
        self.tavro.patch_settings({EDITOR_MODE: mode.to_bytes(4, "little")})
        self.tavro.process = None
        self.tavro.start()
        return self.tavro.main_window()

    def info_path(self):
        return self.tavro.appdata / "Tavro" / "locally.qrl"

    def test_a_tick_in_ai_mod_rewrites_the_file_read_only(self):
        main = self.start_in_mode(1)
        path = self.info_path()
        self.tavro.settle(main)  # what the start posted is done
        if path.exists():  # the start may have written it
            os.chmod(path, 0o644)
            path.unlink()
        # Sent, the tick returns once the file is written.
        self.tavro.send(main, WM_TIMER, SYSTEM_INFO_TIMER)
        self.assertTrue(path.exists())
        data = path.read_bytes()
        self.assertTrue(data.startswith(b"# QORL System Information\n# Generated: "), data[:80])
        self.assertNotIn(b"\r", data)
        self.assertFalse(data.startswith(b"\xef\xbb\xbf"))
        text = data.decode("utf-8")
        for label in ("CURRENT_TIME: ", "OS: Windows ", "CPU_CORES: ", "RAM_TOTAL_GB: ", f"Tavro_Version: {harness.program_version()}\n",
                      "# TAVRO ACTIVE INSTANCES:\nACTIVE_PROFILE: default\nACTIVE_PROFILE_COUNT: 1\n",
                      "# - For active profiles: report ONLY what ACTIVE_PROFILE entries list above.\n"):
            self.assertIn(label, text)
        self.assertTrue(text.endswith("# - For active profiles: report ONLY what ACTIVE_PROFILE entries list above.\n"))
        # Wine keeps the read-only attribute as a missing write bit.
        self.assertFalse(os.stat(path).st_mode & stat.S_IWUSR)
        # The next tick writes it again over the read-only attribute.
        first_generated = text.splitlines()[1]
        # The stamp counts whole seconds: the next write must fall in a later one.
        written_by = time.time()
        self.tavro.wait_until(lambda: int(time.time()) > int(written_by), what="the next second")
        self.tavro.send(main, WM_TIMER, SYSTEM_INFO_TIMER)
        self.assertNotEqual(path.read_text("utf-8").splitlines()[1], first_generated)

    def test_a_tick_in_classic_mode_does_nothing(self):
        main = self.start_in_mode(0)
        path = self.info_path()
        self.tavro.settle(main)  # what the start posted is done
        self.assertFalse(path.exists())
        # Sent, each tick returns once handled.
        self.tavro.send(main, WM_TIMER, SYSTEM_INFO_TIMER)
        self.tavro.send(main, WM_TIMER, SYSTEM_INFO_TIMER)
        self.tavro.settle(main)
        self.assertFalse(path.exists())
        self.assertTrue(self.tavro.alive(main))


if __name__ == "__main__":
    harness.main()
