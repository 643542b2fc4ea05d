"""The connection label against the system's network list, for real: this
machine's network, a session whose whole Wine process tree runs with
loopback alone (a network namespace of its own), and a system whose network
list service is missing (netprofm.dll disabled), where requests still go out.
The list's change events don't fire on their own under Wine; the window unit
tests drive the sink's handler as the platform would."""
import unittest

import harness
from harness import TavroTestCase, utf16_field
from mock_provider import answer_body

WM_COMMAND = 0x0111
PANEL = "TavroAiPanel"
TRANSCRIPT, INPUT, SEND, STATUS, CONNECTION = 8000, 8001, 8002, 8005, 8007
CMD_MODE_SWITCH = 4021
EDITOR_MODE, AI_PROVIDER, API_KEY, MODEL, ENDPOINT, TYPING_ANIMATION = 4, 36692, 36952, 37464, 39780, 40301
ONLINE_TEXT = "AI Mod successfully enabled.\n\nClick OK to continue."
OFFLINE_TEXT = ("AI Mod enabled, but no internet connection.\n\nAI responses will not work until connection is "
                "restored.\n\nClick OK to continue.")


class ConnectivityCase(TavroTestCase):
    network = True

    def setUp(self):
        if not self.network and not harness.network_namespace_works():
            self.skipTest("this machine gives no network namespace (unshare -n needs root)")
        self.tavro = harness.TavroSession(self.id().split(".", 1)[-1], network=self.network)
        self.addCleanup(self.tavro.stop)
        self.addCleanup(self._screen_at_failure)

    def first_run(self, changes):
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings(changes)

    def panel_controls(self, main):
        def panel():
            rows = [row for row in self.tavro.children(main) if row["cls"] == PANEL and row["visible"]]
            return rows[0]["hwnd"] if rows else None
        self.panel = self.tavro.wait_until(panel, what="the panel")
        return {row["id"]: row["hwnd"] for row in self.tavro.children(self.panel)}

    def switch_to_ai_mod(self, expected_box_text, env=None):
        """Classic to AI Mod with a key: the switch's box, then the label."""
        self.first_run({API_KEY: utf16_field("gsk_test_key", 256)})
        self.tavro.start(env=env)
        main = self.tavro.main_window()
        self.tavro.settle(main)
        self.tavro.post(main, WM_COMMAND, CMD_MODE_SWITCH)
        box = self.tavro.find_dialog("Tavro AI Mod")
        self.assertIn(expected_box_text, self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        return main, self.panel_controls(main)

    def assert_label(self, controls, expected):
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(controls[CONNECTION]), expected), expected)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(controls[STATUS]), expected), expected)


class MachineNetworkTest(ConnectivityCase):
    def test_the_label_follows_this_machines_network(self):
        # Windows' list counts a network with a default route as the internet.
        online = harness.machine_has_default_route()
        main, controls = self.switch_to_ai_mod(ONLINE_TEXT if online else OFFLINE_TEXT)
        self.assert_label(controls, "Connected" if online else "Offline")
        self.tavro.screenshot("online" if online else "offline")


class LoopbackOnlyTest(ConnectivityCase):
    network = False

    def test_no_network_is_offline(self):
        main, controls = self.switch_to_ai_mod(OFFLINE_TEXT)
        self.assert_label(controls, "Offline")
        self.tavro.screenshot("offline")

    def test_no_network_without_a_key_is_not_connected(self):
        self.first_run({EDITOR_MODE: (1).to_bytes(4, "little")})
        self.tavro.start()
        controls = self.panel_controls(self.tavro.main_window())
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(controls[CONNECTION]), "Not connected"),
                         "Not connected")


class NoNetworkListTest(ConnectivityCase):
    def test_without_the_network_list_the_label_says_offline_and_requests_still_go_out(self):
        no_list = {"WINEDLLOVERRIDES": "netprofm=d"}
        main, controls = self.switch_to_ai_mod(OFFLINE_TEXT, env=no_list)
        self.assert_label(controls, "Offline")
        self.tavro.post(main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({
            AI_PROVIDER: (2).to_bytes(4, "little"), MODEL: utf16_field("mistral-small", 128),
            ENDPOINT: utf16_field("https://localhost/v1/chat/completions", 256), TYPING_ANIMATION: bytes([0])})
        mock = self.tavro.mock_provider()
        mock.reply(200, answer_body("Still here."))
        self.tavro.start(env=no_list)
        controls = self.panel_controls(self.tavro.main_window())
        self.assert_label(controls, "Offline")
        self.tavro.request("set-text", controls[INPUT], "Anyone there?")
        self.tavro.post(self.panel, WM_COMMAND, SEND)
        text = self.tavro.wait_until(lambda: self.tavro.text(controls[TRANSCRIPT]),
                                     lambda text: text.endswith("AI: Still here."), what="the answer")
        self.assertIn("YOU: Anyone there?\n\n", text)
        self.assertEqual(len(mock.wait_idle()), 1)


if __name__ == "__main__":
    harness.main()
