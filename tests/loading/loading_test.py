#!/usr/bin/env python3
"""loading_test: a host of its own, built against the installed SDK alone, loads the module, uses a camera and unloads it
again, many times; nothing stays behind.

loading_test.py --build FOLDER --module NAME --compiler FILE --system Linux|Windows --work FOLDER [--launcher FILE]
"""

import argparse
import json
import os
import pathlib
import shutil
import subprocess
import unittest

DEADLINE_S = 240
ROUNDS = 100
# Until then caches of the system and of the runtime fill.
SETTLED = 20
# The one lock that the module leaves behind each time (ThreadExits), as the heap counts it.
LEFT_BEHIND_BYTES = 256

options = argparse.Namespace()


def run(*command, environment=None, cwd=None):
    done = subprocess.run(
        [str(word) for word in command], capture_output=True, text=True, timeout=DEADLINE_S, check=False, cwd=cwd,
        env={**os.environ, **(environment or {})},
    )  # fmt: skip
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def build_host(prefix):
    build = options.work / "host"
    source = pathlib.Path(__file__).parent / "host"
    run("cmake", "--install", options.build, "--component", "sdk", "--prefix", prefix)
    run("cmake", "-S", source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}", "-DCMAKE_BUILD_TYPE=Release",
        f"-DCMAKE_SYSTEM_NAME={options.system}", f"-DCMAKE_CXX_COMPILER={options.compiler}")  # fmt: skip
    run("cmake", "--build", build)
    return next(file for file in build.iterdir() if file.name in ("loading-host", "loading-host.exe"))


def resources_of_rounds():
    """What the host held after each round: handles, threads, bytes of the heap."""
    shutil.rmtree(options.work, ignore_errors=True)
    prefix = options.work / "sdk"
    program = build_host(prefix)
    module = next(prefix.rglob(options.module))
    # The simulated VimbaC, in a folder that holds nothing else.
    simulator = options.work / "simulator"
    simulator.mkdir()
    vimbac = options.module.replace("kelCameraVimba", "VimbaC")
    shutil.copy(options.build / vimbac, simulator)
    camera = {"like": "DEV_000F31034C65", "sensor": {"width": 64, "height": 48}}
    (options.work / "cameras.json").write_text(json.dumps({"timing": "instant", "cameras": [camera]}))
    (options.work / "camera.ini").write_text("API=Vimba\nInit.Method=Serial\nSerial.Number=50-0536953957\n")
    environment = {"VIMBA_SIM_CONFIG": "cameras.json", "LD_LIBRARY_PATH": str(simulator)}
    if options.launcher:
        environment["WINEPATH"] = ";".join("Z:" + str(path).replace("/", "\\") for path in (module.parent, simulator))
        module = "Z:" + str(module).replace("/", "\\")
    command = [*filter(None, [options.launcher]), program, module, "camera.ini", ROUNDS]
    output = run(*command, environment=environment, cwd=options.work)
    return [tuple(map(int, line.split())) for line in output.splitlines()]


class Loading(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.rounds = resources_of_rounds()
        cls.before, cls.after = cls.rounds[SETTLED], cls.rounds[-1]

    def test_ModuleIsLoadedUsedAndUnloadedManyTimes(self):
        self.assertEqual(ROUNDS, len(self.rounds))

    def test_NoHandleIsLeft(self):
        self.assertGreater(self.before[0], 0)
        self.assertLessEqual(self.after[0], self.before[0])

    def test_NoThreadIsLeft(self):
        self.assertEqual([1] * ROUNDS, [threads for _, threads, _ in self.rounds])

    def test_NoMemoryIsLeftButTheOneLock(self):
        grown = self.after[2] - self.before[2]
        self.assertLessEqual(grown / (ROUNDS - 1 - SETTLED), LEFT_BEHIND_BYTES)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for argument in ("build", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    for argument in ("module", "compiler", "system"):
        parser.add_argument(f"--{argument}", required=True)
    parser.add_argument("--launcher", default="")
    parser.parse_args(namespace=options)
    unittest.main(argv=["loading_test"], verbosity=2)
