"""The road of one question through the real program: typed into the AI
panel, sent to the mock provider (Mistral AI with a custom endpoint on
loopback), answered into the transcript directly or through the typing
animator, and kept in the chat store. Failures, Stop in each state, the chat
limit's boxes, history off, Shift+Enter and the disclaimer."""
import json
import re

import harness
from chat_files import write_store
from harness import TavroTestCase, utf16_field
from mock_provider import answer_body

WM_COMMAND = 0x0111
WM_LBUTTONDOWN = 0x0201
WM_LBUTTONUP = 0x0202
WM_VSCROLL, SB_PAGEUP, SB_BOTTOM = 0x0115, 2, 7
SCI_GETLENGTH, SCI_GETFIRSTVISIBLELINE = 2006, 2152
PANEL = "TavroAiPanel"
TRANSCRIPT, INPUT, SEND, AI_SETTINGS, STATUS, NEW_CHAT, HISTORY = 8000, 8001, 8002, 8004, 8005, 8016, 8017
# Payload offsets of the settings record.
THEME, EDITOR_MODE, AI_PROVIDER, API_KEY, MODEL = 0, 4, 36692, 36952, 37464
ENDPOINT, KEEP_HISTORY, HISTORY_LIMIT, TYPING_DELAY, TYPING_ANIMATION = 39780, 40292, 40293, 40297, 40301
KEY = "sk-Tavro pipeline_KEY.789"
SEND_IDLE, SEND_STOP = "Send \u23ce", "Stop \u25a0"
FRAME_DOT = "\u25cf"
STOP_LINE = "\n\n[Generation stopped by user]\n\n"
DISCLAIMER = "AI can make mistakes. Verify important information.\n\n"
SYSTEM_START = "[System Context]\n# QORL System Information\n# Generated: "
LIMIT_TITLE = "Chat Limit Reached"
# The three-button box paints Yes, No and Cancel on controls that carry the
# save question's texts.
YES_OF_THREE, NO_OF_THREE = "Save", "Don't Save"


def stored_chat(chat_id, count, current=True):
    """A chat of count messages, questions and answers in turn."""
    messages = [(i % 2 == 0, f"{'question' if i % 2 == 0 else 'answer'} {i // 2 + 1}") for i in range(count)]
    return {"id": chat_id, "title": "Long talk", "lastModified": "2026-11-20 10:00:00",
            "createdAt": "20.11.2026  10:00", "current": current, "messages": messages}


class SendPipelineCase(TavroTestCase):
    def chats_folder(self):
        return self.tavro.appdata / "Tavro" / "chats" / "default"

    def start_panel(self, typing=False, keep=True, limit=20, delay=0, theme=1, store=None):
        """Tavro in AI Mod, talking to the mock provider; sets self.main,
        self.panel and the controls, once the start-up replay has run."""
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        if store is not None:
            write_store(self.chats_folder(), store)
        self.tavro.patch_settings({
            THEME: theme.to_bytes(4, "little"), EDITOR_MODE: (1).to_bytes(4, "little"),
            AI_PROVIDER: (2).to_bytes(4, "little"), API_KEY: utf16_field(KEY, 256),
            MODEL: utf16_field("mistral-small", 128),
            ENDPOINT: utf16_field("https://localhost/v1/chat/completions", 256),
            KEEP_HISTORY: bytes([1 if keep else 0]), HISTORY_LIMIT: limit.to_bytes(4, "little"),
            TYPING_DELAY: delay.to_bytes(4, "little"), TYPING_ANIMATION: bytes([1 if typing else 0])})
        self.mock = self.tavro.mock_provider()
        self.tavro.start()
        self.main = self.tavro.main_window()
        self.panel = self.tavro.wait_until(self.visible_panel, what="the AI panel")
        self.controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.panel)}
        if keep:  # without history the start-up shows no chat
            self.tavro.wait_until(lambda: self.text(TRANSCRIPT).startswith("\nChat started: "),
                                  what="the chat-start line")
        self.tavro.settle(self.main)

    def visible_panel(self):
        rows = [row for row in self.tavro.children(self.main) if row["cls"] == PANEL and row["visible"]]
        return rows[0]["hwnd"] if rows else None

    def text(self, control_id):
        return self.tavro.text(self.controls[control_id])

    def wait_text(self, control_id, check, what):
        if isinstance(check, str):
            expected = check
            check = lambda text: text == expected  # noqa: E731
        return self.tavro.wait_until(lambda: self.text(control_id), check, what=what)

    def ask(self, message, shown=True):
        """What the Send button does with message in the input box; with
        shown, waits until the question stands in the transcript, so that the
        panel's idle state seen afterwards is the one after its answer."""
        entry = "YOU: " + message.strip(" \t\r\n") + "\n\n"
        before = self.text(TRANSCRIPT).count(entry)
        self.tavro.request("set-text", self.controls[INPUT], message)
        self.tavro.post(self.panel, WM_COMMAND, SEND)
        if shown:
            self.wait_text(TRANSCRIPT, lambda text: text.count(entry) > before, f"{entry!r} in the transcript")

    def transcript_after_start(self):
        """The transcript past the chat-start line."""
        return re.sub(r"^\nChat started: [^\n]*\n\n", "", self.text(TRANSCRIPT))

    def wait_idle_panel(self, status="Ready"):
        self.wait_text(SEND, SEND_IDLE, "the Send button idle")
        self.wait_text(STATUS, status, f"the status {status!r}")
        self.tavro.settle(self.main)

    def chat_files(self):
        """The index's rows and each chat's messages, read from disk."""
        index = json.loads((self.chats_folder() / "index.json").read_text("utf-8"))
        chats = {}
        for row in index["chats"]:
            path = self.chats_folder() / f"{row['id']}.json"
            chats[row["id"]] = json.loads(path.read_text("utf-8"))["messages"]
        return index["chats"], chats

    def current_messages(self):
        rows, chats = self.chat_files()
        [current] = [row for row in rows if row["isCurrent"]]
        return [(m["isUser"], m["text"]) for m in chats[current["id"]]]

    @staticmethod
    def turns(request):
        """The request's messages past the system text, as (role, content)."""
        messages = request.json()["messages"]
        return [(m["role"], m["content"]) for m in messages if m["role"] != "system"]


