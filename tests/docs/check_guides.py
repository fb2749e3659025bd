#!/usr/bin/env python3
"""The guides say the same in each language, and name what the program shows as it does.

    check_guides.py SOURCE_FOLDER

Prints what is wrong and fails then.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

# Set off in bold like a text of the program, but none.
OWN_WORDS = {"Numbers": "Anzahlen", "Assignment": "Zuordnung", "+": "+", "−": "−"}

NUMBER = r"(?<![A-Za-z_\d])\d+(?:[.,]\d+)*"


class Section:
    """A heading and what stands below it, up to the next heading."""

    def __init__(self, level, title):
        self.level = level
        self.title = title
        self.lines = []

    @property
    def anchor(self):
        return re.sub(r"[^\w-]", "", self.title.lower().replace(" ", "-"))

    @property
    def commands(self):
        lines = [line.partition("#")[0].strip() for line in self.lines if line.startswith("    ")]
        return [line for line in lines if line]

    @property
    def text(self):
        """Without commands, wrapped lines joined."""
        kept = [line for line in self.lines if not line.startswith("    ")]
        return re.sub(r"(?<!\n)\n *(?! *(-|\d+\.) |!|\||\n)", " ", "\n".join(kept))

    @property
    def words(self):
        """The text without code."""
        return re.sub(r"`[^`]*`", "", self.text)

    def shape(self):
        """What is the same in each language."""
        text = self.text
        tables = re.findall(r"(?:^\|.*\n?)+", text, re.M)
        return {
            "pictures": [Path(name).name for name in pictures(text)],
            "rows of the tables": [table.count("\n|") for table in tables],
            "columns of the tables": [table.partition("\n")[0].count("|") for table in tables],
            "empty cells": len(re.findall(r"\|(?= *\|)", text)),
            "list entries": re.findall(r"^ *(-|\d+\.) ", text, re.M),
            "paragraphs": len(re.split(r"\n\n+", text.strip())),
            "links": len(links(text)),
            "code": sorted(re.findall(r"`[^`]*`", text)),
            "commands": self.commands,
            "numbers": sorted(number.replace(",", ".") for number in re.findall(NUMBER, self.words)),
        }


def sections(guide):
    found = [Section(0, "")]
    for line in guide.split("\n"):
        heading = re.fullmatch(r"(#+) (.*)", line)
        if heading:
            found.append(Section(len(heading[1]), heading[2]))
        else:
            found[-1].lines.append(line)
    return found


def pictures(text):
    return re.findall(r"!\[[^]]*\]\(([^)]*)\)", text)


def links(text):
    return re.findall(r"(?<!!)\[[^]]*\]\(([^)]*)\)", text)


def plain(text):
    """A text of the program as one reads it: without the letter for its key, its unit and its colon."""
    text = re.sub(r"&(?=\S)", "", text).replace("...", "…")
    return re.sub(r"( \[\w+\]|\s*%1|:|\s*…|\s)+$", "", text).strip("<> ")


def set_off(words):
    """The texts of the program in bold or italics, each menu and entry for itself."""
    found = re.findall(r"\*\*([^*]+)\*\*|\*([^*\s][^*]*)\*", words)
    return [plain(part) for bold, italic in found for part in (bold or italic).split(" → ")]


def messages_with(quoted, messages):
    """Of the pairs those whose text has the quoted one; "…" stands for what the program fills in."""
    text = re.sub(r"\d+\.\d+ ± \d+\.\d+", "%1", quoted)
    pattern = ".+".join(re.escape(part) for part in text.strip("…").split("…"))
    return [(source, target) for source, target in messages if re.search(pattern, source)]


def dictionary(messages):
    """The German words for each English text, as one reads them."""
    words = {word.lower(): {german_word} for word, german_word in OWN_WORDS.items()}
    for source, target in messages:
        words.setdefault(plain(source).lower(), set()).add(plain(target))
    return words


def check_names(english, german, translations, messages):
    """What the German section calls otherwise than the program does; or the English one."""
    left = Counter(set_off(german.words))
    for name in set_off(english.words):
        if name.lower() not in translations:
            yield f'no text of the program: "{name}"'
            continue
        target = next((word for word in translations[name.lower()] if left[word] > 0), None)
        if target is None:
            yield f'"{name}" is not there in German as the program says it'
        left[target] -= 1
    yield from (f'"{name}" is set off in German only' for name, count in left.items() if count > 0)

    quotations = re.findall(r'"([^"]+)"', english.words)
    german_quotations = re.findall("„([^“]+)“", german.words)
    if len(quotations) != len(german_quotations):
        yield f"{len(quotations)} quotations and {len(german_quotations)}"
    swapped = [(target, source) for source, target in messages]
    for quoted, german_quoted in zip(quotations, german_quotations):
        if not messages_with(quoted, messages):
            yield f'the program does not say: "{quoted}"'
        elif not set(messages_with(quoted, messages)) & {
            (source, target) for target, source in messages_with(german_quoted, swapped)
        }:
            yield f'"{quoted}" is not what the program says as "{german_quoted}"'


def check(english, german, messages):
    """Yields what is wrong with the two guides. `messages` are pairs of English and German."""
    for language, guide in ("English", english), ("German", german):
        anchors = {section.anchor for section in sections(guide)}
        for target in links(guide):
            if not target.startswith("#") or target[1:] not in anchors:
                yield f"{language}: nothing to be shown behind {target}"
    pairs = list(zip(sections(english), sections(german)))
    levels = [[section.level for section in sections(guide)] for guide in (english, german)]
    if levels[0] != levels[1]:
        yield f"not the same headings: levels {levels[0]} and {levels[1]}"
        return
    translations = dictionary(messages)
    for here, there in pairs:
        others = there.shape()
        for what, value in here.shape().items():
            if value != others[what]:
                yield f"{here.title} / {there.title}: {what}: {value} and {others[what]}"
        for fault in check_names(here, there, translations, messages):
            yield f"{here.title} / {there.title}: {fault}"


def read_messages(folder):
    for catalogue in sorted(folder.glob("*_de.ts")):
        for message in ElementTree.parse(catalogue).iter("message"):
            translation = message.find("translation")
            forms = [form.text for form in translation.findall("numerusform")] or [translation.text]
            for form in forms:
                yield message.find("source").text, form


def read(repository):
    """Both guides and the messages."""
    docs = Path(repository) / "docs"
    guides = [(docs / name).read_text(encoding="utf-8") for name in ("user_guide.md", "user_guide.de.md")]
    return (*guides, list(read_messages(Path(repository) / "translations")))


def main(repository):
    english, german, messages = read(repository)
    faults = list(check(english, german, messages))
    for guide in english, german:
        for name in pictures(guide):
            if not (Path(repository) / "docs" / name).is_file():
                faults.append(f"there is no picture {name}")
    faults += [f"an English picture in German: {name}" for name in pictures(german) if "/de/" not in name]
    print("\n".join(faults) or "the guides agree")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
