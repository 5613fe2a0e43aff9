"""Train the demo model on shards of synthetic speech.

The checkpoint holds averaged weights and what belongs to them, and can be
exported with export.py or be the start of a further training.
"""

import argparse
import math
import os
import random
import time
from contextlib import nullcontext
from dataclasses import asdict
from pathlib import Path
from typing import Any

import numpy as np
import torch
from torch import nn

import decoding
from batches import Item, PhonemeTable, draw_groups, make_batch, read_items
from fake_quantisation import HALF_RANGES, FakeQuantisation
from gelu import gelu, load_fast_gelu
from losses import FRAME_STEP, Losses, compute_losses
from model import Whisper
from vocabulary import Vocabulary
from whisper_format import ModelShape

# The learning rate falls along half a cosine to this share of its peak.
FINAL_LEARNING_RATE_SHARE = 0.02
WEIGHT_DECAY = 0.01
ADAM_BETAS = (0.9, 0.98)
LARGEST_GRADIENT_NORM = 1.0

# (until this part of the run, weight of the losses that teach hearing)
HEARING_WEIGHTS = ((0.3, 1.0), (0.8, 0.5), (math.inf, 0.25))
GUIDED_ATTENTION_UNTIL = 0.8

# Averaged weights follow with at most this inertia per step.
LARGEST_INERTIA = 0.999

REPORT_STEPS = 100
EARLY_REPORT_STEPS = (20, 50)
SAVE_SECONDS = 120
SCORE_SECONDS = 240
SCORED_CLIPS = 100
FINALLY_SCORED_CLIPS = 300


def warm_start(model: Whisper, vocabulary: Vocabulary,
               checkpoint: dict[str, Any]) -> int:
    """Begin with a checkpoint's weights; its words may be others.

    Returns how many of the token strings it knows.
    """
    old_weights, old_strings = checkpoint["model"], checkpoint["strings"]
    old_row = {string: row for row, string in enumerate(old_strings)}
    known = [(row, old_row[string])
             for row, string in enumerate(vocabulary.strings)
             if string in old_row]
    weights = model.state_dict()
    for name, tensor in weights.items():
        by_word = (name == "decoder.token_embedding.weight"
                   or name.startswith("word_head."))
        if not by_word:
            tensor.copy_(old_weights[name])
            continue
        for row, old in known:
            tensor[row] = old_weights[name][old]
        # Rows of special tokens follow the strings; heads have none.
        tensor[len(vocabulary.strings):] = (
            old_weights[name][len(old_strings):])
    model.load_state_dict(weights)
    return len(known)


class AveragedWeights:
    """A slow average of a model's weights, better than the last ones."""

    def __init__(self, model: Whisper) -> None:
        """Begin with the model's weights."""
        self.weights = {name: tensor.detach().clone()
                        for name, tensor in model.state_dict().items()}

    @torch.no_grad()
    def follow(self, model: Whisper, step: int) -> None:
        """Move towards the model's weights after a step."""
        inertia = min(LARGEST_INERTIA, (1 + step) / (10 + step))
        for name, tensor in model.state_dict().items():
            if tensor.dtype.is_floating_point:
                self.weights[name].mul_(inertia).add_(
                    tensor, alpha=1 - inertia)


class Report:
    """Prints mean losses from time to time."""

    def __init__(self) -> None:
        self._values: list[list[float]] = []

    def add(self, losses: Losses) -> None:
        """Take in the losses of a step."""
        self._values.append(losses.values())

    def print(self, step: int, minutes: float, rate: float,
              clips: int) -> None:
        """Print the means since the last time."""
        names = Losses.__dataclass_fields__
        means = np.mean(self._values, axis=0)
        figures = "  ".join(f"{name} {mean:.3f}"
                            for name, mean in zip(names, means))
        print(f"step {step}, {minutes:.1f} min, rate {rate:.1e}, "
              f"{clips} clips: {figures}", flush=True)
        self._values.clear()


