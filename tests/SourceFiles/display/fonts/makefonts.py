#!/usr/bin/env python3
"""Makes the fonts of the painting test: boxes for glyphs, each font with one oddity.

    makefonts.py FOLDER        (needs fontTools)
"""
import sys
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen

CHARACTERS = {
    "zero": "0", "one": "1", "two": "2", "three": "3", "four": "4", "five": "5", "six": "6",
    "seven": "7", "eight": "8", "nine": "9", "period": ".", "hyphen": "-", "M": "M", "R": "R",
    "n": "n", "a": "a", "space": " ",
}
EXTRA = ["one_zero", "two.alt"]


def box(width, height):
    pen = TTGlyphPen(None)
    if height:
        pen.moveTo((100, 0))
        for point in [(100, height), (width - 100, height), (width - 100, 0)]:
            pen.lineTo(point)
        pen.closePath()
    return pen.glyph()


def make(folder, name, features, without=""):
    present = [glyph for glyph, text in CHARACTERS.items() if text not in without]
    glyphs = [".notdef"] + present + EXTRA
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder(glyphs)
    builder.setupCharacterMap({ord(CHARACTERS[glyph]): glyph for glyph in present})
    height = {glyph: 0 if glyph == "space" else 300 + 20 * i for i, glyph in enumerate(glyphs)}
    builder.setupGlyf({glyph: box(600, height[glyph]) for glyph in glyphs})
    builder.setupHorizontalMetrics({glyph: (600, 100) for glyph in glyphs})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({"familyName": name, "styleName": "Regular"})
    builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, usWinAscent=800, usWinDescent=200)
    builder.setupPost()
    if features:
        builder.addOpenTypeFeatures(features)
    builder.font["head"].created = builder.font["head"].modified = 3_800_000_000
    builder.font.recalcTimestamp = False
    builder.save(f"{folder}/{name.replace(' ', '')}.ttf")


def main(folder):
    make(folder, "Kestrel Ligature", "feature liga { sub one zero by one_zero; } liga;")
    make(folder, "Kestrel Alternates", "feature calt { sub two' two by two.alt; } calt;")
    make(folder, "Kestrel Parts", "feature ccmp { sub M by n a; } ccmp;")
    make(folder, "Kestrel Digits", "", without="MRna")


main(sys.argv[1])
