"""What the radio's trace says that there was, against what the database holds."""

import bisect
import json
from collections import Counter

from wire import frames

STATUS, TEXT, CALL = 1, 2, 3  # types of records
STATUS_MESSAGE, MESSAGES, EMERGENCY_CALL = 0x80, (0x80, 0x81, 0x82), 0xA5
ON_DUTY, OFF_DUTY = "1", "2"  # of the demonstration's settings
_LINK_REQUEST, _TRANSFER = 1, 4
_PAUSE = 2000  # ms between two link requests that are not tries of the same


class Trace:
    """Messages of the radio in order, each once: (ms, frame, octets); and every frame of both: (ms, size)."""

    def __init__(self, path):
        self.messages, self.frames = [], []
        self.links = 0  # set up, tries counted as one
        requested, numbers, before = -_PAUSE - 1, [], []
        for entry, frame, body in frames(path):
            self.frames.append((entry["ms"], len(frame)))
            if body[:1] == bytes([_LINK_REQUEST]):
                if entry["ms"] - requested > _PAUSE:
                    self.links += 1
                requested, numbers = entry["ms"], []
                before = [m[2] for m in self.messages if m[2][0] in MESSAGES][-2:]  # come again unless they were acknowledged
            elif entry["dir"] == "R>D" and body[:1] == bytes([_TRANSFER]) and body[1] not in numbers[-2:]:
                numbers.append(body[1])
                if body[4] in MESSAGES:
                    if body[4:] in before:
                        before.remove(body[4:])
                        continue
                    before = []
                self.messages.append((entry["ms"], frame, body[4:]))

    def line_use(self, begin, end):
        """Octets a second in both directions, which take turns, in that time, milliseconds both."""
        return sum(size for ms, size in self.frames if begin < ms <= end) * 1000 / (end - begin)


class Sent:
    """What the radio put on the line, with the times of its octets."""

    def __init__(self, written):
        self._octets = b"".join(octets for _, octets in written)
        self._ends, place = [], 0
        for when, octets in written:
            place += len(octets)
            self._ends.append((place, when))

    def end_of(self, frame):
        """When the frame's last octet was written, in nanoseconds; nothing when it was not."""
        place = self._octets.find(frame)
        if place < 0:
            return None
        return self._ends[bisect.bisect_left(self._ends, (place + len(frame), 0))][1]


class Keys:
    """Messages and records in the same terms: kind, party, content."""

    def __init__(self, directory, scenario):
        content = json.loads(directory.read_text(encoding="utf-8"))
        self._names = {(m["prefix"], m["ident"]): m["name"] for m in json.loads(scenario.read_text())["fleet"]}
        self._callsigns = {i["ident"]: i["callsign"] for i in content["individuals"]}
        self.by_number = 0  # records that name a party of the directory by its number

    def of_message(self, octets):
        """Nothing for what leaves no record."""
        kind = octets[0]
        if kind not in (*MESSAGES, EMERGENCY_CALL):
            return None
        address, rest = octets[1:4], octets[5 + (octets[4] & 15):]
        party = self._names.get((address[0], int.from_bytes(address[1:], "big")), address.hex())
        if kind == STATUS_MESSAGE:
            return STATUS, party, str(rest[0])
        if kind in MESSAGES:
            return TEXT, party, _text(rest[1:])
        return CALL, party, ""

    def duty(self, messages):
        """Who is on duty after these messages, by callsign."""
        return {party: content == ON_DUTY for kind, party, content in messages if kind == STATUS and content in (ON_DUTY, OFF_DUTY)}

    def of_record(self, record):
        kind, party, content = record
        if party in self._callsigns:
            self.by_number += 1
            party = self._callsigns[party]
        return kind, party, "" if kind == CALL else content


def _text(octets):
    """One octet a character; what fills up the end is left out."""
    return octets.decode("latin-1").rstrip("\0 ")


class Compared:
    """How many are missing, there twice, and out of order."""

    def __init__(self, expected, stored):
        wanted, found = Counter(expected), Counter(stored)
        self.missing = (wanted - found).total()
        self.twice = (found - wanted).total()
        self.out_of_order = (wanted & found).total() - _longest_in_order(expected, stored)


def _longest_in_order(one, other):
    """Length of the longest sequence that both hold, with others between."""
    row = [0] * (len(other) + 1)
    for a in one:
        last = row
        row = [0]
        for place, b in enumerate(other):
            row.append(last[place] + 1 if a == b else max(row[place], last[place + 1]))
    return row[-1]
