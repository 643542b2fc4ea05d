"""One normal instance per profile; other profiles and Viewers beside it."""
import harness
from harness import TavroTestCase, windows_path

WM_SYSCOMMAND = 0x0112
SC_MINIMIZE = 0xF020


class InstancesTest(TavroTestCase):
    def test_second_start_of_a_profile_raises_the_first_and_drops_its_file(self):
        self.tavro.start()
        main = self.tavro.main_window()
        self.tavro.post(main, WM_SYSCOMMAND, SC_MINIMIZE)
        self.assertTrue(self.tavro.wait_for(lambda: self.tavro.iconic(main), True))
        dropped = self.write_file("dropped.txt", "never opened")
        second = self.tavro.start(windows_path(dropped))
        self.assertEqual(self.tavro.wait_exit(process=second), 0)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.iconic(main), False), False)
        self.tavro.settle(main)  # whatever the second start asked of it is handled
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 1)
        self.assertEqual(self.tavro.title(main), "Tavro - Untitled")

    def test_default_profile_named_or_not_is_the_same_instance(self):
        self.tavro.start("--profile=default")
        self.tavro.main_window()
        second = self.tavro.start()
        self.assertEqual(self.tavro.wait_exit(process=second), 0)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 1)
        self.assertFalse(self.tavro.settings_path("default").exists())
        self.assertTrue(self.tavro.settings_path().exists())

    def test_other_profile_runs_beside_the_default(self):
        self.tavro.start()
        self.tavro.main_window()
        self.tavro.start("--profile=work")
        work = self.tavro.find_window("TavroMainWindow", "Tavro  [ work ]  Untitled")
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 2)
        self.assertTrue(self.tavro.settings_path("work").exists())
        # A third start of "work" raises that window, not the default one.
        self.tavro.post(work, WM_SYSCOMMAND, SC_MINIMIZE)
        self.assertTrue(self.tavro.wait_for(lambda: self.tavro.iconic(work), True))
        third = self.tavro.start("--profile=work")
        self.assertEqual(self.tavro.wait_exit(process=third), 0)
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.iconic(work), False), False)
        self.assertEqual(self.tavro.count_windows("TavroMainWindow"), 2)
        self.tavro.screenshot("two-profiles")

    def test_profile_name_is_sanitised(self):
        self.tavro.start("--profile=a b/c")
        self.tavro.find_window("TavroMainWindow", "Tavro  [ a_b_c ]  Untitled")
        self.assertTrue(self.tavro.settings_path("a_b_c").exists())

    def test_viewer_as_second_argument_opens_the_file_normally(self):
        doc = self.write_file("x.txt", "normal text")
        self.tavro.start(windows_path(doc), "--viewer")
        main = self.tavro.main_window()
        self.assertEqual(self.tavro.wait_for(lambda: self.tavro.title(main), "Tavro - x.txt"), "Tavro - x.txt")


if __name__ == "__main__":
    harness.main()
