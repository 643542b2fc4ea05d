"""Export end to end: the Export dialog and the context menu's Export
entries, the save dialog, the files on disk byte for byte, the limits'
questions with their Viewer, and Cancel in the progress dialogs."""
import re
import subprocess

import harness
from harness import TavroTestCase, windows_path
import test_markdown  # the Markdown page the unit tests expect of SMALL_DOC

WM_COMMAND = 0x0111
CB_SETCURSEL = 0x014E
CBN_SELCHANGE = 1
EXPORT_DIALOG = 3333
EXPORT_PDF, EXPORT_HTML, EXPORT_RTF, EXPORT_TXT = 6667, 6668, 6669, 6670
THEME_DARK, THEME_LIGHT = 3101, 3102
IDC_EXPORT_FORMAT, IDC_EXPORT_DESCRIPTION = 9201, 9202
SAVE_TITLE = "Export File - Tavro"
BOX_TITLE = "Tavro - Export"

LABELS = ["PDF Document (*.pdf)", "HTML Document (*.html)", "Rich Text Format (*.rtf)", "Plain Text (*.txt)"]
DESCRIPTIONS = ["Portable Document Format - best for printing and sharing",
                "HyperText Markup Language - view in web browser",
                "Rich Text Format - opens in Word, LibreOffice",
                "Simple UTF-8 text file"]

# Every escape of the two writers in one plain-text document: tab, quotes,
# ampersand, angle brackets, braces, backslash, the euro sign, an emoji,
# CR LF line ends, an empty line.
TEXT = "a\t\"b\" & 'c' <d>\r\n{e}\\f \u20ac \U0001F600\r\n\r\nlast"

# The page's fixed frame in Tavro Dark with Consolas, as the unit tests build it.
HTML_HEAD = (
    "<!DOCTYPE html>\n<html>\n<head>\n"
    "    <meta charset=\"UTF-8\">\n"
    "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n"
    "    <title>notes.txt - Tavro Export</title>\n"
    "    <style>\n"
    "        * { margin: 0; padding: 0; box-sizing: border-box; }\n"
    "        body { background-color: #1C1C1E; font-family: 'Consolas', monospace; font-size: 11pt; "
    "line-height: 1.5; }\n"
    "        .code-container { display: flex; flex-direction: row; min-height: 100vh; }\n"
    "        .line-numbers { background-color: #1C1C1E; color: #606060; text-align: right; "
    "padding: 20px 10px 20px 20px; user-select: none; border-right: 1px solid #444; "
    "font-family: 'Consolas', monospace; font-size: 11pt; line-height: 1.5; min-width: 50px; }\n"
    "        .line-number { height: 1.5em; line-height: 1.5em; white-space: pre; }\n"
    "        .code-content { background-color: #1C1C1E; padding: 20px; flex: 1; overflow-x: auto; "
    "font-family: 'Consolas', monospace; font-size: 11pt; }\n"
    "        .code-line { height: 1.5em; line-height: 1.5em; white-space: pre; }\n").encode("utf-8")
HTML_BODY = (
    "    </style>\n</head>\n<body>\n<div class=\"code-container\">\n    <div class=\"line-numbers\">\n"
    + "".join(f"        <div class=\"line-number\">{n}</div>\n" for n in range(1, 5))
    + "    </div>\n    <div class=\"code-content\">\n"
    "        <div class=\"code-line\"><span class=\"s0\">a    &quot;b&quot; &amp; &#39;c&#39; &lt;d&gt;\r"
    "</span></div>\n"
    "        <div class=\"code-line\"><span class=\"s0\">{e}\\f \u20ac \U0001F600\r</span></div>\n"
    "        <div class=\"code-line\"><span class=\"s0\">\r</span></div>\n"
    "        <div class=\"code-line\"><span class=\"s0\">last</span></div>\n"
    "    </div>\n</div>\n</body>\n</html>").encode("utf-8")
STYLE_RULE = re.compile(rb"        \.s\d+ \{ (color: #[0-9A-F]{6}; )?(background-color: #[0-9A-F]{6}; )?"
                        rb"(font-weight: bold; )?(font-style: italic; )?\}\n")

