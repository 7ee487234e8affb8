#!/usr/bin/python3
"""Measures what the console does while its database makes it wait: the real programs on a display of their own, a radio at
9600 bit/s, a storm of messages or a regroup and changes of duty, with emergency calls in it, under each condition of
conditions.py or those whose name holds one of the words given."""

import argparse
import json
import os
import signal
import sqlite3
import subprocess
import sys
import threading
import time
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
ROOT = FOLDER.parents[1]
sys.path[:0] = [str(FOLDER), str(ROOT / "tests/desktop")]
sys.dont_write_bytecode = True

import conditions  # noqa: E402
import records  # noqa: E402
import sites  # noqa: E402
from console import OPERATOR  # noqa: E402
from marks import Marks  # noqa: E402
from processes import Processes, Trouble  # noqa: E402
from screen import Screen  # noqa: E402
from watch import Watch  # noqa: E402
from wire import Radio  # noqa: E402

SPEED = 9600
CALLERS = ("Unit20", "Unit22", "Unit23", "Unit38", "Unit41")
NOTED_LATER = 5e6  # ns by which the note of a written octet may be behind what the console does with it
FIRST_CALL, BETWEEN_CALLS, CALL_LENGTH = 3.0, 3.5, 2.0  # seconds from the storm's begin
FLEET = ROOT / "src/resources/scenarios/busy-day.json"
DIRECTORY = ROOT / "src/resources/demonstration/directory.json"


class Bench:
    """One run under one condition."""

    def __init__(self, condition, programs, shim):
        self._condition, self._programs, self._shim = condition, programs, shim
        self._task = condition.work
        self._beside = self._failure = None

    def run(self):
        with Processes() as self.processes:
            self._open()
            try:
                logon = self._start()
                self._work()
                return {"condition": self._condition.name, "logon": logon, **self._measured()}
            finally:
                self.site.close()

    def beside(self, act):
        """Beside what else goes on, until the end of the condition at the latest."""
        def go():
            try:
                act()
            except Trouble as trouble:
                self._failure = trouble
        self._beside = threading.Thread(target=go, daemon=True)
        self._beside.start()

    def _open(self):
        _, number = self.processes.start_announced("Xvfb", "-displayfd", "{fd}", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                                                   "-noreset")
        self.processes.environment.update(DISPLAY=f":{number}", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="0", NO_AT_BRIDGE="1")
        self.screen = Screen(f":{number}")
        self.processes.start("openbox", "--sm-disable")
        self.until(self.screen.is_managed, 20, "openbox does not manage the display")
        self._watch = Watch(f":{number}")
        self.marks = Marks(self.processes.folder)
        self.site = self._condition.site(self.processes, self._programs, DIRECTORY)

    def _start(self):
        """The radio, the site and the console, logged on; seconds that the logon took."""
        usual = dict(self.processes.environment)
        scenario = self.processes.folder / "calm.json"
        scenario.write_text('{"base": "busy-day", "events": []}')
        self.processes.environment.update(self.marks.environment_of_radio(self._shim))
        self.radio = Radio(self.processes, self._programs / "veltorkyn-radio", scenario, SPEED)
        self.processes.environment.clear()
        self.processes.environment.update(usual)
        self.site.make_site(self.radio.port)
        self.site.set("prefs", "beepnotify", 0)  # the bell is that of emergency calls then
        self._task.prepare(self)
        if self._condition.from_start:
            self._condition.begin(self)
        self.site.start(self.marks.environment(self._shim, self.processes.folder / "site.kyn"))
        self.until(lambda: self.screen.active().startswith("Log On to"), 30, "no logon dialog")
        time.sleep(0.5)
        self.screen.chord("Ctrl+a")
        self.screen.type(f"{OPERATOR[0]}\t{OPERATOR[1]}", 0.02)
        begin = time.monotonic_ns()
        self.screen.type("\n", 0)
        self.until(lambda: not self.screen.find("Log On to*"), 60, "nobody gets logged on")
        self.until(lambda: "link=ready" in self.radio.tell("state"), 60, "the radio's link stays down")
        self.until(self._rests, 60, "the logon does not end")
        logon = (max(self.marks.rest_since(), begin) - begin) / 1e9
        # Every window has been open once.
        self._watch.expect()
        self.radio.tell(f"call {CALLERS[0]} emergency")
        self.until(lambda: self._watch.seen, 30, "no call window")
        self.radio.tell("hangup")
        self._stored(30)
        return round(logon, 2)

    def _rests(self):
        """The event loop has turned freely for a second and a half."""
        since = self.marks.rest_since()
        return since is not None and time.monotonic_ns() - since > 1.5e9

    def _work(self):
        self._task.ask(self)
        self._links_before = self._trace().links
        self._messages_before = len(self._trace().messages)
        self._records_before = len(self.site.records())
        self.marks.forget_stalls()
        if not self._condition.from_start:
            self._condition.begin(self)
        begin = time.monotonic()
        time.sleep(1)
        self._task.begin(self)
        self._calls = self._call_in(begin + 1 + FIRST_CALL) if self._condition.emergencies else []
        time.sleep(max(0, begin + self._condition.seconds - time.monotonic()))
        self._condition.end(self)
        if self._beside is not None:
            self._beside.join(90)
        if self._failure is not None:
            raise self._failure
        self._taken_all(40)
        self._stored(20)

    def _call_in(self, due):
        """Emergency calls, one after the other: [nanoseconds seen or None]."""
        seen = []
        for number, caller in enumerate(CALLERS):
            time.sleep(max(0, due - time.monotonic()))
            self._watch.expect()
            self.radio.tell(f"call {caller} emergency")
            over = time.monotonic() + CALL_LENGTH
            self._task.during_call(self, number)
            time.sleep(max(0, over - time.monotonic()))
            seen.append(self._watch.seen)
            self._watch.give_up()
            self.radio.tell("hangup")
            due += BETWEEN_CALLS
        return seen

    def _taken_all(self, limit):
        """Until the radio has got rid of its messages, or cannot."""
        deadline = time.monotonic() + limit
        while len(self._new_messages()) < self._task.messages and time.monotonic() < deadline:
            time.sleep(0.5)

    def _stored(self, limit):
        """Until the database has not been written to for three seconds."""
        state, since = None, time.monotonic()
        deadline = since + limit
        while time.monotonic() < min(deadline, since + 3):
            now = self.site.state()
            if now != state:
                state, since = now, time.monotonic()
            time.sleep(0.3)

    def _trace(self):
        return records.Trace(self.processes.folder / "wire.jsonl")

    def _new_messages(self):
        return [m for m in self._trace().messages[self._messages_before:] if m[2][0] in records.MESSAGES]

    def _measured(self):
        stall = self.marks.longest_stall(time.monotonic_ns())
        messages = self._new_messages()
        span = (messages[-1][0] - messages[0][0]) / 1000 if len(messages) > 1 else 0
        keys = records.Keys(DIRECTORY, FLEET)
        trace = self._trace()
        expected = [key for m in trace.messages[self._messages_before:] if (key := keys.of_message(m[2]))]
        stored = [keys.of_record(r) for r in self.site.records()[self._records_before:]]
        compared = records.Compared(expected, stored)
        stored_duty = self.site.duty()
        wrong_duty = sum(stored_duty.get(callsign) != on for callsign, on in keys.duty(expected).items())
        screen, sound = self._latencies(trace)
        return {"stall": round(stall), "screen": screen, "sound": sound, "taken": len(messages), "of": self._task.messages,
                "rate": round((len(messages) - 1) / span, 1) if span else 0,
                "line": round(1000 * trace.line_use(messages[0][0], messages[-1][0]) / SPEED) if span else 0,
                "links": trace.links - self._links_before,
                "missing": compared.missing, "twice": compared.twice, "out of order": compared.out_of_order,
                "duty wrong": wrong_duty, "by number": keys.by_number, "regroup wrong": self._task.wrong(self.site), "load": [round(value, 2) for value in os.getloadavg()]}

    def _latencies(self, trace):
        """Milliseconds from the last octet of each emergency call to the window and to the sound; None: not while it rang."""
        if not self._calls:
            return [], []
        sent = records.Sent(self.marks.line())
        calls = [m for m in trace.messages[self._messages_before:] if m[2][0] == records.EMERGENCY_CALL]
        bells = self.marks.bells()
        screen, sound = [], []
        for number, seen in enumerate(self._calls):
            at = sent.end_of(calls[number][1]) if number < len(calls) else None
            rang = [] if at is None else [b for b in bells if at - NOTED_LATER <= b <= at + CALL_LENGTH * 1e9]
            screen.append(None if at is None or seen is None else round((seen - at) / 1e6, 1))
            sound.append(round(max(0, rang[0] - at) / 1e6, 1) if rang else None)
        return screen, sound

    @staticmethod
    def until(condition, limit, problem):
        deadline = time.monotonic() + limit
        while not condition():
            if time.monotonic() > deadline:
                raise Trouble(problem)
            time.sleep(0.05)


