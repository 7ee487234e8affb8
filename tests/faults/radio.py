"""A radio that does what no radio may do, on a TCP port, and the program that has to bear it: veltorkynctl radio check."""

import json
import random
import resource
import socket
import subprocess
import threading
import time

from place import LIMIT, PROGRAMS, Broken

MOST_MEMORY = 1 << 30  # octets of addresses
TYPES = (0x80, 0x81, 0x82, 0xA4, 0x86, 0xA6, 0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xC0, 0xC4, 0xC5, 0xD0, 0xD4, 0xE0, 0xE4, 0xE5, 0x00, 0xFF)
LONGEST = 300
_CROSSING, _REST = 0.08, 10.0  # seconds
FLOOD = 20000  # frames at most


def _remainder(value):
    for _ in range(8):
        value = value >> 1 ^ (0xA001 if value & 1 else 0)
    return value


_REMAINDERS = [_remainder(octet) for octet in range(256)]


def frame(body):
    """MAP27 v1.5, 4.2."""
    check = 0xFFFF
    for octet in body + b"\x10\x03":
        check = check >> 8 ^ _REMAINDERS[(check ^ octet) & 0xFF]
    check ^= 0xFFFF
    return b"\x16\x10\x02" + body.replace(b"\x10", b"\x10\x10") + b"\x10\x03" + check.to_bytes(2, "little")


class _Line:
    """The radio's end of one connection: sets the link up, acknowledges, and hands what it hears to the manner."""

    def __init__(self, connection, chance, state):
        self.state = state  # of the manner, over all connections
        self.sent = 0  # since the link was up, frames or pieces
        self._connection = connection
        self._connection.settimeout(0.2)
        self._left = b""
        self._answered = 0.0
        self._number = 0
        self.chance = chance

    def send(self, body):
        self.raw(frame(bytes(body)))

    def raw(self, octets):
        self._connection.sendall(octets)
        self.sent += 1

    def acknowledge(self, transfer):
        """With the number that is awaited next."""
        self.send((2, (transfer[1] + 1) % 256, 1, 0))

    def message(self, octets, number=None):
        self._number = (self._number + 1) % 256
        self.send(bytes((4, self._number if number is None else number, 1, 0)) + octets)

    def bodies(self):
        """What the console has sent; empty after a while without anything. A request for a link is answered. Raises OSError when the
        console is gone."""
        try:
            octets = self._connection.recv(65536)
        except TimeoutError:
            return []
        if not octets:
            raise ConnectionResetError
        found, self._left = _bodies(self._left + octets)
        # Requests that cross are answered once.
        if any(body[:1] == b"\x01" for body in found) and time.monotonic() - self._answered > _CROSSING:
            self._answered = time.monotonic()
            self.send(b"\x01\x0e\x01\x01")
            self.send(b"\x02\x01\x01\x00")
            self._number = 0
        return found

    def link(self):
        """Until the console has sent its first message over it, which is acknowledged."""
        while True:
            for body in self.bodies():
                if body[:1] == b"\x04":
                    self.acknowledge(body)
                    self.sent = 0
                    return

    def octets(self, count):
        return self.chance.randbytes(count)


def _bodies(octets):
    found = []
    while (begin := octets.find(b"\x16\x10\x02")) >= 0:
        at, body = begin + 3, bytearray()
        while at + 1 < len(octets) and octets[at:at + 2] != b"\x10\x03":
            at += 2 if octets[at:at + 2] == b"\x10\x10" else 1
            body.append(octets[at - 1])
        if at + 3 >= len(octets):
            return found, octets[begin:]
        found.append(bytes(body))
        octets = octets[at + 4:]
    return found, octets[-2:]


# Each of these is a radio whose link is up. It ends with OSError, when the console goes or when it has done all that it wanted.

