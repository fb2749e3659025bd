#!/usr/bin/env python3
"""Fails when a folder includes a header of a folder that it may not know.

    check_includes.py SOURCE_FOLDER QT_INCLUDE_FOLDER

Each include is followed to the real file, however it is written; who may know whom says arrows.py.
"""

import os
import re
import sys

from arrows import KNOWS, OTHER_LIBRARIES, PUBLIC_HEADERS, QT_MODULES, RULED

SOURCE = re.compile(r"\.(h|hh|hpp|hxx|inl|ipp|c|cc|cpp|cxx)$")
INCLUDE = re.compile(r"^[ \t]*(?:#|%:|\?\?=)[ \t]*(?:include|include_next|import)\b[ \t]*(.*)$", re.M)
TARGET = re.compile(r'^(?:"([^"]+)"|<([^>]+)>)')
CPP_LIBRARY = re.compile(r"^([a-z0-9_]+|[a-z]+\.h)$")  # <vector>, <locale.h>


def without_comments(text):
    """Comments become blanks, strings stay; a line that goes on with a backslash is one line."""
    text = text.replace("\\\r\n", "").replace("\\\n", "")
    pattern = r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/'
    return re.sub(pattern, lambda m: m.group() if m.group()[0] == '"' else " ", text, flags=re.S)


def longest_fit(folder, table):
    """The longest key of the table that is the folder or above it."""
    while folder and folder not in table:
        folder = os.path.dirname(folder)
    return folder


class Repository:
    def __init__(self, root):
        self.root = os.path.realpath(root)
        self.sources = []
        self.by_name = {}
        for folder, folders, files in os.walk(self.root):
            hidden = "build" if folder == self.root else ""
            folders[:] = sorted(f for f in folders if f != hidden and not f.startswith("."))
            for name in sorted(files):
                path = os.path.relpath(os.path.join(folder, name), self.root)
                if SOURCE.search(name):
                    self.sources.append(path)
                    self.by_name.setdefault(name, []).append(path)
                elif name.endswith(".ui"):
                    self.by_name.setdefault("ui_" + name[:-3] + ".h", []).append(path)

    def text(self, path):
        with open(os.path.join(self.root, path), encoding="utf-8") as file:
            return file.read()

    def inside(self, path):
        """The file behind a path, without links; None when it is none of this repository."""
        real = os.path.realpath(path)
        if not os.path.isfile(real) or not real.startswith(self.root + os.sep):
            return None
        return os.path.relpath(real, self.root)

    def resolve(self, source, name, quoted):
        """The files of this repository that the include may mean."""
        nearest = [os.path.join(self.root, os.path.dirname(source))] if quoted else []
        for base in nearest + [self.root]:
            found = self.inside(os.path.join(base, name))
            if found:
                return [found]
        # Some target's include folder: any folder may be one.
        tail = re.sub(r"^(\.{1,2}/)+", "", os.path.normpath(name)).lstrip("/")
        fits = [p for p in self.by_name.get(os.path.basename(tail), [])
                if os.path.basename(tail).startswith("ui_") or ("/" + p).endswith("/" + tail)]
        return [self.inside(os.path.join(self.root, p)) for p in fits]


class Qt:
    def __init__(self, folder):
        self.modules = {}
        for module in os.listdir(folder):
            path = os.path.join(folder, module)
            if os.path.isdir(path):
                for header in os.listdir(path):
                    self.modules.setdefault(header, set()).add(module)
        if "QWidget" not in self.modules:
            raise SystemExit(f"no headers of Qt in {folder}")

    def module(self, name):
        first = name.split("/")[0]
        if "/" in name and first.startswith("Qt"):
            return first
        return min(self.modules.get(os.path.basename(name), {None}), key=str)


def judge(repository, qt, source, target):
    """What is wrong with one include, None when nothing is."""
    folder = os.path.dirname(source)
    room = longest_fit(folder, KNOWS)
    if not room or (room != folder and room.split("/")[0] in RULED):
        return "no rule says whom this folder may know"
    parts = TARGET.match(target)
    if not parts:
        return "neither a header in quotes nor one in angle brackets"
    name, quoted = parts.group(1) or parts.group(2), parts.group(1) is not None
    if name.endswith(".moc") and name[:-4] == os.path.splitext(os.path.basename(source))[0]:
        return None
    found = repository.resolve(source, name, quoted)
    for fault in (judge_file(room, file) for file in found):
        if fault:
            return fault
    if found:
        return None
    if quoted and not installed(source):
        return "no such file in this repository"
    return judge_library(qt, source, room, name)


def judge_file(room, file):
    other = longest_fit(os.path.dirname(file), dict(KNOWS, ui=None))
    if other == room:
        return None
    if other not in KNOWS[room]:
        return f"{room} may not know {other or file}"
    if other in PUBLIC_HEADERS and os.path.basename(file) not in PUBLIC_HEADERS[other]:
        return f"private to {other}"
    return None


def installed(source):
    """A program that is built against what was installed."""
    return "/consumer/" in source


def judge_library(qt, source, room, name):
    folder = os.path.dirname(source)
    module = qt.module(name)
    if module:
        limited = longest_fit(folder, QT_MODULES)
        if limited and module not in QT_MODULES[limited]:
            return f"{room} may not know {module}"
        return None
    limited = longest_fit(folder, OTHER_LIBRARIES)
    if (limited and not CPP_LIBRARY.match(name)
            and not name.startswith(tuple(OTHER_LIBRARIES[limited]))):
        return f"{room} may not know this library"
    return None


def circle(knows):
    """Rooms that know each other in a circle, the first one at both ends; empty without one."""
    done = set()

    def walk(room, path):
        if room in path:
            return path[path.index(room):] + [room]
        if room in done:
            return []
        for other in knows.get(room, []):
            found = [] if other == room else walk(other, path + [room])
            if found:
                return found
        done.add(room)
        return []

    return next(filter(None, (walk(room, []) for room in knows)), [])


def check(root, qt_folder):
    """The number of includes, and what is wrong: one line for each fault."""
    repository, qt = Repository(root), Qt(qt_folder)
    count, faults = 0, []
    for source in repository.sources:
        for match in INCLUDE.finditer(without_comments(repository.text(source))):
            count += 1
            target = match.group(1).strip()
            fault = judge(repository, qt, source, target)
            if fault:
                faults.append(f"{source}: {target}: {fault}")
    return count, faults


def main():
    round_trip = circle(KNOWS)
    if round_trip:
        raise SystemExit("rooms in a circle: " + " -> ".join(round_trip))
    count, faults = check(sys.argv[1], sys.argv[2])
    if faults:
        raise SystemExit("\n".join(faults))
    if count < 500:
        raise SystemExit(f"only {count} includes: is the folder right?")
    print(f"{count} includes, each of a room that may be known")


if __name__ == "__main__":
    main()
