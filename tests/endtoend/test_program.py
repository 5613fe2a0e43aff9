"""How the program starts, that there is one of it, that a kill loses nothing, and what it tells about itself."""

import fcntl
import json
import os
import random
import signal
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

import dictation
import targets
from servers import PrivateDisplay, SessionManager
from test_failures import DictationTestCase, tool

LIMIT = 60.0  # seconds


def run(*arguments, **environment):
    """Runs the program to its end; a variable whose value is None is not set."""
    variables = {**os.environ, **environment}
    variables = {name: value for name, value in variables.items() if value is not None}
    return subprocess.run(
        [dictation.PROGRAM, *arguments], env=variables, capture_output=True, text=True, timeout=LIMIT, check=False
    )


def lock_file():
    return Path(os.environ["XDG_RUNTIME_DIR"]) / "kestrova" / "kestrova-menubar.lock"


class OneCopy(DictationTestCase):
    def test_a_second_copy_ends_at_once_and_leaves_the_first_alone(self):
        with dictation.Dictation() as session:
            second = run("--control")
            self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
            session.start_recording()

    def test_a_second_copy_with_another_folder_for_temporary_files_ends_too(self):
        with tempfile.TemporaryDirectory() as elsewhere, dictation.Dictation() as session:
            second = run("--control", TMPDIR=elsewhere)
            self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
            session.start_recording()
            self.assertEqual(os.listdir(elsewhere), [])

    def test_two_programs_that_cannot_know_of_each_other_lose_no_dictation(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        before = dictation.usage_events()
        with tempfile.TemporaryDirectory() as runtime:
            elsewhere = {"TMPDIR": runtime, "XDG_RUNTIME_DIR": runtime}
            with dictation.Dictation() as first, dictation.Dictation(elsewhere) as second:
                for session in (first, second, first):
                    for state in ("recording", "processing", "idle"):
                        if state != "idle":
                            session.send("toggle")
                        session.wait_for_state(state)
        stored = dictation.usage_events()
        self.assertEqual(stored[: len(before)], before)
        self.assertEqual(len({event["id"] for event in stored}), len(before) + 3)

    def test_a_folder_for_the_lock_that_cannot_be_used_is_told(self):
        with tempfile.TemporaryDirectory() as runtime:
            folder = Path(runtime) / "kestrova"
            folder.symlink_to("/proc")
            result = run(XDG_RUNTIME_DIR=runtime)
        self.assertEqual(
            (result.returncode, result.stdout, result.stderr),
            (0, "", f"kestrova: The folder for temporary files, {folder}, cannot be used: it is not a folder.\n"),
        )

    def test_a_second_copy_needs_no_desktop_to_find_that_out(self):
        with dictation.Dictation():
            self.assertEqual(run(DISPLAY=None).returncode, 0)

    def test_a_second_copy_does_not_join_the_session(self):
        with SessionManager() as manager:
            with dictation.Dictation():
                self.assertEqual(run(**manager.environment).returncode, 0)
            with dictation.Dictation(manager.environment):
                manager.wait_until_saved()
            self.assertEqual(manager.lines().count("registered"), 1)

    def test_after_a_kill_a_new_copy_starts(self):
        for end in (dictation.Dictation.kill, dictation.Dictation.quit):
            end(dictation.Dictation())
            self.assertTrue(lock_file().exists())
        with dictation.Dictation() as session:
            session.start_recording()

    def test_a_running_child_does_not_keep_the_lock(self):
        mark = Path(os.environ["TMPDIR"]) / "child"
        # The tool's own child survives the program's end on purpose.
        dictation.prepare_profile(whisperCLIPath=tool(f"setsid -f sleep 30; touch {mark}; exec sleep 1000\n"))
        session = dictation.Dictation()
        session.start_recording()
        session.stop_recording()
        self.wait_until(mark.exists)
        session.kill()
        with dictation.Dictation():
            pass


class Killed(DictationTestCase):
    ROUNDS = 200
    LIFE_STEP = 1.1

    def log_longer_than(self, log, session):
        """The log once it has one more dictation, unless the program is killed before."""
        while len(stored := dictation.usage_events()) <= len(log):
            if session.process.poll() is not None:
                raise dictation.DictationError("killed")
            time.sleep(0.005)
        return stored

    def dictate_until_killed(self, log, recorded, longest_life):
        """Adds the stored log of each finished dictation to the list; returns when the program is gone.

        The log is the one before the first.
        """
        session = dictation.Dictation()
        killer = threading.Timer(random.uniform(0, longest_life), session.process.kill)
        killer.start()
        try:
            while True:
                for state in ("recording", "processing", "idle"):
                    if state != "idle":
                        session.send("toggle")
                    session.wait_for_state(state)
                before = [log, *recorded][-1]
                recorded.append(self.log_longer_than(before, session))
        except (dictation.DictationError, BrokenPipeError):
            self.assertEqual(session.process.wait(LIMIT), -signal.SIGKILL)
        finally:
            killer.join()

    def test_at_random_moments_no_recorded_dictation_is_lost(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        settings = dictation.settings_file().read_text()
        finished = 0
        longest_life = 0.5  # seconds
        log = dictation.usage_events()
        # Something that takes the texts: a dictation waits for that.
        terminal = targets.start("xterm")
        self.addCleanup(terminal.close)
        for number in range(self.ROUNDS):
            with self.subTest(number=number):
                recorded = []
                self.dictate_until_killed(log, recorded, longest_life)
                finished += len(recorded)
                # Whatever the machine's speed, about half of the lives are long enough for a dictation.
                longest_life *= 1 / self.LIFE_STEP if recorded else self.LIFE_STEP
                stored = dictation.usage_events()
                for earlier in [log, *recorded]:
                    self.assertEqual(stored[: len(earlier)], earlier)
                # The one that was killed before it could say so may be there too.
                self.assertIn(len(stored) - len(log) - len(recorded), (0, 1))
                log = stored
        self.assertGreater(finished, self.ROUNDS / 4)
        self.assertEqual(dictation.settings_file().read_text(), settings)


class CommandLine(DictationTestCase):
    def test_without_a_desktop_it_says_so(self):
        result = run(DISPLAY=":9999")
        self.assertEqual(result.returncode, 1)
        self.assertIn('there is none at DISPLAY=":9999"', result.stderr)

    def test_an_argument_that_is_not_known(self):
        result = run("--colour")
        self.assertEqual(result.returncode, 2)
        self.assertIn("--colour is not known", result.stderr)

    def test_an_argument_that_is_not_known_while_a_copy_runs(self):
        with dictation.Dictation():
            for arguments in (["--colour"], ["--control", "dashboard"], ["-style", "fusion", "-x"]):
                result = run(*arguments)
                self.assertEqual(result.returncode, 2)
                self.assertIn(f"{arguments[-1]} is not known", result.stderr)
            for arguments in (["--control"], ["-style", "fusion"], ["--platform=xcb", "--control"]):
                self.assertEqual(run(*arguments).returncode, 0)

    def test_the_help_names_every_command(self):
        result = run("--help", DISPLAY=None)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        for command in ("toggle", "toggle SLOT", "cancel", "download", "open NAME", "close NAME"):
            self.assertIn(f"\n                   {command} ", result.stdout)

class Diagnostics(DictationTestCase):
    def report(self, **environment):
        result = run("--diagnostics", **environment)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertTrue(result.stdout.endswith("\n}\n"), result.stdout)
        return json.loads(result.stdout), result.stdout

    def test_the_whole_report(self):
        dictation.prepare_profile(slots=["", "org.xfce.mousepad"], whisperCLIPath="/opt/tool", modelSHA256=" ")
        report, text = self.report()
        self.assertEqual(
            report,
            {
                "appVersion": "0.1.0",
                "buildVersion": "dev",
                "bundleIdentifier": "com.kestrova.app",
                "executablePath": str(dictation.PROGRAM),
                "modelExpectedSHA256": " ",
                "modelPath": str(dictation.model_file()),
                "modelReady": True,
                "permissions": {"accessibility": True, "microphone": True, "microphoneStatus": "authorized"},
                "settings": {
                    "decodingProfile": "balanced",
                    "hotbarAssignedSlots": [{"appName": "", "bundleIdentifier": "org.xfce.mousepad", "slot": 2}],
                    "modelDownloadURL": "http://127.0.0.1:9/not-needed.bin",
                    "shortcut": "⌘⇧Space",
                    "theme": "light",
                    "transcriptionLanguage": "auto",
                    "whisperCLIPath": "/opt/tool",
                },
                "state": "Ready",
            },
        )
        keys = [line.split('"')[1] for line in text.splitlines() if line.startswith('    "')]
        self.assertEqual(keys, sorted(keys))
        self.assertIn('"whisperCLIPath": "\\/opt\\/tool"', text)

    def test_without_a_display(self):
        report, _ = self.report(DISPLAY=None, DBUS_SESSION_BUS_ADDRESS=None, XAUTHORITY=None)
        self.assertEqual(
            report["permissions"], {"accessibility": False, "microphone": True, "microphoneStatus": "authorized"}
        )

    def test_while_another_copy_runs_whose_lock_stays_untouched(self):
        with dictation.Dictation():
            self.assertEqual(self.report()[0]["state"], "Ready")
            with open(lock_file()) as file, self.assertRaises(BlockingIOError):
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)

    def test_it_takes_no_lock(self):
        lock_file().unlink(missing_ok=True)
        self.report()
        self.assertFalse(lock_file().exists())

    def test_with_damaged_documents_which_it_leaves_as_they_are(self):
        usage = dictation.stored_document("usage")
        self.addCleanup(usage.unlink)
        for document in (dictation.settings_file(), usage):
            document.write_text('{"half')
        report, _ = self.report()
        self.assertEqual(report["settings"]["whisperCLIPath"], "/opt/homebrew/bin/whisper-cli")
        self.assertEqual(report["warnings"], ["Model SHA256 is empty; model downloads are unverified."])
        for document in (dictation.settings_file(), usage):
            self.assertEqual(document.read_text(), '{"half')

    def test_a_display_without_record_is_told(self):
        with PrivateDisplay("-extension", "RECORD") as display:
            report, _ = self.report(DISPLAY=display.name)
        self.assertIs(report["permissions"]["accessibility"], False)


if __name__ == "__main__":
    unittest.main()