def _worst(values):
    """Of a handful of calls the 95th percentile is the longest; one that was not shown goes before all."""
    return "-" if not values else f"never {values.count(None)} of {len(values)}" if None in values else f"{max(values):.0f} ms"


def _row(result):
    if "failed" in result:
        return [result["condition"], result["failed"]] + [""] * 7
    wrong = [f"{result[key]} {key}" for key in ("missing", "twice", "out of order", "duty wrong", "by number", "regroup wrong") if result[key]]
    return [result["condition"], f"{result['logon']:.1f} s", f"{result['stall']} ms", _worst(result["screen"]),
            _worst(result["sound"]), f"{result['rate']:.1f} ({result['line']} %)", f"{result['taken']} of {result['of']}", str(result["links"]),
            ", ".join(wrong) or "each once, in order"]


def table(results):
    lines = [["Condition", "Logon", "Longest stall", "Emergency on the screen", "to the sound", "Messages a second (line in use)",
              "Taken", "Links lost", "Records"]]
    lines += [["---"] * len(lines[0])] + [_row(result) for result in results]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("words", nargs="*", help="parts of conditions' names; all without")
    parser.add_argument("--build", type=Path, default=ROOT / "build", help="build folder with bin and bench")
    parser.add_argument("--programs", type=Path, help="another folder of veltorkyn and veltorkyn-radio")
    parser.add_argument("--json", type=Path, default=Path("waiting.json"), help="where the figures are written")
    arguments = parser.parse_args()
    programs = (arguments.programs or arguments.build / "bin").resolve()
    shim = (arguments.build / "bench/waiting_shim.so").resolve()
    chosen = [c for c in conditions.ALL if not arguments.words or any(word in c.name for word in arguments.words)]
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # everything that was started ends with it
    results = []
    for condition in chosen:
        try:
            results.append(Bench(condition, programs, shim).run())
        except (Trouble, ValueError, sqlite3.Error, subprocess.SubprocessError) as trouble:
            results.append({"condition": condition.name, "failed": str(trouble)})
        print(table(results[-1:]).splitlines()[-1], flush=True)
        arguments.json.write_text(json.dumps(results, indent=2) + "\n")
    print("\n" + table(results))
    return 1 if any("failed" in result for result in results) else 0


if __name__ == "__main__":
    sys.exit(main())
