"""Transcribing held-out clips while training, to see how far it is."""

from dataclasses import dataclass

import torch

import grammar
from batches import Item, make_batch
from model import Whisper
from scoring import edit_distance
from vocabulary import Vocabulary

MOST_TOKENS = 40
CLIPS_AT_ONCE = 50
NEVER = -1e9            # score of a token that may not be chosen


@dataclass
class Score:
    """Result over some clips. Case is ignored."""

    word_error_rate: float      # 0..1, of words without punctuation
    exact_share: float          # 0..1, of clips right with punctuation
    example: str                # one clip, as it should be and as heard

    def __str__(self) -> str:
        return (f"{self.word_error_rate:.2%} word errors, "
                f"{self.exact_share:.1%} exact; {self.example}")


def _transcribe(model: Whisper, vocabulary: Vocabulary,
                items: list[Item]) -> list[list[int]]:
    """Return the rows the model finds likeliest one by one, until the end."""
    batch = make_batch(items, vocabulary, whole_window=True)
    encoded = model.encoder(batch.mel)
    start = [vocabulary.start, vocabulary.english, vocabulary.transcribe,
             vocabulary.no_timestamps]
    forbidden = [*start, vocabulary.translate, vocabulary.start_of_previous]
    rows = torch.tensor([start] * len(items))
    ended = torch.zeros(len(items), dtype=torch.bool)
    for _ in range(MOST_TOKENS):
        scores = model.decoder(rows, encoded)[0][:, -1]
        scores[:, forbidden] = NEVER
        following = scores.argmax(-1)
        following[ended] = vocabulary.end_of_text
        rows = torch.cat([rows, following[:, None]], 1)
        ended |= following == vocabulary.end_of_text
        if ended.all():
            break
    return rows[:, len(start):].tolist()


def _spoken_tokens(vocabulary: Vocabulary, rows: list[int]) -> list[str]:
    """Return words and punctuation marks in small letters, until the end."""
    if vocabulary.end_of_text in rows:
        rows = rows[:rows.index(vocabulary.end_of_text)]
    return [vocabulary.strings[row].strip().lower()
            if row < len(vocabulary.strings) else "<unused>" for row in rows]


def _words(spoken: list[str]) -> list[str]:
    return [token for token in spoken if token not in grammar.PUNCTUATION]


@torch.no_grad()
def score(model: Whisper, vocabulary: Vocabulary,
          items: list[Item]) -> Score:
    """Transcribe clips and count the errors."""
    errors = words = exact = 0
    example = ""
    for first in range(0, len(items), CLIPS_AT_ONCE):
        group = items[first:first + CLIPS_AT_ONCE]
        for item, rows in zip(group, _transcribe(model, vocabulary, group)):
            expected = _spoken_tokens(vocabulary, item.rows)
            actual = _spoken_tokens(vocabulary, rows)
            errors += edit_distance(_words(expected), _words(actual))
            words += len(_words(expected))
            exact += expected == actual
            example = example or (
                f"\"{' '.join(expected)}\" heard as \"{' '.join(actual)}\"")
    return Score(errors / words, exact / len(items), example)
