"""What the bench and the shim in the programs share: the switches, and what the shim notes."""

import mmap
import struct
import time

_SIZE = 4096
_WORTH_NOTING = 20_000_000  # ns
_FAIL, _EVERYWHERE, _FLUSH, _BLOCK, _BUSY, _LONGEST = 0, 4, 8, 12, 16, 24  # places in Shim.cpp's Control


class Marks:
    def __init__(self, folder):
        self._control, self._notes = folder / "control", folder / "notes"
        self._control.write_bytes(bytes(_SIZE))
        self._notes.write_text("")
        with open(self._control, "r+b") as file:
            self._memory = mmap.mmap(file.fileno(), _SIZE)

    def environment(self, shim, database):
        return {"LD_PRELOAD": str(shim), "WAITING_CONTROL": str(self._control), "WAITING_NOTES": str(self._notes),
                "WAITING_DATABASE": str(database)}

    def environment_of_radio(self, shim):
        return {"LD_PRELOAD": str(shim), "WAITING_NOTES": str(self._notes), "WAITING_LINE": "1"}

    def fail(self, reason, everywhere=False):
        """Changes of the database's files, or of all files, fail with this errno; 0: no more."""
        self._put("i", _EVERYWHERE, everywhere)
        self._put("i", _FAIL, reason)

    def slow_flushes(self, milliseconds):
        self._put("i", _FLUSH, milliseconds)

    def block(self, seconds):
        self._put("i", _BLOCK, int(seconds * 1000))

    def forget_stalls(self):
        self._put("q", _LONGEST, 0)

    def longest_stall(self, now):
        """Milliseconds; one that still lasts counts as far as it has come."""
        since, longest = struct.unpack_from("qq", self._memory, _BUSY)
        return max(longest, now - since if since else 0) / 1e6

    def rest_since(self):
        """When the last stall ended that was long enough to be noted, in nanoseconds of CLOCK_MONOTONIC; nothing during one."""
        since, = struct.unpack_from("q", self._memory, _BUSY)
        if since and time.monotonic_ns() - since > _WORTH_NOTING:
            return None
        return max((int(fields[1]) for fields in self._lines() if fields[0] == "stall"), default=0)

    def bells(self):
        """Nanoseconds of CLOCK_MONOTONIC."""
        return [int(fields[1]) for fields in self._lines() if fields[0] == "bell"]

    def line(self):
        """What the radio has put on the line: (nanoseconds, octets)."""
        return [(int(fields[1]), bytes.fromhex(fields[2])) for fields in self._lines() if fields[0] == "line"]

    def _lines(self):
        fields = (line.split() for line in self._notes.read_text().splitlines())
        return [f for f in fields if len(f) == 3]

    def _put(self, kind, place, value):
        struct.pack_into(kind, self._memory, place, value)
