#!/usr/bin/env python3
"""wire.py: frames of a GigE Vision camera over the wire: through the library for real cameras, through the module on it, and
by Aravis' own test program, in turns, from the same camera.

    wire.py HOST CAMERA LIBRARIES [--seconds S]    programs bench_wire and wire-camera; the folder of libVimbaC.so

To be run in a network of its own (tests/bridge/network.py). A program's time of the processor is that of the whole process.
"""
import argparse
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys

ARAVIS = "arv-camera-test-0.8"
ROUNDS = 3
CASES = [(size, packet, rate) for size, rate in ((512, 100), (512, 1000), (2048, 25), (2048, 100)) for packet in (1400, 8228)]
TRIGGERS = 300
ADDITIONS = pathlib.Path(__file__).resolve().parents[2] / "tests/bridge/camera/additions.xml"


class Camera:
    def __init__(self, program, *arguments):
        self.process = subprocess.Popen([program, "--model", "Bench", *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        if self.process.stdout.readline() != b"ready\n":
            sys.exit("the camera does not start")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()


def timed(command, environment):
    """Its output, and the processor's time in seconds."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment)
    output = process.stdout.read()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} ends with {process.returncode}\n{output}")
    return output, usage.ru_utime + usage.ru_stime


def ours(way, case, options, environment):
    size, packet, rate = case
    output, cpu_s = timed([options.host, way, str(options.seconds), str(size), str(size), str(packet), str(rate)], environment)
    result = json.loads(output)
    return result["complete"], result["others"], cpu_s


def aravis(case, options, environment):
    size, packet, rate = case
    output, cpu_s = timed(
        [ARAVIS, "-w", str(size), "-h", str(size), "-i", str(packet), "-f", str(rate), "-j", "never", "--no-packet-socket",
         f"--duration={options.seconds}"], environment)  # fmt: skip
    counts = {name: int(value) for name, value in re.findall(r"n_(completed_buffers|failures|underruns)\s*=\s*(\d+)", output)}
    if "completed_buffers" not in counts:
        sys.exit(f"{ARAVIS} prints no count:\n{output}")
    return counts["completed_buffers"], counts.get("failures", 0), cpu_s


def measure(options, environment):
    print("| Picture | Packets | Set rate | | Frames/s | Incomplete | CPU a frame | Ratio |\n|---|---|---|---|---|---|---|---|")
    for case in CASES:
        rounds = {"Aravis": [], "library": [], "module": []}
        for _ in range(ROUNDS):
            for way, results in rounds.items():
                results.append(aravis(case, options, environment) if way == "Aravis" else ours(way, case, options, environment))
        cpu_us = {way: statistics.median(1e6 * cpu / max(1, good + bad) for good, bad, cpu in results)
                  for way, results in rounds.items()}  # fmt: skip
        size, packet, rate = case
        for way, results in rounds.items():
            good = sum(result[0] for result in results)
            bad = sum(result[1] for result in results)
            print(f"| {size} x {size} | {packet} | {rate} | {way} | {good / (ROUNDS * options.seconds):.1f} | "
                  f"{100 * bad / max(1, good + bad):.1f} % | {cpu_us[way]:.0f} us | {cpu_us[way] / cpu_us['Aravis']:.2f} |", flush=True)  # fmt: skip


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("host")
    parser.add_argument("camera")
    parser.add_argument("libraries")
    parser.add_argument("--seconds", type=int, default=5)
    options = parser.parse_args()
    environment = {**os.environ, "LD_LIBRARY_PATH": options.libraries}
    with Camera(options.camera, "--additions", str(ADDITIONS)):
        measure(options, environment)
        output, _ = timed([options.host, "trigger", str(TRIGGERS), "512", "512"], environment)
    times = json.loads(output)
    print(f"\nFrom the software trigger, {TRIGGERS} times, 512 x 512:")
    for what, words in (("callback", "to the library's callback"), ("picture", "Snap of the module, to the host's picture")):
        print(f"  {words}: median {times[what]['median_ms']:.1f} ms, 99 % within {times[what]['p99_ms']:.1f} ms")


if __name__ == "__main__":
    main()
