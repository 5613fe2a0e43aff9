"""Whatever happens between the last word and the paste, the text goes to its destination and nowhere else."""

import os
import signal
import subprocess
import unittest
from pathlib import Path

import dictation
import targets
from test_applications import SENTENCES, ArrivalTestCase

SLOW_START = 7  # seconds


def is_clipboard_written():
    command = ["xclip", "-o", "-selection", "clipboard"]
    return subprocess.run(command, capture_output=True, check=False, timeout=10).returncode == 0


class HeldKeys(ArrivalTestCase):
    def test_alt_that_is_let_go_on_another_window(self):
        """As with Alt+Tab while the transcription runs."""
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            editor.activate()
            session.start_recording()
            dictation.play(SENTENCES[3])
            session.stop_recording()
            self.addCleanup(subprocess.run, ["xdotool", "keyup", "alt"], check=True)
            subprocess.run(["xdotool", "keydown", "alt"], check=True)
            # The insertion has begun, and the editor was in front.
            self.assertTrue(targets._wait_for(is_clipboard_written, dictation.EVENT_LIMIT))
            terminal.activate()
            subprocess.run(["xdotool", "keyup", "alt"], check=True)
            self.check_arrival(editor, session.wait_for_transcript(), SENTENCES[3])
            self.assertEqual(terminal.text(), "")


class SlowTerminal(targets.Xterm):
    """An application of its own, which only its desktop entry starts; it takes its time to show a window."""

    desktop_id = "org.example.slow"

    def install(self):
        folder = Path(os.environ["XDG_DATA_HOME"]) / "applications"
        folder.mkdir(parents=True, exist_ok=True)
        self._starts, program = self._folder / "starts", self._folder / "program"
        program.write_text(
            f"#!/bin/sh\necho $$ >> {self._starts}\nsleep {SLOW_START}\n"
            f"exec xterm -name SlowTerminal -e sh -c '{self.shell_command()}'\n"
        )
        program.chmod(0o700)
        folder.joinpath(f"{self.desktop_id}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Slow\nStartupWMClass=SlowTerminal\nExec={program}\n"
        )

    def starts(self):
        """The processes that were started."""
        return [int(line) for line in self._starts.read_text().split()]

    def close(self):
        for process in self.starts():
            os.kill(process, signal.SIGKILL)
        super().close()


class SlowStarter(ArrivalTestCase):
    def test_it_is_started_once_and_gets_the_text(self):
        dictation.prepare_profile(slots=[SlowTerminal.desktop_id])
        with dictation.Dictation() as session, SlowTerminal("xterm") as slow:
            slow.install()
            text = session.speak_and_insert(SENTENCES[1], slot=1)
            self.check_arrival(slow, text, SENTENCES[1])
            self.check_logged(SENTENCES[1], SlowTerminal.desktop_id, slot=1)
            self.assertEqual(len(slow.starts()), 1)


if __name__ == "__main__":
    unittest.main()
