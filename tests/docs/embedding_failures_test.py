#!/usr/bin/env python3
"""embedding_failures_test: what the embedding example prints and returns when something fails, one test for each kind.

embedding_failures_test.py --program FILE --module FILE --scripted-module FILE --profiles FOLDER --work FOLDER
                           --system Linux|Windows [--launcher FILE]
"""

import argparse
import json
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

DEADLINE_S = 120
FAILED, WRONG_USAGE = 1, 2
ALWAYS = {"count": 0}

options = argparse.Namespace()


def failing(call, error, **more):
    return {"faults": [{"call": call, "error": error} | ALWAYS | more]}


class EmbeddingFailures(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = options.work / self.id().rpartition(".")[2]
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        shutil.copy(options.profiles / "mono.ini", self.folder)
        self.vimbac = options.module.name.replace("kelCameraVimba", "VimbaC")

    def run_example(self, *arguments, simulated=None, script=""):
        """The lines of standard error and the exit code."""
        cameras = json.loads(pathlib.Path(__file__).with_name("small_cameras.json").read_text())
        configuration = self.folder / "simulator.json"
        configuration.write_text(json.dumps(cameras | (simulated or {})))
        command = [*filter(None, [options.launcher]), options.program, *arguments]
        done = subprocess.run(
            [str(word) for word in command], cwd=self.folder, capture_output=True, text=True, encoding="utf-8",
            timeout=DEADLINE_S, check=False,
            env={**os.environ, "VIMBA_SIM_CONFIG": str(configuration), "KELCAM_TEST_SCRIPT": script},
        )  # fmt: skip
        lines = done.stderr.splitlines()
        return [line for line in lines if not line.startswith("wine: ")], done.returncode  # script/wine reports exit codes

    def snap(self, **how):
        return self.run_example(options.module, "mono.ini", "picture.pgm", **how)

    def test_CommandLineThatFitsNoUseIsExplained(self):
        self.assertEqual(self.run_example(), (["usage: embedding MODULE [PROFILE PICTURE]"], WRONG_USAGE))

    def test_ModuleThatIsNotThereIsNamed(self):
        lines, code = self.run_example("absent.module")
        reason = {
            "Linux": f"{self.folder}/absent.module: cannot open shared object file: No such file or directory",
            "Windows": "system error 126: [^:]+",
        }
        self.assertRegex("\n".join(lines), f"^error: cannot load absent.module: {reason[options.system]}$")
        self.assertEqual(code, FAILED)

    def test_FileThatIsNoModuleIsNamed(self):
        (self.folder / "text.module").write_text("this is no library")
        lines, code = self.run_example("text.module")
        reason = {"Linux": f"{self.folder}/text.module: file too short", "Windows": "system error 193: [^:]+"}
        self.assertRegex("\n".join(lines), f"^error: cannot load text.module: {reason[options.system]}$")
        self.assertEqual(code, FAILED)

    def test_VimbaCThatIsNotThereIsNamed(self):
        shutil.copy(options.module, self.folder)
        lines, code = self.run_example(options.module.name)
        reason = {
            "Linux": "libVimbaC.so: cannot open shared object file: No such file or directory",
            "Windows": "VimbaC.dll or a library that it needs is missing; system error 126: [^:]+",
        }
        self.assertRegex("\n".join(lines), f"^error: cannot load {options.module.name}: {reason[options.system]}$")
        self.assertEqual(code, FAILED)

    def test_ExportThatIsNotThereIsNamed(self):
        library = options.module.with_name(self.vimbac)
        self.assertEqual(
            self.run_example(library), ([f"error: {library} does not export CreateImagingDevice"], FAILED))  # fmt: skip

    def test_ListWithoutCameraIsAFailure(self):
        lines, code = self.run_example(options.module, simulated={"cameras": []})
        self.assertEqual(lines, ["error: no camera was found, or the camera system does not start"])
        self.assertEqual(code, FAILED)

    def test_ProfileThatIsNotThereIsNamed(self):
        lines, code = self.run_example(options.module, "absent.ini", "picture.pgm")
        self.assertRegex("\n".join(lines), r"^error 8400: the profile absent\.ini cannot be read: .+$")
        self.assertEqual(code, FAILED)

    def test_CameraThatIsNotThereCannotBeOpened(self):
        lines, code = self.snap(simulated={"cameras": []})
        self.assertEqual(lines[-2:], ["InitMethod: Serial (50-0536953957)", "error: the camera of mono.ini cannot be opened"])
        self.assertEqual(code, FAILED)

    def test_CameraThatRefusesIsExplainedByTheDriver(self):
        in_use = -6
        lines, code = self.snap(simulated=failing("VmbCameraOpen", in_use))
        self.assertEqual(
            lines[-2:],
            ["Camera (UniqueId - DEV_000F31034C65): - InitBySerial failed (50-0536953957)",
             "error: the camera of mono.ini cannot be opened"],
        )  # fmt: skip
        self.assertEqual(code, FAILED)

    def test_StartThatThrowsIsPrinted(self):
        lines, code = self.snap(simulated=failing("VmbFeatureCommandRun", -3, feature="AcquisitionStart"))
        self.assertEqual(lines[-1], "error 12103: acquisition failed: AcquisitionStart failed")
        self.assertEqual(code, FAILED)

    def test_SnapThatFailsIsPrinted(self):
        lost_packets = {"frame": 0, "status": -1}
        lines, code = self.snap(simulated={"faults": [lost_packets]})
        self.assertEqual(lines[-1], "error 12103: acquisition failed")
        self.assertEqual(code, FAILED)

    def test_StopThatThrowsIsPrinted(self):
        lines, code = self.snap(simulated=failing("VmbFeatureCommandRun", -3, feature="AcquisitionStop"))
        self.assertEqual(lines[-1], "error 12103: acquisition failed: AcquisitionStop failed")
        self.assertEqual(code, FAILED)
        self.assertFalse((self.folder / "picture.pgm").exists())

    def test_FailuresOfSnapAndStopAreBothPrinted(self):
        lost_packets = {"frame": 0, "status": -1}
        faults = failing("VmbFeatureCommandRun", -3, feature="AcquisitionStop")["faults"]
        lines, code = self.snap(simulated={"faults": [lost_packets, *faults]})
        self.assertEqual(
            lines[-2:],
            ["error 12103: acquisition failed: AcquisitionStop failed", "error 12103: acquisition failed"],
        )  # fmt: skip
        self.assertEqual(code, FAILED)

    def test_PictureThatCannotBeWrittenIsNamed(self):
        lines, code = self.run_example(options.module, "mono.ini", "absent/picture.pgm")
        self.assertEqual(lines[-1], "error: cannot write absent/picture.pgm")
        self.assertEqual(code, FAILED)

    def test_SnapThatThrowsIsPrintedAndTheCameraIsStoppedAndReleased(self):
        thrown = {"wrongkind": "the area is of the wrong kind for the picture (1)", "exhausted": "out of memory"}
        for outcome, text in thrown.items():
            with self.subTest(outcome):
                lines, code = self.run_example(options.scripted_module, "mono.ini", "picture.pgm", script=f"snap={outcome}")
                self.assertEqual(
                    lines[-5:], ["StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap", "Release", f"error: {text}"])  # fmt: skip
                self.assertEqual(code, FAILED)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for argument in ("program", "module", "scripted-module", "profiles", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    parser.add_argument("--system", choices=("Linux", "Windows"), required=True)
    parser.add_argument("--launcher", default="")
    parser.parse_args(namespace=options)
    suite = unittest.TestLoader().loadTestsFromTestCase(EmbeddingFailures)
    sys.exit(not unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful())
