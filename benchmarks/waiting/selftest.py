#!/usr/bin/python3
"""What the bench for waiting must notice in a trace and in a database."""

import json
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.append(str(Path(__file__).resolve().parents[2] / "tests/desktop"))

import records  # noqa: E402

COMPARED = [  # expected, stored, (missing, twice, out of order)
    ("abcd", "abcd", (0, 0, 0)), ("abcd", "abd", (1, 0, 0)), ("abcd", "abbcd", (0, 1, 0)), ("abcd", "acbd", (0, 0, 1)),
    ("aab", "aba", (0, 0, 1)), ("abcd", "", (4, 0, 0)), ("abcd", "bcda", (0, 0, 1)), ("ab", "abx", (0, 1, 0)),
]
REQUEST, FIRST, SECOND = "01 16", "04 01 01 00 80 00 00 02 00 05", "04 02 01 00 80 00 00 02 00 05"
OTHER, ANOTHER = "04 02 01 00 B2 04", "04 03 01 00 B2 04"
TRACES = [  # (ms, body), (messages, links)
    ([(0, REQUEST), (9, FIRST), (20, SECOND)], (2, 1)), ([(0, REQUEST), (9, FIRST), (1509, FIRST)], (1, 1)),
    ([(0, REQUEST), (900, REQUEST), (1800, FIRST)], (1, 1)), ([(0, REQUEST), (9, FIRST), (5000, REQUEST), (5009, FIRST)], (1, 2)),
    ([(0, REQUEST), (9, FIRST), (20, SECOND), (1509, FIRST), (1520, SECOND)], (2, 1)),
    ([(0, REQUEST), (9, FIRST), (20, OTHER), (30, ANOTHER), (5000, REQUEST), (5009, FIRST)], (3, 2)),
]


def compared(expected, stored):
    result = records.Compared(expected, stored)
    return result.missing, result.twice, result.out_of_order


def traced(frames):
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "trace"
        path.write_text("".join(json.dumps({"ms": ms, "dir": "R>D", "frame": f"16 10 02 {body} 10 03 00 00"}) + "\n" for ms, body in frames))
        trace = records.Trace(path)
    return len(trace.messages), trace.links


def main():
    wrong = [f"{case[:-1]}: {case[-1]} expected, {found} found" for case in COMPARED
             if (found := compared(*case[:2])) != case[-1]]
    wrong += [f"{frames}: {expected} expected, {found} found" for frames, expected in TRACES if (found := traced(frames)) != expected]
    sent = records.Sent([(10, b"\x01\x02"), (20, b"\x03\x04"), (30, b"\x05")])
    wrong += [f"{frame}: at {sent.end_of(frame)}" for frame, at in ((b"\x02\x03", 20), (b"\x04\x05", 30), (b"\x01\x02", 10), (b"\x09", None))
              if sent.end_of(frame) != at]
    print("\n".join(wrong) or "all noticed")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
