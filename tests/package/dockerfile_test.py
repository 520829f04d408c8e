#!/usr/bin/env python3
"""dockerfile_test: the steps of the Dockerfile, compared with what they rely on. No container is run.

dockerfile_test.py SOURCE FOLDER
"""

import fnmatch
import pathlib
import re
import shlex
import sys
import unittest

source = pathlib.Path()


class Dockerfile(unittest.TestCase):
    def setUp(self):
        lines = (source / "Dockerfile").read_text(encoding="utf-8").splitlines()
        self.steps = [line.split(maxsplit=1) for line in lines if line and not line.startswith("#")]

    def step(self, word):
        return [rest for first, rest in self.steps if first == word]

    def test_StartsFromTheSystemOfContinuousIntegration(self):
        (image,) = re.findall(r"container: (\S+)", (source / ".github/workflows/ci.yml").read_text(encoding="utf-8"))
        self.assertEqual(self.step("FROM"), [image])

    def test_RunsTheDemoAlone(self):
        """The demo installs the packages of script/packages itself, so no list of them can grow old here."""
        self.assertEqual(self.step("RUN"), ["script/demo"])
        self.assertIn('ensure_packages "${packages_build[@]}"', (source / "script/demo").read_text(encoding="utf-8"))

    def test_CopiesEveryFileThatTheDemoNeeds(self):
        self.assertEqual(self.step("COPY"), [f". {self.step('WORKDIR')[0]}"])
        ignored = (source / ".dockerignore").read_text(encoding="utf-8").split()
        needed = ("CMakeLists.txt", "CMakePresets.json", "apps", "cmake", "host", "packaging", "script", "simulator", "src", "vimbac")
        for name in needed:
            self.assertTrue((source / name).exists(), name)
            self.assertFalse([pattern for pattern in ignored if fnmatch.fnmatch(name, pattern)], name)

    def test_CopiesThePicturesThatTheDemoTakes(self):
        (folder,) = re.findall(r"^folder=(\S+)$", (source / "script/demo").read_text(encoding="utf-8"), re.M)
        (command,) = self.step("CMD")
        self.assertEqual(shlex.split(command.strip("[]").replace(",", " "))[:2], ["sh", "-c"])
        self.assertIn(f"cp {folder}/*.png /pictures", command)


if __name__ == "__main__":
    source = pathlib.Path(sys.argv.pop())
    unittest.main(verbosity=2)
