#!/usr/bin/env python3
"""view.py: what kelcam view costs beyond kelcam live.

    view.py KELCAM [--seconds S]

Both run the same simulated camera of 2464 x 2056 pixels at 24 frames a second, one after the other, for so many seconds
(20), a monochrome camera and a colour camera. One viewer takes ten pictures a second from view, 1280 pixels wide, with the
stream of events open. Printed are processor seconds a second, of all threads, in user and in system mode.
"""

import argparse
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/view"))
from viewer import Events, Kelcam  # noqa: E402  (its folder is no package)

PICTURES_PER_S, PICTURE_WIDTH = 10, 1280
PAGE = "benchmark"
# The driver starts at two thirds of the way between 45 MB/s and the upper end: at 24 frames a second.
RATES = {"StreamBytesPerSecond": {"max": 160_500_000}}
CAMERAS = {"monochrome": "DEV_000F31034C65", "colour": "DEV_000F31034C66"}


def cpu_of(process_id):
    """Processor seconds so far."""
    fields = pathlib.Path(f"/proc/{process_id}/stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def world(like):
    return {"cameras": [{"like": like, "ranges": RATES}], "link": {"capacity": 1_000_000_000}}


def cost_of(process_id, seconds):
    start, begin = time.monotonic(), cpu_of(process_id)
    time.sleep(seconds)
    return (cpu_of(process_id) - begin) / (time.monotonic() - start)


def cost_of_live(arguments, like):
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "cameras.json").write_text(json.dumps(world(like)), encoding="utf-8")
        process = subprocess.Popen(
            [arguments.kelcam, "--json", "live", "--camera", "1"], cwd=folder, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, env={**os.environ, "VIMBA_SIM_CONFIG": "cameras.json"}, encoding="utf-8")  # fmt: skip
        process.stdout.readline()
        cost = cost_of(process.pid, arguments.seconds)
        process.send_signal(signal.SIGINT)
        total = json.loads(process.communicate()[0].splitlines()[-1])
    return cost, total["framesPerSecond"]


class Viewer(threading.Thread):
    """Takes pictures until it is over."""

    def __init__(self, view):
        super().__init__(daemon=True)
        self.view, self.is_over, self.pictures, self.bytes = view, threading.Event(), 0, 0

    def run(self):
        frame, next_time = 0, time.monotonic()
        with self.view.connect() as connection:
            while not self.is_over.is_set():
                target = f"/api/cameras/0/picture?page={PAGE}&after={frame}&width={PICTURE_WIDTH}"
                answer = connection.ask("GET", target)
                frame = answer.frame
                self.pictures += 1
                self.bytes += len(answer.body)
                next_time = max(next_time + 1 / PICTURES_PER_S, time.monotonic() - 1 / PICTURES_PER_S)
                time.sleep(max(0, next_time - time.monotonic()))


def first_picture_s(view):
    """From opening the page to its first picture."""
    start = time.monotonic()
    view.get("/")
    with Events(view.port, "firstpage"):
        view.picture(width=PICTURE_WIDTH, page="firstpage")
    return time.monotonic() - start


def cost_of_view(arguments, like):
    arguments.emulator = []
    with Kelcam(arguments, world(like)) as view:
        view.wait_for_state(lambda state: state["state"] == "running")
        first_s = first_picture_s(view)
        with Events(view.port, PAGE) as events:
            viewer = Viewer(view)
            viewer.start()
            events.wait("frame")
            pictures, first = viewer.pictures, events.wait("figures", after=events.count())["frames"]
            start = time.monotonic()
            cost = cost_of(view.process.pid, arguments.seconds)
            elapsed = time.monotonic() - start
            frames = events.wait("figures", after=events.count())["frames"] - first
            shown = (viewer.pictures - pictures) / elapsed
            reports = sum(name == "frame" for name, _ in events.seen) / elapsed
            viewer.is_over.set()
            viewer.join()
    return cost, frames / (elapsed + 1), shown, viewer.bytes / viewer.pictures, reports, first_s


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kelcam", type=pathlib.Path)
    parser.add_argument("--seconds", type=float, default=20)
    arguments = parser.parse_args()
    arguments.kelcam = arguments.kelcam.resolve()
    for name, like in CAMERAS.items():
        live, live_rate = cost_of_live(arguments, like)
        view, view_rate, shown, size, reports, first_s = cost_of_view(arguments, like)
        print(f"{name}: live {live:.2f} cores at {live_rate:.1f} frames/s; view {view:.2f} cores at {view_rate:.1f} frames/s, "
              f"{view - live:.2f} more for {shown:.1f} pictures/s of {size / 1000:.0f} kB and {reports:.1f} reports/s; "
              f"first picture after {first_s:.2f} s", flush=True)  # fmt: skip


if __name__ == "__main__":
    main()
