"""Files that are cut, overwritten, exchanged, taken away, read-only or locked, and databases that two use at once."""

import shutil
import sqlite3
import time
from concurrent.futures import ThreadPoolExecutor

from place import ADMINISTRATOR, OPERATOR, RADIOS, RECORDS, Broken

_NOBODY = 65534
SOME = 5
_COMMANDS = (("db check {}", ()), ("log show {} --last 1 --as Anna", ADMINISTRATOR[1:]),
             ("user list {} --as Anna", ADMINISTRATOR[1:]))


def _cut(share):
    def spoil(file):
        octets = file.read_bytes()
        file.write_bytes(octets[:int(len(octets) * share)])
    return spoil


def _overwrite(place, octets):
    def spoil(file):
        content = bytearray(file.read_bytes())
        place_ = min(place, len(content) - 1)
        content[place_:place_ + len(octets)] = octets
        file.write_bytes(content)
    return spoil


_DAMAGE = [_cut(share) for share in (0, 0.001, 0.1, 0.3, 0.5, 0.7, 0.9, 0.99)]
_DAMAGE += [_overwrite(place, b"\xff" * 64) for place in (0, 16, 100, 4096, 8192, 20000, 40000)]
_DAMAGE += [_overwrite(0, b"no database " * 400), lambda file: file.unlink(), lambda file: (file.unlink(), file.mkdir())]


def damaged(site, name, _times):
    """Each command gives an answer, and leaves the files as they are."""
    count = 0
    for number, spoil in enumerate(_DAMAGE):
        site.restore("made")
        spoil(site.database.with_suffix(f".{name}"))
        before = _content_of_files(site)
        for words, lines in _COMMANDS:
            try:
                site.tool(words, *lines).check_answer()
                if _content_of_files(site) != before:
                    raise Broken("what was left of the files is not what it was")
            except Broken as broken:
                raise Broken(f"damage {number}, {words}: {broken}") from None
            count += 1
    return count


def _content_of_files(site):
    return {path.name: path.read_bytes() for path in site.work.iterdir() if path.is_file()}


def exchanged(site, _name, _times):
    """The accounts' file of another database, and the database's file in its place: nobody is let in by these."""
    site.restore("made")
    other = site.work / "other.kyndb"
    site.must(f"db create {other} --admin Anna", ADMINISTRATOR[1], ADMINISTRATOR[1])
    accounts = site.database.with_suffix(".kynw")
    site.keep("exchange")
    count = 0
    for source, target in ((other.with_suffix(".kynw"), accounts), (other, site.database), (site.database, accounts),
                           (accounts, site.database)):
        site.restore("exchange")
        shutil.copy(source, target)
        for words, lines in _COMMANDS[1:]:
            made = site.tool(words, *lines)
            made.check_answer()
            if made.code == 0:
                raise Broken(f"{source.name} in the place of {target.name}: {words} was let in")
            count += 1
    return count


def read_only(site, _name, _times):
    """Files and folder that the account of the system may read only: a reason, and not a change."""
    count = 0
    for folder_mode, file_mode in ((0o755, 0o444), (0o755, 0o644), (0o711, 0o600)):
        site.restore("made")
        site.folder.chmod(0o755)
        site.work.chmod(folder_mode)
        for path in site.work.iterdir():
            if path.is_file():
                path.chmod(file_mode)
        before = _content_of_files(site)
        for words, lines in (*_COMMANDS, ("user password {} Oliver --as Anna", (ADMINISTRATOR[1], "x-demo-x")), ("db migrate {}", ())):
            made = site.tool(words, *lines, user=_NOBODY)
            made.check_answer()
            if _content_of_files(site) != before:
                raise Broken(f"{words} has changed what may only be read: {made}")
            count += 1
    return count


def locked(site, _name, times):
    """Another program keeps the database: a change is refused with a reason, within the time to be expected, and done later."""
    for number in range(times):
        site.restore("made")
        holder = sqlite3.connect((site.database, site.database.with_suffix(".kynw"))[number % 2])
        holder.execute("BEGIN EXCLUSIVE")
        begun = time.monotonic()
        made = site.tool("user password {} Oliver --as Anna", ADMINISTRATOR[1], "oliver-anew")
        took = time.monotonic() - begun
        holder.rollback()
        holder.close()
        made.check_answer()
        if made.code == 0 or took > 30:
            raise Broken(f"locked, after {took:.0f} s: {made}")
        site.must("user password {} Oliver --as Anna", ADMINISTRATOR[1], "oliver-anew")
    return times


def together(site, _name, times):
    """Several change, back up, export and ask for everything at once."""
    site.restore("made")
    done = []

    def work(lane):
        for number in range(times):
            file = site.table(f"lane{lane}", f"Lane {lane} {number}", SOME, 10000 + 1000 * lane + SOME * number)
            for words, lines in ((f"directory import {{}} {file} --as Anna", ADMINISTRATOR[1:]),
                                 (f"user add {{}} User{lane}n{number} --as Anna", (ADMINISTRATOR[1], "some-demo")),
                                 (f"db backup {{}} {site.out}/{lane} --as Anna", ADMINISTRATOR[1:]),
                                 ("log show {} --last 5 --as Oliver", OPERATOR[1:])):
                made = site.tool(words, *lines)
                made.check_answer()
                if made.code == 0:
                    done.append(words.split()[0])

    with ThreadPoolExecutor(3) as lanes:
        list(lanes.map(work, range(3)))
    there = (site.rows("SELECT count(*) FROM account", site.database.with_suffix(".kynw"))[0][0] - 2,
             site.rows("SELECT count(*) FROM address")[0][0] - RADIOS, site.rows("SELECT count(*) FROM event")[0][0])
    if there != (done.count("user"), SOME * done.count("directory"), RECORDS):
        raise Broken(f"accounts, radios, records: {there}, done: {done.count('user')}, {done.count('directory')} x {SOME}")
    if len(done) < 6 * times:
        raise Broken(f"only {len(done)} of {12 * times} commands could be done")
    site.check_sound()
    return 12 * times
