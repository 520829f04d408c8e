#!/usr/bin/env python3
"""package_test: the packages as their users meet them: unpacked into an empty folder, and used from there alone.

package_test.py --build FOLDER --version X.Y.Z --system linux|windows --compiler FILE --work FOLDER [--launcher FILE]
"""

import argparse
import ctypes.util
import pathlib
import re
import struct
import sys
import unittest

from packages import options, packages, run

ENDINGS = {"linux": ("tar.gz", "deb"), "windows": ("zip",)}
SHIPPED_THIRD_PARTY = {
    "linux": ["CLI11", "JSON for Modern C++", "Highway", "Boost", "stb"],
    "windows": ["CLI11", "JSON for Modern C++", "Highway", "Boost", "stb", "GCC", "MinGW-w64"],
}
# From each of them a host gets at classes that no other one includes.
ENTRY_HEADERS = {"driver/kel_camera_vimba.h", "bbaseaoi.h", "bcamprofilekeys.h", "bcolorconverter.h", "imagingdevice.h"}
# In a folder of their own: a host that does not ask for them does not get them.
SIMULATOR_HEADERS = {"simulator/VimbaC.h", "simulator/vimba_simulator.h"}
CAMERAS = {"mono": 0, "colour": 2}  # the profiles and the colour type of their PNG files
SIMULATED_CAMERAS = 3
SCENARIOS = 13
CAMERAS_OF_MANY = 16
# Pixels: no sensor of theirs is as small.
LEAST_SIDE = 500


def vimbac_name():
    return "VimbaC.dll" if options.system == "windows" else "libVimbaC.so"


def png_head(file):
    """Width, height and colour type."""
    content = file.read_bytes()
    if content[:8] != b"\x89PNG\r\n\x1a\n" or content[-12:] != b"\0\0\0\0IEND\xaeB`\x82":
        raise AssertionError(f"{file} is no whole PNG file")
    width, height, _, colour = struct.unpack_from(">IIBB", content, 16)
    return width, height, colour


class Packages(unittest.TestCase):
    maxDiff = None

    def test_NamesHoldVersionSystemAndMachine(self):
        name = f"kelCameraVimba-{options.version}-{options.system}-x64."
        expected = sorted(name + ending for ending in ENDINGS[options.system])
        self.assertEqual([package.name for package in packages()], expected)

    def test_EachVimbaCLiesOnlyInItsOwnFolder(self):
        for package in packages():
            with self.subTest(package.name):
                found = list(package.top.rglob("*VimbaC.*"))
                found = {file for file in found if file.suffix not in (".h", ".a")}
                own = {package.run_folder / folder / vimbac_name() for folder in ("aravis", "simulator")}
                self.assertLessEqual(found, own)
                self.assertIn(package.run_folder / "simulator" / vimbac_name(), found)

    def test_SdkHasItsHeadersAndAllThatTheyInclude(self):
        for package in packages():
            with self.subTest(package.name):
                folder = package.top / "include/kelCameraVimba"
                headers = {header.relative_to(folder).as_posix(): header for header in folder.rglob("*.h")}
                simulator = {name: headers.pop(name) for name in [*headers] if name.startswith("simulator/")}
                self.assertEqual(set(simulator), SIMULATOR_HEADERS)
                texts = [header.read_text(encoding="utf-8") for header in headers.values()]
                included = set(re.findall(r'#include "([^"]+)"', "".join(texts)))
                self.assertLessEqual(ENTRY_HEADERS | included, set(headers))

    def test_NoticesNameEveryThirdPartyThatIsShipped(self):
        for package in packages():
            with self.subTest(package.name):
                notices = (package.top / "share/doc/kelCameraVimba/THIRD-PARTY-NOTICES.txt").read_text(errors="replace")
                for name in SHIPPED_THIRD_PARTY[options.system]:
                    self.assertRegex(notices, rf"(?m)^=+\n[^=\n]*{name.replace('+', '[+]')}[^=\n]*\n=+$")

    def test_NothingInItNamesTheBuildMachinesFolders(self):
        for package in packages():
            with self.subTest(package.name):
                for file in package.top.rglob("*"):
                    if file.is_file():
                        self.assertNotIn(str(options.build).encode(), file.read_bytes(), file)

    def test_DemoListsAndTakesPicturesFromThePackageAlone(self):
        for package in packages():
            with self.subTest(package.name):
                self.assertEqual(len(package.simulated("list").stdout.split()), SIMULATED_CAMERAS)
                for name, colour in CAMERAS.items():
                    picture = package.top.parent / f"{name}.png"
                    profile = package.profile(name)
                    package.simulated("snap", "--profile", package.path(profile), "-o", package.path(picture))
                    width, height, colour_type = png_head(picture)
                    self.assertEqual(colour_type, colour)
                    self.assertGreater(min(width, height), LEAST_SIDE)

    def test_ScenariosComeWithTheirSchema(self):
        for package in packages():
            with self.subTest(package.name):
                share = package.top / "share/kelCameraVimba"
                names = [line.split()[0] for line in package.plain("--simulated=list").stdout.splitlines()]
                self.assertEqual(names, sorted(file.stem for file in (share / "scenarios").glob("*.json")))
                self.assertEqual(len(names), SCENARIOS)
                self.assertTrue((share / "scenario.schema.json").is_file())
                self.assertTrue((share / "kelcam-output.schema.json").is_file())
                cameras = package.plain("--simulated=many-cameras", "list").stdout.splitlines()
                self.assertEqual(len(cameras), CAMERAS_OF_MANY)

    def test_WithoutAVimbaCTheMissingFileIsNamed(self):
        if options.system == "linux" and ctypes.util.find_library("VimbaC"):
            self.skipTest("this machine has a VimbaC of its own")
        for package in packages():
            with self.subTest(package.name):
                result = package.plain("list", expected=1)
                self.assertIn(f"No VimbaC library was found: {vimbac_name()} is missing", result.stderr)
                result = package.run_example(package.build_example("embedding"), simulated=False, expected=1)
                self.assertRegex(result.stderr, f"(?m)^error: cannot load .*: {re.escape(vimbac_name())}")

    def test_ExampleBuildsAgainstThePackageAndTakesAPicture(self):
        for package in packages():
            with self.subTest(package.name):
                program = package.build_example("embedding")
                self.assertEqual(len(package.run_example(program).stdout.split()), SIMULATED_CAMERAS)
                picture = package.top.parent / "example.pgm"
                package.run_example(program, package.path(package.profile("mono")), package.path(picture))
                self.assertTrue(picture.read_bytes().startswith(b"P5\n"))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for argument in ("build", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    for argument in ("version", "system", "compiler"):
        parser.add_argument(f"--{argument}", required=True)
    parser.add_argument("--launcher", default="")
    parser.parse_args(namespace=options)
    loader = unittest.TestLoader()
    suite = loader.loadTestsFromNames(["__main__", "documents_test", "sdk_test"])
    sys.exit(not unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful())
