#!/usr/bin/env python3
"""run_cookbook: does what docs/cookbook.md says, recipe by recipe, with simulated cameras.

run_cookbook.py --kelcam FILE [--only WORD]: each recipe is a section with a block of shell commands, run in an empty folder
with `kelcam` and the scripts of examples/ on the path. A comment behind the block names what it makes: `<!-- makes NAME... -->`.
A comment before it may name the cameras that it needs, a file of this folder: `<!-- needs NAME -->`.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
RECIPE = re.compile(
    r"^## (?P<title>.*?)$(?P<text>.*?)"
    r"(?:^<!-- needs (?P<scenario>\S+) -->\n)?^```sh\n(?P<commands>.*?)^```\n<!-- makes (?P<files>.*?) -->$",
    re.M | re.S,
)
DEADLINE_S = 120


def recipes(text):
    return [match.groupdict() for match in RECIPE.finditer(text)]


def run(recipe, folder, environment):
    """What is wrong with the recipe; None: nothing."""
    if recipe["scenario"]:
        environment = {**environment, "VIMBA_SIM_CONFIG": str(HERE / f"{recipe['scenario']}.json")}
    done = subprocess.run(
        ["bash", "-euo", "pipefail", "-c", recipe["commands"]], cwd=folder, env=environment, text=True, timeout=DEADLINE_S,
        check=False, capture_output=True)  # fmt: skip
    if done.returncode != 0:
        return f"exit code {done.returncode}\n{done.stdout}{done.stderr}"
    for name in recipe["files"].split():
        file = folder / name
        if not file.is_file() or file.stat().st_size == 0:
            return f"{name} is not there\n{done.stdout}{done.stderr}"
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--kelcam", type=pathlib.Path, required=True)
    parser.add_argument("--only", default="")
    arguments = parser.parse_args()

    text = (ROOT / "docs/cookbook.md").read_text(encoding="utf-8")
    found = recipes(text)
    headings = re.findall(r"^## (.*)$", text, re.M)
    failed = [f"{title}: not a recipe that can be run" for title in headings if title not in {r["title"] for r in found}]
    path = os.pathsep.join([str(arguments.kelcam.resolve().parent), str(ROOT / "examples/focus"), os.environ["PATH"]])
    for recipe in found:
        if arguments.only not in recipe["title"]:
            continue
        with tempfile.TemporaryDirectory() as folder:
            problem = run(recipe, pathlib.Path(folder), {**os.environ, "PATH": path})
        print(f"{'FAILED' if problem else 'ok    '} {recipe['title']}", flush=True)
        if problem:
            failed.append(f"{recipe['title']}: {problem}")
    print("\n".join(failed))
    return bool(failed)


if __name__ == "__main__":
    sys.exit(main())
