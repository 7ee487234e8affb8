"""The prescribed control names of each window occur in its source.

control_names.txt has one "room/FilePrefix: names" a line; a name counts when a file whose path under src/
begins with the prefix gives it to a widget, layout or action of a form, or holds it as a string literal. The
key of a toolbar's button also counts in the form "toolbar_key".
"""

import sys
import xml.etree.ElementTree as ElementTree

import lintlib

TABLE = "tests/lint/control_names.txt"
NAMED = {"widget", "layout", "action", "actiongroup", "buttongroup"}


def names_in(path):
    if path.suffix == ".ui":
        return {e.get("name") for e in ElementTree.parse(path).iter() if e.tag in NAMED}
    names = {text for _, text in lintlib.string_literals(lintlib.read(path))}
    return names | {name.partition("_")[2] for name in names if name.startswith("tb")}


def read_table(root, report):
    table = []
    for line in lintlib.read_list(root / TABLE):
        prefix, colon, names = line.partition(":")
        if not colon or not names.split():
            report.error(TABLE, f"neither a window nor a comment: {line}")
            continue
        table.append((prefix.strip(), names.split()))
    return table


def check(root, report):
    sources = lintlib.source_files(root, (".cpp", ".h", ".ui"))
    table = read_table(root, report)
    if not table:
        report.error(TABLE, "names no window")
    for prefix, names in table:
        files = [p for p in sources if lintlib.relative(root, p)[len("src/"):].startswith(prefix)]
        present = set().union(*(names_in(p) for p in files))
        if not files:
            report.error(f"src/{prefix}", "the window has no source")
        for name in names:
            if files and name not in present:
                report.error(f"src/{prefix}", f"no control is named {name}")


if __name__ == "__main__":
    findings = lintlib.Report("controls")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
