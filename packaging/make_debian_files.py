#!/usr/bin/env python3
"""make_debian_files: what only a Debian package has: copyright, changelog.Debian.gz and the overrides for lintian.

make_debian_files.py --package NAME --version X.Y.Z-N --maintainer "NAME <ADDRESS>" --changelog FILE --overrides FILE
                     --output FOLDER [--component "DESCRIPTION=COPYRIGHT FILE"]...

The output folder is what the package has as /usr. A component is what others wrote and the binaries contain; its terms are those that its own Debian package states.
The date of the newest change is SOURCE_DATE_EPOCH, or when the changelog was last written.
"""

import argparse
import datetime
import email.utils
import gzip
import os
import pathlib
import re
import shutil
import textwrap

WIDTH = 100
OWN_TERMS = "none-granted-yet"
HEAD = f"""Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: kelCameraVimba
Comment: The binaries contain parts of the components below, each under its own terms.

Files: *
Copyright: the owner of kelCameraVimba
License: {OWN_TERMS}

License: {OWN_TERMS}
 No licence has been granted yet; the owner will decide.
"""


def stanzas(text):
    """The stanzas of a machine-readable copyright file, each as its fields."""
    for block in re.split(r"\n\s*\n", text):
        fields, name = {}, None
        for line in block.splitlines():
            field = re.match(r"([A-Za-z-]+):(.*)", line)
            if field:
                name = field[1]
                fields[name] = field[2].strip()
            elif name:
                fields[name] += "\n" + line
        if fields:
            yield fields


def component(description, text):
    """One component: who holds its copyright, and its terms in words."""
    parsed = list(stanzas(text))
    used = [stanza for stanza in parsed if re.match(r"[*]$|include/", stanza.get("Files", ""))]
    whole = next((stanza for stanza in used if stanza["Files"] == "*"), None)
    if whole is None:
        raise SystemExit(f"the terms of {description} are not machine-readable; write them into this program")
    title, _, words = whole["License"].partition("\n")
    if words:
        bodies = {title: words}
    else:
        bodies = {stanza["License"].partition("\n")[0]: stanza["License"].partition("\n")[2]
                  for stanza in parsed if "Files" not in stanza and "License" in stanza}  # fmt: skip
    short = re.sub(r"[^a-z0-9]+", "-", description.partition("(")[0].lower()).strip("-")
    names = re.split(r"\s+(?:or|and)\s+", title)
    missing = [name for name in names if name not in bodies]
    if missing:
        raise SystemExit(f"{description}: no text of the licence {missing}")
    # Licences of one name differ in who may not be named in advertisements: each component has its own.
    terms = "\n\n".join(f"License: {short}-{name}\n{bodies[name].rstrip()}" for name in names)
    title = re.sub(r"[^\s]+", lambda word: word[0] if word[0] in ("or", "and") else f"{short}-{word[0]}", title)
    holders = "\n ".join(stanza["Copyright"] for stanza in used)
    return (f"Files: third-party/{short}/*\nCopyright: {holders}\nLicense: {title}\n"
            f"Comment: {description}; a part of the binaries, in no folder of its own.\n\n{terms}\n")  # fmt: skip


def copyright_text(components):
    parts = [HEAD]
    for description, file in components:
        parts.append(component(description, file.read_text(encoding="utf-8")))
    return "\n".join(parts)


def versions(changelog):
    """(version, is released, lines of its changes) of each version, the newest first."""
    for head, body in re.findall(r"^## \[(.*?)\n(.*?)(?=^## |\Z)", changelog, re.M | re.S):
        version, _, date = head.partition("]")
        entries = re.findall(r"^- (.*?)(?=^\S|^$|\Z)", body, re.M | re.S)
        yield version, "Unreleased" not in date, [re.sub(r"\s+", " ", entry.strip()) for entry in entries]


def changelog_text(package, version, maintainer, changelog, seconds):
    date = email.utils.format_datetime(datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc))
    texts = []
    for upstream, _, entries in versions(changelog):
        number = version if version.startswith(f"{upstream}-") else f"{upstream}-1"
        lines = [f"{package} ({number}) unstable; urgency=medium", ""]
        for entry in entries:
            lines += textwrap.wrap(entry, WIDTH - 20, initial_indent="  * ", subsequent_indent="    ", break_on_hyphens=False)
        texts.append("\n".join([*lines, "", f" -- {maintainer}  {date}", ""]))
    return "\n".join(texts)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for name in ("package", "version", "maintainer"):
        parser.add_argument(f"--{name}", required=True)
    for name in ("changelog", "overrides", "output"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--component", action="append", default=[])
    arguments = parser.parse_args()
    components = [(description, pathlib.Path(file)) for description, _, file in
                  (pair.rpartition("=") for pair in arguments.component)]  # fmt: skip
    seconds = int(os.environ.get("SOURCE_DATE_EPOCH") or arguments.changelog.stat().st_mtime)
    changes = changelog_text(arguments.package, arguments.version, arguments.maintainer,
                             arguments.changelog.read_text(encoding="utf-8"), seconds)  # fmt: skip
    doc, lintian = arguments.output / "share/doc" / arguments.package, arguments.output / "share/lintian/overrides"
    for folder in (doc, lintian):
        folder.mkdir(parents=True, exist_ok=True)
    (doc / "copyright").write_text(copyright_text(components), encoding="utf-8", newline="\n")
    (doc / "changelog.Debian.gz").write_bytes(gzip.compress(changes.encode(), compresslevel=9, mtime=0))
    shutil.copyfile(arguments.overrides, lintian / arguments.package)


if __name__ == "__main__":
    main()
