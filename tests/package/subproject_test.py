#!/usr/bin/env python3
"""subproject_test: the project as a part of another one: it builds there and leaves the other one's build as it was.

subproject_test.py --source FOLDER --compiler FILE --c-compiler FILE --work FOLDER
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import unittest

DEADLINE_S = 800
SUPERPROJECT = pathlib.Path(__file__).parent / "superproject"

options = argparse.Namespace()


def run(*command):
    done = subprocess.run(
        [str(word) for word in command], capture_output=True, text=True, timeout=DEADLINE_S, check=False
    )
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def configure(build, *settings):
    shutil.rmtree(build, ignore_errors=True)
    run("cmake", "-S", SUPERPROJECT, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", f"-DKEL_SOURCE={options.source}",
        f"-DCMAKE_CXX_COMPILER={options.compiler}", f"-DCMAKE_C_COMPILER={options.c_compiler}", *settings)  # fmt: skip


def targets(build):
    printed = run("cmake", "--build", build, "--target", "help")
    return {line.partition(":")[0] for line in printed.splitlines()}


class Subproject(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.build = options.work / "superproject"
        configure(cls.build)

    def test_ApplicationBuildsAndRunsWithTheSdk(self):
        run("cmake", "--build", self.build, "--target", "application")
        self.assertEqual(run(self.build / "application"), "a text of the SDK\n")
        libraries = {file.parent.relative_to(self.build).as_posix() for file in self.build.rglob("*.so")}
        self.assertEqual(libraries, {"camera"})

    def test_NoFolderIsTakenFromTheTopOfTheBuild(self):
        files = [*options.source.rglob("CMakeLists.txt"), *(options.source / "cmake").iterdir()]
        found = [file for file in files if "build" not in file.relative_to(options.source).parts
                 and re.search(r"CMAKE_(SOURCE|BINARY)_DIR", file.read_text(encoding="utf-8"))]  # fmt: skip
        self.assertEqual(found, [])

    def test_NeitherTestsNorPackagesNorInstalledFilesAreAdded(self):
        self.assertIn("Total Tests: 0", run("ctest", "--test-dir", self.build, "-N"))
        self.assertFalse((self.build / "CPackConfig.cmake").exists())
        self.assertNotIn("cli-tests", targets(self.build))
        script = self.build / "camera/cmake_install.cmake"
        self.assertNotIn("file(INSTALL", script.read_text(encoding="utf-8") if script.exists() else "")

    def test_TestsAndInstallationAreThereWhereTheyAreAskedFor(self):
        build = options.work / "superproject-whole"
        configure(build, "-DKEL_BUILD_TESTS=ON", "-DKEL_INSTALL=ON")
        self.assertLessEqual({"cli-tests", "kelcam", "package-documents", "kelCameraVimba-sdk"}, targets(build))
        self.assertIn("file(INSTALL", (build / "camera/cmake_install.cmake").read_text(encoding="utf-8"))
        self.assertFalse((build / "CPackConfig.cmake").exists())


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for argument in ("source", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    for argument in ("compiler", "c-compiler"):
        parser.add_argument(f"--{argument}", required=True)
    parser.parse_args(namespace=options)
    unittest.main(argv=["subproject_test"], verbosity=2)
