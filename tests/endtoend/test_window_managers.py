"""The popover under window managers of other habits than the test desktop's own."""

import os
import subprocess
import tempfile
import unittest

import dictation
import targets
import windows
from test_failures import DictationTestCase
from windows import BUTTON

GAP = 8  # between the popover and the panel, and to the sides of the screen
SHADOW = 72  # around the popover, within its window


class WindowManager:
    """Takes the place of the desktop's window manager until it is left."""

    def __init__(self, name, *command):
        self._name, self._command = name, command

    def __enter__(self):
        self._log = tempfile.TemporaryFile()
        self._process = subprocess.Popen(self._command, stdout=self._log, stderr=self._log)
        windows.wait_for(lambda: self._name in running_window_manager(), f"the window manager {self._name}")
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(timeout=dictation.END_LIMIT)
        self._log.close()


def running_window_manager():
    """Its name; empty while there is none."""
    sign = targets._output("xprop", "-root", "-notype", "_NET_SUPPORTING_WM_CHECK").split()[-1]
    return targets._output("xprop", "-id", sign, "-notype", "_NET_WM_NAME") if sign.startswith("0x") else ""


def start_panel():
    return subprocess.Popen(["tint2", "-c", os.environ["KESTROVA_TRAY_CONFIG"]], stderr=subprocess.DEVNULL)


class Compositing(DictationTestCase):
    """Xfce's window manager with its shadows."""

    def test_the_popover_stands_at_its_place_and_not_its_shadow(self):
        with WindowManager("Xfwm4", "xfwm4", "--replace", "--sm-client-disable", "--compositor=on"):
            tray = start_panel()
            try:
                with windows.Program() as program:
                    program.tray_icon()
                    for _ in range(3):
                        self.check_place(program)
            finally:
                tray.terminate()
                tray.wait()

    def check_place(self, program):
        program.open_popover()
        panel = windows.geometry(targets._output("xdotool", "search", "--class", "tint2").split()[0])

        def distances():
            box = program.native_extents(program.POPOVER)
            return [panel.width - (box.x + box.width - SHADOW), panel.y - (box.y + box.height - SHADOW)]

        self.wait_until(lambda: distances() == [GAP, GAP])
        program.close_popover()


class Tiling(DictationTestCase):
    """A desktop of i3 without a bar."""

    def setUp(self):
        super().setUp()
        file = tempfile.NamedTemporaryFile("w", suffix=".config")
        self.addCleanup(file.close)
        file.write("# i3 config file (v4)\n")
        file.flush()
        manager = WindowManager("i3", "i3", "--replace", "-c", file.name)
        manager.__enter__()
        self.addCleanup(manager.__exit__)

    def test_the_popover_comes_up_and_leaves_the_keyboard_to_the_application_in_front(self):
        with targets.start("xterm") as terminal, windows.UncontrolledProgram() as program:
            program.window(program.POPOVER).find("Ready")
            self.assertTrue(terminal.has_focus())

    def test_the_popover_keeps_its_tile_and_can_be_closed(self):
        with targets.start("xterm"), windows.UncontrolledProgram() as program:
            popover = program.window(program.POPOVER)
            popover.find("Start Recording", BUTTON)
            tile = program.native_extents(program.POPOVER)
            dictation.model_file().unlink()
            popover.find("Refresh setup state", BUTTON).press()
            popover.find("Setup Needed")
            self.assertEqual(program.native_extents(program.POPOVER), tile)
            self.assertEqual(popover.extents, tile)
            subprocess.run(["wmctrl", "-c", program.POPOVER], check=True)
            program.wait_until_closed(program.POPOVER)


if __name__ == "__main__":
    unittest.main()