class AnswerTests(SendPipelineCase):
    def test_a_question_answered_without_the_animator(self):
        self.start_panel(typing=False)
        self.mock.reply(200, answer_body("  \n Hello from the mock."))
        self.ask("  What is a tide?\n ")
        self.wait_idle_panel()
        self.assertEqual(self.transcript_after_start(), "YOU: What is a tide?\n\nAI: Hello from the mock.")
        [request] = self.mock.wait_idle()
        body = request.json()
        self.assertEqual(body["model"], "mistral-small")
        self.assertEqual(body["messages"][0]["role"], "system")
        self.assertTrue(body["messages"][0]["content"].startswith(SYSTEM_START), body["messages"][0]["content"][:80])
        self.assertTrue(body["messages"][0]["content"].endswith("AI_Provider: Mistral AI\nAI_Model: mistral-small"))
        self.assertEqual(self.turns(request), [("user", "What is a tide?")])
        self.assertEqual(request.headers["Authorization"], "Bearer " + KEY)
        # Stored as it came: the leading blanks stay, "AI: " isn't part of it.
        self.assertEqual(self.current_messages(), [(True, "What is a tide?"), (False, "  \n Hello from the mock.")])
        rows, _ = self.chat_files()
        self.assertEqual([row["title"] for row in rows if row["isCurrent"]], ["What is a tide?"])
        self.assertEqual(self.text(HISTORY), "What is a tide?")
        self.assertEqual(self.text(INPUT), "")

    def test_a_question_typed_out_by_the_animator_and_the_next_request_carries_it(self):
        self.start_panel(typing=True, delay=5)
        answer = "Tides follow the moon. " * 6
        self.mock.reply(200, answer_body(answer))
        self.ask("Why are there tides?")
        self.wait_idle_panel()
        self.assertEqual(self.transcript_after_start(), f"YOU: Why are there tides?\n\nAI: {answer}\n\n")
        self.mock.reply(200, answer_body("Twice a day."))
        self.ask("How often?")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: Twice a day.\n\n"), "the second answer")
        self.wait_idle_panel()
        first, second = self.mock.wait_idle()
        self.assertEqual(self.turns(first), [("user", "Why are there tides?")])
        self.assertEqual(self.turns(second), [("user", "Why are there tides?"), ("assistant", answer),
                                              ("user", "How often?")])
        self.assertEqual(self.current_messages(), [(True, "Why are there tides?"), (False, answer),
                                                   (True, "How often?"), (False, "Twice a day.")])

    def test_the_thinking_dots_while_the_provider_answers(self):
        self.start_panel(typing=False)
        gate = self.mock.reply(200, answer_body("Done."), held=True)
        self.ask("Take your time")
        self.mock.wait_requests(1)
        self.wait_text(SEND, SEND_STOP, "the Stop caption")
        self.assertEqual(self.text(STATUS), "AI is thinking...")
        frames = {"AI: \u25cf\u00a0\u00a0\u00a0", "AI: \u25cf\u25cf\u00a0\u00a0", "AI: \u25cf\u25cf\u25cf"}
        # The frames take turns: at least two different ones are seen.
        seen = set()
        self.tavro.wait_until(lambda: seen.add(self.transcript_after_start()) or len(seen & {
            "YOU: Take your time\n\n" + frame for frame in frames}) >= 2, what="two thinking frames")
        for button in (AI_SETTINGS, NEW_CHAT, HISTORY):
            self.assertEqual(self.tavro.request("enabled", self.controls[button]), "0", button)
        self.tavro.screenshot("thinking")
        gate.set()
        self.wait_idle_panel()
        self.assertEqual(self.transcript_after_start(), "YOU: Take your time\n\nAI: Done.")
        for button in (AI_SETTINGS, NEW_CHAT, HISTORY):
            self.assertEqual(self.tavro.request("enabled", self.controls[button]), "1", button)

    def test_a_flagged_question_gets_the_disclaimer(self):
        self.start_panel(typing=True)
        self.mock.reply(200, answer_body("It depends on the country."))
        self.ask("How is income taxed?")
        self.wait_idle_panel()
        self.assertEqual(self.transcript_after_start(),
                         "YOU: How is income taxed?\n\nAI: It depends on the country.\n\n" + DISCLAIMER)
        # Not stored: the answer is the provider's text alone.
        self.assertEqual(self.current_messages()[-1], (False, "It depends on the country."))
        # The next, harmless question gets none.
        self.mock.reply(200, answer_body("Hello."))
        self.ask("Say hello")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: Hello.\n\n"), "the second answer")
        self.wait_idle_panel()
        self.assertEqual(self.text(TRANSCRIPT).count(DISCLAIMER), 1)

    def test_history_off_stores_nothing_and_sends_no_history(self):
        self.start_panel(typing=False, keep=False)
        before = sorted(path.name for path in self.chats_folder().glob("*.json"))
        index_before = (self.chats_folder() / "index.json").read_bytes()
        self.ask("First")
        self.wait_idle_panel()
        self.ask("Second")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("YOU: Second\n\nAI: OK"), "the second answer")
        self.wait_idle_panel()
        first, second = self.mock.wait_idle()
        self.assertEqual(self.turns(first), [("user", "First")])
        self.assertEqual(self.turns(second), [("user", "Second")])
        self.assertEqual(sorted(path.name for path in self.chats_folder().glob("*.json")), before)
        self.assertEqual((self.chats_folder() / "index.json").read_bytes(), index_before)
        self.assertEqual(self.text(HISTORY), "History (disabled)")

    def test_enter_sends_and_shift_enter_makes_a_new_line(self):
        self.start_panel(typing=False)
        box = self.controls[INPUT]
        # The window takes the keyboard first; a click then gives the box the focus.
        self.tavro.keys("shift")
        self.tavro.post(box, WM_LBUTTONDOWN, 1, (5 << 16) | 5)
        self.tavro.post(box, WM_LBUTTONUP, 0, (5 << 16) | 5)
        self.tavro.type("one", window=self.main, focus=box)
        self.tavro.keys("shift+Return", window=self.main, focus=box)
        self.tavro.type("two", window=self.main, focus=box)
        self.assertEqual(self.text(INPUT), "one\r\ntwo")
        self.assertEqual(self.mock.requests, [])
        self.tavro.keys("Return", window=self.main, focus=box)
        self.wait_idle_panel()
        self.assertEqual(self.transcript_after_start(), "YOU: one\r\ntwo\n\nAI: OK")
        [request] = self.mock.wait_idle()
        self.assertEqual(self.turns(request), [("user", "one\r\ntwo")])
        self.assertEqual(self.text(INPUT), "")

    def test_whitespace_alone_sends_nothing(self):
        self.start_panel(typing=False)
        before = self.text(TRANSCRIPT)
        self.ask(" \r\n\t ", shown=False)
        self.wait_text(INPUT, "", "the input box cleared")
        self.tavro.settle(self.main)
        self.assertEqual(self.text(TRANSCRIPT), before)
        self.assertEqual(self.text(SEND), SEND_IDLE)
        self.assertEqual(self.mock.requests, [])

    def finished_exchange(self, theme, name):
        self.start_panel(typing=True, theme=theme)
        self.mock.reply(200, answer_body("A budget is a plan for money.\n\nWrite down what comes in."))
        self.ask("What is a budget?")
        self.wait_idle_panel()
        self.assertIn(DISCLAIMER, self.text(TRANSCRIPT))
        self.tavro.screenshot(name)

    def test_finished_exchange_in_a_dark_theme(self):
        self.finished_exchange(0, "dark")

    def test_finished_exchange_in_a_light_theme(self):
        self.finished_exchange(1, "light")


