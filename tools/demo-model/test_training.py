"""Tests of the recipe's parts that need PyTorch.

    /usr/bin/python3 tools/demo-model/test_training.py
"""

import unittest
from random import Random

import numpy as np
import torch

from augmentation import record
from batches import (
    IGNORED, Item, PhonemeTable, draw_groups, make_batch)
from fake_quantisation import FakeQuantisation, fake_quantise
from ggml_file import quantise
from log_mel import log_mel
from mel_filters import mel_filters
from model import Whisper
from test_recipe import dequantise_4_bit
from train import warm_start
from vocabulary import Vocabulary
from whisper_format import ModelShape


def slow_log_mel(samples: np.ndarray, n_frames: int) -> np.ndarray:
    """Compute (mels, frames) by the definition."""
    padded = np.concatenate([samples[200:0:-1], samples, np.zeros(400)])
    window = 0.5 - 0.5 * np.cos(2 * np.pi * np.arange(400) / 400)
    frames = np.array([padded[160 * i:160 * i + 400] * window
                       for i in range(n_frames)])
    power = np.abs(np.fft.rfft(frames)) ** 2
    decades = np.log10(np.maximum(power @ mel_filters().T.astype(float),
                                  1e-10))
    return (np.maximum(decades, decades.max() - 8) + 4).T / 4


def some_item(vocabulary: Vocabulary) -> Item:
    """Return "Yes." in half a second of noise."""
    samples = np.random.default_rng(1).integers(-9000, 9000, 8000)
    rows = [vocabulary.row_of_string[" Yes"], vocabulary.row_of_string["."]]
    return Item(samples.astype(np.int16), rows, [(0.1, 0.4), (0.32, 0.56)],
                [(3, 0.1), (0, 0.4)])


class LogMelTest(unittest.TestCase):

    def test_equals_the_definition(self):
        samples = np.random.default_rng(1).uniform(-0.5, 0.5, 3200)
        mel = log_mel(torch.from_numpy(samples.astype(np.float32))[None], 20)
        np.testing.assert_allclose(mel[0].numpy(), slow_log_mel(samples, 20),
                                   atol=1e-4)


class FakeQuantisationTest(unittest.TestCase):

    def test_values_are_those_of_the_model_file(self):
        weights = torch.randn(16, 64, generator=torch.manual_seed(1))
        weights[3, :32] = 0
        stored = dequantise_4_bit(quantise(weights.numpy(), "q4_0"))
        np.testing.assert_array_equal(
            fake_quantise(weights, 8).numpy().ravel(), stored)

    def test_weights_come_back(self):
        model = Whisper(ModelShape(), n_used=20, n_strings=10)
        before = {name: tensor.clone()
                  for name, tensor in model.state_dict().items()}
        with FakeQuantisation(model, "q4_0").applied():
            weight = model.decoder.token_embedding.weight
            self.assertFalse(torch.equal(
                weight, before["decoder.token_embedding.weight"]))
        for name, tensor in model.state_dict().items():
            self.assertTrue(torch.equal(tensor, before[name]), name)


class BatchTest(unittest.TestCase):

    def setUp(self):
        self.vocabulary = Vocabulary()
        self.item = some_item(self.vocabulary)

    def test_plain_batch(self):
        v = self.vocabulary
        batch = make_batch([self.item], v)
        yes, stop = self.item.rows
        self.assertEqual(batch.rows.tolist(), [[
            v.start, v.english, v.transcribe, v.no_timestamps, yes, stop]])
        self.assertEqual(batch.targets.tolist(), [[
            v.english, IGNORED, IGNORED, yes, stop, v.end_of_text]])
        self.assertEqual(batch.spans.tolist(), [[
            [-1, -1], [-1, -1], [-1, -1], [5, 21], [16, 27], [-1, -1]]])
        self.assertEqual(batch.mel.shape, (1, 80, 2 * 27))
        words = [0] * 27
        words[5:20] = [yes] * 15
        self.assertEqual(batch.words.tolist(), [words])
        self.assertEqual(batch.ordinals.tolist(),
                         [[int(word != 0) for word in words]])
        self.assertEqual(batch.phonemes.tolist(),
                         [[3 * int(word != 0) for word in words]])

    def test_whole_window(self):
        batch = make_batch([self.item], self.vocabulary, whole_window=True)
        self.assertEqual(batch.mel.shape, (1, 80, 1024))

    def test_varied_batches_fit_and_end(self):
        rng = np.random.default_rng(1)
        for _ in range(50):
            batch = make_batch([self.item] * 3, self.vocabulary, rng)
            time = batch.mel.shape[2] // 2
            self.assertLessEqual(time, 512)
            self.assertEqual(batch.phonemes.shape, (3, time))
            self.assertLessEqual(int(batch.spans.max()), time)
            self.assertTrue((batch.targets == self.vocabulary.end_of_text)
                            .any(1).all())

    def test_recordings_fit_the_window(self):
        rng = np.random.default_rng(1)
        clip = np.full(16000 * 9, 0.5, np.float32)
        for _ in range(50):
            self.assertLessEqual(len(record(clip, rng, 512).samples),
                                 512 * 320)

    def test_each_clip_is_drawn_once_in_a_round(self):
        items = [Item(np.zeros(1000 * n, np.int16), [], [], [])
                 for n in range(1, 41)]
        groups = draw_groups(items, 600, np.random.default_rng(1), Random(1))
        drawn: list[int] = []
        while len(drawn) < len(items):
            drawn += [len(item.samples) for item in next(groups)]
        self.assertEqual(sorted(drawn), [1000 * n for n in range(1, 41)])

    def test_phoneme_numbers(self):
        table = PhonemeTable()
        self.assertEqual([table.number(phoneme)
                          for phoneme in ("", "a", "_:", "b", "a")],
                         [0, 1, 0, 2, 1])


class WarmStartTest(unittest.TestCase):

    def test_words_keep_their_weights_when_the_list_changes(self):
        vocabulary = Vocabulary()
        old_strings = vocabulary.strings[:3] + vocabulary.strings[5:8]
        n_special = vocabulary.n_used - len(vocabulary.strings)
        old = Whisper(ModelShape(), len(old_strings) + n_special,
                      len(old_strings))
        new = Whisper(ModelShape(), vocabulary.n_used,
                      len(vocabulary.strings))
        known = warm_start(new, vocabulary, {
            "model": old.state_dict(), "strings": old_strings})
        self.assertEqual(known, 6)
        old_rows = old.decoder.token_embedding.weight
        new_rows = new.decoder.token_embedding.weight
        self.assertTrue(torch.equal(new_rows[5], old_rows[3]))
        self.assertTrue(torch.equal(new_rows[-n_special - 1:],
                                    old_rows[-n_special - 1:]))
        self.assertTrue(torch.equal(new.word_head.bias[7],
                                    old.word_head.bias[5]))
        self.assertTrue(torch.equal(new.encoder.conv1.weight,
                                    old.encoder.conv1.weight))


if __name__ == "__main__":
    unittest.main()
