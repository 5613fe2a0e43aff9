"""Speak random sentences with espeak-ng and write them to shards.

A shard depends on its number and kind only, so any of them can be made again
(but for the noise in a few voices, such as +f5, which differs each time).
"""

import argparse
import random
import time
import zlib
from pathlib import Path

import numpy as np
from scipy.signal import resample_poly

import grammar
from alignment import align
from espeak import Espeak
from shards import Clip, ClipLabels, shard_path, write_shard
from whisper_format import SAMPLE_RATE

# "gmw/en" is what `espeak-ng -v en-gb` speaks.
LANGUAGES = ("en-us", "en-us", "gmw/en", "en-gb-x-rp")
TRAINING_VARIANTS = (
    "", "+m1", "+m2", "+m3", "+m5", "+m6", "+m7", "+m8", "+f1", "+f3", "+f4",
    "+f5", "+Andy", "+Annie", "+Gene", "+Lee", "+Michael", "+Mike", "+steph",
    "+linda", "+belinda", "+john", "+paul", "+rob", "+zac")
UNSEEN_VARIANTS = ("+m4", "+f2")

# Kinds of clips: short and long ones for training, sentences kept apart, and
# sentences kept apart in voices kept apart.
KINDS = ("train", "long", "test", "testvoice")
HELD_OUT_KINDS = ("test", "testvoice")

ESPEAK_SAMPLE_RATE = 22050
# Factor by which a clip is slower and lower (formants too), and the ratio
# up / down that resamples espeak-ng's sound to 16 kHz with about that factor.
RESAMPLING = {1.0: (320, 441), 1.05: (16, 21), 0.95: (20, 29),
              1.034: (3, 4), 0.965: (7, 10), 1.015: (14, 19), 0.98: (32, 45)}

LONGEST_CLIP = 8.6          # seconds; with silence around it fits the window
TAIL = 0.08                 # seconds kept after the last token's end
QUIETEST_PEAK = 500         # of 32767; less means that a voice failed


def is_held_out(text: str) -> bool:
    """Tell whether a text is one of the 5 % that are never trained on."""
    return zlib.crc32(text.encode()) % 20 == 0


def _held_out_text(rng: random.Random) -> str:
    """Return one to three sentences."""
    text = grammar.sentence(rng)
    if rng.random() < 0.4:
        text += " " + grammar.sentence(rng)
    if rng.random() < 0.2:
        text += " " + grammar.sentence(rng)
    return text


def draw_text(rng: random.Random, kind: str) -> str:
    """Return a text for a clip of a kind."""
    while True:
        if kind == "train":
            text = grammar.utterance(rng)
        elif kind == "long":
            text = grammar.long_utterance(rng)
        else:
            text = _held_out_text(rng)
            if len(grammar.words_of(text)) < 4:
                continue
        if is_held_out(text) == (kind in HELD_OUT_KINDS):
            return text


def resample(samples: np.ndarray, factor: float) -> tuple[np.ndarray, float]:
    """Bring espeak-ng's sound to 16 kHz, slowed down by about a factor.

    Returns int16 samples and the exact factor.
    """
    up, down = RESAMPLING[factor]
    resampled = resample_poly(samples.astype(np.float32), up, down)
    exact = (up / down) / (SAMPLE_RATE / ESPEAK_SAMPLE_RATE)
    return np.clip(resampled, -32768, 32767).astype(np.int16), exact


def _try_clip(espeak: Espeak, rng: random.Random, kind: str) -> Clip | None:
    """Speak one clip; None if it is too long or silent."""
    text = draw_text(rng, kind)
    variants = UNSEEN_VARIANTS if kind == "testvoice" else TRAINING_VARIANTS
    variant = rng.choice(variants)
    voice = rng.choice(LANGUAGES) + variant
    rate, pitch = rng.randint(130, 190), rng.randint(30, 70)
    speech = espeak.say(text, voice, rate, pitch,
                        pitch_range=rng.randint(35, 65))
    speed = 1.0
    if kind not in HELD_OUT_KINDS:
        speed = rng.choice(sorted(RESAMPLING))
    samples, stretch = resample(speech.samples, speed)
    tokens, spans = align(text, speech.words, speech.phonemes,
                          len(speech.samples) / espeak.sample_rate)
    samples = samples[:int((spans[-1][1] + TAIL) * stretch * SAMPLE_RATE)]
    too_long = len(samples) / SAMPLE_RATE > LONGEST_CLIP
    if too_long or np.abs(samples).max() < QUIETEST_PEAK:
        return None
    return Clip(samples, ClipLabels(
        text=text, tokens=tokens,
        spans=[[round(start * stretch, 3), round(end * stretch, 3)]
               for start, end in spans],
        ph=[[phoneme, round(start * stretch, 3)]
            for phoneme, start in speech.phonemes],
        voice=voice, rate=rate, pitch=pitch, speed=speed))


def synthesize_clip(espeak: Espeak, rng: random.Random, kind: str) -> Clip:
    """Speak clips until one is usable."""
    while True:
        clip = _try_clip(espeak, rng, kind)
        if clip is not None:
            return clip


def synthesize_shard(espeak: Espeak, path: Path, number: int, kind: str,
                     n_clips: int) -> None:
    """Write the shard of a number and report its size."""
    started = time.monotonic()
    rng = random.Random(f"{kind}-{number}")
    clips = [synthesize_clip(espeak, rng, kind) for _ in range(n_clips)]
    write_shard(path, clips)
    seconds = sum(len(clip.samples) for clip in clips) / SAMPLE_RATE
    print(f"{path}: {n_clips} clips, {seconds / 3600:.2f} h, mean "
          f"{seconds / n_clips:.2f} s, made in "
          f"{time.monotonic() - started:.0f} s", flush=True)


def main() -> None:
    """Run the program."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where shards are written")
    parser.add_argument("--kind", choices=KINDS, default="train",
                        help="what the clips are for (default: %(default)s)")
    parser.add_argument("--first", type=int, default=0, metavar="N",
                        help="number of the first shard (default: 0)")
    parser.add_argument("--shards", type=int, default=1, metavar="N",
                        help="how many shards (default: 1)")
    parser.add_argument("--clips", type=int, default=300, metavar="N",
                        help="clips per shard (default: 300)")
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    espeak = Espeak()
    for number in range(arguments.first, arguments.first + arguments.shards):
        synthesize_shard(espeak, shard_path(arguments.folder, number), number,
                         arguments.kind, arguments.clips)


if __name__ == "__main__":
    main()
