"""The text of a bench file: steps before the first test, then tests, each with its steps."""

import re
from collections import namedtuple

Step = namedtuple("Step", "line text tokens limit")
Test = namedtuple("Test", "name tags steps")
Token = namedtuple("Token", "text quoted")

_TOKEN = re.compile(r'"((?:\\.|[^"\\])*)"|(\S+)')
_LIMIT = re.compile(r"\s+within ([\d.]+) s$")
USUAL_LIMIT = 5.0


class Mistake(Exception):
    """What is wrong in a bench file."""


def read(path):
    """(size of the screen, steps before the first test, tests). "repeat N" repeats the indented lines below it."""
    screen = (1280, 1024)
    lines = [(number, line.rstrip()) for number, line in
             enumerate(path.read_text(encoding="utf-8").splitlines(), 1)]
    lines = [(number, line) for number, line in lines if line.strip() and not line.lstrip().startswith("#")]
    start, tests = [], []
    steps = start
    while lines:
        number, line = lines.pop(0)
        if match := re.fullmatch(r"test ([^\[\]]+?)((?: \[\w+\])*)", line):
            steps = []
            tests.append(Test(match[1], set(re.findall(r"\w+", match[2])), steps))
        elif match := re.fullmatch(r"repeat (\d+)", line):
            block = []
            while lines and lines[0][1].startswith(" "):
                block.append(_step(*lines.pop(0)))
            steps.extend(block * int(match[1]))
        elif match := re.fullmatch(r"screen (\d+) x (\d+)", line):
            screen = int(match[1]), int(match[2])
        elif line.startswith(" "):
            raise Mistake(f"{path.name}:{number}: indented without a repeat above")
        else:
            steps.append(_step(number, line))
    return screen, start, tests


def _step(number, line):
    text = line.strip()
    limit = USUAL_LIMIT
    if match := _LIMIT.search(text):
        limit = float(match[1])
        text = text[:match.start()]
    return Step(number, text, tokens(text), limit)


def tokens(text):
    """Words and quoted texts; in these \\n, \\" and \\\\ stand for line end, quote and backslash."""
    found = []
    for match in _TOKEN.finditer(text):
        if match[1] is not None:
            inside = re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t"}.get(m[1], m[1]), match[1])
            found.append(Token(inside, True))
        else:
            found.append(Token(match[2], False))
    return found
