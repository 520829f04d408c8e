#!/usr/bin/env python3
"""check_architecture: the tree is the architecture, and this keeps it so.

Looks at the sources as they lie there and at the list of what one build compiles. Every complaint is one line; exit 1 when
there is any.
"""
import argparse
import json
import os
import pathlib
import re
import sys

# What a folder of the module may include, itself aside:
# driver -> camera -> acquisition, stream, controls -> vimba, profile, diagnostics.
ARROWS = {
    "diagnostics": set(),
    "profile": set(),
    "vimba": {"diagnostics"},
    "acquisition": {"vimba", "diagnostics"},
    "stream": {"vimba", "profile", "diagnostics"},
    "controls": {"vimba", "profile", "diagnostics"},
    "camera": {"acquisition", "stream", "controls", "vimba", "profile", "diagnostics"},
    "driver": {"camera", "acquisition", "stream", "controls", "vimba", "profile", "diagnostics"},
}
# What a folder of kelcam may include, itself aside.
KELCAM_ARROWS = {
    "base": set(),
    "library": {"base"},
    "messages": {"base"},
    "device": {"library", "messages", "base"},
    "picture": {"device", "base"},
    "profile_text": {"device", "library", "messages", "base"},
    "commands": {"profile_text", "picture", "device", "library", "messages", "base"},
    "snap": {"commands", "profile_text", "picture", "device", "library", "messages", "base"},
    "live": {"commands", "profile_text", "picture", "device", "library", "messages", "base"},
    "view/http": {"base"},
    "view/pictures": {"picture", "device", "base"},
    "view/cameras": {"view/pictures", "commands", "picture", "device", "library", "messages", "base"},
    "view/events": {"view/cameras", "view/pictures", "view/http", "commands", "picture", "device", "messages", "base"},
    "view": {"view/events", "view/cameras", "view/pictures", "view/http", "commands", "profile_text", "picture", "device",
             "library", "messages", "base"},
    "check": {"snap", "live", "commands", "profile_text", "picture", "device", "library", "messages", "base"},
}
# What a program knows of the module.
EXPORTS_HEADER = "driver/kel_camera_vimba.h"
# Where kelcam looks behind the module: which library answers, and what that one alone knows of cameras.
LIBRARY_HEADERS = {"VimbaC.h", "vimba_simulator.h"}
LIBRARY_FILES = {"vimba_library", "vimba_session"}
# The one file that speaks to the operating system.
PLATFORM_FILE = pathlib.PurePosixPath("diagnostics/platform.cpp")
# Sources here belong to some program of every build that compiles any file of their folder.
BUILT_FOLDERS = ("src", "host", "vimbac", "simulator", "apps", "tests", "examples", "benchmarks", "bridge")
ALWAYS_BUILT = ("src", "host", "vimbac", "simulator", "apps", "tests")
# Endings of the names of files of which one build compiles one.
SYSTEMS = ("posix", "windows", "none")
# Folders whose content is made.
MADE_FOLDERS = {"build", ".git", "__pycache__"}

INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]', re.MULTILINE)
# References into documents that readers of the sources do not have.
NUMBERED_REFERENCE = re.compile(r"\bParts? [0-9]+\.[0-9]+")


def includes_of(file):
    """(kind of bracket, name) of every include directive."""
    return INCLUDE.findall(file.read_text(encoding="utf-8"))


