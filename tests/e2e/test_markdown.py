"""MD Preview end to end: the page it writes, its box, the Viewer that takes
over when no browser opens the page, the question above 30,000 lines with
its Viewer, and the Viewers' end with the main window."""
import subprocess

import harness
from harness import TavroTestCase, windows_path

WM_CLOSE = 0x0010
MD_PREVIEW = 3201

SMALL_DOC = "# Title\r\nSome **bold** and *em* text.\r\n\r\n- one\r\n- two\r\n1. first\r\n> a quote\r\n---\r\n`a*b*` & <c>"

# The page of SMALL_DOC in the first theme, Tavro Dark, with the editor's
# Consolas set aside for Segoe UI at 10 points: the bytes the unit tests
# expect of the writer, in these colours.
SMALL_PAGE = (
    "<!DOCTYPE html>\n<html>\n<head>\n"
    "  <meta charset=\"UTF-8\">\n"
    "  <meta name=\"viewport\" content=\"width=device-width, initial-scale=1.0\">\n"
    "  <title>notes.md</title>\n"
    "  <style>\n"
    "    * { margin: 0; padding: 0; box-sizing: border-box; }\n"
    "    body { background: #1C1C1E; color: #D4D4D4; font-family: 'Segoe UI', 'Segoe UI', sans-serif; "
    "font-size: 10pt; line-height: 1.6; }\n"
    "    .content { max-width: 860px; margin: 0 auto; padding: 40px 32px; }\n"
    "    h1 { font-size: 2em;   color: #DCDCDC; border-bottom: 1px solid #37373A; padding-bottom: 6px; "
    "margin: 1.2em 0 0.5em; }\n"
    "    h2 { font-size: 1.5em; color: #DCDCDC; margin: 1em 0 0.4em; }\n"
    "    h3 { font-size: 1.2em; color: #DCDCDC; margin: 0.8em 0 0.3em; }\n"
    "    p  { margin: 0.4em 0; }\n"
    "    ul, ol { margin: 0.3em 0 0.3em 1.6em; }\n"
    "    li { margin: 0.15em 0; }\n"
    "    blockquote { border-left: 3px solid #37373A; margin: 0.5em 0; padding: 0.2em 0 0.2em 1em; "
    "color: #6E6E6E; font-style: italic; }\n"
    "    hr { border: none; border-top: 1px solid #37373A; margin: 1em 0; }\n"
    "    code { background: #232326; color: #6E6E6E; font-family: 'Courier New', monospace; font-size: 0.9em; "
    "padding: 1px 4px; border-radius: 3px; }\n"
    "    strong { color: #DCDCDC; }\n"
    "  </style>\n"
    "</head>\n<body>\n<div class=\"content\">\n"
    "<h1>Title</h1>\n"
    "<p>Some <strong>bold</strong> and <em>em</em> text.</p>\n"
    "<p></p>\n"
    "<ul>\n  <li>one</li>\n  <li>two</li>\n</ul>\n"
    "<ol>\n  <li>first</li>\n</ol>\n"
    "<blockquote>a quote</blockquote>\n"
    "<hr>\n"
    "<p><code>a*b*</code> &amp; &lt;c&gt;</p>\n"
    "</div>\n</body>\n</html>\n").encode("utf-8")


