#!/usr/bin/python3
"""Measures what goals.py names and prints it as a table; see ./bench --help."""

import argparse
import json
import os
import subprocess
import sys
from pathlib import Path

import data
import goals
import picture
import profile_report
import programs

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "build"
SIZES, QUICK_SIZES = (50_000, 500_000, 5_000_000), (5_000, 50_000, 500_000)
ENTRIES = 50  # events for each entry of the directory


class Bench:
    def __init__(self, arguments, place):
        self._data, self._quick = place, arguments.quick
        self._sizes = QUICK_SIZES if arguments.quick else SIZES

    def log_files(self, _):
        return self._each(lambda events: self._program("log", self._data.files(events), events))

    def log_server(self, _):
        return self._each(lambda events: self._program("log", self._data.server(events), events))

    def directory(self, _):
        return self._each(lambda events: self._program("directory", self._data.files(events), events // ENTRIES))

    def talkgroups(self, _):
        return self._each(lambda events: self._program("talkgroups", self._data.files(events), events // 250))

    def search_files(self, _):
        return self._each(lambda events: self._program("search", self._data.files(events), events))

    def search_server(self, _):
        return self._each(lambda events: self._program("search", self._data.server(events), events))

    def frames(self, _):
        return [row for messages in (60, 600, 6000) for row in self._program("frames", messages)]

    def line(self, _):
        return self._program("line")

    def consoles(self, _):
        return [row for count in (6, 64) for row in self._program("consoles", "--news", count)]

    def radio(self, _):
        return [row for radios in (2, 20, 200) for row in self._program("storm", "--radios", radios, 20 if self._quick else 60)]

    def _each(self, measure):
        return [row for events in self._sizes for row in measure(events)]

    @staticmethod
    def _program(name, *arguments, limit=7200):
        """The rows that it prints; what else it says is for whoever runs it alone."""
        done = subprocess.run([BUILD / f"bench/bench_{name}", *map(str, arguments)], stdout=subprocess.PIPE, text=True,
                              stderr=subprocess.DEVNULL, timeout=limit, check=False,
                              env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
        rows = [json.loads(line) for line in done.stdout.splitlines() if line.startswith("{")]
        if not rows:
            print(f"bench_{name} gives no figure: {done.stdout.strip()[-300:]}", flush=True)
        return rows


def sources(bench):
    """Who measures which rows."""
    return [
        (bench.log_files, ["log record, files", "log reload, files"]),
        (bench.log_server, ["log record, server", "log reload, server"]),
        (bench.search_files, ["log window search for a word, files", "log window search for a number, files"]),
        (bench.search_server, ["log window search for a word, server", "log window search for a number, server"]),
        (bench.directory, ["look-up by number", "look-up by callsign", "directory opened", "a key typed into an address, longest"]),
        (bench.talkgroups, ["talkgroups reloaded"]),
        (programs.start, ["start to the first painted window", "memory at the first painted window"]),
        (programs.idle, ["idle, link probed"]),
        (bench.frames, ["messages a second, stored and shown", "frame to painted line, p99"]),
        (bench.line, goals.LINE_USE),
        (programs.round_trips, ["round trips, what reads or adds", "round trips, what others may change"]),
        (bench.consoles, ["a change seen by all consoles, p99"]),
        (bench.radio, ["veltorkyn-radio of one core"]),
        (programs.build, ["build from nothing", "./test"]),
    ]


def measure(bench, arguments):
    rows = []
    on_wish = {goal.name for goal in goals.GOALS if goal.on_wish}
    for source, names in sources(bench):
        if on_wish.issuperset(names) and not arguments.build:
            continue
        if arguments.words and not any(word in name for word in arguments.words for name in names):
            continue
        print(f"Measuring {names[0]} ...", flush=True)
        try:
            found = source(bench)
        except (data.Trouble, programs.Trouble, TimeoutError, subprocess.SubprocessError) as trouble:
            print(f"Not measured: {trouble}", flush=True)
            continue
        rows += [{**row, "load": round(os.getloadavg()[0], 1)} for row in found]
    return rows


def largest(rows, name):
    found = [row for row in rows if row["row"] == name]
    return max(found, key=lambda row: row.get("size", 0)) if found else None


def number(value, unit=""):
    if value is None:
        return "-"
    digits = 0 if abs(value) >= 100 else 1 if abs(value) >= 10 else 2
    return f"{value:,.{digits}f} {unit}".strip()


def table(rows):
    """The lines of the table as texts; one for each goal that was measured."""
    lines = []
    for goal in goals.GOALS:
        row = largest(rows, goal.name)
        if row:
            lines.append((goal.name, number(row["ours"], row["unit"]), number(row.get("bare"), row["unit"] if row.get("bare") else ""),
                          number(goals.ratio(row)), goal.text(), "met" if goal.is_met(row) else "missed"))
    return lines


def growth(rows):
    """What each costs at its sizes, and how much more the last one is than the first, by the size."""
    lines = []
    for name in dict.fromkeys(row["row"] for row in rows):
        found = sorted((row for row in rows if row["row"] == name and "size" in row), key=lambda row: row["size"])
        if len(found) > 1:
            lines.append((name, *(f"{number(row['ours'], row['unit'])} ({row['size']:,})" for row in found), *[""] * (3 - len(found))))
    return lines


def show(heads, lines):
    widths = [max(len(line[column]) for line in [heads, *lines]) for column in range(len(heads))]
    for line in [heads, *lines]:
        print("  ".join(text.ljust(width) if column in (0, len(heads) - 1) else text.rjust(width)
                        for column, (text, width) in enumerate(zip(line, widths))).rstrip())


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("words", nargs="*")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--build", action="store_true")
    parser.add_argument("--profile", action="store_true")
    arguments = parser.parse_args()
    with data.Data(BUILD / "bench-data", BUILD / "bench") as place:
        if arguments.profile:
            return profile_report.run(arguments.words, place.files(50_000))
        rows = measure(Bench(arguments, place), arguments)
    lines = table(rows)
    if not lines:
        print("Nothing was measured.")
        return 1
    print()
    show(("", "ours", "bare", "ratio", "goal", ""), lines)
    print()
    show(("as it grows", "", "", ""), growth(rows))
    (BUILD / "bench.json").write_text(json.dumps({"processors": os.cpu_count(), "load": os.getloadavg(), "rows": rows}, indent=1))
    if not arguments.words and not arguments.quick:
        picture.draw(ROOT / "docs/pictures/performance.svg", [(line, largest(rows, line[0])) for line in lines])
    return 0


if __name__ == "__main__":
    sys.exit(main())
