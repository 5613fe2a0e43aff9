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
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=60).stdout


def visible_windows(window_class):
    command = ["xdotool", "search", "--onlyvisible", "--class", window_class]
    return len(subprocess.run(command, capture_output=True, text=True, check=False).stdout.split())


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


class ArrivalTestCase(unittest.TestCase):
    def setUp(self):
        dictation.prepare_profile(slots=["org.xfce.mousepad", "debian-xterm"])

    def check_arrival(self, target, text, sentence, before=""):
        """The sentence, as it was transcribed, is the one thing that was added to the target's text."""
        self.assertEqual(words(text), words(dictation.sample_text(sentence)))
        self.assertEqual(target.wait_for_text(before + text), before + text)

    def check_logged(self, sentence, desktop_id, slot=None):
        event = dictation.usage_events()[-1]
        self.assertEqual(event["targetBundleIdentifier"], desktop_id)
        self.assertEqual(event.get("slotIndex"), slot)
        self.assertEqual(event["wordCount"], len(dictation.sample_text(sentence).split()))


class FrontApplication(ArrivalTestCase):
    def dictate_sentences_into(self, name):
        with targets.start(name) as target, dictation.Dictation() as session:
            arrived = ""
            for sentence in SENTENCES:
                with self.subTest(sentence=sentence.stem):
                    text = session.speak_and_insert(sentence)
                    self.check_arrival(target, text, sentence, before=arrived)
                    self.check_logged(sentence, target.desktop_id)
                    arrived += text

    def test_five_sentences_into_an_editor(self):
        self.dictate_sentences_into("mousepad")

    def test_five_sentences_into_a_terminal(self):
        self.dictate_sentences_into("xterm")

    def test_five_sentences_into_a_browsers_text_field(self):
        self.dictate_sentences_into("chromium")

    def test_the_destination_is_that_of_the_start_even_if_the_focus_moves(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            editor.activate()
            session.start_recording()
            dictation.play(SENTENCES[3])
            terminal.activate()
            session.stop_recording()
            self.check_arrival(editor, session.wait_for_transcript(), SENTENCES[3])
            self.assertEqual(terminal.text(), "")
            self.check_logged(SENTENCES[3], "org.xfce.mousepad")

    def test_with_any_keyboard_layout(self):
        self.addCleanup(subprocess.run, ["setxkbmap", "us"], check=True)
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            arrived = ""
            for layout in (["de"], ["fr"], ["ru"], ["us", "dvorak"]):
                with self.subTest(layout=layout):
                    subprocess.run(["setxkbmap", *layout], check=True)
                    text = session.speak_and_insert(SENTENCES[2])
                    self.check_arrival(editor, text, SENTENCES[2], before=arrived)
                    arrived += text

    def test_with_a_menu_open_at_the_start(self):
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            dictation.press("shift+F10")
            self.assertTrue(targets._wait_for(lambda: visible_windows("mousepad") > 1, targets.START_LIMIT))
            session.start_recording()
            dictation.press("Escape")
            dictation.play(SENTENCES[2])
            session.stop_recording()
            self.check_arrival(editor, session.wait_for_transcript(), SENTENCES[2])

    def test_the_transcript_stays_on_the_clipboard(self):
        with targets.start("mousepad"), dictation.Dictation() as session:
            text = session.speak_and_insert(SENTENCES[4])
            self.assertEqual(clipboard(), text)
            self.assertEqual(clipboard("primary"), text)


class SlotApplication(ArrivalTestCase):
    def dictate_into_slot_1(self, session, editor):
        text = session.speak_and_insert(SENTENCES[1], slot=1)
        self.check_arrival(editor, text, SENTENCES[1])
        self.check_logged(SENTENCES[1], "org.xfce.mousepad", slot=1)

    def test_in_front(self):
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            self.dictate_into_slot_1(session, editor)

    def test_behind(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            self.dictate_into_slot_1(session, editor)
            self.assertEqual(terminal.text(), "")

    def test_minimised(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            subprocess.run(["xdotool", "windowminimize", "--sync", str(editor.window)], check=True)
            terminal.activate()
            self.dictate_into_slot_1(session, editor)
            self.assertEqual(terminal.text(), "")

    def test_on_another_desktop(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            subprocess.run(["wmctrl", "-i", "-r", hex(editor.window), "-t", "2"], check=True)
            self.dictate_into_slot_1(session, editor)
            self.assertEqual(terminal.text(), "")

    def test_not_running(self):
        with dictation.Dictation() as session, StartedMousepad("mousepad") as editor:
            text = session.speak_and_insert(SENTENCES[1], slot=1)
            editor.launch()
            self.check_arrival(editor, text, SENTENCES[1])
            self.check_logged(SENTENCES[1], "org.xfce.mousepad", slot=1)
            # What we need for ourselves is not passed on.
            self.assertNotIn(b"QT_QPA_PLATFORM", Path(f"/proc/{editor._pid}/environ").read_bytes())

    def test_any_shortcut_ends_the_recording_and_the_destination_stays(self):
        with targets.start("mousepad") as editor, targets.start("xterm") as terminal, dictation.Dictation() as session:
            for ending in (2, None):
                with self.subTest(ending=ending):
                    before = editor.text()
                    session.start_recording(slot=1)
                    dictation.play(SENTENCES[2])
                    session.stop_recording(slot=ending)
                    self.check_arrival(editor, session.wait_for_transcript(), SENTENCES[2], before)
                    self.check_logged(SENTENCES[2], "org.xfce.mousepad", slot=1)
            self.assertEqual(terminal.text(), "")


if __name__ == "__main__":
    unittest.main()
