"""What the program leaves to other programs' keyboards, and what it says about a keyboard that lacks a key."""

import os
import signal
import subprocess
import unittest

import dictation
import targets
import windows
from test_failures import DictationTestCase

HINT = (
    "⌘⇧Space cannot be typed on this keyboard: it has no Super (⌘) key."
    " Record another shortcut, or change the keyboard's options."
)


def use_keyboard(options=""):
    """Gives the keyboard these options and no others."""
    subprocess.run(["setxkbmap", "us", "-option", "", "-option", options], check=True)


class KeyboardTestCase(DictationTestCase):
    def tearDown(self):
        use_keyboard()


class WithoutASuperKey(KeyboardTestCase):
    def test_what_would_be_a_shortcut_with_it_reaches_other_programs(self):
        for name in ("mousepad", "xterm"):
            use_keyboard("altwin:alt_win")
            with self.subTest(name), dictation.Dictation(), targets.start(name) as target:
                dictation.press("a", "shift+space", "b")
                self.assertEqual(target.wait_for_text("a b"), "a b")

    def test_the_digits_with_alt_reach_a_terminal(self):
        use_keyboard("altwin:alt_win")
        with targets.start("xterm") as terminal:
            dictation.press("a", "alt+1", "b")
            self.wait_until(lambda: terminal.text().endswith("b"))
            expected = terminal.text()
            self.assertGreater(len(expected), 2)
        with dictation.Dictation(), targets.start("xterm") as terminal:
            dictation.press("a", "alt+1", "b")
            self.assertEqual(terminal.wait_for_text(expected), expected)

    def test_settings_say_so_as_long_as_it_is_so(self):
        with windows.Program() as program:
            settings = program.open_settings()
            settings.find("Record Shortcut", windows.BUTTON)
            self.assertFalse(settings.has(HINT))
            use_keyboard("altwin:alt_win")
            settings.find(HINT)
            use_keyboard()
            settings.wait_until_gone(HINT)

    def test_hotbar_apps_say_so_for_each_slot(self):
        use_keyboard("altwin:alt_win")
        with windows.Program() as program:
            dashboard = program.open_dashboard()
            dashboard.find("Hotbar Apps", windows.TAB).click()
            dashboard.find(HINT.replace("⌘⇧Space", "⌘⌥1"))


class AStoppedProgram(KeyboardTestCase):
    def test_everybody_can_type_before_and_after_its_shortcut(self):
        with dictation.Dictation() as session, targets.start("mousepad") as editor:
            os.kill(session.process.pid, signal.SIGSTOP)
            try:
                dictation.press("a", dictation.MAIN_SHORTCUT, "b", dictation.MAIN_SHORTCUT, "c")
                self.assertEqual(editor.wait_for_text("abc"), "abc")
            finally:
                os.kill(session.process.pid, signal.SIGCONT)


if __name__ == "__main__":
    unittest.main()
