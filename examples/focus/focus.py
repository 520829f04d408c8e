#!/usr/bin/env python3
"""Prints how sharp a camera's pictures are: turn the lens until the figure is at its highest.

focus.py PICTURES OPTION...: OPTION is what `kelcam snap` is given to find and set up the camera, for instance
`focus.py 100 --camera 1` or `focus.py 100 --profile camera.ini --set exposure=5ms`.
"""

import json
import pathlib
import subprocess
import sys
import tempfile

# Of the rows every eighth: enough to compare pictures by.
ROW_STEP = 8


def read_pgm(file):
    """Width, height and pixels of a grey picture."""
    magic, size, _depth, pixels = file.read_bytes().split(b"\n", 3)
    assert magic == b"P5", f"{file} is no grey picture"
    width, height = map(int, size.split())
    return width, height, pixels


def sharpness(width, height, pixels):
    """The mean square of the differences between neighbours in a row."""
    total = count = 0
    for y in range(0, height, ROW_STEP):
        row = pixels[y * width : (y + 1) * width]
        total += sum((left - right) ** 2 for left, right in zip(row, row[1:]))
        count += width - 1
    return total / count


def main(pictures, options):
    highest = 0.0
    with tempfile.TemporaryDirectory() as folder:
        for _ in range(pictures):
            command = ["kelcam", "--json", "snap", *options, "-o", str(pathlib.Path(folder, "focus.pgm"))]
            done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
            if done.returncode != 0:
                return done.returncode
            image = json.loads(done.stdout)["images"][0]
            figure = sharpness(*read_pgm(pathlib.Path(image["file"])))
            highest = max(highest, figure)
            print(f"{figure:10.1f}  {'#' * round(40 * figure / highest)}", flush=True)
    return 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main(int(sys.argv[1]), sys.argv[2:]))
