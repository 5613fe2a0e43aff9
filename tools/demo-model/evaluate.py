"""Measure a model file's word errors with whisper-cli.

Every .wav file of a folder needs a .txt file of the same name with what it
says. Word errors ignore case and punctuation; a text is exact if it equals
the expected one to the character.
"""

import argparse
import re
import shlex
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

from scoring import edit_distance

CLIPS_PER_PROCESS = 50
# Far more than a clip takes; other load makes the tool's threads wait long.
SECONDS_PER_CLIP = 60


@dataclass
class Transcript:
    """What a clip says, what whisper-cli wrote, and its seconds for it."""

    expected: str
    actual: str
    seconds: float

    @property
    def words(self) -> int:
        """Return the number of words expected."""
        return len(_words(self.expected))

    @property
    def errors(self) -> int:
        """Return the number of wrong, missing and surplus words."""
        return edit_distance(_words(self.expected), _words(self.actual))


def _words(text: str) -> list[str]:
    return re.findall(r"[a-z']+", text.lower())


def _read_text(path: Path) -> str:
    return " ".join(path.read_text(encoding="utf-8").split())


def transcribe(command: list[str], clips: list[Path]) -> list[Transcript]:
    """Transcribe clips with one process.

    whisper-cli exits with 0 after several kinds of errors too; what shows
    them is that a text file is missing.
    """
    with tempfile.TemporaryDirectory() as folder:
        outputs = [Path(folder, str(index)) for index in range(len(clips))]
        full_command = [*command, "-otxt"]
        for clip in clips:
            full_command += ["-f", str(clip)]
        for output in outputs:
            full_command += ["-of", str(output)]
        started = time.monotonic()
        try:
            result = subprocess.run(
                full_command, capture_output=True, text=True,
                errors="replace", timeout=SECONDS_PER_CLIP * len(clips))
        except subprocess.TimeoutExpired as error:
            raise SystemExit(
                f"{command[0]} took over {error.timeout} s.") from error
        seconds = (time.monotonic() - started) / len(clips)
        texts = [output.with_suffix(".txt") for output in outputs]
        if result.returncode or not all(text.exists() for text in texts):
            raise SystemExit(f"{command[0]} failed with status "
                             f"{result.returncode}:\n{result.stderr[-2000:]}")
        return [Transcript(_read_text(clip.with_suffix(".txt")),
                           _read_text(text), seconds)
                for clip, text in zip(clips, texts)]


def summarise(transcripts: list[Transcript]) -> str:
    """Return the figures in one line."""
    errors = sum(transcript.errors for transcript in transcripts)
    words = sum(transcript.words for transcript in transcripts)
    perfect = sum(transcript.errors == 0 for transcript in transcripts)
    exact = sum(transcript.expected == transcript.actual
                for transcript in transcripts)
    seconds = [transcript.seconds for transcript in transcripts]
    clips = len(transcripts)
    return (f"{clips} clips, word errors {errors / words:.2%} "
            f"({errors} of {words}), word-perfect {perfect / clips:.1%}, "
            f"exact {exact / clips:.1%}, seconds per clip: median "
            f"{statistics.median(seconds):.3f}, most {max(seconds):.3f}")


def parse_arguments() -> argparse.Namespace:
    """Read the command line."""
    parser = argparse.ArgumentParser(description=__doc__)
    add = parser.add_argument
    add("model", type=Path, help="model file")
    add("clips", type=Path, help="folder of .wav and .txt files")
    add("--cli", default="whisper-cli", metavar="PROGRAM",
        help="whisper-cli (default: the one on the search path)")
    add("--options", default="", metavar="TEXT",
        help='further options of whisper-cli, as in --options="-bs 8"')
    add("--language", default="auto", help="default: %(default)s")
    add("--threads", default="2", help="default: %(default)s")
    add("--limit", type=int, metavar="N", help="take only the first N clips")
    add("--show", type=int, default=5, metavar="N",
        help="print up to N clips with errors (default: %(default)s)")
    add("--each", action="store_true",
        help="start a process per clip, as an application does, so that the "
             "seconds are those of a whole run")
    add("--require", type=float, metavar="PERCENT",
        help="exit with status 1 if there are more word errors")
    return parser.parse_args()


def main() -> None:
    """Run the program."""
    arguments = parse_arguments()
    clips = sorted(arguments.clips.glob("*.wav"))[:arguments.limit]
    if not clips:
        raise SystemExit(f"There are no .wav files in {arguments.clips}.")
    command = [arguments.cli, "-m", str(arguments.model), "-nt",
               "-l", arguments.language, "-t", arguments.threads,
               *shlex.split(arguments.options)]
    at_once = 1 if arguments.each else CLIPS_PER_PROCESS
    transcripts: list[Transcript] = []
    for first in range(0, len(clips), at_once):
        transcripts += transcribe(command, clips[first:first + at_once])
    wrong = [transcript for transcript in transcripts if transcript.errors]
    for transcript in wrong[:arguments.show]:
        print(f"  expected {transcript.expected}\n"
              f"  got      {transcript.actual}")
    print(f"{arguments.clips.name}: {summarise(transcripts)}")
    if arguments.require is not None:
        errors = sum(transcript.errors for transcript in transcripts)
        words = sum(transcript.words for transcript in transcripts)
        if 100 * errors / words > arguments.require:
            raise SystemExit(f"More than {arguments.require} % word errors.")


if __name__ == "__main__":
    main()
