"""Data lines and frames as Python objects."""

import locale
import pickle

import numpy as np
import pytest
from samples import QUARTER, QUARTER_MATRIX, tool

from kestrel_sdk import ParseError, Parser


@pytest.mark.parametrize("kind", [str, bytes, bytearray, memoryview])
def test_a_line_may_be_text_or_bytes(kind):
    line = "6dmtr 1 1 [0 1.000][10 20.5 -30][1 0 0 0 1 0 0 0 1]"
    parser = Parser()
    parser.parse_line(line if kind is str else kind(line.encode()))
    np.testing.assert_array_equal(parser.references[0].loc, [10, 20.5, -30])


@pytest.mark.parametrize("text", [5, None, ["fr 1"], 1.5])
def test_what_is_neither_text_nor_bytes_is_refused(text):
    with pytest.raises(TypeError):
        Parser().parse_line(text)
    with pytest.raises(TypeError):
        Parser().parse_frame(text)


def test_a_tool_has_arrays_that_numpy_computes_with():
    frame = Parser().parse_frame(f"fr 7\r\nts 1.25\r\n6dmt2 1 1 {tool(0, (1, 2, 3), 5)}")
    assert (frame.counter, frame.timestamp) == (7, 1.25)
    [record] = frame.tools
    assert (record.id, record.quality, record.tracked, record.tip_radius) == (0, 1.0, True, 0.75)
    assert record.loc.shape == (3,) and record.loc.dtype == np.float64
    np.testing.assert_array_equal(record.rot, QUARTER_MATRIX)
    np.testing.assert_array_equal(record.rot @ [1, 0, 0], [0, 1, 0])
    np.testing.assert_array_equal(record.cov, [[1, 2, 3], [2, 4, 5], [3, 5, 6]])
    assert record.buttons.dtype == bool and record.buttons.tolist() == [True, False, True, False]


def test_the_older_line_of_tools_has_four_buttons_and_no_covariance():
    [record] = Parser().parse_frame(f"6dmt 1 [0 0.5 2][1 2 3]{QUARTER}").tools
    assert record.buttons.tolist() == [False, True, False, False]
    assert record.tip_radius == 0 and not record.cov.any()


def test_an_object_that_is_not_tracked_has_no_pose():
    frame = Parser().parse_frame(f"6dmt2 2 2 {tool(0, (0, 0, 0), 3, -1)} {tool(1, (1, 2, 3))}")
    lost, seen = frame.tools
    assert not lost.tracked and lost.quality == -1
    assert np.isnan(lost.loc).all() and np.isnan(lost.rot).all() and np.isnan(lost.cov).all()
    assert lost.buttons.tolist() == [True, True, False, False]
    assert seen.tracked and np.isfinite(seen.rot).all()


def test_every_kind_of_object_is_there():
    pose = f"[1 2 3]{QUARTER}"
    frame = Parser().parse_frame("\r\n".join([
        "6dcal 3",
        f"6d 1 [1 0.7]{pose}",
        f"6df2 1 1 [0 1.0 2 2]{pose}[2 0.5 -0.25]",
        f"6dmtr 2 1 [1 0.9]{pose}",
        "glcal 1",
        f"gl 1 [0 1.0 1 1]{pose}[4 5 6]{QUARTER}[7 10 20 11 21 12]",
        f"6dj 1 1 [0 1][17 0.5][1 2 3 40 50 60]{QUARTER}",
        f"6di 1 [0 2 0.125]{pose}",
        "3d 1 [9 1.0][1 2 3]",
    ]))
    assert [body.tracked for body in frame.bodies] == [False, True, False]
    [wand] = frame.wands
    assert wand.buttons.tolist() == [False, True] and wand.joystick.tolist() == [0.5, -0.25]
    assert [reference.tracked for reference in frame.references] == [False, True]
    [hand] = frame.hands
    [finger] = hand.fingers
    assert hand.lr == 1 and finger.loc.tolist() == [4, 5, 6] and finger.tip_radius == 7
    assert finger.phalanx_lengths.tolist() == [10, 11, 12] and finger.phalanx_angles.tolist() == [20, 21]
    [human] = frame.humans
    [joint] = human.joints
    assert (human.id, joint.id, joint.quality) == (0, 17, 0.5) and joint.angles.tolist() == [40, 50, 60]
    [hybrid] = frame.hybrid_bodies
    assert (hybrid.state, hybrid.error, hybrid.tracked) == (2, 0.125, True)
    [marker] = frame.markers
    assert marker.id == 9 and marker.loc.tolist() == [1, 2, 3]
    for record in (frame.bodies[1], wand, frame.references[1], hand, hybrid):
        assert record.loc.tolist() == [1, 2, 3]
        np.testing.assert_array_equal(record.rot, QUARTER_MATRIX)


