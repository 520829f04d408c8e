"""sdk_test: the SDK as a host's build gets it: by CMake, by pkg-config, and installed out of a build of its own target."""

import os
import re
import shutil
import unittest

from packages import options, packages, run

SDK_TARGET = "kelCameraVimba-sdk"
# Copied when the build is configured.
RUNTIME_LIBRARIES = {"libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll"}


def pkg_config(package, *arguments):
    return run("pkg-config", *arguments, environment={"PKG_CONFIG_LIBDIR": str(package.top / "lib/pkgconfig")}).stdout.split()


class Sdk(unittest.TestCase):
    def test_ExampleOfATestInjectsAFaultAndPasses(self):
        package = packages()[0]
        program = package.build_example("testing")
        done = package.run_example(program, cwd=program.parent)
        self.assertEqual(done.stdout.strip(), "passed")

    def test_PkgConfigNamesTheModuleAndTheSimulatorsFolder(self):
        for package in packages():
            with self.subTest(package.name):
                (module,) = pkg_config(package, "--variable=module", "kelCameraVimba")
                (folder,) = pkg_config(package, "--variable=folder", "kelCameraVimba-simulator")
                library = "VimbaC.dll" if options.system == "windows" else "libVimbaC.so"
                self.assertTrue(os.path.isfile(module), module)
                self.assertTrue(os.path.isfile(f"{folder}/{library}"), folder)
                self.assertEqual(pkg_config(package, "--modversion", "kelCameraVimba"), [options.version])

    def test_PkgConfigSufficesToBuildAHost(self):
        package = packages()[-1]
        examples = package.top / "share/kelCameraVimba/examples"
        program = package.top.parent / ("by-pkg-config.exe" if options.system == "windows" else "by-pkg-config")
        flags = pkg_config(package, "--cflags", "--libs", "kelCameraVimba", "kelCameraVimba-simulator")
        sources = [examples / "testing/main.cpp", examples / "embedding/driver_module.cpp"]
        run(options.compiler, "-std=c++17", *sources, f"-I{examples / 'embedding'}", *flags, "-o", program)
        done = package.run_example(program, cwd=program.parent)
        self.assertEqual(done.stdout.strip(), "passed")

    def test_TargetOfTheSdkBuildsAllThatItsInstallationTakes(self):
        prefix = options.work / "sdk-alone"
        shutil.rmtree(prefix, ignore_errors=True)
        printed = run("cmake", "--install", options.build, "--component", "sdk", "--prefix", prefix).stdout
        installed = {line.rpartition("/")[2] for line in printed.splitlines() if re.match("-- (Installing|Up-to-date):", line)}
        libraries = {name for name in installed if name.endswith((".so", ".dll"))} - RUNTIME_LIBRARIES
        self.assertEqual(len(libraries), 6)
        commands = run("ninja", "-C", options.build, "-t", "commands", SDK_TARGET).stdout
        linked = {file.rpartition("/")[2] for file in re.findall(r" -o (\S+)", commands)}
        self.assertLessEqual(libraries, linked)
