"""Include arrows between the rooms of src/, and include cycles among files.

A room may include itself and the rooms below it. Exceptions stand in arrow_exceptions.txt, one
"room/File.h -> room/Other.h" a line; one that is not needed any more fails as well.
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
    "numbering": {"radio", "core", "dao", "addressing"},
    "mainwindow": {"radio", "core", "dao", "addressing"},
    "admin": {"radio", "core", "dao"},
    "simulator": {"map27", "addressing"},
    "ctl": {"numbering", "radio", "core", "dao", "addressing"},
    "app": {"mainwindow", "admin", "numbering", "radio", "core", "dao", "addressing"},
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


def check_system(report, where, room, name):
    header = name.rsplit("/", 1)[-1]
    if room in WITHOUT_QT and re.match(r"Q[A-Zt]", name):
        report.error(where, f"{room} compiles without Qt, but includes <{name}>")
    if room in WITHOUT_WIDGETS and (name.startswith("QtWidgets") or WIDGETS.match(header)):
        report.error(where, f"{room} links no widgets, but includes <{name}>")


def find_cycles(graph):
    """Each include cycle once, as the list of its files."""
    cycles = []
    state = {}

    def visit(name, trail):
        state[name] = "open"
        for target in graph.get(name, []):
            if state.get(target) == "open":
                cycles.append(trail[trail.index(target):] + [target])
            elif target not in state:
                visit(target, trail + [target])
        state[name] = "done"

    sys.setrecursionlimit(10000)
    for name in sorted(graph):
        if name not in state:
            visit(name, [name])
    return cycles


def check(root, report):
    source = root / "src"
    exceptions = set(lintlib.read_list(root / "tests/lint/arrow_exceptions.txt"))
    needed = set()
    graph = {}
    for path in lintlib.source_files(root):
        name = path.relative_to(source).as_posix()
        room = room_of(name)
        if room not in ROOMS:
            report.error(f"src/{name}", f"unknown room '{room}': say in check_arrows.py what it may include")
            continue
        graph[name] = []
        for line, bracket, target in includes(path):
            where = f"src/{name}:{line}"
            if bracket == "<" or GENERATED.search(target):
                check_system(report, where, room, target)
                continue
            if not (source / target).is_file():
                report.error(where, f'"{target}" is not a file of src/; write includes from src/')
                continue
            graph[name].append(target)
            other = room_of(target)
            if other != room and other not in ROOMS[room]:
                arrow = f"{name} -> {target}"
                needed.add(arrow)
                if arrow not in exceptions:
                    report.error(where, f"{room} may not include {other}: \"{target}\"")
    for cycle in find_cycles(graph):
        report.error(f"src/{cycle[0]}", "include cycle: " + " -> ".join(cycle))
    for stale in sorted(exceptions - needed):
        report.error("tests/lint/arrow_exceptions.txt", f"stale exception: {stale}")


if __name__ == "__main__":
    findings = lintlib.Report("arrows")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
