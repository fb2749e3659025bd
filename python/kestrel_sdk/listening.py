"""Live frames over UDP."""

from __future__ import annotations

import socket
from typing import Iterator, Optional


from .parser import Frame, parse_frame

_LONGEST_DATAGRAM = 65536
_RECEIVE_BUFFER = 1024 * 1024  # some hundred milliseconds of the fastest frames


class Listener:
    """Receives the controller's frames, one datagram each; made by ``listen``. One thread at a time."""

    def __init__(self, port: int, address: str = "", errors: str = "raise") -> None:
        if errors not in ("raise", "skip"):
            raise ValueError('errors is "raise" or "skip"')
        self._skip = errors == "skip"
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        try:
            self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, _RECEIVE_BUFFER)
            self._socket.bind((address, port))
        except BaseException:
            self._socket.close()
            raise
        self.port: int = self._socket.getsockname()[1]
        """The port that is listened on."""

    def receive(self, timeout: Optional[float] = None) -> Optional[Frame]:
        """The next frame; None when none came for ``timeout`` seconds. Without one it waits for ever.

        ``ParseError``: the frame has a malformed line; the next call gives the next frame.
        """
        self._socket.settimeout(timeout)
        try:
            datagram = self._socket.recv(_LONGEST_DATAGRAM)
        except (TimeoutError, BlockingIOError):
            return None
        return parse_frame(datagram, self._skip)

    def __iter__(self) -> Iterator[Frame]:
        return self

    def __next__(self) -> Frame:
        frame = self.receive()
        assert frame is not None
        return frame

    def close(self) -> None:
        """Ends listening."""
        self._socket.close()

    def __enter__(self) -> Listener:
        return self

    def __exit__(self, *unused: object) -> None:
        self.close()


def listen(port: int, address: str = "", errors: str = "raise") -> Listener:
    """Listens for live frames: ``for frame in listen(5000): print(frame.tools[0].loc)``.

    ``port`` is the one that the controller was told with "data_port"; with 0 it is any free one, see
    ``Listener.port``. ``address`` is that of one of this machine's networks; without it, all of them.
    ``errors="skip"``: a malformed line counts as not sent; else it raises ``ParseError``. ``OSError``: the port
    is not to be had.
    """
    return Listener(port, address, errors)
