"""What the fuzzers begin with: the vectors, conversations and tables of tests/data and the files of src/resources, each
in the form that its fuzzer reads."""

import json
import pathlib
import re
import struct

ROOT = pathlib.Path(__file__).resolve().parents[2]
DATA = ROOT / "tests" / "data"
RESOURCES = ROOT / "src" / "resources"


def lines_of(path):
    return [line for line in path.read_text(encoding="utf-8", errors="surrogateescape").splitlines() if line.strip()]


def counted(octets):
    return bytes([min(len(octets), 255)]) + octets[:255]


def word(number):
    return struct.pack(">H", min(number, 0xFFFF))


def conversations(name):
    """The steps of each conversation, without remarks and expectations."""
    script = []
    for line in lines_of(DATA / name):
        if line.startswith("=="):
            if script:
                yield script
            script = []
        elif line.startswith("    ") and not line.strip().startswith((">", "!")):
            script.append(re.split(r" => |  #", line.strip())[0].strip())
    yield script


def vectors():
    return json.loads((DATA / "map27-vectors.json").read_text(encoding="utf-8"))


def all_frames():
    found = vectors()
    for vector in found["frames"] + found["messages"]:
        text = vector.get("frame") or vector.get("frame_LT_ns1_ar1")
        if text:
            yield bytes.fromhex(text), vector.get("direction", "D->R")


def hex_of(text):
    return bytes.fromhex("".join(re.findall(r"\b[0-9A-F]{2,}\b", text)))


def link_step(step):
    name, _, rest = step.partition(" ")
    if name == "up":
        return b"\0" + b"".join(b"\2" + counted(bytes(body)) for body in ((1, 14, 1, 1), (2, 1, 1, 0)) for _ in (1, 2))
    if name == "+":
        return b"\5" + word(int(rest))
    if name == "reset":
        return b"\x08" + word(int(rest))
    plain = {"start": b"\0", "stop": b"\1", "hold": b"\x09\1", "release": b"\x09\0"}
    if name in plain:
        return plain[name]
    octets = {"<": b"\2", "noise": b"\3", "send": b"\7"}
    return octets[name] + counted(hex_of(rest)) if name in octets else b""


def operation(number, address="2/31", rest=b""):
    prefix, _, ident = address.partition("/")
    return bytes([132, number, int(prefix) & 0x7F]) + word(int(ident or 0)) + rest


