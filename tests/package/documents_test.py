"""documents_test: what a package holds to read: documents, notices, manual page, completions, Debian's own files."""

import gzip
import os
import pathlib
import re
import shutil
import tempfile
import unittest

from packages import options, packages, run

LINK = re.compile(r"\]\(([^)\s]+)\)")
FENCE = re.compile(r"^```.*?^```", re.M | re.S)
# What a user looks for first.
EXPECTED_DOCUMENTS = {"README.md", "CHANGELOG.md", "SECURITY.md", "docs/kelcam.md", "docs/troubleshooting.md", "docs/profile.md"}


def anchors(text):
    headings = re.findall(r"^#+\s+(.*)$", FENCE.sub("", text), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def dead_links(document, top):
    """Links of a document that lead to nothing, or out of the package."""
    for target in LINK.findall(FENCE.sub("", document.read_text(encoding="utf-8"))):
        path, _, anchor = target.partition("#")
        file = (document.parent / path).resolve() if path else document
        if re.match(r"\w+:", target):
            continue
        if not file.exists() or not file.is_relative_to(top.resolve()):
            yield target
        elif anchor and file.suffix == ".md" and anchor not in anchors(file.read_text(encoding="utf-8")):
            yield target


class Documents(unittest.TestCase):
    maxDiff = None

    def test_EveryLinkLeadsToAFileOfThePackage(self):
        for package in packages():
            with self.subTest(package.name):
                folder = package.top / "share/doc/kelCameraVimba"
                documents = {file.relative_to(folder).as_posix(): file for file in folder.rglob("*.md")}
                self.assertLessEqual(EXPECTED_DOCUMENTS, set(documents))
                documents |= {f"{file.name} at the top": file for file in package.top.glob("*.md")}
                found = {name: list(dead_links(file, package.top)) for name, file in documents.items()}
                self.assertEqual({name: links for name, links in found.items() if links}, {})

    def test_ArchiveHasItsReadmeAtTheTop(self):
        for package in packages():
            with self.subTest(package.name):
                found = [file.name for file in package.top.glob("*.md")]
                self.assertEqual(found, [] if package.file.suffix == ".deb" else ["README.md"])

    def test_ReadmeIsThePackagesOwnAndLinksEveryDocumentForUsers(self):
        for package in packages():
            with self.subTest(package.name):
                readme = (package.top / "share/doc/kelCameraVimba/README.md").read_text(encoding="utf-8")
                self.assertNotIn("script/", readme)
                self.assertNotIn("build/linux", readme)
                for name in sorted(EXPECTED_DOCUMENTS - {"README.md"}):
                    self.assertIn(f"]({name})", readme)

    def test_FirstBlockOfTheReadmeMakesAPicture(self):
        package = next((package for package in packages() if package.file.suffix == ".deb"), None)
        if package is None:
            self.skipTest("the block is that of the Debian package")
        readme = (package.top / "share/doc/kelCameraVimba/README.md").read_text(encoding="utf-8")
        commands = re.search(r"```sh\n(.*?)```", readme, re.S)[1].replace("/usr/", f"{package.top}/")
        with tempfile.TemporaryDirectory() as folder:
            path = f"{package.top}/bin:{os.environ['PATH']}"
            run("bash", "-e", "-c", commands, environment={"PATH": path, "LD_LIBRARY_PATH": ""}, cwd=folder)
            self.assertTrue((pathlib.Path(folder) / "picture.png").read_bytes().startswith(b"\x89PNG"))

    def test_FoldersThatTheReadmeListsAreInThePackage(self):
        for package in packages():
            with self.subTest(package.name):
                readme = (package.top / "share/doc/kelCameraVimba/README.md").read_text(encoding="utf-8")
                table = readme.partition("## Where things are")[2].partition("\n## ")[0]
                rows = re.findall(r"^\| (`[^|]*) \| (.*) \|$", table, re.M)
                self.assertTrue(rows)
                for folders, purpose in rows:
                    if purpose.startswith("Linux:") and options.system != "linux":
                        continue
                    for folder in re.findall(r"`([^`]+)`", folders):
                        self.assertTrue((package.top / folder).is_dir(), folder)


@unittest.skipIf(options.system != "linux", "systems without man, bash and zsh")
class HelpPages(unittest.TestCase):
    """The manual page and the completions, which the program's own help is the source of."""

    def help_of(self, package, *command):
        return run(package.top / "bin/kelcam", *command, "--help").stdout

    def option_names(self, text):
        return re.findall(r"^  (-[^ ]*)", text, re.M)

    def commands(self, package):
        return re.findall(r"^  (\w+)  ", self.help_of(package).partition("ubcommands:")[2].partition("\n\n")[0], re.M)

    def test_ManualPageHasEveryCommandAndOption(self):
        for package in packages():
            with self.subTest(package.name):
                page = gzip.decompress((package.top / "share/man/man1/kelcam.1.gz").read_bytes()).decode()
                for command in self.commands(package):
                    section = page.partition(f'.SS "{command}"')[2].partition("\n.S")[0]
                    for option in self.option_names(self.help_of(package, command)):
                        self.assertIn("\\fB" + option.replace("-", "\\-"), section, command)

    def test_ManualPageIsFormattedWithoutAWarning(self):
        for package in packages():
            with self.subTest(package.name):
                page = package.top / "share/man/man1/kelcam.1.gz"
                done = run("man", "--warnings=w", "-E", "UTF-8", "-l", page, environment={"MANWIDTH": "80"})
                self.assertEqual(done.stderr, "")
                self.assertIn("SYNOPSIS", done.stdout)

    def complete_in_bash(self, package, *words):
        """What bash offers for the last of these words."""
        completions = package.top / "share/bash-completion/completions/kelcam"
        script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); compopt() { :; }; _kelcam; '
                  'printf "%s\\n" "${COMPREPLY[@]}"')  # fmt: skip
        with tempfile.TemporaryDirectory() as folder:
            shutil.copyfile(package.profile("mono"), f"{folder}/a profile.ini")
            return run("bash", "-c", script, "bash", completions, *words, cwd=folder).stdout.split("\n")[:-1]

    def test_BashCompletesCommandsOptionsValuesAndFiles(self):
        for package in packages():
            with self.subTest(package.name):
                self.assertEqual(self.complete_in_bash(package, "kelcam", "sn"), ["snap"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "--log", "list", "sn"), ["snap"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "snap", "--kin"), ["--kind"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "snap", "--kind", ""), ["mono", "rgb"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "snap", "--kind", "=", "r"), ["rgb"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "snap", "--profile", "a"), ["a profile.ini"])
                self.assertEqual(self.complete_in_bash(package, "kelcam", "list", "--kin"), [""])

    def test_ZshReadsItsCompletionsAndHasEveryOption(self):
        for package in packages():
            with self.subTest(package.name):
                file = package.top / "share/zsh/vendor-completions/_kelcam"
                # Defines the functions; _arguments is given back what zsh makes of each argument.
                script = ('_arguments() { print -rl -- "$@" }; words=(kelcam snap); state=command; line=(snap); '
                          'source "$1"; _kelcam_snap')  # fmt: skip
                specifications = run("zsh", "-f", "-c", script, "zsh", file).stdout
                for options_of_line in self.option_names(self.help_of(package, "snap")):
                    for name in options_of_line.split(","):
                        self.assertRegex(specifications, rf"(?m)^[*]?(\([^)]*\))?{re.escape(name)}[=+]*\[")
                self.assertIn("(mono rgb)", specifications)


