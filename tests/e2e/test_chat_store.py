"""The chat store as the program starts and ends: the profile's folder with
its index and a first chat at every start, and the current chat saved at
exit in AI Mod only."""
import re

import harness
from harness import TavroTestCase

EDITOR_MODE = 4  # payload offset of editorMode


class ChatStoreStartTest(TavroTestCase):
    def chats(self, profile):
        return self.tavro.appdata / "Tavro" / "chats" / profile

    def test_first_start_makes_the_index_and_an_empty_chat(self):
        self.tavro.start()
        self.tavro.main_window()
        folder = self.chats("default")
        index = (folder / "index.json").read_bytes()
        ids = re.findall(rb'"id": "(\d{8}_\d{6}_\d{4})"', index)
        self.assertEqual(len(ids), 1, index)
        self.assertIn(b'      "title": "New Chat",\r\n', index)
        self.assertIn(b'      "isCurrent": true\r\n', index)
        chat = folder / (ids[0].decode() + ".json")
        self.assertEqual(chat.read_bytes(), b'{\r\n  "messages": [\r\n  ]\r\n}\r\n')

    def test_each_profile_has_its_own_folder(self):
        self.tavro.start("--profile=work")
        self.tavro.main_window()
        self.assertTrue((self.chats("work") / "index.json").exists())
        self.assertFalse(self.chats("default").exists())

    def close(self):
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.tavro.wait_exit()

    def restart_in_mode(self, mode):
        self.tavro.patch_settings({EDITOR_MODE: mode.to_bytes(4, "little")})
        self.tavro.process = None
        self.tavro.start()
        return self.tavro.main_window()

    def test_the_current_chat_is_saved_at_exit_in_ai_mod_only(self):
        self.tavro.start()
        self.close()
        self.restart_in_mode(0)
        self.close()
        self.assertIn("[Tavro] WM_DESTROY: Saving current chat...\n", self.tavro.log_lines())
        self.assertNotIn("[Tavro] Current chat saved.\n", self.tavro.log_lines())
        index_before = (self.chats("default") / "index.json").read_bytes()
        self.restart_in_mode(1)
        self.close()
        lines = self.tavro.log_lines()
        at = len(lines) - 1 - lines[::-1].index("[Tavro] WM_DESTROY: Saving current chat...\n")
        self.assertEqual(lines[at + 1], "[Tavro] Current chat saved.\n")
        # Still one chat: the start read the index instead of making another.
        index = (self.chats("default") / "index.json").read_bytes()
        self.assertEqual(len(re.findall(rb'"id": ', index)), 1)
        self.assertEqual(re.findall(rb'"id": "[^"]*"', index), re.findall(rb'"id": "[^"]*"', index_before))


if __name__ == "__main__":
    harness.main()
