"""Tests of the recipe's parts that need only numpy.

    /usr/bin/python3 tools/demo-model/test_recipe.py
"""

import io
import random
import re
import struct
import tempfile
import unittest
from pathlib import Path
from typing import BinaryIO

import numpy as np

import ggml_file
import grammar
from alignment import align
from mel_filters import hertz_to_mel, mel_filters, mel_to_hertz
from scoring import edit_distance
from shards import Clip, ClipLabels, read_folder, shard_path, write_shard
from vocabulary import SILENCE_TEXT, SPECIAL_IDS, Vocabulary
from whisper_format import VOCABULARY_SIZE, ModelShape

SHIPPED = Path(__file__).resolve().parents[2] / "assets" / "demo"

# Bytes and values per block of each ggml tensor type.
BLOCK_SIZES = {0: (4, 1), 1: (2, 1), 2: (18, 32), 6: (22, 32), 8: (34, 32)}

# What the grammar draws from seed 5.
FIRST_UTTERANCES = [
    "Today is Sunday, the last of September.",
    "Is available eight company river umbrellas lasted scan choose.",
    "Please let me know if you have any questions.",
]


def unpack(file: BinaryIO, layout: str) -> tuple:
    """Read little-endian numbers."""
    layout = "<" + layout
    return struct.unpack(layout, file.read(struct.calcsize(layout)))


def read_tensor_heads(file: BinaryIO) -> dict[str, tuple[tuple, int]]:
    """Read tensors to the end of a file: shape (outermost first) and type."""
    heads = {}
    while start := file.read(12):
        dimensions, name_length, type_number = struct.unpack("<3i", start)
        shape = unpack(file, f"{dimensions}i")[::-1]
        name = file.read(name_length).decode()
        block_bytes, block_values = BLOCK_SIZES[type_number]
        size = int(np.prod(shape)) * block_bytes // block_values
        if len(file.read(size)) != size:
            raise AssertionError(f"{name} is cut off")
        heads[name] = shape, type_number
    return heads


def dequantise_4_bit(data: bytes) -> np.ndarray:
    """Return the values of q4_0 blocks, straight from ggml's definition."""
    values = []
    for first in range(0, len(data), 18):
        scale, = struct.unpack("<e", data[first:first + 2])
        packed = data[first + 2:first + 18]
        levels = [byte & 15 for byte in packed]
        levels += [byte >> 4 for byte in packed]
        values += [(level - 8) * scale for level in levels]
    return np.array(values)


class GrammarTest(unittest.TestCase):

    def test_every_slot_that_is_named_exists_and_every_slot_is_used(self):
        texts = [*grammar.patterns(),
                 *(text for texts in grammar.slots().values()
                   for text in texts)]
        named = {name for text in texts
                 for name in re.findall(r"\{(\w+)\}", text)}
        self.assertEqual(named, set(grammar.slots()))

    def test_no_alternative_is_empty(self):
        for name, alternatives in grammar.slots().items():
            self.assertTrue(all(alternatives), name)

    def test_patterns_are_words_slots_and_known_punctuation(self):
        for pattern in grammar.patterns():
            self.assertRegex(pattern, r"^[A-Za-z{}_0-9',.? ]+[.?]$")

    def test_sentences_begin_with_a_capital_and_have_no_slot_left(self):
        rng = random.Random(1)
        for _ in range(2000):
            self.assertRegex(grammar.sentence(rng),
                             r"^[A-Z][A-Za-z',.? ]*[.?]$")

    def test_article_before_a_vowel(self):
        rng = random.Random(1)
        for pattern, expected in (
                ("this is a old file.", "This is an old file."),
                ("this is a new file.", "This is a new file."),
                ("this is a older file.", "This is a older file.")):
            self.assertEqual(grammar.expand(pattern, rng), expected)

    def test_same_seed_same_text(self):
        for draw in (grammar.sentence, grammar.utterance, grammar.word_salad,
                     grammar.long_utterance):
            self.assertEqual(draw(random.Random(3)), draw(random.Random(3)))

    def test_random_draws_are_those_the_shipped_model_was_trained_with(self):
        rng = random.Random(5)
        self.assertEqual([grammar.utterance(rng) for _ in range(3)],
                         FIRST_UTTERANCES)

    def test_tokens(self):
        self.assertEqual(grammar.tokens("Yes, I'm at two o'clock."),
                         [" Yes", ",", " I'm", " at", " two", " o'clock", "."])

    def test_long_utterances_are_long(self):
        rng = random.Random(2)
        for _ in range(300):
            words = grammar.words_of(grammar.long_utterance(rng))
            self.assertGreaterEqual(len(words), 9)

    def test_salads_have_the_length_asked_for_and_no_homophones(self):
        rng = random.Random(2)
        for length in range(1, 19):
            words = grammar.words_of(grammar.word_salad(rng, length))
            self.assertEqual(len(words), length)
            self.assertFalse(grammar.HOMOPHONES & set(words[1:]))

    def test_lexicon_has_every_word_of_every_utterance(self):
        forms = set(grammar.lexicon().forms)
        rng = random.Random(4)
        for _ in range(5000):
            self.assertLessEqual(set(grammar.words_of(grammar.utterance(rng))),
                                 forms)

    def test_shipped_word_list_is_the_lexicon_without_case(self):
        shipped = (SHIPPED / "VOCABULARY.txt").read_text().split()
        self.assertEqual(len(shipped), 1099)
        self.assertEqual(sorted(word.lower() for word in shipped),
                         sorted({form.lower()
                                 for form in grammar.lexicon().forms}))

    def test_texts_of_the_shipped_samples_can_be_written(self):
        vocabulary = Vocabulary()
        texts = sorted((SHIPPED / "samples").glob("*.txt"))
        self.assertEqual(len(texts), 10)
        for path in texts:
            for token in grammar.tokens(path.read_text()):
                self.assertIn(token, vocabulary.row_of_string)


