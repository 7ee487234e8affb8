"""Makes a manual page of its template and of what the program says of itself.

usage: page.py TEMPLATE PROGRAM --date DATE --output FILE

In the template (roff) @VERSION@ and @DATE@ are filled in. The line @OPTIONS@ becomes the options that PROGRAM --help lists,
the line @COMMANDS@ the commands with what each of them says: so no text stands twice.
"""

import argparse
import re
import subprocess
from pathlib import Path

OPTION = re.compile(r"^  (-\S*(?: [^ ]+)*?)(?:  +(\S.*))?$")
COMMAND = re.compile(r"^  ([a-z]+(?: [a-z]+)?)  +\S")


def told(program, *words):
    """What the program says; an error when it fails."""
    return subprocess.run([program, *words], capture_output=True, text=True, check=True, encoding="utf-8").stdout


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("~", "\\(ti").replace("^", "\\(ha")
    return "\\&" + text if text.startswith((".", "'")) else text


def paragraphs(lines):
    """Roff of a text: lines that begin with blanks are kept as they stand, all others flow."""
    result, kept = [], False
    for line in lines:
        if not line.strip():
            result += [".fi"] if kept else []
            kept = False
            result.append(".PP")
            continue
        if line.startswith(" ") != kept:
            kept = not kept
            result.append(".nf" if kept else ".fi")
        result.append(escaped(line))
    return without_empty(result + ([".fi"] if kept else []))


def without_empty(lines):
    """Without paragraphs that have nothing in them."""
    lines = [line for i, line in enumerate(lines)
             if line != ".PP" or (i + 1 < len(lines) and lines[i + 1] != ".PP")]
    return lines[1:] if lines and lines[0] == ".PP" else lines


def options(lines):
    """Roff of a list of options with their headings; what is neither is left out."""
    result, open_option = [], False
    for line in lines:
        if match := OPTION.match(line):
            result += [".TP", f".B {escaped(match[1])}"]
            if match[2]:
                result.append(escaped(match[2]))
            open_option = True
        elif open_option and line.startswith("   "):
            result.append(escaped(line.strip()))
        else:
            open_option = False
            if re.match(r"^[A-Z].*:$", line) and line != "Options:":
                result.append(f'.SS "{escaped(line[:-1])}"')
    # A heading without options is none.
    return [line for i, line in enumerate(result)
            if not line.startswith(".SS") or (i + 1 < len(result) and result[i + 1] == ".TP")]


def commands(program):
    result = []
    for line in told(program, "--help").splitlines():
        if not (match := COMMAND.match(line)):
            continue
        usage, _, text = told(program, *match[1].split(), "--help").partition("\n\n")
        text, _, listed = text.partition("\n\nOptions:\n")
        synopsis = " ".join(usage.split()).removeprefix("Usage: ")
        result += [f'.SS "{match[1]}"', ".PP", f".B {escaped(synopsis)}", ".PP", *paragraphs(text.splitlines()),
                   *options(listed.splitlines())]
    return result


def page(template, program, date):
    version = told(program, "--version").split()[-1]
    lines = []
    for line in template.splitlines():
        if line == "@OPTIONS@":
            lines += options(told(program, "--help").splitlines())
        elif line == "@COMMANDS@":
            lines += commands(program)
        else:
            lines.append(line.replace("@VERSION@", version).replace("@DATE@", date))
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("template", type=Path)
    parser.add_argument("program")
    parser.add_argument("--date", required=True)
    parser.add_argument("--output", type=Path, required=True)
    given = parser.parse_args()
    given.output.write_text(page(given.template.read_text(encoding="utf-8"), given.program, given.date), encoding="utf-8")


if __name__ == "__main__":
    main()
