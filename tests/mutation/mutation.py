#!/usr/bin/env python3
"""mutation: flips decisions of src/ one at a time and shows which of them the unit and driver suites do not notice.

  mutation.py ROOT                    every mutant: those of hand_written.txt and as many made from the sources
  mutation.py ROOT --only TEXT...     those whose place, kind, note or id contains one of the texts
  mutation.py ROOT --list             what there is, without testing it

Results are kept in build/mutation/results.json: a run that was interrupted goes on, and one after a change tests what the
change can have changed. The last line is `mutation: M mutants, S survived`. Exit 1 when a survivor is not explained in
kept.txt, when more than 3 % survive or when fewer than 300 could be compiled.
"""
import argparse
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import queue
import signal
import sys
import threading
import time

import mutants
import scratch

HERE = pathlib.Path(__file__).resolve().parent
SEED = 1
# Made from the sources; some do not compile, and at least LEAST have to.
MADE = 320
LEAST = 300
SURVIVORS_AT_MOST = 0.03
KILLED, SURVIVED, NOT_COMPILED = "killed", "survived", "does not compile"
# What the verdict on a mutant depends on, apart from its own file.
TESTED_WITH = ("src", "host", "vimbac", "simulator", "tests/unit", "tests/driver", "tests/support")


class Results:
    """What is known of each mutant, kept in a file."""

    def __init__(self, file, digests, surroundings):
        self.file, self.digests, self.surroundings = file, digests, surroundings
        self.known = json.loads(file.read_text()) if file.exists() else {}
        self.lock = threading.Lock()

    def of(self, mutant):
        """A killed mutant stays killed as long as its file is the same; a survivor is tried again after any change."""
        result = self.known.get(mutant.id)
        if not result or result["file"] != self.digests[mutant.file]:
            return None
        return result if result["verdict"] != SURVIVED or result["surroundings"] == self.surroundings else None

    def keep(self, mutant, verdict, by, seconds):
        with self.lock:
            self.known[mutant.id] = {
                "place": mutant.place(),
                "kind": mutant.kind,
                "diff": mutant.diff(),
                "verdict": verdict,
                "by": by,
                "seconds": round(seconds, 1),
                "file": self.digests[mutant.file],
                "surroundings": self.surroundings,
            }
            written = self.file.with_suffix(".new")
            written.write_text(json.dumps(self.known, indent=1))
            written.replace(self.file)


def digest(paths):
    result = hashlib.sha1()
    for path in sorted(paths):
        result.update(str(path).encode() + path.read_bytes())
    return result.hexdigest()[:16]


def sources_of(root):
    paths = [path for path in (root / "src").rglob("*") if path.suffix in (".h", ".cpp")]
    return {path.relative_to(root).as_posix(): path.read_text(encoding="utf-8") for path in paths}


def listed(name, texts):
    """The changes of a list as mutants of the sources as they are now; an entry whose lines are gone is out of date."""
    changes = mutants.changes_of((HERE / name).read_text(encoding="utf-8"))
    return [mutants.named(change, texts.get(change.file, "")) for change in changes]


def mutants_to_test(texts):
    """Those written by hand first, then those made from the sources that are none of them and no equal program either."""
    written = listed("hand_written.txt", texts)
    left_out = {mutant.change() for mutant in written + listed("equal.txt", texts)}
    return written + mutants.chosen(texts, MADE, SEED, left_out)


def judge(copy, mutant, text):
    """(verdict, the test that killed it)"""
    copy.write(mutant.file, mutant.apply(text))
    try:
        failure = copy.first_failure(mutant.file)
    except scratch.BuildFailed:
        return NOT_COMPILED, ""
    finally:
        copy.write(mutant.file, text)
        copy.remove_temporary_files()
    return (KILLED, failure) if failure else (SURVIVED, "")


def prove_that_all_pass(copy):
    """A verdict means something only if the unchanged tree passes, with the same time limits."""
    for program, shards in scratch.ALL_PROGRAMS.items():
        if failure := copy.failure_of(program, shards):
            sys.exit(f"mutation: the unchanged tree fails {failure}")


