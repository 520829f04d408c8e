#!/usr/bin/env python3
"""link.py: two cameras on one link of gigabit, over the wire: how many snaps fail while the module looks for the rate, with
and without kelcam's --link, and when the profiles set a rate that fits.

    link.py KELCAM CAMERA [--snaps N] [--rounds R]    programs kelcam and wire-camera

To be run in a network of its own (tests/bridge/network.py). Says so and does nothing where the system allows no such networks
or has no token bucket. A snap is that of one camera; both begin theirs at the same time.
"""
import argparse
import collections
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests/bridge"))
import shared_link  # noqa: E402
from idle_time import IdleTime  # noqa: E402

CAMERAS = 2
HEIGHT = 1024
INTERVAL_S = 0.15
MEGA = 1e6
# Two of them fit. What is lost at this rate is not lost for want of capacity.
FITTING = "BYTEPERSECOND=57000000\n"
FITTING_SNAPS = 100


def share(cameras, first, last):
    """Of the snaps first to last of all cameras, those that failed, in percent."""
    tried = [number for camera in cameras for number in range(first, min(last, len(camera["images"])) + 1)]
    bad = sum(first <= number <= last for camera in cameras for number in shared_link.failed(camera))
    return f"{100 * bad / len(tried):.1f} %" if tried else "-"


def measure(link, kelcam, snaps, way):
    idle, lost, begin = IdleTime(), link.lost_packets(), time.monotonic()
    cameras = kelcam.snap(CAMERAS, snaps, INTERVAL_S, way == "linked")["cameras"]
    seconds = time.monotonic() - begin
    codes = collections.Counter(code for camera in cameras for code in shared_link.failed(camera).values())
    rates = [camera["summary"]["streamBytesPerSecond"] for camera in cameras]
    words = [way, share(cameras, 1, 50), share(cameras, 1, 200), share(cameras, 201, snaps),
             ", ".join(f"{count} x {code}" for code, count in sorted(codes.items()))]  # fmt: skip
    words += [" and ".join(f"{rate[key] / MEGA:.1f}" for rate in rates) for key in ("first", "last", "mean")]
    words += [f"{link.lost_packets() - lost}", f"{seconds:.0f} s", f"{100 * idle.share():.0f} %"]
    print("| " + " | ".join(words) + " |", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kelcam")
    parser.add_argument("camera")
    parser.add_argument("--snaps", type=int, default=250)
    parser.add_argument("--rounds", type=int, default=2)
    options = parser.parse_args()
    try:
        link = shared_link.SharedLink(options.camera, CAMERAS)
    except shared_link.Unavailable as reason:
        return print(f"skipped: this needs network namespaces and a token bucket of tc: {reason}")
    with link:
        fair = shared_link.CAPACITY / CAMERAS / MEGA
        print(f"{CAMERAS} cameras of 2048 x {HEIGHT} pixels, {shared_link.CAPACITY:,} bytes/s, fair share {fair:.1f} million, "
              f"{options.snaps} snaps of each, one every {INTERVAL_S} s\n")  # fmt: skip
        print("| | Failed 1-50 | 1-200 | 201- | Codes | 10^6 bytes/s first | Last | Mean | Packets lost | Time | Idle |")
        print("|---|---|---|---|---|---|---|---|---|---|---|")
        kelcam = shared_link.Kelcam(options.kelcam, HEIGHT)
        for _ in range(options.rounds):
            for way in ("unlinked", "linked"):
                measure(link, kelcam, options.snaps, way)
        measure(link, shared_link.Kelcam(options.kelcam, HEIGHT, FITTING), FITTING_SNAPS, FITTING.strip())


if __name__ == "__main__":
    main()
