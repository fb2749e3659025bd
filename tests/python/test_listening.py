"""Live frames over UDP."""

import socket

import pytest
from samples import tool

from kestrel_sdk import ParseError, listen

PATIENCE = 20


@pytest.fixture
def sender():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sock:
        yield lambda listener, frame: sock.sendto(frame, ("127.0.0.1", listener.port))


def frame_of(number):
    return f"fr {number}\r\nts 1.5\r\n6dmt2 1 1 {tool(0, (number, 2, 3))}".encode()


def test_frames_come_one_by_one(sender):
    with listen(0, "127.0.0.1") as listener:
        for number in (1, 2, 3):
            sender(listener, frame_of(number))
        frames = [frame for _, frame in zip(range(3), listener)]
    assert [frame.counter for frame in frames] == [1, 2, 3]
    assert [frame.tools[0].loc[0] for frame in frames] == [1, 2, 3]


def test_nothing_comes_in_time():
    with listen(0, "127.0.0.1") as listener:
        assert listener.receive(timeout=0.01) is None
        assert listener.receive(timeout=0) is None


def test_a_malformed_frame_is_an_error_and_the_next_one_comes(sender):
    with listen(0, "127.0.0.1") as listener:
        sender(listener, b"fr 1\r\n6dmt2 x")
        sender(listener, frame_of(2))
        with pytest.raises(ParseError) as caught:
            listener.receive(PATIENCE)
        assert caught.value.line == 2
        assert listener.receive(PATIENCE).counter == 2


def test_a_malformed_line_may_be_skipped(sender):
    with listen(0, "127.0.0.1", errors="skip") as listener:
        sender(listener, b"6dmt2 x\r\nfr 1\r\nts 2")
        frame = listener.receive(PATIENCE)
    assert (frame.counter, frame.timestamp, frame.tools) == (1, 2.0, [])


def test_any_datagram_is_survived(sender):
    with listen(0, "127.0.0.1", errors="skip") as listener:
        for datagram in (b"", b"\0\xff" * 1000, b"6dmt2 1 1 [" * 5000, b"6dcal 65535"):
            sender(listener, datagram)
            assert listener.receive(PATIENCE) is not None


def test_a_port_that_is_taken_is_an_error_of_the_system():
    with listen(0, "127.0.0.1") as listener, pytest.raises(OSError):
        listen(listener.port, "127.0.0.1")


def test_a_closed_listener_receives_no_more():
    listener = listen(0, "127.0.0.1")
    listener.close()
    with pytest.raises(OSError):
        listener.receive(1)


def test_wrong_options_are_refused():
    with pytest.raises(ValueError):
        listen(0, errors="ignore")
