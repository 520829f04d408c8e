#!/usr/bin/env python3
# run_storms.py
# Runs every storm of the given programs, each in a process of its own, two at a time, and closes with one line.
"""run_storms.py PROGRAM...: each program is a build of `storms`. The last line is `storms: R runs, F findings`."""

import concurrent.futures
import os
import re
import subprocess
import sys

# A storm takes a minute under the thread sanitizer on a busy machine; its own watchdog is earlier.
DEADLINE_S = 900
END = re.compile(r"storms: (\d+) runs, (\d+) findings\n$")


def run(program, storm):
    """What the storm printed, its runs and its findings: a process that ends in another way is one."""
    environment = {**os.environ, "TSAN_OPTIONS": "halt_on_error=1:second_deadlock_stack=1"}
    try:
        done = subprocess.run([program, "--only", storm], capture_output=True, text=True, timeout=DEADLINE_S, check=False,
                              env=environment)  # fmt: skip
        output, errors, status = done.stdout, done.stderr, done.returncode
    except subprocess.TimeoutExpired as expired:
        output, errors, status = (expired.stdout or b"").decode(errors="replace"), "", "none: it hung"
    end = END.search(output)
    if end and (status == 0) == (end[2] == "0"):
        return output[: end.start()], int(end[1]), int(end[2])
    report = f"{output}{errors}\nfinding: {program} --only {storm} ended with status {status}\n"
    return report, int(end[1]) if end else 0, 1 + (int(end[2]) if end else 0)


def main(programs):
    runs = findings = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = []
        for program in programs:
            names = subprocess.run([program, "--list"], capture_output=True, text=True, check=True).stdout.split()
            jobs += [(program, pool.submit(run, program, name)) for name in names]
        for program, job in jobs:
            output, runs_of_storm, findings_of_storm = job.result()
            runs += runs_of_storm
            findings += findings_of_storm
            for line in output.splitlines():
                print(f"{os.path.basename(os.path.dirname(program))}: {line}", flush=True)
    print(f"storms: {runs} runs, {findings} findings")
    return findings != 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
