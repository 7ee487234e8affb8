"""Sites for the console to work on: two files, or a PostgreSQL server of the bench's own behind a proxy."""

import csv
import io
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

_DUTY = "SELECT callsign, on_duty FROM {}address"
_RECORDS = 'SELECT event_type, from_address, "desc" FROM {}event ORDER BY event_id'


class Files(Console):
    def state(self):
        """Another one after each write; found without a lock, which would hold the console up."""
        return self.database.stat().st_mtime_ns if self.database.exists() else None

    def records(self):
        """(type, from, description) as they were stored."""
        return self.query(_RECORDS.format(""))

    def duty(self):
        """Whether on duty, by callsign."""
        return {callsign: bool(on) for callsign, on in self.query(_DUTY.format(""))}

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


class Server(Console):
    """The tools reach the server by its socket, the console through the proxy."""

    def __init__(self, processes, programs, directory):
        super().__init__(processes, programs, directory)
        versions = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"))
        if not versions:
            raise Trouble("postgresql is not installed")
        self._bin = versions[-1].parent
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
        self.database = f"postgresql:///kyn?host={self._data}&port={self._port}"

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

    def state(self):
        try:
            return self._psql("SELECT count(*) FROM kyn.event")
        except subprocess.CalledProcessError:
            return None  # it is away

    def records(self):
        text = self._psql(f"COPY ({_RECORDS.format('kyn.')}) TO STDOUT WITH CSV")
        return [(int(kind), party, desc) for kind, party, desc in csv.reader(io.StringIO(text))]

    def duty(self):
        rows = csv.reader(io.StringIO(self._psql(f"COPY ({_DUTY.format('kyn.')}) TO STDOUT WITH CSV")))
        return {callsign: on in ("t", "1") for callsign, on in rows}

    def close(self):
        self.proxy.cut()
        if self._child.poll() is None:
            self.kill_server()
        shutil.rmtree(self._data, ignore_errors=True)

    def _create(self):
        local, self.database = self.database, self.database.replace("///", "//postgres@/")
        self._tool("db create {} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1])
        self.database = local
        self.set("DB", "databasefile", f"postgresql://127.0.0.1:{self.proxy.port}/kyn?sslmode=disable")

    def _fill_registry(self, entries):
        for key, value in entries.items():
            self._psql(f"DELETE FROM kyn.kyn_registry WHERE \"Key\" = '{key}'; "
                       f"INSERT INTO kyn.kyn_registry VALUES ('{key}', '{value}')")

    def _psql(self, sql):
        return subprocess.run([self._bin / "psql", "-h", self._data, "-p", str(self._port), "-U", "postgres", "-d", "kyn", "-qAt",
                               "-c", sql], check=True, capture_output=True, text=True, timeout=30).stdout
