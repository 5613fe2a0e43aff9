"""Spoken sentences arrive, word for word, in real applications."""

import os
import signal
import subprocess
import unittest
from pathlib import Path

import dictation
import targets

SENTENCES = [dictation.SAMPLES / f"{number:02}.wav" for number in (1, 2, 3, 4, 5)]


def words(text):
    """The words alone: punctuation and capitals are the model's own."""
    return [word.strip(".,?!").lower() for word in text.split()]


def clipboard(selection="clipboard"):
    command = ["xclip", "-o", "-selection", selection]
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=10).stdout


class StartedMousepad(targets.Mousepad):
    """A mousepad that somebody else started: it is found by its name."""

    _pid = None

    def launch(self):
        self.prepare()
        if not targets._wait_for(self.is_ready, targets.START_LIMIT):
            raise targets.TargetError("no mousepad was started")

    def _is_ours(self, application):
        is_ours = application.get_name() == "mousepad"
        if is_ours:
            self._pid = application.get_process_id()
        return is_ours

    def close(self):
        # Another test must not find it as the running instance.
        if self._pid:
            os.kill(self._pid, signal.SIGKILL)
            targets._wait_for(lambda: not Path(f"/proc/{self._pid}").exists(), targets.CLOSE_LIMIT)
        super().close()


class Applications(unittest.TestCase):
    def setUp(self):
        dictation.prepare_profile()

    def dictate_sentences_into(self, name):
        with targets.start(name) as target, dictation.Dictation() as session:
            arrived = ""
            for sentence in SENTENCES:
                with self.subTest(sentence=sentence.stem):
                    inserted = session.speak_and_insert(sentence)
                    self.assertEqual(words(inserted["text"]), words(dictation.sample_text(sentence)))
                    self.assertEqual(inserted["words"], len(dictation.sample_text(sentence).split()))
                    self.assertEqual(inserted["target"], target.desktop_id)
                    arrived += inserted["text"]
                    self.assertEqual(target.wait_for_text(arrived), arrived)

    def test_five_sentences_into_an_editor(self):
        self.dictate_sentences_into("mousepad")

    def test_five_sentences_into_a_terminal(self):
        self.dictate_sentences_into("xterm")

    def test_five_sentences_into_a_browsers_text_field(self):
        self.dictate_sentences_into("chromium")

    def test_an_application_that_had_to_be_started(self):
        with dictation.Dictation() as session, StartedMousepad("mousepad") as editor:
            inserted = session.speak_and_insert(SENTENCES[0], target="org.xfce.mousepad")
            editor.launch()
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])
            self.assertEqual(words(inserted["text"]), words(dictation.sample_text(SENTENCES[0])))

    def test_a_minimised_application(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            subprocess.run(["xdotool", "windowminimize", "--sync", str(editor.window)], check=True)
            terminal.activate()
            inserted = session.speak_and_insert(SENTENCES[1], target="org.xfce.mousepad")
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])
            self.assertEqual(terminal.text(), "")
            self.assertEqual(words(inserted["text"]), words(dictation.sample_text(SENTENCES[1])))

    def test_an_application_on_another_desktop(self):
        with targets.start("mousepad") as editor, targets.start("xterm"), dictation.Dictation() as session:
            subprocess.run(["wmctrl", "-i", "-r", hex(editor.window), "-t", "2"], check=True)
            inserted = session.speak_and_insert(SENTENCES[2], target="org.xfce.mousepad")
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])

    def test_the_destination_is_that_of_the_start_even_if_the_focus_moves(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            editor.activate()
            session.start_recording()
            dictation.play(SENTENCES[3])
            terminal.activate()
            session.stop_recording()
            inserted = session.wait_for(event="inserted")
            self.assertEqual(inserted["target"], "org.xfce.mousepad")
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])
            self.assertEqual(terminal.text(), "")

    def test_the_transcript_stays_on_the_clipboard(self):
        with targets.start("mousepad"), dictation.Dictation() as session:
            inserted = session.speak_and_insert(SENTENCES[4])
            self.assertEqual(clipboard(), inserted["text"])
            self.assertEqual(clipboard("primary"), inserted["text"])


if __name__ == "__main__":
    unittest.main()
