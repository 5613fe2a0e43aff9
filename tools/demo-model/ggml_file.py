"""Writing whisper.cpp's model file.

Layout, little-endian: magic, eleven 32-bit sizes, mel filters, vocabulary
strings, then the tensors until the end of the file. Needs only numpy.
"""

import struct
from typing import BinaryIO

import numpy as np

from mel_filters import mel_filters
from whisper_format import VOCABULARY_SIZE, ModelShape

MAGIC = 0x67676D6C          # "ggml"
BLOCK = 32                  # values per quantisation block, all types here

# ggml_ftype of a file and ggml_type of a tensor.
FILE_TYPES = {"f32": 0, "f16": 1, "q4_0": 2, "q8_0": 7, "q5_0": 8}
TENSOR_TYPES = {"f32": 0, "f16": 1, "q4_0": 2, "q5_0": 6, "q8_0": 8}
# The file type of a quantised file carries the quantisation format's version.
QUANTISATION_VERSION = 2
QUANTISATION_VERSION_FACTOR = 1000


def _inverse(scales: np.ndarray) -> np.ndarray:
    """Return 1 / scale, and 0 for a scale of 0, float32."""
    safe = np.where(scales != 0, scales, 1)
    return np.where(scales != 0, 1.0 / safe, 0).astype(np.float32)


def _scale_bytes(scales: np.ndarray) -> np.ndarray:
    """Return scales as float16, one row of two bytes each."""
    return scales.astype(np.float16).view(np.uint8).reshape(-1, 2)


def _quantise_signed_peak(
        blocks: np.ndarray, half_range: int) -> tuple[np.ndarray, np.ndarray]:
    """Return scales and levels 0 .. 2 * half_range - 1 of q4_0 and q5_0.

    The value of largest magnitude gets level 0 exactly, whatever its sign.
    """
    peaks = blocks[np.arange(len(blocks)), np.abs(blocks).argmax(1)]
    scales = peaks / -float(half_range)
    shifted = blocks * _inverse(scales)[:, None] + (half_range + 0.5)
    levels = np.minimum(2 * half_range - 1, shifted.astype(np.int8))
    return scales, levels.astype(np.uint8)


def _pack_nibbles(levels: np.ndarray) -> np.ndarray:
    """Pack four low bits of value i and of value i + 16 into one byte."""
    low = levels & 15
    return low[:, :BLOCK // 2] | (low[:, BLOCK // 2:] << 4)


def quantise(values: np.ndarray, type_name: str) -> bytes:
    """Quantise rows of a multiple of 32 values as ggml's reference code does.

    type_name is q4_0, q5_0 or q8_0. A block of 32 values takes 18, 22 or 34
    bytes: a float16 scale, for q5_0 four bytes of fifth bits, the levels.
    """
    if values.shape[-1] % BLOCK:
        raise ValueError(f"rows of {values.shape[-1]} values do not divide "
                         f"into blocks of {BLOCK}")
    blocks = values.reshape(-1, BLOCK).astype(np.float32)
    if type_name == "q8_0":
        scales = np.abs(blocks).max(1) / 127.0
        levels = np.rint(blocks * _inverse(scales)[:, None]).astype(np.int8)
        parts = [levels.view(np.uint8)]
    elif type_name == "q5_0":
        scales, levels = _quantise_signed_peak(blocks, 16)
        fifth_bits = np.packbits(levels >> 4, axis=1, bitorder="little")
        parts = [fifth_bits, _pack_nibbles(levels)]
    elif type_name == "q4_0":
        scales, levels = _quantise_signed_peak(blocks, 8)
        parts = [_pack_nibbles(levels)]
    else:
        raise ValueError(f"unknown quantisation type {type_name}")
    return np.concatenate([_scale_bytes(scales), *parts], 1).tobytes()


def encode(values: np.ndarray, type_name: str) -> bytes:
    """Return the bytes of a tensor's values in a tensor type."""
    if type_name == "f32":
        return values.astype(np.float32).tobytes()
    if type_name == "f16":
        return values.astype(np.float16).tobytes()
    return quantise(values, type_name)


def expand_token_rows(
        rows: np.ndarray, whisper_ids: list[int]) -> np.ndarray:
    """Return an embedding row for each of the 51,865 token ids.

    rows[k] belongs to whisper_ids[k]; the last row is shared by all others.
    """
    expanded = np.repeat(rows[-1:], VOCABULARY_SIZE, 0)
    expanded[whisper_ids] = rows[:-1]
    return expanded


def tensor_type(name: str, dimensions: int, wanted: str) -> str:
    """Return the type in which whisper.cpp expects a tensor of a file.

    Vectors and positions are always f32 (the convolutions' biases too, though
    they have two dimensions); kernels of convolutions are never quantised.
    """
    always_f32 = (dimensions == 1 or name.endswith("positional_embedding")
                  or name.endswith((".conv1.bias", ".conv2.bias")))
    if always_f32:
        return "f32"
    if dimensions > 2 and wanted not in ("f32", "f16"):
        return "f16"
    return wanted


def write_header(file: BinaryIO, shape: ModelShape, type_name: str,
                 strings: list[str]) -> None:
    """Write everything that stands before the tensors.

    Only the used strings are stored; whisper.cpp names all further ids itself.
    """
    file_type = FILE_TYPES[type_name]
    if type_name.startswith("q"):
        file_type += QUANTISATION_VERSION * QUANTISATION_VERSION_FACTOR
    file.write(struct.pack(
        "<I11i", MAGIC, VOCABULARY_SIZE,
        shape.n_audio_ctx, shape.n_audio_state, shape.n_audio_head,
        shape.n_audio_layer, shape.n_text_ctx, shape.n_text_state,
        shape.n_text_head, shape.n_text_layer, shape.n_mels, file_type))
    filters = mel_filters(shape.n_mels)
    file.write(struct.pack("<2i", *filters.shape) + filters.tobytes())
    file.write(struct.pack("<i", len(strings)))
    for string in strings:
        encoded = string.encode()
        file.write(struct.pack("<I", len(encoded)) + encoded)


def write_tensor(file: BinaryIO, name: str, values: np.ndarray,
                 wanted: str) -> None:
    """Write one tensor: sizes, type, name, dimensions innermost first, data.

    wanted is the file's type; see tensor_type() for the exceptions.
    """
    if name.endswith((".conv1.bias", ".conv2.bias")):
        values = values.reshape(-1, 1)
    type_name = tensor_type(name, values.ndim, wanted)
    encoded = name.encode()
    file.write(struct.pack("<3i", values.ndim, len(encoded),
                           TENSOR_TYPES[type_name]))
    file.write(struct.pack(f"<{values.ndim}i", *reversed(values.shape)))
    file.write(encoded + encode(values, type_name))
