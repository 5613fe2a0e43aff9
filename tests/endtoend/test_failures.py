"""What goes wrong in the real world gets a clear message, and nothing that was said is lost."""

import os
import shutil
import signal
import stat
import subprocess
import tempfile
import time
import unittest
import wave
from pathlib import Path

import dictation
import targets
import windows
from test_applications import SENTENCES, clipboard, words

VIRTUAL_SOUND = dictation.REPOSITORY / "tools" / "virtual-sound"
MODEL_MISSING = "Model is not ready. Download ggml-base.bin before recording."
NO_RECORDING = "Could not start audio recording."
TOOL_MISSING = "whisper-cli not found. Install whisper.cpp and update Settings."

# A test run in the background may be told to ignore SIGINT, which a program would go on doing.
WITH_DEFAULT_SIGNALS = ["env", "--default-signal=INT,HUP"]
# Where no whisper-cli is found: neither in the usual folder, which is hidden, nor on the search path.
HIDE_TOOL = 'mount -t tmpfs none /usr/local/bin && PATH=/usr/bin:/bin exec "$@"'
WITHOUT_TOOL = ["unshare", "--mount", "sh", "-c", HIDE_TOOL, "sh"]
if os.geteuid() != 0:  # as root only for the mount: the session's buses know their user by the number
    WITHOUT_TOOL.insert(1, "--map-root-user")
    WITHOUT_TOOL += ["unshare", f"--map-user={os.geteuid()}", f"--map-group={os.getegid()}"]


def pactl(*arguments):
    return subprocess.run(["pactl", *arguments], check=True, capture_output=True, text=True, timeout=60).stdout


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


def closed_gate():
    """A file that is not there yet; a tool may wait for it."""
    gate = Path(os.environ["TMPDIR"]) / "gate"
    gate.unlink(missing_ok=True)
    return gate


class DictationTestCase(unittest.TestCase):
    def setUp(self):
        dictation.prepare_profile()

    def message_of_start(self, session, slot=None):
        dictation.press(dictation.shortcut(slot))
        return session.wait_for_error()

    def message_of_dictation(self, session, recording=None):
        session.start_recording()
        if recording:
            dictation.play(recording)
        session.stop_recording()
        return session.wait_for_error()

    def wait_until(self, condition, limit=60.0):
        deadline = time.monotonic() + limit
        while not condition():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)

    def transcribe_without_end(self, environment=None):
        """A dictation whose transcription never ends; returns it and the tool's process identifier."""
        mark = Path(os.environ["TMPDIR"]) / "running"
        mark.unlink(missing_ok=True)
        # The sixth argument is where the transcript goes.
        script = f'echo half >"$6.txt"; echo $$ >{mark}.new; mv {mark}.new {mark}; exec sleep 1000\n'
        dictation.prepare_profile(whisperCLIPath=tool(script))
        session = dictation.Dictation(environment, prefix=WITH_DEFAULT_SIGNALS)
        session.send("toggle")
        session.wait_for_state("recording")
        session.send("toggle")
        self.wait_until(mark.exists)
        return session, int(mark.read_text())

    def check_nothing_is_left(self, child):
        """Neither the tool nor what it wrote."""
        self.assertFalse(Path(f"/proc/{child}").exists())
        self.assertEqual(list(dictation.temporary_folder().glob("kestrova-transcript-*")), [])

    @staticmethod
    def remove_transcripts():
        """What tools had written that were ended in haste."""
        for transcript in dictation.temporary_folder().glob("kestrova-transcript-*"):
            transcript.unlink()


