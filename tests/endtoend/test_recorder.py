"""Shortcuts recorded with real keys: what is taken, what is refused, and that the new ones work."""

import ctypes
import subprocess
import unittest

import dictation
import targets
import windows
from test_settings import SettingsTestCase
from windows import BUTTON, DIALOG

DIALOG_TITLE = "Record Shortcut"
FIRST_MESSAGE = "Press a key combination now."
OPTION, CONTROL = 2048, 4096  # bits of a stored shortcut


class Grab:
    """Another program, such as a window manager, that has taken Super+J for itself."""

    KEY = "super+j"

    def __enter__(self):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(None))
        root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._display))
        j, mod4, asynchronous = 44, 1 << 6, 1
        self._x11.XGrabKey(self._display, j, mod4, root, 0, asynchronous, asynchronous)
        self._x11.XSync(self._display, 0)
        return self

    def __exit__(self, *_):
        self._x11.XCloseDisplay(self._display)


class MainShortcut(SettingsTestCase):
    def open_recorder(self, settings):
        settings.find(DIALOG_TITLE, BUTTON).click()
        settings.find(FIRST_MESSAGE)

    def record(self, settings, chord, shown):
        self.open_recorder(settings)
        dictation.press(chord)
        dialog = settings.find(DIALOG_TITLE, DIALOG)
        dialog.find(shown)
        dialog.find("Save", BUTTON).click()
        settings.wait_until_gone(DIALOG_TITLE, DIALOG)

    def check_it_dictates(self, program, chord):
        dictation.press(chord)
        program.wait_for_state("recording")
        dictation.press(chord)
        program.wait_for(event="state", state="error")  # silence

    def test_the_new_shortcut_works_and_the_old_one_no_longer(self):
        with targets.start("mousepad") as editor, windows.Program() as program:
            settings = self.open_settings(program)
            self.record(settings, "ctrl+alt+k", "⌥⌃K")
            recorded = {"keyCode": 40, "modifiers": CONTROL + OPTION}
            dictation.wait_for_settings(lambda stored: stored["shortcut"] == recorded)
            editor.activate()
            dictation.press(dictation.MAIN_SHORTCUT)
            self.check_it_dictates(program, "ctrl+alt+k")
            states = [event["state"] for event in program.events if event["event"] == "state"]
            self.assertEqual(states.count("recording"), 1)

    def test_the_shortcut_that_is_being_replaced_starts_nothing_while_it_is_recorded(self):
        with windows.Program() as program:
            settings = self.open_settings(program)
            self.record(settings, dictation.MAIN_SHORTCUT, "⌘⇧Space")
            self.assertFalse([event for event in program.events if event.get("state") == "recording"])
            self.check_it_dictates(program, dictation.MAIN_SHORTCUT)

    def test_a_slots_shortcut_is_refused_also_of_an_empty_slot(self):
        message = "That shortcut conflicts with hotbar slot 9."
        with windows.Program() as program:
            settings = self.open_settings(program)
            self.record(settings, "super+alt+9", "⌘⌥9")
            settings.find(message)
            self.assertEqual(program.wait_for_error(), message)
            self.assertEqual(dictation.stored_settings()["shortcut"], dictation.SETTINGS["shortcut"])
            self.check_it_dictates(program, dictation.MAIN_SHORTCUT)

    def test_a_combination_that_another_program_has_taken_is_recorded_and_works(self):
        with Grab() as grab, windows.Program() as program:
            settings = self.open_settings(program)
            self.record(settings, grab.KEY, "⌘J")
            self.check_it_dictates(program, grab.KEY)

    def test_escape_changes_nothing(self):
        with windows.Program() as program:
            settings = self.open_settings(program)
            before = dictation.settings_file().read_bytes()
            self.open_recorder(settings)
            dictation.press("ctrl+alt+k")
            settings.find("⌥⌃K")
            dictation.press("Escape")
            settings.wait_until_gone(DIALOG_TITLE, DIALOG)
            self.assertEqual(dictation.settings_file().read_bytes(), before)
            self.check_it_dictates(program, dictation.MAIN_SHORTCUT)

    def test_what_cannot_be_a_shortcut_is_told(self):
        with windows.Program() as program:
            settings = self.open_settings(program)
            self.open_recorder(settings)
            dictation.press("k")
            settings.find("Add at least one modifier key.")
            # Nothing is captured: the button does nothing.
            settings.find("Save", BUTTON).click()
            subprocess.run(["xdotool", "keydown", "ctrl", "keydown", "alt", "key", "k"], check=True)
            settings.find("Shortcut captured. Press Save to apply.")
            subprocess.run(["xdotool", "keyup", "alt", "keyup", "ctrl"], check=True)
            settings.find("Press a non-modifier key while holding your modifiers.")
            settings.find("⌥⌃K")
            dictation.press("k")
            settings.find("Waiting for input...")
            settings.find("Cancel", BUTTON).click()
            settings.wait_until_gone("Waiting for input...")
            self.assertEqual(dictation.stored_settings()["shortcut"], dictation.SETTINGS["shortcut"])

    def test_reset_to_default(self):
        dictation.prepare_profile(shortcut={"keyCode": 40, "modifiers": CONTROL + OPTION})
        with windows.Program() as program:
            settings = self.open_settings(program)
            settings.find("Reset to Default", BUTTON).click()
            self.wait_until_stored("shortcut", dictation.SETTINGS["shortcut"])
            self.check_it_dictates(program, dictation.MAIN_SHORTCUT)


if __name__ == "__main__":
    unittest.main()
