#!/usr/bin/env python3
"""linux_test: what the built Linux binaries show, need and promise, read from the files themselves.

linux_test.py FOLDER    the module, the host SDK, kelcam and the simulated VimbaC in this folder
"""

import pathlib
import re
import subprocess
import sys
import unittest

EXPORTS = ["CreateImagingDevice", "ObjectIdentifierList", "ReleaseImagingDevice"]
EXPORTS += ["Vimba_" + name for name in EXPORTS]
HOST_SDK = {"libkel.portable.core.so", "libkel.core.so", "libkel.tools.so", "libkel.imagingdevice.so"}
SYSTEM = {"libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6", "ld-linux-x86-64.so.2"}
# With which kelcam writes pictures.
ZLIB = {"libz.so.1"}
OWN = sorted(HOST_SDK | {"libkelCameraVimba.so", "kelcam", "libVimbaC.so"})

folder = pathlib.Path(sys.argv[1])


def read(name, *options):
    return subprocess.run(
        ["readelf", "--wide", *options, folder / name], capture_output=True, text=True, check=True
    ).stdout


def dynamic_entries(name, kind):
    return re.findall(rf"\({kind}\).*\[(.*)\]", read(name, "--dynamic"))


def exports(name):
    symbols = (line.split() for line in read(name, "--dyn-syms").splitlines())
    return sorted(
        words[7]
        for words in symbols
        if len(words) > 7 and words[0][:-1].isdigit() and words[4] in ("GLOBAL", "WEAK", "UNIQUE") and words[6] != "UND"
    )


class LinuxBinaries(unittest.TestCase):
    maxDiff = None

    def test_ModuleExportsItsSixPlainNamesAndNothingElse(self):
        self.assertEqual(exports("libkelCameraVimba.so"), sorted(EXPORTS))

    def test_ModuleNeedsOnlyVimbaCTheHostSdkAndTheSystem(self):
        needed = set(dynamic_entries("libkelCameraVimba.so", "NEEDED"))
        self.assertEqual(needed - HOST_SDK - SYSTEM - {"libVimbaC.so"}, set())
        self.assertLessEqual(HOST_SDK - {"libkel.tools.so"} | {"libVimbaC.so"}, needed)

    def test_HostSdkNeedsOnlyItselfAndTheSystem(self):
        for name in sorted(HOST_SDK):
            with self.subTest(name):
                needed = set(dynamic_entries(name, "NEEDED"))
                self.assertIn("libc.so.6", needed)
                self.assertEqual(needed - HOST_SDK - SYSTEM, set())

    def test_CommandLineHostIsNotLinkedToTheModuleNorToVimbaC(self):
        needed = set(dynamic_entries("kelcam", "NEEDED"))
        self.assertLessEqual(HOST_SDK, needed)
        self.assertEqual(needed - HOST_SDK - SYSTEM - ZLIB, set())

    def test_LibrariesAreFoundNextToTheirUsersUnlessTheEnvironmentSaysOtherwise(self):
        for name in OWN:
            with self.subTest(name):
                self.assertEqual(dynamic_entries(name, "RUNPATH"), ["$ORIGIN"])
                self.assertEqual(dynamic_entries(name, "RPATH"), [])

    def test_EveryBinaryIsBuiltForRandomAddressesAndDataThatDoesNotExecute(self):
        for name in OWN:
            with self.subTest(name):
                self.assertRegex(read(name, "--file-header"), r"Type: +DYN ")
                self.assertRegex(read(name, "--program-headers"), r"GNU_STACK( +0x0+){5} RW +0x")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
