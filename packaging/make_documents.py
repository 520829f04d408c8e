#!/usr/bin/env python3
"""make_documents: the documents as a package holds them, where other files surround them than in the sources.

make_documents.py --source FOLDER --output FOLDER --at PATH --map SOURCE=INSTALLED... DOCUMENT=NAME...

Each DOCUMENT, named from the source folder, is written to the output folder as NAME. --at is where the package has the
output folder, --map where it has other files and folders. A link to what the package holds leads there; of a link to
anything else the text stays.
"""

import argparse
import pathlib
import posixpath
import re
import shutil

LINK = re.compile(r"(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^)\s]+)\)")
FENCE = re.compile(r"^```.*?^```", re.M | re.S)


class Places:
    """Where the package has the files of the sources."""

    def __init__(self, pairs):
        self.installed = dict(pair.split("=", 1) for pair in pairs)

    def of(self, file):
        """None for a file that the package does not have."""
        for source in (file, *map(str, pathlib.PurePosixPath(file).parents)):
            if source in self.installed:
                return posixpath.normpath(posixpath.join(self.installed[source], posixpath.relpath(file, source)))
        return None


def with_links(text, document, folder, places):
    """The text with links that hold in the package; the document is in the given folder of it."""

    def link(match):
        is_image, words, target = match.groups()
        path, hash_sign, anchor = target.partition("#")
        if re.match(r"\w+:", target) or not path:
            return match[0]
        file = posixpath.normpath(posixpath.join(posixpath.dirname(document), path))
        place = places.of(file)
        if place is None:
            return words
        return f"{is_image}[{words}]({posixpath.relpath(place, folder)}{hash_sign}{anchor})"

    pieces, end = [], 0
    for fence in FENCE.finditer(text):
        pieces += [LINK.sub(link, text[end : fence.start()]), fence[0]]
        end = fence.end()
    return "".join([*pieces, LINK.sub(link, text[end:])])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--output", type=pathlib.Path, required=True)
    parser.add_argument("--at", required=True)
    parser.add_argument("--map", action="append", default=[])
    parser.add_argument("documents", nargs="+")
    arguments = parser.parse_args()
    documents = dict(document.split("=", 1) for document in arguments.documents)
    places = Places([*arguments.map, *(f"{document}={arguments.at}/{name}" for document, name in documents.items())])
    # A document that is no more must not be left in it.
    shutil.rmtree(arguments.output, ignore_errors=True)
    for document, name in documents.items():
        text = (arguments.source / document).read_text(encoding="utf-8")
        file = arguments.output / name
        file.parent.mkdir(parents=True, exist_ok=True)
        folder = posixpath.dirname(f"{arguments.at}/{name}")
        file.write_text(with_links(text, document, folder, places), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
