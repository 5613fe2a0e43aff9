"""Counting word errors."""

from collections.abc import Sequence


def edit_distance(expected: Sequence[str], actual: Sequence[str]) -> int:
    """Return the least number of insertions, deletions and replacements."""
    row = list(range(len(actual) + 1))
    for i, wanted in enumerate(expected, 1):
        diagonal, row[0] = row[0], i
        for j, found in enumerate(actual, 1):
            diagonal, row[j] = row[j], min(
                row[j] + 1, row[j - 1] + 1, diagonal + (wanted != found))
    return row[-1]
