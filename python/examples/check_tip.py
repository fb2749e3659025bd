#!/usr/bin/env python3
"""Checks the calibrated tip of a tool by a recording in which it pivots about its resting tip.

    check_tip.py RECORDING [NAME] [TOLERANCE]

NAME is that of the tool, "M1"; TOLERANCE is in mm, 0.5. Exit code: 0 the tip conforms, 1 it does not, 2 it cannot
be told.
"""

import sys

import numpy as np

import kestrel_sdk
from kestrel_sdk import Verdict

WORDS = {
    Verdict.CONFORMS: "conforms",
    Verdict.DOES_NOT_CONFORM: "does not conform",
    Verdict.UNDECIDED: "cannot be told: the uncertainty is too large",
}


def main(path, name="M1", tolerance="0.5"):
    fit = kestrel_sdk.PivotFit()
    fit.add_poses(kestrel_sdk.read_recording(path).poses(name))
    result = fit.solve()
    if result is None:
        print(f"{name}: no result from {len(fit)} poses in {fit.duration:.1f} s: "
              + ("slower" if fit.too_fast else f"the coverage is {fit.coverage:.4f}"))
        return 2
    error = float(np.linalg.norm(result.tip))
    print(f"{name}: error of the tip {error:.3f} mm, uncertain by {result.radius95:.3f} mm (95 %)")
    if result.slipped:
        print(f"the tip has slipped by {result.slip:.3f} mm")
        return 2
    verdict = kestrel_sdk.judge(error, result.radius95, float(tolerance))
    print(f"tolerance {float(tolerance):.3f} mm: {WORDS[verdict]}")
    return verdict.value


if __name__ == "__main__":
    if not 2 <= len(sys.argv) <= 4:
        sys.exit(__doc__)
    try:
        sys.exit(main(*sys.argv[1:]))
    except (OSError, ValueError) as error:
        sys.exit(str(error))
