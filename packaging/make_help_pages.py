#!/usr/bin/env python3
"""make_help_pages: writes a program's manual page and its completions for bash and zsh, from what it prints as help.

make_help_pages.py PROGRAM FOLDER --version X.Y.Z [--also NAME...]

Writes FOLDER/man/NAME.1.gz, FOLDER/bash/NAME and FOLDER/zsh/_NAME. A program that is the same under another name gets a
page that leads to it.
"""

import argparse
import gzip
import pathlib

import completions
import help_text
import man_page

SEE_ALSO = ["The documents in share/doc/kelCameraVimba, of which README.md is the first and docs/kelcam.md describes this program."]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--version", required=True)
    parser.add_argument("--also", action="append", default=[])
    arguments = parser.parse_args()
    name = arguments.program.stem
    page = help_text.read(arguments.program)
    pages = {
        f"man/{name}.1.gz": man_page.man_page(name, arguments.version, page, SEE_ALSO),
        f"bash/{name}": completions.bash(name, page),
        f"zsh/_{name}": completions.zsh(name, page),
    }
    pages |= {f"man/{other}.1.gz": f".so man1/{name}.1\n" for other in arguments.also}
    for path, text in pages.items():
        file = arguments.folder / path
        file.parent.mkdir(parents=True, exist_ok=True)
        content = text.encode()
        # The same bytes from the same text: no time in it.
        file.write_bytes(gzip.compress(content, compresslevel=9, mtime=0) if file.suffix == ".gz" else content)


if __name__ == "__main__":
    main()
