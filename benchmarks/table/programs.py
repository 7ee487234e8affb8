"""What is measured of the real programs: start, memory, idling, and how long they take to build."""

import json
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/desktop"))

from console import OPERATOR, Console  # noqa: E402
from processes import Processes, Trouble  # noqa: E402
from screen import Screen  # noqa: E402
from wire import Radio  # noqa: E402

BUILD = ROOT / "build"
DIRECTORY = ROOT / "src/resources/demonstration/directory.json"
PAIRS = 15
IDLE = 40  # seconds


def display(children):
    _, number = children.start_announced("Xvfb", "-displayfd", "{fd}", "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset")
    children.environment.update(DISPLAY=f":{number}", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="0", NO_AT_BRIDGE="1")
    return f":{number}"


def start(_):
    """The console beside an empty window, each on its own, in turn; processor time, so that other programs do not count."""
    with Processes() as children:
        display(children)
        site = Console(children, BUILD / "bin", DIRECTORY)
        site.make_site("socket://127.0.0.1:9")
        site.set("prefs", "logoncount", 0)
        console = [BUILD / "bin/veltorkyn", "--settings", site.settings]
        times = {"ours": [], "bare": []}
        for _ in range(PAIRS):
            times["bare"].append(_first_paint(children, [BUILD / "bench/bare_window"]))
            times["ours"].append(_first_paint(children, console))

    def row(name, key, unit):
        return {"row": name, "unit": unit, **{who: statistics.median(one[key] for one in found) for who, found in times.items()}}
    return [row("start to the first painted window", "processor", "ms"),
            row("start to the first painted window, by the clock", "clock", "ms"),
            row("memory at the first painted window", "kilobytes", "kB")]


def _first_paint(children, command):
    file = children.folder / "first-paint.json"
    file.unlink(missing_ok=True)
    begin = time.clock_gettime(time.CLOCK_MONOTONIC) * 1000
    subprocess.run(command, env={**children.environment, "LD_PRELOAD": BUILD / "bench/first_paint.so", "FIRST_PAINT_FILE": file,
                                 "FIRST_PAINT_END": "1"}, check=True, timeout=60, stderr=subprocess.DEVNULL)
    found = json.loads(file.read_text())
    return {**found, "clock": found["moment"] - begin}


def idle(_):
    """Of one core, logged on, with a radio that has nothing to say and is asked whether it is there."""
    with Processes() as children:
        screen = Screen(display(children))
        children.start("openbox", "--sm-disable")
        _until(screen.is_managed)
        scenario = children.folder / "calm.json"
        scenario.write_text('{"base": "busy-day", "events": []}')
        radio = Radio(children, BUILD / "bin/veltorkyn-radio", scenario, 9600)
        site = Console(children, BUILD / "bin", DIRECTORY)
        site.make_site(radio.port)
        site.start({})
        _until(lambda: screen.active().startswith("Log On to"))
        time.sleep(0.5)
        screen.chord("Ctrl+a")
        screen.type(f"{OPERATOR[0]}\t{OPERATOR[1]}\n", 0.02)
        _until(lambda: "link=ready" in radio.tell("state"))
        time.sleep(5)
        before = _processor(site.child.pid)
        time.sleep(IDLE)
        used = _processor(site.child.pid) - before
    return [{"row": "idle, link probed", "ours": 100 * used / IDLE, "unit": "%"}]


def _processor(pid):
    """Seconds, of all threads."""
    return sum(int((task / "schedstat").read_text().split()[0]) for task in Path(f"/proc/{pid}/task").iterdir()) / 1e9


def _until(condition, limit=60):
    deadline = time.monotonic() + limit
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError("the console does not get so far")
        time.sleep(0.1)


def round_trips(_):
    """As the test of the windows counts them, on a server."""
    file = BUILD / "bench-data/waits.json"
    subprocess.run([BUILD / "tests/mainwindow_test", "--gtest_filter=ServerWaits.*", f"--gtest_output=json:{file}"],
                   env={"PATH": "/usr/bin:/bin", "VELTORKYN_TEST_ENGINE": "postgresql", "QT_QPA_PLATFORM": "offscreen"},
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True, timeout=300)
    case = json.loads(file.read_text())["testsuites"][0]["testsuite"][0]
    standard = {"name", "file", "line", "status", "result", "timestamp", "time", "classname", "value_param", "type_param"}
    waits = {name: int(count) for name, count in case.items() if name not in standard}
    changes = {name: count for name, count in waits.items() if name.startswith(("change", "add an entry", "add a status"))}
    others = [count for name, count in waits.items() if name not in changes]
    return [{"row": "round trips, what reads or adds", "ours": max(others), "unit": ""},
            {"row": "round trips, what others may change", "ours": max(changes.values()), "unit": ""}]


def build(_):
    """From nothing and without the compiler's cache, with two children at a time; then the tests."""
    folder = BUILD / "bench-data/from-nothing"
    subprocess.run(["rm", "-rf", folder], check=True)
    begin = time.monotonic()
    for command in (["cmake", "-S", ROOT, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DVELTORKYN_TESTS=OFF"],
                    ["ninja", "-C", folder, "-j2"]):
        subprocess.run(command, env={"PATH": "/usr/bin:/bin", "HOME": "/nonexistent", "CCACHE_DISABLE": "1"}, check=True,
                       stdout=subprocess.DEVNULL)
    built = time.monotonic()
    tests = subprocess.run(["ctest", "--test-dir", BUILD, "-j2"], stdout=subprocess.DEVNULL, check=False)
    rows = [{"row": "build from nothing", "ours": built - begin, "unit": "s"}]
    if tests.returncode == 0:
        rows.append({"row": "./test", "ours": time.monotonic() - built, "unit": "s"})
    subprocess.run(["rm", "-rf", folder], check=True)
    return rows
