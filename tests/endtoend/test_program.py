"""How the program starts, how it ends, that there is one of it, and what it tells about itself."""

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
from test_failures import DictationTestCase, tool

LIMIT = 60.0  # seconds


def run(*arguments, **environment):
    """Runs the program to its end; a variable whose value is None is not set."""
    variables = {**os.environ, **environment}
    variables = {name: value for name, value in variables.items() if value is not None}
    return subprocess.run(
        [dictation.PROGRAM, *arguments], env=variables, capture_output=True, text=True, timeout=LIMIT, check=False
    )


class PrivateDisplay:
    """An X server without a window manager; yields its DISPLAY."""

    def __init__(self, *arguments):
        reading, writing = os.pipe()
        # Without "-noreset" it starts anew, refusing connections, when its only client goes for a moment.
        command = ["Xvfb", "-displayfd", str(writing), "-nolisten", "tcp", "-noreset", *arguments]
        self._server = subprocess.Popen(command, pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with open(reading) as display:
            self.name = ":" + display.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def kill(self):
        self._server.kill()
        self._server.wait()


class SessionManager:
    """Leads a session, for the programs that are started with its environment."""

    def __init__(self):
        self._output = tempfile.NamedTemporaryFile("w")
        self._process = subprocess.Popen(
            [dictation.PROGRAM.with_name("session-manager")], stdin=subprocess.PIPE, stdout=self._output, text=True
        )

    def __enter__(self):
        self.wait_for(lambda lines: lines)
        self.environment = {"SESSION_MANAGER": self.lines()[0]}
        return self

    def __exit__(self, *_):
        self._process.communicate(timeout=LIMIT)
        self._output.close()

    def lines(self):
        """What it has printed: its address, then what the programs did."""
        return Path(self._output.name).read_text().split("\n")[:-1]

    def wait_for(self, condition):
        if not targets._wait_for(lambda: condition(self.lines()), LIMIT):
            raise AssertionError(self.lines())

    def send(self, command):
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()

    def wait_until_saved(self, times=1):
        """Waits until programs have saved their state so often since the session manager's start."""
        self.wait_for(lambda lines: lines.count("saved") >= times)

    def start(self, command):
        environment = {**os.environ, **self.environment}
        return subprocess.Popen(command, env=environment, stderr=subprocess.PIPE, text=True)

    def restart_command(self):
        """How the last program to say so is restarted."""
        return [line for line in self.lines() if line.startswith("restart")][-1].split("\t")[1:]

    def kill(self):
        self._process.kill()


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


class End(DictationTestCase):
    def test_the_x_server_going_away_ends_the_program_and_its_child(self):
        with PrivateDisplay() as display:
            session, child = self.transcribe_without_end({"DISPLAY": display.name})
        session.ended()
        self.check_nothing_is_left(child)

    def test_a_sigterm_at_any_moment_of_the_start_ends_the_program(self):
        beginning = time.monotonic()
        with dictation.Dictation():
            start = time.monotonic() - beginning
        statuses = set()
        for moment in range(50):
            process = subprocess.Popen([dictation.PROGRAM], stderr=subprocess.PIPE)
            time.sleep(2 * start * moment / 50)
            process.terminate()
            _, errors = process.communicate(timeout=LIMIT)
            self.assertEqual(errors, b"")
            statuses.add(process.returncode)
        self.assertEqual(statuses, {-signal.SIGTERM, 0})  # before it handles the signal, and after

    def test_a_recording_is_kept_when_the_program_ends(self):
        session = dictation.Dictation()
        session.start_recording()
        time.sleep(0.5)
        self.assertEqual(session.quit(), (0, ""))
        self.assertGreater(dictation.recordings()[-1].stat().st_size, 16000 * 2 * 0.3)

    def test_a_terminal_does_not_stop_it(self):
        with dictation.Dictation() as session:
            for number in (signal.SIGTSTP, signal.SIGTTIN, signal.SIGTTOU):
                session.process.send_signal(number)
            session.start_recording()

    def test_in_the_background_of_a_terminal_it_works_without_reading_from_it(self):
        leader, terminal = os.openpty()
        self.addCleanup(os.close, leader)
        # The shell has the terminal's foreground, so that reading would stop the program.
        script = 'set -m; "$0" --control & trap "kill $!" TERM; wait; wait'
        command = ["setsid", "--ctty", "bash", "-c", script, dictation.PROGRAM]
        with subprocess.Popen(command, stdin=terminal, stdout=terminal, stderr=terminal) as shell:
            os.close(terminal)
            os.write(leader, b"cancel\n")
            self.read_until(leader, b'"ready"')
            dictation.press(dictation.MAIN_SHORTCUT)
            self.read_until(leader, b'"recording"')
            shell.terminate()
            shell.wait(LIMIT)

    def read_until(self, descriptor, expected):
        output = b""
        while expected not in output:
            output += os.read(descriptor, 4096)

    def test_an_ignored_hangup_stays_ignored(self):
        with dictation.Dictation(prefix=["nohup"]) as session:
            session.process.send_signal(signal.SIGHUP)
            session.start_recording()


class SessionManagement(DictationTestCase):
    def test_the_end_of_the_session_ends_the_program_and_its_child(self):
        with SessionManager() as manager:
            session, child = self.transcribe_without_end(manager.environment)
            manager.wait_until_saved()
            manager.send("shutdown")
            manager.wait_until_saved(times=2)
            self.assertTrue(Path(f"/proc/{child}").exists())
            manager.send("die")
            self.assertEqual(session.ended(), (0, ""))
        self.check_nothing_is_left(child)

    def test_the_session_manager_going_away_ends_the_program_and_its_child(self):
        with SessionManager() as manager:
            session, child = self.transcribe_without_end(manager.environment)
            manager.wait_until_saved()
            manager.kill()
            session.ended()
        self.check_nothing_is_left(child)

    def test_a_session_manager_that_went_before_the_start(self):
        with SessionManager() as manager:
            pass
        session = dictation.Dictation(manager.environment)
        session.start_recording()
        status, _ = session.quit()
        self.assertEqual(status, 0)

    def test_a_dictation_goes_on_while_the_session_is_saved(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        with SessionManager() as manager, dictation.Dictation(manager.environment) as session:
            manager.wait_until_saved()
            session.start_recording()
            manager.send("save")
            manager.wait_until_saved(times=2)
            manager.send("shutdown")
            manager.wait_until_saved(times=3)
            manager.send("cancel")
            session.stop_recording()
            self.assertEqual(session.wait_for_transcript(), "Hello world.")

    def check_end(self, manager, process):
        manager.send("die")
        _, errors = process.communicate(timeout=LIMIT)
        self.assertEqual((process.returncode, errors), (0, ""))

    def test_it_can_be_restarted_the_way_it_asks_for(self):
        with SessionManager() as manager:
            first = manager.start([dictation.PROGRAM])
            manager.wait_until_saved()
            self.assertIn("style 0", manager.lines())
            self.check_end(manager, first)
            restart = manager.restart_command()
            second = manager.start(restart)
            identifier, _ = restart[-1].split("_", 1)
            manager.wait_for(lambda lines: f"registered {identifier}" in lines)
            self.check_end(manager, second)

    def test_a_controlled_copy_is_not_to_be_restarted(self):
        with SessionManager() as manager, dictation.Dictation(manager.environment):
            manager.wait_until_saved()
            self.assertIn("style 3", manager.lines())


class Killed(DictationTestCase):
    ROUNDS = 200
    LONGEST_LIFE = 0.5  # seconds, in which it starts and finishes one or two dictations

    def dictate_until_killed(self, recorded):
        """Adds the stored log of each finished dictation to the list; returns when the program is gone."""
        session = dictation.Dictation()
        killer = threading.Timer(random.uniform(0, self.LONGEST_LIFE), session.process.kill)
        killer.start()
        try:
            while True:
                for state in ("recording", "processing", "idle"):
                    if state != "idle":
                        session.send("toggle")
                    session.wait_for_state(state)
                recorded.append(dictation.usage_events())
        except (dictation.DictationError, BrokenPipeError):
            self.assertEqual(session.process.wait(LIMIT), -signal.SIGKILL)
        finally:
            killer.join()

    def test_at_random_moments_no_recorded_dictation_is_lost(self):
        dictation.prepare_profile(whisperCLIPath=tool("echo Hello world.\n"))
        settings = dictation.settings_file().read_text()
        finished = 0
        log = dictation.usage_events()
        for number in range(self.ROUNDS):
            with self.subTest(number=number):
                recorded = []
                self.dictate_until_killed(recorded)
                finished += len(recorded)
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

    def test_control_commands_do_what_the_shortcuts_do(self):
        with dictation.Dictation() as session:
            session.send("toggle 4")
            self.assertIn("Hotbar slot 4 is unassigned", session.wait_for_error())
            session.send("toggle")
            session.wait_for_state("recording")
            session.send("toggle 4")
            session.wait_for_state("processing")

    def test_control_commands_that_are_not_known(self):
        with dictation.Dictation() as session:
            for command in ("dance", "toggle four", "toggle4", "", "täglich"):
                session.send(command)
                self.assertEqual(session.wait_for(event="misuse")["command"], command)

    def test_the_end_of_the_commands_means_nothing(self):
        with dictation.Dictation() as session:
            session.send("toggle")
            session.process.stdin.close()
            session.wait_for_state("recording")
            session.stop_recording()


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
