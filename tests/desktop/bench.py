#!/usr/bin/python3
"""Runs one file of steps on a desktop of its own. Ends with 0, 1 when a test failed, 2 for a mistake in the file, 77
when the desktop cannot be had here and CI is not set."""

import argparse
import os
import signal
import sys
import time
import traceback
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER))
sys.dont_write_bytecode = True

SKIPPED = 77

try:
    import desktop
    import steps
    import words
except (ImportError, ValueError) as missing:
    print(f"The desktop tests need more Debian packages than are here: {missing}")
    sys.exit(1 if os.environ.get("CI") else SKIPPED)


class Overdue(BaseException):
    """The whole file took too long, or somebody wants it to end."""


def _stop(number, _):
    raise Overdue(f"ended by {signal.Signals(number).name}")


class Run:
    def __init__(self, arguments):
        self._arguments = arguments
        self._file = arguments.file
        self._screen, self._start, self._tests = steps.read(arguments.file)
        for step in [*self._start, *(step for test in self._tests for step in test.steps)]:
            try:
                words.check(step)
            except steps.Mistake as mistake:
                raise steps.Mistake(f"{self._file.name}:{step.line}: {mistake}") from None
        if arguments.only:
            self._tests = [t for t in self._tests if arguments.only in t.name]
        if arguments.tag:
            self._tests = [t for t in self._tests if arguments.tag in t.tags]

    def run(self):
        """The names of the tests that failed."""
        failed = []
        if not self._tests:
            return failed
        started = False
        with desktop.Desktop(self._arguments, self._screen) as bench:
            for test in self._tests:
                begin = time.monotonic()
                todo = test.steps if started else self._start + test.steps
                well = self._carry_out(bench, test, todo)
                print(f"{'ok  ' if well else 'FAIL'} {test.name} ({time.monotonic() - begin:.1f} s)", flush=True)
                if well:
                    started = True
                    bench.between_tests()
                else:
                    failed.append(test.name)
                    started = False
                    bench.start_anew()
        return failed

    def _carry_out(self, bench, test, todo):
        for step in todo:
            try:
                if self._arguments.verbose:
                    print(f"     {self._file.name}:{step.line}: {step.text}", flush=True)
                words.run(bench, step)
            except Exception as failure:  # whatever goes wrong, the next test gets its chance
                picture = bench.output / f"{self._file.stem}-{test.name.replace(' ', '-')}.png"
                reason = str(failure) if isinstance(failure, (words.Failure, steps.Mistake, ValueError)) else \
                    "".join(traceback.format_exception(failure))
                print(f"{self._file}:{step.line}: {step.text}\n{reason}\n{bench.describe(picture)}", flush=True)
                return False
        return True


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("file", type=Path, help="a file of steps")
    parser.add_argument("--programs", type=Path, required=True, help="folder of veltorkyn and veltorkyn-radio")
    parser.add_argument("--output", type=Path, default=Path("."), help="folder for screenshots of failures")
    parser.add_argument("--window-manager", default="openbox",
                        help="or xfwm4, metacity, mutter, kwin, or wayland: an X server inside a Wayland session")
    parser.add_argument("--only", help="tests whose name holds this")
    parser.add_argument("--tag", help="tests with this tag")
    parser.add_argument("--limit", type=int, default=110, help="seconds for the whole file")
    parser.add_argument("--verbose", action="store_true", help="say each step")
    arguments = parser.parse_args()
    arguments.output.mkdir(parents=True, exist_ok=True)
    arguments.output = arguments.output.resolve()
    arguments.programs = arguments.programs.resolve()
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGALRM):
        signal.signal(number, _stop)
    signal.alarm(arguments.limit)
    try:
        failed = Run(arguments).run()
    except steps.Mistake as mistake:
        print(mistake)
        return 2
    except desktop.Trouble as trouble:
        print(f"No desktop here: {trouble}")
        return 1 if os.environ.get("CI") else SKIPPED
    except Overdue as overdue:
        print(overdue)
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
