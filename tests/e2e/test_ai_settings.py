"""The AI Settings dialog of the real program, opened from the panel's
button: its controls and their values from a settings file the test wrote,
provider selection, the read-outs, the connection test against the mock
provider, and what Save, Cancel and Reset to Defaults leave in the file."""
import subprocess

import harness
from harness import TavroTestCase, utf16_field
from mock_provider import answer_body

WM_COMMAND, WM_HSCROLL = 0x0111, 0x0114
BM_GETCHECK, BM_CLICK = 0x00F0, 0x00F5
CB_SETCURSEL, CBN_SELCHANGE = 0x014E, 1
TBM_GETPOS, TBM_SETPOS = 0x0400, 0x0405
PANEL, AI_SETTINGS_BUTTON, STATUS, CONNECTION = "TavroAiPanel", 8004, 8005, 8007
TITLE = "AI Settings - Tavro AI"
PROVIDER, KEY, MODEL, TEMPERATURE, TEMPERATURE_TEXT, MAX_TOKENS = 8101, 8102, 8103, 8105, 8106, 8107
KEEP_HISTORY, HISTORY_LIMIT, TEST, RESET, RESULT, CHAT_COUNT, PANEL_SIZE = 8109, 8110, 8111, 8112, 8113, 8123, 8124
ACCOUNT, TYPING_DELAY, TYPING_DELAY_TEXT, TYPING = 8126, 8400, 8401, 8420
# Payload offsets of the settings record.
THEME, EDITOR_MODE, AI_PROVIDER, ACCOUNT_ID, API_KEY, MODEL_NAME = 0, 4, 36692, 36696, 36952, 37464
TEMPERATURE_FIELD, MAX_TOKENS_FIELD, PANEL_PERCENT, ENDPOINT = 39768, 39772, 39776, 39780
KEEP_HISTORY_FIELD, HISTORY_LIMIT_FIELD, TYPING_DELAY_FIELD, TYPING_FIELD = 40292, 40293, 40297, 40301
KEY_TEXT = "sk-settings-key"


