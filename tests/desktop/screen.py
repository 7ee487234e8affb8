"""The screen as a person sees it: windows in their order, states and places; pointer and keyboard."""

import fnmatch
import time
from collections import namedtuple

import Xlib.protocol.display
from Xlib import X, XK, Xutil, display, error, protocol
from Xlib.ext import xtest

import pictures

Window = namedtuple("Window", "handle title states place frame desktop urgent minimised")
Place = namedtuple("Place", "x y width height")

_KEYS = {
    "enter": "Return", "esc": "Escape", "space": "space", "tab": "Tab", "shift": "Shift_L", "ctrl": "Control_L",
    "alt": "Alt_L", "super": "Super_L", "backspace": "BackSpace", "delete": "Delete", "insert": "Insert",
    "up": "Up", "down": "Down", "left": "Left", "right": "Right", "home": "Home", "end": "End", "pageup": "Page_Up",
    "pagedown": "Page_Down", "menu": "Menu",
}
_SIGNS = {"\n": "Return", "\t": "Tab", " ": "space"}


def _open(name):
    # python3-xlib keeps the extensions' events in one table for all displays and stumbles over the second.
    protocol.display.Display.event_classes = protocol.event.event_class.copy()
    return display.Display(name)


class Screen:
    """One X display. Windows are told by their titles, in which * and ? are wildcards. Pointer and keys may have a display of
    their own: that in which a whole session runs as a window."""

    def __init__(self, name, hand=None):
        self._display = _open(name)
        self._hand = _open(hand) if hand else self._display
        self._pause = 0.3 if hand else 0.03  # a session that paints itself shows a window some time after it is there
        self._root = self._display.screen().root
        self.clicks = 0  # of buttons and of keys that were pressed; keys that go together are one
        self.keys = 0

    # What is seen

    def is_managed(self):
        return bool(self._values(self._root, "_NET_SUPPORTING_WM_CHECK"))

    def windows(self):
        """The managed windows, lowest first."""
        found = []
        for number in self._values(self._root, "_NET_CLIENT_LIST_STACKING"):
            try:
                found.append(self._describe(self._display.create_resource_object("window", number)))
            except (error.BadWindow, error.BadDrawable, TypeError):
                continue
        return found

    def find(self, title):
        """The topmost window of this title, or nothing."""
        return next((w for w in reversed(self.windows()) if fnmatch.fnmatchcase(w.title, title)), None)

    def active(self):
        """The title of the active window, empty when none is."""
        numbers = self._values(self._root, "_NET_ACTIVE_WINDOW")
        if not numbers or not numbers[0]:
            return ""
        try:
            return self._title(self._display.create_resource_object("window", numbers[0]))
        except error.BadWindow:
            return ""

    def is_in_front(self, window):
        """Whether it is seen and nothing that overlaps it lies above it."""
        if window.minimised or "HIDDEN" in window.states:
            return False
        order = [w for w in self.windows() if not w.minimised]
        handles = [w.handle for w in order]
        if window.handle not in handles:
            return False
        return not any(_overlap(w.frame, window.frame) for w in order[handles.index(window.handle) + 1:])

    def is_on_screen(self, window):
        """Whether the whole frame lies on the screen and on the desktop that is shown."""
        frame = window.frame
        size = self._hand.screen().root.get_geometry()
        shown = self._values(self._root, "_NET_CURRENT_DESKTOP")
        return (frame.x >= 0 and frame.y >= 0 and frame.x + frame.width <= size.width
                and frame.y + frame.height <= size.height
                and (not shown or window.desktop in (0xFFFFFFFF, None, shown[0])))

    def window_at(self, x, y):
        """What a click there would hit: (title or None for a popup, place of that window)."""
        child = self._root
        while True:
            below = self._display.screen().root.translate_coords(child, 0, 0)
            offset = child.translate_coords(self._root, x, y)
            if child.get_full_property(self._atom("WM_STATE"), X.AnyPropertyType):
                return self._title(child), self._place(child)
            if child != self._root and child.get_attributes().override_redirect and self._is_popup(child):
                return None, self._place(child)
            next_child = offset.child
            if not next_child or next_child == X.NONE:
                return "", Place(below.x, below.y, 0, 0)
            child = next_child

    def describe(self):
        """All windows from the topmost to the lowest, a line each."""
        active = self.active()
        lines = []
        for window in reversed(self.windows()):
            marks = sorted(window.states) + ["minimised"] * window.minimised + ["urgent"] * window.urgent
            marks += ["active"] * (window.title == active)
            place = "{}x{}+{}+{}".format(window.place.width, window.place.height, window.place.x, window.place.y)
            lines.append(f"  {window.title!r} {place} {' '.join(marks)}")
        return "\n".join(lines) or "  no windows"

    def pixels(self, x, y, width, height):
        return self._hand.screen().root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data

    def picture(self, path):
        pictures.save(self._hand.screen().root, path)

    # What is done to windows

    def ask(self, window, message, *data):
        """A request to the window manager, as a taskbar sends it."""
        values = (list(data) + [0] * 5)[:5]
        event = protocol.event.ClientMessage(window=window.handle, client_type=self._atom(message), data=(32, values))
        self._root.send_event(event, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()

    def minimise(self, window):
        self.ask(window, "WM_CHANGE_STATE", Xutil.IconicState)

    def activate(self, window):
        self.ask(window, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime)

    def close(self, window):
        self.ask(window, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)

    def maximise(self, window, on=True):
        self.ask(window, "_NET_WM_STATE", int(on), self._atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
                 self._atom("_NET_WM_STATE_MAXIMIZED_VERT"), 2)

    def send_to_desktop(self, window, number):
        self.ask(window, "_NET_WM_DESKTOP", number, 2)

    def show_desktop(self, number):
        self.ask(Window(self._root, "", set(), None, None, 0, False, False), "_NET_CURRENT_DESKTOP", number)

    def place(self, window, x=None, y=None, width=None, height=None):
        """Moves the frame's corner, or gives the window a size inside its frame."""
        flags = 2 << 12
        for bit, value in enumerate((x, y, width, height)):
            flags |= (value is not None) << (8 + bit)
        self.ask(window, "_NET_MOVERESIZE_WINDOW", flags | X.NorthWestGravity, x or 0, y or 0, width or 0, height or 0)

    # Pointer and keys

    def click(self, x, y, button=1, times=1):
        xtest.fake_input(self._hand, X.MotionNotify, x=x, y=y)
        self._hand.sync()
        time.sleep(self._pause)
        for _ in range(times):
            self.press_button(button)
            time.sleep(0.03)

    def press_button(self, button=1):
        """Where the pointer is."""
        self.clicks += 1
        xtest.fake_input(self._hand, X.ButtonPress, button)
        xtest.fake_input(self._hand, X.ButtonRelease, button)
        self._hand.sync()

    def drag(self, start, end):
        xtest.fake_input(self._hand, X.MotionNotify, x=start[0], y=start[1])
        xtest.fake_input(self._hand, X.ButtonPress, 1)
        self._hand.sync()
        for step in range(1, 11):
            time.sleep(0.02)
            x, y = (start[i] + (end[i] - start[i]) * step // 10 for i in (0, 1))
            xtest.fake_input(self._hand, X.MotionNotify, x=x, y=y)
            self._hand.sync()
        time.sleep(0.05)
        xtest.fake_input(self._hand, X.ButtonRelease, 1)
        self._hand.sync()

    def key(self, name, down):
        """One key goes down or up; name is a letter, a sign, or as on the keyboard: Enter, Ctrl, F5."""
        self._fake(self._code(name), down)

    def chord(self, text):
        """Presses and releases keys as in Ctrl+Shift+Tab."""
        names = text.split("+") if text != "+" else ["+"]
        self.keys += 1
        for name in names:
            self.key(name, True)
            time.sleep(0.01)
        for name in reversed(names):
            self.key(name, False)

    def type(self, text, pause):
        """Types the text with so many seconds between the keys."""
        shift = self._code("shift")
        for sign in text:
            symbol = XK.string_to_keysym(_SIGNS.get(sign, sign)) or ord(sign)
            codes = sorted(self._hand.keysym_to_keycodes(symbol), key=lambda pair: pair[1])
            if not codes or codes[0][1] > 1:
                raise ValueError(f"no key of the keyboard gives {sign!r}")
            code, level = codes[0]
            self.keys += 1
            if level:
                self._fake(shift, True)
            self._fake(code, True)
            self._fake(code, False)
            if level:
                self._fake(shift, False)
            time.sleep(pause)

    def release_all(self):
        """No key and no button stays down."""
        for octet, bits in enumerate(self._hand.query_keymap()):
            for bit in range(8):
                if bits & (1 << bit):
                    self._fake(8 * octet + bit, False)
        for button in (1, 2, 3):
            xtest.fake_input(self._hand, X.ButtonRelease, button)
        self._hand.sync()

    def _fake(self, code, down):
        xtest.fake_input(self._hand, X.KeyPress if down else X.KeyRelease, code)
        self._hand.sync()

    def _code(self, name):
        symbol = XK.string_to_keysym(_KEYS.get(name.lower(), name))
        if not symbol and len(name) == 1:
            symbol = ord(name)
        code = self._hand.keysym_to_keycode(symbol)
        if not code:
            raise ValueError(f"the keyboard has no key {name!r}")
        return code

    # Properties

    def _atom(self, name):
        return self._display.intern_atom(name)

    def _values(self, window, name):
        found = window.get_full_property(self._atom(name), X.AnyPropertyType)
        return list(found.value) if found else []

    def _title(self, window):
        found = window.get_full_property(self._atom("_NET_WM_NAME"), X.AnyPropertyType)
        if found:
            return found.value.decode("utf-8", "replace") if isinstance(found.value, bytes) else str(found.value)
        return window.get_wm_name() or ""

    def _place(self, window):
        size = window.get_geometry()
        corner = window.translate_coords(self._root, 0, 0)
        return Place(-corner.x, -corner.y, size.width, size.height)

    def _is_popup(self, window):
        return bool(self._values(window, "_NET_WM_WINDOW_TYPE"))

    def _describe(self, window):
        prefix = "_NET_WM_STATE_"
        states = {self._display.get_atom_name(atom).removeprefix(prefix)
                  for atom in self._values(window, "_NET_WM_STATE")}
        place = self._place(window)
        left, right, top, bottom = (self._values(window, "_NET_FRAME_EXTENTS") or [0, 0, 0, 0])[:4]
        frame = Place(place.x - left, place.y - top, place.width + left + right, place.height + top + bottom)
        hints = window.get_wm_hints()
        urgent = "DEMANDS_ATTENTION" in states or bool(hints and hints.flags & Xutil.UrgencyHint)
        state = self._values(window, "WM_STATE")
        desktop = self._values(window, "_NET_WM_DESKTOP")
        return Window(window, self._title(window), states, place, frame, desktop[0] if desktop else None, urgent,
                      bool(state) and state[0] == Xutil.IconicState)


def _overlap(a, b):
    return a.x < b.x + b.width and b.x < a.x + a.width and a.y < b.y + b.height and b.y < a.y + a.height
