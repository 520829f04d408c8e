#!/usr/bin/env python3
"""architecture_check_test: check_architecture finds what it is there to find, shown on small trees."""
import json
import pathlib
import tempfile
import unittest

import check_architecture


class Tree:
    """A tree in a temporary folder: a device, what every build needs beside it, and the files given."""

    def __init__(self, files, unbuilt=()):
        self.folder = tempfile.TemporaryDirectory()
        self.source = pathlib.Path(self.folder.name).resolve()
        everything = {
            "src/camera/device.cpp": "",
            "host/kel.core/bstring.h": "",
            "host/kel.core/bstring.cpp": "",
            "simulator/simulator.cpp": "",
            "vimbac/library/calls.cpp": "",
            "apps/program.cpp": "",
            "tests/a_test.cpp": "",
            **files,
        }
        for name, text in everything.items():
            file = self.source / name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        built = [name for name in everything if name.endswith(".cpp") and name not in unbuilt]
        commands = [{"directory": str(self.source), "file": name} for name in built]
        (self.source / "compile_commands.json").write_text(json.dumps(commands), encoding="utf-8")

    def complaints(self):
        with self.folder:
            return list(check_architecture.complaints_about(self.source, self.source))


class ArchitectureCheck(unittest.TestCase):
    maxDiff = None

    def complaints(self, files, **more):
        return Tree(files, **more).complaints()

    def test_includes_along_the_arrows_are_right(self):
        device = '#include <mutex>\n#include "bstring.h"\n#include "stream/rate.h"\n#include "camera/device.h"\n'
        files = {"src/camera/device.h": device, "src/stream/rate.h": '#include "vimba/features.h"\n',
                 "src/vimba/features.h": '#include "diagnostics/log.h"\n', "src/diagnostics/log.h": "",
                 "src/driver/exports.h": '#include "stream/rate.h"\n'}  # fmt: skip
        self.assertEqual([], self.complaints(files))

    def test_every_include_against_the_arrows_is_named(self):
        wrong = [("diagnostics", "vimba"), ("vimba", "stream"), ("stream", "acquisition"), ("acquisition", "controls"),
                 ("controls", "stream"), ("camera", "driver"), ("stream", "camera"), ("acquisition", "profile"), ("profile", "vimba")]  # fmt: skip
        for folder, other in wrong:
            files = {f"src/{other}/other.h": "", f"src/{folder}/here.h": f'#include "{other}/other.h"\n'}
            allowed = ", ".join(sorted(check_architecture.ARROWS[folder] | {folder}))
            self.assertEqual([f"src/{folder}/here.h includes {other}/other.h, but {folder} may only include {allowed}"],
                             self.complaints(files))  # fmt: skip

    def test_tests_programs_and_the_simulator_are_out_of_reach(self):
        for name in ("vimba_simulator.h", "../simulator/vimba_simulator.h", "support/host_output.h", "module.h"):
            files = {"simulator/vimba_simulator.h": "", "tests/support/host_output.h": "", "apps/kelcam/module.h": "",
                     "src/driver/exports.h": f'#  include "{name}"\n'}  # fmt: skip
            complaints = self.complaints(files)
            self.assertEqual(1, len(complaints))
            self.assertTrue(complaints[0].startswith(f"src/driver/exports.h includes {name}, "), complaints)

    def test_programs_know_the_module_by_its_exports_alone(self):
        program = '#include "driver/kel_camera_vimba.h"\n#include "base/platform.h"\n#include "stream/rate.h"\n#include "VimbaC.h"\n'
        files = {"apps/kelcam/main.cpp": program, "apps/kelcam/base/platform.h": "", "simulator/platform.h": "",
                 "vimbac/VimbaC.h": "", "src/driver/kel_camera_vimba.h": "", "src/stream/rate.h": ""}  # fmt: skip
        why = "but programs know the module by driver/kel_camera_vimba.h"
        self.assertEqual([f"apps/kelcam/main.cpp includes stream/rate.h, {why}",
                          f"apps/kelcam/main.cpp includes VimbaC.h, {why}"], self.complaints(files))  # fmt: skip

    def test_two_parts_of_a_program_know_the_library(self):
        files = {"apps/kelcam/library/vimba_session.h": '#include "VimbaC.h"\n', "apps/kelcam/library/vimba_library.cpp": '#include "vimba_simulator.h"\n',
                 "vimbac/VimbaC.h": "", "simulator/vimba_simulator.h": "", "src/driver/kel_camera_vimba.h": ""}  # fmt: skip
        self.assertEqual([], self.complaints(files))

    def test_the_folders_of_kelcam_point_one_way(self):
        files = {"src/driver/kel_camera_vimba.h": "", "apps/kelcam/snap/here.cpp": '#include "device/there.h"\n',
                 "apps/kelcam/device/there.h": '#include "snap/other.h"\n', "apps/kelcam/snap/other.h": "",
                 "apps/kelcam/lost/file.h": "", "apps/kelcam/view/http/server.h": '#include "view/pages.h"\n',
                 "apps/kelcam/view/pages.h": '#include "view/http/server.h"\n'}  # fmt: skip
        self.assertEqual(
            ["apps/kelcam/device/there.h includes snap/other.h, but device may only include base, device, library, messages",
             "apps/kelcam/lost has no place among the arrows",
             "apps/kelcam/view/http/server.h includes view/pages.h, but view/http may only include base, view/http"],
            self.complaints(files))  # fmt: skip

    def test_the_check_of_kelcam_counts_as_its_snap_and_live_do(self):
        files = {"src/driver/kel_camera_vimba.h": "", "apps/kelcam/live/figures.h": '#include "check/report.h"\n',
                 "apps/kelcam/check/report.h": "", "apps/kelcam/check/run.cpp": '#include "live/figures.h"\n#include "snap/figures.h"\n',
                 "apps/kelcam/snap/figures.h": ""}  # fmt: skip
        (complaint,) = self.complaints(files)
        self.assertTrue(complaint.startswith("apps/kelcam/live/figures.h includes check/report.h, "), complaint)

    def test_only_the_platform_file_speaks_to_the_system(self):
        files = {"src/diagnostics/platform.cpp": "#include <windows.h>\n#include <sys/syscall.h>\n",
                 "src/driver/exports.cpp": "#include <windows.h>\n"}  # fmt: skip
        self.assertEqual(
            ["src/driver/exports.cpp includes <windows.h>, which is not of the C++ standard library"],
            self.complaints(files))  # fmt: skip

    def test_sources_that_nothing_builds_are_named(self):
        files = {"src/stream/rate.cpp": "", "tests/unit/forgotten_test.cpp": "", "benchmarks/a.cpp": ""}
        self.assertEqual(["src/stream/rate.cpp is not built", "tests/unit/forgotten_test.cpp is not built"],
                         self.complaints(files, unbuilt=files))  # fmt: skip

    def test_of_two_systems_files_one_is_built(self):
        files = {"host/kel.core/file_posix.cpp": "", "host/kel.core/file_windows.cpp": "", "host/kel.core/lone_windows.cpp": ""}
        unbuilt = ("host/kel.core/file_windows.cpp", "host/kel.core/lone_windows.cpp")
        self.assertEqual(["host/kel.core/lone_windows.cpp is not built"], self.complaints(files, unbuilt=unbuilt))

    def test_numbered_references_are_named_wherever_they_stand(self):
        reference = "as Pa" + "rt 3.1 says"
        files = {"docs/a.md": f"one\n{reference}\n", "tests/b.h": f"// {reference}\n", "build/c.txt": reference}
        self.assertEqual([f"docs/a.md:2 refers to a numbered part of a document: {reference}",
                          f"tests/b.h:1 refers to a numbered part of a document: // {reference}"],
                         self.complaints(files))  # fmt: skip

    def test_a_folder_without_a_place_among_the_arrows_is_named(self):
        self.assertIn("src/misc has no place among the arrows", self.complaints({"src/misc/things.h": ""}))


if __name__ == "__main__":
    unittest.main()
