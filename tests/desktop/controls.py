"""The controls of the programs on the private bus, as an aid for the blind is told of them."""

import fnmatch

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

ROLES = {
    "button": {"push button", "toggle button", "button menu"},
    "box": {"check box", "radio button", "toggle button"},
    "tab": {"page tab"},
    "line": {"table cell", "list item", "tree item", "table row"},
    "field": {"text", "combo box", "password text", "spin button", "entry"},
    "item": {"menu item", "check menu item", "radio menu item"},
    "label": {"label", "static"},
    "list": {"tree", "list", "table", "tree table"},
}
_WINDOWS = {"frame", "dialog", "alert", "window", "popup menu"}


class Control:
    """A control that is shown. Positions are pixels of the screen."""

    def __init__(self, handle, role, name, states, window, path):
        self.handle, self.role, self.name, self.window, self.path = handle, role, name, window, path
        self._states = states

    def has(self, state):
        return self._states.contains(getattr(Atspi.StateType, state))

    @property
    def extents(self):
        box = self.handle.get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    @property
    def middle(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2

    @property
    def text(self):
        """What a text field holds; the name of anything else."""
        try:
            interface = self.handle.get_text_iface()
            if interface is not None:
                return Atspi.Text.get_text(interface, 0, -1)
        except GLib.Error:
            pass
        return self.name

    def answers_to(self, role, pattern):
        names = {_plain(self.name), self.name}
        return (role is None or self.role in ROLES[role]) and any(fnmatch.fnmatchcase(n, pattern) for n in names)


def _plain(name):
    return name.replace("&", "").strip().rstrip(":").rstrip()


class Controls:
    """All that is shown, asked anew each time."""

    def __init__(self):
        Atspi.init()
        Atspi.set_timeout(3000, 3000)
        self._desktop = Atspi.get_desktop(0)
        self._desktop.set_cache_mask(Atspi.Cache.NONE)

    def all(self):
        """Controls that are shown, windows first; what goes away meanwhile is left out."""
        found = []
        for program in self._children(self._desktop):
            for window in self._children(program):
                self._collect(window, None, [], found)
        return found

    def find(self, role, path):
        """Those that answer to the last name of "outer > inner" and lie inside the outer ones, in this order."""
        *outer, name = [part.strip() for part in path.split(" > ")]
        return [control for control in self.all()
                if control.answers_to(role, name) and _inside(control.path, outer)]

    def describe(self):
        """An excerpt for people: what has a name or a text, indented by depth."""
        lines = []
        for control in self.all():
            text = control.text
            if (text or control.name) and control.role not in ("table column header", "separator"):
                marks = "".join(f" [{s.lower()}]" for s in ("FOCUSED", "SELECTED", "CHECKED") if control.has(s))
                holds = "" if text == control.name else f" holds {text[:90]!r}"
                shut = "" if control.has("ENABLED") else " [disabled]"
                lines.append("  " + "  " * len(control.path) + f"{control.role} {control.name[:90]!r}{holds}{marks}{shut}")
        return "\n".join(lines[:160]) or "  nothing"

    def _children(self, handle):
        try:
            children = [handle.get_child_at_index(i) for i in range(handle.get_child_count())]
        except GLib.Error:
            return []
        return [child for child in children if child is not None]

    def _collect(self, handle, window, path, found):
        try:
            states = handle.get_state_set()
            role = handle.get_role_name()
            name = handle.get_name() or ""
        except GLib.Error:
            return
        showing = states.contains(Atspi.StateType.SHOWING)
        if not showing and role not in _WINDOWS:
            return
        if showing:
            found.append(Control(handle, role, name, states, window or handle, path))
        elif role != "popup menu" and window is not None:
            return
        below = path + [name] if name else path
        for child in self._children(handle):
            self._collect(child, window or handle, below, found)


def _inside(path, outer):
    names = iter(path)
    return all(any(fnmatch.fnmatchcase(_plain(name), pattern) for name in names) for pattern in outer)
