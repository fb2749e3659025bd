#!/usr/bin/env python3
"""Writes the sounds as WAV files: one for each entry of SOUNDS, <name>.wav, the same each time.

    make_sounds.py FOLDER
"""

import math
import os
import struct
import sys
import wave

RATE = 24000  # samples a second
LOUDNESS = 0.5  # of full scale
FADE = 0.008  # seconds; without it each end is a click

# Pitch in Hz (0: a rest) and seconds of each tone.
SOUNDS = {
    "begun": [(880.0, 0.07)],
    "captured": [(880.0, 0.09), (1320.0, 0.16)],
    "failed": [(440.0, 0.13), (330.0, 0.20)],
    "lost": [(587.0, 0.07), (0.0, 0.05), (587.0, 0.07), (0.0, 0.05), (587.0, 0.07)],
}


def tone(pitch, seconds):
    """Samples of -1 to 1, silent at both ends."""
    count = round(seconds * RATE)
    for i in range(count):
        from_end = min(i, count - 1 - i) / (FADE * RATE)
        fade = math.sin(0.5 * math.pi * min(1.0, from_end)) ** 2
        phase = 2.0 * math.pi * pitch * i / RATE
        # With a little of the octave: small loudspeakers hardly give the low tones.
        yield fade * (0.8 * math.sin(phase) + 0.2 * math.sin(2.0 * phase))


def samples(tones):
    return [sample for pitch, seconds in tones for sample in tone(pitch, seconds)]


def write(path, tones):
    data = b"".join(struct.pack("<h", round(LOUDNESS * 32767 * s)) for s in samples(tones))
    with wave.open(path, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(data)


def main():
    for name, tones in SOUNDS.items():
        write(os.path.join(sys.argv[1], name + ".wav"), tones)


if __name__ == "__main__":
    main()
