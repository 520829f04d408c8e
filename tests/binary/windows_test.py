#!/usr/bin/env python3
"""windows_test: what the built Windows binaries show, need and promise, read from the files themselves.

windows_test.py FOLDER VERSION    all programs and libraries in this folder
"""

import pathlib
import sys
import unittest

from pe_file import DYNAMIC_BASE, HIGH_ENTROPY_VA, NX_COMPAT, PeFile

EXPORTS = ["CreateImagingDevice", "ObjectIdentifierList", "ReleaseImagingDevice"]
EXPORTS += ["Vimba_" + name for name in EXPORTS]
HOST_SDK = {"kel.portable.core.dll", "kel.core.dll", "kel.tools.dll", "kel.imagingdevice.dll"}
RUNTIME = {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}
SYSTEM = {"KERNEL32.dll", "msvcrt.dll", "SHELL32.dll"}
# kelcam serves browsers, and finds the way to a camera.
NETWORK = {"IPHLPAPI.DLL", "MSWSOCK.dll", "WS2_32.dll"}
MEBIBYTE = 1 << 20

folder, version = pathlib.Path(sys.argv[1]), sys.argv[2]


def binaries():
    return sorted(file for ending in ("*.dll", "*.exe", "*.module") for file in folder.glob(ending))


def own_binaries():
    return [file for file in binaries() if file.name not in RUNTIME]


class WindowsBinaries(unittest.TestCase):
    maxDiff = None

    def test_ModuleExportsItsSixPlainNamesAndNothingElse(self):
        self.assertEqual(sorted(PeFile(folder / "kelCameraVimba.dll").exports), sorted(EXPORTS))

    def test_ModuleImportsOnlyVimbaCTheHostSdkTheSystemAndTheRuntime(self):
        imported = set(PeFile(folder / "kelCameraVimba.dll").imports)
        self.assertEqual(imported - HOST_SDK - RUNTIME - SYSTEM - {"VimbaC.dll"}, set())
        self.assertLessEqual(HOST_SDK - {"kel.tools.dll"} | {"VimbaC.dll"}, imported)

    def test_ModuleImportsFromVimbaCOnlyWhatItsImportLibraryNames(self):
        definition = (pathlib.Path(__file__).parents[2] / "vimbac" / "VimbaC.def").read_text()
        named = set(definition.split("EXPORTS")[1].split())
        imported = set(PeFile(folder / "kelCameraVimba.dll").imports["VimbaC.dll"])
        self.assertEqual(imported - named, set())

    def test_SimulatedLibraryExportsWhatTheImportLibraryNames(self):
        definition = (pathlib.Path(__file__).parents[2] / "vimbac" / "VimbaC.def").read_text()
        exported = {name for name in PeFile(folder / "VimbaC.dll").exports if not name.startswith("VimbaSim")}
        self.assertEqual(exported, set(definition.split("EXPORTS")[1].split()))

    def test_HostSdkImportsOnlyItselfTheSystemAndTheRuntime(self):
        for name in sorted(HOST_SDK):
            with self.subTest(name):
                imported = set(PeFile(folder / name).imports)
                self.assertIn("msvcrt.dll", imported)
                self.assertEqual(imported - HOST_SDK - RUNTIME - SYSTEM, set())

    def test_CommandLineHostIsNotLinkedToTheModuleNorToVimbaC(self):
        imported = set(PeFile(folder / "kelcam.exe").imports)
        self.assertLessEqual(HOST_SDK, imported)
        self.assertEqual(imported - HOST_SDK - RUNTIME - SYSTEM - NETWORK, set())

    def test_RuntimeLibrariesAreNextToTheirUsers(self):
        for file in binaries():
            with self.subTest(file.name):
                needed = set(PeFile(file).imports) & RUNTIME
                self.assertEqual([name for name in sorted(needed) if not (folder / name).exists()], [])

    def test_EveryBinaryIsBuiltForRandomAddressesAndDataThatDoesNotExecute(self):
        for file in own_binaries():
            with self.subTest(file.name):
                binary = PeFile(file)
                wanted = DYNAMIC_BASE | HIGH_ENTROPY_VA | NX_COMPAT
                self.assertEqual(binary.dll_characteristics & wanted, wanted)
                self.assertTrue(binary.can_be_moved)

    def test_EveryBinaryStatesItsVersionProductAndDescription(self):
        for file in own_binaries():
            with self.subTest(file.name):
                texts = PeFile(file).version_texts
                description = texts.pop("FileDescription", "")
                self.assertNotEqual(description, "")
                expected = {
                    "CompanyName": "kelCameraVimba",
                    "FileVersion": version,
                    "InternalName": file.stem,
                    "OriginalFilename": file.name,
                    "ProductName": "kelCameraVimba",
                    "ProductVersion": version,
                }
                self.assertEqual(texts, expected)

    def test_ModuleFitsIntoAMebibyte(self):
        # As shipped, without symbols: what the sections hold in the file.
        self.assertLessEqual(PeFile(folder / "kelCameraVimba.dll").size_without_symbols, MEBIBYTE)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
