"""Two consoles on one database, each on a display of its own with a radio of its own, Anna at one and Oliver at the other: what
one does about an emergency, seen and heard at the other. On a PostgreSQL server and on files.

    benchmarks/run twoconsoles [server|files] [--runs N] [--programs DIR] [--build DIR]

Prints a row for each database. The exit code is 1 when something does not hold; what, is printed below."""

import argparse
import multiprocessing
import shutil
import sys
import time
from pathlib import Path
from types import SimpleNamespace

ROOT = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "benchmarks/waiting"), str(ROOT / "tests/desktop")]
sys.dont_write_bytecode = True

import desktop  # noqa: E402
import sites  # noqa: E402
import steps  # noqa: E402
import words  # noqa: E402
from console import ADMINISTRATOR, OPERATOR  # noqa: E402
from marks import Marks  # noqa: E402
from processes import Processes, Trouble  # noqa: E402
from wire import Radio  # noqa: E402

DIRECTORY = ROOT / "src/resources/demonstration/directory.json"
CALLERS = ("Unit20", "Unit22", "Unit23", "Unit24", "Unit25", "Unit26", "Unit27", "Unit28", "Unit29")
GOAL = 1000              # ms until the other console shows who has taken it
TONE = 2.5               # seconds from one sound of an emergency to the next
NOTICE = 1.3             # seconds after which a button that has just come takes a click
LONGEST = 120            # seconds for one thing that a console is asked to do
WAITING = 'SELECT caller, times FROM {}attention WHERE kind = 1 ORDER BY caller'
TAKEN = "SELECT taken_by FROM {}attention WHERE caller = '%s' AND kind = 1"


class Desk:
    """One console with whoever sits at it, in a process of its own, because a process knows one accessibility bus."""

    def __init__(self, arguments, operator, settings):
        self._operator = operator
        self._bench = desktop.Desktop(SimpleNamespace(programs=arguments.programs, output=Path("."), window_manager="openbox"),
                                      (1280, 1024))
        self._shim, self._settings = arguments.build / "bench/waiting_shim.so", settings
        self._row = None

    def serve(self, pipe):
        with self._bench:
            self._start()
            pipe.send((None, None))
            while request := pipe.recv():
                name, values = request
                try:
                    pipe.send((None, getattr(self, name)(*values)))
                except Exception as failure:  # the other end says it
                    pipe.send((f"{self._operator}: {name}{values}: {failure}\n{self._bench.screen.describe()}", None))

    def _start(self):
        bench = self._bench
        bench.radio = Radio(bench.processes, bench.programs / "veltorkyn-radio", "tour")
        shutil.copy(self._settings, bench.console.settings)
        bench.console.set("serial_comm", "port", bench.radio.port)
        bench.console.set("prefs", "beepnotify", 0)  # the bell is that of emergencies then
        self._marks = Marks(bench.processes.folder)
        bench.environment.update(self._marks.environment(self._shim, bench.processes.folder / "none"))
        self.do(f"start console logged on as {self._operator} within 40 s")

    def do(self, line):
        """A step of the desktop bench."""
        limit = line.rsplit(" within ", 1)
        words.run(self._bench, steps.Step(0, limit[0], steps.tokens(limit[0]),
                                          float(limit[1].split()[0]) if len(limit) == 2 else steps.USUAL_LIMIT))

    def show(self, caller):
        """Waits for the row with the emergency; nanoseconds of CLOCK_MONOTONIC."""
        found = self._wait(lambda: self._bench.controls.find("label", f"EMERGENCY: {caller} *"), 15)
        if not found:
            raise Trouble(f"no emergency of {caller} is shown")
        self._row = found[0]
        return time.monotonic_ns()

    def aim(self, button):
        self.do(f'point at button "{button}"')

    def press(self, when):
        """The button below the pointer, at that time; when that was."""
        time.sleep(max(0, when / 1e9 - time.monotonic()))
        now = time.monotonic_ns()
        self._bench.screen.press_button()
        return now

    def taken(self, operator, limit):
        """When text and pixels of the row have changed to say that this operator has it, or None; and the text."""
        place = self._row.place
        before = self._bench.screen.pixels(*place)
        text = painted = None
        deadline = time.monotonic() + limit
        while time.monotonic() < deadline and (text is None or painted is None):
            if painted is None and self._bench.screen.pixels(*place) != before:
                painted = time.monotonic_ns()
            if text is None and f"taken by {operator} " in self._row.name_now():
                text = time.monotonic_ns()
            time.sleep(0.004)
        return None if text is None or painted is None else max(text, painted), self._row.name_now()

    def told(self, caller, winner, limit):
        """Whether it is said that somebody else was faster."""
        return bool(self._wait(lambda: self._bench.controls.find("label", f"*{caller} had been taken before you by {winner} *"), limit))

    def says(self, operator, limit):
        return bool(self._wait(lambda: f"taken by {operator} " in self._row.name_now(), limit))

    def counts(self, text, limit):
        return bool(self._wait(lambda: self._bench.controls.find("label", f"EMERGENCY: *[[]in all: {text}[]]"), limit))

    def gone(self, limit):
        return bool(self._wait(lambda: not self._bench.controls.find("label", "EMERGENCY: *"), limit))

    def bells(self):
        return self._marks.bells()

    @staticmethod
    def _wait(look, limit):
        deadline = time.monotonic() + limit
        while not (found := look()) and time.monotonic() < deadline:
            time.sleep(0.02)
        return found


