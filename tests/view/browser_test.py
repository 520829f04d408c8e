#!/usr/bin/env python3
"""browser_test: the page of kelcam view in headless Chromium.

browser_test.py --kelcam FILE [--screenshots FOLDER] [TEST...]

Every class of tests starts the program with simulated cameras of its own. With --screenshots no test runs; pictures of
the page are written instead. Exit 77: there is no Chromium, no driver for it, or no way between them.
"""

import argparse
import pathlib
import socket
import sys
import unittest

from cases import cases

MISSING = 77
MODULES = ("browser_pictures", "browser_cameras", "browser_access")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kelcam", type=pathlib.Path, required=True)
    parser.add_argument("--screenshots", type=pathlib.Path)
    given, rest = parser.parse_known_args()
    try:
        from browser import programs
    except ModuleNotFoundError as error:
        print(f"skipped: Python has no module {error.name}")
        return MISSING
    if None in programs():
        print("skipped: chromium and chromedriver are not installed")
        return MISSING
    try:
        socket.getaddrinfo("localhost", None)
    except OSError:
        print("skipped: this machine has no localhost (in /etc/hosts), by which chromedriver reaches chromium")
        return MISSING
    import browser_case

    vars(browser_case.options).update(emulator=[], kelcam=given.kelcam)
    if given.screenshots:
        import browser_screenshots

        return browser_screenshots.write(given.screenshots)
    globals().update(cases(MODULES))
    try:
        done = unittest.main(argv=[sys.argv[0], *rest], verbosity=2, exit=False)
    finally:
        browser_case.BrowserCase.quit()
    return 0 if done.result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
