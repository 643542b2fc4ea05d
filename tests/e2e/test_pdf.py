"""PDF export end to end, on the test printer named "Microsoft Print to PDF":
the pages of a code file and of a Markdown file read back from what the
printer wrote, one page looked at, Cancel, the absent printer, an empty
document and the size question."""
import re
import subprocess

import harness
from harness import TavroTestCase, printed_pages, printed_page_png
import test_export  # its ways of opening a document and pressing the painted Cancel

EXPORT_PDF = 6667
SAVE_TITLE = "Export as PDF"
MARKDOWN_SAVE_TITLE = "Save PDF \u00e2\u20ac\u201d Tavro"
BOX_TITLE = "Tavro - PDF Export"
PROGRESS_TITLE = "Exporting PDF"
SUCCESS = re.compile(r"PDF exported successfully\.\n\nExport time:  (\d+\.\d{3} sec|\d+:\d{2} min)")

# A Python file of several pages: numbered lines, keywords and comments for
# the lexer's colours, and one long line that wraps at word boundaries.
LONG_WORDS = [f"word{n:02d}" for n in range(60)]
CODE_LINES = ["import os", ""]
for n in range(1, 181):
    CODE_LINES.append(f"def line_{n:03d}(): return {n}  # comment {n:03d}")
    if n == 90:
        CODE_LINES.append("text = '" + " ".join(LONG_WORDS) + "'")
CODE = "\r\n".join(CODE_LINES) + "\r\n"

MARKDOWN = "\r\n".join(
    ["# Report Title", "", "Intro paragraph with **bold** and *italic* and `code` words.", "",
     "## Section Two", "- first bullet", "- second bullet", "1. numbered one", "2. numbered two",
     "> a quoted line", "---", "### Third level", "7. " + " ".join(f"w{n:03d}" for n in range(120))]
    + [f"Paragraph number {n:03d} of the body text." for n in range(1, 121)]
    + ["", "Closing line."]) + "\r\n"


