#!/usr/bin/env python3
"""include_path_test: an include against the arrows does not compile, one along them does.

Takes the command by which the build compiles a source of a folder, and has it read one include instead of that source.
"""
import argparse
import json
import pathlib
import shlex
import subprocess
import unittest

import check_architecture

options = argparse.Namespace()


def compile_command_of(folder):
    """The command by which the build compiles the first source of this folder of the module."""
    for command in json.loads((options.build / "compile_commands.json").read_text(encoding="utf-8")):
        file = pathlib.Path(command["directory"], command["file"])
        if file.parent == options.source / "src" / folder and f"module-{folder}.dir" in command["command"]:
            return [word for word in shlex.split(command["command"]) if word != str(file)]
    raise AssertionError(f"nothing of src/{folder} is built")


def preprocesses(folder, header):
    """Whether a source of the folder may include the header."""
    words = compile_command_of(folder)
    words[words.index("-o") + 1] = "/dev/null"
    words = [word for word in words if word not in ("-c", "-MD")]
    for option in ("-MT", "-MF"):
        if option in words:
            del words[words.index(option) : words.index(option) + 2]
    done = subprocess.run([*words, "-E", "-x", "c++", "-"], input=f'#include "{header}"\n', capture_output=True, text=True)
    if done.returncode != 0 and f"{header}: No such file" not in done.stderr and "file not found" not in done.stderr:
        raise AssertionError(done.stderr)
    return done.returncode == 0


class IncludePaths(unittest.TestCase):
    def test_each_folder_finds_those_that_the_arrows_lead_to_and_no_other(self):
        headers = {folder: next((options.source / "src" / folder).glob("*.h")) for folder in check_architecture.ARROWS}
        for folder, allowed in check_architecture.ARROWS.items():
            for other, header in headers.items():
                with self.subTest(folder=folder, includes=other):
                    self.assertEqual(preprocesses(folder, f"{other}/{header.name}"), other in allowed | {folder})

    def test_what_the_module_is_not_to_know_is_not_found(self):
        for header in ("vimba_simulator.h", "support/host_output.h", "module.h"):
            with self.subTest(header=header):
                self.assertFalse(preprocesses("driver", header))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    arguments, rest = parser.parse_known_args(namespace=options)
    unittest.main(argv=[__file__, *rest])
