"""Drives Kestrova inside a virtual desktop: presses shortcuts, speaks into the microphone, reads what is reported.

    prepare_profile()
    with Dictation() as session:
        session.speak_and_insert(SAMPLES / "01.wav")

Each wait has a generous limit, because the transcription tool's threads spin when the machine has other load.
"""

import json
import os
import queue
import shutil
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
SAMPLES = REPOSITORY / "assets" / "demo" / "samples"
DEMO_MODEL = REPOSITORY / "assets" / "demo" / "ggml-demo.bin"
SPEAK = REPOSITORY / "tools" / "speak"
BUILD = os.environ.get("KESTROVA_BUILD", "release")  # the preset whose programs are driven
PROGRAM = REPOSITORY / "build" / BUILD / "bin" / "kestrova"

EVENT_LIMIT = 120.0  # seconds
START_LIMIT = 60.0
END_LIMIT = 60.0
SETTLED_LOOKS = 5  # a thread that has something to do is seen at it in one of them
SETTLING_INTERVAL = 0.03

MAIN_SHORTCUT = "super+shift+space"  # as xdotool writes it

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


def stored_document(name):
    return Path(os.environ["XDG_CONFIG_HOME"]) / "kestrova" / f"kestrova.{name}.v1.json"


def settings_file():
    return stored_document("settings")


def stored_settings():
    return json.loads(settings_file().read_text())


def usage_events():
    """The usage log as it is stored, oldest first."""
    file = stored_document("usage")
    return json.loads(file.read_text()) if file.exists() else []


def model_file():
    return Path(os.environ["XDG_DATA_HOME"]) / "Kestrova" / "models" / "ggml-base.bin"


def temporary_folder():
    return Path(os.environ["TMPDIR"]) / f"kestrova-{os.geteuid()}"


def recordings():
    """The recordings of this desktop's user, oldest first."""
    return sorted(temporary_folder().glob("kestrova-*.wav"), key=lambda path: path.stat().st_mtime)


def prepare_profile(slots=(), **settings):
    """Gives the desktop's user the demo model and settings.

    slots are the desktop-file ids of the applications of slot 1 and so on; keyword arguments replace single settings.
    """
    assignments = [{"slotIndex": number, "bundleIdentifier": slot} for number, slot in enumerate(slots, start=1)]
    settings_file().parent.mkdir(parents=True, exist_ok=True)
    settings_file().write_text(json.dumps({**SETTINGS, "hotbarAssignments": assignments, **settings}))
    model_file().parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(DEMO_MODEL, model_file())


def wait_until(condition, expectation, limit=EVENT_LIMIT):
    """Documents are stored shortly after what they tell has happened."""
    deadline = time.monotonic() + limit
    while not condition():
        if time.monotonic() > deadline:
            raise DictationError(f"no {expectation} within {limit} s")
        time.sleep(0.02)


def wait_for_settings(condition):
    """Waits until the stored settings fulfil the condition."""
    wait_until(lambda: condition(stored_settings()), "settings as expected")


def sample_text(sample):
    return sample.with_suffix(".txt").read_text().strip()


def play(recording):
    """Plays a recording into the virtual microphone; returns when all of it has been played."""
    subprocess.run([SPEAK, "--file", recording], check=True)


def now():
    """The moment in the milliseconds of the program's events."""
    return time.monotonic() * 1000


def press(*chords):
    """Presses and releases shortcuts, each as xdotool writes it."""
    subprocess.run(["xdotool", "key", *chords], check=True)


def shortcut(slot=None):
    """The default shortcut of a slot, or the main one."""
    return MAIN_SHORTCUT if slot is None else f"super+alt+{slot}"


class Dictation:
    """One running kestrova. Leaving it asserts that it ended well and wrote nothing to standard error."""

    def __init__(self, environment=None, prefix=(), program=PROGRAM):
        """The prefix is a command that runs the program, which is given as its arguments."""
        self.events = []
        self._logged = len(usage_events())  # dictations that have to be in the log
        self._arrived = queue.Queue()
        self._errors = tempfile.TemporaryFile()
        self.process = subprocess.Popen(
            [*prefix, program, "--control"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=self._errors,
            env={**os.environ, **(environment or {})},
            text=True,
        )
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self.wait_for(START_LIMIT, event="ready")

    def __enter__(self):
        return self

    def __exit__(self, error, *_):
        status, errors = self.quit()
        if error is None and (status != 0 or errors):
            raise DictationError(f"kestrova ended with {status} and wrote:\n{errors}")

    def _read(self):
        for line in self.process.stdout:
            event = json.loads(line)
            self.events.append(event)
            self._arrived.put(event)
        self._arrived.put(None)

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
            if event is None:
                raise DictationError(f"kestrova ended: {self.ended()}")
            if all(event.get(key) == value for key, value in expected.items()):
                return event

    def wait_for_state(self, state):
        return self.wait_for(event="state", state=state)

    def wait_for_error(self):
        """The message of the next error."""
        return self.wait_for_state("error")["message"]

    def start_recording(self, slot=None):
        press(shortcut(slot))
        return self.wait_for_state("recording")

    def stop_recording(self, slot=None):
        press(shortcut(slot))
        return self.wait_for_state("processing")

    def wait_for_transcript(self):
        """The inserted text, once the dictation has ended and is in the usage log."""
        transcript = self.wait_for(event="transcript")
        self.wait_for_state("idle")
        self._logged += 1
        wait_until(lambda: len(usage_events()) >= self._logged, "its event in the usage log")
        return transcript["text"]

    def wait_until_settled(self):
        """Returns when it and the X server have been seen asleep several times: it has had the keys pressed before."""
        processes = (self.process.pid, os.environ["KESTROVA_X_SERVER_PID"])
        deadline = time.monotonic() + EVENT_LIMIT
        quiet = 0
        while quiet < SETTLED_LOOKS:
            if time.monotonic() > deadline:
                raise DictationError("kestrova does not come to rest")
            states = [f.read_text() for pid in processes for f in Path(f"/proc/{pid}/task").glob("*/status")]
            quiet = quiet + 1 if all("\nState:\tS" in state for state in states) else 0
            time.sleep(SETTLING_INTERVAL)

    def speak_and_insert(self, recording, slot=None):
        """A whole dictation; returns the text."""
        self.start_recording(slot)
        play(recording)
        self.stop_recording(slot)
        return self.wait_for_transcript()

    def quit(self, signal_number=signal.SIGTERM):
        """Asks the program to end and waits for it; returns its exit status and its standard error."""
        if self.process.poll() is None:
            self.process.send_signal(signal_number)
        try:
            return self.ended()
        except subprocess.TimeoutExpired:
            self.kill()
            raise DictationError("kestrova did not end") from None

    def kill(self):
        self.process.kill()
        self.ended()

    def ended(self):
        """Waits for its end; its exit status and its standard error."""
        status = self.process.wait(timeout=END_LIMIT)
        self._reader.join()
        self.process.stdin.close()
        self.process.stdout.close()
        with self._errors as file:
            file.seek(0)
            return status, file.read().decode(errors="replace")
