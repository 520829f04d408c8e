"""packages: the packages of a build, each unpacked into an empty folder, for tests that use them from there alone."""

import argparse
import functools
import os
import shutil
import subprocess
import tarfile
import zipfile

DEADLINE_S = 600

options = argparse.Namespace()


def run(*command, environment=None, expected=0, cwd=None):
    done = subprocess.run(
        [str(word) for word in command], capture_output=True, text=True, timeout=DEADLINE_S, check=False, cwd=cwd,
        env={**os.environ, **(environment or {})}, umask=0o022,
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
        self.file = file
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

    def build_example(self, name):
        build = self.top.parent / name
        system = "Windows" if options.system == "windows" else "Linux"
        run("cmake", "-S", self.top / "share/kelCameraVimba/examples" / name, "-B", build, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={self.top}", f"-DCMAKE_CXX_COMPILER={options.compiler}",
            f"-DCMAKE_SYSTEM_NAME={system}", "-DCMAKE_BUILD_TYPE=Release")  # fmt: skip
        run("cmake", "--build", build)
        return build / (f"{name}.exe" if options.system == "windows" else name)

    def run_example(self, program, *arguments, cwd=None, simulated=True, expected=0):
        """An example with the packaged module and, unless it is to find none, the simulated VimbaC."""
        simulator = [self.run_folder / "simulator"] if simulated else []
        if options.system == "windows":
            module = windows_path(self.run_folder / "kelCameraVimba.dll")
            environment = {"WINEPATH": ";".join(map(windows_path, [self.run_folder, *simulator]))}
            command = [options.launcher, program, module]
        else:
            environment = {"LD_LIBRARY_PATH": "".join(map(str, simulator))}
            command = [program, self.run_folder / "libkelCameraVimba.so"]
        return run(*command, *arguments, environment=environment, cwd=cwd, expected=expected)


@functools.cache
def packages():
    """Made once for all tests of a run."""
    folder = options.work / "packages"
    shutil.rmtree(folder, ignore_errors=True)
    run("cpack", "--config", options.build / "CPackConfig.cmake", "-B", folder)
    return [Package(file) for file in sorted(folder.iterdir()) if file.is_file()]
