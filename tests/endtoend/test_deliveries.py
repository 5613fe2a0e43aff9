"""Whether a text arrived is known from who asks for it, and a text that did not arrive is not lost."""

import os
import signal
import subprocess
from pathlib import Path

import dictation
import targets
import windows
from test_applications import clipboard
from test_failures import DictationTestCase, tool
from windows import BUTTON

NOT_PASTED = "Not pasted: left on the clipboard."
# Puts a text of its own on the clipboard again and again.
GRABBER = "while :; do printf theirs | xclip -selection clipboard; sleep 0.02; done"


class DeliveryTestCase(DictationTestCase):
    def setUp(self):
        self.said = Path(os.environ["TMPDIR"]) / "said"
        dictation.prepare_profile(whisperCLIPath=tool(f"cat {self.said}\n"))

    def dictate(self, session, text):
        """A dictation that is heard as this text; returns what is known of its delivery when it ends."""
        self.said.write_text(text)
        session.start_recording()
        session.stop_recording()
        transcript = session.wait_for(event="transcript")
        self.assertEqual(transcript["text"], text)
        session.wait_for_state("idle")
        return transcript["delivery"]

    def start(self, *command):
        """A program that ends with the test."""
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(process.wait)
        self.addCleanup(os.killpg, process.pid, signal.SIGKILL)
        return process

    def start_deaf_window(self):
        """A window that takes keys and never asks for a text, as a question to be answered by Yes or No."""
        self.start("xev", "-event", "keyboard")
        self.wait_until(lambda: targets._output("xdotool", "getactivewindow", "getwindowname") == "Event Tester")


class Deliveries(DeliveryTestCase):
    def test_an_application_that_asks_has_the_text(self):
        for name in ("mousepad", "xterm", "chromium"):
            with self.subTest(target=name), targets.start(name) as target, dictation.Dictation() as session:
                if self.dictate(session, "hello") != "requested":  # on a busy machine it may take its time
                    session.wait_for(event="delivery", delivery="requested")
                self.assertEqual(target.wait_for_text("hello"), "hello")

    def test_a_window_that_does_not_ask_leaves_the_text_on_the_clipboard(self):
        counted = len(dictation.usage_events())
        self.start_deaf_window()
        with dictation.Dictation() as session:
            self.assertEqual(self.dictate(session, "hello"), "leftOnClipboard")
            self.assertEqual(clipboard(), "hello")
            dictation.wait_until(lambda: len(dictation.usage_events()) > counted, "event in the usage log")
            self.assertEqual(len(dictation.usage_events()), counted + 1)

    def test_a_clipboard_that_is_taken_away_is_told(self):
        self.start("sh", "-c", GRABBER)
        self.wait_until(lambda: subprocess.run(["xclip", "-o", "-sel", "c"], capture_output=True).stdout == b"theirs")
        with targets.start("mousepad"), dictation.Dictation() as session:
            self.assertEqual(self.dictate(session, "hello"), "replaced")

    def test_a_target_that_hung_during_two_dictations_gets_both_texts(self):
        for name in ("mousepad", "xterm"):
            with self.subTest(target=name), targets.start(name) as target, dictation.Dictation() as session:
                target._signal_session(signal.SIGSTOP)
                self.assertEqual(self.dictate(session, "first"), "leftOnClipboard")
                self.assertEqual(self.dictate(session, "second"), "leftOnClipboard")
                target._signal_session(signal.SIGCONT)
                session.wait_for(event="delivery", delivery="requested")
                self.assertEqual(target.wait_for_text("firstsecond"), "firstsecond")


class Notice(DeliveryTestCase):
    def test_the_popover_says_so_and_has_the_texts_at_hand(self):
        self.start_deaf_window()
        with windows.Program() as program:
            for text in ("first", "second"):
                self.dictate(program, text)
            popover = program.open_popover()
            self.assertTrue(popover.has(NOT_PASTED))
            popover.find("Copy earlier transcript", BUTTON).press()
            self.wait_until(lambda: clipboard() == "first")
            popover.wait_until_gone("Copy earlier transcript", BUTTON)
            popover.find("Copy last transcript", BUTTON).press()
            self.wait_until(lambda: clipboard() == "second")

    def test_a_delivery_that_was_asked_for_needs_no_words(self):
        with targets.start("mousepad") as target, windows.Program() as program:
            if self.dictate(program, "hello") != "requested":
                program.wait_for(event="delivery", delivery="requested")
            self.assertEqual(target.wait_for_text("hello"), "hello")
            popover = program.open_popover()
            self.assertTrue(popover.has("Last Transcript"))
            self.assertFalse(popover.has(role=BUTTON, name="Copy last transcript"))
