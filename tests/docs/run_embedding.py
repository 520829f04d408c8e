#!/usr/bin/env python3
"""run_embedding: runs the embedding example against the simulated cameras and looks at the pictures that it writes.

The cameras are the built-in ones with small sensors: the example waits as long as a picture takes on a user's machine, not
under a sanitizer on a busy one.

With --program it runs that one; with --build it installs the SDK out of a build folder, builds the example alone against
what was installed, and runs the result.
"""
import argparse
import os
import pathlib
import shutil
import subprocess
import sys

DEADLINE_S = 120


def run(command, environment=None):
    done = subprocess.run(
        command, capture_output=True, text=True, timeout=DEADLINE_S, check=False, env={**os.environ, **(environment or {})}
    )
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\nended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def build_alone(arguments):
    """The example's program, built as a user of the installed SDK builds it, and where the installed module lies."""
    prefix, build = arguments.work / "sdk", arguments.work / "embedding-alone"
    for folder in (prefix, build):
        shutil.rmtree(folder, ignore_errors=True)
    cmake = arguments.build
    run([cmake, "--install", arguments.build_folder, "--component", "sdk", "--prefix", prefix])
    run([cmake, "-S", arguments.source, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}",
         f"-DCMAKE_CXX_COMPILER={arguments.compiler}", "-DCMAKE_BUILD_TYPE=Release"])  # fmt: skip
    run([cmake, "--build", build])
    installed = next(prefix.rglob(arguments.module.name))
    return build / "embedding", installed


def read_pnm(file):
    """The format word and the rows' bytes of a binary PGM or PPM file; refuses one that is not whole."""
    content = file.read_bytes()
    word, width, height, most = content.split(maxsplit=4)[:4]
    head = b"%s\n%s %s\n%s\n" % (word, width, height, most)
    pixels = content[len(head) :]
    channels = {b"P5": 1, b"P6": 3}[word]
    if not content.startswith(head) or int(most) != 255 or len(pixels) != int(width) * int(height) * channels:
        sys.exit(f"{file}: not a whole picture: {head!r}, {len(pixels)} bytes")
    return word.decode(), pixels


def check_picture(file, expected_word):
    word, pixels = read_pnm(file)
    if word != expected_word:
        sys.exit(f"{file}: {word}, expected {expected_word}")
    # The simulated cameras look at a test chart: it has dark and bright parts.
    if max(pixels) - min(pixels) < 100:
        sys.exit(f"{file}: shows nothing, all values lie between {min(pixels)} and {max(pixels)}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("module", "program", "profiles", "work", "build-folder", "source"):
        parser.add_argument(f"--{name}", type=pathlib.Path)
    for name in ("launcher", "build", "compiler"):
        parser.add_argument(f"--{name}", default="")
    arguments = parser.parse_args()

    program, module = arguments.program, arguments.module
    environment = {"VIMBA_SIM_CONFIG": pathlib.Path(__file__).resolve().with_name("small_cameras.json")}
    if arguments.build:
        # An installed module finds no VimbaC beside itself: the loader is shown the simulated one, and nothing else.
        environment["LD_LIBRARY_PATH"] = arguments.work / "vimbac"
        environment["LD_LIBRARY_PATH"].mkdir(parents=True, exist_ok=True)
        shutil.copy(module.with_name(module.name.replace("kelCameraVimba", "VimbaC")), environment["LD_LIBRARY_PATH"])
        program, module = build_alone(arguments)
    folder = arguments.work / ("alone" if arguments.build else "in-tree")
    folder.mkdir(parents=True, exist_ok=True)
    command = [*filter(None, [arguments.launcher]), program, module]

    identifiers = run(command, environment).split()
    if len(identifiers) != 3 or not all(identifier.startswith("Vimba_") for identifier in identifiers):
        sys.exit(f"expected the identifiers of three cameras, got {identifiers}")
    for name, word in (("mono", "P5"), ("colour", "P6")):
        # A copy: the driver writes into its profile what it learns.
        profile, picture = folder / f"{name}.ini", folder / f"{name}.pnm"
        shutil.copyfile(arguments.profiles / f"{name}.ini", profile)
        picture.unlink(missing_ok=True)
        run([*command, profile, picture], environment)
        check_picture(picture, word)
        print(f"{name}: {picture.stat().st_size} bytes")


if __name__ == "__main__":
    main()
