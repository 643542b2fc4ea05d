"""The AI panel on the real program: the switch to AI Mod and back, the
panel's controls, the replay of a stored chat at start-up, the Chat History
menu, New Chat, delete and delete-all with the files on disk, the input box's
limit, Copy with no selection, and the keys that stay with the panel."""
import re

import harness
from chat_files import write_store
from harness import TavroTestCase

WM_COMMAND = 0x0111
WM_GETTEXTLENGTH = 0x000E
WM_LBUTTONDOWN = 0x0201
WM_LBUTTONUP = 0x0202
WM_PASTE = 0x0302
WM_APP = 0x8000
WM_PANEL_RENAME_CHAT = WM_APP + 220
WM_PANEL_DELETE_CHAT = WM_APP + 221
WM_PANEL_DELETE_ALL_CHATS = WM_APP + 222
CMD_MODE_SWITCH = 4021
EDITOR_MODE = 4  # payload offsets of the settings record
KEEP_HISTORY = 40292
PANEL = "TavroAiPanel"
TRANSCRIPT, INPUT, SEND, STATUS = 8000, 8001, 8002, 8005
TITLE, CONNECTION, AI_SETTINGS, NEW_CHAT, HISTORY = 8006, 8007, 8004, 8016, 8017
WM_THEME_CHANGED = 0x8001
# windowBackground of each theme row: the panel's fill.
WINDOW_BACKGROUNDS = [(0x1E, 0x1E, 0x1E), (0xFA, 0xFA, 0xFA), (0xE4, 0xEE, 0xFF), (0xE4, 0xFA, 0xE4),
                      (0x1C, 0x1C, 0x1A), (0xF8, 0xEE, 0xDE)]
ONLINE_TEXT = "AI Mod successfully enabled.\n\nClick OK to continue."
API_KEY = 36952
LINE = "0123456789 abcdefgh\r\n"
OFFLINE_TEXT = ("AI Mod enabled, but no internet connection.\n\nAI responses will not work until connection is "
                "restored.\n\nClick OK to continue.")


STORE = [
    {"id": "20261120_100000_0001", "title": "Adriatic tides", "lastModified": "2026-11-20 10:00:00",
     "createdAt": "20.11.2026  10:00", "current": True,
     "messages": [(True, "Why are the tides so small here?"), (False, "Because the basin is narrow.")]},
    {"id": "20261121_090000_0002", "title": "Bread", "lastModified": "2026-11-21 09:00:00",
     "createdAt": "21.11.2026  09:00", "messages": [(True, "How long to proof?"), (False, "About an hour.")]},
    {"id": "20261122_080000_0003", "title": "New Chat", "lastModified": "2026-11-22 08:00:00",
     "createdAt": "22.11.2026  08:00", "messages": []},
]


