"""A desktop without a tray: the program can be reached all the same."""

import subprocess
import unittest

import targets
import windows
from test_failures import DictationTestCase
from windows import BUTTON


class WithoutTray(DictationTestCase):
    def test_the_popover_is_an_ordinary_window_that_cannot_be_lost(self):
        with targets.start("mousepad") as editor, windows.UncontrolledProgram() as program:
            popover = program.window(program.POPOVER)
            self.assertTrue(editor.has_focus())
            self.assertIn(program.POPOVER, self.task_bar())
            subprocess.run(["wmctrl", "-c", program.POPOVER], check=True)
            program.wait_until_closed(program.POPOVER)
            self.assertIn(program.POPOVER, self.task_bar())
            subprocess.run(["wmctrl", "-a", program.POPOVER], check=True)
            program.window_in_front(program.POPOVER)
            popover.find("Dashboard", BUTTON).click()
            program.window_in_front("Dashboard")

    @staticmethod
    def task_bar():
        """The titles of the windows that the window manager lists."""
        return [line.split(maxsplit=3)[-1] for line in targets._output("wmctrl", "-l").splitlines()]


if __name__ == "__main__":
    unittest.main()