class FailureTests(SendPipelineCase):
    def test_each_failure_is_an_error_line(self):
        self.start_panel(typing=False)
        cases = [
            (401, b'{"error":{"message":"Invalid API Key"}}', "Error: HTTP 401: Invalid API Key"),
            (429, b'{"error":{"message":"slow down"}}',
             "Error: Rate limit reached. Wait a moment, then try again. Consider switching to Cloudflare or "
             "Mistral AI provider."),
            (500, b"", "Error: HTTP 500"),
            (200, answer_body(""), "Error: Empty response from Mistral AI. Check model name."),
        ]
        for number, (status, body, line) in enumerate(cases, 1):
            with self.subTest(status=status):
                self.mock.reply(status, body)
                self.ask(f"question {number}")
                self.wait_text(TRANSCRIPT, lambda text: text.endswith(f"YOU: question {number}\n\n{line}\n\n"),
                               f"the line {line!r}")
                # The end message follows the failure: the status gives way to Ready.
                self.wait_idle_panel()
                self.assertNotIn(FRAME_DOT, self.text(TRANSCRIPT))
        # The questions stay stored, no failure is.
        self.assertEqual(self.current_messages(), [(True, f"question {n}") for n in range(1, 5)])
        # Each request carried the earlier questions, with no answers between them.
        requests = self.mock.wait_idle()
        self.assertEqual(self.turns(requests[3]), [("user", f"question {n}") for n in range(1, 5)])

    def test_a_failure_with_the_animator_ends_stopped(self):
        self.start_panel(typing=True)
        self.mock.reply(401, b'{"error":{"message":"Invalid API Key"}}')
        self.ask("hello")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("Error: HTTP 401: Invalid API Key\n\n"), "the error line")
        self.wait_idle_panel("Stopped")
        self.assertEqual(self.current_messages(), [(True, "hello")])

    def test_the_key_appears_in_no_debug_line_and_no_file_but_the_settings(self):
        self.start_panel(typing=True)
        self.mock.reply(200, answer_body("Fine."))
        self.ask("Is the key safe?")
        self.wait_idle_panel()
        self.mock.reply(401, b'{"error":{"message":"Invalid API Key"}}')
        self.ask("Again")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("Error: HTTP 401: Invalid API Key\n\n"), "the error line")
        self.wait_idle_panel("Stopped")
        self.tavro.post(self.main, harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.assertEqual([r.headers["Authorization"] for r in self.mock.wait_idle()], ["Bearer " + KEY] * 2)
        self.assertNotIn(KEY, self.tavro.log_path.read_text("latin-1"))
        self.assertFalse([line for line in self.tavro.log_lines() if KEY in line])
        settings = self.tavro.settings_path()
        self.assertIn(KEY.encode("utf-16-le"), settings.read_bytes())
        for path in self.tavro.appdata.rglob("*"):
            if path.is_file() and path != settings:
                data = path.read_bytes()
                self.assertNotIn(KEY.encode("utf-8"), data, path)
                self.assertNotIn(KEY.encode("utf-16-le"), data, path)


class StopTests(SendPipelineCase):
    def test_stop_while_the_dots_run_leaves_no_frame(self):
        self.start_panel(typing=False)
        gate = self.mock.reply(200, answer_body("Too late."), held=True)
        self.ask("Wait for it")
        self.mock.wait_requests(1)
        self.wait_text(TRANSCRIPT, lambda text: FRAME_DOT in text, "a thinking frame")
        self.tavro.post(self.panel, WM_COMMAND, SEND)  # the button reads Stop
        self.wait_text(TRANSCRIPT, lambda text: text.endswith(STOP_LINE), "the stop line")
        self.wait_idle_panel("Stopped.")
        self.assertEqual(self.transcript_after_start(), "YOU: Wait for it\n\n" + STOP_LINE)
        # The stopped request hasn't returned: a question now is dropped without a word.
        self.ask("Dropped", shown=False)
        self.wait_text(INPUT, "", "the input box cleared")
        self.tavro.settle(self.main)
        self.assertEqual(self.transcript_after_start(), "YOU: Wait for it\n\n" + STOP_LINE)
        self.assertEqual(self.text(SEND), SEND_IDLE)
        self.assertEqual(len(self.mock.requests), 1)
        # The answer that comes after the stop is turned away by the worker as cancelled.
        gate.set()
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("Error: Request cancelled by user.\n\n"),
                       "the cancelled request's line")
        self.mock.wait_idle()
        self.assertNotIn("Too late.", self.text(TRANSCRIPT))
        self.assertNotIn(FRAME_DOT, self.text(TRANSCRIPT))
        self.assertEqual(self.current_messages(), [(True, "Wait for it")])
        # The next question holds two user turns in a row.
        self.tavro.settle(self.main)
        self.mock.reply(200, answer_body("Now."))
        self.ask("And now?")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: Now."), "the next answer")
        requests = self.mock.wait_idle()
        self.assertEqual(self.turns(requests[-1]), [("user", "Wait for it"), ("user", "And now?")])

    def test_stop_while_typing_keeps_the_typed_part(self):
        self.start_panel(typing=True, delay=100)
        answer = "".join(f"word{n:04d} " for n in range(400))  # 4000 units: about 17 s at 24 per 100 ms
        self.mock.reply(200, answer_body(answer))
        self.ask("Tell me a long story")
        self.wait_text(STATUS, lambda text: text.startswith("AI is typing... ("), "the countdown")
        self.wait_text(TRANSCRIPT, lambda text: "AI: word0000 word0001" in text, "typing under way")
        # Enter in the input box is Stop while a reply is under way.
        box = self.controls[INPUT]
        self.tavro.keys("shift")
        self.tavro.post(box, WM_LBUTTONDOWN, 1, (5 << 16) | 5)
        self.tavro.post(box, WM_LBUTTONUP, 0, (5 << 16) | 5)
        self.tavro.keys("Return", window=self.main, focus=box)
        self.wait_text(TRANSCRIPT, lambda text: text.endswith(STOP_LINE), "the stop line")
        # The stopped animator reports last.
        self.wait_idle_panel("Stopped")
        text = self.transcript_after_start()
        typed = text[len("YOU: Tell me a long story\n\nAI: "):-len(STOP_LINE)]
        self.assertTrue(text.startswith("YOU: Tell me a long story\n\nAI: word0000 "), text[:80])
        self.assertTrue(answer.startswith(typed), typed[-40:])
        self.assertLess(len(typed), len(answer))
        self.assertEqual(text.count(STOP_LINE), 1)
        self.assertTrue(text.endswith(STOP_LINE))
        self.assertEqual(self.current_messages(), [(True, "Tell me a long story")])


