"""The controls of the programs on the private bus, as an aid for the blind is told of them (AT-SPI)."""

import fnmatch

from gi.repository import Gio, GLib

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_ROOT = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
_PROPERTIES = "org.freedesktop.DBus.Properties"
_NAME = GLib.Variant("(ss)", (_ACCESSIBLE, "Name"))
_LABELLED_BY = 2
_LIMIT = 3000  # ms for one answer

ROLES = {
    "button": {"push button", "button", "toggle button", "button menu"},
    "box": {"check box", "radio button", "toggle button"},
    "tab": {"page tab"},
    "line": {"table cell", "cell", "list item", "tree item", "table row"},
    "field": {"text", "combo box", "password text", "spin button", "entry"},
    "item": {"menu item", "check menu item", "radio menu item"},
    "label": {"label", "static"},
    "list": {"tree", "list", "table", "tree table"},
}
_WINDOWS = {"frame", "dialog", "alert", "window", "popup menu"}
# What somebody works with, and so has to have a name. A cell is called by what it holds, which may be nothing.
_WORKED_WITH = set().union(*(roles for kind, roles in ROLES.items() if kind not in ("line", "label"))) | {"slider"}
# Bits of a state set.
_STATES = {"ACTIVE": 1, "CHECKED": 4, "ENABLED": 8, "FOCUSABLE": 11, "FOCUSED": 12, "SELECTED": 23, "SHOWING": 25}


