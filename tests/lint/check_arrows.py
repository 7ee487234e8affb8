"""Include arrows between the rooms of src/ and between their wings, and circles of modules.

A room may include itself and the rooms below it, a wing itself and the wings that WINGS names. Exceptions stand in
arrow_exceptions.txt, one "room/File.h -> room/Other.h" a line; one that is not needed any more fails as well.

A header and its source are one module. Modules that include each other in a circle stand in arrow_circles.txt, all of one
circle in a line, and so do wings, with a slash at the end. The list may only shrink: a circle that is not there fails, and
so does a line that is no circle any more.
"""

import re
import sys

import lintlib

ROOMS = {
    "map27": set(),
    "addressing": set(),
    "dao": set(),
    "core": {"dao"},
    "radio": {"core", "dao", "map27", "addressing"},
    "exchange": {"radio", "core", "dao", "addressing"},
    "numbering": {"exchange", "radio", "core", "dao", "addressing"},
    "setup": {"numbering", "radio", "core", "dao", "addressing"},
    "logbook": {"radio", "core", "dao"},
    "health": {"radio", "core", "dao", "map27"},
    "mainwindow": {"radio", "core", "dao", "addressing"},
    "admin": {"exchange", "radio", "core", "dao"},
    "simulator": {"map27", "addressing"},
    "ctl": {"logbook", "numbering", "exchange", "radio", "core", "dao", "addressing", "map27"},
    "tour": {"mainwindow", "core"},
    "app": {"tour", "mainwindow", "logbook", "health", "admin", "setup", "numbering", "radio", "core", "dao", "addressing"},
}
# The folders of a room, "" for the files outside of them, and which of them each may include.
WINGS = {
    "map27": {"codec": set(), "link": {"codec"}, "terminal": {"codec", "link"}, "trace": {"codec", "link"}, "check": {"codec", "link", "trace"}},
    "core": {
        "base": set(),
        "texts": {"base"},
        "widgets": {"texts"},
        "desktop": {"base", "texts"},
        "settings": {"base", "texts"},
        "session": {"base", "texts", "desktop", "settings"},
        "eventlog": {"base", "texts", "session"},
        "sounds": {"base", "texts", "settings"},
        "attention": {"base", "texts", "session", "eventlog", "sounds"},
        "logon": {"base", "texts", "widgets", "desktop", "settings", "session", "sounds", "backup"},
        "backup": {"base", "texts", "widgets", "desktop", "settings"},
    },
    "radio": {
        "base": set(),
        "line": {"base"},
        "trace": {"base", "line"},
        "window": {"base"},
        "agent": {"base", "line", "window"},
        "facade": {"base", "line", "window", "agent"},
    },
    "setup": {"base": set(), "pages": {"base"}, "": {"base", "pages"}},
    "logbook": {"query": set(), "window": {"query"}},
    "mainwindow": {
        "base": set(),
        "lists": {"base"},
        "keys": {"base"},
        "bars": {"base"},
        "strip": {"base", "lists"},
        "log": {"base", "lists", "bars"},
        "send": {"base", "bars", "keys"},
        "scada": {"base", "lists"},
        "talkgroups": {"base", "lists"},
        "individuals": {"base", "lists", "talkgroups"},
        "frame": {"base", "keys", "bars", "strip", "log", "send", "scada", "talkgroups", "individuals"},
    },
    "app": {"": set(), "main": {""}},
    "ctl": {"program": set(), "files": set(), "commands": {"program", "files"}},
    "dao": {
        "base": set(),
        "records": {"base"},
        "tables": {"base", "records"},
        "sqlite": {"base", "records"},
        "postgresql": {"base", "records"},
        "": {"base", "records", "tables", "sqlite", "postgresql"},
    },
    "simulator": {
        "base": set(),
        "line": {"base"},
        "network": {"base"},
        "script": {"base"},
        "replay": {"base"},
        "program": {"base", "line", "network", "script", "replay"},
        "main": {"program"},
    },
}
WITHOUT_QT = {"map27", "addressing"}
WITHOUT_WIDGETS = {"dao"}

# Headers of the widgets module, by how their names begin.
WIDGETS = re.compile(
    r"QtWidgets|ui_|Q(Abstract(Button|Item(Delegate|View)|ScrollArea|Slider|SpinBox)|Application|BoxLayout"
    r"|Button|CalendarWidget|CheckBox|ColorDialog|ColumnView|Combo|CommandLink|CommonStyle|Completer"
    r"|DataWidgetMapper|Date(Time)?Edit|Dial|Dock|DoubleSpinBox|ErrorMessage|File(Dialog|IconProvider)|Focus"
    r"|Font(ComboBox|Dialog)|Form|Frame|Graphics|Grid|Group|HBox|Header|InputDialog|Item(Delegate|Editor)"
    r"|KeySequenceEdit|LCD|Label|Layout|LineEdit|List(View|Widget)|Main|Mdi|Menu|MessageBox|Plain|Progress"
    r"|ProxyStyle|Push|Radio|Rubber|Scroll|SizeGrip|SizePolicy|Slider|Spacer|Spin|Splash|Splitter|Stacked"
    r"|Status|Style|SystemTray|Tab|Table|Text(Browser|Edit)|TimeEdit|Tool|Tree|UndoView|VBox|Whats|Widget"
    r"|Wizard)")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.M)
