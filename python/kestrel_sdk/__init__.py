"""Tracking data: the controller's data lines, live and recorded, as Python objects with NumPy arrays.

- ``Parser``: data lines and frames.
- ``read_recording``: poses of a recording as structured arrays.
- ``listen``: live frames over UDP.
- ``PivotFit``, ``judge``: where the tip of a probe is, and whether it is where it should be.

Lengths are in mm, times in seconds unless told otherwise.
"""

from .errors import ParseError, RecordingError, RecordingWarning
from .listening import Listener, listen
from .parser import Frame, Parser
from .probe import PivotFit, PivotResult, Verdict, judge
from .recording import POSE, Recording, read_recording
from .records import Body, Finger, Hand, Human, HybridBody, Joint, Marker, Reference, Tool, Wand

__all__ = [
    "Body", "Finger", "Frame", "Hand", "Human", "HybridBody", "Joint", "Listener", "Marker", "POSE",
    "ParseError", "Parser", "PivotFit", "PivotResult", "Recording", "RecordingError", "RecordingWarning",
    "Reference", "Tool", "Verdict", "Wand", "judge", "listen", "read_recording",
]
