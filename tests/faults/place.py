"""A site on two files, the programs that work on it, and the shim in front of them."""

import csv
import os
import re
import resource
import shutil
import sqlite3
import struct
import subprocess
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SCHEMA = ROOT / "src/resources/schema"
PROGRAMS = ROOT / "build/bin"
HELPERS = ROOT / "build/faults"
ADMINISTRATOR, OPERATOR = ("Anna", "anna-demo"), ("Oliver", "oliver-demo")
RADIOS, RECORDS = 30, 300
OLD_SCHEMA = 3  # what is migrated
LIMIT = 60  # seconds for a command


class Broken(Exception):
    """What must hold does not; says what happened."""


class Run:
    """What a command has done: its exit code, what it said, and how many changes of files the shim has counted."""

    def __init__(self, code, out, err, changes):
        self.code, self.out, self.err, self.changes = code, out, err, changes

    def __str__(self):
        return f"exit code {self.code}: {self.err.strip()[-200:] or self.out.strip()[-200:]}"

    def check_answer(self):
        """Done, or refused with a sentence; neither a crash nor silence."""
        if self.code not in (0, 1):
            raise Broken(f"no good end, {self}")
        if self.code == 1 and not re.match(r"(veltorkynctl|error): \S.*\w", self.err):
            raise Broken(f"refused without a reason, {self}")


class Site:
    """Folders in a folder of its own: "site" has the database, "out" takes backups and exports. Use as a context."""

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="veltorkyn-faults-"))
        self.folder.chmod(0o711)
        self.home = self.folder / "home"
        self.home.mkdir()
        self.work = self.folder / "work"
        self.database = self.work / "site.kyndb"
        self.out = self.work / "out"
        self._count = self.folder / "count"
        self._count.write_bytes(bytes(8))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def make(self):
        """A database with accounts, radios and records; kept aside, so that it can be had again."""
        self.work.mkdir(mode=0o700)
        self.out.mkdir()
        self.must("db create {} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1])
        self.must("user add {} Oliver --as Anna", ADMINISTRATOR[1], OPERATOR[1])
        self.must(f"directory import {{}} {self.table('first', 'Car', RADIOS, 5000)} --as Anna", ADMINISTRATOR[1])
        with sqlite3.connect(self.database) as file:
            file.executemany("INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address, record_id) "
                             "VALUES (?, 2, ?, 'Car 1', '200', ?)",
                             ((1700000000000 + 1000 * i, f"text {i}", f"record-{i}") for i in range(RECORDS)))
        file.close()
        self.keep("made")

    def make_old(self, steps):
        """The same of an older version, without its accounts' passwords: a database file of that schema."""
        self.restore("made")
        with sqlite3.connect(self.database) as file:
            identity = file.execute("SELECT value FROM file_info WHERE name = 'database_id'").fetchone()[0]
        file.close()
        self.database.unlink()
        with _open(self.database) as file:
            for step in range(1, steps + 1):
                file.executescript(_script(f"sqlite/{step:04}.sql"))
            file.executemany("INSERT INTO file_info VALUES (?, ?)", (
                ("schema_version", str(steps)), ("kind", "database"), ("database_id", identity)))
            file.executemany("INSERT INTO address (callsign, \"IDENT\", \"Type\") VALUES (?, ?, 1)",
                             ((f"Car {i}", f"5{i:03}") for i in range(RADIOS)))
            file.executemany("INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address) "
                             "VALUES (?, 2, ?, 'Car 1', '200')", ((i, f"text {i}") for i in range(RECORDS)))
        file.close()
        self.keep("old")

    def keep(self, name):
        shutil.rmtree(self.folder / name, ignore_errors=True)
        shutil.copytree(self.work, self.folder / name)

    def restore(self, name):
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.copytree(self.folder / name, self.work)

    def table(self, name, callsign, count, number):
        """Of radios with these numbers, for an import."""
        path = self.folder / f"{name}.csv"
        with open(path, "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows([("type", "callsign", "ident", "name", "note", "dynamic", "position"),
                                        *(("individual", f"{callsign} {i}", number + i, "Some body", "", "no", "")
                                          for i in range(count))])
        return path

    def environment(self, **shim):
        """shim: FULL, FULL_FOR, KILL or RECORD, see Shim.cpp."""
        made = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(self.home), "QT_QPA_PLATFORM": "offscreen",
                "XDG_DATA_HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home), "TMPDIR": str(self.home)}
        if shim:
            self._count.write_bytes(bytes(8))
            made.update({f"FAULTS_{name}": str(value) for name, value in shim.items()}, FAULTS_FOLDER=str(self.work),
                        FAULTS_COUNT=str(self._count), LD_PRELOAD=str(HELPERS / "faults_shim.so"))
        return made

    def changes(self):
        return struct.unpack("q", self._count.read_bytes())[0]

    def tool(self, command, *lines, user=None, **shim):
        """veltorkynctl; {} stands for the database, the lines are its passwords."""
        words = [str(PROGRAMS / "veltorkynctl"), *command.format(self.database).split()]
        if lines:
            words.append("--password-stdin")
        made = subprocess.run(words, input="".join(line + "\n" for line in lines), capture_output=True, text=True,
                              encoding="utf-8", errors="replace", timeout=LIMIT, env=self.environment(**shim), cwd=self.folder,
                              user=user, preexec_fn=_no_core)
        return Run(made.returncode, made.stdout, made.stderr, self.changes())

    def must(self, command, *lines):
        made = self.tool(command, *lines)
        if made.code != 0:
            raise Broken(f"{command.format('')}: {made}")
        return made

    def rows(self, sql, file=None):
        connection = sqlite3.connect(f"file:{file or self.database}?mode=rw", uri=True, timeout=5)
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def check_file(self, file):
        """As SQLite sees it."""
        found = _rows_with_functions(file, "PRAGMA integrity_check")
        if found != [("ok",)]:
            raise Broken(f"{file.name} is damaged: {found[0][0][:200]}")

    def check_sound(self):
        """Both files, as SQLite and as the program's own check sees them."""
        for file in (self.database, self.database.with_suffix(".kynw")):
            self.check_file(file)
        made = self.tool("db check {}")
        if made.code != 0:
            raise Broken(f"db check: {made}")


def _no_core():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _open(path):
    """With what the schema's indexes call; good for texts in ASCII."""
    file = sqlite3.connect(path, timeout=5)
    file.create_function("kyn_fold", 1, lambda text: text and text.lower(), deterministic=True)
    file.create_function("kyn_event_words", -1, lambda *_: "", deterministic=True)
    for name in ("kyn_now", "kyn_user"):
        file.create_function(name, 0, lambda: "")
    file.create_function("kyn_match", -1, lambda *_: True, deterministic=True)
    return file


def _rows_with_functions(path, sql):
    file = _open(path)
    try:
        return file.execute(sql).fetchall()
    except sqlite3.DatabaseError as error:
        return [(str(error),)]
    finally:
        file.close()


def _script(name):
    text = (SCHEMA / name).read_text(encoding="utf-8")
    return re.sub(r"^\{include (\S+)\}$", lambda found: _script(found[1]), text, flags=re.M)
