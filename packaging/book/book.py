#!/usr/bin/env python3
"""Makes a book of the pages in docs/: an HTML page for each chapter, with the contents of the whole beside it.

usage: book.py ROOT OUTPUT [--version TEXT]

ROOT is the source tree. Needs cmark-gfm. A page of docs/ that is in no part of the book, a link that leads to no page and a
picture that is not there fail it."""

import argparse
import html
import pathlib
import re
import shutil
import subprocess
import sys

# The parts of the book, with their chapters in the order in which they are read.
PARTS = [
    ("The console", ["README.md", "docs/tour.md", "docs/radio-first-day.md", "docs/scenarios.md"]),
    ("Keeping it", ["docs/database.md", "docs/new-computer.md", "docs/security.md", "docs/reliability.md",
                    "docs/performance.md"]),
    ("Working on it", ["CONTRIBUTING.md", "docs/translating.md", "docs/architecture.md", "docs/decisions.md",
                       "docs/wire-protocol.md", "docs/desktop-bench.md", "CHANGELOG.md"]),
]

STYLE = """
body { margin: 0 auto; max-width: 76em; display: flex; gap: 2.5em; padding: 1.5em; line-height: 1.5;
       font-family: system-ui, sans-serif; color: #222; background: #fff; }
nav { flex: 0 0 15em; font-size: 0.9em; }
nav h2 { font-size: 1em; margin: 1.2em 0 0.3em; }
nav ul { list-style: none; margin: 0; padding: 0 0 0 0.8em; }
nav .here { font-weight: bold; }
main { flex: 1; min-width: 0; }
pre, code { font-family: monospace; background: #f2f2f2; }
pre { padding: 0.8em; overflow-x: auto; }
table { border-collapse: collapse; display: block; overflow-x: auto; }
td, th { border: 1px solid #bbb; padding: 0.3em 0.6em; vertical-align: top; text-align: left; }
img { max-width: 100%; }
@media (prefers-color-scheme: dark) {
    body { color: #ddd; background: #181818; } a { color: #8bf; } pre, code { background: #262626; } }
@media (max-width: 50em) { body { display: block; } }
"""

PAGE = """<!DOCTYPE html>
<html lang="en">
<head><meta charset="utf-8"><meta name="viewport" content="width=device-width">
<title>{title} - VeltorKyn {version}</title><link rel="stylesheet" href="book.css"></head>
<body>
<nav aria-label="Contents"><p>VeltorKyn {version}</p>
{contents}</nav>
<main>
{text}</main>
</body>
</html>
"""


def page_of(chapter):
    return "index.html" if chapter == "README.md" else pathlib.Path(chapter).stem.lower() + ".html"


def title_of(root, chapter):
    heading = re.search(r"^# (.+)$", (root / chapter).read_text(encoding="utf-8"), re.MULTILINE)
    if not heading:
        raise SystemExit(f"{chapter} has no heading")
    return heading.group(1)


def name_of_heading(text):
    """The name that links use for a heading."""
    words = re.sub(r"<[^>]+>", "", html.unescape(text)).lower()
    return re.sub(r"[^\w\- ]", "", words).replace(" ", "-")


def text_of(root, chapter):
    made = subprocess.run(["cmark-gfm", "--extension", "table", "--extension", "strikethrough", str(root / chapter)],
                          capture_output=True, check=True)
    return re.sub(r"<h([1-6])>(.*?)</h\1>",
                  lambda found: f'<h{found[1]} id="{name_of_heading(found[2])}">{found[2]}</h{found[1]}>',
                  made.stdout.decode("utf-8"), flags=re.DOTALL)


class Book:
    def __init__(self, root, output, version):
        self.root = root
        self.output = output
        self.version = version
        self.parts = [(name, [chapter for chapter in chapters if (root / chapter).exists()]) for name, chapters in PARTS]
        self.chapters = [chapter for _, chapters in self.parts for chapter in chapters]
        self.titles = {chapter: title_of(root, chapter) for chapter in self.chapters}
        self.titles["README.md"] = "What it is"
        self.texts = {chapter: text_of(root, chapter) for chapter in self.chapters}
        self.faults = [f"docs/{page.name} is in no part of the book" for page in sorted((root / "docs").glob("*.md"))
                       if f"docs/{page.name}" not in self.chapters]

    def contents(self, here):
        lines = []
        for name, chapters in self.parts:
            lines.append(f"<h2>{html.escape(name)}</h2><ul>")
            for chapter in chapters:
                mark = ' class="here" aria-current="page"' if chapter == here else ""
                lines.append(f'<li><a href="{page_of(chapter)}"{mark}>{html.escape(self.titles[chapter])}</a></li>')
            lines.append("</ul>")
        return "\n".join(lines)

    def link(self, chapter, kind, target):
        """Where a link or picture of a chapter leads in the book."""
        if re.match(r"[a-z]+:", target):
            return target
        path, _, place = target.partition("#")
        file = (self.root / chapter).parent.joinpath(path).resolve() if path else self.root / chapter
        if not file.exists():
            self.faults.append(f"{chapter}: {target} is not there")
            return target
        name = file.relative_to(self.root).as_posix()
        if kind == "src":
            folder = self.output / "pictures"
            folder.mkdir(exist_ok=True)
            shutil.copyfile(file, folder / file.name)
            return f"pictures/{file.name}"
        if name not in self.chapters:
            return None  # a file of the sources, which the book does not have
        if place and f'id="{place}"' not in self.texts[name]:
            self.faults.append(f"{chapter}: {target} is no heading of {name}")
        return page_of(name) + (f"#{place}" if place else "")

    def write(self):
        shutil.rmtree(self.output, ignore_errors=True)
        self.output.mkdir(parents=True)
        (self.output / "book.css").write_text(STYLE.lstrip(), encoding="utf-8")
        for chapter in self.chapters:
            text = re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda found: self.anchor(chapter, found), self.texts[chapter],
                          flags=re.DOTALL)
            text = re.sub(r'src="([^"]*)"', lambda found: f'src="{self.link(chapter, "src", found[1])}"', text)
            page = PAGE.format(title=html.escape(self.titles[chapter]), version=html.escape(self.version),
                               contents=self.contents(chapter), text=text)
            (self.output / page_of(chapter)).write_text(page, encoding="utf-8")

    def anchor(self, chapter, found):
        target = self.link(chapter, "href", html.unescape(found[1]))
        return found[2] if target is None else f'<a href="{html.escape(target)}">{found[2]}</a>'


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("root", type=lambda text: pathlib.Path(text).resolve())
    parser.add_argument("output", type=lambda text: pathlib.Path(text).resolve())
    parser.add_argument("--version", default="")
    arguments = parser.parse_args()
    book = Book(arguments.root, arguments.output, arguments.version)
    book.write()
    for fault in book.faults:
        print(fault, file=sys.stderr)
    return 1 if book.faults else 0


if __name__ == "__main__":
    sys.exit(main())
