#!/usr/bin/env python3
# wine_heap_test.py
# A Windows program starts although its heap would lie on the page that Wine needs at 0x7ffe0000.
"""Wine maps that page into every program before it does anything else. Its loader lies at 0x7d000000, and Linux begins
the heap at random in the GiB behind it, so that some heaps cover the page. Here every heap does: nothing is random, and
the heap begins with 64 MiB. Prints `wine: N starts, F findings`. Ends with 77 where a container forbids such starts."""

import argparse
import os
import pathlib
import subprocess
import sys

LOADER = "/usr/lib/wine/wine64"
WITHOUT_RANDOMNESS = ["setarch", "--addr-no-randomize"]
LONG_HEAP = {"GLIBC_TUNABLES": f"glibc.malloc.top_pad={64 << 20}"}
# The first start may have to make the prefix.
DEADLINE_S = 240
STARTS = 5
SKIPPED = 77


def start(launcher, **environment):
    """Status and output of a program of Wine's own whose heap reaches from the loader to behind the page."""
    done = subprocess.run(
        [*WITHOUT_RANDOMNESS, launcher, "cmd.exe", "/c", "echo", "started"], capture_output=True, text=True,
        timeout=DEADLINE_S, check=False, stdin=subprocess.DEVNULL, env={**os.environ, **LONG_HEAP, **environment},
    )  # fmt: skip
    return done.returncode, done.stdout.strip(), done.stderr.strip()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--launcher", required=True, help="script/wine")
    parser.add_argument("--work", type=pathlib.Path, required=True)
    options = parser.parse_args()
    if subprocess.run([*WITHOUT_RANDOMNESS, "true"], check=False, stderr=subprocess.DEVNULL).returncode != 0:
        print("not run: programs may not be started without randomness here")
        return SKIPPED

    findings = []
    # So that the starts below show something: the loader believes that it has been through the preloader.
    alone = start(LOADER, WINELOADERNOEXEC="1", WINEDEBUG="-all", WINEPREFIX=str(options.work / "unused"))
    if alone != (1, "", ""):
        findings.append(f"without the preloader: {alone}, so these heaps do not reach the page")
    for _ in range(STARTS):
        found = start(options.launcher)
        if found != (0, "started", ""):
            findings.append(f"through {options.launcher}: {found}")
    print(*findings, f"wine: {STARTS} starts, {len(findings)} findings", sep="\n")
    return bool(findings)


if __name__ == "__main__":
    sys.exit(main())