@unittest.skipIf(options.system != "linux", "a system without Debian packages")
class DebianPackage(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.package = next(package for package in packages() if package.file.suffix == ".deb")

    def test_LintianFindsNothing(self):
        # As root it remarks on that, on its standard error.
        self.assertEqual(run("lintian", "--fail-on", "error,warning", self.package.file).stdout, "")

    def test_CopyrightNamesEveryComponentAndGrantsNothingForTheRest(self):
        text = (self.package.top / "share/doc/kelcameravimba/copyright").read_text(encoding="utf-8")
        self.assertTrue(text.startswith("Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"))
        self.assertIn("No licence has been granted yet", text)
        for component, holder in {"CLI11": "University of Cincinnati", "JSON for Modern C++": "Niels Lohmann",
                                  "Highway": "Google", "Boost": "Boost project contributors", "stb": "Sean Barrett"}.items():  # fmt: skip
            stanza = next(block for block in text.split("\n\n") if f"Comment: {component} (" in block)
            self.assertIn(holder, stanza)
            for licence in re.findall(r"^License: (.*)$", stanza, re.M)[0].split(" or "):
                self.assertRegex(text, rf"(?m)^License: {re.escape(licence)}\n \S")

    def test_ChangelogIsThatOfTheVersion(self):
        text = gzip.decompress((self.package.top / "share/doc/kelcameravimba/changelog.Debian.gz").read_bytes()).decode()
        self.assertTrue(text.startswith(f"kelcameravimba ({options.version}-1) unstable; urgency=medium\n\n  * "), text[:80])
        self.assertEqual(run("dpkg-deb", "-f", self.package.file, "Version").stdout, f"{options.version}-1\n")

    def test_OnlyTheDebianPackageHasDebiansFiles(self):
        for package in packages():
            if package is not self.package:
                self.assertFalse((package.top / "share/doc/kelcameravimba").exists(), package.name)
                self.assertFalse((package.top / "share/lintian").exists(), package.name)
