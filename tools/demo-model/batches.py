"""Batches: spectrograms, token sequences and labels of each encoder frame."""

from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path
from random import Random

import numpy as np
import torch

from alignment import Span
from augmentation import Sound, colour_by_microphone, record, to_float
from log_mel import log_mel
from model import ORDINAL_CLASSES, PHONEME_CLASSES
from shards import Clip, read_folder
from vocabulary import Vocabulary
from whisper_format import (
    ENCODER_FRAMES_PER_SECOND, ENCODER_HOP, FFT_SIZE,
    MEL_FRAMES_PER_ENCODER_FRAME, ModelShape)

WINDOW = ModelShape.n_audio_ctx         # encoder frames

IGNORED = -100                  # target of a position that is not scored
NO_SPAN = -1

# Shares of sequences that begin with a prompt, that name another language and
# that ask for a translation: whisper-cli's options must not confuse the model.
PROMPT_SHARE = 0.10
OTHER_LANGUAGE_SHARE = 0.1
TRANSLATE_SHARE = 0.05

# Clips of similar length are batched within chunks of this many.
SORTED_CHUNK = 2000
# Encoder frames that padding adds to a clip on average.
EXPECTED_PADDING = 60


class PhonemeTable:
    """Numbers of phonemes in order of appearance; 0 is a pause."""

    def __init__(self, numbers: dict[str, int] | None = None) -> None:
        """Begin with the numbers that a checkpoint was trained with."""
        self.numbers = dict(numbers or {"": 0})

    def number(self, phoneme: str) -> int:
        """Return a phoneme's number."""
        if not phoneme or phoneme.startswith("_"):
            return 0
        number = self.numbers.setdefault(phoneme, len(self.numbers))
        if number >= PHONEME_CLASSES:
            raise ValueError(f"more than {PHONEME_CLASSES} phonemes")
        return number


@dataclass
class Item:
    """A clip for training. Times are seconds from its start."""

    samples: np.ndarray                     # int16, 16 kHz
    rows: list[int]                         # of the vocabulary
    spans: list[Span]                       # of each token
    phonemes: list[tuple[int, float]]       # number and start


@dataclass
class Batch:
    """Tensors of several clips; time is encoder frames of 20 ms."""

    mel: torch.Tensor           # float (batch, mels, 2 * time)
    rows: torch.Tensor          # decoder input (batch, tokens)
    targets: torch.Tensor       # next row or IGNORED (batch, tokens)
    spans: torch.Tensor         # frames of the target (batch, tokens, 2)
    phonemes: torch.Tensor      # (batch, time)
    words: torch.Tensor         # row of the word spoken (batch, time)
    ordinals: torch.Tensor      # its number in the clip (batch, time)


@dataclass
class _Sequence:
    """Decoder input, targets and the spans of the targets of one clip."""

    rows: list[int]
    targets: list[int]
    spans: list[Span | None]


def read_items(folder: Path, vocabulary: Vocabulary,
               phonemes: PhonemeTable) -> list[Item]:
    """Read all clips of a folder of shards."""
    def item(clip: Clip) -> Item:
        labels = clip.labels
        return Item(clip.samples,
                    [vocabulary.row_of_string[token]
                     for token in labels.tokens],
                    [(start, end) for start, end in labels.spans],
                    [(phonemes.number(phoneme), start)
                     for phoneme, start in labels.ph])

    items = [item(clip) for clip in read_folder(folder)]
    if not items:
        raise SystemExit(f"There are no shards in {folder}.")
    return items


def _batch_time(sounds: list[Sound], rng: np.random.Generator | None,
                whole_window: bool) -> int:
    """Return the encoder frames of a batch."""
    if whole_window:
        return WINDOW
    time = 2 + max(int(np.ceil(len(sound.samples) / ENCODER_HOP))
                   for sound in sounds)
    if rng is not None:
        little = rng.random() < 0.75
        time += int(rng.integers(0, 12) if little
                    else rng.integers(0, max(1, WINDOW - time + 1)))
    return min(time, WINDOW)


def _spectrograms(sounds: list[Sound], time: int) -> torch.Tensor:
    """Return the spectrograms of sounds, padded or cut to a time."""
    samples = np.zeros((len(sounds), time * ENCODER_HOP + FFT_SIZE),
                       np.float32)
    for row, sound in zip(samples, sounds):
        length = min(len(sound.samples), len(row))
        row[:length] = sound.samples[:length]
    return log_mel(torch.from_numpy(samples),
                   MEL_FRAMES_PER_ENCODER_FRAME * time)


def _sequence(item: Item, sound: Sound, vocabulary: Vocabulary,
              rng: np.random.Generator | None) -> _Sequence:
    """Return the token sequence of a clip, with variations if rng is given.

    As whisper-cli builds it: prompt, start, language, task, no timestamps,
    text, end. After the start comes the language, so that `-l auto` works.
    """
    prompt: list[int] = []
    language, task = vocabulary.english, vocabulary.transcribe
    if rng is not None:
        if rng.random() < PROMPT_SHARE:
            prompt = [vocabulary.start_of_previous]
            prompt += [int(rng.integers(Vocabulary.FIRST_WORD,
                                        len(vocabulary.strings)))
                       for _ in range(int(rng.integers(1, 12)))]
        if rng.random() < OTHER_LANGUAGE_SHARE:
            language = vocabulary.unused
        if rng.random() < TRANSLATE_SHARE:
            task = vocabulary.translate
    text = [Vocabulary.SILENCE] if sound.silent else item.rows
    rows = [*prompt, vocabulary.start, language, task,
            vocabulary.no_timestamps, *text]
    targets = [IGNORED] * len(prompt)
    targets += [vocabulary.english, IGNORED, IGNORED]
    targets += [*text, vocabulary.end_of_text]
    spans: list[Span | None] = [None] * (len(prompt) + 3)
    if not sound.silent:
        spans += [(start + sound.lead, end + sound.lead)
                  for start, end in item.spans]
    return _Sequence(rows, targets, spans)


