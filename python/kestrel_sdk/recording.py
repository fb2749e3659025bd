"""Recordings: what was recorded, as structured arrays."""

from __future__ import annotations

import math
import os
import re
import warnings
from typing import Iterator, Union

import numpy as np

from . import _native
from .errors import ParseError, RecordingError, RecordingWarning

POSE = np.dtype([
    ("seconds", "f8"),
    ("utc", "M8[ms]"),
    ("frame", "i8"),
    ("xyz", "f8", (3,)),
    ("R", "f8", (3, 3)),
    ("quality", "f8"),
    ("buttons", "u4"),
    ("_unused", "u4"),
])
"""A row of poses: ``seconds`` since the recording's start; ``utc``, the wall clock, NaT when the recording
does not know it; ``frame``, the controller's counter, -1 when it is missing; ``xyz`` in mm and the rotation
matrix ``R``, both NaN while the object is not tracked; ``quality``, -1 while it is not tracked; ``buttons``,
the pressed ones as a number, the first in the lowest bit."""

_NAME = re.compile(r"(M|MR|B)([1-9][0-9]{0,8})", re.ASCII)
_LAST = 2**64 - 1
_FIRST_ROWS = 32768  # so large that the system gives memory in large pages
_SAMPLE_ROWS = 4096  # from which their number is guessed
_LARGEST_GROWTH = 32  # of an array of poses at once


class Recording:
    """A recording that lies in a file; made by ``read_recording``. Nothing of it stays in memory."""

    def __init__(self, path: Union[str, bytes, os.PathLike]) -> None:
        self.path = os.fsdecode(path)
        """The file."""
        header = self._walk("M", 0, 0, 0, False)
        self.versions: dict[str, str] = header.versions()
        """The controller's versions: "system", "protocol", "system_ct", "model"."""
        self.parameters: dict[str, str] = header.parameters()
        """The recorded parameters of the controller."""
        start = header.start()
        self.start = np.datetime64("NaT" if start is None else start, "ms")
        """The wall clock, UTC, at 0 seconds; NaT in recordings of version 1, which do not know it."""

    def __repr__(self) -> str:
        return f"<Recording {self.path!r}>"

    def poses(self, name: str, begin: float = 0.0, end: float = math.inf,
              errors: str = "raise") -> np.ndarray:
        """The poses of one object, a row of dtype ``POSE`` for each frame that tells of it, (n,).

        ``name`` is that of the live display: "M1" a tool (lines "6dmt" and "6dmt2"), "MR1" a reference, "B1" a
        body. ``begin`` and ``end``, in seconds, both belong to what is read. The array has 136 bytes a pose;
        the file itself is read piece by piece, while other threads run.

        ``RecordingError``: the recording is malformed. ``ParseError``: a data line that tells of the object, or a
        frame counter, cannot be read (what a line "6dmt2" says of other tools is passed over); with
        ``errors="skip"`` it is left out and a ``RecordingWarning`` tells how many were. A last line that is cut, as
        by a crash, is left out with such a warning. ``OSError``: the file cannot be read or is no ordinary file.
        """
        walk = self._begin(name, begin, end, errors)
        rows = np.empty(_FIRST_ROWS, POSE)
        count, more = walk.read(rows[:_SAMPLE_ROWS], 0)
        while more:
            # As many as there will be if the rest of the file is like what has been read; but not all of it may
            # be wanted.
            likely = round(count * min(1.1 / walk.share(), _LARGEST_GROWTH))
            if count == len(rows) or (count == _SAMPLE_ROWS and likely > len(rows)):
                larger = np.empty(max(likely, count + count // 2), POSE)
                larger[:count] = rows[:count]
                rows = larger
            fresh, more = walk.read(rows, count)
            count += fresh
        self._tell(walk)
        rows.resize(count, refcheck=False)
        return rows

    def pieces(self, name: str, begin: float = 0.0, end: float = math.inf, errors: str = "raise",
               rows: int = 65536) -> Iterator[np.ndarray]:
        """The same in arrays of up to ``rows`` rows: of any recording with constant memory.

        What comes before an error has been handed out when it is raised.
        """
        if rows < 1:
            raise ValueError("rows is at least 1")
        return self._pieces_of(self._begin(name, begin, end, errors), rows)

    def _begin(self, name: str, begin: float, end: float, errors: str) -> _native.Poses:
        if errors not in ("raise", "skip"):
            raise ValueError('errors is "raise" or "skip"')
        match = _NAME.fullmatch(name)
        if not match:
            raise ValueError(f'{name!r} is not a name such as "M1", "MR1" or "B1"')
        return self._walk(match[1], int(match[2]) - 1, _microseconds(begin), _microseconds(end),
                          errors == "skip")

    def _pieces_of(self, walk: _native.Poses, rows: int) -> Iterator[np.ndarray]:
        more = True
        while more:
            piece, count = np.empty(rows, POSE), 0
            while more and count < rows:
                fresh, more = walk.read(piece, count)
                count += fresh
            if count:
                yield piece[:count]
        self._tell(walk)

    def _walk(self, kind: str, index: int, begin: int, end: int, skip: bool) -> _native.Poses:
        walk = _native.Poses(os.fsencode(self.path), kind, index, begin, end, skip)
        malformed, _, line, reason, _ = walk.outcome()
        if malformed:
            raise RecordingError(f"{self.path}, line {line}: {reason}", line)
        return walk

    def _tell(self, walk: _native.Poses) -> None:
        malformed, truncated, line, reason, unreadable = walk.outcome()
        if reason:
            raise (RecordingError if malformed else ParseError)(f"{self.path}, line {line}: {reason}", line)
        if unreadable:
            warnings.warn(f"{self.path}: {unreadable} unreadable data lines are left out, "
                          f"the first is line {line}", RecordingWarning, stacklevel=3)
        if truncated:
            warnings.warn(f"{self.path}: the last line is cut and left out", RecordingWarning, stacklevel=3)


def _microseconds(seconds: float) -> int:
    if math.isnan(seconds):
        raise ValueError("a time is not a number")
    return 0 if seconds <= 0 else _LAST if seconds * 1e6 >= _LAST else round(seconds * 1e6)


def read_recording(path: Union[str, bytes, os.PathLike]) -> Recording:
    """Opens a recording that the workbench made and reads its header.

    >>> recording = read_recording("probe.kestrel")
    >>> recording.versions["protocol"]
    '1.14.0'
    >>> poses = recording.poses("M1")
    >>> poses["xyz"][0]
    array([101.2,  20.1, -30. ])

    ``RecordingError``: it is no recording. ``OSError``: it cannot be read.
    """
    return Recording(path)
