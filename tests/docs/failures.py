#!/usr/bin/env python3
"""failures: holds what docs/troubleshooting.md and docs/diagnostics.md show of failures against kelcam.

Each block after "<!-- transcript NAME -->" must be what kelcam prints on standard error in that case, with simulated
cameras. Each table after "<!-- causes NAME -->" must have the rows of the table of this name in apps/kelcam/, and the
Vimba codes their meanings. A test in tests/cli/ must bring each reason about. With --write the transcripts and tables of causes are written anew.
"""
import argparse
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/troubleshooting.md"
CODES = ROOT / "docs/diagnostics.md"
TABLES = {
    "opening": (ROOT / "apps/kelcam/device/opening_explained.cpp", "kOpeningCauses"),
    "snap": (ROOT / "apps/kelcam/device/snap_explained.cpp", "kSnapCauses"),
}
ERRORS = {"eAcquisitionFailed": 12103, "eTimeout": 12106, "eFrameTooSmall": 12108, "eAborted": 12109, "eFrameInvalid": 12110}

SERIAL = "API = Vimba\nInit.Method = Serial\nSerial.Number = "
MONO, COLOUR = SERIAL + "50-0536953957\n", SERIAL + "50-0536953958\n"
ADDRESS = "API = Vimba\nInit.Method = IP\nIP = "
SNAP = "kelcam snap --profile camera.ini -o picture.png"

# name: (profile, simulated cameras, command)
CASES = {
    "bayer-order": (COLOUR, {}, "kelcam info --profile camera.ini"),
    "section": ("[camera]\n" + MONO, {}, "kelcam info --profile camera.ini"),
    "absent": (SERIAL + "50-0503318719\n", {}, "kelcam info --profile camera.ini"),
    "in-use": (MONO, {"faults": [{"call": "VmbCameraOpen", "error": -6, "count": 0}]}, "kelcam info --profile camera.ini"),
    "address-absent": (ADDRESS + "169.254.76.201\n", {}, "kelcam info --profile camera.ini"),
    "address-in-use": (
        ADDRESS + "169.254.76.101\n",
        {"faults": [{"call": "VmbCameraOpen", "error": -6, "count": 0}]},
        "kelcam info --profile camera.ini",
    ),
    "transport-layer": (MONO, {"system": {"geVTLIsPresent": False}}, "kelcam list"),
    "lost-packets": (MONO, {"faults": [{"frame": 0, "status": -1}]}, SNAP),
    "line": (MONO, {}, SNAP + " --trigger line --timeout 1000"),
    "clock": (
        MONO,
        {"faults": [{"call": "VmbFeatureCommandRun", "feature": "GevTimestampControlLatch", "error": -3},
                    {"frame": 0, "drop": True}]},
        SNAP + " --timeout 1000",
    ),
    "lost": (MONO, {"faults": [{"unplugAtFrame": 0}]}, "kelcam snap --profile camera.ini -n 1000 --timeout 1000 -o %d.png"),
    "never-done": (
        MONO,
        {"faults": [{"call": "VmbFeatureCommandIsDone", "feature": "TriggerSoftware", "delay_ms": 6000}]},
        SNAP,
    ),
}

LITERAL = r'"(?:[^"\\]|\\.)*"'
LITERALS = re.compile(rf"{LITERAL}(?:\s*{LITERAL})*")


def transcript(kelcam, case):
    profile, simulated, command = CASES[case]
    small = json.loads((ROOT / "tests/docs/small_cameras.json").read_text())  # sanitizers keep up
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "camera.ini").write_text(profile)
        (pathlib.Path(folder) / "simulator.json").write_text(json.dumps(small | simulated))
        run = subprocess.run(
            [*kelcam, *shlex.split(command)[1:]],
            cwd=folder, env={**os.environ, "VIMBA_SIM_CONFIG": "simulator.json"},
            capture_output=True, text=True, encoding="utf-8", timeout=120,
        )  # fmt: skip
    printed = re.sub(r"^wine: .*\n", "", run.stderr, flags=re.M)  # script/wine reports an exit code
    printed = re.sub(r"^notice: the cameras are simulated .*\n", "", printed, flags=re.M)
    return f"$ {command}\n{printed}"