def test_tables_persist_from_line_to_line():
    parser = Parser()
    assert (parser.counter, parser.timestamp, parser.tools) == (0, -1, [])
    parser.parse_line(f"6dmt2 1 1 {tool(0, (1, 2, 3))}\r\n")
    parser.parse_line("fr 8")
    assert parser.counter == 8 and len(parser.tools) == 1
    parser.start_frame()
    assert parser.counter == 0 and len(parser.tools) == 1
    parser.parse_line("6dcal 2")
    assert parser.bodies == []
    parser.end_frame()
    assert len(parser.bodies) == 2


def test_a_frame_has_only_what_it_tells_of():
    parser = Parser()
    parser.parse_line(f"6dmt2 1 1 {tool(0, (1, 2, 3))}")
    first = parser.parse_frame(f"fr 1\n6dmt2 1 1 {tool(0, (4, 5, 6))}")
    second = parser.parse_frame("fr 2")
    assert second.tools == [] and second.counter == 2
    assert first.tools[0].loc.tolist() == [4, 5, 6]
    assert parser.tools[0].loc.tolist() == [1, 2, 3]


def test_arrays_are_copies():
    parser = Parser()
    parser.parse_line(f"6dmt2 1 1 {tool(0, (1, 2, 3))}")
    held = parser.tools[0].loc
    held[0] = 99
    parser.parse_line(f"6dmt2 1 1 {tool(0, (4, 5, 6))}")
    assert held.tolist() == [99, 2, 3] and parser.tools[0].loc.tolist() == [4, 5, 6]


def test_a_malformed_line_is_an_error_with_its_number():
    with pytest.raises(ParseError, match="line 3: unreadable data line '6dmt2 x'") as caught:
        Parser().parse_frame("fr 1\r\nts 2\r\n6dmt2 x\r\n")
    assert caught.value.line == 3 and isinstance(caught.value, ValueError)
    with pytest.raises(ParseError) as caught:
        Parser().parse_line("fr one")
    assert caught.value.line == 1
    assert pickle.loads(pickle.dumps(caught.value)).line == 1


def test_a_line_that_asks_for_too_much_changes_nothing():
    parser = Parser()
    parser.parse_line(f"6dmt2 1 1 {tool(0, (1, 2, 3))}")
    with pytest.raises(ParseError):
        parser.parse_line("6dmt2 1 2000000000")
    assert len(parser.tools) == 1


def test_several_lines_are_not_taken_for_one():
    with pytest.raises(ValueError, match="more than one line") as caught:
        Parser().parse_line("fr 1\nfr 2")
    assert not isinstance(caught.value, ParseError)


def test_unknown_lines_change_nothing():
    frame = Parser().parse_frame("something else\r\n\r\nfrx 12\r\nfr 3")
    assert frame.counter == 3


def test_numbers_have_a_point_in_every_locale():
    before = locale.setlocale(locale.LC_ALL)
    locale.setlocale(locale.LC_ALL, "de_DE.UTF-8")
    try:
        assert Parser().parse_frame("ts 1.5").timestamp == 1.5
    finally:
        locale.setlocale(locale.LC_ALL, before)
