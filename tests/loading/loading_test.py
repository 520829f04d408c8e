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
# The system itself holds one handle more or less at a given moment, so a few rounds are looked at together.
FEW = 10

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
    # glibc counts the freed blocks that a thread keeps for itself as in use.
    environment = {"VIMBA_SIM_CONFIG": "cameras.json", "LD_LIBRARY_PATH": str(simulator),
                   "GLIBC_TUNABLES": "glibc.malloc.tcache_count=0:glibc.malloc.mxfast=0"}  # fmt: skip
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

    def test_ModuleIsLoadedUsedAndUnloadedManyTimes(self):
        self.assertEqual(len(self.rounds), ROUNDS)

    def assert_not_grown(self, held, least):
        """`least` is what a round that leaves something leaves at least."""
        growth = min(held[-FEW:]) - max(held[SETTLED : SETTLED + FEW])
        if options.launcher:
            # There the runtime keeps a record, with handles, for as many threads as ever ran at once.
            self.assertLess(growth, least * (ROUNDS - SETTLED - 2 * FEW) // 2)
        else:
            self.assertLessEqual(growth, 0)

    def test_NoHandleIsLeft(self):
        handles = [handles for handles, _, _ in self.rounds]
        self.assertGreater(min(handles), 0)
        self.assert_not_grown(handles, least=1)

    def test_NoThreadIsLeft(self):
        self.assertEqual([threads for _, threads, _ in self.rounds], [1] * ROUNDS)

    def test_NoMemoryIsLeft(self):
        self.assert_not_grown([heap_bytes for _, _, heap_bytes in self.rounds], least=16)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for argument in ("build", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    for argument in ("module", "compiler", "system"):
        parser.add_argument(f"--{argument}", required=True)
    parser.add_argument("--launcher", default="")
    parser.parse_args(namespace=options)
    unittest.main(argv=["loading_test"], verbosity=2)