# The RTF: Consolas at 11 points; style 0 is the first colour of the table.
RTF_HEAD = b"{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat\r\n{\\fonttbl{\\f0\\fmodern\\fcharset0 Consolas;}}\r\n"
RTF_BODY = (b"}\r\n\\viewkind4\\uc1\\pard\\sl0\\slmult0\\f0\\fs22 "
            b"{\\cf1 a\\tab \"b\" & 'c' <d>\\par\r\n\\{e\\}\\\\f \\u8364? ?\\par\r\n\\par\r\nlast}\r\n}\r\n")


class ExportTest(TavroTestCase):
    def open_document(self, name, text, theme=THEME_DARK):
        doc = self.write_file(name, text)
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}")
        self.tavro.send(main, WM_COMMAND, theme, 0)
        return main

    def open_export_dialog(self, main):
        self.tavro.command(main, EXPORT_DIALOG)
        dialog = self.tavro.find_dialog(BOX_TITLE)
        combo = next(row["hwnd"] for row in self.tavro.children(dialog) if row["id"] == IDC_EXPORT_FORMAT)
        description = next(row["hwnd"] for row in self.tavro.children(dialog) if row["id"] == IDC_EXPORT_DESCRIPTION)
        return dialog, combo, description

    def choose(self, dialog, combo, row):
        self.tavro.send(combo, CB_SETCURSEL, row, 0)
        self.tavro.send(dialog, WM_COMMAND, (CBN_SELCHANGE << 16) | IDC_EXPORT_FORMAT, combo)

    def save_through_dialog(self, target, proposed):
        dialog, name = self.tavro.file_dialog(SAVE_TITLE)
        self.assertEqual(self.tavro.text(name), proposed)
        self.tavro.enter_file_name(dialog, name, target)
        self.tavro.wait_gone(dialog)

    def answer(self, title, text, button):
        box = self.tavro.find_dialog(title)
        self.assertIn(text, self.tavro.dialog_texts(box))
        self.tavro.press(box, button)
        self.tavro.wait_gone(box)

    def assert_page(self, page):
        self.assertTrue(page.startswith(HTML_HEAD), page[:800])
        self.assertTrue(page.endswith(HTML_BODY), page[-800:])
        rules = page[len(HTML_HEAD):len(page) - len(HTML_BODY)]
        self.assertEqual(STYLE_RULE.sub(b"", rules), b"", rules)
        # Style 0 in the editor's text colour; its background is the page's, so it has no rule of its own.
        self.assertIn(b"        .s0 { color: #D4D4D4; }\n", rules)

    def assert_rtf(self, rtf, first_colour):
        self.assertTrue(rtf.startswith(RTF_HEAD + b"{\\colortbl ;" + first_colour), rtf[:300])
        self.assertTrue(rtf.endswith(RTF_BODY), rtf[-300:])
        table = rtf[len(RTF_HEAD) + len(b"{\\colortbl ;"):len(rtf) - len(RTF_BODY)]
        self.assertRegex(table, rb"^(\\red\d+\\green\d+\\blue\d+;)+$")

    def viewer_text(self):
        folder = self.tavro.appdata / "Tavro" / "tmp"
        return sorted(folder.glob("temp_txt*.txt")) if folder.exists() else []

    def test_dialog_lists_the_formats_and_exports_the_choice(self):
        main = self.open_document("notes.txt", TEXT)
        dialog, combo, description = self.open_export_dialog(main)
        self.assertEqual(self.tavro.list_items(combo), (0, LABELS))
        self.assertEqual(self.tavro.text(description), DESCRIPTIONS[0])
        for row in (2, 1, 3):
            self.choose(dialog, combo, row)
            self.assertEqual(self.tavro.text(description), DESCRIPTIONS[row])
        self.tavro.settle(dialog)
        self.tavro.screenshot("export-dialog-dark")
        # Under the mouse, Cancel takes the hover colours; Export stays as it was.
        cancel = next(row for row in self.tavro.children(dialog) if row["text"] == "Cancel")
        export = next(row for row in self.tavro.children(dialog) if row["text"] == "Export")
        centre = ((cancel["left"] + cancel["right"]) // 2, (cancel["top"] + cancel["bottom"]) // 2)
        self.tavro.x_input(dialog, ("mousemove", *centre))
        hovered = self.tavro.screenshot_until(
            "export-dialog-hover", lambda png: self.tavro.pixel(png, centre[0], cancel["top"] + 3) == (0x3A, 0x3A, 0x3E),
            what="the hovered Cancel in controlHover")
        self.assertEqual(self.tavro.pixel(hovered, (export["left"] + export["right"]) // 2, export["top"] + 3),
                         (0x28, 0x28, 0x2A))
        # Cancel ends it, and no save dialog follows.
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.settle(main)
        self.assertEqual([r for r in self.tavro.windows("#32770") if r["text"] == SAVE_TITLE], [])

        # In a light theme; Export with the plain-text row.
        self.tavro.send(main, WM_COMMAND, THEME_LIGHT, 0)
        dialog, combo, description = self.open_export_dialog(main)
        self.choose(dialog, combo, 3)
        self.tavro.settle(dialog)
        self.tavro.screenshot("export-dialog-light")
        self.tavro.press(dialog, "Export")
        target = self.tavro.work / "out.txt"
        self.save_through_dialog(target, "notes.txt")
        self.answer(BOX_TITLE, "File exported successfully as plain text.", "OK")
        self.assertEqual(target.read_bytes(), TEXT.encode("utf-8"))

    def test_menu_entries_write_each_format(self):
        main = self.open_document("notes.txt", TEXT)
        # HTML, through the progress dialog; the main window's box follows.
        self.tavro.command(main, EXPORT_HTML)
        html = self.tavro.work / "page.html"
        self.save_through_dialog(html, "notes.html")
        box = self.tavro.find_dialog("Tavro - HTML Export")
        self.assertTrue(any(t.startswith("HTML exported successfully.\n\nExport time:  ")
                            and t.endswith("\n\nOpen in browser?") for t in self.tavro.dialog_texts(box)))
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)
        self.assert_page(html.read_bytes())

        # RTF, written at once: the dark theme's light text darkened for paper (212 to 74).
        self.tavro.command(main, EXPORT_RTF)
        rtf = self.tavro.work / "doc.rtf"
        self.save_through_dialog(rtf, "notes.rtf")
        self.answer(BOX_TITLE, "RTF exported successfully.\n\n" + windows_path(rtf), "OK")
        self.assert_rtf(rtf.read_bytes(), b"\\red74\\green74\\blue74;")

        self.tavro.command(main, EXPORT_TXT)
        txt = self.tavro.work / "plain.txt"
        self.save_through_dialog(txt, "notes.txt")
        self.answer(BOX_TITLE, "File exported successfully as plain text.", "OK")
        self.assertEqual(txt.read_bytes(), TEXT.encode("utf-8"))

        # PDF has a save step of its own; cancelling it ends the export.
        self.tavro.command(main, EXPORT_PDF)
        dialog, name = self.tavro.file_dialog("Export as PDF")
        self.assertEqual(self.tavro.text(name), "notes")
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.settle(main)
        self.assertEqual([r for r in self.tavro.windows("#32770") if r["text"] == SAVE_TITLE], [])

    def test_html_of_a_markdown_file_is_the_markdown_page(self):
        main = self.open_document("notes.md", test_markdown.SMALL_DOC)
        self.tavro.command(main, EXPORT_HTML)
        page = self.tavro.work / "notes-page.html"
        self.save_through_dialog(page, "notes.html")
        box = self.tavro.find_dialog("Tavro - HTML Export")
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)
        self.assertEqual(page.read_bytes(), test_markdown.SMALL_PAGE)

    def test_a_markdown_file_of_another_extension_gets_the_code_page(self):
        main = self.open_document("notes.markdown", "# Title\r\n")
        self.tavro.command(main, EXPORT_HTML)
        page = self.tavro.work / "code-page.html"
        self.save_through_dialog(page, "notes.html")
        box = self.tavro.find_dialog("Tavro - HTML Export")
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)
        text = page.read_bytes()
        self.assertIn(b"<title>notes.markdown - Tavro Export</title>", text)
        self.assertIn(b"        <div class=\"line-number\">2</div>\n", text)

    def test_rtf_in_a_light_theme_keeps_its_colours(self):
        main = self.open_document("notes.txt", TEXT, THEME_LIGHT)
        self.tavro.command(main, EXPORT_RTF)
        rtf = self.tavro.work / "light.rtf"
        self.save_through_dialog(rtf, "notes.rtf")
        self.answer(BOX_TITLE, "RTF exported successfully.\n\n" + windows_path(rtf), "OK")
        self.assert_rtf(rtf.read_bytes(), b"\\red0\\green0\\blue0;")

    def test_an_untitled_empty_document(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled")
        # No path: no proposed name. RTF has nothing to write.
        self.tavro.command(main, EXPORT_RTF)
        rtf = self.tavro.work / "empty.rtf"
        self.save_through_dialog(rtf, "")
        self.answer(BOX_TITLE, "Nothing to export.", "OK")
        self.assertFalse(rtf.exists())
        # Plain text writes the empty file and says so; a name typed without
        # an extension gets the format's.
        self.tavro.command(main, EXPORT_TXT)
        txt = self.tavro.work / "empty.txt"
        self.save_through_dialog(self.tavro.work / "empty", "")
        self.answer(BOX_TITLE, "File exported successfully as plain text.", "OK")
        self.assertEqual(txt.read_bytes(), b"")

    def test_html_beyond_20000_lines_offers_the_viewer(self):
        text = "x\r\n" * 20000 + "y"
        main = self.open_document("long.txt", text)
        self.tavro.command(main, EXPORT_HTML)
        target = self.tavro.work / "long.html"
        self.save_through_dialog(target, "long.html")
        self.answer(BOX_TITLE, "This file has ~20001 lines.\n\nHTML export would be slow for this size.\n"
                    "Open as plain text in Tavro Viewer instead?", "Yes")
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - temp_txt", prefix=True)
        self.tavro.settle(viewer)
        handed = self.viewer_text()
        self.assertEqual(len(handed), 1)
        self.assertEqual(handed[0].read_bytes(), text.encode("utf-8"))
        self.assertFalse(target.exists())

    def test_rtf_beyond_50000_lines_offers_the_viewer_and_no_says_no(self):
        text = "x\r\n" * 50000 + "y"
        main = self.open_document("long.txt", text)
        self.tavro.command(main, EXPORT_RTF)
        target = self.tavro.work / "long.rtf"
        self.save_through_dialog(target, "long.rtf")
        question = ("This file has ~50001 lines.\n\nRTF export would be very slow for this size.\n"
                    "Open as plain text in Tavro Viewer instead?")
        self.answer(BOX_TITLE, question, "No")
        self.tavro.settle(main)
        self.assertEqual(self.viewer_text(), [])
        self.tavro.command(main, EXPORT_RTF)
        self.save_through_dialog(target, "long.rtf")
        self.answer(BOX_TITLE, question, "Yes")
        self.tavro.find_window("TavroMainWindow", "Tavro Viewer - temp_txt", prefix=True)
        self.assertFalse(target.exists())

    def test_html_of_more_than_a_million_bytes_asks_first(self):
        text = ("z" * 98 + "\r\n") * 10000 + "!"  # 1,000,001 bytes in 10,001 lines
        main = self.open_document("wide.txt", text)
        self.tavro.command(main, EXPORT_HTML)
        target = self.tavro.work / "wide.html"
        self.save_through_dialog(target, "wide.html")
        self.answer(BOX_TITLE, "This file has ~10001 lines. Export may take a while.\n\nContinue?", "No")
        self.tavro.settle(main)
        self.assertFalse(target.exists())
        self.assertEqual([r for r in self.tavro.windows("") if r["text"] == "Exporting PDF"], [])

    def test_pdf_beyond_10000_lines_asks_before_any_file_is_named(self):
        main = self.open_document("code.cpp", "int x;\r\n" * 10000 + "}")
        self.tavro.command(main, EXPORT_PDF)
        self.answer(BOX_TITLE, "This file has ~10001 lines.\n\nPDF export would be very slow for this size.\n"
                    "Open as plain text in Tavro Viewer instead?", "No")
        self.tavro.settle(main)
        self.assertEqual(self.viewer_text(), [])
        self.assertEqual([r for r in self.tavro.windows("#32770") if r["text"] == "Export as PDF"], [])

    def click_cancel(self, dialog):
        width, height, x, y = self.tavro.client(dialog)
        # The painted Cancel: centred, its bottom 10 pixels above the client's.
        self.tavro.x_input(dialog, ("mousemove", x + width // 2, y + height - 21, "click", 1))

    def cancel_held_worker(self, progress):
        """Cancel while the worker is held at its birth, then its release: the
        dialog stays until the worker's end."""
        self.tavro.wait_until(lambda: self.tavro.request("held-thread") != "0", what="the worker held")
        self.click_cancel(progress)
        self.tavro.settle(progress)
        self.assertTrue(self.tavro.alive(progress))  # only the worker's end closes it
        self.tavro.request("release-thread")
        self.tavro.wait_gone(progress)

    def test_cancel_during_styled_html_leaves_the_earlier_file(self):
        main = self.open_document("notes.txt", TEXT)
        target = self.write_file("kept.html", b"earlier")
        # The worker is the first thread of the program's own that the export starts.
        self.tavro.request("hold-thread", self.tavro.request("pid", main), 1)
        self.tavro.command(main, EXPORT_HTML)
        dialog, name = self.tavro.file_dialog(SAVE_TITLE)
        self.tavro.enter_file_name(dialog, name, target)
        confirm = self.tavro.wait_until(
            lambda: next((row["hwnd"] for row in self.tavro.windows("#32770")
                          if row["text"] == SAVE_TITLE and row["hwnd"] != dialog), None),
            what="the question whether to replace the file")
        self.tavro.press(confirm, "Yes")
        progress = self.tavro.find_dialog("Exporting PDF")
        self.cancel_held_worker(progress)
        self.tavro.settle(main)
        self.assertEqual(target.read_bytes(), b"earlier")
        self.assertEqual([r for r in self.tavro.windows("") if r["text"] == "Tavro - HTML Export"], [])

    def test_large_rtf_goes_through_its_dialog_and_cancel_leaves_no_file(self):
        text = "".join(f"{n:06d} " + "w" * 60 + "\r\n" for n in range(9000))  # above 512,000 bytes of RTF
        main = self.open_document("big.txt", text)
        self.tavro.command(main, EXPORT_RTF)
        written = self.tavro.work / "big.rtf"
        self.save_through_dialog(written, "big.rtf")
        box = self.tavro.find_dialog(BOX_TITLE)
        texts = self.tavro.dialog_texts(box)
        self.assertTrue(any(re.fullmatch(r"RTF exported successfully\.\n\nExport time: \d+\.\d{3} sec\n\n"
                                         + re.escape(windows_path(written)), t) for t in texts), texts)
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        rtf = written.read_bytes()
        self.assertGreaterEqual(len(rtf), 512000)
        # One run of style 0, one paragraph a line.
        self.assertTrue(rtf.endswith(b"\\f0\\fs22 {\\cf1 " + text.replace("\r\n", "\\par\r\n").encode() + b"}\r\n}\r\n"))

        self.tavro.request("hold-thread", self.tavro.request("pid", main), 1)
        self.tavro.command(main, EXPORT_RTF)
        cancelled = self.tavro.work / "cancelled.rtf"
        self.save_through_dialog(cancelled, "big.rtf")
        progress = self.tavro.find_dialog("Tavro - RTF Export")
        self.cancel_held_worker(progress)
        self.answer(BOX_TITLE, "RTF export failed or was cancelled.", "OK")
        self.assertFalse(cancelled.exists())


if __name__ == "__main__":
    harness.main()
