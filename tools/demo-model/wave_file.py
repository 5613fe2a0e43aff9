"""Writing the sound files that whisper-cli reads."""

import wave
from pathlib import Path

import numpy as np

from whisper_format import SAMPLE_RATE


def write_wave(path: Path, samples: np.ndarray) -> None:
    """Write int16 samples as a 16 kHz mono 16-bit WAV file."""
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(SAMPLE_RATE)
        file.writeframes(samples.astype("<i2").tobytes())


def duration(path: Path) -> float:
    """Return the length of a WAV file in seconds."""
    with wave.open(str(path), "rb") as file:
        return file.getnframes() / file.getframerate()
