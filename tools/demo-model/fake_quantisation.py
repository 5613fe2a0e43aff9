"""Training with the weights that a quantised model file will hold."""

from collections.abc import Iterator
from contextlib import contextmanager

import torch

from ggml_file import BLOCK
from model import Whisper

# Half the number of levels of each type.
HALF_RANGES = {"q4_0": 8, "q5_0": 16}


def fake_quantise(weights: torch.Tensor, half_range: int) -> torch.Tensor:
    """Return the values ggml computes with after quantisation."""
    blocks = weights.reshape(-1, BLOCK)
    peaks = blocks.gather(1, blocks.abs().argmax(1, keepdim=True))
    scales = peaks / -half_range
    safe = torch.where(scales != 0, scales, torch.ones_like(scales))
    inverse = torch.where(scales != 0, 1 / safe, torch.zeros_like(scales))
    shifted = torch.floor(blocks * inverse + half_range + 0.5)
    levels = torch.clamp(shifted, 0, 2 * half_range - 1) - half_range
    return (levels * scales.half().float()).reshape(weights.shape)


class FakeQuantisation:
    """Swaps a model's weights for quantised ones and back."""

    def __init__(self, model: Whisper, type_name: str) -> None:
        """Prepare for a type of HALF_RANGES."""
        self._half_range = HALF_RANGES[type_name]
        self._parameters = [
            parameter for name, parameter in model.named_parameters()
            if parameter.dim() == 2 and "_head" not in name
            and not name.endswith("positional_embedding")]

    @contextmanager
    def applied(self) -> Iterator[None]:
        """Let the model compute with quantised weights, gradients too."""
        exact = [parameter.data for parameter in self._parameters]
        for parameter in self._parameters:
            parameter.data = fake_quantise(parameter.data, self._half_range)
        try:
            yield
        finally:
            for parameter, data in zip(self._parameters, exact):
                parameter.data = data
