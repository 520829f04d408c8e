#!/usr/bin/env python3
"""run_fuzzers: lets libFuzzer search with every target for a while, from the kept corpus on.

What ends a target (a crash, a broken promise, a leak, a hang) is a finding. Its input stays in the build folder, and the
last output says how to run it again. `--keep` then minimizes what was found and the corpus into a new corpus. The last line
counts the findings; exit 1 when there is any.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
AT_ONCE = 2
SLOWEST_INPUT_S = 20
LARGEST_INPUT_BYTES = 4096
LAST_LINES = 40
NAME_BY_FUZZER = re.compile(r"[0-9a-f]{40}")
# Beyond the search itself: starting, the kept corpus, a last input.
GRACE_S = 120


def environment():
    result = dict(os.environ)
    result["LSAN_OPTIONS"] = f"suppressions={ROOT}/tests/lsan.supp:print_suppressions=0"
    # Profiles are written to the disk each time; a disk in memory does that thousands of times a second.
    if pathlib.Path("/dev/shm").is_dir():
        result.setdefault("TMPDIR", "/dev/shm")
    return result


class Target:
    def __init__(self, name, build):
        self.name = name
        self.program = build / f"fuzz-{name}"
        self.corpus = HERE / "corpus" / name
        self.work = build / "fuzz" / name
        self.dictionary = HERE / "dictionaries" / f"{name}.dict"

    def search(self, seconds):
        """The complaint about a finding; none: an empty text."""
        shutil.rmtree(self.work, ignore_errors=True)
        found = self.work / "found"
        found.mkdir(parents=True)
        options = [f"-max_total_time={seconds}", f"-timeout={SLOWEST_INPUT_S}", f"-max_len={LARGEST_INPUT_BYTES}",
                   f"-artifact_prefix={self.work}/", "-print_final_stats=1"]
        if self.dictionary.is_file():
            options.append(f"-dict={self.dictionary}")
        try:
            run = subprocess.run([self.program, *options, found, self.corpus], capture_output=True, env=environment(),
                                 timeout=seconds + GRACE_S, check=False)
        except subprocess.TimeoutExpired:
            return f"finding: {self.name} does not end\n"
        output = run.stderr.decode(errors="replace")
        executed = re.search(r"number_of_executed_units: (\d+)", output)
        if run.returncode == 0 and executed and int(executed[1]) > 0:
            print(f"{self.name}: {executed[1]} inputs", flush=True)
            return ""
        again = [f"run again: {self.program} {file}" for file in sorted(self.work.iterdir()) if file.is_file()]
        return "\n".join([f"finding: {self.name} (status {run.returncode})", *output.splitlines()[-LAST_LINES:], *again, ""])

    def keep(self):
        """A small corpus that reaches all code that the old one and the found inputs reach. Files with a name that a person
        gave them stay."""
        merged = self.work / "merged"
        shutil.rmtree(merged, ignore_errors=True)
        merged.mkdir(parents=True)
        sources = [folder for folder in (self.corpus, self.work / "found") if folder.is_dir()]
        subprocess.run([self.program, "-set_cover_merge=1", "-use_counters=0", "-use_cmp=0",
                        f"-max_len={LARGEST_INPUT_BYTES}", merged, *sources],
                       capture_output=True, env=environment(), check=True)
        for file in self.corpus.iterdir():
            if NAME_BY_FUZZER.fullmatch(file.name):
                file.unlink()
        shutil.copytree(merged, self.corpus, dirs_exist_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, required=True, help="the build folder with the programs")
    parser.add_argument("--seconds", type=int, default=60, help="how long to search with each target")
    parser.add_argument("--keep", action="store_true", help="then minimize everything into a new corpus")
    parser.add_argument("targets", nargs="*", help="only these")
    arguments = parser.parse_args()
    names = arguments.targets or sorted(folder.name for folder in (HERE / "corpus").iterdir())
    targets = [Target(name, arguments.build.resolve()) for name in names]
    findings = 0
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
        for complaint in pool.map(lambda target: target.search(arguments.seconds), targets):
            print(complaint, end="", flush=True)
            findings += complaint != ""
    if arguments.keep and not findings:
        for target in targets:
            target.keep()
    print(f"fuzz: {len(targets)} targets, {findings} findings")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