def lengths(line):
    """Each kind of message with each length, sound otherwise; what is asked is answered so, too."""
    while True:
        is_free = False
        for body in line.bodies():
            if body[:1] == b"\x04":
                line.acknowledge(body)
            is_free = is_free or body[:1] == b"\x02"
        if is_free:
            kind, size = divmod(line.state.get("next", 0), LONGEST + 1)
            if kind == len(TYPES):
                raise ConnectionResetError
            line.message((bytes((TYPES[kind],)) + line.octets(size))[:size])
            line.state["next"] = line.state.get("next", 0) + 1


def floods(line):
    for number in range(FLOOD):
        line.message(b"\x80\x01" + (number % 200 + 1).to_bytes(2, "big") + b"\x00" + bytes((number % 32,)))
    read_by = time.monotonic() + _REST
    while time.monotonic() < read_by:
        line.bodies()
    raise ConnectionResetError


def babbles(line):
    while True:
        line.raw(line.octets(4096))
        line.bodies()


def lies(line):
    """Everything that is asked is answered with something else, and acknowledged twice or with a wrong number."""
    while True:
        for body in line.bodies():
            if body[:1] == b"\x04":
                line.send((2, (body[1] + line.chance.choice((1, 1, 1, 0, 128))) % 256, line.chance.choice((0, 1, 255)), 0))
                line.message(bytes((line.chance.choice(TYPES),)) + line.octets(line.chance.randint(0, 40)))


def silent(line):
    while True:
        line.bodies()


def disorder(line):
    """Numbers as they come, the credit of nobody, a new link in between."""
    while True:
        for body in line.bodies():
            line.send((2, line.chance.randint(0, 255), line.chance.randint(0, 255), 0))
        line.message(b"\x80" + line.octets(5), line.chance.randint(0, 255))
        if line.chance.random() < 0.05:
            line.send(b"\x01" + line.octets(3))


def half(line):
    """The port goes in the middle of a frame."""
    octets = frame(b"\x04\x01\x01\x00\x80\x01\x00\x05\x00\x03")
    line.raw(octets[:line.chance.randint(1, len(octets) - 1)])
    raise OSError("pulled")


MANNERS = {"lengths": lengths, "floods": floods, "babbles": babbles, "lies": lies, "silent": silent, "disorder": disorder,
           "half": half}


def _serve(server, manner, seed, ended, sent, state):
    chance = random.Random(seed)
    while not ended.is_set():
        try:
            connection, _ = server.accept()
        except TimeoutError:
            continue
        with connection:
            line = _Line(connection, chance, state)
            try:
                line.link()
                manner(line)
            except OSError:
                sent.append(line.sent)


def _limits():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))


def bad(site, name, times):
    """How many frames it has sent, or connections without one it has made, over a link that was up."""
    sent, state = [], {}
    for seed in range(times):
        with socket.create_server(("127.0.0.1", 0)) as server:
            server.settimeout(0.2)
            ended = threading.Event()
            radio = threading.Thread(target=_serve, args=(server, MANNERS[name], seed, ended, sent, state))
            radio.start()
            try:
                _check(site, server.getsockname()[1])
            finally:
                ended.set()
                radio.join()
    if not any(sent) and name != "silent":
        raise Broken("the radio has come to nothing")
    return max(sum(sent), len(sent))


def _check(site, port):
    command = [PROGRAMS / "veltorkynctl", "radio", "check", "--json", "--watch", "2", f"tcp://127.0.0.1:{port}"]
    try:
        made = subprocess.run(command, capture_output=True, text=True, errors="replace", timeout=8 * LIMIT, preexec_fn=_limits,
                              env=site.environment())
    except subprocess.TimeoutExpired:
        raise Broken("it does not come to an end") from None
    if made.returncode not in (0, 1):
        raise Broken(f"no good end: {made.returncode} {made.stderr[-200:]}")
    try:
        json.loads(made.stdout)
    except ValueError:
        if not made.stderr.strip():
            raise Broken(f"neither a report nor a reason: {made.stdout[-200:]}") from None
