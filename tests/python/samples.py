"""Frames, recordings and motions to test with."""

import numpy as np

HEADER = """kestrel-recording 2
start 2026-11-22T03:40:12.345Z
version system 3.1.0
version protocol 1.14.0
version system_ct 3.1.0
version model SIMULATOR
parameter "measurementtool reference_of_tool b01" b01
parameter "measurementtool device b01" Z\\xc3\\xbcrich
records
"""

# Turns x to y and y to -x: by 90 degrees about z; on the line column by column.
QUARTER = "[0 1 0 -1 0 0 0 0 1]"
QUARTER_MATRIX = np.array([[0.0, -1, 0], [1, 0, 0], [0, 0, 1]])


def tool(number, xyz, buttons=0, quality=1.0):
    """The entry of a "6dmt2" line; numbers to the last bit."""
    place = " ".join(repr(float(value)) for value in xyz)
    return f"[{number} {quality} 4 0.750][{place}]{QUARTER}[{buttons}][1 2 3 4 5 6]"


def turned_tool(number, xyz, matrix):
    numbers = " ".join(repr(float(value)) for value in np.asarray(matrix).T.ravel())
    place = " ".join(repr(float(value)) for value in xyz)
    return f"[{number} 1.0 0 0][{place}][{numbers}][][0 0 0 0 0 0]"


def records(microseconds, *lines):
    return "".join(f"{microseconds} {line.split(' ')[0]} {line}\n" for line in lines)


def recording(path, body, header=HEADER):
    path.write_bytes((header + body).encode("ascii"))
    return path


def many_frames(count):
    """Frames 1 ms apart, tool M1 at x = number of the frame."""
    return "".join(records(1000 * i, f"fr {i}", "ts 1.5", "6dcal 0", f"6dmt2 1 1 {tool(0, (i, 2, 3))}")
                   for i in range(1, count + 1))


def rotation(axis, angle):
    axis = np.asarray(axis, float) / np.linalg.norm(axis)
    cross = np.array([[0, -axis[2], axis[1]], [axis[2], 0, -axis[0]], [-axis[1], axis[0], 0]])
    return np.eye(3) + np.sin(angle) * cross + (1 - np.cos(angle)) * cross @ cross


def pivot(tip, noise=0.0, seconds=6.0, rate=100.0, cone=np.radians(25)):
    """Times, positions and rotations of a tool that pivots about its tip at (100, 200, 300)."""
    random = np.random.default_rng(12)
    times = np.arange(0, seconds, 1 / rate)
    turns = [rotation((np.cos(3 * t), np.sin(3 * t), 0.2 * np.sin(t)), cone) for t in times]
    places = [np.array([100.0, 200, 300]) - turn @ tip + random.normal(0, noise, 3) if noise else
              np.array([100.0, 200, 300]) - turn @ tip for turn in turns]
    return times, places, turns


def pivot_recording(path, tip, noise):
    body = "".join(records(round(1e6 * t), f"fr {i}", f"6dmt2 1 1 {turned_tool(0, place, turn)}")
                   for i, (t, place, turn) in enumerate(zip(*pivot(tip, noise)), start=1))
    return recording(path, body)