class PdfTest(TavroTestCase):
    open_document = test_export.ExportTest.open_document
    click_cancel = test_export.ExportTest.click_cancel
    cancel_held_worker = test_export.ExportTest.cancel_held_worker

    def save_as(self, title, target, proposed):
        dialog, name = self.tavro.file_dialog(title)
        self.assertEqual(self.tavro.text(name), proposed)
        self.tavro.enter_file_name(dialog, name, target)
        self.tavro.wait_gone(dialog)

    def success_box(self):
        box = self.tavro.find_dialog(BOX_TITLE, timeout=300)
        texts = self.tavro.dialog_texts(box)
        self.assertTrue(any(SUCCESS.fullmatch(t) for t in texts), texts)
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)

    def pages_logged(self, routine):
        for line in self.tavro.log_lines():
            match = re.fullmatch(rf"\[{routine}\] Document ended, (\d+) pages\n", line)
            if match:
                return int(match.group(1))
        return None

    @staticmethod
    def rows_of(page):
        """A page's non-empty rows as pdftotext reads them: runs of spaces
        are one, and the hyphens of the footer's proportional font come back
        as soft hyphens."""
        return [re.sub(r"\s+", " ", row.strip().replace("\xad", "-")) for row in page.splitlines() if row.strip()]

    def assert_footer(self, row, number):
        # The footer's spaces are narrow enough for pdftotext to drop.
        self.assertEqual(row.replace(" ", ""), f"-{number}-")

    def no_window(self, title):
        return [r for r in self.tavro.windows("") if r["text"] == title] == []

    def colours(self, png):
        """Each colour of a picture with its pixel count."""
        out = subprocess.run(["convert", str(png), "-depth", "8", "-format", "%c", "histogram:info:-"],
                             capture_output=True, text=True, check=True).stdout
        counts = {}
        for line in out.splitlines():
            match = re.match(r"\s*(\d+):\s*\(\s*(\d+),\s*(\d+),\s*(\d+)", line)
            if match:
                counts[tuple(int(v) for v in match.groups()[1:])] = int(match.group(1))
        return counts

    def near(self, counts, colour, within=12):
        return sum(n for c, n in counts.items() if all(abs(a - b) <= within for a, b in zip(c, colour)))

    def test_code_file_pages_in_order_with_footers_and_paper_colours(self):
        self.tavro.install_test_printer()
        main = self.open_document("sample.py", CODE)
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "sample.pdf"
        self.save_as(SAVE_TITLE, target, "sample")
        self.tavro.wait_log("[PdfProgressDialog] Final stage\n", timeout=120)
        self.success_box()
        pages = printed_pages(target)
        self.assertGreaterEqual(len(pages), 3)
        self.assertEqual(self.pages_logged("CodePdfWorker"), len(pages))

        # Every line once, in order, page after page; each page ends in its footer.
        seen = []
        for number, page in enumerate(pages, 1):
            rows = self.rows_of(page)
            self.assert_footer(rows[-1], number)
            seen.extend(rows[:-1])
        expected = [re.sub(" +", " ", line) for line in CODE_LINES if line and not line.startswith("text = ")]
        self.assertEqual([row for row in seen if not row.startswith("text = ") and not row.startswith("word")],
                         expected)
        # The long line, wrapped at word boundaries into rows of whole words.
        at = seen.index("def line_090(): return 90 # comment 090") + 1
        rows = []
        while not seen[at].startswith("def line_091"):
            rows.append(seen[at])
            at += 1
        self.assertGreater(len(rows), 1)
        self.assertEqual(" ".join(rows), "text = '" + " ".join(LONG_WORDS) + "'")
        self.assertTrue(rows[0].startswith("text = 'word00 "))
        for row in rows[1:]:
            self.assertRegex(row, r"^word\d\d( word\d\d)*'?$")

        # Looked at: page 1 in the dark theme's colours made for paper.
        png = printed_page_png(target, 1, harness.ARTIFACTS / f"{self.tavro.name}.page1.png", dpi=100)
        counts = self.colours(png)
        self.assertGreater(self.near(counts, (0x56, 0x9C, 0xD6)), 50)  # keywords, dark enough as they are
        self.assertGreater(self.near(counts, (0x6A, 0x99, 0x55)), 50)  # comments, kept
        # Names in #9CDCFE, too bright for paper: at 45 per cent, and never as they are.
        self.assertGreater(self.near(counts, (70, 99, 114), 4), 50)
        self.assertEqual(self.near(counts, (0x9C, 0xDC, 0xFE), 6), 0)
        # Brackets in #B4B4B4, of brightness 180: kept.
        self.assertGreater(self.near(counts, (0xB4, 0xB4, 0xB4), 4), 20)
        self.assertEqual(self.near(counts, (0x1C, 0x1C, 0x1E), 4), 0)  # no dark page background
        self.assertGreater(self.near(counts, (255, 255, 255), 0), sum(counts.values()) // 2)  # white paper

    def test_plain_text_prints_black_in_a_dark_theme(self):
        # Plain text has no lexer: its light screen colour must not reach the paper as grey.
        self.tavro.install_test_printer()
        main = self.open_document("plain.txt", "\r\n".join(f"Plain line {n:02d} of ordinary text." for n in range(40)))
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "plain.pdf"
        self.save_as(SAVE_TITLE, target, "plain")
        self.success_box()
        pages = printed_pages(target)
        self.assertEqual(len(pages), 1)
        self.assertEqual(self.rows_of(pages[0])[0], "Plain line 00 of ordinary text.")
        png = printed_page_png(target, 1, harness.ARTIFACTS / f"{self.tavro.name}.plain-page1.png", dpi=100)
        counts = self.colours(png)
        # Black strokes: the dark theme's text #D4D4D4 at 45 per cent would be
        # #5F5F5F at its darkest, with no pixel near black.
        self.assertGreater(self.near(counts, (0, 0, 0), 8), 200)

    def test_markdown_file_is_rendered_on_pages(self):
        self.tavro.install_test_printer()
        main = self.open_document("notes.md", MARKDOWN)
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "notes-out.pdf"
        self.save_as(MARKDOWN_SAVE_TITLE, target, "notes.pdf")
        self.success_box()
        pages = printed_pages(target)
        self.assertGreaterEqual(len(pages), 2)
        self.assertEqual(self.pages_logged("MarkdownPdfWorker"), len(pages))
        text = [self.rows_of(page) for page in pages]
        for number, rows in enumerate(text, 1):
            self.assert_footer(rows[-1], number)
        first = text[0]
        self.assertEqual(first[0], "Report Title")
        # Inline markers are gone; runs meet with one space.
        self.assertIn("Intro paragraph with bold and italic and code words.", first)
        self.assertIn("Section Two", first)
        bullets = [row for row in first if row.startswith("\u2022")]
        # The markers stand at the left edge and the text 18 units in: on a
        # 300 dpi page that is less than a marker's width, so they touch.
        self.assertEqual([row.replace(" ", "") for row in bullets], ["\u2022firstbullet", "\u2022secondbullet"])
        numbered = [row.replace(" ", "") for row in first if re.match(r"^[12]\.", row)]
        self.assertEqual(numbered, ["1.numberedone", "2.numberedtwo"])
        self.assertIn("a quoted line", first)
        self.assertIn("Third level", first)
        # A wrapped item shows its number on each of its lines; the lines are
        # measured on the screen and drawn at 300 dpi, so they run past the page.
        item = [row.replace(" ", "") for row in first if row.startswith("7.")]
        self.assertGreaterEqual(len(item), 2, first)
        self.assertTrue(item[0].startswith("7.w000w001"), item)
        starts = [int(re.match(r"7\.w(\d{3})", row).group(1)) for row in item]
        self.assertEqual(starts, sorted(set(starts)))
        self.assertGreater(starts[1], 20)
        body = [row for rows in text for row in rows[:-1] if row.startswith("Paragraph number")]
        self.assertEqual(body, [f"Paragraph number {n:03d} of the body text." for n in range(1, 121)])
        self.assertEqual(text[-1][-2], "Closing line.")
        png = printed_page_png(target, 1, harness.ARTIFACTS / f"{self.tavro.name}.md-page1.png", dpi=100)
        self.assertGreater(self.near(self.colours(png), (255, 255, 255), 0), 0)

    def test_cancel_before_the_document_started_leaves_no_file(self):
        self.tavro.install_test_printer()
        main = self.open_document("sample.py", CODE)
        # The worker is the first thread of the program's own that the export starts.
        self.tavro.request("hold-thread", self.tavro.request("pid", main), 1)
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "held.pdf"
        self.save_as(SAVE_TITLE, target, "sample")
        progress = self.tavro.find_dialog(PROGRESS_TITLE)
        self.cancel_held_worker(progress)
        self.tavro.wait_log("[CodePdfWorker] Export abandoned\n")
        self.tavro.wait_log("[PdfProgressDialog] Export ended, result 0\n")
        self.tavro.settle(main)
        self.assertTrue(self.no_window(BOX_TITLE))
        self.assertFalse(target.exists())

    def test_cancel_during_pages_removes_the_file(self):
        self.tavro.install_test_printer()
        # Long lines of three rows each: some hundred pages, too many to end
        # between the report of page 2 and the click.
        lines = [f"value_{n:05d} = " + " + ".join(["factor"] * 40) + f"  # row {n}" for n in range(9000)]
        main = self.open_document("big.py", "\r\n".join(lines))
        self.tavro.command(main, EXPORT_PDF)
        box = self.tavro.find_dialog(BOX_TITLE)
        self.assertIn("This file will create approximately 164 pages.\nExport may take a while.\n\nContinue?",
                      self.tavro.dialog_texts(box))
        self.tavro.press(box, "Yes")
        self.tavro.wait_gone(box)
        target = self.tavro.work / "big.pdf"
        self.save_as(SAVE_TITLE, target, "big")
        progress = self.tavro.find_dialog(PROGRESS_TITLE)
        self.tavro.wait_log("[PdfProgressDialog] Exporting page 2...\n", timeout=120)
        self.tavro.screenshot("progress")
        self.click_cancel(progress)
        self.tavro.wait_gone(progress, timeout=120)
        self.tavro.wait_log("[CodePdfWorker] Export abandoned\n")
        self.tavro.wait_log("[PdfProgressDialog] Export ended, result 0\n")
        self.tavro.settle(main)
        self.assertTrue(self.no_window(BOX_TITLE))
        self.assertFalse(target.exists())
        self.assertIsNone(self.pages_logged("CodePdfWorker"))
        self.assertNotIn("[PdfProgressDialog] Final stage\n", self.tavro.log_lines())

    def test_markdown_cancel_ends_the_document_at_a_page_turn_and_the_file_goes(self):
        self.tavro.install_test_printer()
        # Some 500 pages: far more than can end between the report of page 2 and the click.
        text = "\r\n".join(f"Paragraph {n:05d} of a long Markdown document." for n in range(20000))
        main = self.open_document("long.md", text)
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "long.pdf"
        self.save_as(MARKDOWN_SAVE_TITLE, target, "long.pdf")
        progress = self.tavro.find_dialog(PROGRESS_TITLE)
        self.tavro.wait_log("[PdfProgressDialog] Exporting page 2...\n", timeout=120)
        self.click_cancel(progress)
        self.tavro.wait_gone(progress, timeout=120)
        # Not abandoned: the document ends at the next page turn, then the dialog removes the file.
        self.tavro.wait_log("[PdfProgressDialog] Final stage\n")
        self.tavro.wait_log("[PdfProgressDialog] Export ended, result 0\n")
        pages = self.pages_logged("MarkdownPdfWorker")
        self.assertIsNotNone(pages)
        self.assertLess(pages, 400)
        self.tavro.settle(main)
        self.assertTrue(self.no_window(BOX_TITLE))
        self.assertFalse(target.exists())

    def test_without_the_printer_the_job_ends_with_no_box(self):
        main = self.open_document("sample.py", CODE)
        self.tavro.command(main, EXPORT_PDF)
        target = self.tavro.work / "none.pdf"
        self.save_as(SAVE_TITLE, target, "sample")
        self.tavro.wait_log('[CodePdfWorker] No printer "Microsoft Print to PDF"\n')
        self.tavro.wait_log("[PdfProgressDialog] Export ended, result 0\n")
        self.tavro.settle(main)
        self.assertTrue(self.no_window(BOX_TITLE))
        self.assertTrue(self.no_window(PROGRESS_TITLE))
        self.assertFalse(target.exists())

    def test_empty_document_has_nothing_to_export(self):
        main = self.open_document("empty.py", "")
        self.tavro.command(main, EXPORT_PDF)
        box = self.tavro.find_dialog(BOX_TITLE)
        self.assertIn("Nothing to export.", self.tavro.dialog_texts(box))
        self.tavro.press(box, "OK")
        self.tavro.wait_gone(box)
        self.assertTrue(self.no_window(SAVE_TITLE))

    def test_over_a_million_bytes_asks_first_and_no_ends_it(self):
        text = "\r\n".join(f"{n:05d} " + "x" * 113 for n in range(9000))  # 1,097,998 bytes in 9,000 lines
        main = self.open_document("wide.txt", text)
        self.tavro.command(main, EXPORT_PDF)
        box = self.tavro.find_dialog(BOX_TITLE)
        self.assertIn("This file will create approximately 164 pages.\nExport may take a while.\n\nContinue?",
                      self.tavro.dialog_texts(box))
        self.tavro.press(box, "No")
        self.tavro.wait_gone(box)
        self.tavro.settle(main)
        self.assertTrue(self.no_window(SAVE_TITLE))
        self.assertTrue(self.no_window(PROGRESS_TITLE))

    def test_a_large_markdown_file_gets_no_size_question(self):
        text = "\r\n".join(f"Paragraph {n:05d} " + "m" * 113 for n in range(9000))  # over 1,000,000 bytes
        main = self.open_document("big.md", text)
        self.tavro.command(main, EXPORT_PDF)
        dialog, name = self.tavro.file_dialog(MARKDOWN_SAVE_TITLE)
        self.assertEqual(self.tavro.text(name), "big.pdf")
        self.assertTrue(self.no_window(BOX_TITLE))
        self.tavro.press(dialog, "Cancel")
        self.tavro.wait_gone(dialog)
        self.tavro.settle(main)
        self.assertTrue(self.no_window(PROGRESS_TITLE))


if __name__ == "__main__":
    harness.main()
