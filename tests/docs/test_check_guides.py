#!/usr/bin/env python3
"""The check of the guides finds a change of each kind that is made in one of them only.

    test_check_guides.py SOURCE_FOLDER
"""

import sys
import unittest

from check_guides import check, read

ENGLISH, GERMAN, MESSAGES = read(sys.argv.pop(1))

# What is replaced in the German guide, by what, and what is said of it.
CHANGES = [
    ("## Ohne Bildschirm", "### Ohne Bildschirm", "not the same headings"),
    ("### Der Zeitverlauf\n", "", "not the same headings"),
    ("## Ohne Bildschirm", "## Ganz ohne Bildschirm", "nothing to be shown behind #ohne-bildschirm"),
    ("(#ohne-bildschirm)", "(#without-a-display)", "nothing to be shown behind #without-a-display"),
    ("images/de/plot.png", "images/de/readout.png", "pictures"),
    ("| rx, ry, rz | Orientierung in Grad |\n", "", "rows of the tables"),
    ("| Taste | was sie tut |\n|---|---|", "| Taste | was | sie tut |\n|---|---|---|", "columns of the tables"),
    ("| beim Aufwachen |", "| |", "empty cells"),
    ("- **Punktmessung**", "  **Punktmessung**", "list entries"),
    ("\n\nDie Texte sind in der Sprache", "\nDie Texte sind in der Sprache", "paragraphs"),
    ("`--observer`", "`--observe`", "code"),
    ("kestrel-recording check", "kestrel-recording test", "commands"),
    ("nach 120 Sekunden", "nach 100 Sekunden", "numbers"),
    ("**Hinzufügen**", "**Dazu**", '"Add" is not there in German'),
    ("**Hinzufügen**", "**Hinzufügen** und **Entfernen**", '"Entfernen" is set off in German only'),
    ("**Datei → Aufzeichnen …**", "**Ablage → Aufzeichnen …**", '"File" is not there in German'),
    ("*Stillhalten*", "*Halten*", '"holding still" is not there in German'),
    ("„dort nimmt niemand die Daten an“", "„keiner nimmt die Daten an“", "is not what the program says"),
    ("„der Datenträger antwortet nicht“", "der Datenträger", "quotations"),
]


class TestCheckGuides(unittest.TestCase):
    def test_the_guides_agree(self):
        self.assertEqual(list(check(ENGLISH, GERMAN, MESSAGES)), [])

    def test_each_change_is_found(self):
        for before, after, said in CHANGES:
            with self.subTest(change=after or before):
                self.assertIn(before, GERMAN)
                faults = "\n".join(check(ENGLISH, GERMAN.replace(before, after), MESSAGES))
                self.assertIn(said, faults)

    def test_names_that_the_program_does_not_have_are_found_in_english(self):
        for before, after, said in [
            ("**Freeze**", "**Hold on**", 'no text of the program: "Hold on"'),
            ('"the disk does not answer"', '"the disk sleeps"', 'the program does not say: "the disk sleeps"'),
        ]:
            faults = "\n".join(check(ENGLISH.replace(before, after), GERMAN, MESSAGES))
            self.assertIn(said, faults)


if __name__ == "__main__":
    unittest.main()
