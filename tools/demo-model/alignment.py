"""When each token of a spoken text begins and ends."""

import grammar

Span = tuple[float, float]              # start and end in seconds

SHORTEST_WORD = 0.05
# A punctuation mark is heard as the pause after its word.
MARK_BEFORE_WORD_END = 0.08
MARK_AFTER_WORD_END = 0.16


def _speech_end(phonemes: list[tuple[str, float]], total: float) -> float:
    """Return the end of the last phoneme that is not a pause."""
    end = total
    for phoneme, start in reversed(phonemes):
        if phoneme and not phoneme.startswith("_"):
            return end
        end = start
    return total


def _word_starts(positions: list[int],
                 word_events: list[tuple[int, float]]) -> list[float]:
    """Return start times of the words at given character positions.

    espeak-ng reports words that it speaks as one ("of the") only once: the
    others get the start of the word before.
    """
    time_at = dict(sorted(word_events))
    starts: list[float] = []
    for position in positions:
        before = starts[-1] if starts else 0.0
        starts.append(time_at.get(position, before))
    return starts


def _word_ends(starts: list[float], speech_end: float) -> list[float]:
    """Return end times: the next later start, at the end the speech's end."""
    ends = []
    for index, start in enumerate(starts):
        following = starts[index + 1:] or [speech_end]
        end = next((time for time in following if time > start), start)
        ends.append(max(end, start + SHORTEST_WORD))
    return ends


def _split_shared_spans(spans: list[Span]) -> list[Span]:
    """Cut the span of words that were spoken as one evenly between them."""
    split: list[Span] = []
    while len(split) < len(spans):
        first = len(split)
        start = spans[first][0]
        after = first + 1
        while after < len(spans) and spans[after][0] == start:
            after += 1
        count = after - first
        if count == 1:
            split.append(spans[first])
            continue
        duration = spans[after - 1][1] - start
        split += [(start + duration * index / count,
                   start + duration * (index + 1) / count)
                  for index in range(count)]
    return split


def align(text: str, word_events: list[tuple[int, float]],
          phonemes: list[tuple[str, float]],
          total: float) -> tuple[list[str], list[Span]]:
    """Return the tokens of a text and the span of each.

    word_events and phonemes are as in espeak.Speech, total is the length of
    the sound in seconds.
    """
    matches = grammar.token_matches(text)
    positions = [match.start() for match in matches
                 if match.group(0) not in grammar.PUNCTUATION]
    starts = _word_starts(positions, word_events)
    ends = _word_ends(starts, _speech_end(phonemes, total))
    word_spans = iter(_split_shared_spans(list(zip(starts, ends))))
    spans: list[Span] = []
    for match in matches:
        if match.group(0) in grammar.PUNCTUATION:
            end = spans[-1][1]
            spans.append((max(0, end - MARK_BEFORE_WORD_END),
                          end + MARK_AFTER_WORD_END))
        else:
            spans.append(next(word_spans))
    tokens = [grammar.token_string(match.group(0)) for match in matches]
    return tokens, spans
