"""The Vimba C API has one list of calls: VimbaC.h declares it, VimbaC.def lists it, the built library exports it."""
import re
import subprocess
import sys

header_file, definition_file, library, objdump = sys.argv[1:5]
CONTROL = "VimbaSim"


def read(name):
    with open(name, encoding="utf-8") as file:
        return file.read()


def exported():
    """The names in the library's export table."""
    if library.endswith(".dll"):
        table = subprocess.run([objdump, "-p", library], check=True, capture_output=True, text=True).stdout
        table = table[table.index("[Ordinal/Name Pointer] Table"):]
        return set(re.findall(r"^\s*\[\s*\d+\]\s+(\w+)$", table, re.MULTILINE))
    table = subprocess.run([objdump, "-T", library], check=True, capture_output=True, text=True).stdout
    defined = [line for line in table.splitlines() if re.match(r"^[0-9a-f]{16} ", line) and "*UND*" not in line]
    return {line.split()[-1] for line in defined}


declared = set(re.findall(r"^VIMBAC_CALL \w+ (Vmb\w+)\(", read(header_file), re.MULTILINE))
defined = set(read(definition_file).split("EXPORTS", 1)[1].split())
control = set(re.findall(r"^VIMBA_SIM_CALL .*?\b(VimbaSim\w+)\(", read(sys.argv[5]), re.MULTILINE))
found = exported()

failures = [
    f"{what}: {', '.join(sorted(names))}"
    for what, names in [
        ("VimbaC.h declares no call", set() if declared else {"?"}),
        ("declared, missing in VimbaC.def", declared - defined),
        ("in VimbaC.def, not declared", defined - declared),
        ("declared, not exported", (declared | control) - found),
        ("exported, not declared", found - declared - control),
    ]
    if names
]
print("\n".join(failures) or f"{len(declared)} calls and {len(control)} control calls")
sys.exit(1 if failures else 0)
