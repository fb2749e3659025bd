#!/usr/bin/env python3
"""How fast kestrel_sdk reads a tool's poses from a recording, beside a plain reader with re and float.

    PYTHONPATH=build/release/python benchmarks/python/read_recording.py [MEGABYTES]

Both read the same files, in the same run and in turns, and have to come to the same columns. The plain
reader is what one writes at first: a regular expression for the tools' blocks, float for what is asked of
the tool, lists that become arrays at the end. Each is timed fifteen times; what counts is the least time of
the processor, which other programs on a busy machine disturb least.
"""

import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy as np

import kestrel_sdk

ROUNDS = 15

BLOCK = re.compile(r"\[([^\]]*)\]")
NO_PLACE = [np.nan] * 3
NO_TURN = [np.nan] * 9


def tool_entry(frame, tool):
    def number(salt):
        mixed = (frame + salt) * 2654435761 % 1000000
        return f"{mixed // 1000}.{mixed % 1000:03}"

    place = " ".join(number(17 * tool + i) for i in range(3))
    turn = " ".join(f"{(-1) ** i * ((frame + 31 * tool + i) * 2654435761 % 1000000) / 1e6:.6f}"
                    for i in range(9))
    return f"[{tool} 1.000 4 0.750][{place}][{turn}][{frame % 4}][0.0004 0.0000 0.0000 0.0004 0.0000 0.0004]"


def make_recording(path, tools, size):
    """Frames of 1 kHz as a controller sends them; returns the number of frames."""
    with open(path, "w", encoding="ascii") as file:
        file.write("kestrel-recording 2\nstart 2026-11-22T03:40:12.345Z\nversion system 3.1.0\n"
                   "version protocol 1.14.0\nversion system_ct 3.1.0\nversion model SIMULATOR\nrecords\n")
        frame = 0
        while file.tell() < size:
            frame += 1
            at = 1000 * frame
            entries = "".join(tool_entry(frame, tool) for tool in range(tools))
            file.write(f"{at} fr fr {frame}\n{at} ts ts {frame / 1000:.6f}\n{at} 6dcal 6dcal 0\n"
                       f"{at} 6dmt2 6dmt2 {tools} {tools} {entries}\n")
    return frame


def plain_poses(path, tool):
    """Seconds, wall clock, frame, xyz, R, quality and buttons of one tool."""
    seconds, clocks, frames, places, turns, qualities, buttons = [], [], [], [], [], [], []
    counter, mark, shown = -1, 0, None
    with open(path, encoding="ascii") as file:
        for line in file:
            if line.startswith("start "):
                shown = np.datetime64(line[6:-2], "ms").astype(int)
            elif line == "records\n":
                break
        for line in file:
            time, channel, data = line.split(" ", 2)
            if time == "utc":
                mark, shown = int(channel), np.datetime64(data[:-2], "ms").astype(int)
            elif channel == "fr":
                counter = int(data.split()[1])
            elif channel == "6dmt2":
                blocks = [block.split() for block in BLOCK.findall(data)[5 * tool:5 * tool + 4]]
                quality = float(blocks[0][1])
                tracked = quality != -1
                seconds.append(int(time) / 1e6)
                clocks.append(shown + (int(time) - mark) // 1000)
                frames.append(counter)
                places.append([float(number) for number in blocks[1]] if tracked else NO_PLACE)
                turns.append([float(number) for number in blocks[2]] if tracked else NO_TURN)
                qualities.append(quality)
                buttons.append(int(blocks[3][0]))
    turns = np.array(turns).reshape(-1, 3, 3).transpose(0, 2, 1)
    return (np.array(seconds), np.array(clocks).astype("M8[ms]"), np.array(frames), np.array(places), turns,
            np.array(qualities), np.array(buttons))


def timed(read):
    began = time.process_time()
    result = read()
    return time.process_time() - began, result


def same(poses, plain):
    names = ("seconds", "utc", "frame", "xyz", "R", "quality", "buttons")
    return all(np.array_equal(poses[name], column) for name, column in zip(names, plain))


def compare(folder, tools, size):
    path = folder / f"{tools}.kestrel"
    frames = make_recording(path, tools, size)
    ours, plain = [], []
    for _ in range(ROUNDS):
        duration, poses = timed(lambda: kestrel_sdk.read_recording(path).poses("M1"))
        ours.append(duration)
        duration, columns = timed(lambda: plain_poses(path, 0))
        plain.append(duration)
        if len(poses) != frames or not same(poses, columns):
            sys.exit("the two readers do not agree")
    megabytes = path.stat().st_size / 1e6
    print(f"{tools:5} {megabytes:8.0f} {frames:8} {min(plain):9.2f} s {min(ours):9.3f} s"
          f" {megabytes / min(ours):8.0f} {min(plain) / min(ours):7.1f}")
    path.unlink()


MEMORY = """
import resource, sys, time
import kestrel_sdk
recording = kestrel_sdk.read_recording(sys.argv[1])
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
began = time.perf_counter()
count = sum(len(piece) for piece in recording.pieces("M1"))
print(count, f"{time.perf_counter() - began:.2f}", resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
"""


def memory(folder, size):
    path = folder / "large.kestrel"
    make_recording(path, 4, 20e6)
    head, _, frames = path.read_bytes().partition(b"records\n")
    # Made quickly: the same frames under later and later time stamps.
    lines = [line.split(b" ", 1) for line in frames.splitlines(keepends=True)]
    last = int(lines[-1][0])
    with open(path, "wb") as file:
        file.write(head + b"records\n")
        turn = 0
        while file.tell() < size:
            file.writelines(b"%d %s" % (int(at) + turn * last, rest) for at, rest in lines)
            turn += 1
    count, seconds, kilobytes = subprocess.run([sys.executable, "-c", MEMORY, str(path)], check=True,
                                               capture_output=True, text=True).stdout.split()
    print(f"pieces() over {path.stat().st_size / 1e6:.0f} MB: {count} poses, {seconds} s, "
          f"{int(kilobytes) / 1024:.1f} MiB more memory")


def main(megabytes=40):
    print("tools       MB   frames      plain   kestrel_sdk    MB/s   ratio")
    with tempfile.TemporaryDirectory() as folder:
        for tools in (1, 4):
            compare(Path(folder), tools, megabytes * 1e6)
        memory(Path(folder), 25 * megabytes * 1e6)


if __name__ == "__main__":
    main(*map(int, sys.argv[1:2]))
