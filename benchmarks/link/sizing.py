#!/usr/bin/env python3
"""sizing.py: what a rig needs of its link: prints the table of docs/bandwidth.md.

    sizing.py                                   the table
    sizing.py CAMERAS WIDTH HEIGHT FPS LINK     one rig of 8-bit cameras; LINK is the usable bytes per second

Cameras that send at the same time share what the link carries. Where each camera's part is below the floor of the module's
range, or the frames of a second are more than its part, the rig does not fit.
"""
import sys

import cases
import rule

MILLION = 1_000_000
LINKS = (("gigabit", cases.GIGABIT), ("2.5 gigabit", cases.TWO_AND_A_HALF_GIGABIT), ("5 gigabit", cases.FIVE_GIGABIT),
         ("10 gigabit", 1_150_000_000))
SENSORS = ((1292, 964), (2464, 2056), (4096, 3000))
RIGS = ((1, 1, 20, 0), (1, 0, 60, 0), (2, 1, 10, 0), (2, 1, 20, 0), (2, 0, 40, 0), (3, 1, 5, 0), (4, 1, 5, 0), (4, 1, 10, 1),
        (4, 1, 20, 1), (6, 1, 5, 1), (8, 1, 10, 2), (8, 2, 5, 2), (12, 1, 10, 2), (8, 2, 9, 3))


def sized(cameras, width, height, fps, link):
    """What to set as BYTEPERSECOND, the frames per second that come of it, and whether the rig fits."""
    part = min(link // cameras // MILLION * MILLION, cases.CAMERA_MAX)
    most = part / (width * height)
    if part < rule.FLOOR:
        return None, None, f"no: {link / cameras / MILLION:.1f} million bytes/s for each camera, and the floor is 45"
    if most < fps:
        return part, most, f"no: {most:.1f} frames/s at most"
    return part, most, "yes"


def row(cameras, sensor, fps, name, link):
    part, most, answer = sized(cameras, *sensor, fps, link)
    size = f"{sensor[0]} × {sensor[1]}"
    return f"| {cameras} | {size} | {fps} | {name} | {answer} | {part or '—'} | {f'{most:.1f}' if most else '—'} |"


def main():
    print("| cameras | pixels, 8 bits | frames/s | link | fits | `BYTEPERSECOND` | frames/s at most |")
    print("|---:|---|---:|---|---|---:|---:|")
    if len(sys.argv) == 6:
        cameras, width, height, fps, link = (int(word.replace("_", "").replace(",", "")) for word in sys.argv[1:])
        print(row(cameras, (width, height), fps, f"{link:,}", link))
    elif len(sys.argv) == 1:
        for cameras, sensor, fps, link in RIGS:
            print(row(cameras, SENSORS[sensor], fps, *LINKS[link]))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
