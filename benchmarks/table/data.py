"""The databases that are measured: files, and a server of the bench's own; kept in build/bench-data and used again."""

import os
import pwd
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path


class Trouble(Exception):
    """It cannot be measured here; says why."""


class Data:
    """Use as a context: the server ends with it."""

    def __init__(self, folder, programs):
        self._folder, self._programs = folder, programs
        self._server = None
        folder.mkdir(parents=True, exist_ok=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._server:
            self._server.close()

    def files(self, events):
        return self._made(events, "files", str(self._folder / f"events-{events}.kyndb"), self._remove_files)

    def server(self, events):
        if not self._server:
            self._server = Server(self._folder / "server")
        return self._made(events, "server", self._server.address(f"events{events}"), self._server.drop)

    def _made(self, events, engine, database, remove):
        """A database is only used when it has been made to its end."""
        done = self._folder / f"{engine}-{events}.done"
        if not done.exists():
            print(f"Making {events:,} events, {engine} ...", flush=True)
            remove(database)
            subprocess.run([self._programs / "bench_data", database, str(events)], check=True)
            if self._server and engine == "server":
                self._server.run("VACUUM ANALYZE", database)
            done.touch()
        elif engine == "server":  # files do that when they are opened
            subprocess.run([self._programs.parent / "bin/veltorkynctl", "db", "migrate", database], check=True,
                           stdout=subprocess.DEVNULL)
        return database

    @staticmethod
    def _remove_files(database):
        for path in (Path(database), Path(database).with_suffix(".kynw")):
            path.unlink(missing_ok=True)


class Server:
    """PostgreSQL on a socket of its own; as the user postgres when run by root, which it refuses to be."""

    def __init__(self, folder):
        versions = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"))
        if not versions:
            raise Trouble("postgresql is not installed")
        self._bin = versions[-1].parent
        self._user = {"user": "postgres", "group": "postgres", "extra_groups": []} if os.geteuid() == 0 else {}
        self._socket = Path(tempfile.mkdtemp(prefix="veltorkyn-bench-"))
        owner = pwd.getpwnam("postgres") if self._user else None
        for path in (self._socket, folder):
            path.mkdir(exist_ok=True)
            if owner:
                os.chown(path, owner.pw_uid, owner.pw_gid)
        self._log = open(folder.parent / "server.log", "ab")
        data = folder / "data"
        if not (data / "PG_VERSION").exists():
            for made in folder.parent.glob("server-*.done"):
                made.unlink()
            self._call("initdb", "-D", data, "-U", "postgres", "-A", "trust", "-E", "UTF8", "--locale=C", **self._user)
            (data / "pg_hba.conf").write_text("local all postgres trust\nlocal all all scram-sha-256\n")
        self._child = subprocess.Popen([self._bin / "postgres", "-D", data, "-k", self._socket, "-c", "listen_addresses="],
                                       stdout=self._log, stderr=self._log, cwd="/", **self._user)
        deadline = time.monotonic() + 60
        while subprocess.run([self._bin / "pg_isready", "-q", "-h", self._socket], check=False).returncode:
            if time.monotonic() > deadline or self._child.poll() is not None:
                raise Trouble(f"the server does not start, see {folder.parent / 'server.log'}")
            time.sleep(0.1)

    def address(self, name):
        return f"postgresql://postgres@/{name}?host={self._socket}"

    def run(self, sql, database):
        self._call("psql", "-d", database, "-qAt", "-c", sql)

    def drop(self, database):
        self.run(f"DROP DATABASE IF EXISTS {database.split('/')[3].split('?')[0]}", self.address("postgres"))

    def close(self):
        self._child.send_signal(signal.SIGINT)
        self._child.wait(60)
        shutil.rmtree(self._socket, ignore_errors=True)

    def _call(self, program, *arguments, **options):
        done = subprocess.run([self._bin / program, *arguments], stdout=self._log, stderr=self._log, cwd="/", check=False, **options)
        if done.returncode:
            raise Trouble(f"{program} failed, see {self._log.name}")
