"""Where the instructions go, as callgrind counts them: they repeat, whatever else the machine does."""

import os
import re
import subprocess
import tempfile
from pathlib import Path

import programs

BUILD = Path(__file__).resolve().parents[2] / "build"
SUBJECTS = {"start": None, "message": "ProfiledMessage", "reload": "ProfiledReload", "directory": "ProfiledDirectory",
            "logon": "ProfiledLogon"}
SHOWN = 25
LINE = re.compile(r"^\s*([\d,]+) \(\s*([\d.]+)%\)\s+(\S+?):(.+?) \[(.+)\]$")
OURS = re.compile(r"bin/veltorkyn$|bench_profile$")


def run(words, database):
    """Prints each subject's instructions and the functions of ours that most of them are in, with what these call."""
    for subject, function in SUBJECTS.items():
        if words and subject not in words:
            continue
        with tempfile.TemporaryDirectory() as folder:
            counts = Path(folder) / "counts"
            if function is None:
                _start(counts)
            else:
                _call(["--collect-atstart=no", f"--toggle-collect={function}", f"--callgrind-out-file={counts}",
                       BUILD / "bench/bench_profile", subject, *([database] if subject in ("directory", "logon") else [])],
                      {**os.environ, "QT_QPA_PLATFORM": "offscreen"})
            _show(subject, counts)
    return 0


def _start(counts):
    """The real program until its first window is painted."""
    with programs.Processes() as processes:
        programs.display(processes)
        site = programs.Console(processes, BUILD / "bin", programs.DIRECTORY)
        site.make_site("socket://127.0.0.1:9")
        site.set("prefs", "logoncount", 0)
        _call([f"--callgrind-out-file={counts}", BUILD / "bin/veltorkyn", "--settings", site.settings],
              {**processes.environment, "LD_PRELOAD": BUILD / "bench/first_paint.so",
               "FIRST_PAINT_FILE": processes.folder / "first", "FIRST_PAINT_END": "1"})


def _call(command, environment):
    subprocess.run(["valgrind", "--tool=callgrind", "-q", *command], env=environment, check=True, timeout=1800,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def _show(subject, counts):
    text = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", counts], capture_output=True, text=True,
                          check=True).stdout
    total = re.search(r"([\d,]+) .*PROGRAM TOTALS", text)
    print(f"{subject}: {total.group(1) if total else '?'} instructions")
    shown = 0
    for line in text.splitlines():
        found = LINE.match(line)
        if found and OURS.search(found[5]) and not found[4].startswith(("main", "Profiled", "(below", "0x")):
            print(f"  {found[1]:>16} {found[2]:>6} %  {found[4][:140]}")
            shown += 1
            if shown == SHOWN:
                return
