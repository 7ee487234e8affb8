"""Sites for the console to work on: two files, a PostgreSQL server of the bench's own behind a proxy, or one with a standby."""

import csv
import io
import json
import os
import pwd
import shutil
import signal
import socket
import sqlite3
import subprocess
import tempfile
import time
from pathlib import Path

import proxy
from console import ADMINISTRATOR, Console
from processes import Trouble

_STANDBY = Path(__file__).resolve().parents[2] / "scripts/standby"
_DUTY = "SELECT callsign, on_duty FROM {}address"
_MEMBERS = ("SELECT g.callsign, m.callsign, r.pos FROM {0}dynamic_regroup r JOIN {0}address g ON g.address_id = r.group_id "
            "JOIN {0}address m ON m.address_id = r.member_id")
_REQUESTS = "SELECT count(*) FROM {}regroup_request"
_GROUP = "SELECT address_id FROM {{}}address WHERE callsign = '{}'"
_RECORDS = 'SELECT event_type, from_address, "desc" FROM {}event ORDER BY event_id'


class _Site(Console):
    """What the database holds, the same on each engine."""

    def records(self):
        """(type, from, description) as they were stored."""
        return [(int(kind), party, desc) for kind, party, desc in self.rows(_RECORDS)]

    def duty(self):
        """Whether on duty, by callsign."""
        return {callsign: on not in ("f", "0") for callsign, on in self.rows(_DUTY)}

    def group_id(self, callsign):
        return int(self.rows(_GROUP.format(callsign))[0][0])

    def members(self):
        """Who is in which dynamic group at which position: (group, member, position)."""
        return [(group, member, int(pos)) for group, member, pos in self.rows(_MEMBERS)]

    def open_requests(self):
        """Regroup commands that await the radio's answer."""
        return int(self.rows(_REQUESTS)[0][0])


class Files(_Site):
    def state(self):
        """Another one after each write; found without a lock, which would hold the console up."""
        return self.database.stat().st_mtime_ns if self.database.exists() else None

    def rows(self, sql):
        """Of a query in which {} stands before each table; numbers are text."""
        return [["" if value is None else str(value) for value in row] for row in self.query(sql.format(""))]

    def delete(self):
        """Takes the database away while nobody is writing to it."""
        self.lock(True)
        shutil.copy2(self.database, self.database.with_suffix(".aside"))
        self.database.unlink()
        self.lock(False)

    def put_back(self):
        shutil.move(self.database.with_suffix(".aside"), self.database)

    def close(self):
        self.lock(False)


class _OnServer(_Site):
    """The tools reach the server by its socket, as the role that may make databases or as everybody."""

    _owner = _console = None  # the addresses for that role and for the console

    def __init__(self, processes, programs, directory):
        super().__init__(processes, programs, directory)
        versions = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"))
        if not versions:
            raise Trouble("postgresql is not installed")
        self._bin = versions[-1].parent

    def state(self):
        try:
            return self._psql("SELECT count(*) FROM kyn.event")
        except subprocess.CalledProcessError:
            return None  # it is away

    def rows(self, sql):
        return list(csv.reader(io.StringIO(self._psql(f"COPY ({sql.format('kyn.')}) TO STDOUT WITH CSV"))))

    def _create(self):
        self.database = self._owner
        self._tool("db create {} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1])
        self.database = self._owner.replace("postgres@", "")
        self.set("DB", "databasefile", self._console)

    def _fill_registry(self, entries):
        for key, value in entries.items():
            self._psql(f"DELETE FROM kyn.kyn_registry WHERE \"Key\" = '{key}'; "
                       f"INSERT INTO kyn.kyn_registry VALUES ('{key}', '{value}')")

    def _psql(self, sql):
        return subprocess.run([self._bin / "psql", "-d", f"{self._owner}&target_session_attrs=read-write", "-qAt", "-c", sql],
                              check=True, capture_output=True, text=True, timeout=30).stdout


class Server(_OnServer):
    """The console reaches it through the proxy."""

    def __init__(self, processes, programs, directory):
        super().__init__(processes, programs, directory)
        self._data = Path(tempfile.mkdtemp(prefix="veltorkyn-server-"))
        # The server refuses to run as root.
        self._user = {"user": "postgres", "group": "postgres", "extra_groups": []} if os.geteuid() == 0 else {}
        if self._user:
            owner = pwd.getpwnam("postgres")
            os.chown(self._data, owner.pw_uid, owner.pw_gid)
        made = processes.start(self._bin / "initdb", "-D", self._data / "data", "-U", "postgres", "-A", "trust", "-E", "UTF8",
                               "--locale=C", "--no-sync", log="server.log", **self._user)
        if made.wait(60):
            raise Trouble("initdb failed")
        (self._data / "data/pg_hba.conf").write_text(
            "local all postgres trust\nlocal all all scram-sha-256\nhost all all 127.0.0.1/32 scram-sha-256\n")
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self._port = free.getsockname()[1]
        self._child = None
        self.start_server()
        self.proxy = proxy.Proxy(self._port)
        self._owner = f"postgresql://postgres@/kyn?host={self._data}&port={self._port}"
        self._console = f"postgresql://127.0.0.1:{self.proxy.port}/kyn?sslmode=disable"

    def start_server(self):
        self._child = self._processes.start(self._bin / "postgres", "-D", self._data / "data", "-k", self._data, "-p", self._port,
                                            "-c", "listen_addresses=127.0.0.1", log="server.log", **self._user)
        deadline = time.monotonic() + 20
        while subprocess.run([self._bin / "pg_isready", "-q", "-h", self._data, "-p", str(self._port)], check=False).returncode:
            if time.monotonic() > deadline:
                raise Trouble("the server does not start")
            time.sleep(0.05)

    def kill_server(self):
        """As if it had crashed."""
        self._child.send_signal(signal.SIGQUIT)
        self._child.wait()

    def close(self):
        self.proxy.cut()
        if self._child.poll() is None:
            self.kill_server()
        shutil.rmtree(self._data, ignore_errors=True)


class Standby(_OnServer):
    """A server that another one stands by for; the console knows both."""

    synchronous = True

    def __init__(self, processes, programs, directory):
        super().__init__(processes, programs, directory)
        # Not in the folder of the processes, which the user postgres could not enter.
        self._pair = Path(tempfile.gettempdir()) / f"veltorkyn-pair-{os.getpid()}"
        self.standby("start", "--tcp", "--quick", "--while", os.getpid(), *["--synchronous"] * self.synchronous)
        self._owner = self.standby("address", "kyn", "--postgres")
        self._console = self.standby("address", "kyn")

    def standby(self, *command):
        made = subprocess.run([_STANDBY, self._pair, *map(str, command)], capture_output=True, text=True, timeout=90, check=False)
        if made.returncode:
            raise Trouble(made.stderr.strip())
        return made.stdout.strip()

    def kill_primary(self):
        self.standby("kill-primary")

    def promote(self):
        self.standby("promote")

    def close(self):
        self.standby("stop")


class LateStandby(Standby):
    """The server does not wait for its standby."""

    synchronous = False
