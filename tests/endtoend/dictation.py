"""Drives kestrova-dictate inside a virtual desktop: speaks into the microphone and reads what is reported.

    prepare_profile()
    with Dictation() as dictation:
        dictation.speak_and_insert(SAMPLES / "01.wav")

Each wait has a generous limit, because the transcription tool's threads spin when the machine has other load.
"""

import json
import os
import queue
import shutil
import subprocess
import tempfile
import threading
import time
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
SAMPLES = REPOSITORY / "assets" / "demo" / "samples"
DEMO_MODEL = REPOSITORY / "assets" / "demo" / "ggml-demo.bin"
SPEAK = REPOSITORY / "tools" / "speak"
BUILD = os.environ.get("KESTROVA_BUILD", "dev")  # the preset whose programs are driven

EVENT_LIMIT = 60.0  # seconds
END_LIMIT = 20.0

# What a stored document must have at least, with a download address that nothing answers.
SETTINGS = {
    "shortcut": {"keyCode": 49, "modifiers": 768},
    "whisperCLIPath": os.environ.get("KESTROVA_WHISPER_CLI", ""),
    "modelDownloadURL": "http://127.0.0.1:9/not-needed.bin",
    "modelSHA256": "",
    "transcriptionLanguage": "auto",
    "decodingProfile": "balanced",
}


class DictationError(Exception):
    """Something that was waited for did not come."""


def settings_file():
    return Path(os.environ["XDG_CONFIG_HOME"]) / "kestrova" / "kestrova.settings.v1.json"


def model_file():
    return Path(os.environ["XDG_DATA_HOME"]) / "Kestrova" / "models" / "ggml-base.bin"


def recordings():
    """The recordings of this desktop's user, oldest first."""
    folder = Path(os.environ["TMPDIR"]) / f"kestrova-{os.geteuid()}"
    return sorted(folder.glob("kestrova-*.wav"), key=lambda path: path.stat().st_mtime)


def prepare_profile(**settings):
    """Gives the desktop's user the demo model and settings; keyword arguments replace single settings."""
    settings_file().parent.mkdir(parents=True, exist_ok=True)
    settings_file().write_text(json.dumps({**SETTINGS, **settings}))
    model_file().parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(DEMO_MODEL, model_file())


def sample_text(sample):
    return sample.with_suffix(".txt").read_text().strip()


def play(recording):
    """Plays a recording into the virtual microphone; returns when all of it has been played."""
    subprocess.run([SPEAK, "--file", recording], check=True)


class Dictation:
    """One running kestrova-dictate. Leaving it asserts that it ended well and wrote nothing to standard error."""

    def __init__(self, environment=None):
        self.events = []
        self._arrived = queue.Queue()
        self._errors = tempfile.TemporaryFile()
        self.process = subprocess.Popen(
            [REPOSITORY / "build" / BUILD / "bin" / "kestrova-dictate"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=self._errors,
            env={**os.environ, **(environment or {})},
            text=True,
        )
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def __enter__(self):
        return self

    def __exit__(self, error, *_):
        status, errors = self.quit()
        if error is None and (status != 0 or errors):
            raise DictationError(f"kestrova-dictate ended with {status} and wrote:\n{errors}")

    def _read(self):
        for line in self.process.stdout:
            event = json.loads(line)
            self.events.append(event)
            self._arrived.put(event)

    def send(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()

    def wait_for(self, limit=EVENT_LIMIT, **expected):
        """The next event that has these values, for example event="state", state="idle"."""
        deadline = time.monotonic() + limit
        while True:
            try:
                event = self._arrived.get(timeout=max(0.0, deadline - time.monotonic()))
            except queue.Empty:
                raise DictationError(f"no {expected} within {limit} s; events: {self.events}") from None
            if all(event.get(key) == value for key, value in expected.items()):
                return event

    def start_recording(self, target=""):
        self.send(f"toggle {target}".strip())
        return self.wait_for(event="state", state="recording")

    def stop_recording(self):
        self.send("toggle")
        return self.wait_for(event="state", state="processing")

    def speak_and_insert(self, recording, target=""):
        """A whole dictation; returns the event that reports the insertion."""
        self.start_recording(target)
        play(recording)
        self.stop_recording()
        inserted = self.wait_for(event="inserted")
        self.wait_for(event="state", state="idle")
        return inserted

    def stages(self):
        """The latest duration of each step, in milliseconds."""
        return {e["stage"]: e["milliseconds"] for e in self.events if e["event"] == "stage"}

    def quit(self):
        """Asks the program to end and waits for it; returns its exit status and its standard error."""
        if self.process.poll() is None:
            self.send("quit")
        try:
            return self._ended()
        except subprocess.TimeoutExpired:
            self.kill()
            raise DictationError("kestrova-dictate did not end") from None

    def kill(self):
        self.process.kill()
        self._ended()

    def _ended(self):
        status = self.process.wait(timeout=END_LIMIT)
        self._reader.join()
        self.process.stdin.close()
        self.process.stdout.close()
        with self._errors as file:
            file.seek(0)
            return status, file.read().decode(errors="replace")
