#!/usr/bin/env python3
"""Plots where a tool was in the course of a recording, and how well it was seen.

    plot_recording.py RECORDING [NAME] [PICTURE]

NAME is "M1" (a tool), "MR1" (a reference) or "B1" (a body). With PICTURE the plot goes into that file, else a
window opens.
"""

import sys

import matplotlib.pyplot as plt
import numpy as np

import kestrel_sdk


def plot(poses, name):
    figure, (position, quality) = plt.subplots(2, sharex=True, height_ratios=(3, 1), layout="constrained")
    for axis, label in enumerate("xyz"):
        position.plot(poses["seconds"], poses["xyz"][:, axis], label=label, linewidth=1)
    position.set_title(name)
    position.set_ylabel("position in mm")
    position.legend(loc="upper right")
    # Not tracked is -1, which is no quality: a gap, as in the positions.
    seen = np.where(poses["quality"] == -1, np.nan, poses["quality"])
    quality.plot(poses["seconds"], seen, color="tab:gray", linewidth=1)
    quality.set_ylabel("quality")
    quality.set_xlabel("time in s")
    return figure


def main(path, name="M1", picture=None):
    poses = kestrel_sdk.read_recording(path).poses(name)
    tracked = np.count_nonzero(poses["quality"] != -1)
    print(f"{name}: {len(poses)} poses, {tracked} tracked")
    figure = plot(poses, name)
    if picture:
        figure.savefig(picture, dpi=120)
    else:
        plt.show()


if __name__ == "__main__":
    if not 2 <= len(sys.argv) <= 4:
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except (OSError, ValueError) as error:
        sys.exit(str(error))
