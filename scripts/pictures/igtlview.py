#!/usr/bin/env python3
"""A small viewer: takes the transforms of an OpenIGTLink server for some seconds and draws them.

    scripts/pictures/igtlview.py PNG [--host HOST] [--port PORT] [--seconds N]

Each tool's way is a line, with its axes at its last place. Knows messages of type TRANSFORM alone, and
shows what reading them takes: a head of 58 bytes and twelve numbers.
"""

import argparse
import socket
import struct
import time

import matplotlib

matplotlib.use("Agg")
import numpy as np
from matplotlib import pyplot

HEAD = struct.Struct(">H12s20sIIQQ")  # version, type, device, seconds, fraction, size of the body, check sum
AXIS = 40  # mm


def exactly(server, size):
    data = b""
    while len(data) < size:
        piece = server.recv(size - len(data))
        if not piece:
            raise EOFError("the server has ended the connection")
        data += piece
    return data


def transforms(server, seconds):
    """Device, rotation (3, 3) and place (3,) in mm of each message."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        _, kind, device, _, _, size, _ = HEAD.unpack(exactly(server, HEAD.size))
        body = exactly(server, size)
        if kind.rstrip(b"\0") == b"TRANSFORM":
            columns = np.frombuffer(body, ">f4", 12).reshape(4, 3)
            yield device.rstrip(b"\0").decode(), columns[:3].T, columns[3]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("png")
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=18944)
    parser.add_argument("--seconds", type=float, default=5)
    arguments = parser.parse_args()
    ways = {}
    with socket.create_connection((arguments.host, arguments.port), 10) as server:
        for device, turn, place in transforms(server, arguments.seconds):
            ways.setdefault(device, []).append((turn, place))
    figure = pyplot.figure(figsize=(8, 6), layout="constrained")
    axes = figure.add_subplot(projection="3d")
    for device, way in sorted(ways.items()):
        places = np.array([place for _, place in way])
        axes.plot(*places.T, label=f"{device}, {len(way)} transforms")
        turn, place = way[-1]
        for axis, colour in enumerate(("tab:red", "tab:green", "tab:blue")):
            axes.plot(*np.array([place, place + AXIS * turn[:, axis]]).T, color=colour, linewidth=2)
        axes.text(*place, f" {device}")
    axes.set(xlabel="x, mm", ylabel="y, mm", zlabel="z, mm", aspect="equal")
    axes.legend(loc="upper left")
    figure.savefig(arguments.png, dpi=96)


if __name__ == "__main__":
    main()