class Trainer:
    """A training run."""

    def __init__(self, arguments: argparse.Namespace) -> None:
        """Read the data and make the model."""
        self.arguments = arguments
        self.rng = np.random.default_rng(arguments.seed)
        torch.manual_seed(arguments.seed)
        torch.set_num_threads(arguments.threads)
        self.vocabulary = Vocabulary()
        checkpoint = torch.load(arguments.init) if arguments.init else None
        # Known phonemes keep their numbers, or their weights would be lost.
        self.phonemes = PhonemeTable(checkpoint["ph"] if checkpoint else None)
        self.items = self._read(arguments.data)
        self.held_out = self._read(arguments.held_out)
        activation = gelu
        if arguments.gelu_library:
            activation = load_fast_gelu(arguments.gelu_library)
        self.model = Whisper(ModelShape(), self.vocabulary.n_used,
                             len(self.vocabulary.strings), activation)
        if checkpoint:
            known = warm_start(self.model, self.vocabulary, checkpoint)
            print(f"warm start: {known} of {len(self.vocabulary.strings)} "
                  "token strings known")
        self.quantisation = None
        if arguments.quantise:
            self.quantisation = FakeQuantisation(
                self.model, arguments.quantise)
        self.average = AveragedWeights(self.model)
        self.optimizer = self._make_optimizer()
        self.step = 0
        self.clips = 0

    def _read(self, folder: Path) -> list[Item]:
        return read_items(folder, self.vocabulary, self.phonemes)

    def _make_optimizer(self) -> torch.optim.Optimizer:
        """Return an AdamW that decays matrices only, not biases."""
        parameters = list(self.model.parameters())
        matrices = [p for p in parameters if p.dim() >= 2]
        vectors = [p for p in parameters if p.dim() < 2]
        return torch.optim.AdamW(
            [{"params": matrices, "weight_decay": WEIGHT_DECAY},
             {"params": vectors, "weight_decay": 0.0}],
            lr=self.arguments.learning_rate, betas=ADAM_BETAS)

    def _set_learning_rate(self, progress: float) -> float:
        """Set and return the rate at a part of the run, 0..1."""
        warmed_up = min(1, (self.step + 1) / self.arguments.warmup_steps)
        cosine = 0.5 * (1 + math.cos(math.pi * progress))
        rate = self.arguments.learning_rate * warmed_up * (
            FINAL_LEARNING_RATE_SHARE
            + (1 - FINAL_LEARNING_RATE_SHARE) * cosine)
        for group in self.optimizer.param_groups:
            group["lr"] = rate
        return rate

    def _whole_window(self, progress: float) -> bool:
        """Decide whether a batch is padded to the whole window."""
        return bool(progress >= self.arguments.whole_window_from
                    and self.rng.random() < self.arguments.whole_window_share)

    def _learn(self, items: list[Item], progress: float) -> Losses | None:
        """Do one step; None if it had to be skipped."""
        whole_window = self._whole_window(progress)
        if whole_window:
            frames = self.model.shape.n_audio_ctx
            items = items[:max(1, self.arguments.frames // frames)]
        batch = make_batch(items, self.vocabulary, self.rng, whole_window)
        quantised = (self.quantisation is not None
                     and progress >= self.arguments.quantise_from)
        hearing_weight = next(weight for until, weight in HEARING_WEIGHTS
                              if progress < until)
        # Gradients of the quantised weights, applied to the exact ones.
        with self.quantisation.applied() if quantised else nullcontext():
            losses = compute_losses(
                self.model, batch, int(self.rng.integers(0, FRAME_STEP)),
                guide_attention=progress < GUIDED_ATTENTION_UNTIL,
                bfloat16=not self.arguments.float32)
            self.optimizer.zero_grad(set_to_none=True)
            losses.total(hearing_weight).backward()
        norm = nn.utils.clip_grad_norm_(self.model.parameters(),
                                        LARGEST_GRADIENT_NORM)
        if not math.isfinite(norm.item()):
            print(f"step {self.step}: gradient not finite, skipped")
            return None
        self.optimizer.step()
        self.step += 1
        self.clips += len(items)
        self.average.follow(self.model, self.step)
        return losses

    def score(self, n_clips: int) -> decoding.Score:
        """Score the averaged, and if asked for quantised, weights."""
        exact = {name: tensor.clone()
                 for name, tensor in self.model.state_dict().items()}
        self.model.load_state_dict(self.average.weights)
        with self.quantisation.applied() if self.quantisation \
                else nullcontext():
            result = decoding.score(self.model, self.vocabulary,
                                    self.held_out[:n_clips])
        self.model.load_state_dict(exact)
        return result

    def save(self) -> None:
        """Write the checkpoint, which is replaced whole or not at all."""
        out = self.arguments.out
        unfinished = out.with_name(out.name + ".unfinished")
        torch.save({"model": self.average.weights,
                    "cfg": asdict(self.model.shape),
                    "ph": self.phonemes.numbers,
                    "strings": self.vocabulary.strings}, unfinished)
        os.replace(unfinished, out)

    def run(self) -> None:
        """Train for the given time."""
        report = Report()
        started = time.monotonic()
        saved = scored = started
        groups = draw_groups(self.items, self.arguments.frames, self.rng,
                             random.Random(self.arguments.seed))
        for items in groups:
            minutes = (time.monotonic() - started) / 60
            progress = minutes / self.arguments.minutes
            if progress >= 1:
                break
            rate = self._set_learning_rate(progress)
            losses = self._learn(items, progress)
            if losses is None:
                continue
            report.add(losses)
            if (self.step % REPORT_STEPS == 0
                    or self.step in EARLY_REPORT_STEPS):
                report.print(self.step, minutes, rate, self.clips)
            if time.monotonic() - saved > SAVE_SECONDS:
                self.save()
                saved = time.monotonic()
            if time.monotonic() - scored > SCORE_SECONDS:
                print(f"held-out clips: {self.score(SCORED_CLIPS)}",
                      flush=True)
                scored = time.monotonic()
        self.save()
        print(f"{self.step} steps, {self.clips} clips; held-out clips: "
              f"{self.score(FINALLY_SCORED_CLIPS)}")


def part(text: str) -> float:
    """Parse a number from 0 to 1."""
    value = float(text)
    if not 0 <= value <= 1:
        raise argparse.ArgumentTypeError("must be from 0 to 1")
    return value


def positive(text: str) -> float:
    """Parse a positive number."""
    value = float(text)
    if not value > 0:
        raise argparse.ArgumentTypeError("must be more than 0")
    return value


def parse_arguments() -> argparse.Namespace:
    """Read the command line. The defaults are those of ./reproduce."""
    parser = argparse.ArgumentParser(
        description=__doc__,
        formatter_class=argparse.ArgumentDefaultsHelpFormatter)
    add = parser.add_argument
    add("--data", type=Path, required=True, help="folder of training shards")
    add("--held-out", type=Path, required=True,
        help="folder of shards to score with")
    add("--out", type=Path, required=True, help="checkpoint to write")
    add("--init", type=Path, help="checkpoint to start from")
    add("--minutes", type=positive, default=60, help="how long to train")
    add("--learning-rate", type=positive, default=1.5e-3, help="its peak")
    add("--warmup-steps", type=int, default=200, metavar="N",
        help="steps in which the learning rate rises to its peak")
    add("--frames", type=int, default=6000, metavar="N",
        help="encoder frames (20 ms) per batch")
    add("--whole-window-from", type=part, default=0.6, metavar="PART",
        help="part of the run from which on some batches are padded to the "
             "model's whole window, as whisper-cli does")
    add("--whole-window-share", type=part, default=0.4, metavar="PART",
        help="share of those batches")
    add("--quantise", choices=sorted(HALF_RANGES),
        help="train towards a quantised model file of this type")
    add("--quantise-from", type=part, default=0.78, metavar="PART",
        help="part of the run from which on to do so")
    add("--gelu-library", type=Path, metavar="FILE",
        help="library made from fast_gelu.c, to be faster")
    add("--float32", action="store_true",
        help="compute in float32 instead of bfloat16")
    add("--threads", type=int, default=2, metavar="N", help="of PyTorch")
    add("--seed", type=int, default=1, help="of all random numbers")
    return parser.parse_args()


if __name__ == "__main__":
    Trainer(parse_arguments()).run()