def _to_frame(seconds: float) -> int:
    """Return the nearest encoder frame."""
    return int(round(seconds * ENCODER_FRAMES_PER_SECOND))


def _label_phonemes(labels: np.ndarray, item: Item, lead: float) -> None:
    """Write phoneme numbers over one clip's frames."""
    starts = [start + lead for _, start in item.phonemes]
    ends = [*starts[1:], starts[-1]]
    for (number, _), start, end in zip(item.phonemes, starts, ends):
        labels[_to_frame(start):_to_frame(end)] = number


def _label_words(words: np.ndarray, ordinals: np.ndarray, item: Item,
                 lead: float) -> None:
    """Write word rows and word numbers over one clip's frames."""
    ordinal = 0
    for row, (start, end) in zip(item.rows, item.spans):
        if row < Vocabulary.FIRST_WORD:
            continue
        ordinal = min(ordinal + 1, ORDINAL_CLASSES - 1)
        first = _to_frame(start + lead)
        after = max(_to_frame(end + lead), first + 1)
        words[first:after] = row
        ordinals[first:after] = ordinal


def _pad_sequences(sequences: list[_Sequence], time: int, filler: int
                   ) -> tuple[torch.Tensor, torch.Tensor, torch.Tensor]:
    """Return rows, targets and span frames of a batch as tensors."""
    shape = len(sequences), max(len(s.rows) for s in sequences)
    rows = np.full(shape, filler, np.int64)
    targets = np.full(shape, IGNORED, np.int64)
    spans = np.full((*shape, 2), NO_SPAN, np.int64)
    for index, sequence in enumerate(sequences):
        rows[index, :len(sequence.rows)] = sequence.rows
        targets[index, :len(sequence.targets)] = sequence.targets
        for position, span in enumerate(sequence.spans):
            if span is not None:
                first = min(int(span[0] * ENCODER_FRAMES_PER_SECOND),
                            time - 1)
                after = min(time, int(span[1] * ENCODER_FRAMES_PER_SECOND) + 1)
                spans[index, position] = first, max(first + 1, after)
    return (torch.from_numpy(rows), torch.from_numpy(targets),
            torch.from_numpy(spans))


def make_batch(items: list[Item], vocabulary: Vocabulary,
               rng: np.random.Generator | None = None,
               whole_window: bool = False) -> Batch:
    """Make a batch; with rng the clips are varied at random for training.

    Batches are as long as their longest clip unless whole_window is set;
    whisper-cli always pads to the whole window.
    """
    if rng is None:
        sounds = [Sound(to_float(item.samples)) for item in items]
    else:
        sounds = [record(to_float(item.samples), rng, WINDOW)
                  for item in items]
    time = _batch_time(sounds, rng, whole_window)
    mel = _spectrograms(sounds, time)
    if rng is not None:
        mel = colour_by_microphone(mel, rng)
    sequences = [_sequence(item, sound, vocabulary, rng)
                 for item, sound in zip(items, sounds)]
    rows, targets, spans = _pad_sequences(
        sequences, time, vocabulary.end_of_text)
    phonemes, words, ordinals = (
        np.zeros((len(items), time), np.int64) for _ in range(3))
    for index, (item, sound) in enumerate(zip(items, sounds)):
        if not sound.silent:
            _label_phonemes(phonemes[index], item, sound.lead)
            _label_words(words[index], ordinals[index], item, sound.lead)
    return Batch(mel, rows, targets, spans, torch.from_numpy(phonemes),
                 torch.from_numpy(words), torch.from_numpy(ordinals))


def _chunk_groups(chunk: list[int], items: list[Item],
                  frames: int) -> list[list[int]]:
    """Divide clips, sorted by length, into groups of some encoder frames."""
    groups: list[list[int]] = []
    group: list[int] = []
    longest = 0.0
    for index in chunk:
        length = len(items[index].samples) / ENCODER_HOP + EXPECTED_PADDING
        if group and max(longest, length) * (len(group) + 1) > frames:
            groups.append(group)
            group, longest = [], 0.0
        group.append(index)
        longest = max(longest, length)
    return [*groups, group]


def draw_groups(items: list[Item], frames: int, rng: np.random.Generator,
                shuffler: Random) -> Iterator[list[Item]]:
    """Yield groups of clips for batches of about some frames, for ever."""
    while True:
        order = rng.permutation(len(items))
        for first in range(0, len(items), SORTED_CHUNK):
            chunk = sorted(order[first:first + SORTED_CHUNK],
                           key=lambda index: len(items[index].samples))
            groups = _chunk_groups(chunk, items, frames)
            shuffler.shuffle(groups)
            for group in groups:
                yield [items[index] for index in group]