def wrong_includes(source):
    """Includes of src/ that point against the arrows, or out of what the module may know."""
    public = {header.name for header in (source / "host").rglob("*.h")}
    public |= {header.name for header in (source / "vimbac").glob("*.h")}
    for path in sorted((source / "src").rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        file = pathlib.PurePosixPath(path.relative_to(source / "src").as_posix())
        layer = file.parts[0]
        allowed = ARROWS.get(layer, set()) | {layer}
        for bracket, name in includes_of(path):
            folder = pathlib.PurePosixPath(name).parts[0] if "/" in name else None
            if bracket == "<":
                if not re.fullmatch(r"[a-z_]+", name) and file != PLATFORM_FILE:
                    yield f"src/{file} includes <{name}>, which is not of the C++ standard library"
            elif folder is None and name not in public:
                yield f"src/{file} includes {name}, which is no header of host/ or vimbac/"
            elif folder is not None and folder not in allowed:
                yield f"src/{file} includes {name}, but {layer} may only include {', '.join(sorted(allowed))}"
            elif folder is not None and not (source / "src" / name).is_file():
                yield f"src/{file} includes {name}, which is not in src/"


def unknown_folders(source):
    """Folders of src/ that the arrows do not know."""
    for folder in sorted((source / "src").iterdir()):
        if folder.is_dir() and folder.name not in ARROWS:
            yield f"src/{folder.name} has no place among the arrows"


def programs_that_know_too_much(source):
    """Includes of apps/ into the module's inside or into one of the libraries that may stand for VimbaC."""
    hidden = {header.name for folder in ("simulator", "vimbac", "tests") for header in (source / folder).rglob("*.h")}
    for path in sorted((source / "apps").rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        program = path.relative_to(source / "apps").parts[0]
        own = {header.name for header in (source / "apps" / program).rglob("*.h")}
        for _, name in includes_of(path):
            if name in LIBRARY_HEADERS and path.stem in LIBRARY_FILES:
                continue
            inside = pathlib.PurePosixPath(name).parts[0] in ARROWS and name != EXPORTS_HEADER
            if inside or pathlib.PurePosixPath(name).name in hidden - own:
                yield f"{path.relative_to(source).as_posix()} includes {name}, but programs know the module by {EXPORTS_HEADER}"


def wrong_includes_of_kelcam(source):
    """Includes of apps/kelcam/ that point against the arrows between its folders."""
    top = source / "apps/kelcam"
    for path in sorted(top.rglob("*/*")):
        layer = path.parent.relative_to(top).as_posix()
        if path.suffix not in (".h", ".cpp"):
            continue
        if layer not in KELCAM_ARROWS:
            yield f"apps/kelcam/{layer} has no place among the arrows"
            continue
        allowed = KELCAM_ARROWS[layer] | {layer}
        for _, name in includes_of(path):
            folder = pathlib.PurePosixPath(name).parent.as_posix()
            if folder in KELCAM_ARROWS and folder not in allowed:
                yield f"{path.relative_to(source).as_posix()} includes {name}, but {layer} may only include {', '.join(sorted(allowed))}"


def other_systems_files(file):
    """The files that take the place of one that is for one operating system only."""
    stem, _, system = file.stem.rpartition("_")
    return {file.with_stem(f"{stem}_{other}") for other in SYSTEMS if system in SYSTEMS and other != system}


def unbuilt_sources(source, build):
    """Sources that no program or library of this build compiles."""
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    compiled = {pathlib.Path(command["directory"], command["file"]).resolve() for command in commands}
    for folder in BUILT_FOLDERS:
        files = sorted(file.resolve() for file in (source / folder).rglob("*") if file.suffix in (".c", ".cpp"))
        if folder not in ALWAYS_BUILT and compiled.isdisjoint(files):
            continue
        if not files:
            yield f"{folder}/ holds no sources"
        for file in files:
            if file not in compiled and compiled.isdisjoint(other_systems_files(file)):
                yield f"{file.relative_to(source)} is not built"


def texts_of(source):
    """Every text file of the tree and its lines."""
    for folder, folders, names in os.walk(source):
        folders[:] = sorted(set(folders) - MADE_FOLDERS)
        for file in sorted(pathlib.Path(folder, name) for name in names):
            try:
                yield file, file.read_text(encoding="utf-8").splitlines()
            except (UnicodeDecodeError, FileNotFoundError):
                continue  # a picture, a temporary file that has gone, a link to nowhere


def numbered_references(source):
    """Texts of the tree that speak of numbered parts of something else."""
    for file, lines in texts_of(source):
        for number, line in enumerate(lines, start=1):
            if NUMBERED_REFERENCE.search(line):
                yield f"{file.relative_to(source)}:{number} refers to a numbered part of a document: {line.strip()}"


def complaints_about(source, build):
    yield from unknown_folders(source)
    yield from wrong_includes(source)
    yield from programs_that_know_too_much(source)
    yield from wrong_includes_of_kelcam(source)
    yield from unbuilt_sources(source, build)
    yield from numbered_references(source)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the top of the tree")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="a build folder with compile_commands.json")
    arguments = parser.parse_args()
    complaints = list(complaints_about(arguments.source.resolve(), arguments.build))
    for complaint in complaints:
        print(complaint)
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
