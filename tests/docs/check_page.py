#!/usr/bin/env python3
"""check_page: holds the report and the table of points in docs/check.md against what kelcam check prints.

Figures differ from run to run: of the report its words are compared. With --write both are written anew.
"""
import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/check.md"
COMMAND = "kelcam --simulated=cameras.json check --seconds 2"
# Small packets, and a frame that fails: what the verdicts say does not depend on chance.
CAMERAS = {
    "link": {"mtu": 1500},
    "cameras": [{"like": "DEV_000F31034C65", "sensor": {"width": 616, "height": 514}}],
    "faults": [{"frame": 5, "status": -1}],
}
# On a busy computer these may have other verdicts, and what a system does not tell depends on it.
TIMED = {"answers", "single images", "run", "frame rate", "intervals", "receive buffer"}
REPORT = re.compile(r"(<!-- report -->\n).*?(?=\n## )", re.S)
POINTS = re.compile(r"(<!-- points -->\n).*?(?=\n## )", re.S)


def run(kelcam, *more):
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "cameras.json").write_text(json.dumps(CAMERAS), encoding="utf-8")
        return subprocess.run(
            [*kelcam, *more, *COMMAND.split()[1:]], cwd=folder, capture_output=True, text=True, encoding="utf-8",
            timeout=120, check=False, env={**os.environ, "HOME": str(pathlib.Path(kelcam[-1]).parent)},
        ).stdout  # fmt: skip


def report_block(kelcam):
    return f"\n```console\n$ {COMMAND}\n{run(kelcam)}```\n"


def points_block(kelcam):
    document = json.loads(run(kelcam, "--json"))
    rows = [f"| {point['point']} | {point['looksAt']} |" for points in (document["points"], document["cameras"][0]["points"])
            for point in points]  # fmt: skip
    return "\n".join(["", "| Point | Looks at |", "|---|---|", *rows, ""])


def points_of(report):
    """Each point of a report with its verdict and its words, without figures, files and the places where lines end."""
    points = {}
    for block in re.split(r"\n(?=\S)", report):
        match = re.match(r"(fine|look at this|broken|not looked at) +(\S+(?: \S+)*)  +(.*)", block, re.S)
        if match:
            text = " ".join(re.sub(r"\d+(?:\.\d+)*|\S*[/\\]\S*", "N", match[3]).split())
            # One frame, two frames.
            points[match[2]] = (match[1], re.sub(r"\bN (frame|image|packet)s?\b", r"N \1s", text))
    return points


def wrong_points(page, printed):
    """What the page says of points that the program does not."""
    if set(page) != set(printed):
        yield f"the report has the points {', '.join(page)}; kelcam check has {', '.join(printed)}"
        return
    for name in sorted(set(page) - TIMED):
        if page[name] != printed[name]:
            yield f"{name}: the report has {page[name]}; kelcam check has {printed[name]}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kelcam", required=True)
    parser.add_argument("--launcher", default="")
    parser.add_argument("--write", action="store_true")
    arguments = parser.parse_args()
    kelcam = [*filter(None, [arguments.launcher]), str(pathlib.Path(arguments.kelcam).resolve())]
    page = PAGE.read_text(encoding="utf-8")
    report, points = report_block(kelcam), points_block(kelcam)
    if arguments.write:
        page = REPORT.sub(lambda match: match[1] + report, page)
        PAGE.write_text(POINTS.sub(lambda match: match[1] + points, page), encoding="utf-8")
        return
    complaints = []
    if POINTS.search(page)[0].partition("\n")[2].strip() != points.strip():
        complaints.append("the table of points is not that of kelcam check")
    complaints += wrong_points(points_of(REPORT.search(page)[0]), points_of(report))
    if complaints:
        print(*complaints, "tests/docs/check_page.py --write writes both anew", sep="\n")
        sys.exit(1)


if __name__ == "__main__":
    main()
