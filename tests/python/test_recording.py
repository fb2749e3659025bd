"""Recordings as structured arrays."""

import random
import subprocess
import sys
import threading
import warnings

import numpy as np
import pytest
from samples import HEADER, QUARTER, QUARTER_MATRIX, many_frames, recording, records, tool

from kestrel_sdk import POSE, ParseError, Parser, RecordingError, RecordingWarning, read_recording


def test_the_header_is_there_before_anything_is_read(tmp_path):
    found = read_recording(recording(tmp_path / "a", "no record at all\n"))
    assert found.versions == {"system": "3.1.0", "protocol": "1.14.0", "system_ct": "3.1.0",
                              "model": "SIMULATOR"}
    assert found.parameters == {"measurementtool reference_of_tool b01": "b01",
                                "measurementtool device b01": "Zürich"}
    assert found.start == np.datetime64("2026-11-22T03:40:12.345")


def test_poses_of_a_tool(tmp_path):
    second = tool(1, (7, 8, 9))
    path = recording(tmp_path / "a", (
        records(16667, "fr 5", "ts 1.0", f"6dmt2 2 2 {tool(0, (1, 2, 3), 5)} {second}")
        + records(33334, "fr 6", f"6dmt2 2 2 {tool(0, (0, 0, 0), 0, -1)} {second}")
        + records(50001, "fr 7")
        + "utc 60000123 2026-11-22T05:00:00.000Z\n"
        + records(60000123, f"6dmt2 2 2 {tool(0, (4, 5, 6))} {second}")))
    poses = read_recording(path).poses("M1")
    assert poses.dtype == POSE and POSE.itemsize == 136
    assert poses["seconds"].tolist() == [0.016667, 0.033334, 60.000123]
    assert poses["utc"].tolist() == np.array(
        ["2026-11-22T03:40:12.361", "2026-11-22T03:40:12.378", "2026-11-22T05:00:00.000"], "M8[ms]").tolist()
    assert poses["frame"].tolist() == [5, 6, -1]
    assert poses["quality"].tolist() == [1, -1, 1]
    assert poses["buttons"].tolist() == [5, 0, 0]
    np.testing.assert_array_equal(poses["xyz"], [[1, 2, 3], [np.nan] * 3, [4, 5, 6]])
    np.testing.assert_array_equal(poses["R"][[0, 2]], [QUARTER_MATRIX] * 2)
    assert np.isnan(poses["R"][1]).all()
    assert read_recording(path).poses("M2")["xyz"].tolist() == [[7, 8, 9]] * 3
    assert len(read_recording(path).poses("M3")) == len(read_recording(path).poses("MR1")) == 0


def test_poses_of_references_and_bodies(tmp_path):
    pose = f"[1 2 3]{QUARTER}"
    lines = records(1, "6dcal 3", f"6d 1 [1 0.5]{pose}", f"6dmtr 2 1 [1 0.9]{pose}")
    found = read_recording(recording(tmp_path / "a", lines))

    def qualities(*names):
        return [found.poses(name)["quality"].tolist() for name in names]

    assert qualities("B1", "B2", "B3", "B4") == [[-1], [0.5], [-1], []]
    assert qualities("MR1", "MR2", "MR3") == [[-1], [0.9], []]
    np.testing.assert_array_equal(found.poses("MR2")["R"], [QUARTER_MATRIX])


def test_what_is_wrong_with_neighbours_is_not_told(tmp_path):
    """Other tools' entries, and lines of other objects, are passed over."""
    line = f"6dmt2 3 3 {tool(0, (1, 2, 3))}[1 x][][][][]{tool(2, (7, 8, 9))}"
    found = read_recording(recording(tmp_path / "a", records(1, "6dj x", "ts x", "3d 1 [", line)))
    assert found.poses("M1")["xyz"].tolist() == [[1, 2, 3]]
    assert found.poses("M3")["xyz"].tolist() == [[7, 8, 9]]
    with pytest.raises(ParseError):
        found.poses("M2")


def test_poses_are_those_of_the_frames(tmp_path):
    """One tool after the other, they are what the parser makes of the whole lines."""
    chance = random.Random(5)
    frames = []
    for i in range(200):
        tools = [tool(k, [chance.uniform(-1e4, 1e4) for _ in range(3)], chance.randrange(16),
                      chance.choice((1.0, 0.25, -1.0))) for k in range(chance.randrange(5))]
        frames.append((f"fr {i}", f"6dmt2 5 {len(tools)} {''.join(tools)}"))
    found = read_recording(recording(tmp_path / "a", "".join(records(1000 * i, *lines)
                                                             for i, lines in enumerate(frames))))
    parsed = [Parser().parse_frame("\n".join(lines)) for lines in frames]
    for index in range(5):
        poses = found.poses(f"M{index + 1}")
        expected = [(frame.counter, frame.tools[index]) for frame in parsed if index < len(frame.tools)]
        assert poses["frame"].tolist() == [counter for counter, _ in expected]
        for pose, (_, seen) in zip(poses, expected):
            assert pose["quality"] == seen.quality
            assert pose["buttons"] == sum(2**k for k, pressed in enumerate(seen.buttons) if pressed)
            np.testing.assert_array_equal(pose["xyz"], seen.loc)
            np.testing.assert_array_equal(pose["R"], seen.rot)


