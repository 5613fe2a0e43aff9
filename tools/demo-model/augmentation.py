"""Making clean clips sound like recordings.

Sound is float32 in -1..1 at 16 kHz, levels are powers of ten. The order of
the random draws is part of the recipe.
"""

from dataclasses import dataclass

import numpy as np
import torch

from log_mel import DYNAMIC_RANGE
from whisper_format import ENCODER_FRAMES_PER_SECOND, SAMPLE_RATE

SILENT_SHARE = 0.02
NOISY_SHARE = 0.6
SIXTEEN_BIT_SHARE = 0.7
TILTED_SHARE = 0.5

# Seconds of the window that padding leaves free.
ROOM_LEFT = 0.1

FULL_SCALE = 32768.0


@dataclass
class Sound:
    """What a microphone would deliver."""

    samples: np.ndarray
    lead: float = 0.0           # seconds before the clip begins
    silent: bool = False        # nobody speaks


def to_float(samples: np.ndarray) -> np.ndarray:
    """Convert int16 samples."""
    return samples.astype(np.float32) / FULL_SCALE


def coloured_noise(rng: np.random.Generator, length: int) -> np.ndarray:
    """Return white or low-passed noise, sometimes with hum, of any level."""
    white = rng.standard_normal(length).astype(np.float32)
    kind = rng.random()
    if kind < 0.4:
        return white
    corner = rng.uniform(0.5, 0.98)
    spectrum = np.fft.rfft(white)
    frequencies = np.linspace(0, 1, len(spectrum), dtype=np.float32)
    slope = rng.uniform(0.5, 1.5)
    spectrum *= 1.0 / (1.0 + (frequencies * 100 * corner) ** slope)
    noise = np.fft.irfft(spectrum, length).astype(np.float32)
    if kind <= 0.85:
        return noise
    time = np.arange(length, dtype=np.float32) / SAMPLE_RATE
    hum = np.sin(2 * np.pi * rng.choice([50, 60, 100, 120]) * time
                 + rng.uniform(0, 6)).astype(np.float32)
    return noise / (noise.std() + 1e-9) + 2.0 * hum


def _silence(rng: np.random.Generator) -> Sound:
    """Return up to six seconds of noise or of nothing."""
    length = int(rng.uniform(0.05, 6.0) * SAMPLE_RATE)
    samples = np.zeros(length, np.float32)
    if rng.random() < 0.8:
        samples = coloured_noise(rng, length)
        samples *= 10 ** rng.uniform(-4.5, -1.5) / (samples.std() + 1e-9)
    return Sound(samples, silent=True)


def _draw_lead(rng: np.random.Generator) -> float:
    """Return seconds of silence before a clip: none, short or longer."""
    kind = rng.random()
    if kind < 0.15:
        return 0.0
    if kind < 0.6:
        return rng.uniform(0, 0.3)
    return rng.uniform(0.3, 1.2)


def _draw_tail(rng: np.random.Generator) -> float:
    """Return seconds of silence after a clip."""
    return 0.0 if rng.random() < 0.1 else rng.uniform(0, 0.9)


def record(samples: np.ndarray, rng: np.random.Generator,
           window: int) -> Sound:
    """Return a clip as a microphone might deliver it, or silence instead.

    Draws silence around it, a level, noise 12 to 55 dB below the voice and
    rounding to 16 bits. window is the model's, in encoder frames.
    """
    if rng.random() < SILENT_SHARE:
        return _silence(rng)
    lead, tail = _draw_lead(rng), _draw_tail(rng)
    room = (window / ENCODER_FRAMES_PER_SECOND - ROOM_LEFT
            - len(samples) / SAMPLE_RATE)
    lead = min(lead, max(0, room * 0.6))
    tail = min(tail, max(0, room - lead))
    recorded = np.zeros(int((lead + tail) * SAMPLE_RATE) + len(samples),
                        np.float32)
    first = int(lead * SAMPLE_RATE)
    voice = recorded[first:first + len(samples)]
    voice[:] = samples * 10 ** rng.uniform(-1.3, 0.1)
    if rng.random() < NOISY_SHARE:
        decibels = rng.uniform(12, 55)
        noise = coloured_noise(rng, len(recorded))
        recorded += noise * (np.sqrt((voice ** 2).mean())
                             / (noise.std() + 1e-9) * 10 ** (-decibels / 20))
    if rng.random() < SIXTEEN_BIT_SHARE:
        recorded = np.round(np.clip(recorded, -1, 1) * 32767) / 32767
    return Sound(recorded.astype(np.float32), lead=first / SAMPLE_RATE)


def colour_by_microphone(mel: torch.Tensor,
                         rng: np.random.Generator) -> torch.Tensor:
    """Add smooth random frequency curves to some spectrograms of a batch.

    mel is (batch, mels, frames) as log_mel.log_mel() returns it.
    """
    batch, n_mels, _ = mel.shape
    draws = rng.standard_normal((batch, 3)).astype(np.float32)
    gains = torch.from_numpy(draws) * 0.06
    height = torch.linspace(-1, 1, n_mels)
    curves = (gains[:, :1] * height + gains[:, 1:2] * (height * height - 0.33)
              + gains[:, 2:] * torch.sin(3 * height))
    chosen = (rng.random(batch) < TILTED_SHARE).astype(np.float32)
    curves = curves * torch.from_numpy(chosen)[:, None]
    mel = mel + curves[:, :, None]
    floor = mel.amax(dim=(1, 2), keepdim=True) - DYNAMIC_RANGE
    return torch.maximum(mel, floor)
