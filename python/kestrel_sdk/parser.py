"""Data lines of the controller, read into tables of tracked objects."""

from __future__ import annotations

from typing import Iterator, Union

from . import _native, records
from .errors import ParseError

Text = Union[str, bytes, bytearray, memoryview]


def _bytes_of(text: Text) -> bytes:
    if isinstance(text, str):
        return text.encode("utf-8")
    if isinstance(text, (bytes, bytearray, memoryview)):
        return bytes(text)
    raise TypeError(f"str or bytes are needed, not {type(text).__name__}")


def _shown(line: bytes) -> str:
    text = line[:60].decode("ascii", "backslashreplace")
    return repr(text if len(line) <= 60 else text + "...")


def _lines_of(frame: bytes) -> Iterator[bytes]:
    for line in frame.split(b"\n"):
        yield line[:-1] if line.endswith(b"\r") else line


class _Tables:
    """The tables, as lists of records. Each access makes new ones."""

    _native: _native.Parser

    @property
    def counter(self) -> int:
        """The controller's frame counter, line "fr"; 0 when unknown."""
        return self._native.counter()

    @property
    def timestamp(self) -> float:
        """The controller's time in seconds, line "ts"; -1 when unknown."""
        return self._native.timestamp()

    @property
    def bodies(self) -> list[records.Body]:
        """Standard bodies."""
        return [records.Body(*fields) for fields in self._native.bodies()]

    @property
    def wands(self) -> list[records.Wand]:
        """Hand-held interaction devices."""
        return [records.Wand(*fields) for fields in self._native.wands()]

    @property
    def tools(self) -> list[records.Tool]:
        """Measurement Tools; the first one is "M1"."""
        return [records.Tool(*fields) for fields in self._native.tools()]

    @property
    def references(self) -> list[records.Reference]:
        """Measurement Tool references; the first one is "MR1"."""
        return [records.Reference(*fields) for fields in self._native.references()]

    @property
    def hands(self) -> list[records.Hand]:
        """Tracked hands."""
        return [
            records.Hand(*fields, [records.Finger(*finger) for finger in fingers])
            for *fields, fingers in self._native.hands()
        ]

    @property
    def humans(self) -> list[records.Human]:
        """Human models."""
        return [
            records.Human(number, [records.Joint(*joint) for joint in joints])
            for number, joints in self._native.humans()
        ]

    @property
    def hybrid_bodies(self) -> list[records.HybridBody]:
        """Bodies with an inertial sensor."""
        return [records.HybridBody(*fields) for fields in self._native.hybrid_bodies()]

    @property
    def markers(self) -> list[records.Marker]:
        """Single markers."""
        return [records.Marker(*fields) for fields in self._native.markers()]


class Frame(_Tables):
    """One frame. What its lines do not tell of is not there."""

    def __init__(self, native: _native.Parser) -> None:
        self._native = native

    def __repr__(self) -> str:
        return f"<Frame {self.counter} at {self.timestamp} s>"


class Parser(_Tables):
    """Turns data lines, one at a time, into tables of tracked objects.

    >>> parser = Parser()
    >>> parser.parse_line("6dmtr 1 1 [0 1.000][10 20 30][1 0 0 0 1 0 0 0 1]")
    >>> parser.references[0].loc
    array([10., 20., 30.])

    Tables persist from line to line; ``start_frame`` and ``end_frame`` bracket the lines of one frame where
    the lines "6dcal" and "glcal" count. A line may hold anything: the worst is a ``ParseError``. Numbers are
    read with a point, whatever the locale. One thread at a time.
    """

    def __init__(self) -> None:
        self._native = _native.Parser()

    def start_frame(self) -> None:
        """Forgets frame counter, time stamp and the counts of calibrated objects; keeps the tables."""
        self._native.start_frame()

    def end_frame(self) -> None:
        """Brings the tables of bodies and hands to the counts of calibrated objects, if any were told."""
        self._native.end_frame()

    def parse_line(self, line: Text) -> None:
        """Reads one line, with or without its end; one of an unknown kind changes nothing.

        A line goes to its first NUL. A malformed one raises ``ParseError`` (``line`` is 1); what it filled so
        far stays, and one that asks for more than 65535 records of a kind changes nothing.
        ``ValueError``: more than one line.
        """
        lines = list(_lines_of(_bytes_of(line)))
        if len(lines) > 2 or (len(lines) == 2 and lines[1]):
            raise ValueError("more than one line: parse_frame() takes a frame")
        if not self._native.parse_line(lines[0]):
            raise ParseError(f"unreadable data line {_shown(lines[0])}", 1)

    def parse_frame(self, frame: Text) -> Frame:
        """Reads all lines of one frame, such as a datagram. Does not touch this parser's own tables.

        ``ParseError``: a line is malformed; its ``line`` counts from 1, empty lines too.
        """
        return parse_frame(frame)


def parse_frame(frame: Text, skip: bool = False) -> Frame:
    """As ``Parser.parse_frame``. With ``skip``, malformed lines count as not sent."""
    native = _native.Parser()
    native.start_frame()
    for number, line in enumerate(_lines_of(_bytes_of(frame)), start=1):
        if not native.parse_line(line) and not skip:
            raise ParseError(f"line {number}: unreadable data line {_shown(line)}", number)
    native.end_frame()
    return Frame(native)
