#!/usr/bin/env python3
"""view_test: kelcam view, asked as browsers ask and as they should not.

view_test.py --kelcam FILE [--emulator PROGRAM]... [TEST...]

Every class or test starts the program with simulated cameras of its own. The emulator runs programs of another system.
"""

import argparse
import os
import pathlib
import sys
import unittest

from cases import cases
from view_case import options

MODULES = ("view_answers", "view_refusals", "view_pages", "view_life")
# A signal ends the emulator, and not the program in it.
WITHOUT_EMULATOR = "SignalTest"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kelcam", type=pathlib.Path, required=True)
    parser.add_argument("--emulator", action="append", default=[], type=os.path.abspath)
    # Under a sanitizer everything takes longer.
    parser.add_argument("--end-s", type=float, default=1.0)
    _, rest = parser.parse_known_args(namespace=options)
    globals().update(cases(MODULES))
    if options.emulator:
        del globals()[WITHOUT_EMULATOR]
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)


if __name__ == "__main__":
    main()
