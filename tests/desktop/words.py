"""The words of the steps. A word is a function below a template: small letters stand as they are, TEXT and the like take a
quoted text, NUMBER a number, KEY and NAME one word, CONTROL a quoted name with or without its kind before it, and REST all
that follows. An alternative stands in brackets and is left out or there. A word that looks polls until its limit."""

import re
import time

import console as consoles
from controls import ROLES
from steps import Mistake
from wire import NAMES, Radio

_WORDS = []
_PATIENCE = 0.05
_TYPING = 0.02   # seconds between the keys of somebody who types fast


class Failure(Exception):
    """A step that did not hold: what was expected, what was seen."""


def word(template):
    def keep(function):
        _WORDS.append((template.split(), template, function))
        return function
    return keep


def templates():
    return [template for _, template, _ in _WORDS]


def run(bench, step):
    """Carries out one step. Raises Failure, or Mistake for a line that no word fits."""
    for parts, _, function in _WORDS:
        arguments = _match(parts, step.tokens)
        if arguments is not None:
            bench.limit = step.limit
            function(bench, *arguments)
            return
    raise Mistake(f"no such word: {step.text}")


def check(step):
    if all(_match(parts, step.tokens) is None for parts, _, _ in _WORDS):
        raise Mistake(f"no such word: {step.text}")


def _match(parts, tokens):
    arguments = []
    rest = list(tokens)
    for part in parts:
        if part == "REST":
            arguments.append(" ".join(f'"{t.text}"' if t.quoted else t.text for t in rest))
            return arguments if rest else None
        if not rest:
            return None
        token = rest.pop(0)
        if part == "CONTROL":
            role = None
            if not token.quoted and token.text in ROLES and rest:
                role, token = token.text, rest.pop(0)
            if not token.quoted:
                return None
            arguments.append((role, token.text))
        elif part in ("NUMBER", "KEY", "NAME"):
            if token.quoted or (part == "NUMBER" and not re.fullmatch(r"-?\d+(\.\d+)?", token.text)):
                return None
            arguments.append(float(token.text) if part == "NUMBER" else token.text)
        elif part.isupper():
            if not token.quoted:
                return None
            arguments.append(token.text)
        elif token.quoted or token.text != part:
            return None
    return None if rest else arguments


# What words have in common

def _until(bench, expected, look):
    """Polls until look hands back nothing, which is well; else it says what it saw."""
    deadline = time.monotonic() + bench.limit
    while True:
        seen = look()
        if seen is None:
            return
        if bench.console.child is not None and bench.console.child.poll() is not None and not bench.console_may_end:
            raise Failure(f"the console ended with code {bench.console.child.returncode}")
        if time.monotonic() > deadline:
            raise Failure(f"expected: {expected}\nseen: {seen}")
        time.sleep(_PATIENCE)


def _reach(bench, control):
    """The middle of the one control that answers and can be hit by the pointer."""
    role, path = control
    found = []

    def look():
        candidates = bench.controls.find(role, path)
        covered = [c for c in candidates if bench.cover(c)]
        found[:] = [c for c in candidates if c not in covered]
        if found:
            return None
        return f"covered by {bench.cover(covered[0])}" if covered else "it is not shown"
    _until(bench, f"{role or 'control'} \"{path}\" that the pointer can reach", look)
    return bench.topmost(found)


def _window(bench, title):
    found = []

    def look():
        found[:] = [bench.screen.find(title)]
        return None if found[0] else f"no window \"{title}\""
    _until(bench, f"window \"{title}\"", look)
    return found[0]


def _expect_window(bench, title, expected, holds):
    def look():
        window = bench.screen.find(title)
        if window is None:
            return f"no window \"{title}\""
        return None if holds(window) else f"it is not {expected}: frame {tuple(window.frame)}, desktop {window.desktop}"
    _until(bench, f"window \"{title}\" {expected}", look)


def _point(bench, control, button=1, times=1):
    bench.screen.click(*_reach(bench, control).middle, button, times)


# Programs

@word("start radio")
def start_radio(bench, scenario="tour"):
    bench.radio = Radio(bench.processes, bench.programs / "veltorkyn-radio", scenario)
    if not bench.console.database.exists():
        bench.console.make_site(bench.radio.port)


word("start radio NAME")(start_radio)


@word("start console")
def start_console(bench):
    bench.console_may_end = False
    bench.console.start(bench.environment)


@word("start console logged on")
def start_console_logged_on(bench, user=consoles.OPERATOR[0]):
    bench.limit = max(bench.limit, 20)
    start_console(bench)
    log_on(bench, user)


word("start console logged on as NAME")(start_console_logged_on)


