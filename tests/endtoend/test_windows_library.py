"""The library of the windows is not as it was when the program was started."""

import shutil
import tempfile
import unittest
from pathlib import Path

import dictation
import windows
from test_failures import DictationTestCase

STAMP = b"kestrova-interface-"


class WindowsLibrary(DictationTestCase):
    def setUp(self):
        super().setUp()
        folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, folder)
        self.program = shutil.copy(dictation.PROGRAM, folder)
        self.whole = dictation.PROGRAM.with_name("kestrova-windows.so")
        self.library = Path(shutil.copy(self.whole, folder))

    def check_message(self, change, expected):
        """The change is told in a window, from which the program can be quit, and dictation goes on before."""
        session = windows.Program(program=self.program)
        self.addCleanup(session.process.kill)
        change()
        for window in ("dashboard", "popover"):
            session.send(f"open {window}")
            self.assertIn(expected, session.wait_for(event="failed")["message"])
        session.start_recording()
        notice = session.window("Kestrova")
        self.assertTrue(any(expected in text for text in notice.texts()), notice.texts())
        close = notice.find("Close", windows.BUTTON)
        windows.wait_for(lambda: close.has_state("focused"), "the harmless button has the keyboard")
        notice.find("Quit Kestrova", windows.BUTTON).click()
        status, errors = session.ended()
        self.assertEqual(status, 0)
        told = [line for line in errors.splitlines() if line.startswith("kestrova: ") and expected in line]
        self.assertEqual(len(told), 2, errors)

    def replace(self, contents):
        new = self.library.with_suffix(".new")
        new.write_bytes(contents)
        new.rename(self.library)

    def test_one_that_is_missing(self):
        self.check_message(self.library.unlink, "A part of Kestrova is missing. Install Kestrova again.")

    def test_one_of_another_build(self):
        contents = self.whole.read_bytes()
        self.assertEqual(contents.count(STAMP), 1)
        position = contents.index(STAMP) + len(STAMP)
        other = contents[:position] + bytes(reversed(contents[position : position + 64])) + contents[position + 64 :]
        self.check_message(lambda: self.replace(other), "Kestrova has been updated since it was started.")

    def test_half_of_one(self):
        contents = self.whole.read_bytes()
        self.check_message(
            lambda: self.library.write_bytes(contents[: len(contents) // 2]),
            "Kestrova has been updated since it was started.",
        )

    def test_one_that_is_no_library(self):
        self.check_message(lambda: self.replace(b"no"), "Kestrova has been updated since it was started.")

    def test_one_that_is_there_again(self):
        session = dictation.Dictation(program=self.program)
        self.addCleanup(session.process.kill)
        self.library.unlink()
        session.send("open dashboard")
        session.wait_for(event="failed")
        shutil.copy(self.whole, self.library)
        session.send("open dashboard")
        session.wait_for(event="shown", window="dashboard")
        self.assertEqual(session.quit()[0], 0)

    def test_the_same_build_installed_again(self):
        with dictation.Dictation(program=self.program) as session:
            self.replace(self.whole.read_bytes())
            session.send("open dashboard")
            session.wait_for(event="shown", window="dashboard")


class FewDescriptors(DictationTestCase):
    def test_too_few_for_a_window_is_an_error(self):
        for limit in (24, 28, 32, 36, 40, 48, 56):
            with self.subTest(limit=limit):
                session = dictation.Dictation(prefix=["prlimit", f"--nofile={limit}"])
                self.addCleanup(session.process.kill)
                for number, window in enumerate(("dashboard", "settings", "popover"), start=1):
                    session.send(f"open {window}")
                    self.wait_until(lambda: self.answers(session) == number or session.process.poll() is not None)
                self.assertEqual(session.quit()[0], 0)

    @staticmethod
    def answers(session):
        """How many windows have been shown or could not be."""
        return sum(event["event"] in ("shown", "failed") for event in list(session.events))


if __name__ == "__main__":
    unittest.main()
