"""The link over lines that are really late: the simulated radio on a TCP port, a proxy before it that holds
each octet, and `veltorkynctl radio check` at the other end, while radios report statuses from the air.

    benchmarks/run latelines [DELAY...]     seconds each way (default: 0 0.15 0.6 3)

Prints a row for each delay. The exit code is 1 when a link was lost, or a status was, came twice or out of order."""

import json
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "benchmarks" / "waiting"))
from proxy import Proxy  # noqa: E402

PROGRAMS = ROOT / "build" / "bin"
STATUSES = 10
LONGEST = 1200  # seconds that one check may take
REQUEST = "16 10 02 01 "


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def start_radio(port):
    radio = subprocess.Popen([PROGRAMS / "veltorkyn-radio", "--listen", f"127.0.0.1:{port}", "--scenario", "tour"],
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    if "ready" not in radio.stdout.readline():
        raise SystemExit("the simulated radio does not start")
    return radio


def requests(trace):
    """Those for the first link, by this end and by the radio; and when it was up, in ms."""
    count = {"D>R": 0, "R>D": 0}
    for line in trace.read_text().splitlines():
        entry = json.loads(line)
        frame = entry.get("frame", "")
        if frame.startswith(REQUEST):
            count[entry["dir"]] += 1
        elif frame.startswith("16 10 02 04 "):
            break
    return count["D>R"], count["R>D"]


def check(delay, folder):
    port = free_port()
    radio = start_radio(port)
    proxy = Proxy(port)
    proxy.round_trip(2000 * delay)
    trace = pathlib.Path(folder) / f"{delay}.jsonl"
    began = time.monotonic()
    run = subprocess.Popen([PROGRAMS / "veltorkynctl", "radio", "check", "--json", "--watch", "16", "--trace", trace,
                            f"tcp://127.0.0.1:{proxy.port}"],
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        # As soon as messages flow, since the radio takes none for a console that is not there.
        while run.poll() is None and not (trace.exists() and "16 10 02 04 " in trace.read_text()):
            time.sleep(0.05)
        for status in range(STATUSES):
            radio.stdin.write(f"status Unit20 {status}\n")
            radio.stdin.flush()
            time.sleep(max(0.1, 6 * delay))  # the window is one message
        report = json.loads(run.communicate(timeout=LONGEST)[0])
    finally:
        run.kill()
        run.wait()
        radio.terminate()
        radio.wait()
    link = next(item for item in report["items"] if item["name"] == "link")
    came = [int(re.search(r": (\d+)", one["text"]).group(1)) for one in report["received"]]
    deviating = [item["name"] for item in report["items"] if item["verdict"] in ("deviates", "no answer")]
    ours, others = requests(trace)
    return {"up": link.get("ms"), "ours": ours, "others": others, "lost": report["links_lost"], "came": came,
            "answers": report["answers"], "deviating": deviating + [one["name"] for one in report["struck"]],
            "took": time.monotonic() - began}


def main(delays):
    failed = False
    print("| Delay each way | Link up after | Requests of this end | of the radio | Lost again | Statuses in order and"
          " once | Answers, half within | all within | Found by the check | Check took |")
    print("|---|---|---|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        for delay in delays:
            one = check(delay, folder)
            is_right = one["came"] == list(range(STATUSES))
            failed = failed or not is_right or one["lost"] > 0 or one["up"] is None
            up = "never" if one["up"] is None else f"{one['up'] / 1000:.2f} s"
            statuses = f"{STATUSES} of {STATUSES}" if is_right else f"no: {one['came']}"
            print(f"| {delay:.2f} s | {up} | {one['ours']} | {one['others']} | {one['lost']} | {statuses} |"
                  f" {one['answers']['median_ms'] / 1000:.2f} s | {one['answers']['longest_ms'] / 1000:.2f} s |"
                  f" {', '.join(one['deviating']) or 'nothing'} | {one['took']:.0f} s |", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main([float(text) for text in sys.argv[1:]] or [0, 0.15, 0.6, 3]))