def test_the_last_line_about_a_tool_counts(tmp_path):
    old, new = f"6dmt 1 [0 0.5 2][1 2 3]{QUARTER}", f"6dmt2 1 1 {tool(0, (4, 5, 6))}"
    body = records(1, old, new) + records(2, new, old) + records(3, new, "6dmt2 1 0")
    body += records(4, old, "6dmt 0") + records(5, "6dmt 0", new)
    poses = read_recording(recording(tmp_path / "a", body)).poses("M1")
    assert [round(1e6 * seconds) for seconds in poses["seconds"]] == [1, 2, 5]
    assert poses["xyz"].tolist() == [[4, 5, 6], [1, 2, 3], [4, 5, 6]] and poses["buttons"].tolist() == [0, 2, 0]


def test_the_frame_counter_is_the_controllers(tmp_path):
    line = f"6dmt2 1 1 {tool(0, (1, 2, 3))}"
    counters = ("fr 4294967295", "fr 0x10", "fr", "fr  7 x")
    body = "".join(records(i, counter, line) for i, counter in enumerate(counters))
    found = read_recording(recording(tmp_path / "a", body + records(9, "fr x", line)))
    assert found.poses("M1", end=8e-6)["frame"].tolist() == [2**32 - 1, 16, -1, 7]
    with pytest.raises(ParseError, match="line 18: unreadable data line"):
        found.poses("M1")


def test_the_older_lines_of_tools_are_read_too(tmp_path):
    path = recording(tmp_path / "a", records(1, f"6dmt 1 [0 0.5 2][1 2 3]{QUARTER}"))
    [pose] = read_recording(path).poses("M1")
    assert pose["buttons"] == 2 and pose["quality"] == 0.5


def test_a_recording_of_version_1_knows_no_wall_clock(tmp_path):
    header = HEADER.replace("recording 2", "recording 1").replace("start 2026-11-22T03:40:12.345Z\n", "")
    found = read_recording(recording(tmp_path / "a", many_frames(3), header))
    assert np.isnat(found.start) and np.isnat(found.poses("M1")["utc"]).all()


def test_a_range_of_time(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(10)))
    assert found.poses("M1", 0.003, 0.005)["frame"].tolist() == [3, 4, 5]
    assert found.poses("M1", begin=0.009)["frame"].tolist() == [9, 10]
    assert found.poses("M1", end=0.0015)["frame"].tolist() == [1]
    assert len(found.poses("M1", -5, float("inf"))) == 10 and len(found.poses("M1", end=-1)) == 0
    with pytest.raises(ValueError):
        found.poses("M1", begin=float("nan"))


def test_nothing_behind_the_range_is_looked_at(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(10) + "garbage\n"))
    assert len(found.poses("M1", end=0.005)) == 5


def test_pieces_hold_the_same(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(100)))
    pieces = list(found.pieces("M1", rows=30))
    assert [len(piece) for piece in pieces] == [30, 30, 30, 10]
    np.testing.assert_array_equal(np.concatenate(pieces), found.poses("M1"))


def test_more_poses_than_a_piece(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(10000)))
    assert found.poses("M1")["xyz"][:, 0].tolist() == list(range(1, 10001))


@pytest.mark.parametrize("first, sample", [(32768, 4096), (1000, 100), (2, 2), (2, 1)])
def test_poses_that_come_late_or_early_in_the_file(tmp_path, monkeypatch, first, sample):
    """How many there will be is guessed, and the guess is wrong here."""
    monkeypatch.setattr("kestrel_sdk.recording._FIRST_ROWS", first)
    monkeypatch.setattr("kestrel_sdk.recording._SAMPLE_ROWS", sample)
    filler = records(10**9, "3d 0 " + "x" * 60000)
    few = "".join(records(i, f"6dmt2 1 1 {tool(0, (i, 2, 3))}") for i in range(1, 5001))
    for name, body in (("early", few + 50 * filler), ("late", 50 * filler.replace("1000000000", "0") + few)):
        poses = read_recording(recording(tmp_path / name, body)).poses("M1")
        assert poses["xyz"][:, 0].tolist() == list(range(1, 5001)), name


@pytest.mark.parametrize("name", ["", "M0", "M", "X1", "M1 ", "M-1", "m1", "M1\n", "M99999999999", "MR",
                                  "M²"])
def test_a_wrong_name_is_refused(tmp_path, name):
    found = read_recording(recording(tmp_path / "a", many_frames(1)))
    with pytest.raises(ValueError, match="is not a name"):
        found.poses(name)