@word("log on as NAME")
def log_on(bench, user):
    """Through the logon dialog, by keys."""
    password = dict((consoles.ADMINISTRATOR, consoles.OPERATOR))[user]
    _expect_window(bench, "Log On to*", "active", lambda w: w.title == bench.screen.active())
    _point(bench, ("field", "User*"))
    bench.screen.chord("Ctrl+a")
    bench.screen.type(f"{user}\t{password}\n", _TYPING)
    _until(bench, "no logon dialog any more",
           lambda: "it is still there" if bench.screen.find("Log On to*") else None)
    _expect_window(bench, "Dispatcher*", "active", lambda w: w.title == bench.screen.active())
    _until(bench, "the radio's link", lambda: None if "link=ready" in bench.radio.tell("state") else "it is down")


@word("start terminal TEXT")
def start_terminal(bench, title):
    path = bench.processes.folder / f"{title}.typed"
    bench.terminals[title] = path
    path.touch()
    bench.processes.start_client(bench.python, bench.folder / "terminal.py", title, path)
    _window(bench, title)


@word("terminal TITLE holds TEXT")
def terminal_holds(bench, title, text):
    path = bench.terminals[title]
    _until(bench, f"terminal \"{title}\" holds {text!r}",
           lambda: None if path.read_text() == text else f"{path.read_text()!r}")


@word("setting NAME NAME is TEXT")
def change_setting(bench, section, key, value):
    bench.console.set(section, key, value)


@word("setting NAME NAME holds TEXT")
def setting_holds(bench, section, key, value):
    _until(bench, f"[{section}] {key}={value}",
           lambda: None if bench.console.setting(section, key) == value else bench.console.setting(section, key))


@word("environment NAME is TEXT")
def environment(bench, name, value):
    bench.environment[name] = value


@word("send console NAME")
def signal_console(bench, name):
    import signal
    bench.console_may_end = True
    bench.console.child.send_signal(signal.Signals[name])


@word("console may end")
def console_may_end(bench):
    bench.console_may_end = True


@word("console ends with code NUMBER")
def console_ends(bench, code):
    bench.console_may_end = True
    _until(bench, f"the console ends with code {int(code)}",
           lambda: None if bench.console.child.poll() == int(code)
           else "it runs" if bench.console.child.poll() is None else f"code {bench.console.child.poll()}")


@word("both cores busy")
def cores_busy(bench):
    bench.burn(2)


@word("cores idle")
def cores_idle(bench):
    bench.burn(0)


# Radio, wire and database

@word("radio: REST")
def tell_radio(bench, command):
    answer = bench.radio.tell(command.replace('"', ""))
    if not answer.startswith("ok"):
        raise Failure(f"the radio answered: {answer}")


@word("radio state TEXT")
def radio_state(bench, part):
    def look():
        state = bench.radio.tell("state")
        return None if part in state.split() else state
    _until(bench, f"the radio's state with {part}", look)


@word("mark wire")
def mark_wire(bench):
    bench.radio.mark()


@word("wait for frame TEXT")
def wait_for_frame(bench, what):
    _until(bench, f"a frame {what}: {NAMES.get(what, what)}",
           lambda: None if bench.radio.sent(what) else f"since the mark {bench.radio.sent('any')}")


@word("sent NUMBER frames TEXT")
def frames_sent(bench, count, what):
    _until(bench, f"{int(count)} frames {what}: {NAMES.get(what, what)}",
           lambda: None if len(bench.radio.sent(what)) == count
           else f"{len(bench.radio.sent(what))}; since the mark {bench.radio.sent('any')[:60]}")


@word("query TEXT gives RESULT")
def query_gives(bench, sql, expected):
    def look():
        rows = "; ".join(", ".join("" if v is None else str(v) for v in row) for row in bench.console.query(sql))
        return None if rows == expected else repr(rows)
    _until(bench, repr(expected), look)


@word("another console runs TEXT")
def another_console_runs(bench, sql):
    bench.console.change(sql)


@word("database is NAME")
def lock_database(bench, state):
    """Locked: by another program, so that nothing can be read or written; free again."""
    if state not in ("locked", "free"):
        raise Mistake(f"no such state: {state}")
    bench.console.lock(state == "locked")


# Pointer and keys

@word("click CONTROL")
def click(bench, control):
    _point(bench, control)


