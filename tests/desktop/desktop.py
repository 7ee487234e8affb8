"""One desktop: display, window manager, accessibility bus, and the programs on it."""

import os
import re
import signal
import sys
import time
from pathlib import Path

from console import Console
from processes import Processes, Trouble  # noqa: F401
from screen import Screen

_BUS_LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")
_QUIET = 0.3     # seconds without a change after which a desktop has settled
_MANAGERS = {"openbox": ("openbox", "--sm-disable"), "xfwm4": ("xfwm4", "--compositor=off"),
             "mutter": ("mutter", "--x11", "--sm-disable"), "kwin": ("kwin_x11",), "metacity": ("metacity", "--no-composite")}


class Desktop:
    """Use as a context: everything that it starts has ended when it is left."""

    def __init__(self, arguments, size):
        self._arguments = arguments
        self._size = "{}x{}x24".format(*size)
        self.folder = Path(__file__).resolve().parent
        self.programs = arguments.programs
        self.output = arguments.output
        self.python = sys.executable
        self._usual_environment = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_ACCESSIBILITY": "1"}

    def __enter__(self):
        self.processes = Processes()
        try:
            self._open()
        except BaseException:
            self.processes.__exit__()
            raise
        return self

    def __exit__(self, *_):
        signal.alarm(0)
        self.processes.__exit__()

    def _open(self):
        _, number = self.processes.start_announced("Xvfb", "-displayfd", "{fd}", "-screen", "0", self._size, "-nolisten", "tcp",
                                                   "-noreset")
        self._display = f":{number}"
        self.processes.environment["DISPLAY"] = self._display
        _, address = self.processes.start_announced("dbus-daemon", "--session", "--nofork", "--nopidfile",
                                                    "--print-address={fd}")
        self.processes.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        launcher = next((path for path in _BUS_LAUNCHERS if os.path.exists(path)), None)
        if launcher is None:
            raise Trouble("at-spi2-core is not installed")
        self.processes.start(launcher, "--launch-immediately")
        # What is asked of the accessibility bus here has to find the private one, not that of whoever runs the test.
        os.environ.update({key: value for key, value in self.processes.environment.items() if key != "TMPDIR"})
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)
        if self._arguments.window_manager == "wayland":
            self._open_wayland()
        else:
            self.screen = Screen(self._display)
            self.processes.start(*_MANAGERS[self._arguments.window_manager])
        self._wait_for_manager()
        self._reset()

    def _open_wayland(self):
        """A Wayland session in a window that fills the display; the console comes to it through its X server."""
        self.processes.environment["MUTTER_DEBUG_DUMMY_MODE_SPECS"] = self._size.rsplit("x", 1)[0]
        self.processes.start("mutter", "--wayland", "--nested", "--sm-disable", log="session.log")
        deadline = time.monotonic() + 20
        names = None
        while names is None:
            if time.monotonic() > deadline:
                raise Trouble("mutter does not open a Wayland session")
            time.sleep(0.1)
            log = (self.processes.folder / "session.log").read_text()
            names = re.search(r"X11 display (:\d+).*Wayland display name '([^']+)'", log, re.S)
        authority = next(Path(self.processes.environment["XDG_RUNTIME_DIR"]).glob(".mutter-Xwaylandauth.*"))
        session = {"DISPLAY": names[1], "WAYLAND_DISPLAY": names[2], "XAUTHORITY": str(authority),
                   "XDG_SESSION_TYPE": "wayland"}
        self.processes.environment.update(session)
        os.environ.update(session)
        self.screen = Screen(names[1], hand=self._display)

    def _reset(self):
        self.console = Console(self.processes, self.programs,
                               self.folder.parents[1] / "src/resources/demonstration/directory.json")
        self.environment = dict(self._usual_environment)
        self._controls = None
        self.radio = None
        self.console_may_end = False
        self.terminals, self.places, self._burners = {}, {}, []
        self.limit = 5

    def _wait_for_manager(self):
        deadline = time.monotonic() + 20
        while not self.screen.is_managed():
            if time.monotonic() > deadline:
                raise Trouble(f"{self._arguments.window_manager} does not manage the display")
            time.sleep(0.05)

    @property
    def controls(self):
        if self._controls is None:
            from controls import Controls  # not before the bus is there
            self._controls = Controls(float(self.environment.get("QT_SCALE_FACTOR", 1)))
        return self._controls

    def between_tests(self):
        """No key down, nothing counted from before."""
        self.screen.release_all()
        self.burn(0)
        if self.radio is not None:
            self.radio.mark()

    def start_anew(self):
        """After a failure: other programs end, and the next test starts its own on a new site."""
        self.screen.release_all()
        self.burn(0)
        self.processes.end_clients()
        self._reset()

    def burn(self, count):
        """So many processes that do nothing but use up a processor."""
        for child in self._burners:
            child.kill()
            child.wait()
        self._burners = [self.processes.start(self.python, "-c", "while True: pass") for _ in range(count)]

    def settle(self):
        """Waits until the windows stay as they are, four seconds at most."""
        deadline = time.monotonic() + 4
        since, before = time.monotonic(), None
        while time.monotonic() < deadline and time.monotonic() - since < _QUIET:
            now = self.screen.describe()
            if now != before:
                since, before = time.monotonic(), now
            time.sleep(0.03)

    def showing(self, text):
        """Controls that show the text, as a name or as what they hold."""
        return [c for c in self.controls.all() if text in c.name or text in c.text]

    def cover(self, control):
        """What lies over the middle of the control; nothing when the pointer reaches it there."""
        try:
            title, place = self.screen.window_at(*control.middle)
            if title is None:
                return "" if control.role.endswith("item") else "a popup"
            if not control.lies_in(place):
                return f"{title!r} {tuple(place)}"
            return "" if control.is_within_its_panes() else "the edge of its pane"
        except Exception as failure:  # it is gone by now
            return str(failure)

    def topmost(self, controls):
        """The one whose window is highest."""
        places = [w.place for w in self.screen.windows()]
        return max(controls, key=lambda c: max((i for i, p in enumerate(places) if c.lies_in(p)), default=-1))

    def describe(self, picture):
        """What there is to see, for whoever reads why a test failed; the picture is stored."""
        try:
            self.screen.picture(picture)
            return (f"windows, topmost first:\n{self.screen.describe()}\ncontrols:\n{self.controls.describe()}\n"
                    f"screenshot: {picture}")
        except Exception as failure:
            return f"(nothing to be seen: {failure})"