GENERATED = re.compile(r"(^|/)ui_\w+\.h$|\.moc$|(^|/)moc_\w+\.cpp$")


def includes(path):
    """(line, bracket, name) of every include of a file."""
    text = lintlib.without_comments(lintlib.read(path))
    return [(lintlib.line_of(text, m.start(1)), m[1], m[2]) for m in INCLUDE.finditer(text)]


def room_of(name):
    return name.split("/", 1)[0] if "/" in name else ""


def wing_of(name):
    return name.split("/")[1] if name.count("/") > 1 else ""


def module_of(name):
    return name.rsplit(".", 1)[0]


def check_wings(report, where, name, target):
    """An arrow within one room."""
    room, wing, other = room_of(name), wing_of(name), wing_of(target)
    if wing != other and other not in WINGS.get(room, {}).get(wing, set()):
        report.error(where, f'{room}/{wing} may not include {room}/{other}: "{target}"')


def check_system(report, where, room, name):
    header = name.rsplit("/", 1)[-1]
    if room in WITHOUT_QT and re.match(r"Q[A-Zt]", name):
        report.error(where, f"{room} compiles without Qt, but includes <{name}>")
    if room in WITHOUT_WIDGETS and (name.startswith("QtWidgets") or WIDGETS.match(header)):
        report.error(where, f"{room} links no widgets, but includes <{name}>")


def reachable(graph, start):
    seen = set()
    open_nodes = [start]
    while open_nodes:
        for target in graph.get(open_nodes.pop(), ()):
            if target not in seen:
                seen.add(target)
                open_nodes.append(target)
    return seen


def find_circles(graph):
    """All nodes from which a way leads back, those of one circle sorted in a line, as "room/One room/Two"."""
    reach = {node: reachable(graph, node) for node in graph}
    circles = set()
    for node, targets in reach.items():
        if node in targets:
            circles.add(" ".join(sorted(other for other in targets if node in reach.get(other, ()))))
    return circles


def check_circles(report, root, arrows):
    """`arrows`: pairs of files."""
    modules, wings = {}, {}
    for name, target in arrows:
        if module_of(name) != module_of(target):
            modules.setdefault(module_of(name), set()).add(module_of(target))
        wing, other = (f"{room_of(file)}/{wing_of(file)}/".replace("//", "/") for file in (name, target))
        if wing != other and room_of(name) == room_of(target):
            wings.setdefault(wing, set()).add(other)
    found = find_circles(modules) | find_circles(wings)
    listed = set(lintlib.read_list(root / "tests/lint/arrow_circles.txt"))
    for circle in sorted(found - listed):
        report.error("src", f"include each other in a circle: {circle}")
    for circle in sorted(listed - found):
        report.error("tests/lint/arrow_circles.txt", f"stale, no such circle: {circle}")


def check(root, report):
    source = root / "src"
    exceptions = set(lintlib.read_list(root / "tests/lint/arrow_exceptions.txt"))
    needed = set()
    arrows = []
    for path in lintlib.source_files(root):
        name = path.relative_to(source).as_posix()
        room = room_of(name)
        if room not in ROOMS:
            report.error(f"src/{name}", f"unknown room '{room}': say in check_arrows.py what it may include")
            continue
        if wing_of(name) not in WINGS.get(room, {"": set()}):
            report.error(f"src/{name}",
                         f"unknown wing '{room}/{wing_of(name)}': say in check_arrows.py what it may include")
            continue
        for line, bracket, target in includes(path):
            where = f"src/{name}:{line}"
            if bracket == "<" or GENERATED.search(target):
                check_system(report, where, room, target)
                continue
            if not (source / target).is_file():
                report.error(where, f'"{target}" is not a file of src/; write includes from src/')
                continue
            arrows.append((name, target))
            other = room_of(target)
            if other == room:
                check_wings(report, where, name, target)
            elif other not in ROOMS[room]:
                arrow = f"{name} -> {target}"
                needed.add(arrow)
                if arrow not in exceptions:
                    report.error(where, f"{room} may not include {other}: \"{target}\"")
    check_circles(report, root, arrows)
    for stale in sorted(exceptions - needed):
        report.error("tests/lint/arrow_exceptions.txt", f"stale exception: {stale}")


if __name__ == "__main__":
    findings = lintlib.Report("arrows")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
