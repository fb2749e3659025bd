"""What goes wrong when data is read."""


class ParseError(ValueError):
    """A data line that cannot be read.

    ``line`` is its number, counted from 1: in the frame or the file that it stands in.
    """

    def __init__(self, message: str, line: int) -> None:
        super().__init__(message)
        self.line = line

    def __reduce__(self):
        return type(self), (self.args[0], self.line)


class RecordingError(ParseError):
    """A file that is no recording, or is malformed at ``line``."""


class RecordingWarning(UserWarning):
    """A recording was read, but not all of it."""
