"""How the program ends: when it is asked to, and when its desktop goes away."""

import os
import signal
import subprocess
import time
import unittest
from pathlib import Path

import dictation
from servers import LIMIT, PrivateDisplay, SessionManager
from test_failures import DictationTestCase, tool


class End(DictationTestCase):
    def test_the_x_server_going_away_ends_the_program_and_its_child(self):
        with PrivateDisplay() as display:
            session, child = self.transcribe_without_end({"DISPLAY": display.name})
        self.check_lost_desktop(session)
        self.check_nothing_is_left(child)

    def test_the_x_server_going_away_after_a_window_was_shown(self):
        for window in ("popover", "dashboard", "settings"):
            for is_open in (True, False):
                with self.subTest(window=window, is_open=is_open), PrivateDisplay() as display:
                    session = dictation.Dictation({"DISPLAY": display.name})
                    session.send(f"open {window}")
                    session.wait_for(event="shown")
                    if not is_open:
                        session.send(f"close {window}")
                        self.answer(session)
                    display.kill()
                    self.check_lost_desktop(session)

    def test_the_x_server_going_away_during_a_dictation_with_all_windows_open(self):
        with PrivateDisplay() as display:
            session, child = self.transcribe_without_end({"DISPLAY": display.name})
            for window in ("popover", "dashboard", "settings"):
                session.send(f"open {window}")
                session.wait_for(event="shown", window=window)
        self.check_lost_desktop(session)
        self.check_nothing_is_left(child)

    def check_lost_desktop(self, session):
        status, errors = session.ended()
        self.assertEqual(status, 1, errors)
        self.assertIn("kestrova: The desktop has ended the connection, and Kestrova ends too.", errors)

    def answer(self, session):
        """Waits until it has done all that it was sent."""
        session.send("?")
        session.wait_for(event="misuse")

    def test_a_frozen_x_server_does_not_keep_it_from_ending(self):
        for name in ("TERM", "INT", "HUP"):
            with self.subTest(signal=name), PrivateDisplay() as display:
                session, child = self.transcribe_without_end({"DISPLAY": display.name})
                display.freeze()
                session.send("open dashboard")  # the main thread waits for the X server from now on
                beginning = time.monotonic()
                status, errors = session.quit(getattr(signal, f"SIG{name}"))
                self.assertLess(time.monotonic() - beginning, 10)
                self.assertEqual((status, errors), (1, "kestrova: It did not end in time.\n"))
                self.wait_until(lambda: not Path(f"/proc/{child}").exists())
        self.remove_transcripts()

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




class Process(DictationTestCase):
    def test_its_name_is_that_of_the_program(self):
        with dictation.Dictation() as session:
            self.assertEqual(Path(f"/proc/{session.process.pid}/comm").read_text(), "kestrova\n")

    def test_without_standard_streams_no_file_takes_their_place(self):
        closed = ["sh", "-c", 'exec "$@" <&- >&- 2>&-', "sh"]
        before = dictation.recordings()
        process = subprocess.Popen([*closed, dictation.PROGRAM])
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.wait_until(lambda: self.is_recording(before))
        for stream in range(3):
            self.assertEqual(os.readlink(f"/proc/{process.pid}/fd/{stream}"), "/dev/null")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), 0)

    def is_recording(self, before):
        dictation.press(dictation.MAIN_SHORTCUT)
        return dictation.recordings() != before


if __name__ == "__main__":
    unittest.main()