def terminal_step(step):
    words = step.split(" ")
    if words[0] == "<":
        return b"\0" + counted(hex_of(step))
    if words[0] == "+":
        return b"\x64" + bytes([min(int(words[1]) // 10, 255)])
    if words[0] == "status" and words[2].isdigit():
        return operation(0, words[1], bytes([int(words[2]) & 0xFF]))
    if words[0] in ("text7", "text8") and len(words) > 2:
        return operation(1 if words[0] == "text7" else 241, words[1], counted(" ".join(words[2:]).encode()))
    if words[0] == "call":
        flags = (16 if "emergency" in words else 0) + (0 if "oneway" in words else 64)
        return operation((3 - flags) % 15 + flags if flags < 200 else 3, words[1])
    numbers = {"answer": 5, "refuse": 6, "clear": 8, "cancel": 10, "probe": 12, "reset": 14}
    if words[0] in numbers:
        return operation(numbers[words[0]])
    return operation(22) if words[0] == "ptt" else b""


def own_numbering(prefix, ident, units, groups, digits=0):
    return bytes([1, prefix]) + b"".join(word(number) for number in (ident, *units, *groups)) + bytes([digits])


def numbers(table, header):
    for line in lines_of(DATA / "addressing" / table):
        cells = line.split("\t")
        if len(cells) > 3 and not line.startswith("#"):
            address = (int(cells[2]), int(cells[3])) if cells[3].isdigit() else (0, 1)
            gateway = b"\5\7" if address[1] in (8101, 8102) else b""
            yield header + bytes([address[0]]) + word(address[1]) + gateway + cells[1].encode(errors="surrogateescape")


def fleet(kind, prefix, base, highest):
    return bytes([kind, prefix]) + word(base) + word(highest - base)


def trace_lines():
    yield '{"ms":0,"event":"opened","time":"2026-01-01T12:00:00.000Z","port":"/dev/ttyS0","speed":9600}'
    for number, (frame, direction) in enumerate(all_frames()):
        way = "D>R" if direction == "D->R" else "R>D"
        yield f'{{"ms":{number * 100},"dir":"{way}","frame":"{frame.hex(" ").upper()}"}}'
    yield '{"ms":90000,"dir":"R>D","noise":"00 FF"}'
    yield '{"ms":90001,"event":"lost","count":3}'
    yield ('{"ms":90002,"event":"continued","port":"COM1","speed":9600,"n1":14,"k":1,"version":1,"next_to_radio":5,'
           '"next_from_radio":9}')
    yield '{"ms":90003,"event":"said","message":"B2 06 9E FF"}'
    yield '{"ms":90004,"command":"status Unit20 1","answer":"ok"}'
    yield '{"ms":90005,"event":"time","time":"2026-01-01T13:00:00.000Z"}'
    yield '{"ms":90006,"event":"closed"}'


def commands():
    for name in ("simulator-commands.txt", "simulator-calls.txt", "simulator-messages.txt"):
        for line in lines_of(DATA / name):
            if line.strip().startswith("@ "):
                yield re.split(r" => |  #", line.strip())[0][2:]


SETTINGS = """; by hand
[Settings]
LogWidth=4000
LogTimeUnit=1
LogTimePeriod=30
BeepNotify=True
Port=@percent(%20COM1%20)

[Window]
Left=10
Width=600
"""
RECORDS = (
    '{"id":"a1","time":"2026-01-01T12:00:00.000Z","type":2,"desc":"text","from":"Car 1","to":"200","duty":false,'
    '"operator":"Anna","console":"desk-1","fromNumber":"200","toNumber":"","way":1}',
    '{"id":"a2","regroup":{"kind":2,"group":7,"oldGroup":3,"member":9,"pos":4,"request":"r1"}}',
    '{"id":"a3","time":"2026-01-01T12:00:00.000Z","attention":{"act":2,"caller":"Car 1","kind":2,"entry":"a1",'
    '"what":"call","callBack":"200","messageType":1,"message":"5","times":2,"away":true}}')
OWN = ('{"prefix":0,"ident":3,"unitBaseIdent":2,"unitMaxIdent":71,"groupBaseIdent":7000,"groupMaxIdent":7009,'
       '"unitDigits":2,"groupDigits":2}')
PLAN = 'type,digits,prefix,base_ident,max_ident,fleet_name,notes\n'


def seeds():
    """Fuzzer and seed, in no order."""
    for frame, _ in all_frames():
        yield "Framing", b"\6" + frame
    yield "Framing", b"\7" + b"".join(frame for frame, _ in all_frames())
    for script in conversations("map27-link.txt"):
        yield "Link", b"\x0e\0\0" + b"".join(map(link_step, script))
    yield "LinkPair", b"\0\0" + b"\4\xff" + b"\6\5\7\5\4\x10" * 8
    yield "LinkPair", b"\3\xf1" + b"\4\xff" + b"\6\5\6\5\x0a\1\x32\4\x0e\3\x16\x10\2\4\x40" * 6
    for vector in vectors()["messages"]:
        yield "Messages", bytes.fromhex(vector["message"])
    for options in (0, 1, 0xE3):
        for coding in (0, 1, 2, 8, 9, 10, 11, 15):
            yield "Characters", bytes([options, coding]) + counted(b"HELLO 12") + "Grüße, 5 €?".encode()
            yield "Characters", bytes([options, coding]) + counted(bytes(range(40))) + b"MEET AT GATE 4 AT NOON!  "
    for script in conversations("map27-terminal.txt"):
        yield "Terminal", b"\0" + b"".join(map(terminal_step, script))
    lines = list(trace_lines())
    for start in range(0, len(lines), 8):
        yield "Trace", ("\1" + lines[0] + "\n" + "\n".join(lines[start:start + 8]) + "\n").encode()
    for path in sorted((RESOURCES / "scenarios").glob("*.json")):
        yield "Scenario", path.read_bytes()
    small = b'{"base":"busy-day","events":[{"at":1,"every":2,"do":"status Unit20 1"}]}\0'
    said = list(commands())
    for start in range(0, len(said), 5):
        yield "Scenario", small + "\n".join(said[start:start + 5]).encode()
    plan = [fleet(0, 0, 2, 71), fleet(2, 0, 200, 899), fleet(1, 0, 7000, 7009), fleet(3, 0, 7100, 7199), fleet(2, 5, 4000, 4070)]
    own = own_numbering(0, 3, (2, 71), (7000, 7009))
    for seed in numbers("mpt1343.tsv", b"\5" + b"".join(plan) + own):
        yield "Mpt1343", seed
    for seed in numbers("actionet.tsv", bytes([4, 3, 4]) + own_numbering(0, 1, (0, 0), (0, 0))):
        yield "Actionet", seed
    for line in lines_of(DATA / "core.tsv")[:60]:
        yield "Format", b"\2" + counted(b"a") + counted(b"b") + line.encode(errors="surrogateescape")
    for line in ("", " ; ;; ", "Unit20", " A ;; B 1;", "200200120; 21;\t22\u00a0;\u2003"):
        yield "AddressLine", line.encode()
    catalogue = (RESOURCES / "catalogue" / "CKYN.CResourceStrs").read_text(encoding="utf-8").splitlines(True)
    for start in range(0, len(catalogue), 20):
        yield "Catalogue", "".join(catalogue[start:start + 20]).encode()
    for value in (b"", b"Plant 30", b" a\n@percent(b)", "Grün".encode()):
        yield "Settings", counted(value) + SETTINGS.encode()
    for record in RECORDS:
        yield "SpoolRecord", record.encode()
    yield "Csv", b'number,text\n1,"a ""b"", c"\n\n2,"x\ny"\r\n'
    yield "Csv", (PLAN + 'units,2,0,2,71,A,\ngroups,3,0,7000,7009,"B, C","n\nm"\n').encode()
    yield "Csv", b"\xef\xbb\xbf" + PLAN.encode()
    yield "Csv", OWN.encode()


def write(folder):
    for number, (fuzzer, seed) in enumerate(seeds()):
        (folder / fuzzer).mkdir(parents=True, exist_ok=True)
        (folder / fuzzer / f"seed-{number:04}").write_bytes(seed)
