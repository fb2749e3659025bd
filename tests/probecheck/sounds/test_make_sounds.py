#!/usr/bin/env python3
"""The sounds as they are heard.

    test_make_sounds.py FOLDER_OF_MAKE_SOUNDS
"""

import array
import os
import subprocess
import sys
import tempfile
import unittest
import wave

SCRIPT = os.path.join(sys.argv.pop(), "make_sounds.py")
NAMES = ["begun", "captured", "failed", "lost"]
LONGEST = 0.4  # seconds
FULL_SCALE = 32767


def made():
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, "-B", SCRIPT, folder], check=True)
        files = {}
        for name in sorted(os.listdir(folder)):
            with open(os.path.join(folder, name), "rb") as file:
                files[name] = file.read()
        return files


class Waves(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.rates, cls.samples = {}, {}
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, "-B", SCRIPT, folder], check=True)
            for name in NAMES:
                with wave.open(os.path.join(folder, name + ".wav"), "rb") as file:
                    assert (file.getnchannels(), file.getsampwidth()) == (1, 2)
                    cls.rates[name] = file.getframerate()
                    samples = array.array("h", file.readframes(file.getnframes()))
                if sys.byteorder == "big":
                    samples.byteswap()
                cls.samples[name] = samples

    def tones(self, name):
        """Runs of sound between rests of 10 ms or more."""
        rest, runs, quiet = self.rates[name] // 100, [[]], 0
        for sample in self.samples[name]:
            quiet = quiet + 1 if sample == 0 else 0
            if quiet < rest:
                runs[-1].append(sample)
            elif quiet == rest:
                runs.append([])
        return [run for run in runs if any(run)]

    def pitch(self, name, begin, end):
        """In Hz, of a part of the sound."""
        samples = self.samples[name]
        part = samples[int(begin * len(samples)):int(end * len(samples))]
        upward = sum(1 for a, b in zip(part, part[1:]) if a < 0 <= b)
        return upward * self.rates[name] / len(part)

    def test_the_same_files_are_made_each_time(self):
        files = made()
        self.assertEqual(sorted(files), [name + ".wav" for name in NAMES])
        self.assertEqual(files, made())

    def test_each_is_short(self):
        for name in NAMES:
            self.assertLess(len(self.samples[name]) / self.rates[name], LONGEST, name)

    def test_each_is_heard_and_none_is_clipped(self):
        for name in NAMES:
            peak = max(abs(s) for s in self.samples[name])
            self.assertGreater(peak, 0.3 * FULL_SCALE, name)
            self.assertLess(peak, 0.7 * FULL_SCALE, name)

    def test_none_begins_or_ends_with_a_click(self):
        for name in NAMES:
            for end in (self.samples[name][:3], self.samples[name][-3:]):
                self.assertLess(max(abs(s) for s in end), 0.03 * FULL_SCALE, name)

    def test_the_tool_is_lost_with_three_tones_the_others_have_no_rest(self):
        self.assertEqual([len(self.tones(name)) for name in NAMES], [1, 1, 1, 3])

    def test_begun_stays_captured_rises_failed_falls(self):
        rises = {name: self.pitch(name, 0.7, 1.0) / self.pitch(name, 0.0, 0.3) for name in NAMES}
        self.assertAlmostEqual(rises["begun"], 1.0, delta=0.1)
        self.assertGreater(rises["captured"], 1.3)
        self.assertLess(rises["failed"], 0.8)

    def test_good_news_is_higher_than_bad(self):
        lowest_good = min(self.pitch(name, 0.0, 0.3) for name in ("begun", "captured"))
        highest_bad = max(self.pitch(name, 0.0, 0.2) for name in ("failed", "lost"))
        self.assertGreater(lowest_good, 1.3 * highest_bad)


if __name__ == "__main__":
    unittest.main()
