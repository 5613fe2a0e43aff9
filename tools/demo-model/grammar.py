"""Sentences of everyday dictation: e-mail, office and household English.

The patterns are in language/sentences.txt, the word classes they draw from in
language/slots.txt. Every function that takes a random.Random is deterministic
for a given state of it.

Run as a program it prints the size of the vocabulary and some sentences.
"""

import argparse
import random
import re
from dataclasses import dataclass
from functools import lru_cache
from pathlib import Path

LANGUAGE_FOLDER = Path(__file__).resolve().parent / "language"

# Adjectives, adverbs and nouns that can follow a pattern's or slot's "a".
TAKES_AN = (
    "old", "important", "urgent", "annual", "other", "invoice", "email",
    "agenda", "order", "answer", "address", "interview", "appointment",
    "article", "attachment", "empty", "easy", "expensive", "interesting",
    "extra", "international", "original", "official", "exam", "exhibition",
    "extremely", "especially", "almost", "always", "often", "usually",
    "already")

# Spoken alone they cannot be told apart, so random word sequences avoid them.
HOMOPHONES = frozenset(
    "right write two to too for four by buy their there our hour no know read "
    "one son sun see sea hear here meat meet wait".split())

# Slots whose words have a capital everywhere in a sentence.
PROPER_NAME_SLOTS = ("name", "day", "month")

_SLOT = re.compile(r"\{(\w+)\}")
_A_BEFORE_VOWEL = re.compile(r"\ba (?=(?:%s)\b)" % "|".join(TAKES_AN))
_WORD = re.compile(r"[A-Za-z][A-Za-z']*")
_WORD_OR_MARK = re.compile(r"[A-Za-z][A-Za-z']*|[,.?]")

PUNCTUATION = (",", ".", "?")


@dataclass(frozen=True)
class Lexicon:
    """The word forms the grammar can produce, each list sorted.

    Forms differ by case: "Send" and "send" are two.
    """

    forms: list[str]
    starters: list[str]         # forms that begin a sentence
    salad_words: list[str]      # forms that random sequences are made of


def _content_lines(path: Path) -> list[str]:
    """Return the lines of a text file that are neither empty nor comments."""
    lines = path.read_text(encoding="utf-8").splitlines()
    return [line.rstrip() for line in lines
            if line.strip() and not line.startswith("#")]


@lru_cache(maxsize=None)
def slots() -> dict[str, list[str]]:
    """Return the alternatives of every slot."""
    texts: dict[str, str] = {}
    name = ""
    for line in _content_lines(LANGUAGE_FOLDER / "slots.txt"):
        if line.startswith(" "):
            texts[name] += line
        else:
            name = line.removesuffix(" =")
            texts[name] = ""
    return {name: [alternative.strip() for alternative in text.split("|")]
            for name, text in texts.items()}


@lru_cache(maxsize=None)
def patterns() -> list[str]:
    """Return the sentence patterns."""
    return _content_lines(LANGUAGE_FOLDER / "sentences.txt")


def expand(pattern: str, rng: random.Random) -> str:
    """Fill the slots of a pattern; give it its capital and its "an"s."""
    text = pattern
    while match := _SLOT.search(text):
        choice = rng.choice(slots()[match.group(1)])
        text = text[:match.start()] + choice + text[match.end():]
    text = text[0].upper() + text[1:]
    return _A_BEFORE_VOWEL.sub("an ", text)


def sentence(rng: random.Random) -> str:
    """Return one sentence, e.g. "Please call Anna on Monday morning."."""
    return expand(rng.choice(patterns()), rng)


def words_of(text: str) -> list[str]:
    """Return the words of a text, without punctuation."""
    return _WORD.findall(text)


def token_matches(text: str) -> list[re.Match[str]]:
    """Return the matches of all words and punctuation marks of a text."""
    return list(_WORD_OR_MARK.finditer(text))


def token_string(word_or_mark: str) -> str:
    """Return the model token of a word (" word") or a mark (".")."""
    if word_or_mark in PUNCTUATION:
        return word_or_mark
    return " " + word_or_mark


def tokens(text: str) -> list[str]:
    """Return the model tokens of a text, e.g. [" Hello", " Anna", "."]."""
    return [token_string(match.group(0)) for match in token_matches(text)]


def _sampled_forms() -> set[str]:
    """Return the forms that occur in a large sample of sentences."""
    rng = random.Random(1234)
    forms: set[str] = set()
    for _ in range(60000):
        forms.update(words_of(sentence(rng)))
    return forms


def _slot_forms() -> set[str]:
    """Return the forms of all alternatives, however rarely they are drawn."""
    return {word
            for alternatives in slots().values()
            for alternative in alternatives
            for word in words_of(_SLOT.sub("", alternative))}


def _sampled_starters() -> set[str]:
    """Return the first words of a large sample of sentences."""
    rng = random.Random(99)
    return {words_of(sentence(rng))[0] for _ in range(20000)}


@lru_cache(maxsize=None)
def lexicon() -> Lexicon:
    """Return the word forms of the grammar."""
    forms = sorted(_sampled_forms() | _slot_forms())
    starters = _sampled_starters()
    proper_names = {name for slot in PROPER_NAME_SLOTS
                    for name in slots()[slot]}
    salad_words = [
        form for form in forms
        if form not in HOMOPHONES
        and (form not in starters or form[0].islower()
             or form in proper_names)]
    return Lexicon(forms, sorted(starters), salad_words)


def word_salad(rng: random.Random, length: int | None = None) -> str:
    """Return random words of the vocabulary, 2 to 9 unless told.

    Trains the ear: with sentences alone the model would guess from grammar.
    """
    length = length or rng.randint(2, 9)
    words = [rng.choice(lexicon().starters)]
    words += [rng.choice(lexicon().salad_words) for _ in range(length - 1)]
    return " ".join(words) + "."


def utterance(rng: random.Random) -> str:
    """Return what a short clip says: one or two sentences, or a salad."""
    kind = rng.random()
    if kind < 0.28:
        return word_salad(rng)
    text = sentence(rng)
    if kind > 0.80 and len(words_of(text)) <= 7:
        second = sentence(rng)
        if len(words_of(text)) + len(words_of(second)) <= 15:
            text = text + " " + second
    return text


def long_utterance(rng: random.Random) -> str:
    """Return what a long clip says: several sentences or a long salad."""
    if rng.random() < 0.15:
        return word_salad(rng, rng.randint(9, 18))
    goal = rng.randint(12, 24)
    sentences: list[str] = []
    n_words = 0
    while n_words < goal:
        sentences.append(sentence(rng))
        n_words += len(words_of(sentences[-1]))
    return " ".join(sentences)


def main() -> None:
    """Print the size of the vocabulary and some sentences."""
    parser = argparse.ArgumentParser(
        description="Print the size of the vocabulary and some sentences.")
    parser.add_argument("--sentences", type=int, default=10, metavar="N",
                        help="how many sentences (default: %(default)s)")
    parser.add_argument("--seed", type=int, default=5,
                        help="of the random numbers (default: %(default)s)")
    arguments = parser.parse_args()
    forms = lexicon().forms
    print(f"{len(forms)} word forms, "
          f"{len({form.lower() for form in forms})} distinct words, "
          f"{len(lexicon().starters)} sentence starters, "
          f"{len(patterns())} sentence patterns")
    rng = random.Random(arguments.seed)
    for _ in range(arguments.sentences):
        print(utterance(rng))


if __name__ == "__main__":
    main()