class FollowTests(SendPipelineCase):
    def test_the_view_stays_put_while_scrolled_up_and_follows_again_at_the_end(self):
        self.start_panel(typing=True, delay=100)
        answer = "\n".join(f"line {n:03d} of a long story" for n in range(200))  # about 20 s of typing
        self.mock.reply(200, answer_body(answer))
        self.ask("Tell me a long story")
        view = self.controls[TRANSCRIPT]

        def first_line():
            return self.tavro.send(view, SCI_GETFIRSTVISIBLELINE)

        def length():
            return self.tavro.send(view, SCI_GETLENGTH)

        # Following: the typed lines push the view down.
        self.tavro.wait_until(first_line, lambda line: line >= 3, what="the view following the typing")
        # The reader pages up: the view stays where it was put while text comes.
        self.tavro.post(view, WM_VSCROLL, SB_PAGEUP)
        self.tavro.settle(self.main)
        held = first_line()
        grown = length() + 200
        self.tavro.wait_until(length, lambda value: value >= grown, what="more text typed")
        self.assertEqual(first_line(), held)
        self.assertIn("AI is typing... (", self.text(STATUS))

        # Back to the end: following resumes. The hook only tries the lock the
        # typing thread flushes under, so a scroll that met a flush is repeated.
        def follows():
            self.tavro.post(view, WM_VSCROLL, SB_BOTTOM)
            self.tavro.settle(self.main)
            bottom, grown = first_line(), length() + 100
            self.tavro.wait_until(length, lambda value: value >= grown, what="more text typed")
            return first_line() > bottom
        self.tavro.wait_until(follows, what="the view following again")
        self.tavro.post(self.panel, WM_COMMAND, SEND)  # Stop: the rest isn't needed
        self.wait_idle_panel("Stopped")


