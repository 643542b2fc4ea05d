"""The test printer itself: what the print and PDF tests stand on."""
import unittest

from harness import TavroTestCase, printed_pages, printed_page_png, TEST_PRINTER


class TestPrinter(TavroTestCase):
    def test_a_job_without_output_file_lands_in_the_spool_file(self):
        spool = self.tavro.install_test_printer()
        code, out, err = self.tavro.run_tool(TEST_PRINTER, "print", "2")
        self.assertEqual(code, 0, out + err)
        self.assertIn("dpi 300", out)
        pages = printed_pages(spool)
        self.assertEqual(len(pages), 2)
        self.assertIn("Test page 1", pages[0])
        self.assertIn("Test page 2", pages[1])
        png = printed_page_png(spool, 1, self.tavro.work / "test_printer_page1.png")
        self.assertTrue(png.exists())

    def test_a_job_with_an_output_file_writes_there(self):
        self.tavro.install_test_printer()
        target = self.tavro.work / "named.ps"
        code, out, err = self.tavro.run_tool(TEST_PRINTER, "print", "1",
                                             "Z:" + str(target).replace("/", "\\"))
        self.assertEqual(code, 0, out + err)
        self.assertEqual([p.strip() for p in printed_pages(target)], ["Test page 1"])
        self.assertFalse((self.tavro.work / "printed.ps").exists())


if __name__ == "__main__":
    unittest.main()
