"""Shards: files of many spoken clips with their labels."""

import json
import os
from collections.abc import Iterator
from dataclasses import asdict, dataclass
from pathlib import Path

import numpy as np


@dataclass
class ClipLabels:
    """What a clip says and how it was spoken. Times are in seconds."""

    text: str
    tokens: list[str]
    spans: list[list[float]]            # [start, end] of each token
    ph: list[list]                      # [phoneme, start] of each phoneme
    voice: str                          # espeak-ng's name of it
    rate: int                           # words per minute
    pitch: int
    speed: float                        # see synthesize.RESAMPLING


@dataclass
class Clip:
    """Sound, int16 at 16 kHz, and its labels."""

    samples: np.ndarray
    labels: ClipLabels


def write_shard(path: Path, clips: list[Clip]) -> None:
    """Write clips to an .npz file, which appears whole or not at all.

    Arrays: audio, all clips one after the other; off, where each begins and
    the last ends; meta, the labels as JSON.
    """
    lengths = [len(clip.samples) for clip in clips]
    labels = json.dumps([asdict(clip.labels) for clip in clips])
    unfinished = path.with_name(f"unfinished-{path.name}")
    np.savez(unfinished,
             audio=np.concatenate([clip.samples for clip in clips]),
             off=np.cumsum([0, *lengths]),
             meta=np.frombuffer(labels.encode(), dtype=np.uint8))
    os.rename(unfinished, path)


def read_shard(path: Path) -> Iterator[Clip]:
    """Yield the clips of a shard."""
    with np.load(path) as arrays:
        audio, offsets = arrays["audio"], arrays["off"]
        labels = json.loads(arrays["meta"].tobytes().decode())
    for index, clip_labels in enumerate(labels):
        yield Clip(audio[offsets[index]:offsets[index + 1]],
                   ClipLabels(**clip_labels))


def shard_path(folder: Path, number: int) -> Path:
    """Return the path of a folder's shard of a number."""
    return folder / f"{number:03d}.npz"


def read_folder(folder: Path) -> Iterator[Clip]:
    """Yield the clips of all shards in a folder, by number."""
    for path in sorted(folder.glob("[0-9]*.npz")):
        yield from read_shard(path)
