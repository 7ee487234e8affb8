"""Words that this tree does not use, and SQL where it does not belong."""

import re
import sys

import lintlib

# In pieces, so that this file passes its own check.
FORBIDDEN = re.compile("|".join((
    r"\bspeci" + r"fication\b", r"\bthe sp" + r"ec\b", r"\bsp" + r"ec\.md\b", r"\bPa" + r"rt [1-5]\.[0-9]",
    r"\biss" + r"ue #?[0-9]+\b", r"\bsub" + r"agent")), re.I)
FOLDERS = ("src", "tests", "docs", "benchmarks", "packaging")
BINARY = {".png"}

SQL = re.compile(
    r"\bselect\b.+\bfrom\b|\binsert\s+(or\s+\w+\s+)?into\b|\bupdate\s+\w+\s+set\b|\bdelete\s+from\b"
    r"|\b(create|drop|alter)\s+(unique\s+|temp(orary)?\s+)?(table|index|view|trigger)\b"
    r"|\bpragma\s+\w+\s*[=(;]|\bbegin\s+(immediate|exclusive|transaction)\b"
    r"|\b(attach|detach)\s+database\b", re.I | re.S)
# What the program is required to issue as text.
PRESCRIBED = (
    r"select count\(\*\) as c from fleet", r"select \* from fleet order by prefix, base_ident",
    r"select \* from status order by status_code", r"select \* from dynamic_regroup where group_id=.*")
SQL_ROOMS = ("src/dao/", "src/resources/schema/")


def text_files(root):
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.is_file() and path.suffix not in BINARY and "__pycache__" not in path.parts:
                yield path
    yield from sorted(p for p in root.glob("README*") if p.is_file())


def check_words(root, report):
    for path in text_files(root):
        name = lintlib.relative(root, path)
        try:
            text = lintlib.read(path)
        except UnicodeDecodeError:
            report.error(name, "is neither a picture nor UTF-8 text")
            continue
        if FORBIDDEN.search(name):
            report.error(name, "forbidden word in the file's name")
        for match in FORBIDDEN.finditer(text):
            report.error(f"{name}:{lintlib.line_of(text, match.start())}", f"forbidden: {match[0]}")


def check_sql(root, report):
    for path in lintlib.source_files(root):
        name = lintlib.relative(root, path)
        if name.startswith(SQL_ROOMS):
            continue
        for line, literal in lintlib.string_literals(lintlib.read(path)):
            if SQL.search(literal) and not any(re.fullmatch(p, literal) for p in PRESCRIBED):
                report.error(f"{name}:{line}", f"SQL outside dao and the schema scripts: {literal}")


def check(root, report):
    check_words(root, report)
    check_sql(root, report)


if __name__ == "__main__":
    findings = lintlib.Report("words")
    check(lintlib.root_from_arguments(), findings)
    sys.exit(findings.finish())
