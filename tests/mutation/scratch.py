#!/usr/bin/env python3
"""scratch: a copy of the tree with a build of its own, in which one file at a time is changed and tested.

Nothing of the tree itself is touched. Programs run in a session of their own, with a time limit, and keep their files in the
copy's own folder for temporary files.
"""
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import time

# The unit programs that compile or link each folder of src/, the quickest to find something first.
UNIT_PROGRAMS = {
    "acquisition": ["module.acquisition.test", "module.acquisition.scripted.test", "module.memory.test"],
    "camera": ["module.camera.test", "module.camera.scripted.test", "module.memory.test"],
    "controls": ["module.controls.test"],
    "diagnostics": ["module.diagnostics.test", "module.acquisition.scripted.test"],
    "driver": [],
    "profile": ["kel.imagingdevice.test"],
    "stream": ["module.stream.test", "module.stream.scripted.test"],
    "vimba": ["module.vimba.test", "module.vimba.scripted.test"],
}
# What is tested on the scripted library most of all: there a mutant is noticed soonest.
SCRIPTED_FIRST = frozenset(
    "callback_gate frame_receiver frame_ring snap_cycle bandwidth_partners stream_rate".split()
)
# The driver suite loads the module, in as many shards as ctest runs it in.
MODULE = "kelCameraVimba"
DRIVER_PROGRAMS = {"driver_tests": 4, "driver.foreign-names.test": 1, "driver.foreign-release.test": 1}
ALL_PROGRAMS = {program: 1 for of_folder in UNIT_PROGRAMS.values() for program in of_folder} | DRIVER_PROGRAMS

# Where the sources are compiled. A mutant may leave a variable without use, or compare what never differs.
WITHOUT_WARNINGS = ("src/CMakeLists.txt", "tests/unit/scripted/CMakeLists.txt")

# Longer than a test's own deadline (30 s), so that a wait that never ends is usually named by its test.
SECONDS_AT_MOST = 40
# One test alone.
SECONDS_ALONE = 15
# A mutant that allocates without end is stopped; the tests of the frame memory reserve somewhat more than 1 GiB.
ADDRESS_SPACE = 16 << 30

FAILED = re.compile(r"^\[  FAILED  \] ([^\s,]+)", re.MULTILINE)
BEGUN = re.compile(r"^\[ RUN      \] (\S+)", re.MULTILINE)


# What runs now, and has to be stopped with the tool: none of it would notice.
running_processes = set()


class BuildFailed(Exception):
    """What the build printed."""


class Scratch:
    def __init__(self, root, folder, jobs):
        self.root, self.folder, self.jobs = root, folder, jobs
        self.tree, self.build, self.temporary = folder / "tree", folder / "build", folder / "tmp"

    def prepare(self):
        """The tree as it is now, and everything built that the mutants are tested with."""
        self.follow_tree()
        self.remove_temporary_files()
        if not (self.build / "build.ninja").exists():
            # Quick to compile and yet quick enough to run.
            configure = ["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build, "-DCMAKE_BUILD_TYPE=Release"]
            configure += ["-DCMAKE_CXX_FLAGS_RELEASE=-O1", "-DCMAKE_C_FLAGS_RELEASE=-O1"]
            self.call(configure)
        self.make([*ALL_PROGRAMS, MODULE])

    def follow_tree(self):
        """Only what differs is written, so that only that is built again."""
        listed = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], cwd=self.root, text=True)
        wanted = {name for name in listed.split("\n") if name and (self.root / name).is_file()}
        for path in self.tree.rglob("*"):
            if path.is_file() and str(path.relative_to(self.tree)) not in wanted:
                path.unlink()
        for name in wanted:
            target = self.tree / name
            content = (self.root / name).read_bytes()
            if name in WITHOUT_WARNINGS:
                content = b"add_compile_options(-w)\n" + content
            if not target.exists() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(content)
                target.chmod((self.root / name).stat().st_mode)

    def write(self, file, text):
        (self.tree / file).write_text(text, encoding="utf-8")

    def make(self, targets):
        self.call(["cmake", "--build", self.build, "--target", *targets, "--", f"-j{self.jobs}"])

    def call(self, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        if done.returncode != 0:
            raise BuildFailed(done.stdout)

    def first_failure(self, file):
        """The test that fails with what is in the tree now; None if none does. The programs of the file's folder come first,
        then the driver suite, and for what no test has noticed by then the rest."""
        unit = UNIT_PROGRAMS[pathlib.PurePath(file).parts[1]]
        if pathlib.PurePath(file).stem in SCRIPTED_FIRST:
            unit = sorted(unit, key=lambda program: "scripted" not in program)
        for program in unit:
            self.make([program])
            if failure := self.failure_of(program, 1):
                return failure
        self.make([MODULE])
        for program, shards in DRIVER_PROGRAMS.items():
            if failure := self.failure_of(program, shards):
                return failure
        others = [program for program in ALL_PROGRAMS if program not in unit and program not in DRIVER_PROGRAMS]
        self.make(others)
        for program in others:
            if failure := self.failure_of(program, 1):
                return failure
        return None

    def failure_of(self, program, shards):
        """The first test of the program that fails, and fails again alone: what fails once only is left out from then on."""
        passed_alone = []
        while True:
            test = self.run_shards(program, shards, "*:-" + ":".join(passed_alone), SECONDS_AT_MOST)
            if test is None:
                return None
            if not test or self.run_shards(program, 1, test, SECONDS_ALONE) is not None:
                return f"{program} {test}".rstrip()
            passed_alone.append(test)

    def run_shards(self, program, shards, wanted, seconds):
        """The first test that fails or takes too long; an empty name where a program fails outside of its tests."""
        started = [self.start(program, shards, shard, wanted) for shard in range(shards)]
        deadline = time.monotonic() + seconds
        try:
            while True:
                over_time = time.monotonic() > deadline
                for process, output in started:
                    if process.poll() or (over_time and process.returncode is None):
                        return self.failed_test(output)
                if all(process.returncode == 0 for process, _ in started):
                    return None
                time.sleep(0.02)
        finally:
            for process, _ in started:
                stop(process)

    def start(self, program, shards, shard, wanted):
        output = self.folder / f"output.{shard}"
        environment = os.environ | {
            "GTEST_TOTAL_SHARDS": str(shards),
            "GTEST_SHARD_INDEX": str(shard),
            "GTEST_FAIL_FAST": "1",
            "GTEST_BREAK_ON_FAILURE": "0",
            "TMPDIR": str(self.temporary),
        }
        with output.open("wb") as out:
            process = subprocess.Popen(
                [self.build / program, f"--gtest_filter={wanted}"],
                cwd=self.temporary,
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=out,
                stderr=subprocess.STDOUT,
                start_new_session=True,
                preexec_fn=limit,
            )
        running_processes.add(process)
        return process, output

    @staticmethod
    def failed_test(output):
        """The one that GoogleTest names, else the one that had begun last."""
        text = output.read_text(encoding="utf-8", errors="replace")
        if failed := FAILED.search(text):
            return failed.group(1)
        begun = BEGUN.findall(text)
        return begun[-1] if begun else ""

    def remove_temporary_files(self):
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir(parents=True)


def limit():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))


def stop(process):
    """The process and whatever it has started, unless it has ended by itself: its number may be another's then."""
    if process.poll() is None:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
    running_processes.discard(process)


def stop_all():
    for process in list(running_processes):
        stop(process)
