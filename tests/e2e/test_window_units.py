"""Unit tests that need real windows (window_tests.exe, every
*_window_test.cpp), run on this session's display and prefix."""
import re

import harness
from harness import TavroTestCase, windows_path

WINDOW_TESTS = harness.BUILD / "tests" / "bin" / "window_tests.exe"


class WindowUnits(TavroTestCase):
    def test_every_window_unit_test_passes(self):
        self.tavro.env["TAVRO_BIN"] = windows_path(harness.BIN)
        code, out, err = self.tavro.run_tool(WINDOW_TESTS)
        self.assertEqual(code, 0, out + err)
        ran = re.search(r"\[==========\] (\d+) tests? from", out)
        self.assertIsNotNone(ran, out)
        self.assertGreater(int(ran.group(1)), 0, out)
        self.assertIn(f"[  PASSED  ] {ran.group(1)} test", out)


if __name__ == "__main__":
    harness.main()