@word("click window TITLE")
def click_window(bench, title):
    """On its title bar."""
    frame, place = _window(bench, title).frame, _window(bench, title).place
    bench.screen.click(frame.x + frame.width // 2, (frame.y + place.y) // 2)


@word("right click CONTROL")
def right_click(bench, control):
    _point(bench, control, button=3)


@word("double click CONTROL")
def double_click(bench, control):
    _point(bench, control, times=2)


@word("point at CONTROL")
def point_at(bench, control):
    bench.screen.click(*_reach(bench, control).middle, times=0)


@word("drag CONTROL to CONTROL")
def drag(bench, start, end):
    bench.screen.drag(_reach(bench, start).middle, _reach(bench, end).middle)


@word("wheel NUMBER over CONTROL")
def wheel(bench, notches, control):
    """Down; up with a number below zero."""
    bench.screen.click(*_reach(bench, control).middle, button=5 if notches > 0 else 4, times=abs(int(notches)))


@word("menu TEXT")
def menu(bench, path):
    for name in path.split(" > "):
        _point(bench, ("item", name))


@word("press KEY")
def press(bench, keys):
    bench.screen.chord(keys)


@word("press KEY NUMBER times")
def press_often(bench, keys, count):
    for _ in range(int(count)):
        bench.screen.chord(keys)
        time.sleep(_TYPING)


@word("key KEY down")
def key_down(bench, key):
    bench.screen.key(key, True)


@word("key KEY up")
def key_up(bench, key):
    bench.screen.key(key, False)


@word("count input")
def count_input(bench):
    bench.counted_from = (bench.screen.clicks, bench.screen.keys)


@word("input was NUMBER clicks, NUMBER keys")
def input_was(bench, clicks, keys):
    """Since it was counted last; a double click is two."""
    seen = (bench.screen.clicks - bench.counted_from[0], bench.screen.keys - bench.counted_from[1])
    if seen != (clicks, keys):
        raise Failure(f"expected: {int(clicks)} clicks, {int(keys)} keys\nseen: {seen[0]} clicks, {seen[1]} keys")


@word("hold KEY NUMBER s")
def hold(bench, key, seconds):
    bench.screen.keys += 1
    bench.screen.key(key, True)
    time.sleep(seconds)
    bench.screen.key(key, False)


@word("type TEXT")
def type_text(bench, text):
    bench.screen.type(text, _TYPING)


@word("type TEXT slowly")
def type_slowly(bench, text):
    bench.screen.type(text, 0.1)


@word("put TEXT into CONTROL")
def put(bench, text, control):
    _point(bench, (control[0] or "field", control[1]))
    bench.screen.chord("Ctrl+a")
    bench.screen.type(text, _TYPING)


# What is seen

@word("see TEXT")
def see(bench, text):
    def look():
        places = bench.showing(text)
        if not places:
            return "it is nowhere"
        covers = [bench.cover(c) for c in places]
        return None if not all(covers) else f"covered by {covers[0]}"
    _until(bench, f"\"{text}\" in sight", look)


@word("not see TEXT")
def not_see(bench, text):
    _until(bench, f"\"{text}\" not in sight",
           lambda: "it is there" if any(not bench.cover(c) for c in bench.showing(text)) else None)


@word("see CONTROL")
def see_control(bench, control):
    _reach(bench, control)


@word("not see CONTROL")
def not_see_control(bench, control):
    _until(bench, f"no {control[0] or 'control'} \"{control[1]}\"",
           lambda: "it is there" if bench.controls.find(*control) else None)


@word("CONTROL holds TEXT")
def control_holds(bench, control, text):
    def look():
        seen = [c.text for c in bench.controls.find(*control)]
        return None if text in seen else repr(seen)
    _until(bench, f"\"{control[1]}\" holds {text!r}", look)


@word("CONTROL says TEXT")
def control_says(bench, control, text):
    """What is told of it besides its name."""
    def look():
        seen = [c.description for c in bench.controls.find(*control)]
        return None if text in seen else repr(seen)
    _until(bench, f"\"{control[1]}\" says {text!r}", look)


@word("CONTROL is NAME")
def control_is(bench, control, state):
    states = {"enabled": ("ENABLED", True), "disabled": ("ENABLED", False), "checked": ("CHECKED", True),
              "unchecked": ("CHECKED", False), "selected": ("SELECTED", True), "unselected": ("SELECTED", False)}
    if state not in states:
        raise Mistake(f"no such state: {state}")
    name, value = states[state]

    def look():
        found = bench.controls.find(*control)
        return None if any(c.has(name) == value for c in found) else "it is not" if found else "it is not shown"
    _until(bench, f"\"{control[1]}\" {state}", look)


@word("every control has a name")
def every_control_has_a_name(bench):
    """And a role that says what can be done with it, in all windows that are open."""
    def look():
        faults = [f"{' > '.join(c.path)}: {c.fault} at {c.middle}" for c in bench.controls.all() if c.fault]
        return "\n".join(faults) or None
    _until(bench, "every control with a name and a role", look)


@word("focus is CONTROL")
def focus_is(bench, control):
    def look():
        focused = [c for c in bench.controls.all() if c.has("FOCUSED") and c.role != "page tab"]
        if any(c.answers_to(control[0], control[1]) for c in focused):
            return None
        return ", ".join(f"{c.role} {c.name!r}" for c in focused) or "nowhere"
    _until(bench, f"focus on \"{control[1]}\"", look)


# Windows

@word("see window TITLE")
def see_window(bench, title):
    _expect_window(bench, title, "seen", lambda w: not w.minimised)


@word("no window TITLE")
def no_window(bench, title):
    _until(bench, f"no window \"{title}\"", lambda: "it is there" if bench.screen.find(title) else None)


@word("window TITLE is NAME")
def window_is(bench, title, state):
    states = {
        "active": lambda w: bench.screen.active() == w.title,
        "inactive": lambda w: bench.screen.active() != w.title,
        "minimised": lambda w: w.minimised,
        "maximised": lambda w: {"MAXIMIZED_VERT", "MAXIMIZED_HORZ"} <= w.states,
        "fullscreen": lambda w: "FULLSCREEN" in w.states,
        "urgent": lambda w: w.urgent,
        "calm": lambda w: not w.urgent,
    }
    if state not in states:
        raise Mistake(f"no such state: {state}")
    _expect_window(bench, title, state, states[state])


@word("window TITLE is in front")
def window_in_front(bench, title):
    """Seen, and nothing that overlaps it lies above it."""
    _expect_window(bench, title, "in front", bench.screen.is_in_front)


@word("window TITLE is above everything")
def window_above_everything(bench, title):
    _expect_window(bench, title, "above everything",
                   lambda w: bench.screen.windows()[-1].title == w.title and not w.minimised)


@word("window TITLE is above OTHER")
def window_above(bench, title, other):
    def order(window):
        titles = [w.title for w in bench.screen.windows()]
        below = bench.screen.find(other)
        return not window.minimised and below and titles.index(window.title) > titles.index(below.title)
    _expect_window(bench, title, f"above \"{other}\"", order)


@word("window TITLE is on the screen")
def window_on_screen(bench, title):
    _expect_window(bench, title, "wholly on the screen that is shown", bench.screen.is_on_screen)


@word("remember place of TITLE")
def remember_place(bench, title):
    bench.settle()
    bench.places[title] = _window(bench, title).frame


@word("window TITLE is where it was")
def window_where_it_was(bench, title):
    bench.settle()

    def look():
        window = bench.screen.find(title)
        return None if window and window.frame == bench.places[title] else window and str(window.frame)
    _until(bench, f"frame of \"{title}\": {bench.places[title]}", look)


@word("window TITLE is at NUMBER NUMBER")
def window_at(bench, title, x, y):
    _expect_window(bench, title, f"at {x:.0f} {y:.0f}", lambda w: (w.frame.x, w.frame.y) == (x, y))


@word("window TITLE has size NUMBER NUMBER")
def window_size(bench, title, width, height):
    _expect_window(bench, title, f"of size {width:.0f} x {height:.0f}",
                   lambda w: (w.place.width, w.place.height) == (width, height))


@word("move window TITLE to NUMBER NUMBER")
def move_window(bench, title, x, y):
    bench.screen.place(_window(bench, title), x=int(x), y=int(y))
    bench.settle()


@word("resize window TITLE to NUMBER NUMBER")
def resize_window(bench, title, width, height):
    bench.screen.place(_window(bench, title), width=int(width), height=int(height))
    bench.settle()


@word("minimise window TITLE")
def minimise_window(bench, title):
    bench.screen.minimise(_window(bench, title))
    _expect_window(bench, title, "minimised", lambda w: w.minimised)


@word("maximise window TITLE")
def maximise_window(bench, title):
    bench.screen.maximise(_window(bench, title))


@word("activate window TITLE")
def activate_window(bench, title):
    bench.screen.activate(_window(bench, title))
    _expect_window(bench, title, "active", lambda w: w.title == bench.screen.active())


@word("close window TITLE")
def close_window(bench, title):
    bench.screen.close(_window(bench, title))


@word("send window TITLE to desktop NUMBER")
def send_to_desktop(bench, title, number):
    bench.screen.send_to_desktop(_window(bench, title), int(number) - 1)
    bench.settle()


@word("show desktop NUMBER")
def show_desktop(bench, number):
    bench.screen.show_desktop(int(number) - 1)
    bench.settle()


# Time

@word("settle")
def settle(bench):
    bench.settle()


@word("pause NUMBER s")
def pause(bench, seconds):
    time.sleep(seconds)


@word("picture NAME")
def picture(bench, name):
    bench.screen.picture(bench.output / f"{name}.png")
