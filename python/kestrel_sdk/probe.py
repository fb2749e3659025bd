"""The tip of a hand-held probe."""

from __future__ import annotations

import enum
from dataclasses import dataclass
from typing import Optional

import numpy as np
import numpy.typing as npt

from . import _native


@dataclass(eq=False)
class PivotResult:
    """What a pivoting motion says about the tip. All lengths in mm."""

    tip: np.ndarray
    """In the tool's axes, from the reported position, (3,)."""
    resting_point: np.ndarray
    """In the room, (3,)."""
    residual: float
    """RMS distance of the poses' tips from the resting point."""
    covariance: np.ndarray
    """Of ``tip``, mm², (3, 3)."""
    radius95: float
    """Radius of the sphere around ``tip`` that holds the truth 95 times in 100. It covers the tracker's
    noise, not errors that repeat with the tool's orientation."""
    slip: float
    """Greatest distance between the resting points of the run's thirds."""

    @property
    def slipped(self) -> bool:
        """Whether the tip slipped: more than the noise explains."""
        return self.slip > _native.SLIP_OVER_RESIDUAL * self.residual


class PivotFit:
    """Finds the tip of a tool that pivots about it: ``R @ tip + xyz`` is the resting point in every pose.

    Of a calibrated tool, whose reported position is the tip, the result is the error of that tip. At most
    the last 120 s count. One thread at a time.
    """

    def __init__(self) -> None:
        self._native = _native.PivotFit()

    def clear(self) -> None:
        """Forgets all poses."""
        self._native.clear()

    def add(self, xyz: npt.ArrayLike, R: npt.ArrayLike, seconds: float) -> None:
        """Takes a pose: position (3,) in mm, rotation matrix (3, 3), time of any steady clock.

        One that is not finite, whose matrix is no rotation (``R.T @ R`` off by more than 0.01), or whose time is
        not later than the last one's is as if it had not come. ``ValueError``: another shape.
        """
        self._native.add(np.asarray(xyz, float)[np.newaxis], np.asarray(R, float)[np.newaxis],
                         np.asarray([seconds], float))

    def add_poses(self, poses: np.ndarray) -> None:
        """Takes rows of ``Recording.poses``; those that are not tracked do not count."""
        self._native.add(poses["xyz"], poses["R"], poses["seconds"])

    def __len__(self) -> int:
        """Number of poses that count."""
        return self._native.poses()

    @property
    def duration(self) -> float:
        """Seconds from the first pose to the last."""
        return self._native.duration()

    @property
    def coverage(self) -> float:
        """How far the tool has turned about all of its axes, 0 to 1: 0.003 for a cone of 5 degrees, 0.034
        for 20, 0.14 for 45. Below 0.002 there is no result."""
        return self._native.coverage()

    @property
    def weakest_axis(self) -> np.ndarray:
        """The tool's axis along which the tip stays unknown longest, a unit vector (3,): tilting across it is
        missing. Zero without poses."""
        return self._native.weakest_axis()

    @property
    def too_fast(self) -> bool:
        """There are poses, time and coverage enough, but the motion is too fast or too jerky."""
        return self._native.is_too_fast()

    def solve(self) -> Optional[PivotResult]:
        """The tip; None when the motion does not determine it: fewer than 60 poses, less than 2 s, too
        little coverage, too fast."""
        result = self._native.solve()
        return None if result is None else PivotResult(*result)


class Verdict(enum.Enum):
    """What may be said of a measured error against a tolerance."""

    CONFORMS = 0
    DOES_NOT_CONFORM = 1
    UNDECIDED = 2


def judge(error: float, radius95: float, tolerance: float) -> Verdict:
    """The decision rule of ISO 14253-1, all in mm: conforms when ``error + radius95 <= tolerance``, does not
    when ``error - radius95 > tolerance``, else undecided; so is anything negative or not finite."""
    return Verdict(_native.judge(error, radius95, tolerance))