def serve_desk(arguments, operator, settings, pipe):
    try:
        Desk(arguments, operator, settings).serve(pipe)
    except (Exception, KeyboardInterrupt) as failure:
        pipe.send((f"{operator}: {failure}", None))


class Remote:
    """A desk as its own process knows it. What is asked with `begin` goes on beside the next until `end`."""

    def __init__(self, arguments, operator, settings):
        self.operator = operator
        context = multiprocessing.get_context("spawn")
        self._pipe, other = context.Pipe()
        self._process = context.Process(target=serve_desk, args=(arguments, operator, settings, other), daemon=True)
        self._process.start()

    def begin(self, name, *values):
        self._pipe.send((name, values))

    def end(self):
        if not self._pipe.poll(LONGEST):
            raise Trouble(f"{self.operator}'s desk does not answer")
        failure, value = self._pipe.recv()
        if failure:
            raise Trouble(failure)
        return value

    def ask(self, name, *values):
        self.begin(name, *values)
        return self.end()

    def close(self):
        self._pipe.send(None)
        self._process.join(20)
        if self._process.is_alive():
            self._process.terminate()


class Pair:
    """Both desks on one site, and what does not hold."""

    def __init__(self, arguments, kind):
        self._runs, self._kind, self.wrong = arguments.runs, kind, []
        self._arguments = arguments
        self.shown, self.races, self._silent = [], {}, 0

    def run(self):
        with Processes() as processes:
            site = {"server": sites.Server, "files": sites.Files}[self._kind](processes, self._arguments.programs, DIRECTORY)
            self._site = site
            self._desks = []
            try:
                site.make_site("nowhere")
                self._desks = [Remote(self._arguments, name, site.settings) for name, _ in (ADMINISTRATOR, OPERATOR)]
                for desk in self._desks:
                    desk.end()
                for number in range(self._runs):
                    self._take(number)
                for number in range(self._runs):
                    self._race(number)
                self._both_hear()
            finally:
                for desk in self._desks:
                    desk.close()
                site.close()

    def _take(self, number):
        """One takes, the other looks and listens; they change places each time."""
        taker, other = self._desks if number % 2 == 0 else self._desks[::-1]
        caller = CALLERS[number % len(CALLERS)]
        begin = time.monotonic_ns()
        self._call(taker, caller)
        time.sleep(TONE + 0.5)  # heard at both by then
        for desk in self._desks:
            self._expect(any(bell > begin for bell in desk.ask("bells")), f"{caller}: no sound at {desk.operator}'s")
        taker.ask("aim", "Take")
        other.begin("taken", taker.operator, 10)
        clicked = taker.ask("press", time.monotonic_ns() + 200_000_000)
        seen, text = other.end()
        if self._expect(seen is not None, f"{caller}: not shown as taken by {taker.operator}, but {text!r}"):
            self.shown.append((seen - clicked) / 1e6)
            self._expect(self.shown[-1] <= GOAL, f"{caller}: shown as taken after {self.shown[-1]:.0f} ms only")
            time.sleep(TONE + 0.7)
            late = [(bell - seen) / 1e6 for bell in other.ask("bells") if bell > seen]
            if self._expect(not late, f"{caller}: sounds at {other.operator}'s after it was shown as taken: {late} ms"):
                self._silent += 1
        self._finish(taker)

    def _race(self, number):
        """Both press at the same moment."""
        caller = CALLERS[number % len(CALLERS)]
        self._call(self._desks[number % 2], caller)
        time.sleep(NOTICE)
        for desk in self._desks:
            desk.ask("aim", "Take")
        when = time.monotonic_ns() + 300_000_000
        for desk in self._desks:
            desk.begin("press", when)
        pressed = [desk.end() for desk in self._desks]
        deadline = time.monotonic() + 5
        while (rows := self._site.rows(TAKEN % caller)) == [[""]] and time.monotonic() < deadline:
            time.sleep(0.05)
        time.sleep(2)  # both are stored
        rows = self._site.rows(TAKEN % caller)
        names = [desk.operator for desk in self._desks]
        if not self._expect(len(rows) == 1 and rows[0][0] in names, f"{caller}, both take: the database has {rows}"):
            return
        winner = rows[0][0]
        loser = self._desks[1 - names.index(winner)]
        apart = (pressed[1] - pressed[0]) / 1e6
        self.races[winner] = self.races.get(winner, 0) + 1
        for desk in self._desks:
            self._expect(desk.ask("says", winner, 3), f"{caller}, both take ({apart:+.1f} ms): {desk.operator} is not shown {winner}")
        self._expect(loser.ask("told", caller, winner, 3), f"{caller}, both take ({apart:+.1f} ms): {loser.operator} is not told")
        self._finish(self._desks[0])

    def _both_hear(self):
        """A call to a group reaches both radios, another call one of them."""
        for desk in self._desks:
            desk.begin("do", "radio: call Unit22 connected emergency group")
        for desk in self._desks:
            desk.end()
        time.sleep(0.5)
        for desk in self._desks:
            desk.ask("do", "radio: hangup")
        self._desks[0].ask("do", "radio: call Unit23 connected emergency")
        time.sleep(0.5)
        self._desks[0].ask("do", "radio: hangup")
        for desk in self._desks:
            self._expect(desk.ask("counts", "emergencies: 2", 10), f"two emergencies: {desk.operator} is not shown two")
        rows = self._site.rows(WAITING)
        self.entries = "one" if rows == [["Unit22", "1"], ["Unit23", "1"]] else "wrong"
        self._expect(self.entries == "one", f"two emergencies, one heard at both: the database has {rows}")

    def _call(self, desk, caller):
        desk.ask("do", f"radio: call {caller} connected emergency")
        time.sleep(0.4)
        desk.ask("do", "radio: hangup")
        for each in self._desks:
            each.begin("show", caller)
        for each in self._desks:
            each.end()

    def _finish(self, desk):
        """Nothing waits any more, at either."""
        time.sleep(NOTICE)
        desk.ask("aim", "Done")
        desk.ask("press", 0)
        for each in self._desks:
            if not each.ask("gone", 10):
                raise Trouble(f"{each.operator}: done, but still shown")

    def _expect(self, holds, problem):
        if not holds:
            self.wrong.append(f"{self._kind}: {problem}")
        return holds

    def row(self):
        times = sorted(self.shown)
        spread = f"{times[len(times) // 2]:.0f} ms | {times[-1]:.0f} ms" if times else "never | never"
        won = ", ".join(f"{name} {count}" for name, count in sorted(self.races.items()))
        return f"| {self._kind} | {len(times)} of {self._runs} | {spread} | {self._silent} of {self._runs} | {won} | {self.entries} |"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kinds", nargs="*", help="server, files; both without")
    parser.add_argument("--runs", type=int, default=10)
    parser.add_argument("--build", type=Path, default=ROOT / "build", help="build folder with bin and bench")
    parser.add_argument("--programs", type=Path, help="another folder of the programs")
    arguments = parser.parse_args()
    arguments.build = arguments.build.resolve()
    arguments.programs = (arguments.programs or arguments.build / "bin").resolve()
    wrong = []
    print("| Database | Shown as taken at the other | half within | all within | Silent there from then on | Both at once: who won |"
          " Entries of a call heard at both |\n|---|---|---|---|---|---|---|", flush=True)
    for kind in arguments.kinds or ("server", "files"):
        pair = Pair(arguments, kind)
        try:
            pair.run()
            print(pair.row(), flush=True)
        except (Trouble, OSError) as trouble:
            wrong.append(f"{kind}: {trouble}")
        wrong += pair.wrong
    print("\n".join(["", *wrong]) if wrong else "", end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
