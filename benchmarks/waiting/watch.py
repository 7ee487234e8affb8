"""When the call window shows an emergency: its client of the display looks for its caption's colour."""

import threading
import time

from screen import Screen

_ALERT = bytes((0x20, 0x10, 0xB0))  # blue, green, red
_PAUSE = 0.004  # seconds between two looks


class Watch:
    """Looks from a thread of its own while a call is expected."""

    def __init__(self, display):
        self._screen = Screen(display)
        self._window = None  # of calls, once it has been seen
        self._stop = False
        self._thread = None
        self.seen = None  # nanoseconds of CLOCK_MONOTONIC

    def expect(self):
        """An emergency call is about to be sent."""
        self.give_up()
        self.seen, self._stop = None, False
        self._thread = threading.Thread(target=self._look, daemon=True)
        self._thread.start()

    def give_up(self):
        self._stop = True
        if self._thread is not None:
            self._thread.join()
            self._thread = None

    def _look(self):
        while not self._stop:
            try:
                if self._shows():
                    self.seen = time.monotonic_ns()
                    return
            except Exception:  # the window has gone meanwhile
                self._window = None
            time.sleep(_PAUSE)

    def _shows(self):
        if self._window is not None:
            return _is_alert(self._window)
        for window in self._screen.windows():
            if not window.title.startswith("Dispatcher") and _is_alert(window.handle):
                self._window = window.handle
                return True
        return False


def _is_alert(window):
    if window.get_attributes().map_state != 2:  # viewable
        return False
    size = window.get_geometry()
    image = window.get_image(0, 0, size.width, size.height, 2, 0xFFFFFFFF).data
    return 20 * (_ALERT + b"\xff") in image or 20 * (_ALERT + b"\0") in image
