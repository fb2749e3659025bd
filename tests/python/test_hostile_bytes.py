"""No bytes crash the interpreter or make anything but the exceptions that are promised."""

import random
import warnings
from pathlib import Path

import numpy as np
import pytest
from samples import HEADER, many_frames, tool

from kestrel_sdk import Frame, ParseError, Parser, RecordingWarning, read_recording

SEEDS = range(10)
MUTATIONS = 25
CORPUS = Path(__file__).resolve().parents[2] / "fuzz"

FRAME = ("fr 1\r\nts 2.5\r\n6dcal 2\r\n6d 1 [1 0.7][1 2 3][1 0 0 0 1 0 0 0 1]\r\n"
         f"6dmt2 1 1 {tool(0, (1, 2, 3), 5)}\r\n"
         "6dj 1 1 [0 1][17 0.5][1 2 3 40 50 60][1 0 0 0 1 0 0 0 1]\r\n"
         "6di 1 [0 2 0.1][1 2 3][1 0 0 0 1 0 0 0 1]\r\n"
         "gl 1 [0 1.0 1 1][1 2 3][1 0 0 0 1 0 0 0 1][4 5 6][1 0 0 0 1 0 0 0 1][7 10 20 11 21 12]\r\n"
         "6df 1 [0 1.0 160][1 2 3][1 0 0 0 1 0 0 0 1]\r\n3d 1 [9 1.0][1 2 3]").encode()
NASTY = [b"\0", b"\xff", b"[", b"]", b"-1", b"999999999999", b"nan", b"1e999", b"\n", b"\\x", b" ",
         b"6dmt2 ", b"65535"]
TABLES = ("bodies", "wands", "tools", "references", "hands", "humans", "hybrid_bodies", "markers")


def mutated(chance, text):
    data = bytearray(text)
    for _ in range(chance.randrange(1, 6)):
        at = chance.randrange(len(data) + 1)
        data[at:at + chance.choice((0, 0, 1, 1, 3, 50))] = chance.choice(
            (chance.choice(NASTY), b"", chance.randbytes(chance.randrange(1, 5))))
    return bytes(data)


def look_at_all(tables):
    for name in TABLES:
        records = getattr(tables, name)
        for record in records[:50]:
            for field in vars(record).values():
                assert not isinstance(field, np.ndarray) or field.size <= 16


def try_frame(parser, data):
    try:
        frame = parser.parse_frame(data)
        assert isinstance(frame, Frame)
        look_at_all(frame)
    except ParseError as error:
        assert 1 <= error.line <= data.count(b"\n") + 1
    for line in data.split(b"\n"):
        try:
            parser.parse_line(line)
        except ParseError:
            pass


def try_recording(path, data):
    path.write_bytes(data)
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", RecordingWarning)
            recording = read_recording(path)
            for name in ("M1", "MR1", "B2"):
                for errors in ("raise", "skip"):
                    assert recording.poses(name, errors=errors).dtype.itemsize == 136
    except ParseError as error:
        assert 1 <= error.line <= data.count(b"\n") + 1


@pytest.mark.parametrize("seed", SEEDS)
def test_frames(seed):
    chance, parser = random.Random(seed), Parser()
    for _ in range(MUTATIONS):
        try_frame(parser, mutated(chance, FRAME))
    try_frame(parser, chance.randbytes(500))


@pytest.mark.parametrize("seed", SEEDS)
def test_recordings(seed, tmp_path):
    chance, whole = random.Random(seed), (HEADER + many_frames(4)).encode()
    for _ in range(MUTATIONS):
        try_recording(tmp_path / "a", mutated(chance, whole))


def test_the_corpora_of_the_fuzzers(tmp_path):
    count = 0
    for folder in ("sdk", "recording"):
        for file in sorted((CORPUS / folder / "corpus").rglob("*")):
            if file.is_file():
                data = file.read_bytes()
                try_frame(Parser(), data)
                try_recording(tmp_path / "a", data)
                count += 1
    assert count > 10
