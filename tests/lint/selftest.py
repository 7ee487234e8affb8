"""Plants one fault at a time into a small clean tree and expects the check to find it."""

import contextlib
import importlib
import io
import subprocess
import sys
import tempfile
from pathlib import Path

import lintlib

HERE = Path(__file__).resolve().parent

CLEAN = {
    "src/resources/catalogue/CKYN.CResourceStrs":
        '; Files\n101 "Guide.hlp"\n\n; Window: box\n2000 "Line #01\\nand #02."\n2001 " &Port"\n'
        '2002 "&Later"\n2003 "Said"\n2256 "Users"\n4097 "30"\n',
    "src/resources/catalogue/satellites/CKYNPL7.CResourceStrs":
        '; Window: box\n2000 "Zeile #01\\nund #02."\n2001 " &Port"\n2002 "&Später"\n2003 "Gesagt"\n',
    "src/core/texts/TextIds.h": "#pragma once\nconstexpr int TextLine = 2000;\nconstexpr int TextHelp = 101;\n"
                          "constexpr int TextUsers = 2256;\nconstexpr int TextPeriod = 4097;\n",
    "src/core/texts/Box.h": '#pragma once\n#include <QWidget>\n#include "core/texts/TextIds.h"\n',
    "src/core/texts/Box.cpp":
        '#include "core/texts/Box.h"\n#include "dao/Table.h"\n// setText("a comment")\n'
        'void Fill() {\n    box.setText(strings.LoadString(TextLine));\n'
        '    box.setText(Read("prefs", "port"));\n    box.setText(QStringLiteral("---"));\n'
        '    Use(TextHelp, TextUsers, TextPeriod);\n'
        '    button.setObjectName("cmdSend");\n    button.setObjectName("tbBox_reset");\n}\n',
    "src/core/texts/frmBox.ui":
        '<ui version="4.0"><widget class="QDialog" name="frmBox"><property name="textId" stdset="0">'
        '<number>2001</number></property>'
        '<property name="toolTipId" stdset="0"><number>2003</number></property>'
        '<property name="text"><string>...</string></property>'
        '<widget class="QLineEdit" name="txtName"/></widget></ui>\n',
    "src/dao/Table.h": "#pragma once\n#include <QString>\n",
    "src/dao/Table.cpp": '#include "dao/Table.h"\nauto sql = "select a from b";\n',
    "src/map27/codec/Octets.h": "#pragma once\n#include <vector>\n",
    "src/map27/link/Frame.h": '#pragma once\n#include "map27/codec/Octets.h"\n',
    "src/simulator/line/Line.h": "#pragma once\n",
    "src/simulator/line/Line.cpp": '#include "simulator/line/Line.h"\n#include "simulator/base/Chance.h"\n',
    "src/simulator/base/Chance.h": "#pragma once\n",
    "src/radio/base/Link.h": '#pragma once\n#include "core/texts/Box.h"\n#include "map27/link/Frame.h"\n',
    "tests/lint/arrow_exceptions.txt": "# none\n",
    "tests/lint/arrow_circles.txt": "# none\n",
    "tests/lint/typed_texts.txt": "# none\n",
    "tests/lint/prescribed_names.txt": "# none\n",
    "tests/lint/later_ids.txt": "2002   # later\n",
    "tests/lint/control_names.txt": "core/texts/frmBox: frmBox txtName\ncore/texts/Box: cmdSend reset\n",
    "docs/notes.md": "Plain words.\n",
}

CATALOGUE = "src/resources/catalogue/CKYN.CResourceStrs"
FORM = "src/core/texts/frmBox.ui"
LATER = "tests/lint/later_ids.txt"

