"""Facts about Whisper models and whisper.cpp's model files.

Sources, named at each value: the Whisper paper (Radford et al., "Robust
Speech Recognition via Large-Scale Weak Supervision", 2022), the multilingual
tokenizer published with it, and the file format and behaviour of whisper.cpp
1.9, which is what has to load the result.
"""

from dataclasses import dataclass

# Whisper paper, section 2.2: 16 kHz sound, 25 ms windows, 10 ms steps.
SAMPLE_RATE = 16000         # samples per second
FFT_SIZE = 400              # samples per analysis window
HOP = 160                   # samples between two mel frames

# The encoder's second convolution has stride 2 (same section), so that one
# encoder frame stands for two mel frames: 20 ms.
MEL_FRAMES_PER_ENCODER_FRAME = 2
ENCODER_HOP = HOP * MEL_FRAMES_PER_ENCODER_FRAME        # samples
ENCODER_FRAMES_PER_SECOND = SAMPLE_RATE // ENCODER_HOP

# Size of the multilingual vocabulary. whisper.cpp takes a model with at least
# this many tokens for a multilingual one and places the special tokens by it,
# so a smaller table would not be understood.
VOCABULARY_SIZE = 51865

# Token ids of the multilingual tokenizer that occur in training sequences.
END_OF_TEXT = 50257
START_OF_TRANSCRIPT = 50258
LANGUAGE_ENGLISH = 50259
TRANSLATE = 50358
TRANSCRIBE = 50359
START_OF_PREVIOUS = 50361   # stands before the text of a prompt
NO_TIMESTAMPS = 50363


@dataclass(frozen=True)
class ModelShape:
    """Sizes of a model, named as in whisper.cpp and in checkpoints.

    The defaults are the demo model's; the Whisper paper's smallest model has
    width 384 and four layers on each side.
    """

    # 512 encoder frames are 10.24 s. whisper.cpp's attention pads its keys to
    # a multiple of 256 without masking them, so only multiples come out right.
    n_audio_ctx: int = 512
    n_audio_state: int = 128
    n_audio_head: int = 4
    n_audio_layer: int = 4
    n_text_ctx: int = 128
    # A row of quantised weights must be a multiple of the block size of 32.
    n_text_state: int = 128
    n_text_head: int = 4
    n_text_layer: int = 2
    # Whisper paper, section 2.2.
    n_mels: int = 80
