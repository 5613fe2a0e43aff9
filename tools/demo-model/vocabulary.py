"""The numbering of the model's tokens."""

import grammar
from whisper_format import (
    END_OF_TEXT, LANGUAGE_ENGLISH, NO_TIMESTAMPS, START_OF_PREVIOUS,
    START_OF_TRANSCRIPT, TRANSCRIBE, TRANSLATE)

# What the model is trained to write when nobody speaks. An exported file can
# hold another text, also none, in the place of this token.
SILENCE_TEXT = " [BLANK_AUDIO]"

# Special tokens in the order of their rows in a checkpoint.
SPECIAL_IDS = (END_OF_TEXT, START_OF_TRANSCRIPT, LANGUAGE_ENGLISH, TRANSLATE,
               TRANSCRIBE, START_OF_PREVIOUS, NO_TIMESTAMPS)


class Vocabulary:
    """Tokens by compact row number, as training and checkpoints use them.

    Of Whisper's 51,865 token ids only some 1,200 are used. Rows 0 upwards are
    the strings (their row is also their Whisper id), then follow the special
    tokens, and one last row stands for all unused ids together.
    """

    SILENCE = 1
    FIRST_WORD = 5

    def __init__(self) -> None:
        """Number the tokens of the grammar."""
        # whisper.cpp looks up the token " " while it loads a model.
        self.strings = [" ", SILENCE_TEXT, *grammar.PUNCTUATION]
        self.strings += [" " + form for form in grammar.lexicon().forms]
        self.whisper_ids = [*range(len(self.strings)), *SPECIAL_IDS]
        self.n_used = len(self.whisper_ids)
        self.unused = self.n_used
        self.row_of_string = {
            string: row for row, string in enumerate(self.strings)}
        rows = {id_: row for row, id_ in enumerate(self.whisper_ids)}
        self.end_of_text = rows[END_OF_TEXT]
        self.start = rows[START_OF_TRANSCRIPT]
        self.english = rows[LANGUAGE_ENGLISH]
        self.translate = rows[TRANSLATE]
        self.transcribe = rows[TRANSCRIBE]
        self.start_of_previous = rows[START_OF_PREVIOUS]
        self.no_timestamps = rows[NO_TIMESTAMPS]
