#!/usr/bin/env python3
"""wire.py: frames of a GigE Vision camera over the wire: through the library for real cameras, through the module on it, and
by Aravis' own test program, in turns, from the same camera. "copies" is the library with a thread and two copies for each
frame, which the module has by contract, and nothing else of it.

    wire.py HOST CAMERA LIBRARIES [--seconds S] [--packets BYTES]    programs bench_wire and wire-camera; the folder of libVimbaC.so

To be run in a network of its own (tests/bridge/network.py). The processor's time for a frame is that of the whole process,
between a short run and one that is S seconds longer: what start and end cost stands in a column of its own.
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
SHORT_S = 1
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


class Run:
    def __init__(self, complete, others, cpu_s):
        self.complete = complete
        self.others = others
        self.cpu_s = cpu_s

    def frames(self):
        return self.complete + self.others


def timed(command, environment):
    """Its output, and the processor's time in seconds."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment)
    output = process.stdout.read()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} ends with {process.returncode}\n{output}")
    return output, usage.ru_utime + usage.ru_stime


def ours(way, case, seconds, options, environment):
    size, packet, rate = case
    output, cpu_s = timed([options.host, way, str(seconds), str(size), str(size), str(packet), str(rate)], environment)
    result = json.loads(output)
    return Run(result["complete"], result["others"], cpu_s)


def aravis(case, seconds, environment):
    size, packet, rate = case
    # With a receive buffer for a picture: what it has otherwise loses most of them.
    output, cpu_s = timed(
        [ARAVIS, "-w", str(size), "-h", str(size), "-i", str(packet), "-f", str(rate), "-j", "never", "--no-packet-socket",
         "--auto", f"--duration={seconds}"], environment)  # fmt: skip
    counts = {name: int(value) for name, value in re.findall(r"n_(completed_buffers|failures|underruns)\s*=\s*(\d+)", output)}
    if "completed_buffers" not in counts:
        sys.exit(f"{ARAVIS} prints no count:\n{output}")
    return Run(counts["completed_buffers"], counts.get("failures", 0), cpu_s)


def receive_buffer():
    return int(pathlib.Path("/proc/sys/net/core/rmem_max").read_text(encoding="ascii"))


def cost_of_a_frame(short, long):
    return (long.cpu_s - short.cpu_s) / max(1, long.frames() - short.frames())


def measure(options, environment):
    print(f"net.core.rmem_max = {receive_buffer()}; {ROUNDS} runs of {options.seconds + SHORT_S} s each\n")
    print("| Picture | Packets | Set rate | | Frames/s | Incomplete | CPU a frame | Ratio | CPU of start and end |")
    print("|---|---|---|---|---|---|---|---|---|")
    for case in CASES:
        if options.packets not in (None, case[1]):
            continue
        rounds = {"Aravis": [], "library": [], "copies": [], "module": []}
        for _ in range(ROUNDS):
            for way, results in rounds.items():
                results.append([
                    aravis(case, seconds, environment) if way == "Aravis" else ours(way, case, seconds, options, environment)
                    for seconds in (SHORT_S, SHORT_S + options.seconds)])  # fmt: skip
        cost_s = {way: statistics.median(cost_of_a_frame(*runs) for runs in results) for way, results in rounds.items()}
        size, packet, rate = case
        for way, results in rounds.items():
            good = sum(long.complete for _, long in results)
            bad = sum(long.others for _, long in results)
            start_s = statistics.median(short.cpu_s - short.frames() * cost_s[way] for short, _ in results)
            print(f"| {size} x {size} | {packet} | {rate} | {way} | {good / (ROUNDS * (SHORT_S + options.seconds)):.1f} | "
                  f"{100 * bad / max(1, good + bad):.1f} % | {1e6 * cost_s[way]:.0f} us | {cost_s[way] / cost_s['Aravis']:.2f} | "
                  f"{1e3 * start_s:.0f} ms |", flush=True)  # fmt: skip


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("host")
    parser.add_argument("camera")
    parser.add_argument("libraries")
    parser.add_argument("--seconds", type=int, default=5)
    parser.add_argument("--packets", type=int, help="packets of this size alone")
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
