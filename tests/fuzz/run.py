#!/usr/bin/env python3
"""Runs the fuzzers of a folder, two at a time, and reports what each has done.

    tests/fuzz/run.py FOLDER [SECONDS] [FUZZER...]

Prints for each fuzzer the executions, the branches of its program that it has reached out of all, and what was found.
Fails when anything was found, or when a fuzzer has not worked. An input that breaks something is kept beside the
programs, and so is what the fuzzer printed.
"""

import concurrent.futures
import pathlib
import re
import subprocess
import sys

import seeds

AT_ONCE = 2
LONGEST_INPUT = 4096
LONGEST_RUN = 10  # seconds for one input, ten thousand times what most of them take
MOST_MEMORY = 1024  # MiB


def run(program, folder, seconds):
    name = program.name.removeprefix("fuzz_")
    made = folder / "corpus" / name
    made.mkdir(parents=True, exist_ok=True)
    log = folder / f"{name}.log"
    # Nothing here is a server or a display, and no fuzzer may write outside of its folder.
    command = [program, f"-max_total_time={seconds}", f"-timeout={LONGEST_RUN}", f"-rss_limit_mb={MOST_MEMORY}",
               f"-max_len={LONGEST_INPUT}", "-print_final_stats=1", f"-artifact_prefix={folder / name}-", made,
               folder / "seeds" / name]
    with open(log, "wb") as output:
        # Its own limits end it long before.
        code = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT, timeout=seconds + 300).returncode
    return name, code, log.read_text(encoding="utf-8", errors="replace")


def last(pattern, text):
    found = re.findall(pattern, text)
    return int(found[-1]) if found else 0


def what_was_found(code, log):
    if code == 0:
        return "nothing"
    for line in log.splitlines():
        if re.search(r"does not hold|ERROR: (?!libFuzzer: deadly)|runtime error|uncaught|what\(\):", line):
            return line.strip()
    return f"ended with {code}"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    folder = pathlib.Path(sys.argv[1]).resolve()
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 60
    wanted = sys.argv[3:]
    programs = [one for one in sorted(folder.glob("fuzz_*"))
                if not wanted or one.name.removeprefix("fuzz_") in wanted]
    if not programs:
        sys.exit(f"{folder}: there are no fuzzers in it")
    seeds.write(folder / "seeds")
    failed = False
    print(f"{'target':14} {'executions':>11} {'coverage':>16}   found", flush=True)
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as lanes:
        for name, code, log in lanes.map(lambda program: run(program, folder, seconds), programs):
            executions = last(r"stat::number_of_executed_units: (\d+)", log)
            reached, of = last(r" cov: (\d+)", log), last(r"\((\d+) inline 8-bit counters\)", log)
            share = f"{reached} of {of}"
            found = what_was_found(code, log) if code or executions else "it has not worked"
            failed = failed or found != "nothing"
            print(f"{name:14} {executions:11} {share:>16}   {found}", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
