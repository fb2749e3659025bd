"""One class for each kind of tracked object.

Of every object: ``id`` counts from 0; ``quality`` is the tracking quality, -1 when the object is not
tracked; ``loc`` is its position in mm, shape (3,); ``rot`` is the matrix that turns the object's own axes
into the room's, shape (3, 3): ``rot @ v + loc`` is where a point ``v`` of the object stands in the room.
All arrays are of float64 unless told otherwise, and copies. An object that is not tracked has NaN for its
pose. Numbers are the controller's; a matrix is not checked to be a rotation.
"""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np


@dataclass(eq=False)
class _Tracked:
    id: int
    quality: float
    loc: np.ndarray

    @property
    def tracked(self) -> bool:
        """Whether the object was seen."""
        return self.quality != -1.0


@dataclass(eq=False)
class Body(_Tracked):
    """Standard body, line "6d"."""

    rot: np.ndarray
    """Rotation matrix, (3, 3)."""


@dataclass(eq=False)
class Wand(Body):
    """Hand-held interaction device, lines "6df" and "6df2"."""

    buttons: np.ndarray
    """Which are pressed: bool, (number of buttons,)."""
    joystick: np.ndarray
    """Its axes in the order of the line, (number of axes,)."""


@dataclass(eq=False)
class Tool(Body):
    """Measurement Tool, lines "6dmt" and "6dmt2". ``loc`` is its tip, from its reference if it has one."""

    buttons: np.ndarray
    """Which are pressed: bool, (number of buttons,), at most 16."""
    tip_radius: float
    """Radius of the tip in mm; 0 when the line does not carry it."""
    cov: np.ndarray
    """Covariance of the tip's position in mm², (3, 3); 0 when the line does not carry it."""


@dataclass(eq=False)
class Reference(Body):
    """Measurement Tool reference, line "6dmtr"."""


@dataclass(eq=False)
class Finger:
    """A finger of a hand; position and rotation are those of its tip."""

    loc: np.ndarray
    """Position in mm, (3,)."""
    rot: np.ndarray
    """Rotation matrix, (3, 3)."""
    tip_radius: float
    """Radius of the finger's tip in mm."""
    phalanx_lengths: np.ndarray
    """In mm, from the tip inwards, (3,)."""
    phalanx_angles: np.ndarray
    """Between the phalanxes, from the tip inwards, in the controller's unit, (2,)."""


@dataclass(eq=False)
class Hand(Body):
    """Tracked hand, line "gl"; position and rotation are those of the back of the hand."""

    lr: int
    """Which hand, left or right."""
    fingers: list[Finger]
    """In the order of the line, at most 5."""


@dataclass(eq=False)
class Joint(Body):
    """Joint of a human model. ``id`` is a name, any number."""

    angles: np.ndarray
    """In the controller's unit, (3,)."""


@dataclass(eq=False)
class Human:
    """Human model, line "6dj"."""

    id: int
    """Number, counted from 0."""
    joints: list[Joint]
    """In the order of the line, at most 20."""


@dataclass(eq=False)
class HybridBody:
    """Body with an inertial sensor, line "6di"."""

    id: int
    """Number, counted from 0."""
    state: int
    """Tracking state; 0 means not tracked."""
    error: float
    """The controller's estimate of its error."""
    loc: np.ndarray
    """Position in mm, (3,)."""
    rot: np.ndarray
    """Rotation matrix, (3, 3)."""

    @property
    def tracked(self) -> bool:
        """Whether the body was seen, by cameras or by its sensor."""
        return self.state != 0


@dataclass(eq=False)
class Marker(_Tracked):
    """Single marker, line "3d". ``id`` is a name, any number."""
