#!/usr/bin/env python3
"""study.py: several cameras on one link: how many snaps fail while the module looks for the rate, and at which rate it ends.

    study.py PROGRAM [--out FOLDER] [--only NAME...] [--snaps N] [--seed S] [--buffer BYTES] [--jobs J]
             [--real-clock]

PROGRAM is bench_link. Each case runs in each of three ways, a process of its own: the rate fixed at the highest, each camera
on its own, and the cameras as bandwidth partners. Beside each figure is, in brackets, what the rule comes to on an ideal link
(rule.py). FOLDER gets link.csv, link-ideal.csv with the same columns, the snaps of each run, and a plot of each case.
"""
import argparse
import concurrent.futures
import csv
import json
import os
import pathlib
import subprocess
import sys
import time

import cases
import plots
import rule

COLUMNS = ("case,way,cameras,capacity,first_good,failed_1_50,failed_1_200,failed_201_1000,mean_rate_over_share,ms_per_snap,"
           "aborts").split(",")
# The table has one more than the file.
LAST = "last_failed"
FIGURES = [COLUMNS[4], LAST, *COLUMNS[5:]]
HEADS = {LAST: "last failed",
         "first_good": "first good", "failed_1_50": "failed 1-50", "failed_1_200": "failed 1-200",
         "failed_201_1000": "failed 201-1000", "mean_rate_over_share": "rate/share", "ms_per_snap": "ms/snap",
         "aborts": "aborts"}


def simulated(case, way, options):
    """Its snaps, as rounds of one snap of each camera."""
    rig, snaps = (options.out / "link" / f"{case.name}-{way}.{ending}" for ending in ("json", "csv"))
    rig.write_text(json.dumps(case.rig(way, options.seed, options.snaps, options.buffer)))
    command = [options.program, rig] + (["--real-clock"] if options.real_clock else [])
    with open(snaps, "w") as output:
        subprocess.run(command, stdout=output, check=True)
    rounds = [[None] * case.cameras for _ in range(options.snaps)]
    with open(snaps) as lines:
        for line in csv.DictReader(lines):
            rounds[int(line["snap"]) - 1][int(line["camera"]) - 1] = rule.Snap(
                int(line["code"]), int(line["bytes_per_s"]), float(line["begin_ms"]), float(line["end_ms"]))
    return rounds


def ideal(case, way, options):
    """None where the arithmetic does not say it: whose snaps overlap is a matter of time."""
    if case.pace == "own":
        return None
    keys = {key: int(value) for key, value in case.keys(way).items()}
    rates = [rule.Rate(cases.CAMERA_MIN, cases.CAMERA_MAX, keys.get("MIN_BYTEPERSECOND"), keys.get("BYTEPERSECOND"))
             for _ in range(case.cameras)]
    packets = -(-cases.FRAME_BYTES // cases.PACKET_BYTES)
    return rule.IdealRig(
        rule.IdealLink(case.usable, list(case.background)), rates, cases.FRAME_BYTES, case.exposure_ms(0),
        cases.FRAME_TIMEOUT_MS, way == "linked", case.pace == "in turn", case.joins_after, case.host_rate,
        1.0 - (1.0 - case.loss) ** packets, options.seed).run(options.snaps)


def failed(rounds, first, last):
    snaps = [snap for results in rounds[first - 1:last] for snap in results if snap]
    return sum(snap.code != rule.SUCCESS for snap in snaps) / len(snaps) if snaps else float("nan")


def figures(case, way, rounds):
    good = [i + 1 for i, results in enumerate(rounds) if all(snap.code == rule.SUCCESS for snap in results if snap)]
    bad = sorted({*range(1, len(rounds) + 1)} - {*good})
    snaps = [snap for results in rounds for snap in results if snap]
    mean = sum(snap.rate for snap in snaps) / len(snaps)
    return {
        "case": case.name, "way": way, "cameras": case.cameras, "capacity": case.usable,
        "first_good": good[0] if good else "",
        LAST: bad[-1] if bad else "",
        "failed_1_50": f"{failed(rounds, 1, 50):.3f}",
        "failed_1_200": f"{failed(rounds, 1, 200):.3f}",
        "failed_201_1000": f"{failed(rounds, 201, 1000):.3f}",
        "mean_rate_over_share": f"{mean * case.cameras / case.usable:.3f}",
        "ms_per_snap": f"{ended_ms(rounds) / len(rounds):.1f}",
        "aborts": sum(snap.code == rule.ABORTED for snap in snaps),
    }


def ended_ms(rounds):
    return max(snap.end_ms for snap in rounds[-1] if snap)


def write(file, rows):
    with open(file, "w", newline="") as output:
        writer = csv.DictWriter(output, COLUMNS, extrasaction="ignore", lineterminator="\n")
        writer.writeheader()
        writer.writerows(rows)


def print_table(rows, ideal_rows):
    print("| case | way | " + " | ".join(HEADS[figure] for figure in FIGURES) + " |")
    print("|---|---|" + "---:|" * len(FIGURES))
    for row in rows:
        beside = ideal_rows.get((row["case"], row["way"]))
        cells = [cell(row[figure], beside[figure] if beside else None) for figure in FIGURES]
        print(f"| {row['case']} | {row['way']} | " + " | ".join(cells) + " |")


def cell(figure, beside):
    shown = figure if figure != "" else "none"
    return f"{shown}" if beside is None else f"{shown} ({beside if beside != '' else 'none'})"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("--out", type=pathlib.Path, default=pathlib.Path("."))
    parser.add_argument("--only", nargs="+", choices=[case.name for case in cases.CASES])
    parser.add_argument("--snaps", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--buffer", type=int, default=cases.SWITCH_BUFFER_BYTES, help="bytes that the switch holds")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--real-clock", action="store_true")
    options = parser.parse_args()
    (options.out / "link").mkdir(parents=True, exist_ok=True)
    chosen = [case for case in cases.CASES if not options.only or case.name in options.only]
    runs = [(case, way) for case in chosen for way in cases.WAYS]
    began = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        # The longest first.
        order = sorted(runs, key=lambda run: -run[0].cameras)
        futures = {run: pool.submit(simulated, *run, options) for run in order}
        rounds = {run: futures[run].result() for run in runs}
    took_s = time.monotonic() - began
    ideals = {run: ideal(*run, options) for run in runs}
    rows = [figures(*run, rounds[run]) for run in runs]
    ideal_rows = [figures(*run, ideals[run]) for run in runs if ideals[run]]
    write(options.out / "link.csv", rows)
    write(options.out / "link-ideal.csv", ideal_rows)
    for case in chosen:
        plots.draw(case, {way: rounds[case, way] for way in cases.WAYS}, {way: ideals[case, way] for way in cases.WAYS},
                   options.out / f"link-{case.name}")
    print_table(rows, {(row["case"], row["way"]): row for row in ideal_rows})
    virtual_s = sum(ended_ms(rounds[run]) for run in runs) / 1000
    clock = "the machine's" if options.real_clock else "virtual"
    print(f"\nsimulated: {virtual_s:.0f} s in {took_s:.0f} s, clock: {clock}, seed {options.seed}, {options.snaps} snaps, "
          f"{options.jobs} processes at a time", file=sys.stderr)


if __name__ == "__main__":
    main()