class VocabularyTest(unittest.TestCase):

    def test_rows(self):
        vocabulary = Vocabulary()
        self.assertEqual(vocabulary.strings[:5],
                         [" ", SILENCE_TEXT, ",", ".", "?"])
        self.assertEqual(vocabulary.strings[Vocabulary.SILENCE], SILENCE_TEXT)
        self.assertTrue(vocabulary.strings[Vocabulary.FIRST_WORD].strip())
        self.assertEqual(len(set(vocabulary.strings)),
                         len(vocabulary.strings))
        self.assertEqual(vocabulary.n_used, 1214)

    def test_whisper_ids(self):
        vocabulary = Vocabulary()
        self.assertEqual(len(set(vocabulary.whisper_ids)), vocabulary.n_used)
        self.assertEqual(vocabulary.whisper_ids[vocabulary.end_of_text],
                         50257)
        self.assertEqual(vocabulary.whisper_ids[vocabulary.no_timestamps],
                         50363)
        self.assertTrue(all(id_ < VOCABULARY_SIZE for id_ in SPECIAL_IDS))


class AlignmentTest(unittest.TestCase):

    def assert_spans(self, actual, expected):
        self.assertEqual(len(actual), len(expected))
        for span, wanted in zip(actual, expected):
            self.assertAlmostEqual(span[0], wanted[0])
            self.assertAlmostEqual(span[1], wanted[1])

    def test_words_end_where_the_next_begins_and_the_last_with_speech(self):
        tokens, spans = align("One two.", [(0, 0.0), (4, 0.3)],
                              [("w", 0.0), ("t", 0.3), ("_:", 0.7)], 1.0)
        self.assertEqual(tokens, [" One", " two", "."])
        self.assert_spans(spans, [(0.0, 0.3), (0.3, 0.7), (0.62, 0.86)])

    def test_words_spoken_as_one_share_their_time(self):
        _, spans = align("All of the files", [(0, 0.0), (4, 0.2), (11, 0.6)],
                         [("a", 0.0), ("f", 0.6)], 1.0)
        self.assert_spans(spans, [(0.0, 0.2), (0.2, 0.4), (0.4, 0.6),
                                  (0.6, 1.0)])

    def test_no_word_is_shorter_than_the_least(self):
        _, spans = align("Go on", [(0, 0.0), (3, 0.01)], [("g", 0.0)], 0.02)
        self.assert_spans(spans, [(0.0, 0.05), (0.01, 0.06)])

    def test_no_events_at_all(self):
        tokens, spans = align("Yes.", [], [], 0.4)
        self.assertEqual(tokens, [" Yes", "."])
        self.assert_spans(spans, [(0.0, 0.4), (0.32, 0.56)])


