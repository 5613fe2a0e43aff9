"""The mel filter bank that Whisper uses and that its model files contain."""

import numpy as np

from whisper_format import FFT_SIZE, SAMPLE_RATE

# Slaney's mel scale (Auditory Toolbox, 1998): linear up to 1 kHz with 200/3 Hz
# per mel, logarithmic above with a factor of 6.4 per 27 mel.
HERTZ_PER_MEL = 200.0 / 3
LOG_FROM_HERTZ = 1000.0
LOG_FROM_MEL = 15.0
LOG_STEP = np.log(6.4) / 27.0


def hertz_to_mel(hertz: np.ndarray | float) -> np.ndarray:
    """Convert frequencies in Hz to Slaney mels."""
    hertz = np.asarray(hertz, dtype=np.float64)
    logarithmic = LOG_FROM_MEL + np.log(
        np.maximum(hertz, 1e-9) / LOG_FROM_HERTZ) / LOG_STEP
    return np.where(hertz >= LOG_FROM_HERTZ, logarithmic,
                    hertz / HERTZ_PER_MEL)


def mel_to_hertz(mel: np.ndarray | float) -> np.ndarray:
    """Convert Slaney mels to frequencies in Hz."""
    mel = np.asarray(mel, dtype=np.float64)
    return np.where(mel >= LOG_FROM_MEL,
                    LOG_FROM_HERTZ * np.exp(LOG_STEP * (mel - LOG_FROM_MEL)),
                    mel * HERTZ_PER_MEL)


def mel_filters(n_mels: int = 80) -> np.ndarray:
    """Return triangular filters of unit area, float32 (n_mels, bins).

    The bins are the FFT_SIZE // 2 + 1 = 201 frequencies of a real Fourier
    transform, 40 Hz apart.
    """
    bins = np.linspace(0, SAMPLE_RATE / 2, FFT_SIZE // 2 + 1)
    corners = mel_to_hertz(np.linspace(
        hertz_to_mel(0.0), hertz_to_mel(SAMPLE_RATE / 2), n_mels + 2))
    widths = np.diff(corners)
    distances = corners[:, None] - bins[None, :]
    rising = -distances[:-2] / widths[:-1, None]
    falling = distances[2:] / widths[1:, None]
    filters = np.maximum(0, np.minimum(rising, falling))
    filters *= (2.0 / (corners[2:] - corners[:-2]))[:, None]
    return filters.astype(np.float32)
