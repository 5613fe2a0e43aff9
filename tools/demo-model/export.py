"""Write a trained checkpoint as a model file for whisper-cli."""

import argparse
from pathlib import Path
from typing import Any

import torch

import ggml_file
from vocabulary import Vocabulary
from whisper_format import ModelShape

TOKEN_EMBEDDING = "decoder.token_embedding.weight"


def is_exported(name: str) -> bool:
    """Tell whether a tensor is part of Whisper, not a head of training."""
    return "_head." not in name


def export(checkpoint: dict[str, Any], out: Path, type_name: str,
           silence_text: str | None) -> None:
    """Write a checkpoint (see train.py) to a model file.

    silence_text replaces the text that the model writes for silence.
    """
    vocabulary = Vocabulary()
    if vocabulary.strings != checkpoint["strings"]:
        raise SystemExit(
            "The checkpoint was trained with another vocabulary.")
    strings = list(vocabulary.strings)
    if silence_text is not None:
        strings[Vocabulary.SILENCE] = silence_text
    with open(out, "wb") as file:
        ggml_file.write_header(
            file, ModelShape(**checkpoint["cfg"]), type_name, strings)
        for name, tensor in checkpoint["model"].items():
            if not is_exported(name):
                continue
            values = tensor.float().numpy()
            if name == TOKEN_EMBEDDING:
                values = ggml_file.expand_token_rows(
                    values, vocabulary.whisper_ids)
            ggml_file.write_tensor(file, name, values, type_name)


def main() -> None:
    """Run the program."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("checkpoint", type=Path, help="made by train.py")
    parser.add_argument("out", type=Path, help="model file to write")
    parser.add_argument(
        "--type", choices=sorted(ggml_file.FILE_TYPES), default="f16",
        help="how weights are stored (default: %(default)s)")
    parser.add_argument(
        "--silence-text", metavar="TEXT",
        help="what the model writes for silence, may be empty "
             "(default: as trained)")
    arguments = parser.parse_args()
    export(torch.load(arguments.checkpoint), arguments.out, arguments.type,
           arguments.silence_text)


if __name__ == "__main__":
    main()