class ShardsTest(unittest.TestCase):

    def test_clips_come_back_in_order(self):
        labels = ClipLabels("Yes.", [" Yes", "."], [[0.0, 0.3], [0.2, 0.4]],
                            [["j", 0.0]], "en-us", 150, 50, 1.0)
        clips = [Clip(np.arange(length, dtype=np.int16), labels)
                 for length in (5, 3)]
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            write_shard(shard_path(folder, 1), clips[1:])
            write_shard(shard_path(folder, 0), clips[:1])
            read = list(read_folder(folder))
            self.assertEqual(sorted(path.name for path in folder.iterdir()),
                             ["000.npz", "001.npz"])
        self.assertEqual([clip.samples.tolist() for clip in read],
                         [[0, 1, 2, 3, 4], [0, 1, 2]])
        self.assertEqual([clip.labels for clip in read], [labels, labels])


class ScoringTest(unittest.TestCase):

    def test_edit_distance(self):
        for expected, actual, distance in (
                ("", "", 0), ("abc", "abc", 0), ("abc", "", 3),
                ("", "ab", 2), ("abc", "axc", 1), ("abc", "bc", 1),
                ("abc", "xabc", 1), ("kitten", "sitting", 3)):
            self.assertEqual(edit_distance(expected, actual), distance)


class MelTest(unittest.TestCase):

    def test_scale_at_known_points(self):
        for hertz, mel in ((0, 0), (200, 3), (1000, 15), (6400, 42)):
            self.assertAlmostEqual(float(hertz_to_mel(hertz)), mel)
            self.assertAlmostEqual(float(mel_to_hertz(mel)), hertz)

    def test_shape_and_sign(self):
        filters = mel_filters()
        self.assertEqual(filters.shape, (80, 201))
        self.assertEqual(filters.dtype, np.float32)
        self.assertGreaterEqual(filters.min(), 0)

    def test_every_filter_is_one_triangle_after_the_one_before(self):
        filters = mel_filters()
        peaks = filters.argmax(1)
        self.assertTrue((np.diff(peaks) >= 0).all())
        for row in filters:
            heard = np.flatnonzero(row)
            self.assertGreater(len(heard), 0)
            self.assertEqual(heard[-1] - heard[0] + 1, len(heard))

    def test_wide_filters_have_unit_area(self):
        # 40 Hz per bin; the narrow low filters fall between the bins.
        areas = mel_filters()[50:].sum(1) * 40
        np.testing.assert_allclose(areas, 1, atol=0.02)

    def test_shipped_model_has_these_filters(self):
        with open(SHIPPED / "ggml-demo.bin", "rb") as file:
            file.seek(4 + 4 * 11)
            self.assertEqual(unpack(file, "2i"), (80, 201))
            self.assertEqual(file.read(80 * 201 * 4),
                             mel_filters().tobytes())


class QuantisationTest(unittest.TestCase):

    def test_four_bit_block_layout(self):
        values = np.zeros((1, 32), np.float32)
        values[0, :3] = -8, 7, 1        # scale 1: levels 0, 15, 9
        values[0, 16:19] = 2, -3, 7     # levels 10, 5, 15
        data = ggml_file.quantise(values, "q4_0")
        self.assertEqual(data, struct.pack("<e", 1.0)
                         + bytes([0xA0, 0x5F, 0xF9]) + bytes([0x88] * 13))

    def test_five_bit_block_layout(self):
        values = np.zeros((1, 32), np.float32)
        values[0, :2] = -16, 15         # scale 1: levels 0, 31
        values[0, 17] = 5               # level 21
        data = ggml_file.quantise(values, "q5_0")
        # Zero is level 16: fifth bit set, low bits clear.
        self.assertEqual(data, struct.pack("<eI", 1.0, 0xFFFFFFFE)
                         + bytes([0x00, 0x5F]) + bytes(14))

    def test_eight_bit_block_layout(self):
        values = np.zeros((1, 32), np.float32)
        values[0, :3] = 127, -127, 3.4
        data = ggml_file.quantise(values, "q8_0")
        self.assertEqual(data, struct.pack("<e3b", 1.0, 127, -127, 3)
                         + bytes(29))

    def test_all_zero_block(self):
        values = np.zeros((1, 32), np.float32)
        for type_name, size in (("q4_0", 18), ("q5_0", 22), ("q8_0", 34)):
            data = ggml_file.quantise(values, type_name)
            self.assertEqual(len(data), size)
            scale, = struct.unpack("<e", data[:2])
            self.assertEqual(scale, 0)

    def test_four_bit_values_come_back_within_a_step(self):
        values = np.random.default_rng(1).standard_normal(
            (16, 64)).astype(np.float32)
        restored = dequantise_4_bit(ggml_file.quantise(values, "q4_0"))
        blocks = values.reshape(-1, 32)
        steps = np.abs(blocks).max(1, keepdims=True) / 8
        errors = np.abs(restored.reshape(-1, 32) - blocks)
        # The end opposite to the peak has no level of its own.
        self.assertTrue((errors <= steps * 1.01).all())
        self.assertLess(np.median(errors / steps), 0.3)

    def test_rows_must_divide_into_blocks(self):
        with self.assertRaises(ValueError):
            ggml_file.quantise(np.zeros((32, 31), np.float32), "q4_0")

    def test_unknown_type(self):
        with self.assertRaises(ValueError):
            ggml_file.quantise(np.zeros((1, 32), np.float32), "q3_0")