class MarkdownPreview(TavroTestCase):
    def open_markdown(self, name, text):
        doc = self.write_file(name, text)
        self.tavro.start(windows_path(doc))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}")
        return main

    def temp_files(self, pattern):
        folder = self.tavro.appdata / "Tavro" / "tmp"
        return sorted(folder.glob(pattern)) if folder.exists() else []

    def label_brightness(self, png, x, y):
        """The brightest grey in a small box around (x, y) of a screenshot, 0 to 1."""
        out = subprocess.run(["convert", str(png), "-crop", f"40x8+{x - 20}+{y - 4}", "+repage", "-colorspace", "Gray",
                              "-format", "%[fx:maxima]", "info:"], capture_output=True, text=True, check=True).stdout
        return float(out)

    def window_box(self, hwnd):
        row = next(r for r in self.tavro.windows("TavroMainWindow") if r["hwnd"] == hwnd)
        return row["left"], row["top"], row["right"] - row["left"], row["bottom"] - row["top"]

    def test_preview_writes_the_page_shows_its_box_and_falls_back_to_a_viewer(self):
        self.tavro.remove_html_handler()
        main = self.open_markdown("notes.md", SMALL_DOC)
        self.tavro.command(main, MD_PREVIEW)
        box = self.tavro.find_dialog("Tavro - MD Export")
        texts = self.tavro.dialog_texts(box)
        self.assertTrue(any(t.startswith("MD exported successfully.\n\nLines: 9\nExport time: ") and t.endswith(" sec")
                            for t in texts), texts)
        pages = self.temp_files("temp_html_*.html")
        self.assertEqual(len(pages), 1)
        self.assertEqual(pages[0].read_bytes(), SMALL_PAGE)
        self.tavro.screenshot("preview-box")
        self.tavro.press(box, "OK")

        # No browser: the page opens in a Viewer, 740 by 860, 40 pixels in from the main window's corner.
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - " + pages[0].name)
        left, top, _, _ = self.window_box(main)
        self.assertEqual(self.window_box(viewer), (left + 40, top + 40, 740, 860))
        self.assertNotEqual(self.tavro.request("pid", viewer), self.tavro.request("pid", main))
        editor = self.tavro.child(viewer, "Scintilla")["hwnd"]
        self.tavro.wait_for(lambda: self.tavro.text(editor), SMALL_PAGE.decode("utf-8"))
        self.tavro.screenshot("page-viewer")

        # The Viewer ends with the main window.
        self.tavro.post(main, WM_CLOSE)
        self.tavro.wait_gone(main)
        self.tavro.wait_gone(viewer)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 0)

    def test_above_30000_lines_asks_and_hands_the_text_to_a_viewer(self):
        text = "".join(f"- item {n}\r\n" for n in range(30000)) + "last"
        main = self.open_markdown("long.md", text)
        self.tavro.command(main, MD_PREVIEW)
        box = self.tavro.find_dialog("Tavro - MD Preview")
        self.assertIn("This Markdown file has ~30001 lines.\n\nFull Markdown preview would be slow.\n"
                      "Open as plain text in Tavro Viewer instead?", self.tavro.dialog_texts(box))
        self.tavro.press(box, "Yes")
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - temp_", prefix=True)
        handed = self.temp_files("temp_*.txt")
        self.assertEqual(len(handed), 1)
        self.assertRegex(handed[0].name, r"^temp_\d{8}_\d{6}_\d{3}\.txt$")
        self.assertEqual(handed[0].read_bytes(), text.encode("utf-8"))
        self.assertEqual(self.tavro.title(viewer), "Tavro Viewer - " + handed[0].name)
        left, top, _, _ = self.window_box(main)
        self.assertEqual(self.window_box(viewer), (left + 40, top + 40, 660, 820))
        self.assertEqual(self.temp_files("temp_html_*.html"), [])  # no page was written
        self.tavro.screenshot("text-viewer")

        # A second hand-off ends the first Viewer; closing the main window ends the second.
        self.tavro.command(main, MD_PREVIEW)
        self.tavro.press(self.tavro.find_dialog("Tavro - MD Preview"), "Yes")
        self.tavro.wait_gone(viewer)
        second = self.tavro.wait_until(
            lambda: [r["hwnd"] for r in self.tavro.windows("TavroMainWindow")
                     if r["text"].startswith("Tavro Viewer - temp_")], what="the second Viewer")[0]
        self.tavro.post(main, WM_CLOSE)
        self.tavro.wait_gone(second)
        self.tavro.wait_gone(main)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 0)

    def test_cancel_lets_the_writer_finish_its_page_but_the_preview_counts_as_failed(self):
        main = self.open_markdown("notes.md", SMALL_DOC)
        # The writer is the second thread the export starts, after its pacing
        # thread; held at its birth, the export stays in progress for as long
        # as the test needs.
        self.tavro.request("hold-thread", self.tavro.request("pid", main), 2)
        self.tavro.command(main, MD_PREVIEW)
        dialog = self.tavro.find_dialog("Exporting PDF")
        self.tavro.wait_until(lambda: self.tavro.request("held-thread") != "0", what="the writer held")
        width, height, x, y = self.tavro.client(dialog)
        # The painted Cancel: centred, its bottom 10 pixels above the client's.
        button_x, button_y = x + width // 2, y + height - 21
        self.assertGreater(self.label_brightness(self.tavro.screenshot("export-in-progress"), button_x, button_y), 0.7)
        # Pressed on the button but released outside it: nothing.
        self.tavro.x_input(dialog, ("mousemove", button_x, button_y, "mousedown", 1, "mousemove", button_x,
                                    y + 20, "mouseup", 1))
        self.assertGreater(self.label_brightness(self.tavro.screenshot("released-outside"), button_x, button_y), 0.7)
        # Two presses, the second after the first has been handled: it finds
        # the button disabled.
        self.tavro.x_input(dialog, ("mousemove", button_x, button_y, "click", "--repeat", 2, "--delay", 700, 1))
        # Cancel doesn't close the dialog: only the pacing thread's end message
        # does, once it has waited 5 seconds for the held writer.
        self.assertTrue(self.tavro.alive(dialog))
        # Cancelling: the label in the muted colour, the status says so.
        shot = self.tavro.screenshot_until(
            "cancelling", lambda png: self.label_brightness(png, button_x, button_y) < 0.55, what="a disabled Cancel")
        self.assertGreater(self.label_brightness(shot, button_x, button_y), 0.3)
        self.tavro.wait_gone(dialog)
        self.assertEqual(self.temp_files("temp_html_*.html"), [])  # the writer hasn't run yet
        self.tavro.request("release-thread")
        # Let go, the writer completes its page all the same.
        pages = self.tavro.wait_until(lambda: [p for p in self.temp_files("temp_html_*.html")
                                               if p.read_bytes() == SMALL_PAGE], what="the whole page")
        self.assertEqual(len(pages), 1)
        # The job failed: no box, no browser, no Viewer.
        self.tavro.settle(main)
        self.assertEqual([r["text"] for r in self.tavro.windows("") if r["text"].startswith("Tavro - MD")], [])
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 1)

    def test_a_viewer_ends_when_the_main_process_dies(self):
        main = self.open_markdown("long.md", "x\r\n" * 30001)
        self.tavro.command(main, MD_PREVIEW)
        self.tavro.press(self.tavro.find_dialog("Tavro - MD Preview"), "Yes")
        viewer = self.tavro.find_window("TavroMainWindow", "Tavro Viewer - temp_", prefix=True)
        self.tavro.settle(viewer)
        # Killed, the main process closes nothing itself: the system lets go of its job.
        self.tavro.process.kill()
        self.tavro.wait_exit()
        self.tavro.wait_gone(viewer)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 0)

    def test_no_on_the_question_does_nothing(self):
        text = "x\r\n" * 30000 + "y"
        main = self.open_markdown("long.md", text)
        self.tavro.command(main, MD_PREVIEW)
        self.tavro.press(self.tavro.find_dialog("Tavro - MD Preview"), "No")
        self.tavro.settle(main)
        self.assertEqual(self.temp_files("temp_*"), [])
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 1)


if __name__ == "__main__":
    harness.main()
