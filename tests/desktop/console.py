"""The console with a site of its own: database, accounts, directory, settings."""

import configparser
import csv
import json
import sqlite3
import subprocess

ADMINISTRATOR = ("Anna", "anna-demo")
OPERATOR = ("Oliver", "oliver-demo")
_PLACE = {"x": 60, "y": 60, "wi": 1040, "hi": 680}


class Console:
    """Makes the site once; starts and ends the program on it as often as wanted."""

    def __init__(self, processes, programs, directory):
        self._processes = processes
        self._programs = programs
        self._directory = directory
        self.database = processes.folder / "site.kyndb"
        self.settings = processes.folder / "console.ini"
        self.child = None
        self._lock = None

    def make_site(self, port):
        content = json.loads(self._directory.read_text(encoding="utf-8"))
        self._create()
        self._tool("user add {} Oliver --as Anna --allow-regrouping", ADMINISTRATOR[1], *2 * OPERATOR[1:])
        self._import("fleet", ("fleet_name", "type", "digits", "prefix", "base_ident", "max_ident", "notes"),
                     [(f["name"], f["type"], f["digits"], f["prefix"], f["base"], f["max"], "")
                      for f in content["fleets"]])
        self._import("directory", ("type", "callsign", "ident", "name", "note", "dynamic", "position"),
                     [("individual", i["callsign"], i["ident"], i["name"], "", _yes(i), "") for i in content["individuals"]]
                     + [("talkgroup", g["callsign"], g["ident"], "", "", _yes(g), g["position"])
                        for g in content["talkgroups"]])
        self._import("status", ("code", "in", "out"), [(s["code"], s["in"], s["out"]) for s in content["statuses"]])
        self._fill_registry(content["registry"])
        self.set("serial_comm", "port", port)
        self.set("prefs", "log_width", 460)
        self.set("prefs", "logoncount", 1)  # the console offers the logon by itself
        for key, value in _PLACE.items():
            self.set("winMain", key, value)

    def set(self, section, key, value):
        settings = self._read()
        if not settings.has_section(section):
            settings.add_section(section)
        settings.set(section, key, str(value))
        with open(self.settings, "w", encoding="utf-8") as file:
            settings.write(file, space_around_delimiters=False)

    def setting(self, section, key):
        return self._read().get(section, key, fallback="")

    def start(self, environment):
        self._processes.environment.update(environment)
        self.child = self._processes.start_client(self._programs / "veltorkyn", "--settings", self.settings, log="console.log")

    def end(self):
        if self.child is not None:
            self._processes.end(self.child)

    def lock(self, on):
        """Keeps everybody else from the database, or no longer."""
        if self._lock is not None:
            self._lock.close()
            self._lock = None
        if on:
            self._lock = sqlite3.connect(self.database, timeout=5)
            self._lock.execute("BEGIN EXCLUSIVE")

    def query(self, sql):
        """Rows of a query on the database; waits for a console that is writing."""
        connection = sqlite3.connect(f"file:{self.database}?mode=ro", uri=True, timeout=5)
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def change(self, sql):
        """A change to the database as another console would make it."""
        connection = sqlite3.connect(self.database, timeout=5)
        try:
            connection.create_function("kyn_fold", 1, str.lower, deterministic=True)
            with connection:
                connection.execute(sql)
        finally:
            connection.close()

    def _create(self):
        self._tool("db create {} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1])
        self.set("DB", "databasefile", self.database)
        self.set("DB", "workgroupfile", self.database.with_suffix(".kynw"))

    def _fill_registry(self, entries):
        with sqlite3.connect(self.database) as database:
            database.executemany("INSERT OR REPLACE INTO kyn_registry VALUES (?, ?)", entries.items())

    def _read(self):
        settings = configparser.RawConfigParser(strict=False)
        settings.optionxform = str
        settings.read(self.settings, encoding="utf-8")
        return settings

    def _import(self, what, columns, rows):
        path = self._processes.folder / f"{what}.csv"
        with open(path, "w", encoding="utf-8", newline="") as file:
            csv.writer(file).writerows([columns, *rows])
        self._tool(f"{what} import {{}} {path} --as Anna", ADMINISTRATOR[1])

    def _tool(self, command, *passwords):
        arguments = command.format(self.database).split()
        subprocess.run([self._programs / "veltorkynctl", *arguments, "--password-stdin"], check=True, timeout=30,
                       input="".join(p + "\n" for p in passwords), text=True, stdout=subprocess.DEVNULL,
                       env=self._processes.environment)


def _yes(entry):
    return "yes" if entry["dynamic"] else "no"
