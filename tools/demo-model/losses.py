"""What training minimises.

Besides the next token the model learns, from espeak-ng's timing, which
phoneme and word each encoder frame belongs to and where its decoder should
look. So small a model would not find that out in an hour.
"""

from dataclasses import dataclass

import torch
from torch.nn import functional

from batches import IGNORED, Batch
from model import Whisper

PHONEME_WEIGHT = 0.5
WORD_WEIGHT = 0.5
ORDINAL_WEIGHT = 0.3
ATTENTION_WEIGHT = 0.3

# Of the first decoder block only this many heads are guided, and less.
FIRST_BLOCK_GUIDED_HEADS = 2
FIRST_BLOCK_WEIGHT = 0.3

# The frame heads see every third frame: enough, and cheaper.
FRAME_STEP = 3


@dataclass
class Losses:
    """Mean losses of a batch, and the share of tokens predicted right."""

    token: torch.Tensor
    phoneme: torch.Tensor
    word: torch.Tensor
    ordinal: torch.Tensor
    attention: torch.Tensor
    accuracy: torch.Tensor

    def total(self, hearing_weight: float) -> torch.Tensor:
        """Return the sum; hearing_weight scales all but the token loss."""
        hearing = (PHONEME_WEIGHT * self.phoneme + WORD_WEIGHT * self.word
                   + ORDINAL_WEIGHT * self.ordinal
                   + ATTENTION_WEIGHT * self.attention)
        return self.token + hearing_weight * hearing

    def values(self) -> list[float]:
        """Return all figures in the order of the fields."""
        return [figure.item() for figure in vars(self).values()]


def _cross_entropy(scores: torch.Tensor,
                   targets: torch.Tensor) -> torch.Tensor:
    return functional.cross_entropy(scores.float().flatten(0, 1),
                                    targets.flatten(), ignore_index=IGNORED)


def _attention_loss(attention: list[torch.Tensor],
                    spans: torch.Tensor) -> torch.Tensor:
    """Return how little of the decoder's attention is on the token's span."""
    frames = torch.arange(attention[0].shape[-1])
    inside = (frames >= spans[..., :1]) & (frames < spans[..., 1:])
    known = spans[..., 0] >= 0

    def loss(weights: torch.Tensor) -> torch.Tensor:
        share = (weights.mean(1) * inside).sum(-1)
        return -torch.log(share + 1e-4)[known].mean()

    first = attention[0].float()[:, :FIRST_BLOCK_GUIDED_HEADS]
    return (loss(attention[-1].float())
            + FIRST_BLOCK_WEIGHT * loss(first))


def compute_losses(model: Whisper, batch: Batch, first_frame: int,
                   guide_attention: bool, bfloat16: bool) -> Losses:
    """Run the model on a batch.

    first_frame, below FRAME_STEP, is the first frame the frame heads see.
    """
    with torch.autocast("cpu", dtype=torch.bfloat16, enabled=bfloat16):
        encoded = model.encoder(batch.mel)
        scores, attention = model.decoder(batch.rows, encoded)
        heard = encoded[:, first_frame::FRAME_STEP]
        phoneme_scores = model.ph_head(heard)
        word_scores = model.word_head(heard)
        ordinal_scores = model.ord_head(heard)

    def frame_loss(frame_scores: torch.Tensor,
                   labels: torch.Tensor) -> torch.Tensor:
        return _cross_entropy(frame_scores,
                              labels[:, first_frame::FRAME_STEP])

    right = scores.argmax(-1) == batch.targets
    return Losses(
        token=_cross_entropy(scores, batch.targets),
        phoneme=frame_loss(phoneme_scores, batch.phonemes),
        word=frame_loss(word_scores, batch.words),
        ordinal=frame_loss(ordinal_scores, batch.ordinals),
        attention=(_attention_loss(attention, batch.spans)
                   if guide_attention else torch.zeros(())),
        accuracy=right[batch.targets != IGNORED].float().mean())
