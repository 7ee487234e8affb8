"""A PostgreSQL server that is killed, silent, slow or full while veltorkynctl works on it."""

import os
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time
from pathlib import Path

from place import ADMINISTRATOR, LIMIT, PROGRAMS, ROOT, Broken, Run

sys.path.insert(0, str(ROOT / "benchmarks/waiting"))
from proxy import Proxy  # noqa: E402

_CONNECTIONS = 10
_IMPORTED = 200
_PATIENCE, _SILENCE = 60, 5  # seconds


class Server:
    """A server in a folder of its own, with a database "site"; consoles reach it through a proxy. Use as a context."""

    def __init__(self, site):
        self._site = site
        self._data = site.folder / "server"
        self._data.mkdir()
        self._bin = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"))[-1].parent
        self._user = {"user": "postgres", "group": "postgres", "extra_groups": []} if os.geteuid() == 0 else {}
        if self._user:
            shutil.chown(self._data, "postgres", "postgres")
        self._run("initdb", "-D", self._data / "data", "-U", "postgres", "-A", "trust", "-E", "UTF8", "--locale=C", "--no-sync",
                  "--no-instructions")
        (self._data / "data/pg_hba.conf").write_text(
            "local all postgres trust\nlocal all all scram-sha-256\nhost all all 127.0.0.1/32 scram-sha-256\n")
        with socket.create_server(("127.0.0.1", 0)) as free:
            self._port = free.getsockname()[1]
        self._child = None

    def __enter__(self):
        self.start()
        self.proxy = Proxy(self._port)
        self.owner = f"postgresql://postgres@/site?host={self._data}&port={self._port}"
        self.address = f"postgresql://127.0.0.1:{self.proxy.port}/site?sslmode=disable"
        self.tool(f"db create {self.owner} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1]).check_answer()
        return self

    def __exit__(self, *_):
        self.proxy.cut()
        self.kill()

    def _run(self, program, *arguments, check=True):
        return subprocess.run([self._bin / program, *map(str, arguments)], check=check, capture_output=True, text=True,
                              cwd=self._data, **self._user)

    def start(self):
        self._child = subprocess.Popen(
            [self._bin / "postgres", "-D", self._data / "data", "-k", self._data, "-p", str(self._port), "-c",
             "listen_addresses=127.0.0.1", "-c", f"max_connections={_CONNECTIONS}", "-c", "shared_buffers=16MB", "-c",
             "superuser_reserved_connections=2"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=self._data, **self._user)
        deadline = time.monotonic() + _PATIENCE
        while self._run("pg_isready", "-q", "-h", self._data, "-p", self._port, check=False).returncode:
            if time.monotonic() > deadline:
                raise Broken("the server does not start")
            time.sleep(0.05)

    def kill(self):
        self._child.send_signal(signal.SIGQUIT)
        self._child.wait()

    def psql(self, sql):
        return self._run("psql", "-d", self.owner, "-qAt", "-c", sql).stdout.strip()

    def tool(self, command, *lines):
        made = subprocess.run([PROGRAMS / "veltorkynctl", *command.split(), "--password-stdin"], text=True, capture_output=True,
                              input="".join(line + "\n" for line in lines), timeout=2 * LIMIT, env=self._site.environment())
        return Run(made.returncode, made.stdout, made.stderr, 0)

    def import_radios(self):
        file = self._site.table("more", "Van", _IMPORTED, 6000)
        return self.tool(f"directory import {self.address} {file} --as Anna", ADMINISTRATOR[1])

    def check_import(self, made):
        """Wholly or not at all, and as it was said."""
        made.check_answer()
        count = int(self.psql("SELECT count(*) FROM kyn.address"))
        if count not in (0, _IMPORTED) or made.code == 0 and count == 0:
            raise Broken(f"{count} of {_IMPORTED} are there: {made}")

    def empty(self):
        self.psql("DELETE FROM kyn.address")


def bad(site, name, times):
    with Server(site) as server:
        begun = time.monotonic()
        server.check_import(server.import_radios())
        takes = time.monotonic() - begun
        for number in range(times):
            server.empty()
            share = takes * (number + 1) / (times + 1)
            try:
                _CONDITIONS[name](server, share)
            except Broken as broken:
                raise Broken(f"after {share:.2f} s: {broken}") from None
            server.empty()
            made = server.import_radios()
            server.check_import(made)
            if made.code != 0:
                raise Broken(f"afterwards: {made}")
    return times


def _meanwhile(server, seconds, fault):
    waiting = threading.Timer(seconds, fault)
    waiting.start()
    made = server.import_radios()
    waiting.join()
    return made


def _killed(server, seconds):
    made = _meanwhile(server, seconds, server.kill)
    server.start()
    server.check_import(made)


def _cut(server, seconds):
    server.check_import(_meanwhile(server, seconds, server.proxy.cut))


def _silent(server, seconds):
    """For a while; then the connection ends."""
    def fall_silent():
        server.proxy.silent(True)
        time.sleep(_SILENCE)
        server.proxy.cut()
        server.proxy.silent(False)
    server.check_import(_meanwhile(server, seconds, fall_silent))


def _slow(server, _seconds):
    server.proxy.round_trip(300)
    made = server.import_radios()
    server.proxy.round_trip(0)
    server.check_import(made)


def _full(server, _seconds):
    """Nobody but the server's owner gets a connection."""
    taken = [subprocess.Popen([server._bin / "psql", "-d", server.owner, "-qAt", "-c", "SELECT pg_sleep(60)"],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) for _ in range(_CONNECTIONS - 2)]
    try:
        deadline = time.monotonic() + _PATIENCE
        while int(server.psql("SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%pg_sleep(60)%'")) < len(taken):
            if time.monotonic() > deadline:
                raise Broken("the connections could not be taken")
        made = server.import_radios()
        made.check_answer()
        if made.code == 0:
            raise Broken("there was a connection left")
    finally:
        for one in taken:
            one.kill()
            one.wait()
        server.psql("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE query LIKE 'SELECT pg_sleep%'")


_CONDITIONS = {"killed": _killed, "cut": _cut, "silent": _silent, "slow": _slow, "full": _full}