class AiPanelTest(TavroTestCase):
    def chats_folder(self):
        return self.tavro.appdata / "Tavro" / "chats" / "default"

    def first_run(self):
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None

    def write_store(self, chats):
        write_store(self.chats_folder(), chats)

    def start_in_ai_mod(self, store=None):
        self.first_run()
        if store is not None:
            self.write_store(store)
        self.tavro.patch_settings({EDITOR_MODE: (1).to_bytes(4, "little")})
        self.tavro.start()
        main = self.tavro.main_window()
        panel = self.wait_panel(main, visible=True)
        return main, panel

    def wait_panel(self, main, visible):
        def state():
            rows = [row for row in self.tavro.children(main) if row["cls"] == PANEL]
            return rows[0] if rows and rows[0]["visible"] == visible else None
        panel = self.tavro.wait_for(lambda: state() is not None, True)
        self.assertTrue(panel, f"the panel {'shown' if visible else 'hidden'}")
        return state()

    def control(self, panel, control_id):
        rows = [row for row in self.tavro.children(panel["hwnd"]) if row["id"] == control_id]
        self.assertEqual(len(rows), 1, f"control {control_id}")
        return rows[0]["hwnd"]

    def text_of(self, panel, control_id):
        return self.tavro.text(self.control(panel, control_id))

    def wait_text(self, panel, control_id, expected):
        return self.tavro.wait_for(lambda: self.text_of(panel, control_id), expected)

    def files(self):
        return sorted(path.name for path in self.chats_folder().glob("*.json"))

    def test_switch_to_ai_mod_and_back(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.settle(main)  # what the start posted is done
        self.assertEqual([row for row in self.tavro.children(main) if row["cls"] == PANEL], [])
        self.tavro.post(main, WM_COMMAND, CMD_MODE_SWITCH)
        box = self.tavro.find_dialog("Tavro AI Mod")
        # Online or not as the system's network list says on this machine.
        self.assertTrue(OFFLINE_TEXT in self.tavro.dialog_texts(box) or ONLINE_TEXT in self.tavro.dialog_texts(box),
                        self.tavro.dialog_texts(box))
        panel = self.wait_panel(main, visible=True)
        self.tavro.screenshot("ai-mod-box")
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        for control_id in (TITLE, CONNECTION, HISTORY, TRANSCRIPT, INPUT, AI_SETTINGS, NEW_CHAT, SEND, STATUS):
            self.control(panel, control_id)
        self.assertEqual(self.text_of(panel, TITLE), "  \u269c  Tavro AI")
        self.assertEqual(self.text_of(panel, SEND), "Send \u23ce")
        self.assertEqual(self.text_of(panel, HISTORY), "Chat History")
        # The switch's own status, then the refresh it posts, which has the last word.
        self.assertEqual(self.wait_text(panel, STATUS, "Not connected - open AI Settings"),
                         "Not connected - open AI Settings")
        self.assertEqual(self.text_of(panel, CONNECTION), "Not connected")
        # Laid out at the right of the client area, half of it.
        width, _, left, _ = self.tavro.client(main)
        right_edge = self.tavro.wait_for(lambda: self.wait_panel(main, True)["right"] - left, width)
        self.assertEqual(right_edge, width)
        panel = self.wait_panel(main, visible=True)
        self.assertEqual(panel["right"] - panel["left"], width // 2)
        settings = self.tavro.settings_path().read_bytes()
        self.assertEqual(int.from_bytes(settings[16 + EDITOR_MODE:20 + EDITOR_MODE], "little"), 1)
        self.tavro.screenshot("ai-mod")

        self.tavro.send(main, WM_COMMAND, CMD_MODE_SWITCH)  # to Classic: no question
        self.wait_panel(main, visible=False)
        settings = self.tavro.settings_path().read_bytes()
        self.assertEqual(int.from_bytes(settings[16 + EDITOR_MODE:20 + EDITOR_MODE], "little"), 0)

    def test_with_a_key_the_label_follows_the_network(self):
        self.first_run()
        self.tavro.patch_settings({API_KEY: harness.utf16_field("gsk_test_key", 256)})
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, WM_COMMAND, CMD_MODE_SWITCH)
        box = self.tavro.find_dialog("Tavro AI Mod")
        online = ONLINE_TEXT in self.tavro.dialog_texts(box)
        self.tavro.press(box, "OK")
        panel = self.wait_panel(main, visible=True)
        expected = "Connected" if online else "Offline"
        self.assertEqual(self.tavro.wait_for(lambda: self.text_of(panel, CONNECTION), expected), expected)
        self.assertEqual(self.wait_text(panel, STATUS, expected), expected)

    def test_start_up_in_ai_mod_replays_the_current_chat(self):
        main, panel = self.start_in_ai_mod(STORE)
        text = self.tavro.wait_for(lambda: self.text_of(panel, TRANSCRIPT).endswith("narrow.\n\n"), True)
        self.assertTrue(text, self.text_of(panel, TRANSCRIPT))
        transcript = self.text_of(panel, TRANSCRIPT)
        self.assertRegex(transcript, r"^\nChat started: 20\.11\.2026  10:00   \|   Opened: \d\d:\d\d\n\n")
        self.assertTrue(transcript.endswith("YOU: Why are the tides so small here?\n\n"
                                            "AI: Because the basin is narrow.\n\n"), transcript)
        self.assertEqual(self.text_of(panel, HISTORY), "Adriatic tides")
        self.tavro.screenshot("replayed")

    def test_history_menu_opens_another_chat(self):
        main, panel = self.start_in_ai_mod(STORE)
        self.tavro.wait_for(lambda: self.text_of(panel, HISTORY), "Adriatic tides")
        self.tavro.post(panel["hwnd"], WM_COMMAND, HISTORY)
        # Rows of the chats with messages, in store order: the second is "Bread".
        self.tavro.keys("Down", "Down", "Return")
        self.assertEqual(self.wait_text(panel, HISTORY, "Bread"), "Bread")
        self.assertEqual(self.wait_text(panel, STATUS, "Chat loaded"), "Chat loaded")
        self.assertTrue(self.text_of(panel, TRANSCRIPT).endswith("YOU: How long to proof?\n\nAI: About an hour.\n\n"))
        index = (self.chats_folder() / "index.json").read_text("utf-8")
        self.assertRegex(index, r'"id": "20261121_090000_0002",[^}]*"isCurrent": true')

    def test_rename_the_current_chat(self):
        main, panel = self.start_in_ai_mod(STORE)
        self.tavro.wait_for(lambda: self.text_of(panel, HISTORY), "Adriatic tides")
        self.tavro.post(panel["hwnd"], WM_PANEL_RENAME_CHAT)
        dialog = self.tavro.find_dialog("Rename Chat")
        self.assertIn("Enter new chat name:", self.tavro.dialog_texts(dialog))
        field = self.tavro.child(dialog, "Edit")["hwnd"]
        self.assertEqual(self.tavro.text(field), "Adriatic tides")
        self.tavro.screenshot("rename")
        self.tavro.request("set-text", field, "Tide notes")
        self.tavro.press(dialog, "OK")
        self.tavro.wait_gone(dialog)
        self.assertEqual(self.wait_text(panel, STATUS, "Chat renamed"), "Chat renamed")
        self.assertEqual(self.text_of(panel, HISTORY), "Tide notes")
        index = (self.chats_folder() / "index.json").read_text("utf-8")
        self.assertRegex(index, r'"id": "20261120_100000_0001",\s*"title": "Tide notes"')
        # Cancel changes nothing.
        self.tavro.post(panel["hwnd"], WM_PANEL_RENAME_CHAT)
        dialog = self.tavro.find_dialog("Rename Chat")
        self.tavro.request("set-text", self.tavro.child(dialog, "Edit")["hwnd"], "Not this")
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.assertEqual(self.text_of(panel, HISTORY), "Tide notes")

    def test_new_chat_with_the_current_chat_empty_makes_another(self):
        main, panel = self.start_in_ai_mod()
        before = self.files()
        self.assertEqual(len(before), 2)  # index and the first, empty chat
        self.tavro.send(panel["hwnd"], WM_COMMAND, NEW_CHAT)
        self.assertEqual(len(self.files()), 3)
        self.assertEqual(self.text_of(panel, STATUS), "New chat started")
        self.assertRegex(self.text_of(panel, TRANSCRIPT), r"^\nChat started: .*   \|   Opened: \d\d:\d\d\n\n$")

    def test_delete_and_delete_all_chats(self):
        main, panel = self.start_in_ai_mod(STORE)
        self.tavro.wait_for(lambda: self.text_of(panel, HISTORY), "Adriatic tides")
        self.tavro.post(panel["hwnd"], WM_PANEL_DELETE_CHAT)
        box = self.tavro.find_dialog("Delete Chat")
        self.assertIn('Delete chat "Adriatic tides"?', self.tavro.dialog_texts(box))
        self.tavro.press(box, "Yes")
        self.tavro.wait_gone(box)
        self.assertEqual(self.tavro.wait_for(lambda: "20261120_100000_0001.json" in self.files(), False), False)
        self.tavro.settle(main)  # the delete has run to its end, the index rewritten
        self.assertNotIn("Adriatic", (self.chats_folder() / "index.json").read_text("utf-8"))

        self.tavro.post(panel["hwnd"], WM_PANEL_DELETE_ALL_CHATS)
        box = self.tavro.find_dialog("Delete All Chats")
        self.assertIn("Delete ALL chat history?\nThis cannot be undone.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "Yes")
        self.tavro.wait_gone(box)
        self.assertEqual(self.wait_text(panel, STATUS, "All chats deleted"), "All chats deleted")
        files = self.files()
        self.assertEqual(len(files), 2, files)  # a new empty chat and the index
        self.assertIn("All Chat History deleted. Start typing to begin a new conversation.",
                      self.text_of(panel, TRANSCRIPT))

    def test_input_box_stops_at_80000_characters(self):
        main, panel = self.start_in_ai_mod()
        box = self.control(panel, INPUT)
        # Lines of text: one unbroken line of 80000 would take Wine's edit control a minute to wrap.
        self.tavro.request("set-text-repeat", box, LINE, 80000)
        self.assertEqual(self.tavro.send(box, WM_GETTEXTLENGTH), 80000)
        self.tavro.chars(box, "z")
        self.assertEqual(self.wait_text(panel, STATUS, "Maximum: 80000 characters"), "Maximum: 80000 characters")
        self.assertEqual(self.tavro.send(box, WM_GETTEXTLENGTH), 80000)
        # Backspace still deletes, at the end of the text.
        self.tavro.send(box, 0x00B1, 80000, 80000)  # EM_SETSEL
        self.tavro.chars(box, "\b")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.send(box, WM_GETTEXTLENGTH), 79999), 79999)

    def test_paste_of_100000_characters_with_ctrl_v_in_the_input_box(self):
        main, panel = self.start_in_ai_mod()
        box = self.control(panel, INPUT)
        editor = self.tavro.child(main, "Scintilla")["hwnd"]
        self.tavro.request("set-clipboard-repeat", LINE, 100000)
        # The window takes the keyboard first (activation hands the focus to the
        # editor); then a click gives the box the focus, and Ctrl+V goes to it,
        # not to the document.
        self.tavro.keys("shift")
        self.tavro.post(box, WM_LBUTTONDOWN, 1, (5 << 16) | 5)
        self.tavro.post(box, WM_LBUTTONUP, 0, (5 << 16) | 5)
        self.tavro.keys("ctrl+v")
        self.assertEqual(self.wait_text(panel, STATUS, "Query truncated to 80000 characters"),
                         "Query truncated to 80000 characters")
        self.assertEqual(self.tavro.send(box, WM_GETTEXTLENGTH), 80000)
        self.assertEqual(self.tavro.text(editor), "")
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")

    def test_copy_with_no_selection_copies_the_whole_conversation(self):
        main, panel = self.start_in_ai_mod(STORE)
        transcript = self.tavro.wait_for(lambda: self.text_of(panel, TRANSCRIPT).endswith("narrow.\n\n"), True)
        self.assertTrue(transcript)
        self.tavro.request("set-clipboard", "something else")
        self.tavro.send(panel["hwnd"], WM_COMMAND, 8010)
        whole = self.text_of(panel, TRANSCRIPT)
        copied = self.tavro.wait_for(lambda: self.tavro.clipboard() != "something else", True)
        self.assertTrue(copied)
        self.assertIn(self.tavro.clipboard(), (whole, whole.replace("\n", "\r\n")))
        view = self.control(panel, TRANSCRIPT)
        self.assertEqual(self.tavro.send(view, 2143), self.tavro.send(view, 2145))  # nothing left selected
        self.assertEqual(self.tavro.send(view, 2008), len(whole.encode("utf-8")))  # the caret at the end

    def test_panel_colours_in_all_six_themes(self):
        main, panel = self.start_in_ai_mod(STORE)
        self.tavro.wait_for(lambda: self.text_of(panel, HISTORY), "Adriatic tides")
        panel = self.wait_panel(main, visible=True)
        height = panel["bottom"] - panel["top"]
        gap = (panel["left"] + 190, panel["top"] + height - 38)        # between New Chat and Send
        send = (panel["right"] - 78 + 12, panel["top"] + height - 38)  # inside the Send button
        for theme, background in enumerate(WINDOW_BACKGROUNDS):
            self.tavro.send(main, WM_THEME_CHANGED, theme, 0)
            dark = theme in (0, 4)
            send_fill = (0x28, 0x55, 0x8C) if dark else (0xB9, 0xD7, 0xFA)

            def painted(png):
                return self.tavro.pixel(png, *gap) == background and self.tavro.pixel(png, *send) == send_fill

            self.screenshot_until(f"theme-{theme}", painted, f"the panel in theme {theme}")

    def screenshot_until(self, name, check, what, timeout=30):
        return self.tavro.screenshot_until(name, check, timeout, what)

if __name__ == "__main__":
    harness.main()
