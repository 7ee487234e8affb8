"""What the lint checks share: reading the tree, C++ without its comments, and the catalogue format."""

import re
import sys
from collections import namedtuple
from pathlib import Path

_TOKEN = re.compile(
    r'''//[^\n]*|/\*.*?\*/'''
    r'''|R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"'''
    r'''|"(?:\\.|[^"\\\n])*"'''
    r'''|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+\'''',
    re.S)
_RAW = re.compile(r'R"([^()\\\s]{0,16})\((.*)\)\1"', re.S)

Entry = namedtuple("Entry", "id text line block")
Call = namedtuple("Call", "name arguments line")


class Report:
    """Collects findings; an error fails the check, a warning is only printed."""

    def __init__(self, name):
        self._name = name
        self._errors = []
        self._warnings = []

    def error(self, where, text):
        self._errors.append(f"{where}: {text}")

    def warning(self, where, text):
        self._warnings.append(f"{where}: warning: {text}")

    def finish(self):
        for line in self._warnings + self._errors:
            print(line)
        print(f"{self._name}: {len(self._errors)} errors, {len(self._warnings)} warnings")
        return 1 if self._errors else 0


def root_from_arguments():
    """The tree to check: the first argument, or the one that this file lies in."""
    return Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]


def read(path):
    return path.read_text(encoding="utf-8")


def source_files(root, suffixes=(".cpp", ".h")):
    return sorted(p for p in (root / "src").rglob("*") if p.suffix in suffixes and p.is_file())


def relative(root, path):
    return path.relative_to(root).as_posix()


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def _blank(text):
    return re.sub(r"[^\n]", " ", text)


def without_comments(text):
    """The same text with blanks where comments stood, so that positions stay."""
    return _TOKEN.sub(lambda m: _blank(m[0]) if m[0].startswith("/") else m[0], text)


def without_strings(text):
    """The same text with blanks where the insides of comments and literals stood."""
    def mask(match):
        if match[0].startswith("/"):
            return _blank(match[0])
        return match[0][0] + _blank(match[0][1:-1]) + match[0][-1]
    return _TOKEN.sub(mask, text)


def string_literals(text):
    """(line, contents) of every string literal; neighbours that the compiler joins come as one."""
    found = []
    end = None
    for match in _TOKEN.finditer(text):
        token = match[0]
        if token.startswith("/") or token.startswith("'"):
            continue
        raw = _RAW.fullmatch(token)
        contents = raw[2] if raw else token[1:-1]
        gap = without_comments(text[end:match.start()]) if end is not None else "x"
        if re.fullmatch(r"\s*u?8?L?", gap):
            found[-1] = (found[-1][0], found[-1][1] + contents)
        else:
            found.append((line_of(text, match.start()), contents))
        end = match.end()
    return found


def closing(masked, opening):
    """Position of the bracket that closes the one at `opening`, or the end of the text."""
    depth = 0
    for position in range(opening, len(masked)):
        if masked[position] in "([{":
            depth += 1
        elif masked[position] in ")]}":
            depth -= 1
            if depth == 0:
                return position
    return len(masked)


def calls(text, names):
    """Every call (or brace initialisation) of one of the names, with the source text of its arguments."""
    code = without_comments(text)
    masked = without_strings(text)
    for match in re.finditer(r"(?<![\w])(%s)\s*[({]" % "|".join(names), masked):
        end = closing(masked, match.end() - 1)
        yield Call(match[1], code[match.end():end], line_of(text, match.start()))


def read_list(path):
    """The lines of a list file without comments (from "#") and blank lines."""
    if not path.exists():
        return []
    lines = (line.split("#", 1)[0].strip() for line in read(path).splitlines())
    return [line for line in lines if line]


def read_catalogue(path, report):
    """The entries of a catalogue file, in order; every line that is none is reported.

    The block of an entry is the comment that stands above it after a blank line.
    """
    entries = []
    seen = {}
    block = ""
    heading_follows = True
    try:
        text = read(path)
    except UnicodeDecodeError as failure:
        report.error(path.name, f"not UTF-8: {failure}")
        return entries
    if text.startswith("\ufeff") or "\r" in text:
        report.error(path.name, "begins with a byte order mark or has carriage returns")
    for number, line in enumerate(text.split("\n"), 1):
        where = f"{path.name}:{number}"
        if line.startswith(";"):
            block = line[1:].strip() if heading_follows else block
            heading_follows = False
            continue
        heading_follows = not line.strip()
        if heading_follows:
            continue
        match = re.fullmatch(r'(\d+) "(.*)"', line)
        if not match:
            report.error(where, f"neither an entry nor a comment: {line}")
            continue
        entry = Entry(int(match[1]), match[2], number, block)
        if entry.id in seen:
            report.error(where, f"id {entry.id} stands already in line {seen[entry.id]}")
        seen.setdefault(entry.id, number)
        entries.append(entry)
    return entries
