"""The activation function GELU, with a fast form for training in bfloat16."""

import ctypes
from collections.abc import Callable
from pathlib import Path

import torch
from torch.nn import functional

Activation = Callable[[torch.Tensor], torch.Tensor]


def gelu(x: torch.Tensor) -> torch.Tensor:
    """Compute GELU in the tanh form, as whisper.cpp does."""
    return functional.gelu(x, approximate="tanh")


def load_fast_gelu(path: Path) -> Activation:
    """Return a GELU that uses the library made from fast_gelu.c."""
    library = ctypes.CDLL(str(path.resolve()))
    library.gelu_forward.restype = None
    library.gelu_backward.restype = None

    def address(tensor: torch.Tensor) -> ctypes.c_void_p:
        return ctypes.c_void_p(tensor.data_ptr())

    class FastGelu(torch.autograd.Function):
        @staticmethod
        def forward(ctx, x: torch.Tensor) -> torch.Tensor:
            x = x.contiguous()
            y = torch.empty_like(x)
            library.gelu_forward(address(x), address(y),
                                 ctypes.c_long(x.numel()))
            ctx.save_for_backward(x)
            return y

        @staticmethod
        def backward(ctx, y_gradient: torch.Tensor) -> torch.Tensor:
            x, = ctx.saved_tensors
            y_gradient = y_gradient.contiguous().to(torch.bfloat16)
            x_gradient = torch.empty_like(x)
            library.gelu_backward(address(x), address(y_gradient),
                                  address(x_gradient),
                                  ctypes.c_long(x.numel()))
            return x_gradient

    def fast_gelu(x: torch.Tensor) -> torch.Tensor:
        if x.dtype == torch.bfloat16:
            return FastGelu.apply(x)
        return gelu(x)

    return fast_gelu
