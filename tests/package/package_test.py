#!/usr/bin/env python3
"""package_test: the packages as their users meet them: unpacked into an empty folder, and used from there alone.

package_test.py --build FOLDER --version X.Y.Z --system linux|windows --compiler FILE --work FOLDER [--launcher FILE]
"""

import argparse
import ctypes.util
import os
import pathlib
import re
import shutil
import struct
import subprocess
import tarfile
import unittest
import zipfile

DEADLINE_S = 200
ENDINGS = {"linux": ("tar.gz", "deb"), "windows": ("zip",)}
SHIPPED_THIRD_PARTY = {
    "linux": ["CLI11", "JSON for Modern C++", "Highway", "stb"],
    "windows": ["CLI11", "JSON for Modern C++", "Highway", "stb", "GCC", "MinGW-w64"],
}
# From each of them a host gets at classes that no other one includes.
ENTRY_HEADERS = {"driver/kel_camera_vimba.h", "bbaseaoi.h", "bcamprofilekeys.h", "bcolorconverter.h", "imagingdevice.h"}
CAMERAS = {"mono": 0, "colour": 2}  # the profiles and the colour type of their PNG files
SIMULATED_CAMERAS = 3
SCENARIOS = 10
CAMERAS_OF_MANY = 16
# Pixels: no sensor of theirs is as small.
LEAST_SIDE = 500

options = argparse.Namespace()


