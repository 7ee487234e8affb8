"""A console that stores records: killed, with a power cut, and with a disk that is full for a while."""

import re
import subprocess

import power
from place import HELPERS, LIMIT, Broken

STORE = HELPERS / "faults_records"
FEW = 12
FULL_FOR = 25  # changes


def killed(_site, _name, kills):
    """Prints a row for each condition; the number of kills."""
    made = subprocess.run([STORE, "kill", str(kills), "1"], capture_output=True, text=True, timeout=20 * LIMIT)
    if made.returncode != 0:
        raise Broken((made.stdout + made.stderr).strip())
    return sum(int(count) for count in re.findall(r"(\d+) kills", made.stdout))


def _store(site, count, **shim):
    made = subprocess.run([STORE, "store", site.work, str(count)], capture_output=True, text=True, timeout=2 * LIMIT,
                          env=site.environment(**shim))
    return made, site.changes()


def _ids(said, what):
    # What was being said when the power failed was not heard to its end.
    return [line[1:] for line in said.split("\n")[:-1] if line.startswith(what)]


def power_cut(site, _name, count):
    site.work.mkdir()
    site.keep("empty")
    record = site.folder / "record"
    made, _ = _store(site, count, RECORD=record)
    if made.returncode != 0 or len(_ids(made.stdout, "s")) < count:
        raise Broken(f"without a fault: {made.returncode} {made.stderr.strip()}")

    def look(said, at_end):
        said = said.decode()
        if not said.startswith("b"):
            return  # the database is still being made
        stored = [row[0] for row in site.rows("SELECT record_id FROM event")]
        waiting = "".join(path.read_text(errors="replace") for path in (site.work / "spool").glob("*.waiting"))
        lost = [one for one in _ids(said, "s") if one not in stored and one not in waiting]
        if lost:
            raise Broken(f"{len(lost)} of {len(_ids(said, 's'))} records that were safe are lost")
        for file in (site.database, site.database.with_suffix(".kynw")):
            site.check_file(file)

    return power.cuts(record, site.work, site.folder / "empty", look)


def full(site, _name, times):
    """The disk is full for some changes, from different ones on."""
    site.work.mkdir()
    site.keep("empty")
    record = site.folder / "record"
    _store(site, FEW, RECORD=record)
    entries = power.read(record)
    before = next(number for number, entry in enumerate(entries) if entry[0] == "s")
    for i in range(times):
        site.restore("empty")
        made, _ = _store(site, FEW, FULL=before + 1 + 3 * i, FULL_FOR=FULL_FOR)
        stored = [row[0] for row in site.rows("SELECT record_id FROM event ORDER BY event_id")]
        if made.returncode != 0 or stored != _ids(made.stdout, "t"):
            raise Broken(f"full at change {before + 1 + 3 * i}: {len(stored)} of {FEW} are stored; {made.stderr.strip()[-200:]}")
        site.check_sound()
    return times
