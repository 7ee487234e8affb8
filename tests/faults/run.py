#!/usr/bin/env python3
"""Injects faults into the real programs and looks whether what must hold does.

    tests/faults/run.py [WORD...]    the faults of faults.tsv, or those whose line has one of these words

Prints a row for each: how often the fault was injected, how long that took, and "held", or "BROKEN" and how. Ends with 1 when
anything is broken."""

import concurrent.futures
import sys
import time
from pathlib import Path

import files
import interrupted
import radio
import records
import server
from place import OLD_SCHEMA, Broken, Site

TABLE = Path(__file__).with_name("faults.tsv")
INJECTORS = {
    "kill_commands": interrupted.killed, "full_commands": interrupted.full, "power_commands": interrupted.power_cut,
    "kill_records": records.killed, "full_records": records.full, "power_records": records.power_cut,
    "damaged": files.damaged, "exchanged": files.exchanged, "read_only": files.read_only, "locked": files.locked,
    "together": files.together, "radio": radio.bad, "server": server.bad,
}
AT_ONCE = 2
WITHOUT_SITE = ("kill_records", "full_records", "power_records", "radio", "server")


def inject(line):
    """How often, what became of it, and how many seconds it took."""
    injector, name, times = line[:3]
    begun = time.monotonic()
    try:
        with Site() as site:
            if injector not in WITHOUT_SITE:
                site.make()
                site.make_old(OLD_SCHEMA)
            return INJECTORS[injector](site, name, int(times)), "held", time.monotonic() - begun
    except Broken as found:
        return "", f"BROKEN: {found}", time.monotonic() - begun


def main():
    lines = [line.split("\t") for line in TABLE.read_text(encoding="utf-8").splitlines() if line and not line.startswith("#")]
    wanted = [line for line in lines if len(sys.argv) < 2 or any(word in "\t".join(line) for word in sys.argv[1:])]
    broken = 0
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as lanes:
        for (_, _, _, fault, holds), (count, verdict, seconds) in zip(wanted, lanes.map(inject, wanted)):
            broken += verdict != "held"
            print(f"{count:>5}  {seconds:5.0f} s  {fault}\n{'':15}{holds}: {verdict}", flush=True)
    print(f"{len(wanted) - broken} of {len(wanted)} held")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