class ModelFileTest(unittest.TestCase):

    def test_header(self):
        file = io.BytesIO()
        ggml_file.write_header(file, ModelShape(), "q4_0", [" ", "", " Zoë"])
        file.seek(0)
        self.assertEqual(file.read(4), b"lmgg")
        self.assertEqual(unpack(file, "11i"), (
            51865, 512, 128, 4, 4, 128, 128, 4, 2, 80, 2002))
        self.assertEqual(unpack(file, "2i"), (80, 201))
        file.read(80 * 201 * 4)
        self.assertEqual(unpack(file, "i"), (3,))
        self.assertEqual(file.read(), struct.pack(
            "<I1sII5s", 1, b" ", 0, 5, " Zoë".encode()))

    def test_plain_types_have_no_quantisation_version(self):
        for type_name, number in (("f32", 0), ("f16", 1)):
            file = io.BytesIO()
            ggml_file.write_header(file, ModelShape(), type_name, [" "])
            self.assertEqual(struct.unpack("<i", file.getvalue()[44:48]),
                             (number,))

    def test_tensor_types(self):
        for name, dimensions, wanted, expected in (
                ("encoder.ln_post.weight", 1, "q4_0", "f32"),
                ("encoder.conv1.bias", 2, "q4_0", "f32"),
                ("encoder.conv1.weight", 3, "q4_0", "f16"),
                ("encoder.conv1.weight", 3, "f32", "f32"),
                ("decoder.positional_embedding", 2, "q4_0", "f32"),
                ("decoder.blocks.0.attn.key.weight", 2, "q4_0", "q4_0"),
                ("decoder.blocks.0.attn.key.weight", 2, "f16", "f16")):
            self.assertEqual(
                ggml_file.tensor_type(name, dimensions, wanted), expected)

    def test_tensor(self):
        file = io.BytesIO()
        values = np.arange(6, dtype=np.float32).reshape(2, 3)
        ggml_file.write_tensor(file, "ab", values, "f16")
        self.assertEqual(file.getvalue(), struct.pack(
            "<3i2i2s6e", 2, 2, 1, 3, 2, b"ab", *range(6)))

    def test_bias_of_a_convolution_has_two_dimensions(self):
        file = io.BytesIO()
        ggml_file.write_tensor(file, "encoder.conv1.bias",
                               np.ones(2, np.float32), "f16")
        file.seek(0)
        self.assertEqual(read_tensor_heads(file),
                         {"encoder.conv1.bias": ((2, 1), 0)})

    def test_unused_token_ids_share_the_last_row(self):
        rows = np.array([[1.0], [2.0], [9.0]], np.float32)
        expanded = ggml_file.expand_token_rows(rows, [0, 50257])
        self.assertEqual(expanded.shape, (VOCABULARY_SIZE, 1))
        self.assertEqual(expanded[[0, 1, 50257, -1], 0].tolist(),
                         [1, 9, 2, 9])

    def test_shipped_model_is_what_the_recipe_describes(self):
        vocabulary = Vocabulary()
        strings = list(vocabulary.strings)
        strings[Vocabulary.SILENCE] = ""
        header = io.BytesIO()
        ggml_file.write_header(header, ModelShape(), "q4_0", strings)
        with open(SHIPPED / "ggml-demo.bin", "rb") as file:
            self.assertEqual(file.read(len(header.getvalue())),
                             header.getvalue())
            tensors = read_tensor_heads(file)
        self.assertEqual(tensors["decoder.token_embedding.weight"],
                         ((VOCABULARY_SIZE, 128), 2))
        self.assertEqual(tensors["encoder.conv2.weight"], ((128, 128, 3), 1))
        # Encoder: 7 around its blocks, 15 in each; decoder: 4 and 24.
        self.assertEqual(len(tensors), 7 + 4 * 15 + 4 + 2 * 24)


if __name__ == "__main__":
    unittest.main()
