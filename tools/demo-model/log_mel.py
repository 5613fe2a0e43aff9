"""The log-mel spectrogram, computed as whisper.cpp computes it."""

import torch

from mel_filters import mel_filters
from whisper_format import FFT_SIZE, HOP

# One unit of a spectrogram is four decades of power (see log_mel), so that the
# eight decades kept below the loudest point are two units.
DYNAMIC_RANGE = 2.0

_FILTERS = torch.from_numpy(mel_filters())
_WINDOW = torch.hann_window(FFT_SIZE, periodic=True)
_MARGIN = FFT_SIZE // 2


def log_mel(samples: torch.Tensor, n_frames: int) -> torch.Tensor:
    """Turn sound into spectrograms.

    samples: float (batch, samples) in -1..1 at 16 kHz, zeros after the end.
    Returns float (batch, 80, n_frames), one frame per 10 ms.

    Half a window is reflected in front, zeros follow the end, power below
    1e-10 or eight decades under the loudest point is raised to that, and the
    logarithm is mapped by (x + 4) / 4.
    """
    batch, length = samples.shape
    needed = n_frames * HOP + FFT_SIZE
    reflected = torch.flip(samples[:, 1:_MARGIN + 1], dims=[1])
    zeros = samples.new_zeros(batch, max(0, needed - length - _MARGIN))
    padded = torch.cat([reflected, samples, zeros], dim=1)[:, :needed]
    windows = padded.unfold(1, FFT_SIZE, HOP)[:, :n_frames] * _WINDOW
    spectrum = torch.fft.rfft(windows)
    power = spectrum.real ** 2 + spectrum.imag ** 2
    decades = torch.log10(torch.clamp(power @ _FILTERS.T, min=1e-10))
    floor = decades.amax(dim=(1, 2), keepdim=True) - 8.0
    return ((torch.maximum(decades, floor) + 4.0) / 4.0).transpose(1, 2)
