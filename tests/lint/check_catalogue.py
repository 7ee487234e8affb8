"""The catalogue, the form of its satellites, and who uses their texts. Whether a satellite is complete,
`veltorkynctl catalogue check` tells.

An id is used when a form names it in a property that ends with "Id", or when a *TextIds.h names it by a
constant that other code refers to. Ids that later work will use stand in later_ids.txt, one id or a range
"first-last" a line; an id listed there that is used already, or that has no text, fails. Files that report
about the catalogue itself, and so cannot take their texts from it, stand in typed_texts.txt; a file listed
there without need fails.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from collections import defaultdict

import lintlib

CATALOGUE = "src/resources/catalogue/CKYN.CResourceStrs"
SATELLITES = "src/resources/catalogue/satellites"
SHOWING_ROOMS = ("core", "radio", "numbering", "admin", "mainwindow", "app")

ESCAPE = re.compile(r"\\(.?)")
MNEMONIC = re.compile(r"&([^&\s])")
CONSTANT = re.compile(r"\b(\w+)\s*=\s*(\d{3,})\b")
WORD = re.compile(r"[^\W\d_]{2}")

SHOWING_CALLS = (
    r"set(?:Text|WindowTitle|ToolTip|StatusTip|WhatsThis|PlaceholderText|Title|LabelText|InformativeText"
    r"|DetailedText|AccessibleName|AccessibleDescription|HeaderLabels?|HorizontalHeaderLabels|TabText"
    r"|TabToolTip|Suffix|Prefix|SpecialValueText|ButtonText|IconText|ItemText)",
    r"add(?:Action|Menu|Items?|PermanentMessage)", r"showMessage", r"appendPlainText",
    r"Show(?:Warning|Error|Info)", r"Ask(?:Question|Confirmation)", r"SbrMessage", r"AppendLog", r"Error",
    r"tr", r"Q(?:Label|PushButton|ToolButton|CheckBox|RadioButton|GroupBox|Action|Menu|TreeWidgetItem)")
# Around a literal these only change its type; the arguments of any other call are not text that is shown.
WRAPPERS = {"QString", "QStringLiteral", "QLatin1String", "QLatin1StringView", "QStringView", "fromUtf8",
            "fromLatin1", "arg", "QStringList"}
LOADING_CALLS = ("LoadString", "FormatMessage", "RaiseCatalogueError")
CAPTION_PROPERTIES = {"text", "title", "windowTitle", "toolTip", "statusTip", "whatsThis", "placeholderText",
                      "accessibleName", "accessibleDescription", "suffix", "prefix", "specialValueText"}


def declared_constants(root):
    """(id, name, where, path) of every constant of every *TextIds.h."""
    found = []
    for path in lintlib.source_files(root, (".h",)):
        if path.name.endswith("TextIds.h"):
            text = lintlib.without_comments(lintlib.read(path))
            for match in CONSTANT.finditer(text):
                where = f"{lintlib.relative(root, path)}:{lintlib.line_of(text, match.start())}"
                found.append((int(match[2]), match[1], where, path))
    return found


def used_in_code(root, report):
    """Ids by the place that names them; constants nobody refers to are reported."""
    used = {}
    constants = declared_constants(root)
    words = defaultdict(set)
    for path in lintlib.source_files(root):
        for word in re.findall(r"\w+", lintlib.without_strings(lintlib.read(path))):
            words[word].add(path)
    for number, name, where, path in constants:
        if number in used:
            report.error(where, f"{name} ({number}) is declared at {used[number]} already")
        used.setdefault(number, where)
        if not words[name] - {path}:
            report.error(where, f"{name} ({number}) is declared, but no code refers to it")
    return used


def form_values(path):
    """(property, kind of value, value) of every property of a form."""
    for element in ElementTree.parse(path).iter():
        if element.tag in ("property", "attribute") and len(element):
            yield element.get("name"), element[0].tag, "".join(element[0].itertext())


def used_in_forms(root, report):
    used = {}
    for path in lintlib.source_files(root, (".ui",)):
        where = lintlib.relative(root, path)
        for name, kind, value in form_values(path):
            if name.endswith("Id") and kind == "number":
                used.setdefault(int(value), where)
            elif name in CAPTION_PROPERTIES and kind == "string" and WORD.search(value):
                report.error(where, f'{name} "{value}" is typed into the form; give the catalogue id instead')
    return used


def shown_literals(arguments):
    """The literals among the arguments that end up as text, not those handed to a nested call."""
    masked = lintlib.without_strings(arguments)
    position = 0
    kept = ""
    for match in re.finditer(r"(\w+)\s*[({]", masked):
        if match.start() < position or match[1] in WRAPPERS:
            continue
        end = lintlib.closing(masked, match.end() - 1)
        kept += arguments[position:match.end()]
        position = end
    return [text for _, text in lintlib.string_literals(kept + arguments[position:])]


def first_argument(arguments):
    masked = lintlib.without_strings(arguments)
    depth = 0
    for position, character in enumerate(masked):
        depth += (character in "([{") - (character in ")]}")
        if character == "," and depth == 0:
            return arguments[:position]
    return arguments


def check_typed_texts(root, report):
    name = "tests/lint/typed_texts.txt"
    excused = set(lintlib.read_list(root / name))
    needed = set()
    for path in lintlib.source_files(root):
        room = lintlib.relative(root, path).split("/")[1]
        if room not in SHOWING_ROOMS:
            continue
        text = lintlib.read(path)
        where = lintlib.relative(root, path)
        for call in lintlib.calls(text, SHOWING_CALLS):
            arguments = first_argument(call.arguments) if call.name.startswith("addItem") else call.arguments
            for literal in shown_literals(arguments):
                if not WORD.search(re.sub(r"\\.|%\w+", " ", literal)):
                    continue
                needed.add(where)
                if where not in excused:
                    report.error(f"{where}:{call.line}", f'{call.name} shows the typed text "{literal}"')
        for call in lintlib.calls(text, LOADING_CALLS):
            match = re.search(r"(?:^|,)\s*(\d{3,})\s*(?:,|$)", call.arguments)
            if match:
                report.error(f"{where}:{call.line}",
                             f"{call.name} with the bare id {match[1]}; name it in *TextIds.h")
    for stale in sorted(excused - needed):
        report.error(name, f"stale: {stale} shows no typed text")


def read_later(root, report):
    later = set()
    name = "tests/lint/later_ids.txt"
    for line in lintlib.read_list(root / name):
        match = re.fullmatch(r"(\d+)(?:-(\d+))?", line)
        if not match:
            report.error(name, f"neither an id nor a range: {line}")
            continue
        later.update(range(int(match[1]), int(match[2] or match[1]) + 1))
    return later


def check_use(root, ids, report):
    used = used_in_code(root, report)
    for number, where in used_in_forms(root, report).items():
        used.setdefault(number, where)
    later = read_later(root, report)
    for number in sorted(set(used) - ids):
        report.error(used[number], f"id {number} has no text in the catalogue")
    for number in sorted(ids - set(used) - later):
        report.error(CATALOGUE, f"id {number} is used nowhere and is not in later_ids.txt")
    for number in sorted(later & set(used)):
        report.error("tests/lint/later_ids.txt", f"stale: id {number} is used by {used[number]}")
    for number in sorted(later - ids):
        report.error("tests/lint/later_ids.txt", f"id {number} has no text in the catalogue")


def check_forms_of_text(name, entries, report):
    for entry in entries:
        for match in ESCAPE.finditer(re.sub(r"\\\\", "", entry.text)):
            if match[1] not in ("n", "t"):
                report.error(f"{name}:{entry.line}",
                             f'id {entry.id}: "\\{match[1]}" is no escape and would be dropped')


def warn_of_mnemonics(name, entries, report):
    blocks = defaultdict(lambda: defaultdict(list))
    for entry in entries:
        match = MNEMONIC.search(entry.text)
        if match:
            blocks[entry.block][match[1].casefold()].append(entry.id)
    for block, keys in blocks.items():
        for key, ids in keys.items():
            if len(ids) > 1:
                report.warning(name, f"{block}: access key {key.upper()} of {', '.join(map(str, ids))}")


def check_satellite(path, report):
    name = path.name
    if not re.fullmatch(r"CKYN(SL|PL)[1-9A-F][0-9A-F]*\.CResourceStrs", name):
        report.error(name, "is not named after a language identifier")
    entries = lintlib.read_catalogue(path, report)
    check_forms_of_text(name, entries, report)
    warn_of_mnemonics(name, entries, report)


def check(root, report):
    path = root / CATALOGUE
    if not path.is_file():
        report.error(CATALOGUE, "is missing")
        return
    entries = lintlib.read_catalogue(path, report)
    check_forms_of_text(path.name, entries, report)
    warn_of_mnemonics(path.name, entries, report)
    check_use(root, {entry.id for entry in entries}, report)
    check_typed_texts(root, report)
    satellites = sorted((root / SATELLITES).glob("*.CResourceStrs"))
    if not satellites:
        report.error(SATELLITES, "holds no satellite catalogue")
    for satellite in satellites:
        check_satellite(satellite, report)


if __name__ == "__main__":
    findings = lintlib.Report("catalogue")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