class Control:
    """A control that is shown. Positions are pixels of the screen."""

    def __init__(self, bus, node, facts, parents, path, scale):
        self.role, self.name, self._states, self._value = facts
        self.path = path
        self._bus, self._node, self._parents, self._scale = bus, node, parents, scale

    def has(self, state):
        return bool(self._states >> _STATES[state] & 1)

    @property
    def place(self):
        return self._extents(self._node)

    @property
    def middle(self):
        x, y, width, height = self.place
        return x + width // 2, y + height // 2

    def name_now(self):
        """Its name asked anew; the control has to be there still."""
        return self._bus.ask(self._node, _PROPERTIES, "Get", _NAME)[0]

    @property
    def text(self):
        """What a field holds; the name of anything else."""
        if self._value is not None:
            return self._value
        if self.role in ROLES["field"]:
            try:
                return self._bus.ask(self._node, "org.a11y.atspi.Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]
            except GLib.Error:
                pass
        return self.name

    @property
    def description(self):
        return self._bus.ask(self._node, "org.freedesktop.DBus.Properties", "Get",
                             GLib.Variant("(ss)", ("org.a11y.atspi.Accessible", "Description")))[0]

    @property
    def fault(self):
        """Why somebody who does not see it cannot tell what it is; nothing when he can."""
        if not self.path:
            return "" if self.role in _WINDOWS and self.name else f"window {self.name!r} is a {self.role!r}"
        if self.role in _WORKED_WITH and (not _plain(self.name) or self.name == self._value):
            return f"a {self.role} without a name"
        if self.has("FOCUSABLE") and self.role in ("unknown", "filler", "panel"):
            return f"{self.name!r} takes the keyboard and is a {self.role!r}"
        return ""

    def answers_to(self, role, pattern):
        names = {_plain(self.name), self.name}
        return (role is None or self.role in ROLES[role]) and any(fnmatch.fnmatchcase(n, pattern) for n in names)

    def lies_in(self, place):
        """Whether its window has this place."""
        window = self._parents[0] if self._parents else self._node
        return all(abs(a - b) <= self._scale for a, b in zip(self._extents(window), place))

    def is_within_its_panes(self):
        """Whether its middle is inside everything that it lies in, not scrolled out of it."""
        x, y = self.middle
        for outer in self._parents:
            left, top, width, height = self._extents(outer)
            if width > 0 and not (left <= x < left + width and top <= y < top + height):
                return False
        return True

    def _extents(self, node):
        box = self._bus.ask(node, "org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))[0]
        return tuple(round(value * self._scale) for value in box)


class _Bus:
    """The accessibility bus. Questions may be asked many at a time; a node is (bus name, object path)."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                    Gio.DBusCallFlags.NONE, _LIMIT, None).unpack()[0]
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def ask(self, node, interface, method, arguments=None):
        return self._connection.call_sync(node[0], node[1], interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                          _LIMIT, None).unpack()

    def ask_all(self, questions):
        """The answers in order, None where there was none."""
        answers = [None] * len(questions)
        open_ones = len(questions)

        def answered(connection, result, index):
            nonlocal open_ones
            open_ones -= 1
            try:
                answers[index] = connection.call_finish(result).unpack()
            except GLib.Error:
                pass
        for index, (node, interface, method, arguments) in enumerate(questions):
            self._connection.call(node[0], node[1], interface, method, arguments, None, Gio.DBusCallFlags.NONE, _LIMIT,
                                  None, answered, index)
        while open_ones:
            GLib.MainContext.default().iteration(True)
        return answers


class Controls:
    """All that is shown, asked anew each time. Programs tell places before they are scaled."""

    def __init__(self, scale):
        self._scale = scale
        self._bus = _Bus()

    def all(self):
        """Controls that are shown, in the order of the windows and their parts; what goes away meanwhile is left out."""
        programs = self._children([_ROOT])[0]
        windows = [window for children in self._children(programs) for window in children]
        # From level to level, so that a whole level is one exchange.
        known = {}
        level = [(window, (), ()) for window in windows]
        while level:
            facts = self._facts([node for node, _, _ in level])
            opened = []
            for (node, parents, path), fact in zip(level, facts):
                if fact is None:
                    continue
                role, name, states, _ = fact
                shown = bool(states >> _STATES["SHOWING"] & 1)
                known[node] = Control(self._bus, node, fact, parents, path, self._scale) if shown else None
                if shown or role == "popup menu" or not parents:
                    opened.append((node, parents + (node,) if shown else parents, path + (name,) if name else path))
            below = self._children([node for node, _, _ in opened])
            for (node, parents, path), children in zip(opened, below):
                known[node] = (known[node], children)
            level = [(child, parents, path) for (_, parents, path), children in zip(opened, below) for child in children]
        found = []
        for window in windows:
            _flatten(window, known, found)
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

    def _children(self, nodes):
        answers = self._bus.ask_all([(node, _ACCESSIBLE, "GetChildren", None) for node in nodes])
        return [[tuple(child) for child in answer[0]] if answer else [] for answer in answers]

    def _facts(self, nodes):
        """(role, name, states, value) of each, None for what is gone; the value is that of a box with a list."""
        questions = []
        for node in nodes:
            questions += [(node, _ACCESSIBLE, "GetRoleName", None), (node, _ACCESSIBLE, "GetState", None),
                          (node, _PROPERTIES, "Get", _NAME)]
        answers = self._bus.ask_all(questions)
        facts = [(role[0], text[0] or "", states[0][0] | states[0][1] << 32, None) if role and states and text else None
                 for role, states, text in zip(answers[0::3], answers[1::3], answers[2::3])]
        boxes = [index for index, fact in enumerate(facts) if fact and fact[0] == "combo box"]
        for index, label in zip(boxes, self._labels([nodes[index] for index in boxes])):
            role, value, states, _ = facts[index]
            facts[index] = (role, label or value, states, "" if value == label else value)
        return facts

    def _labels(self, nodes):
        """The texts of the labels that stand for these; a box with a list is named after what is chosen in it."""
        labels = []
        for answer in self._bus.ask_all([(node, _ACCESSIBLE, "GetRelationSet", None) for node in nodes]):
            targets = [targets[0] for kind, targets in (answer[0] if answer else []) if kind == _LABELLED_BY and targets]
            name = self._bus.ask_all([(tuple(targets[0]), _PROPERTIES, "Get", _NAME)])[0] if targets else None
            labels.append(name[0] if name else "")
        return labels


def _flatten(node, known, found):
    entry = known.get(node)
    control, children = entry if isinstance(entry, tuple) else (entry, [])
    if control is not None:
        found.append(control)
    for child in children:
        _flatten(child, known, found)


def _plain(name):
    return name.replace("&", "").strip().rstrip(":").rstrip()


def _inside(path, outer):
    names = iter(path)
    return all(any(fnmatch.fnmatchcase(_plain(name), pattern) for name in names) for pattern in outer)