def run(copies, wanted, texts, results):
    waiting = queue.SimpleQueue()
    for mutant in wanted:
        waiting.put(mutant)
    done = len(wanted)

    def work(copy):
        while True:
            try:
                mutant = waiting.get_nowait()
            except queue.Empty:
                return
            begin = time.monotonic()
            verdict, by = judge(copy, mutant, texts[mutant.file])
            seconds = time.monotonic() - begin
            results.keep(mutant, verdict, by, seconds)
            left = waiting.qsize()
            print(f"[{done - left}/{done}] {verdict:8} {mutant.place()} {mutant.kind} ({seconds:.0f} s) {by}", flush=True)

    with concurrent.futures.ThreadPoolExecutor(len(copies)) as pool:
        for worker in [pool.submit(work, copy) for copy in copies]:
            worker.result()


def report(tested, results, kept):
    """Prints the verdicts and the closing line; whether they are good enough."""
    of_verdict = collections.defaultdict(list)
    kinds = collections.defaultdict(collections.Counter)
    for mutant in tested:
        verdict = results.of(mutant)["verdict"]
        of_verdict[verdict].append(mutant)
        kinds[mutant.kind][verdict] += 1
    for kind in sorted(kinds):
        counts = kinds[kind]
        print(f"{kind:15} {counts[KILLED]:4} killed {counts[SURVIVED]:3} survived {counts[NOT_COMPILED]:3} do not compile")
    unexplained = 0
    for mutant in of_verdict[SURVIVED]:
        why = kept.get(mutant.change())
        unexplained += why is None
        print(f"survived: {mutant.place()} {mutant.kind} {mutant.id}\n{mutant.diff()}\n  {why or 'NOT EXPLAINED'}")
    survived = len(of_verdict[SURVIVED])
    compiled = survived + len(of_verdict[KILLED])
    print(f"mutation: {compiled} mutants, {survived} survived")
    return not unexplained and compiled >= LEAST and survived <= SURVIVORS_AT_MOST * compiled


def leave(*_):
    """The results so far are kept; nothing that was started goes on."""
    scratch.stop_all()
    os._exit(130)


def main():
    signal.signal(signal.SIGTERM, leave)
    signal.signal(signal.SIGINT, leave)
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("--only", nargs="+", metavar="TEXT")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--workers", type=int, default=2, help="copies of the tree that are worked on side by side")
    options = parser.parse_args()
    root = options.root.resolve()
    texts = sources_of(root)
    tested = mutants_to_test(texts)
    if options.only:
        described = {mutant: f"{mutant.place()} {mutant.kind} {mutant.note} {mutant.id}" for mutant in tested}
        tested = [mutant for mutant in tested if any(text in described[mutant] for text in options.only)]
    if options.list:
        for mutant in tested:
            print(f"{mutant.id} {mutant.place()} {mutant.kind} {mutant.note}\n{mutant.diff()}")
        return 0
    kept = {mutant.change(): mutant.note for mutant in listed("kept.txt", texts)}
    folder = root / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    digests = {file: hashlib.sha1(text.encode()).hexdigest()[:16] for file, text in texts.items()}
    around = digest(path for name in TESTED_WITH for path in (root / name).rglob("*") if path.is_file())
    results = Results(folder / "results.json", digests, around)
    wanted = [mutant for mutant in tested if options.only or not results.of(mutant)]
    # Headers last: each has most of the sources compiled again.
    wanted.sort(key=lambda mutant: mutant.file.endswith(".h"))
    if wanted:
        jobs = max(1, (os.cpu_count() or 1) // options.workers)
        copies = [scratch.Scratch(root, folder / str(number), jobs) for number in range(options.workers)]
        for copy in copies:
            copy.prepare()
        prove_that_all_pass(copies[0])
        run(copies, wanted, texts, results)
    return 0 if report(tested, results, kept) else 1


if __name__ == "__main__":
    sys.exit(main())
