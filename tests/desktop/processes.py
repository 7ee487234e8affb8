"""The processes of one desktop: started with a private environment, ended by their ids whatever happens."""

import ctypes
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_LIBC = ctypes.CDLL(None, use_errno=True)
_REST = 2.0  # seconds that a process may take to end when asked to

_PASSED_ON = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS")


class Trouble(Exception):
    """The desktop cannot be had here; says why."""


def _die_with_parent():
    _LIBC.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


def _children_of(pid):
    """All descendants of the process, youngest generation last."""
    parents = {}
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                fields = (entry / "stat").read_text().rsplit(")", 1)[1].split()
            except OSError:
                continue
            parents.setdefault(int(fields[1]), []).append(int(entry.name))
    found, open_ones = [], [pid]
    while open_ones:
        for child in parents.get(open_ones.pop(0), []):
            found.append(child)
            open_ones.append(child)
    return found


class Processes:
    """Home folder, environment and children. Use as a context: on leaving nothing of it is left."""

    def __init__(self):
        _LIBC.prctl(_PR_SET_CHILD_SUBREAPER, 1)
        self._clients = []
        self.folder = Path(tempfile.mkdtemp(prefix="veltorkyn-desktop-"))
        self.environment = {name: os.environ[name] for name in _PASSED_ON if name in os.environ}
        self.environment.setdefault("PATH", "/usr/local/bin:/usr/bin:/bin")
        self.environment.update(LANG="C.UTF-8")
        for name, folder in (("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "data"),
                             ("XDG_STATE_HOME", "state"), ("XDG_CACHE_HOME", "cache"),
                             ("XDG_RUNTIME_DIR", "runtime"), ("TMPDIR", "tmp")):
            path = self.folder / folder
            path.mkdir(mode=0o700)
            self.environment[name] = str(path)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end_all()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, *command, log=None, **options):
        """A child that dies with this process. Its output goes to the log, a name inside the folder."""
        if shutil.which(str(command[0])) is None:
            raise Trouble(f"{command[0]} is not installed")
        output = open(self.folder / (log or Path(command[0]).name + ".log"), "ab")
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", output)
        options.setdefault("stderr", output)
        with output:
            return subprocess.Popen([str(part) for part in command], env=self.environment, cwd=self.folder,
                                    preexec_fn=_die_with_parent, **options)

    def start_announced(self, *command, limit=20):
        """A child that writes a line to the file descriptor which stands in the command as {fd}; that line."""
        reader, writer = os.pipe()
        try:
            child = self.start(*[str(part).replace("{fd}", str(writer)) for part in command], pass_fds=(writer,))
        finally:
            os.close(writer)
        line = b""
        deadline = time.monotonic() + limit
        with os.fdopen(reader, "rb", buffering=0) as pipe:
            while not line.endswith(b"\n"):
                ready, _, _ = select.select([pipe], [], [], max(0, deadline - time.monotonic()))
                octets = pipe.read(1) if ready else b""
                if not octets:
                    raise Trouble(f"{command[0]} did not start")
                line += octets
        return child, line.decode().strip()

    def end(self, child):
        if child.poll() is None:
            child.terminate()
            try:
                child.wait(_REST)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()

    def start_client(self, *command, **options):
        """A program under test: one that end_clients ends."""
        child = self.start(*command, **options)
        self._clients.append(child)
        return child

    def end_clients(self):
        """Ends the programs under test; what they kept in the folder is gone, too."""
        for child in self._clients:
            child.kill()
            child.wait()
        self._clients.clear()
        for path in self.folder.iterdir():
            if path.is_file() and path.suffix != ".log":
                path.unlink()

    def end_all(self):
        for sign in (signal.SIGTERM, signal.SIGKILL):
            deadline = time.monotonic() + _REST
            for pid in _children_of(os.getpid()):
                try:
                    os.kill(pid, sign)
                except ProcessLookupError:
                    pass
            while time.monotonic() < deadline:
                try:
                    while os.waitpid(-1, os.WNOHANG)[0]:
                        pass
                except ChildProcessError:
                    return
                time.sleep(0.02)
