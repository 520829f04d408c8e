#!/usr/bin/env python3
"""tools_test: the programs of packaging/, on texts that are small enough to see what comes out."""

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "packaging"))
# Found by the line above.
import completions  # noqa: E402
import help_text  # noqa: E402
import make_debian_files  # noqa: E402
import make_documents  # noqa: E402
import man_page  # noqa: E402

HELP = """tool does work.

Usage: tool [OPTIONS] SUBCOMMAND

Options:
  -h,--help                     print this text
  --kind mono|rgb               kind of work (default: rgb,
                                or else mono)
  --a-very-long-option-name=FILE
                                a file
  --simulated [=NAME]           cameras by name

Subcommands:
  run                           run it

Examples:
  tool run
"""


class HelpText(unittest.TestCase):
    def setUp(self):
        self.page = help_text.parse((), HELP)

    def test_OptionsHaveTheirNamesValuesAndWholeDescriptions(self):
        found = [(option.names, option.value, option.description) for option in self.page.options]
        expected = [
            (["-h", "--help"], "", "print this text"),
            (["--kind"], "mono|rgb", "kind of work (default: rgb, or else mono)"),
            (["--a-very-long-option-name"], "FILE", "a file"),
            (["--simulated"], "NAME", "cameras by name"),
        ]
        self.assertEqual(found, expected)

    def test_OnlyAValueInBracketsIsOptional(self):
        self.assertEqual([option.value_is_optional for option in self.page.options], [False, False, False, True])

    def test_CommandsAndOtherTextAreApart(self):
        self.assertEqual(self.page.commands, [("run", "run it")])
        self.assertEqual(self.page.footer, [["Examples:", "  tool run"]])
        self.assertEqual(self.page.purpose, "tool does work.")

    def test_ManualPageEscapesWhatRoffWouldTakeForItsOwn(self):
        self.assertEqual(man_page.escaped(".ini -n \\d"), "\\&.ini \\-n \\ed")

    def test_OptionalValueIsNotWaitedForAfterABlank(self):
        text = completions.bash("tool", self.page)
        self.assertIn("      --a-very-long-option-name | --kind) is_value=yes ;;", text)


class Links(unittest.TestCase):
    def rewritten(self, text):
        places = make_documents.Places(["docs/a.md=doc/docs/a.md", "README.md=doc/README.md", "examples=share/examples"])
        return make_documents.with_links(text, "docs/a.md", "doc/docs", places)

    def test_LinkFollowsItsFileIntoThePackage(self):
        self.assertEqual(self.rewritten("[x](../README.md#y)"), "[x](../README.md#y)")
        self.assertEqual(self.rewritten("[x](../examples/b/main.cpp)"), "[x](../../share/examples/b/main.cpp)")

    def test_LinkToWhatThePackageLacksLeavesItsWords(self):
        self.assertEqual(self.rewritten("see [`src/x.h`](../src/x.h), [there](https://a.b/c)"),
                         "see `src/x.h`, [there](https://a.b/c)")  # fmt: skip

    def test_BlocksOfCodeStayAsTheyAre(self):
        text = "```cpp\n[x](../src/x.h)\n```\n"
        self.assertEqual(self.rewritten(text), text)


class DebianFiles(unittest.TestCase):
    COPYRIGHT = """Format: x

Files: *
Copyright: 2001 Somebody
License: Expat or public-domain

Files: include/part.h
Copyright: 2002 Somebody Else
License: Expat

Files: debian/*
Copyright: 2003 A Packager
License: Expat

License: Expat
 Words of one.

License: public-domain
 Words of the other.
"""

    def test_ComponentHasItsHoldersAndTheWordsOfEachLicence(self):
        text = make_debian_files.component("Library (what for)", self.COPYRIGHT)
        self.assertIn("Copyright: 2001 Somebody\n 2002 Somebody Else\nLicense: library-Expat or library-public-domain\n", text)
        self.assertIn("License: library-Expat\n Words of one.\n\nLicense: library-public-domain\n Words of the other.\n", text)
        self.assertNotIn("Packager", text)

    def test_LicenceWithoutWordsIsRefused(self):
        with self.assertRaisesRegex(SystemExit, "no text of the licence"):
            make_debian_files.component("Library", self.COPYRIGHT.replace("License: public-domain\n Words", "X:\n Words"))

    def test_EveryVersionHasItsEntriesAndDate(self):
        changes = "# Changelog\n\n## [1.1.0] - 2027-01-01\n\n### Added\n\n- One\n  line.\n\n- Two.\n\n## [1.0.0] - Unreleased\n\n- Old.\n"
        text = make_debian_files.changelog_text("p", "1.1.0-2", "N <a@b>", changes, 0)
        self.assertEqual(
            text,
            "p (1.1.0-2) unstable; urgency=medium\n\n  * One line.\n  * Two.\n\n -- N <a@b>  Thu, 01 Jan 1970 00:00:00 +0000\n\n"
            "p (1.0.0-1) unstable; urgency=medium\n\n  * Old.\n\n -- N <a@b>  Thu, 01 Jan 1970 00:00:00 +0000\n",
        )


if __name__ == "__main__":
    unittest.main(verbosity=2)