def run(*command, environment=None, expected=0):
    done = subprocess.run(
        [str(word) for word in command], capture_output=True, text=True, timeout=DEADLINE_S, check=False,
        env={**os.environ, **(environment or {})},
    )  # fmt: skip
    if done.returncode != expected:
        raise AssertionError(f"{command} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done


def unpack(package, folder):
    """Where the package's own top folder is, once it lies in this empty one."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    if package.suffix == ".zip":
        with zipfile.ZipFile(package) as archive:
            archive.extractall(folder)
    elif package.suffix == ".deb":
        run("dpkg-deb", "-x", package, folder)
        return folder / "usr"
    else:
        with tarfile.open(package) as archive:
            archive.extractall(folder)
    (top,) = folder.iterdir()
    return top


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class Package:
    """An unpacked package."""

    def __init__(self, file):
        self.name = file.name
        self.top = unpack(file, options.work / file.name.replace(".", "_"))
        self.run_folder = self.top / ("bin" if options.system == "windows" else "lib/kelCameraVimba")

    def simulated(self, *arguments, expected=0):
        """kelcam with the packaged simulated cameras, as its launcher starts it."""
        if options.system == "windows":
            launcher = windows_path(self.top / "bin" / "kelcam-simulated.cmd")
            return run(options.launcher, "cmd.exe", "/c", launcher, *arguments, expected=expected)
        return run(self.top / "bin" / "kelcam-simulated", *arguments, expected=expected)

    def plain(self, *arguments, expected=0):
        """kelcam as it is, with no VimbaC in place."""
        program = "kelcam.exe" if options.system == "windows" else "kelcam"
        command = [*filter(None, [options.launcher]), self.run_folder / program]
        return run(*command, *arguments, environment={"LD_LIBRARY_PATH": ""}, expected=expected)

    def path(self, path):
        return windows_path(path) if options.system == "windows" else path

    def profile(self, name):
        """A copy: the driver writes into its profile what it learns."""
        copy = self.top.parent / f"{name}.ini"
        shutil.copyfile(self.top / "share/kelCameraVimba/profiles" / f"{name}.ini", copy)
        return copy

    def build_example(self):
        build = self.top.parent / "example"
        system = "Windows" if options.system == "windows" else "Linux"
        run("cmake", "-S", self.top / "share/kelCameraVimba/examples/embedding", "-B", build, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={self.top}", f"-DCMAKE_CXX_COMPILER={options.compiler}",
            f"-DCMAKE_SYSTEM_NAME={system}", "-DCMAKE_BUILD_TYPE=Release")  # fmt: skip
        run("cmake", "--build", build)
        return build / ("embedding.exe" if options.system == "windows" else "embedding")

    def run_example(self, program, *arguments):
        folders = (self.run_folder, self.run_folder / "simulator")
        if options.system == "windows":
            module = windows_path(self.run_folder / "kelCameraVimba.dll")
            environment = {"WINEPATH": ";".join(map(windows_path, folders))}
            return run(options.launcher, program, module, *arguments, environment=environment)
        environment = {"LD_LIBRARY_PATH": str(folders[1])}
        return run(program, self.run_folder / "libkelCameraVimba.so", *arguments, environment=environment)


def png_head(file):
    """Width, height and colour type."""
    content = file.read_bytes()
    if content[:8] != b"\x89PNG\r\n\x1a\n" or content[-12:] != b"\0\0\0\0IEND\xaeB`\x82":
        raise AssertionError(f"{file} is no whole PNG file")
    width, height, _, colour = struct.unpack_from(">IIBB", content, 16)
    return width, height, colour


class Packages(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        folder = options.work / "packages"
        shutil.rmtree(folder, ignore_errors=True)
        run("cpack", "--config", options.build / "CPackConfig.cmake", "-B", folder)
        cls.files = sorted(file for file in folder.iterdir() if file.is_file())
        cls.packages = [Package(file) for file in cls.files]

    def test_NamesHoldVersionSystemAndMachine(self):
        name = f"kelCameraVimba-{options.version}-{options.system}-x64."
        expected = sorted(name + ending for ending in ENDINGS[options.system])
        self.assertEqual([file.name for file in self.files], expected)

    def test_SimulatedVimbaCLiesOnlyInItsOwnFolder(self):
        for package in self.packages:
            with self.subTest(package.name):
                library = "VimbaC.dll" if options.system == "windows" else "libVimbaC.so"
                found = list(package.top.rglob("*VimbaC.*"))
                self.assertEqual(found, [package.run_folder / "simulator" / library])

    def test_SdkHasItsHeadersAndAllThatTheyInclude(self):
        for package in self.packages:
            with self.subTest(package.name):
                folder = package.top / "include/kelCameraVimba"
                headers = {header.relative_to(folder).as_posix(): header for header in folder.rglob("*.h")}
                texts = [header.read_text(encoding="utf-8") for header in headers.values()]
                included = set(re.findall(r'#include "([^"]+)"', "".join(texts)))
                self.assertLessEqual(ENTRY_HEADERS | included, set(headers))

    def test_NoticesNameEveryThirdPartyThatIsShipped(self):
        for package in self.packages:
            with self.subTest(package.name):
                notices = (package.top / "share/doc/kelCameraVimba/THIRD-PARTY-NOTICES.txt").read_text(errors="replace")
                for name in SHIPPED_THIRD_PARTY[options.system]:
                    self.assertRegex(notices, rf"(?m)^=+\n[^=\n]*{name.replace('+', '[+]')}[^=\n]*\n=+$")

    def test_NothingInItNamesTheBuildMachinesFolders(self):
        for package in self.packages:
            with self.subTest(package.name):
                for file in package.top.rglob("*"):
                    if file.is_file():
                        self.assertNotIn(str(options.build).encode(), file.read_bytes(), file)

    def test_DemoListsAndTakesPicturesFromThePackageAlone(self):
        for package in self.packages:
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
        for package in self.packages:
            with self.subTest(package.name):
                share = package.top / "share/kelCameraVimba"
                names = [line.split()[0] for line in package.plain("--simulated=list").stdout.splitlines()]
                self.assertEqual(names, sorted(file.stem for file in (share / "scenarios").glob("*.json")))
                self.assertEqual(len(names), SCENARIOS)
                self.assertTrue((share / "scenario.schema.json").is_file())
                cameras = package.plain("--simulated=many-cameras", "list").stdout.splitlines()
                self.assertEqual(len(cameras), CAMERAS_OF_MANY)

    def test_WithoutAVimbaCTheMissingFileIsNamed(self):
        if options.system == "linux" and ctypes.util.find_library("VimbaC"):
            self.skipTest("this machine has a VimbaC of its own")
        for package in self.packages:
            with self.subTest(package.name):
                library = "VimbaC.dll" if options.system == "windows" else "libVimbaC.so"
                result = package.plain("list", expected=1)
                self.assertIn(f"No VimbaC library was found: {library} is missing", result.stderr)

    def test_ExampleBuildsAgainstThePackageAndTakesAPicture(self):
        for package in self.packages:
            with self.subTest(package.name):
                program = package.build_example()
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
    unittest.main(argv=["package_test"], verbosity=2)
