"""Write held-out clips as WAV files with their texts, for evaluate.py.

From the shards test and testvoice of a data folder it makes the sets test
(known voices), testvoice (unseen voice variants), long (those of both that
last five seconds or more), and speaks a fourth, salad (random words). It stops
if a held-out text occurs in the training shards.
"""

import argparse
import random
import shutil
from pathlib import Path

import numpy as np

import grammar
from espeak import Espeak
from shards import read_folder
from synthesize import (
    HELD_OUT_KINDS, LANGUAGES, TRAINING_VARIANTS, resample)
from wave_file import duration, write_wave
from whisper_format import SAMPLE_RATE

LEAD, TAIL = 0.2, 0.3       # seconds of silence around a held-out clip
LONG_FROM = 5.0             # seconds
LONGEST = 10.0              # seconds; the model hears 10.24
SALAD_SEED = 4242


def _silence(seconds: float) -> np.ndarray:
    return np.zeros(int(seconds * SAMPLE_RATE), np.int16)


def _write_clip(folder: Path, number: int, samples: np.ndarray,
                text: str) -> None:
    folder.mkdir(parents=True, exist_ok=True)
    write_wave(folder / f"{number:03d}.wav", samples)
    (folder / f"{number:03d}.txt").write_text(text + "\n", encoding="utf-8")


def write_held_out(data: Path, out: Path, kind: str, n_clips: int) -> None:
    """Write up to n_clips clips of a kind."""
    for number, clip in enumerate(read_folder(data / kind)):
        if number == n_clips:
            break
        samples = np.concatenate(
            [_silence(LEAD), clip.samples, _silence(TAIL)])
        _write_clip(out / kind, number, samples, clip.labels.text)


def collect_long(out: Path) -> None:
    """Copy the long ones of the held-out clips."""
    (out / "long").mkdir(exist_ok=True)
    for kind in HELD_OUT_KINDS:
        for sound in sorted((out / kind).glob("*.wav")):
            if duration(sound) >= LONG_FROM:
                for path in (sound, sound.with_suffix(".txt")):
                    shutil.copy(path, out / "long" / f"{kind}{path.name}")


def speak_salads(out: Path, n_clips: int) -> None:
    """Speak random words of the vocabulary in known voices."""
    espeak = Espeak()
    rng = random.Random(SALAD_SEED)
    for number in range(n_clips):
        text = grammar.word_salad(rng, rng.randint(4, 8))
        voice = rng.choice(LANGUAGES) + rng.choice(TRAINING_VARIANTS)
        speech = espeak.say(text, voice, rate=rng.randint(130, 180),
                            pitch=rng.randint(35, 65), pitch_range=50)
        samples, _ = resample(speech.samples, 1.0)
        samples = np.concatenate([_silence(LEAD), samples])
        _write_clip(out / "salad", number,
                    samples[:int(LONGEST * SAMPLE_RATE)], text)


def check_held_out(data: Path) -> None:
    """Stop the program if training saw a held-out text."""
    trained = {clip.labels.text for clip in read_folder(data / "train")}
    for kind in HELD_OUT_KINDS:
        if any(clip.labels.text in trained
               for clip in read_folder(data / kind)):
            raise SystemExit(f"Texts of {kind} also occur in training.")


def main() -> None:
    """Run the program."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("data", type=Path, help="folder of the shard folders")
    parser.add_argument("out", type=Path, help="folder of the sets to write")
    parser.add_argument("--clips", type=int, default=300, metavar="N",
                        help="at most, of test and testvoice (default: 300)")
    parser.add_argument("--salads", type=int, default=150, metavar="N",
                        help="clips of random words (default: 150)")
    arguments = parser.parse_args()
    check_held_out(arguments.data)
    for kind in HELD_OUT_KINDS:
        write_held_out(arguments.data, arguments.out, kind, arguments.clips)
    collect_long(arguments.out)
    speak_salads(arguments.out, arguments.salads)


if __name__ == "__main__":
    main()