# check, file, what is replaced ("" appends, None replaces the whole file), by what, what the check must say
FAULTS = [
    ("arrows", "src/dao/Table.h", "", '#include "core/texts/TextIds.h"\n', "dao may not include core"),
    ("arrows", "src/core/texts/Box.h", "", '#include "map27/link/Frame.h"\n', "core may not include map27"),
    ("arrows", "src/core/texts/Box.h", "", '#include "radio/base/Link.h"\n', "core may not include radio"),
    ("arrows", "src/map27/link/Frame.h", "", "#include <QByteArray>\n", "map27 compiles without Qt"),
    ("arrows", "src/dao/Table.h", "", "#include <QMessageBox>\n", "dao links no widgets"),
    ("arrows", "src/dao/Table.h", "", "#include <QtWidgets/QLabel>\n", "dao links no widgets"),
    ("arrows", "src/core/texts/Box.h", "core/texts/TextIds.h", "TextIds.h", "is not a file of src/"),
    ("arrows", "src/core/texts/TextIds.h", "", '#include "core/texts/Box.h"\n', "in a circle: core/texts/Box core/texts/TextIds"),
    ("arrows", "src/core/texts/TextIds.cpp", None, '#include "core/texts/Box.h"\n', "in a circle: core/texts/Box core/texts/TextIds"),
    ("arrows", "src/map27/codec/Octets.cpp", None, '#include "map27/link/Frame.h"\n',
     "map27/codec may not include map27/link"),
    ("arrows", "src/simulator/base/Chance.h", "", '#include "simulator/line/Line.h"\n',
     "in a circle: simulator/base/ simulator/line/"),
    ("arrows", "src/simulator/Radio.h", None, "#pragma once\n", "unknown wing 'simulator/'"),
    ("arrows", "src/core/speech/Catalogue.h", None, "#pragma once\n", "unknown wing 'core/speech'"),
    ("arrows", "tests/lint/arrow_circles.txt", "", "dao/One dao/Two\n", "stale, no such circle"),
    ("arrows", "src/attic/Old.h", None, "#pragma once\n", "unknown room 'attic'"),
    ("arrows", "tests/lint/arrow_exceptions.txt", "", "dao/Table.h -> core/texts/Box.h\n", "stale exception"),

    ("catalogue", "src/core/texts/TextIds.h", "= 2000", "= 2999", "id 2999 has no text"),
    ("catalogue", FORM, "2001", "2998", "id 2998 has no text"),
    ("catalogue", FORM, "2003", "2001", "id 2003 is used nowhere"),
    ("catalogue", "src/core/texts/TextIds.h", "", "constexpr int TextAgain = 2000;\n", "(2000) is declared at"),
    ("catalogue", "src/core/texts/Box.cpp", "LoadString(TextLine)", "LoadString(id)", "no code refers to it"),
    ("catalogue", "src/core/texts/Box.cpp", "LoadString(TextLine)", "LoadString(2000)", "bare id 2000"),
    ("catalogue", LATER, "", "2000\n", "stale: id 2000 is used"),
    ("catalogue", LATER, "", "2050-2051\n", "id 2051 has no text"),
    ("catalogue", LATER, "", "soon\n", "neither an id nor a range"),
    ("catalogue", CATALOGUE, "", '2003 "Again"\n', "id 2003 stands already"),
    ("catalogue", CATALOGUE, "", '2004 Unquoted\n', "neither an entry nor a comment"),
    ("catalogue", CATALOGUE, "Said", "S\\aid", "is no escape"),
    ("catalogue", "src/resources/catalogue/satellites/German.CResourceStrs", None, "", "is not named after"),
    ("catalogue", FORM, "<string>...", "<string>Port", "is typed into the form"),
    ("catalogue", "src/core/texts/Box.cpp", '"---"', '"Ready"', 'typed text "Ready"'),
    ("catalogue", "src/core/texts/Box.cpp", "box.setText(Read(", 'prompt.ShowWarning("No " "port"); Use(',
     'text "No port"'),
    ("catalogue", "src/core/texts/Box.cpp", "", 'auto label = new QLabel(tr("Port"), this);\n', "tr shows"),
    ("catalogue", "src/core/texts/Box.cpp", "", 'auto label = new QLabel("Port", this);\n', "QLabel shows"),
    ("catalogue", "tests/lint/typed_texts.txt", "", "src/core/texts/Box.cpp\n", "stale: src/core/texts/Box.cpp"),

    ("controls", FORM, 'name="txtName"', 'name="txtOther"', "no control is named txtName"),
    ("controls", "src/core/texts/Box.cpp", '"cmdSend"', '"cmdSent"', "no control is named cmdSend"),
    ("controls", "src/core/texts/Box.cpp", '"tbBox_reset"', '"tbBox_rest"', "no control is named reset"),
    ("controls", "tests/lint/control_names.txt", "", "core/texts/frmGone: cmdGo\n", "the window has no source"),
    ("controls", "tests/lint/control_names.txt", "", "core/texts/frmBox\n", "neither a window nor a comment"),

    ("words", "docs/notes.md", "", "See the sp" + "ec.\n", "docs/notes.md:2: forbidden"),
    ("words", "src/core/texts/Box.h", "", "// Pa" + "rt 1.6\n", "forbidden"),
    ("words", "docs/iss" + "ue 7.md", None, "Words.\n", "in the file's name"),
    ("words", "src/core/texts/Box.cpp", "", 'auto q = "select a " \n "from b";\n', "SQL outside dao"),
    ("words", "src/radio/base/Link.h", "", 'auto q = R"(insert into a values (1))";\n', "SQL outside dao"),

    ("style", ".clang-format", None, "BasedOnStyle: LLVM\n", "not laid out by clang-format"),
    ("style", "src/dao/Table.h", "", "constexpr int longest = 3;\n", "the constant longest begins with a small"),
    ("style", "src/dao/Table.h", "", "int GetRows();\n", "GetRows is named after its doing"),
    ("style", "src/dao/Table.h", "", "class A {\nprivate:\n    int rows = 0;\n};\n", "the member rows does not"),
    ("style", "tests/lint/prescribed_names.txt", "", "GetRows\n", "stale: GetRows"),
]

