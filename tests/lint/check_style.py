"""One handwriting: the layout that .clang-format describes, and how names are written.

Constants outside of functions begin with a capital letter, like functions and types; data members begin with m_; a
function that only gives something is named after it, without "Get". Names that the program is required to use so stand
in prescribed_names.txt, one a line; one that is not used any more fails as well.
"""

import re
import subprocess
import sys

import lintlib

FOLDERS = ("src", "tests", "benchmarks")
# At the beginning of a line: what stands inside functions is indented.
CONSTANT = re.compile(r"^(?:inline |static )*const(?:expr)? [\w:<>, ]+?[ *&](\w+)(?:\[\w*\])?(?: =|\{|;)", re.M)
GETTER = re.compile(r"\b(Get[A-Z]\w*)\(")
# Private data of a class, indented by its four blanks.
MEMBER = re.compile(r"^    (?! |using |static |friend |enum |struct |class |virtual )[\w:<>, *&]+[ *&>](?!m_)([a-zA-Z]\w*)"
                    r"(?:\{[^}]*\}| = [^;()]+)?;", re.M)
PRIVATE = re.compile(r"^private:\n(.*?)^(?:\};|\w[\w ]*:)", re.M | re.S)
# Controls are named as they are known to their users.
CONTROL = re.compile(r"(tb|ts|pic|sbr|cmb|txt|lbl|lv|tv|cmd|chk|opt|sld|mb|mi|ls|Label|Command)")


def check_layout(root, report):
    files = [str(path) for folder in FOLDERS for path in sorted((root / folder).rglob("*"))
             if path.suffix in (".cpp", ".h")]
    if not (root / ".clang-format").is_file():
        return
    result = subprocess.run(["clang-format", "--dry-run", *files], capture_output=True, text=True, check=False)
    places = [line.split(": warning:")[0] for line in result.stderr.splitlines() if ": warning:" in line]
    for place in dict.fromkeys(re.sub(r":\d+$", "", place) for place in places):
        report.error(place.replace(f"{root}/", ""), "not laid out by clang-format")
    if result.returncode != 0 and not places:
        report.error("clang-format", result.stderr.strip())


def check_names(root, report):
    prescribed = set(lintlib.read_list(root / "tests/lint/prescribed_names.txt"))
    seen = set()
    for path in lintlib.source_files(root):
        where = lintlib.relative(root, path)
        text = lintlib.without_strings(lintlib.read(path))
        for match in CONSTANT.finditer(text):
            if not match[1][0].isupper():
                report.error(f"{where}:{lintlib.line_of(text, match.start())}",
                             f"the constant {match[1]} begins with a small letter")
        if path.suffix != ".h":
            continue
        for match in GETTER.finditer(text):
            seen.add(match[1])
            if match[1] not in prescribed:
                report.error(f"{where}:{lintlib.line_of(text, match.start())}",
                             f"{match[1]} is named after its doing, not after what it gives")
        for body in PRIVATE.finditer(text):
            for match in MEMBER.finditer(body[1]):
                if not CONTROL.match(match[1]):
                    report.error(f"{where}:{lintlib.line_of(text, body.start(1) + match.start())}",
                                 f"the member {match[1]} does not begin with m_")
    for name in sorted(prescribed - seen):
        report.error("tests/lint/prescribed_names.txt", f"stale: {name}")


def check(root, report):
    check_layout(root, report)
    check_names(root, report)


if __name__ == "__main__":
    findings = lintlib.Report("style")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
