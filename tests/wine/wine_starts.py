#!/usr/bin/env python3
# wine_starts.py
# Starts Windows programs through script/wine in fresh prefixes, many at a time and beside busy loops, and reports every
# start that ends with another status or output than it should. Not part of the suites: it takes an hour.
"""Prints one line for each finding, one for each prefix, and last `wine: N starts, F findings`."""

import argparse
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
WINE = ROOT / "script" / "wine"
WINESERVER = "/usr/lib/wine/wineserver64"
# A fresh prefix takes a quarter of a minute, under load several.
DEADLINE_S = 900


class Starts:
    """The starts in one prefix: workers take numbers until all are taken."""

    def __init__(self, options, prefix):
        self.options = options
        self.prefix = prefix
        self.lock = threading.Lock()
        self.next = 0
        self.findings = []
        self.began = time.monotonic()

    def run(self):
        workers = [threading.Thread(target=self.work, daemon=True) for _ in range(self.options.jobs)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()

    def work(self):
        while True:
            with self.lock:
                number, self.next = self.next, self.next + 1
            if number >= self.options.starts:
                return
            self.start(number)

    def start(self, number):
        program = self.options.program[number % len(self.options.program)]
        command, _, expected = program.partition("=>")
        began = time.monotonic()
        try:
            done = subprocess.run(
                [str(WINE), *command.split()], capture_output=True, text=True, timeout=DEADLINE_S, check=False,
                stdin=subprocess.DEVNULL, env={**os.environ, "KEL_WINE_PREFIX": str(self.prefix)},
            )  # fmt: skip
            status, out, err = done.returncode, done.stdout, done.stderr
        except subprocess.TimeoutExpired:
            status, out, err = "none: it hung", "", ""
        if status == 0 and expected.strip() in out:
            return
        took = time.monotonic() - began
        with self.lock:
            self.findings.append(number)
            print(f"finding: {self.prefix.name}, start {number}, {began - self.began:.1f} s after the first: {command} "
                  f"took {took:.2f} s, status {status}, output {out[-400:]!r}, errors {err[-400:]!r}", flush=True)  # fmt: skip


def end_session(prefix):
    environment = {**os.environ, "WINEPREFIX": str(prefix)}
    for option in ("-k", "-w"):
        subprocess.run([WINESERVER, option], env=environment, check=False, timeout=DEADLINE_S)
    # The shell that held the session notices within ten seconds, and needs the folder until then.
    subprocess.run(["flock", str(prefix / ".session"), "true"], check=False, timeout=DEADLINE_S)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", nargs="+", help="'PROGRAM.exe ARGUMENT... => text that it prints'")
    parser.add_argument("--work", type=pathlib.Path, required=True, help="an empty folder for the prefixes")
    parser.add_argument("--prefixes", type=int, default=50)
    parser.add_argument("--starts", type=int, default=100, help="in each prefix")
    parser.add_argument("--jobs", type=int, default=6)
    parser.add_argument("--busy", type=int, default=4, help="busy loops beside them")
    options = parser.parse_args()
    loops = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(options.busy)]
    starts = findings = 0
    try:
        signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
        for number in range(options.prefixes):
            prefix = options.work / f"prefix-{number}"
            prefix.mkdir(parents=True)
            batch = Starts(options, prefix)
            batch.run()
            starts += options.starts
            findings += len(batch.findings)
            print(f"{prefix.name}: {options.starts} starts in {time.monotonic() - batch.began:.0f} s, "
                  f"{len(batch.findings)} findings", flush=True)  # fmt: skip
            end_session(prefix)
            shutil.rmtree(prefix, ignore_errors=True)
    finally:
        for loop in loops:
            loop.kill()
        print(f"wine: {starts} starts, {findings} findings")
    return findings != 0


if __name__ == "__main__":
    sys.exit(main())
