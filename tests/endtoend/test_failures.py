"""What goes wrong in the real world gets a clear message, and nothing that was said is lost."""

import os
import stat
import subprocess
import tempfile
import time
import unittest
import wave
from pathlib import Path

import dictation
import targets
from test_applications import SENTENCES, clipboard, words

VIRTUAL_SOUND = dictation.REPOSITORY / "tools" / "virtual-sound"


def pactl(*arguments):
    return subprocess.run(["pactl", *arguments], check=True, capture_output=True, text=True, timeout=20).stdout


def unplug_microphone():
    for line in pactl("list", "short", "modules").splitlines():
        number, name, *_ = line.split("\t")
        if name == "module-remap-source":
            pactl("unload-module", number)


def seconds(recording):
    with wave.open(str(recording)) as file:
        return file.getnframes() / file.getframerate()


def tool(script):
    """An executable that stands where whisper-cli is configured."""
    path = Path(os.environ["TMPDIR"]) / "tool"
    path.write_text("#!/bin/sh\n" + script)
    path.chmod(stat.S_IRWXU)
    return str(path)


class DictationTestCase(unittest.TestCase):
    def setUp(self):
        dictation.prepare_profile()

    def message_of_start(self, session):
        session.send("toggle")
        return session.wait_for(event="error")["message"]

    def message_of_dictation(self, session, recording=None):
        session.start_recording()
        if recording:
            dictation.play(recording)
        session.stop_recording()
        return session.wait_for(event="error")["message"]

    def wait_until(self, condition, limit=20.0):
        deadline = time.monotonic() + limit
        while not condition():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)


class Failures(DictationTestCase):
    def test_silence_is_no_speech(self):
        with dictation.Dictation() as session:
            session.start_recording()
            time.sleep(1)
            session.stop_recording()
            self.assertEqual(session.wait_for(event="error")["message"], "No speech detected.")

    def test_a_model_that_is_missing_and_cannot_be_had(self):
        dictation.model_file().unlink()
        with dictation.Dictation() as session:
            message = self.message_of_dictation(session)
            self.assertIn("127.0.0.1", message)
            self.assertFalse(dictation.model_file().exists())

    def test_a_corrupt_and_an_empty_model(self):
        for contents in (os.urandom(100_000), b""):
            dictation.model_file().write_bytes(contents)
            with dictation.Dictation() as session:
                message = self.message_of_dictation(session, SENTENCES[2])
                self.assertTrue(message.startswith("whisper-cli failed with status 3. "), message)
                self.assertIn("failed to initialize whisper context", message)
            self.assertEqual(dictation.model_file().read_bytes(), contents)

    def test_a_tool_that_crashes(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo half a word >&2; kill -SEGV $$\n"))
        with dictation.Dictation() as session:
            self.assertEqual(self.message_of_dictation(session), "whisper-cli failed with status 11. half a word\n")

    def test_a_tool_that_prints_megabytes(self):
        script = "head -c 20000000 /dev/zero | tr '\\0' x >&2\nhead -c 20000000 /dev/zero | tr '\\0' ' '\necho Loud.\n"
        dictation.prepare_profile(whisperCLIPath=tool(script))
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            session.start_recording()
            session.stop_recording()
            self.assertEqual(session.wait_for(event="inserted")["text"], "Loud.")
            self.assertEqual(editor.wait_for_text("Loud."), "Loud.")

    def test_a_tool_that_never_ends_ends_with_the_program(self):
        for end in ("quit", "kill"):
            with self.subTest(end=end):
                mark = Path(os.environ["TMPDIR"]) / f"running-{end}"
                dictation.prepare_profile(whisperCLIPath=tool(f"echo $$ >{mark}\nexec sleep 1000\n"))
                session = dictation.Dictation()
                session.start_recording()
                session.stop_recording()
                self.wait_until(mark.exists)
                self.wait_until(lambda: mark.read_text() != "")
                child = int(mark.read_text())
                if end == "quit":
                    self.assertEqual(session.quit(), (0, ""))
                else:
                    session.kill()
                self.wait_until(lambda: not Path(f"/proc/{child}").exists())

    def test_a_target_that_closes_before_the_paste_leaves_the_text_on_the_clipboard(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        with dictation.Dictation() as session:
            with targets.start("xterm"):
                session.start_recording()
            session.stop_recording()
            # The terminal is installed, so it is started again for the text.
            inserted = session.wait_for(event="inserted")
            self.assertEqual(clipboard(), inserted["text"])

    def test_a_temporary_folder_that_belongs_to_somebody_else(self):
        with tempfile.TemporaryDirectory() as parent:
            folder = Path(parent) / f"kestrova-{os.geteuid()}"
            folder.symlink_to("/proc")
            with dictation.Dictation({"TMPDIR": parent}) as session:
                message = self.message_of_start(session)
        self.assertEqual(message, f"The folder for temporary files, {folder}, cannot be used: it is not a folder.")

    def test_damaged_settings_are_as_good_as_none(self):
        dictation.settings_file().write_text('{"shortcut":')
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            inserted = session.speak_and_insert(SENTENCES[2])
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])
        self.assertEqual(dictation.settings_file().read_text(), '{"shortcut":')


class SoundFailures(DictationTestCase):
    """Each ends with a sound server like the one at its start."""

    def setUp(self):
        super().setUp()
        self.addCleanup(self.restart_sound)

    def restart_sound(self):
        subprocess.run([VIRTUAL_SOUND, "stop"], check=False, capture_output=True)
        subprocess.run([VIRTUAL_SOUND, "start"], check=True, capture_output=True)

    def test_no_sound_server(self):
        subprocess.run([VIRTUAL_SOUND, "stop"], check=True)
        with dictation.Dictation() as session:
            self.assertEqual(self.message_of_start(session), "Could not start audio recording.")
            subprocess.run([VIRTUAL_SOUND, "start"], check=True)
            session.start_recording()

    def test_no_microphone(self):
        unplug_microphone()
        with dictation.Dictation() as session:
            self.assertEqual(self.message_of_start(session), "Could not start audio recording.")

    def dictation_interrupted_by(self, interruption):
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            session.start_recording()
            dictation.play(SENTENCES[0])
            interruption()
            session.stop_recording()
            inserted = session.wait_for(event="inserted")
            self.assertEqual(words(inserted["text"]), words(dictation.sample_text(SENTENCES[0])))
            self.assertEqual(editor.wait_for_text(inserted["text"]), inserted["text"])
            self.assertAlmostEqual(seconds(dictation.recordings()[-1]), inserted["seconds"], delta=0.001)

    def test_a_microphone_pulled_during_the_recording(self):
        self.dictation_interrupted_by(unplug_microphone)

    def test_a_sound_server_killed_during_the_recording(self):
        self.dictation_interrupted_by(lambda: subprocess.run([VIRTUAL_SOUND, "stop"], check=True))


if __name__ == "__main__":
    unittest.main()
