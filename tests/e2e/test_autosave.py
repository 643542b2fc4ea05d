"""Auto-save ticks of timer 5001: a modified document with a path is saved
without a word, an untitled one never, also while a prompt is open."""
import harness
from harness import TavroTestCase, windows_path

WM_TIMER = 0x0113
AUTO_SAVE_TIMER = 5001


class AutoSaveTest(TavroTestCase):
    def open_file(self, name, content):
        path = self.write_file(name, content)
        self.tavro.start(windows_path(path))
        main = self.tavro.main_window()
        self.tavro.wait_for(lambda: self.tavro.title(main), f"Tavro - {name}")
        return main, path

    def test_tick_saves_a_modified_document_silently(self):
        main, path = self.open_file("auto.txt", "start")
        self.tavro.keys("ctrl+End")
        self.tavro.type(" more")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - auto.txt *")
        self.tavro.post(main, WM_TIMER, AUTO_SAVE_TIMER)
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b"start more"), b"start more")
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - auto.txt"), "Tavro - auto.txt")
        self.tavro.settle(main)  # no word: nothing else was shown meanwhile
        self.assertEqual([row["cls"] for row in self.tavro.windows("")], ["TavroMainWindow"])

    def test_tick_leaves_an_untitled_document_alone(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.type("never saved")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - Untitled *")
        # A sent tick returns only once the window has handled it (a Save As
        # dialog would keep it from returning).
        self.tavro.send(main, WM_TIMER, AUTO_SAVE_TIMER)
        self.tavro.send(main, WM_TIMER, AUTO_SAVE_TIMER)
        self.tavro.settle(main)  # and anything the ticks posted
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled *")
        # No Save As dialog appeared.
        self.assertEqual([row["cls"] for row in self.tavro.windows("")], ["TavroMainWindow"])

    def test_tick_saves_behind_an_open_prompt(self):
        main, path = self.open_file("behind.txt", "text")
        self.tavro.keys("ctrl+End")
        self.tavro.type("!")
        self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - behind.txt *")
        self.tavro.post(main, harness.WM_CLOSE)
        box = self.tavro.find_dialog("Tavro")
        self.tavro.post(main, WM_TIMER, AUTO_SAVE_TIMER)
        self.assertEqual(self.tavro.wait_for(path.read_bytes, b"text!"), b"text!")
        self.assertTrue(self.tavro.alive(box))
        self.tavro.press(box, "Cancel")


if __name__ == "__main__":
    harness.main()