def test_wrong_options_are_refused(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(1)))
    with pytest.raises(ValueError):
        found.poses("M1", errors="ignore")
    with pytest.raises(ValueError):
        found.pieces("M1", rows=0)


@pytest.mark.parametrize("text, line", [
    ("", 1),
    ("something\n", 1),
    (HEADER.replace("version model", "version colour"), 6),
    (HEADER.replace("records\n", ""), 8),
])
def test_what_is_no_recording_is_an_error_with_the_line(tmp_path, text, line):
    with pytest.raises(RecordingError) as caught:
        read_recording(recording(tmp_path / "a", "", text))
    assert caught.value.line == line and f"line {line}: " in str(caught.value)


def test_a_malformed_record_is_an_error_with_the_line(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(10) + "5 fr fr 1\n"))
    with pytest.raises(RecordingError, match="line 50: the time stamp goes backwards") as caught:
        found.poses("M1")
    assert caught.value.line == 50
    taken = []
    with pytest.raises(RecordingError):
        for piece in found.pieces("M1"):
            taken.extend(piece["frame"])
    assert taken == list(range(1, 11))


def test_an_unreadable_data_line_is_an_error_or_left_out(tmp_path):
    body = many_frames(2) + records(5000, "fr 3", "6dmt2 x") + records(6000, "fr 4", "6dmtr x")
    body += records(7000, "fr 5", f"6dmt2 1 1 {tool(0, (1, 2, 3))}") + records(8000, "fr 6", "6dmt2 1 1 [0")
    found = read_recording(recording(tmp_path / "a", body))
    with pytest.raises(ParseError, match="line 19: unreadable data line") as caught:
        found.poses("M1")
    assert caught.value.line == 19 and not isinstance(caught.value, RecordingError)
    words = "2 unreadable data lines are left out, the first is line 19"
    with pytest.warns(RecordingWarning, match=words) as told:
        assert found.poses("M1", errors="skip")["frame"].tolist() == [1, 2, 5]
    assert told[0].filename == __file__


def test_a_last_line_that_is_cut_is_left_out_and_told(tmp_path):
    found = read_recording(recording(tmp_path / "a", many_frames(3) + "9000 fr fr 7"))
    with pytest.warns(RecordingWarning, match="the last line is cut") as told:
        assert len(found.poses("M1")) == 3
    assert told[0].filename == __file__


def test_a_whole_recording_is_read_without_a_warning(tmp_path):
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        read_recording(recording(tmp_path / "a", many_frames(3))).poses("M1")


def test_what_cannot_be_opened_is_an_error_of_the_system(tmp_path):
    with pytest.raises(FileNotFoundError) as caught:
        read_recording(tmp_path / "none")
    assert caught.value.filename == str(tmp_path / "none")
    with pytest.raises(OSError, match="only an ordinary file can be read"):
        read_recording(tmp_path)
    with pytest.raises(OSError, match="only an ordinary file can be read"):
        read_recording("/dev/zero")


def test_a_path_may_be_of_any_kind(tmp_path):
    path = recording(tmp_path / "Übung", many_frames(1))
    for form in (path, str(path), str(path).encode()):
        assert len(read_recording(form).poses("M1")) == 1


def test_others_run_while_a_file_is_read(tmp_path):
    line = "3d 0 " + "x" * 9000
    found = read_recording(recording(tmp_path / "a", "".join(records(i, line) for i in range(1000))))
    turns, done, started = [], threading.Event(), threading.Event()

    def take_turns():
        started.set()
        while not done.wait(0.0001):
            turns.append(1)

    before = sys.getswitchinterval()
    other = threading.Thread(target=take_turns)
    other.start()
    started.wait()
    # Nobody is made to give way: only who releases the interpreter lets others run.
    sys.setswitchinterval(1000)
    try:
        at_first = len(turns)
        for _ in range(500):
            found.poses("M1")
            if len(turns) > at_first + 5:
                break
        assert len(turns) > at_first + 5
    finally:
        sys.setswitchinterval(before)
        done.set()
        other.join()


MEMORY = """
import resource, sys
import kestrel_sdk
recording = kestrel_sdk.read_recording(sys.argv[1])
next(recording.pieces("M1", rows=1000))
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
count = sum(len(piece) for piece in recording.pieces("M1", rows=1000))
print(count, resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
"""


def test_a_large_recording_takes_little_memory(tmp_path):
    line = "3d 0 " + "x" * 9000
    body = "".join(records(1000 * i, f"6dmt2 1 1 {tool(0, (i, 2, 3))}", line, line)
                   for i in range(1, 1251))
    path = recording(tmp_path / "a", body)
    assert path.stat().st_size > 20e6
    told = subprocess.run([sys.executable, "-c", MEMORY, str(path)], check=True, capture_output=True,
                          text=True)
    count, kilobytes = map(int, told.stdout.split())
    assert count == 1250 and kilobytes < 6000
    path.unlink()
