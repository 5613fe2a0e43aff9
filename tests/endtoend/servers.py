"""Servers of a test's own, which it may end and stop as it likes."""

import os
import signal
import subprocess
import tempfile
from pathlib import Path

import dictation
import targets

LIMIT = 60.0  # seconds


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

    def freeze(self):
        """It keeps its connections and answers nothing, until its end."""
        self._server.send_signal(signal.SIGSTOP)


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
