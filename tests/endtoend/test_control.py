"""The program under the control of a script, however that treats the two streams."""

import fcntl
import json
import os
import subprocess
import threading
import unittest
from pathlib import Path

import dictation
import windows
from servers import LIMIT
from test_failures import DictationTestCase, tool


class Commands(DictationTestCase):
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

    def test_a_line_without_an_end_is_given_up(self):
        with dictation.Dictation() as session:
            session.process.stdin.write("x" * 100_000)
            session.process.stdin.flush()
            session.wait_for(event="misuse")
            session.send("")
            session.send("toggle")
            session.wait_for_state("recording")


class Streams(DictationTestCase):
    def setUp(self):
        super().setUp()
        self.recordings = dictation.recordings()

    def start(self):
        command = [dictation.PROGRAM, "--control"]
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def send(self, process, commands):
        process.stdin.write(commands)
        process.stdin.flush()

    def check_it_works(self, process):
        """That a recording has been started, and that the program ends well."""
        self.wait_until(lambda: dictation.recordings() != self.recordings)
        process.terminate()
        self.assertEqual(process.wait(LIMIT), 0)

    def test_a_reader_that_stops_reading_misses_lines_and_stops_nothing(self):
        process = self.start()
        fcntl.fcntl(process.stdout, fcntl.F_SETPIPE_SZ, 4096)
        self.assertIn('"ready"', process.stdout.readline())
        # A program that waits for its reader would never take all of this.
        commands = "dance\n" * 30_000 + "toggle\n"
        threading.Thread(target=self.send, args=(process, commands), daemon=True).start()
        self.wait_until(lambda: dictation.recordings() != self.recordings)
        kept = lost = 0
        while lost <= 1000:
            self.send(process, "more\n")
            event = json.loads(process.stdout.readline())
            if event["event"] == "lost":
                lost += event["lines"]  # told more than once, as the lines differ in length
            else:
                kept += 1
            self.assertLess(kept, 30_000)
        self.assertGreater(kept, 1000)
        self.check_it_works(process)

    def test_a_reader_that_goes_away_stops_nothing(self):
        process = self.start()
        self.assertIn('"ready"', process.stdout.readline())
        process.stdout.close()
        self.send(process, "dance\ntoggle\n")
        self.check_it_works(process)

    def test_a_child_that_reads_standard_input_gets_no_command(self):
        heard = Path(os.environ["TMPDIR"]) / "heard"
        dictation.prepare_profile(whisperCLIPath=tool(f"cat > {heard}; echo Hello world.\n"))
        with dictation.Dictation() as session:
            session.start_recording()
            session.stop_recording()
            session.send("dance")
            session.wait_for(event="misuse")
            self.assertEqual(session.wait_for_transcript(), "Hello world.")
            self.assertEqual(heard.read_text(), "")

    def test_what_is_printed_to_the_console_is_none_of_its_lines(self):
        program = windows.Program()
        self.addCleanup(program.process.kill)
        program.send("open settings")
        window = program.window_in_front("Settings")
        window.find("Diagnostics", windows.TAB).click()
        window.find("Print to Console", windows.BUTTON).click()
        program.send("dance")
        program.wait_for(event="misuse")
        status, errors = program.quit()
        self.assertEqual((status, json.loads(errors)["bundleIdentifier"]), (0, "com.kestrova.app"))


if __name__ == "__main__":
    unittest.main()