def rows_of(source, table):
    """The array's rows: the text of each one's initializer."""
    text = re.sub(r"^\s*//.*", "", source.read_text(encoding="utf-8"), flags=re.M)
    body = re.search(rf"\b{table}\[\] = \{{(.*?)^\}};", text, re.S | re.M)[1]
    plain = LITERALS.sub(lambda match: "\0" * len(match[0]), body)  # braces in texts are none
    return [body[match.start() : match.end()] for match in re.finditer(r"\{[^{}]*\}", plain)]


def texts_of(row):
    return ["".join(ast_text[1:-1] for ast_text in re.findall(LITERAL, group)) for group in LITERALS.findall(row)]


def cell(text):
    return re.sub(r"(<\w+>)", r"`\1`", text)


def table_of(name):
    """The Markdown table of the causes."""
    lines = []
    for row in rows_of(*TABLES[name]):
        *driver, why, to_do = texts_of(row)
        error = re.search(r"BError::(\w+)", row)
        constant = re.match(r"\{(k\w+)", row)
        if constant:
            driver = [re.search(rf"\b{constant[1]} = ({LITERAL})", TABLES[name][0].read_text(encoding="utf-8"))[1][1:-1]]
        first = f"{ERRORS[error[1]]}" if error else f"`{driver[0].strip(' -')}`" if driver else ""
        lines.append(f"| {first} | {cell(why)} | {cell(to_do)} |\n")
    head = "Error" if name == "snap" else "Driver's message"
    return f"| {head} | `why:` | `to do:` |\n|---|---|---|\n" + "".join(lines)


def written(page, kelcam):
    """The page with its transcripts and tables as they should be."""
    def block(match):
        return f"{match[1]}```\n{transcript(kelcam, match[2])}```\n"

    def table(match):
        return f"{match[1]}\n{table_of(match[2])}\n"

    page = re.sub(r"^(<!-- transcript (\S+) -->\n)```\n.*?^```\n", block, page, flags=re.M | re.S)
    return re.sub(r"^(<!-- causes (\S+) -->\n)\n*(?:\|.*\n)*\n*", table, page, flags=re.M)


def wrong_codes():
    page = CODES.read_text(encoding="utf-8")
    for row in rows_of(ROOT / "apps/kelcam/messages/vimba_codes.cpp", "kVimbaCodes"):
        code, meaning = re.search(r"-\d+", row)[0], texts_of(row)[0]
        if f"\n| {code} | {meaning} |" not in page:
            yield f"{CODES.name}: code {code} is \"{meaning}\" in apps/kelcam/messages/vimba_codes.cpp"


def untested_rows():
    """Reasons that no test of kelcam compares with."""
    for name, (source, table) in TABLES.items():
        test = (ROOT / "tests/cli" / f"{source.stem}_test.cpp").read_text(encoding="utf-8")
        compared = "\n".join("".join(re.findall(LITERAL, group)) for group in LITERALS.findall(test)).replace('""', "")
        for row in rows_of(source, table):
            why = re.split(r"[.(<]", texts_of(row)[-2])[0].strip()  # up to what a regular expression writes otherwise
            if f"why: {why}" not in compared:
                yield f"{source.name}: no test in tests/cli/ has the reason \"{why}\""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--kelcam", required=True)
    parser.add_argument("--launcher", default="")
    parser.add_argument("--write", action="store_true")
    arguments = parser.parse_args()
    kelcam = [str(pathlib.Path(part).resolve()) for part in (arguments.launcher, arguments.kelcam) if part]
    page = PAGE.read_text(encoding="utf-8")
    should_be = written(page, kelcam)
    if arguments.write:
        PAGE.write_text(should_be, encoding="utf-8")
        page = should_be
    complaints = [f"{PAGE.name} shows no transcript {case}" for case in CASES if f"<!-- transcript {case} -->\n" not in page]
    complaints += [f"{PAGE.name} shows no causes {name}" for name in TABLES if f"<!-- causes {name} -->\n" not in page]
    complaints += [*wrong_codes(), *untested_rows()]
    for is_line, should_line in zip(page.splitlines(), should_be.splitlines()):
        if is_line != should_line:
            complaints.append(f"{PAGE.name} has\n  {is_line}\nand should have\n  {should_line}")
            break
    else:
        if page != should_be:
            complaints.append(f"{PAGE.name} ends otherwise than it should")
    if complaints:
        print("\n".join(complaints), "\n(tests/docs/failures.py --write writes the transcripts and tables anew)", sep="")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
