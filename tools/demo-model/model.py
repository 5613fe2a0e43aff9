"""The Whisper architecture, with the tensor names of Whisper's own files.

After section 2.2 of the Whisper paper. Two things differ in training only:
the token table holds just the used tokens (vocabulary.py), and the encoder
feeds three extra heads that teach it to hear (losses.py).
"""

import math

import torch
from torch import nn
from torch.nn import functional

from gelu import Activation, gelu
from whisper_format import VOCABULARY_SIZE, ModelShape

# Classes of the extra heads: phonemes of all voices (some stay unused), and
# the number of a word in its clip.
PHONEME_CLASSES = 160
ORDINAL_CLASSES = 32

# Whisper's encoder positions: periods up to this many times two pi.
LONGEST_PERIOD = 10000


class Gelu(nn.Module):
    """An activation function as a layer."""

    def __init__(self, activation: Activation) -> None:
        super().__init__()
        self.activation = activation

    def forward(self, x: torch.Tensor) -> torch.Tensor:
        return self.activation(x)


class Attention(nn.Module):
    """Multi-head attention."""

    def __init__(self, width: int, heads: int) -> None:
        super().__init__()
        self.heads = heads
        self.query = nn.Linear(width, width)
        self.key = nn.Linear(width, width, bias=False)
        self.value = nn.Linear(width, width)
        self.out = nn.Linear(width, width)

    def forward(self, x: torch.Tensor, source: torch.Tensor,
                mask: torch.Tensor | None = None
                ) -> tuple[torch.Tensor, torch.Tensor]:
        """Attend from x (batch, time, width) to source.

        mask is added to the scores. Returns the result and the weights
        (batch, heads, time, source time).
        """
        batch, time, width = x.shape
        source_time = source.shape[1]
        head_width = width // self.heads
        query = self.query(x).view(batch, time, self.heads, head_width)
        key = self.key(source).view(
            batch, source_time, self.heads, head_width)
        value = self.value(source).view(
            batch, source_time, self.heads, head_width)
        scores = torch.matmul(query.transpose(1, 2) * head_width ** -0.5,
                              key.permute(0, 2, 3, 1))
        if mask is not None:
            scores = scores + mask
        weights = functional.softmax(scores, dim=-1)
        mixed = torch.matmul(weights, value.transpose(1, 2))
        mixed = mixed.transpose(1, 2).reshape(batch, time, width)
        return self.out(mixed), weights


class Block(nn.Module):
    """A transformer block; the decoder's also attend to the encoder."""

    def __init__(self, width: int, heads: int, activation: Activation,
                 cross: bool) -> None:
        super().__init__()
        self.attn = Attention(width, heads)
        self.attn_ln = nn.LayerNorm(width)
        if cross:
            self.cross_attn = Attention(width, heads)
            self.cross_attn_ln = nn.LayerNorm(width)
        self.mlp = nn.Sequential(nn.Linear(width, 4 * width),
                                 Gelu(activation),
                                 nn.Linear(4 * width, width))
        self.mlp_ln = nn.LayerNorm(width)

    def forward(self, x: torch.Tensor, encoded: torch.Tensor | None = None,
                mask: torch.Tensor | None = None
                ) -> tuple[torch.Tensor, torch.Tensor | None]:
        """Return the result and the weights of the cross attention."""
        normalised = self.attn_ln(x)
        x = x + self.attn(normalised, normalised, mask)[0]
        cross_weights = None
        if encoded is not None:
            attended, cross_weights = self.cross_attn(
                self.cross_attn_ln(x), encoded)
            x = x + attended
        return x + self.mlp(self.mlp_ln(x)), cross_weights


def sinusoids(length: int, width: int) -> torch.Tensor:
    """Return the encoder's position embedding (length, width)."""
    step = math.log(LONGEST_PERIOD) / (width // 2 - 1)
    frequencies = torch.exp(-step * torch.arange(width // 2))
    angles = torch.arange(length)[:, None] * frequencies[None]
    return torch.cat([angles.sin(), angles.cos()], dim=1)


class Encoder(nn.Module):
    """Spectrogram (batch, mels, 2 * time) to states (batch, time, width)."""

    def __init__(self, shape: ModelShape, activation: Activation) -> None:
        super().__init__()
        width = shape.n_audio_state
        self.activation = activation
        self.conv1 = nn.Conv1d(shape.n_mels, width, 3, padding=1)
        self.conv2 = nn.Conv1d(width, width, 3, stride=2, padding=1)
        self.register_buffer("positional_embedding",
                             sinusoids(shape.n_audio_ctx, width))
        self.blocks = nn.ModuleList(
            Block(width, shape.n_audio_head, activation, cross=False)
            for _ in range(shape.n_audio_layer))
        self.ln_post = nn.LayerNorm(width)

    def forward(self, mel: torch.Tensor) -> torch.Tensor:
        x = self.activation(self.conv1(mel))
        x = self.activation(self.conv2(x)).transpose(1, 2)
        x = x + self.positional_embedding[:x.shape[1]]
        for block in self.blocks:
            x, _ = block(x)
        return self.ln_post(x)


class Decoder(nn.Module):
    """Token rows (batch, time) to scores of the next token's row.

    The last row stands for every unused token id. In the model file each of
    them gets a copy of it, so its score is raised by the log of their number.
    """

    def __init__(self, shape: ModelShape, n_used: int,
                 activation: Activation) -> None:
        super().__init__()
        width = shape.n_text_state
        self.token_embedding = nn.Embedding(n_used + 1, width)
        self.positional_embedding = nn.Parameter(
            torch.randn(shape.n_text_ctx, width) * 0.02)
        self.blocks = nn.ModuleList(
            Block(width, shape.n_text_head, activation, cross=True)
            for _ in range(shape.n_text_layer))
        self.ln = nn.LayerNorm(width)
        nn.init.normal_(self.token_embedding.weight, std=0.05)
        self.register_buffer("score_offset", torch.zeros(n_used + 1),
                             persistent=False)
        self.score_offset[-1] = math.log(VOCABULARY_SIZE - n_used)

    def forward(self, rows: torch.Tensor, encoded: torch.Tensor
                ) -> tuple[torch.Tensor, list[torch.Tensor]]:
        """Return the scores and each block's cross attention weights."""
        time = rows.shape[1]
        x = self.token_embedding(rows) + self.positional_embedding[:time]
        mask = torch.full((time, time), -1e9).triu(1)
        attention = []
        for block in self.blocks:
            x, weights = block(x, encoded, mask)
            attention.append(weights)
        x = self.ln(x)
        scores = functional.linear(x, self.token_embedding.weight)
        return scores + self.score_offset, attention


class Whisper(nn.Module):
    """The model and, for training, its extra heads.

    The tensor order in checkpoints and model files is that of this class.
    """

    def __init__(self, shape: ModelShape, n_used: int, n_strings: int,
                 activation: Activation = gelu) -> None:
        super().__init__()
        self.shape = shape
        self.encoder = Encoder(shape, activation)
        self.decoder = Decoder(shape, n_used, activation)
        width = shape.n_audio_state
        self.ph_head = nn.Linear(width, PHONEME_CLASSES)
        self.word_head = nn.Linear(width, n_strings)
        self.ord_head = nn.Linear(width, ORDINAL_CLASSES)