WARNINGS = [("catalogue", CATALOGUE, "Said", "&Late", "access key L of 2002, 2003")]


def write_tree(root):
    for name, text in CLEAN.items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


def plant(root, name, old, new):
    path = root / name
    path.parent.mkdir(parents=True, exist_ok=True)
    if old is None:
        path.write_text(new, encoding="utf-8")
        return
    text = path.read_text(encoding="utf-8")
    if old not in text:
        raise SystemExit(f"selftest: {name} does not hold {old!r}")
    path.write_text(text.replace(old, new) if old else text + new, encoding="utf-8")


def run(check, root):
    """Exit code and output of a check, without the price of another interpreter."""
    report = lintlib.Report(check)
    output = io.StringIO()
    with contextlib.redirect_stdout(output):
        importlib.import_module(f"check_{check}").check(root, report)
        code = report.finish()
    return code, output.getvalue()


def run_as_program(check, root):
    done = subprocess.run([sys.executable, "-B", str(HERE / f"check_{check}.py"), str(root)],
                          capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


def attempt(check, faults, expected_code, expected_text, runner=run):
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        write_tree(root)
        for fault in faults:
            plant(root, *fault)
        code, output = runner(check, root)
    if code == expected_code and expected_text in output:
        return True
    print(f"{check} after {faults}: expected exit code {expected_code} and {expected_text!r}, got {code} and")
    print(output)
    return False


def main():
    checks = ("arrows", "catalogue", "controls", "style", "words")
    first_faults = {check: fault for check, *fault in reversed(FAULTS)}
    results = []
    for check in checks:
        name, old, new, text = first_faults[check]
        results.append(attempt(check, [], 0, "0 errors, 0 warnings", run_as_program))
        results.append(attempt(check, [(name, old, new)], 1, text, run_as_program))
    results += [attempt(check, [(name, old, new)], 1, text) for check, name, old, new, text in FAULTS]
    results += [attempt(check, [(name, old, new)], 0, text) for check, name, old, new, text in WARNINGS]
    results.append(attempt("arrows", [
        ("src/core/texts/Box.h", "", '#include "map27/link/Frame.h"\n'),
        ("tests/lint/arrow_exceptions.txt", "", "core/texts/Box.h -> map27/link/Frame.h\n")], 0, "0 errors"))
    results.append(attempt("arrows", [
        ("src/core/texts/TextIds.h", "", '#include "core/texts/Box.h"\n'),
        ("tests/lint/arrow_circles.txt", "", "core/texts/Box core/texts/TextIds\n")], 0, "0 errors"))
    print(f"selftest: {results.count(True)} of {len(results)} as expected")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
