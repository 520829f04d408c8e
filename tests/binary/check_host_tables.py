"""check_host_tables: holds the order of the host classes' virtual operations in both layouts that compilers give them.

A host that was built with another compiler calls the operations by their place. clang prints the tables of
host_tables.cpp twice: as g++, clang and MinGW-w64 lay them out ("gnu"), and as Visual C++ does ("microsoft"). Both are
compared with host_tables.txt. Visual C++'s own headers are not at hand, so both use those of MinGW-w64.
"""

import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
MINGW = "x86_64-w64-mingw32-g++-posix"
# What makes the headers of MinGW-w64 readable for clang with the other layout.
MICROSOFT = [
    "--target=x86_64-pc-windows-msvc", "-fno-ms-compatibility", "-fgnuc-version=4.2.1", "-U_MSC_VER", "-D__MINGW32__",
    "-D__MINGW64__", "-D_WIN32", "-D__declspec(x)=__attribute__((x))",
]  # fmt: skip
LAYOUTS = {"gnu": ["--target=x86_64-w64-windows-gnu"], "microsoft": MICROSOFT}


def mingw_headers():
    """The folders of MinGW-w64's headers, with clang's own in place of those that belong to g++ itself."""
    ran = subprocess.run([MINGW, "-E", "-v", "-x", "c++", "/dev/null"], capture_output=True, text=True, check=True)
    listed = ran.stderr.split("#include <...> search starts here:\n")[1].split("End of search list.")[0].split()
    folders = [str(pathlib.Path(folder).resolve()) for folder in listed]
    resources = subprocess.run(["clang++", "-print-resource-dir"], capture_output=True, text=True, check=True).stdout
    standard = [folder for folder in folders if "/include/c++" in folder]
    system = [folder for folder in folders if "/lib/gcc/" not in folder]
    return [*standard, resources.strip() + "/include", *system]


def printed_tables(layout, host):
    """The compiler's own words: a table for each class and for each base that has one of its own."""
    folders = [f"-I{folder}" for folder in sorted(host.glob("kel.*"))]
    system = [argument for folder in mingw_headers() for argument in ("-isystem", folder)]
    command = ["clang++", *LAYOUTS[layout], "-std=c++20", "-D__USE_MINGW_ANSI_STDIO=1", "-nostdinc", *system, *folders,
               "-Xclang", "-fdump-vtable-layouts", "-S", "-emit-llvm", "-o", "/dev/null", str(HERE / "host_tables.cpp")]  # fmt: skip
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def operation(line):
    """The name of the operation in a line of a table; ~ for a destructor; None for what is no operation."""
    entry = re.match(r"\s*\d+ \| (.*)", line)
    if not entry or "::" not in entry[1].split("(")[0] or entry[1].endswith("RTTI"):
        return None
    qualified = entry[1].split("(")[0].split()[-1].lstrip("*&")
    name = qualified.split("::")[-1]
    # Of the operators, a class has several; whose each is says which.
    return "~" if name.startswith("~") else qualified if name.startswith("operator") else name


def tables_of(text):
    """By class: its tables, each the names of the operations in their order. A destructor counts once."""
    tables = {}
    for block in re.split(r"\n(?=V(?:F)?[Tt]able (?:for|indices))", "\n" + text):
        title = re.match(r"\s*VF?[Tt]able for (.*) \(\d+ entries\)", block)
        if not title:
            continue
        name = re.findall(r"'(\w+)'", title[1])[-1]
        for part in re.split(r"offset_to_top", block) if "offset_to_top" in block else [block]:
            names = [found for found in map(operation, part.splitlines()) if found]
            names = [name for i, name in enumerate(names) if name != "~" or names[i - 1 : i] != ["~"]]
            if names:
                tables.setdefault(name, []).append(names)
    return tables


def expected_tables(layout):
    tables = {}
    for line in (HERE / "host_tables.txt").read_text().splitlines():
        title, _, names = line.partition(":")
        name, _, only = title.partition(" ")
        if names and not line.startswith("#") and only in ("", layout):
            tables.setdefault(name, []).append(names.split())
    return tables


def main():
    host = HERE.parents[1] / "host"
    wrong = 0
    for layout in LAYOUTS:
        found = tables_of(printed_tables(layout, host))
        for name, tables in expected_tables(layout).items():
            if found.get(name) == tables:
                continue
            wrong += 1
            print(f"{layout}: {name}\n  expected {tables}\n  found    {found.get(name)}")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