def brightest(png, box):
    """The highest channel value within a rectangle (x, y, width, height) of a screenshot."""
    x, y, width, height = box
    pixels = subprocess.run(["convert", str(png), "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                            capture_output=True, check=True).stdout
    return max(pixels)


def u32(value):
    return value.to_bytes(4, "little")


class AiSettingsCase(TavroTestCase):
    def open_dialog(self, theme=1, key=KEY_TEXT):
        self.tavro.start()
        self.tavro.post(self.tavro.main_window(), harness.WM_CLOSE)
        self.assertEqual(self.tavro.wait_exit(), 0)
        self.tavro.process = None
        self.tavro.patch_settings({
            THEME: u32(theme), EDITOR_MODE: u32(1), AI_PROVIDER: u32(2), ACCOUNT_ID: utf16_field("acct-1", 128),
            API_KEY: utf16_field(key, 256), MODEL_NAME: utf16_field("mistral-small", 128),
            TEMPERATURE_FIELD: u32(25), MAX_TOKENS_FIELD: u32(1024), PANEL_PERCENT: u32(40),
            ENDPOINT: utf16_field("https://localhost/v1/chat/completions", 256), KEEP_HISTORY_FIELD: bytes([1]),
            HISTORY_LIMIT_FIELD: u32(10), TYPING_DELAY_FIELD: u32(30), TYPING_FIELD: bytes([1])})
        self.mock = self.tavro.mock_provider()
        self.tavro.start()
        self.main = self.tavro.main_window()

        def panel():
            rows = [row for row in self.tavro.children(self.main) if row["cls"] == PANEL and row["visible"]]
            return rows[0]["hwnd"] if rows else None
        self.panel = self.tavro.wait_until(panel, what="the AI panel")
        self.panel_controls = {row["id"]: row["hwnd"] for row in self.tavro.children(self.panel)}
        self.tavro.settle(self.main)
        self.tavro.post(self.panel, WM_COMMAND, AI_SETTINGS_BUTTON)
        self.dialog = self.tavro.find_dialog(TITLE)
        self.tavro.settle(self.dialog)
        self.controls = {row["id"]: row for row in self.tavro.children(self.dialog)}

    def hwnd(self, control_id):
        return self.controls[control_id]["hwnd"]

    def text(self, control_id):
        return self.tavro.text(self.hwnd(control_id))

    def select(self, control_id, row):
        self.tavro.send(self.hwnd(control_id), CB_SETCURSEL, row)
        self.tavro.send(self.dialog, WM_COMMAND, (CBN_SELCHANGE << 16) | control_id, self.hwnd(control_id))

    def field(self, offset, size=4):
        data = self.tavro.settings_path().read_bytes()[16 + offset:16 + offset + size]
        return int.from_bytes(data, "little") if size <= 4 else data.decode("utf-16-le").split("\0")[0]

    def close_with(self, button_id):
        self.tavro.post(self.hwnd(button_id), BM_CLICK)
        self.tavro.wait_gone(self.dialog)
        self.tavro.settle(self.main)


class DialogTests(AiSettingsCase):
    def test_every_control_with_its_label_and_the_stored_values(self):
        self.open_dialog()
        for control_id in (PROVIDER, ACCOUNT, KEY, MODEL, PANEL_SIZE, TEMPERATURE, TEMPERATURE_TEXT, 8150, MAX_TOKENS,
                           KEEP_HISTORY, HISTORY_LIMIT, CHAT_COUNT, TYPING, TYPING_DELAY, TYPING_DELAY_TEXT, 8411,
                           RESULT, TEST, RESET, 1, 2):
            self.assertIn(control_id, self.controls)
        texts = self.tavro.dialog_texts(self.dialog)
        for label in ("AI Provider:", "Account ID:", "API Key:", "Model Name:", "AI Panel Size:", "Temperature",
                      "(lower = precise, 0.70 balanced, higher = creative)", "Max Tokens", "Conversation History",
                      "Remember conversation history", "Max messages to remember:", "Current in chat:",
                      "Typing Animation", "Enable typing animation (character by character)",
                      "Speed (ms per character):", "(lower = faster, higher = slower)", "Test Connection",
                      "Reset to Defaults", "Save", "Cancel"):
            self.assertIn(label, texts)
        self.assertEqual(self.text(PROVIDER), "Mistral AI")
        self.assertEqual(self.text(ACCOUNT), "acct-1")
        self.assertEqual(self.text(MODEL), "mistral-small")
        self.assertEqual(self.text(PANEL_SIZE), "40% (Editor 60%)")
        self.assertEqual(self.tavro.send(self.hwnd(TEMPERATURE), TBM_GETPOS), 25)
        self.assertEqual(self.text(TEMPERATURE_TEXT), "0.25")
        self.assertEqual(self.text(MAX_TOKENS), "1024")
        self.assertEqual(self.tavro.send(self.hwnd(KEEP_HISTORY), BM_GETCHECK), 1)
        self.assertEqual(self.text(HISTORY_LIMIT), "10 messages")
        self.assertEqual(self.text(CHAT_COUNT), "0 / 10 messages")
        self.assertEqual(self.tavro.send(self.hwnd(TYPING), BM_GETCHECK), 1)
        self.assertEqual(self.text(TYPING_DELAY_TEXT), "30 ms")
        online = harness.machine_has_default_route()
        self.assertEqual(self.text(RESULT), "Connected" if online else "Offline - no internet connection")
        self.tavro.screenshot("light")
        self.close_with(2)

    def test_the_dialog_in_a_dark_theme(self):
        self.open_dialog(theme=0, key="")
        self.assertEqual(self.text(RESULT), "No API key configured.")
        png = self.tavro.screenshot("dark")
        # Each group box's caption is drawn light on the dark background.
        for row in self.tavro.children(self.dialog):
            if row["cls"] == "Button" and row["text"] in ("Temperature", "Max Tokens", "Conversation History",
                                                           "Typing Animation"):
                caption = (row["left"] + 8, row["top"], 60, 12)
                self.assertGreater(brightest(png, caption), 160, row["text"])
        self.close_with(2)

    def test_selecting_a_provider_restores_its_default_model_each_time(self):
        self.open_dialog()
        for _ in range(2):
            self.tavro.request("set-text", self.hwnd(MODEL), "my-own-model")
            self.select(PROVIDER, 1)
            self.assertEqual(self.text(MODEL), "@cf/meta/llama-3.1-8b-instruct")
            self.tavro.request("set-text", self.hwnd(MODEL), "my-own-model")
            self.select(PROVIDER, 2)
            self.assertEqual(self.text(MODEL), "mistral-small-latest")
        self.assertEqual(self.tavro.request("enabled", self.hwnd(KEY)), "1")
        self.close_with(2)
        self.assertEqual(self.field(MODEL_NAME, 256), "mistral-small")  # Cancel kept the file

    def test_the_delay_slider_reads_out_and_follows_its_check_box(self):
        self.open_dialog()
        self.tavro.send(self.hwnd(TYPING_DELAY), TBM_SETPOS, 1, 5)
        self.tavro.send(self.dialog, WM_HSCROLL, 0, self.hwnd(TYPING_DELAY))
        self.assertEqual(self.text(TYPING_DELAY_TEXT), "5 ms")
        self.tavro.send(self.hwnd(TEMPERATURE), TBM_SETPOS, 1, 140)
        self.tavro.send(self.dialog, WM_HSCROLL, 0, self.hwnd(TEMPERATURE))
        self.assertEqual(self.text(TEMPERATURE_TEXT), "1.40")
        self.tavro.send(self.hwnd(TYPING), BM_CLICK)
        self.assertEqual(self.tavro.request("enabled", self.hwnd(TYPING_DELAY)), "0")
        self.assertEqual(self.tavro.request("enabled", self.hwnd(TYPING_DELAY_TEXT)), "0")
        self.tavro.send(self.hwnd(KEEP_HISTORY), BM_CLICK)
        self.assertEqual(self.tavro.request("enabled", self.hwnd(HISTORY_LIMIT)), "0")
        self.close_with(1)  # Save
        self.assertEqual(self.field(TYPING_FIELD, 1), 0)
        self.assertEqual(self.field(TYPING_DELAY_FIELD), 5)
        self.assertEqual(self.field(TEMPERATURE_FIELD), 140)
        self.assertEqual(self.field(KEEP_HISTORY_FIELD, 1), 0)
        self.assertEqual(self.tavro.text(self.panel_controls[8017]), "History (disabled)")


class ConnectionTestTests(AiSettingsCase):
    def test_a_successful_test_then_cancel_keeps_the_tested_key(self):
        self.open_dialog()
        self.mock.reply(200, answer_body("OK"))
        self.tavro.request("set-text", self.hwnd(KEY), "sk-tested-key")
        self.tavro.send(self.hwnd(TEST), BM_CLICK)
        self.assertEqual(self.tavro.wait_for(lambda: self.text(RESULT), "Connection successful!"),
                         "Connection successful!")
        [request] = self.mock.wait_idle()
        self.assertEqual(request.headers["Authorization"], "Bearer sk-tested-key")
        self.assertEqual(self.tavro.text(self.panel_controls[CONNECTION]), "Connected")
        self.close_with(2)
        self.assertEqual(self.field(API_KEY, 512), "sk-tested-key")

    def test_a_failed_test_leaves_the_four_values_as_they_were(self):
        self.open_dialog()
        self.mock.reply(401, b'{"error":{"message":"Invalid API Key"}}')
        self.tavro.request("set-text", self.hwnd(KEY), "sk-wrong-key")
        self.tavro.request("set-text", self.hwnd(ACCOUNT), "other")
        self.tavro.request("set-text", self.hwnd(MODEL), "other-model")
        self.tavro.send(self.hwnd(TEST), BM_CLICK)
        expected = "Connection failed: HTTP 401: Invalid API Key"
        self.assertEqual(self.tavro.wait_for(lambda: self.text(RESULT), expected), expected)
        self.assertEqual(self.tavro.text(self.panel_controls[CONNECTION]), "Not connected")
        self.assertEqual(self.tavro.text(self.panel_controls[STATUS]), "Not connected")
        self.assertEqual(self.field(API_KEY, 512), KEY_TEXT)
        self.assertEqual(self.field(ACCOUNT_ID, 256), "acct-1")
        self.assertEqual(self.field(MODEL_NAME, 256), "mistral-small")
        self.assertEqual(self.field(AI_PROVIDER), 2)
        self.close_with(2)
        self.assertEqual(self.field(API_KEY, 512), KEY_TEXT)

    def test_reset_then_cancel_leaves_an_empty_key(self):
        self.open_dialog()
        self.tavro.send(self.hwnd(RESET), BM_CLICK)
        self.assertEqual(self.text(RESULT), "Reset to default values.")
        self.assertEqual(self.text(PROVIDER), "Groq")
        self.assertEqual(self.text(MODEL), "llama-3.1-8b-instant")
        self.assertEqual(self.text(TYPING_DELAY_TEXT), "25 ms")
        self.close_with(2)
        self.assertEqual(self.field(API_KEY, 512), "")
        self.assertEqual(self.field(AI_PROVIDER), 0)
        self.assertEqual(self.field(ENDPOINT, 512), "https://localhost/v1/chat/completions")

    def test_save_writes_every_control_and_removing_the_key_disconnects(self):
        self.open_dialog()
        self.tavro.request("set-text", self.hwnd(KEY), "")
        self.select(MAX_TOKENS, 4)
        self.select(HISTORY_LIMIT, 4)
        self.select(PANEL_SIZE, 0)
        self.close_with(1)
        self.assertEqual(self.field(API_KEY, 512), "")
        self.assertEqual(self.field(MAX_TOKENS_FIELD), 8192)
        self.assertEqual(self.field(HISTORY_LIMIT_FIELD), 50)
        self.assertEqual(self.field(PANEL_PERCENT), 30)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.text(self.panel_controls[CONNECTION]),
                                             "Not connected"), "Not connected")


if __name__ == "__main__":
    harness.main()
