"""What is left of files when the power fails: the changes that the shim has recorded, done again up to a moment, of which what was
not flushed is there wholly, in part or not at all."""

import random
import shutil
import struct
from dataclasses import dataclass, field
from pathlib import Path

_HEAD = struct.Struct("iiQqq")  # Entry in Shim.cpp
_SECTOR = 512
WAYS = 4  # in which what was not flushed is lost


def read(path):
    """(kind, file, place, path, octets) of each change."""
    octets, at, found = path.read_bytes(), 0, []
    while at < len(octets):
        kind, path_size, file, place, size = _HEAD.unpack_from(octets, at)
        at += _HEAD.size
        name = octets[at:at + path_size].decode()
        at += path_size
        found.append((chr(kind), file, place, name, octets[at:at + size]))
        at += size
    return found


@dataclass
class _File:
    safe: bytearray = field(default_factory=bytearray)
    changes: list = field(default_factory=list)  # (place, octets), or (size, None) when it was cut

    def content(self, chosen):
        made = bytearray(self.safe)
        for place, octets in chosen:
            if octets is None:
                made[place:] = bytes(max(0, place - len(made)))
            else:
                made.extend(bytes(max(0, place - len(made))))
                made[place:place + len(octets)] = octets
        return made

    def flush(self):
        self.safe = self.content(self.changes)
        self.changes.clear()


_FOLDER = 0  # in the place of a file


class Disk:
    """The file system in a folder, from its state at the beginning on."""

    def __init__(self, folder, begin):
        self._folder = Path(folder)
        self._files = {}
        self._inodes = {}  # to files
        self._safe_names, self._names = {}, []  # path to file; changes of names, each some (path, file or None) at once
        for path in sorted(Path(begin).rglob("*")):
            self._safe_names[str(self._folder / path.relative_to(begin))] = \
                _FOLDER if path.is_dir() else self._new(_File(bytearray(path.read_bytes())))

    def change(self, kind, inode, place, path, octets):
        names = self._names_after(len(self._names))
        if kind == "o":  # one that is there
            self._inodes[inode] = names[path]
        elif kind in "cu":
            self._inodes[inode] = self._new(_File())
        if kind in "cl":
            self._names.append([(path, self._inodes[inode])])
        elif kind == "m":
            self._names.append([(path, _FOLDER)])
        elif kind == "d":
            self._names.append([(path, None)])
        elif kind == "r":
            source, target = path[:place], path[place:]
            moved = [one for one in names if one == source or one.startswith(source + "/")]
            self._names.append([(one, None) for one in moved] + [(target + one[len(source):], names[one]) for one in moved])
        elif kind == "w":
            self._file(inode).changes.append((place, octets))
        elif kind == "t":
            self._file(inode).changes.append((place, None))
        elif kind == "f":
            is_folder = path == str(self._folder) or names.get(path) == _FOLDER
            if not is_folder:
                self._file(inode).flush()
            # With a file that is new its name gets to the disk, and with that what was done to names before.
            if is_folder or self._inodes[inode] not in self._safe_names.values():
                self._safe_names = names
                self._names.clear()

    def _new(self, file):
        self._files[len(self._files) + 1] = file
        return len(self._files)

    def _file(self, inode):
        return self._files[self._inodes[inode]]

    def _names_after(self, count):
        names = dict(self._safe_names)
        for together in self._names[:count]:
            for path, file in together:
                if file is None:
                    names.pop(path, None)
                else:
                    names[path] = file
        return names

    def put_down(self, way, chance):
        """Writes the folder as it would be found: way 0 nothing that was not flushed, 1 all of it, else some."""
        shutil.rmtree(self._folder, ignore_errors=True)
        self._folder.mkdir(mode=0o700)
        count = {0: 0, 1: len(self._names)}.get(way, chance.randint(0, len(self._names)))
        for path, file in sorted(self._names_after(count).items()):
            if file == _FOLDER:
                Path(path).mkdir(mode=0o700)
                continue
            one = self._files[file]
            Path(path).write_bytes(one.content({0: [], 1: one.changes}.get(way) if way < 2 else _some(one.changes, chance)))
            Path(path).chmod(0o600)


def _some(changes, chance):
    """Some of them, some of those torn at a sector."""
    chosen = []
    for place, octets in changes:
        luck = chance.random()
        if octets is not None and luck < 0.3 and len(octets) > _SECTOR:
            chosen.append((place, octets[:_SECTOR * chance.randint(1, len(octets) // _SECTOR)]))
        elif luck < 0.7:
            chosen.append((place, octets))
    return chosen


def cuts(record, folder, begin, look, seed=1):
    """Puts the folder down as it is at each flush and at the end, and before; calls look(said, at_end) with what was said until then."""
    chance = random.Random(seed)
    disk, said, count = Disk(folder, begin), b"", 0
    entries = read(record)
    for number, (kind, inode, place, path, octets) in enumerate(entries):
        if kind == "s":
            said += octets
            continue
        if kind in "fdr":  # what was said last holds until the next of these
            for way in range(WAYS):
                disk.put_down(way, chance)
                look(said, False)
                count += 1
        disk.change(kind, inode, place, path, octets)
    for way in range(WAYS):
        disk.put_down(way, chance)
        look(said, True)
        count += 1
    return count