class ChatLimitTests(SendPipelineCase):
    def test_limit_five_asks_at_ten_stored_messages(self):
        self.start_panel(typing=False, limit=5, store=[stored_chat("20261120_100000_0001", 10)])
        self.ask("Eleventh", shown=False)
        box = self.tavro.find_dialog(LIMIT_TITLE)
        self.assertIn("This chat has reached the limit of 5 messages.\n\nWould you like to increase the limit to 50 "
                      "and continue this chat?\n\nYes: Increase limit to 50 and continue\nNo: Start a new chat\n"
                      "Cancel: Don't send the message", self.tavro.dialog_texts(box))
        self.tavro.press(box, "Cancel")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.main)
        self.assertEqual(self.text(SEND), SEND_IDLE)
        self.assertEqual(self.text(INPUT), "")
        self.assertNotIn("Eleventh", self.text(TRANSCRIPT))
        self.assertEqual(self.mock.requests, [])
        self.assertEqual(len(self.current_messages()), 10)

        # Yes raises the limit to 50 in the settings file and sends into this chat.
        self.ask("Twelfth", shown=False)
        box = self.tavro.find_dialog(LIMIT_TITLE)
        self.tavro.press(box, YES_OF_THREE)
        self.wait_text(TRANSCRIPT, lambda text: "YOU: Twelfth\n\n" in text, "the question sent")
        self.wait_idle_panel()
        data = self.tavro.settings_path().read_bytes()
        self.assertEqual(int.from_bytes(data[16 + HISTORY_LIMIT:16 + HISTORY_LIMIT + 4], "little"), 50)
        [request] = self.mock.wait_idle()
        self.assertEqual(len(self.turns(request)), 11)
        self.assertEqual(self.turns(request)[-1], ("user", "Twelfth"))
        self.assertEqual(len(self.current_messages()), 12)

    def test_no_starts_a_new_chat_and_sends_there(self):
        self.start_panel(typing=False, limit=5, store=[stored_chat("20261120_100000_0001", 10)])
        self.ask("Fresh start", shown=False)
        box = self.tavro.find_dialog(LIMIT_TITLE)
        self.tavro.press(box, NO_OF_THREE)
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: OK"), "the answer in the new chat")
        self.wait_idle_panel()
        self.assertRegex(self.text(TRANSCRIPT), r"^\nChat started: [^\n]*\n\nYOU: Fresh start\n\nAI: OK$")
        [request] = self.mock.wait_idle()
        self.assertEqual(self.turns(request), [("user", "Fresh start")])
        rows, chats = self.chat_files()
        self.assertEqual(len(rows), 2)
        self.assertEqual(len(chats["20261120_100000_0001"]), 10)
        self.assertEqual(self.current_messages(), [(True, "Fresh start"), (False, "OK")])

    def test_limit_fifty_offers_only_a_new_chat(self):
        self.start_panel(typing=False, limit=50, store=[stored_chat("20261120_100000_0001", 100)])
        self.ask("One more", shown=False)
        box = self.tavro.find_dialog(LIMIT_TITLE)
        self.assertIn("This chat has reached the maximum limit of 50 messages.\n\nWould you like to start a new "
                      "chat?\n\nYes: Start a new chat\nNo: Don't send the message", self.tavro.dialog_texts(box))
        self.assertNotIn("Cancel", self.tavro.dialog_texts(box))
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)
        self.tavro.settle(self.main)
        self.assertEqual(self.mock.requests, [])
        self.ask("One more", shown=False)
        self.tavro.press(self.tavro.find_dialog(LIMIT_TITLE), "Yes")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: OK"), "the answer in the new chat")
        [request] = self.mock.wait_idle()
        self.assertEqual(self.turns(request), [("user", "One more")])

    def test_limit_zero_never_asks_and_sends_every_turn(self):
        self.start_panel(typing=False, limit=0, store=[stored_chat("20261120_100000_0001", 120)])
        self.ask("Still here?")
        self.wait_text(TRANSCRIPT, lambda text: text.endswith("AI: OK"), "the answer")
        [request] = self.mock.wait_idle()
        self.assertEqual(len(self.turns(request)), 121)


if __name__ == "__main__":
    harness.main()