class Failures(DictationTestCase):
    def test_silence_is_no_speech(self):
        with dictation.Dictation() as session:
            session.start_recording()
            time.sleep(1)
            session.stop_recording()
            self.assertEqual(session.wait_for_error(), "No speech detected.")

    def test_an_unassigned_slot(self):
        with dictation.Dictation() as session:
            self.assertEqual(
                self.message_of_start(session, slot=4),
                "Hotbar slot 4 is unassigned. Assign an app in Dashboard > Hotbar Apps.",
            )

    def test_an_error_is_gone_with_the_next_dictation(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        with dictation.Dictation() as session:
            self.message_of_start(session, slot=4)
            session.start_recording()
            session.stop_recording()
            self.assertEqual(session.wait_for_transcript(), "Hello world.")

    def test_any_number_of_cancelled_tools_that_hang(self):
        """None of them holds up the next dictation, and all end with the program."""
        gate, hung = closed_gate(), Path(os.environ["TMPDIR"]) / "hung"
        hung.write_text("")
        script = f"[ -e {gate} ] && exec echo Hello world.\necho $$ >>{hung}; exec sleep 1000\n"
        dictation.prepare_profile(whisperCLIPath=tool(script))
        with dictation.Dictation() as session:
            for count in range(1, 21):
                session.send("toggle")
                session.wait_for_state("recording")
                session.send("toggle")
                self.wait_until(lambda: len(hung.read_text().splitlines()) == count)
                session.send("cancel")
                session.wait_for_state("idle")
            gate.touch()
            session.send("toggle")
            session.wait_for_state("recording")
            session.send("toggle")
            self.assertEqual(session.wait_for_transcript(), "Hello world.")
        for child in map(int, hung.read_text().split()):
            self.check_nothing_is_left(child)

    def test_presses_while_processing_are_ignored_and_the_dictation_can_be_cancelled(self):
        gate = closed_gate()
        dictation.prepare_profile(whisperCLIPath=tool(f"until [ -e {gate} ]; do sleep 0.01; done; echo Hello world.\n"))
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            session.start_recording()
            session.stop_recording()
            dictation.press(dictation.MAIN_SHORTCUT, "super+alt+1", dictation.MAIN_SHORTCUT)
            session.wait_until_settled()  # commands come another way, and might overtake the keys
            session.send("cancel")
            session.wait_for_state("idle")
            gate.touch()
            session.start_recording()
            session.stop_recording()
            session.wait_for_transcript()
            states = [event["state"] for event in session.events if event["event"] == "state"]
            self.assertEqual(states, ["recording", "processing", "idle"] * 2)
            # Had the cancelled one been inserted after all, the text would be there twice.
            self.assertEqual(editor.wait_for_text("Hello world."), "Hello world.", session.events)
            self.assertEqual([event["wordCount"] for event in dictation.usage_events()[-1:]], [2])

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
            self.assertEqual(session.wait_for_transcript(), "Loud.")
            self.assertEqual(editor.wait_for_text("Loud."), "Loud.")

    def test_megabytes_of_an_error_are_shown_without_delay(self):
        dictation.prepare_profile(whisperCLIPath=tool("head -c 4000000 /dev/zero | tr '\\0' x >&2; exit 3\n"))
        with windows.Program() as program:
            message = self.message_of_dictation(program)
            self.assertTrue(message.startswith("whisper-cli failed with status 3. xxx"), message[:100])
            self.assertLess(len(message), 2_000_000)
            program.send("open dashboard")
            program.window("Dashboard").find("Hotbar Apps", windows.TAB).press()
            self.assertTrue(program.window("Dashboard").find("Copy error", windows.BUTTON))
            for window in ("popover", "settings"):
                program.send(f"open {window}")
                program.wait_for(event="shown", window=window)

    def test_a_tool_that_never_ends_ends_with_the_program(self):
        ends = {
            "SIGTERM": lambda session: session.quit(signal.SIGTERM),
            "SIGINT": lambda session: session.quit(signal.SIGINT),
            "SIGHUP": lambda session: session.quit(signal.SIGHUP),
            "SIGKILL": lambda session: session.kill(),
        }
        for name, end in ends.items():
            with self.subTest(end=name):
                session, child = self.transcribe_without_end()
                result = end(session)
                if name != "SIGKILL":
                    self.assertEqual(result, (0, ""))
                    self.check_nothing_is_left(child)
                self.wait_until(lambda: not Path(f"/proc/{child}").exists())
        self.remove_transcripts()

    def test_a_target_that_closes_before_the_paste_leaves_the_text_on_the_clipboard(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        with dictation.Dictation() as session:
            with targets.start("xterm"):
                session.start_recording()
            session.stop_recording()
            # The terminal is installed, so it is started again for the text.
            text = session.wait_for_transcript()
            self.assertEqual(clipboard(), text)

    def test_a_temporary_folder_that_belongs_to_somebody_else(self):
        with tempfile.TemporaryDirectory() as parent:
            folder = Path(parent) / f"kestrova-{os.geteuid()}"
            folder.symlink_to("/proc")
            with dictation.Dictation({"TMPDIR": parent}) as session:
                message = self.message_of_start(session)
        self.assertEqual(message, f"The folder for temporary files, {folder}, cannot be used: it is not a folder.")

    def test_a_temporary_folder_that_a_cleaner_removed(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        with dictation.Dictation() as session:
            for _ in range(2):
                session.start_recording()
                session.stop_recording()
                self.assertEqual(session.wait_for_transcript(), "Hello world.")
                shutil.rmtree(dictation.temporary_folder())

    def test_damaged_settings_are_as_good_as_none(self):
        dictation.settings_file().write_text('{"shortcut":')
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            text = session.speak_and_insert(SENTENCES[2])
            self.assertEqual(editor.wait_for_text(text), text)
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
            self.assertEqual(self.message_of_start(session), NO_RECORDING)
            subprocess.run([VIRTUAL_SOUND, "start"], check=True)
            session.start_recording()

    def test_no_microphone(self):
        unplug_microphone()
        before = dictation.recordings()
        with dictation.Dictation() as session:
            self.assertEqual(self.message_of_start(session), NO_RECORDING)
        self.assertEqual(dictation.recordings(), before, "a recording that holds nothing leaves no file")

    def test_what_is_missing_is_named_in_order_and_nothing_is_recorded(self):
        before = dictation.recordings()
        unplug_microphone()
        dictation.prepare_profile(whisperCLIPath="/nowhere/whisper-cli")
        dictation.model_file().unlink()
        with dictation.Dictation(prefix=WITHOUT_TOOL) as session:
            self.assertEqual(self.message_of_start(session), MODEL_MISSING)
            # The slot is unassigned too, but the model comes first.
            self.assertEqual(self.message_of_start(session, slot=9), MODEL_MISSING)
            shutil.copyfile(dictation.DEMO_MODEL, dictation.model_file())
            self.assertEqual(self.message_of_start(session), TOOL_MISSING)
        self.assertEqual(dictation.recordings(), before)
        dictation.prepare_profile()
        with dictation.Dictation() as session:
            self.assertEqual(self.message_of_start(session), NO_RECORDING)

    def dictation_interrupted_by(self, interruption):
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            session.start_recording()
            dictation.play(SENTENCES[0])
            interruption()
            session.stop_recording()
            text = session.wait_for_transcript()
            self.assertEqual(words(text), words(dictation.sample_text(SENTENCES[0])))
            self.assertEqual(editor.wait_for_text(text), text)
            logged = dictation.usage_events()[-1]["durationMinutes"] * 60
            self.assertAlmostEqual(seconds(dictation.recordings()[-1]), logged, delta=0.001)

    def test_a_microphone_pulled_during_the_recording(self):
        self.dictation_interrupted_by(unplug_microphone)

    def test_a_sound_server_killed_during_the_recording(self):
        self.dictation_interrupted_by(lambda: subprocess.run([VIRTUAL_SOUND, "stop"], check=True))


if __name__ == "__main__":
    unittest.main()
