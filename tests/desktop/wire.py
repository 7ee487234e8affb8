"""The simulated radio and what went over its line."""

import json
import queue
import re
import subprocess
import threading

# What the console sends, by its first octets (MAP27 v1.5, section 5).
NAMES = {
    "transmit on": "B2 03", "transmit off": "B2 02", "answer": "B2 02", "refuse": "B2 00",
    "hang up": "86 .. .. .. 07",
    "cancel": "A6 .. .. .. 08", "status": "80", "text": "8[12]", "call": "A4", "any": "(?!B0)",
}


class Radio:
    """veltorkyn-radio with commands on its standard input and a trace that is read while it grows."""

    def __init__(self, processes, program, scenario, speed=0):
        self.port = processes.folder / "radio"
        self._trace = processes.folder / "wire.jsonl"
        self._trace.unlink(missing_ok=True)
        self._processes = processes
        self._mark = 0
        self._answers = queue.Queue()
        self._child = processes.start_client(program, "--pty", self.port, "--scenario", scenario, "--trace", self._trace,
                                      "--speed", speed, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        threading.Thread(target=self._read, daemon=True).start()
        self._answer(10)

    def tell(self, command):
        """Gives a command and hands back the last line of its answer."""
        while not self._answers.empty():
            self._answers.get_nowait()
        self._child.stdin.write(command.encode() + b"\n")
        self._child.stdin.flush()
        return self._answer(5)

    def mark(self):
        """From here on frames are counted."""
        self._mark = len(self._messages())

    def sent(self, what):
        """The messages of the console since the mark whose hexadecimal text begins with the pattern or its name."""
        pattern = re.compile(NAMES.get(what, what))
        return [text for text in self._messages()[self._mark:] if pattern.match(text)]

    def end(self):
        self._processes.end(self._child)

    def _read(self):
        for line in self._child.stdout:
            self._answers.put(line.decode().strip())

    def _answer(self, limit):
        while True:
            try:
                line = self._answers.get(timeout=limit)
            except queue.Empty:
                raise ValueError("the radio does not answer") from None
            if line.startswith(("ok", "error", "ready")):
                return line

    def _messages(self):
        """Every message to the radio once, also when the link had to repeat it."""
        found = []
        last = None
        for entry, _, body in frames(self._trace) if self._trace.exists() else []:
            if body[:1] == b"\x01":
                last = None
            if entry["dir"] != "D>R" or body[:1] != b"\x04" or body[1:2] == last:
                continue
            last = body[1:2]
            found.append(body[4:].hex(" ").upper())
        return found


def frames(trace):
    """Of each line with a frame: the entry, the frame's octets, and what they carry."""
    for line in trace.read_text().splitlines():
        try:
            entry = json.loads(line)
        except ValueError:
            continue  # still being written
        if "frame" in entry:
            octets = bytes.fromhex(entry["frame"].replace(" ", ""))
            yield entry, octets, _body(octets)


def _body(frame):
    """The octets between start and end flag, with doubled ones halved."""
    begin = frame.find(b"\x16\x10\x02")
    inside = frame[begin + 3:-4] if begin >= 0 else b""
    return inside.replace(b"\x10\x10", b"\x10")
