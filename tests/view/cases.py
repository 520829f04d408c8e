"""cases.py: tests in several modules that run as one program."""

import importlib
import unittest


def cases(modules):
    """The classes of tests in these modules, by name."""
    found = {}
    for module in map(importlib.import_module, modules):
        found |= {name: case for name, case in vars(module).items() if isinstance(case, type) and issubclass(case, unittest.TestCase)}
    return found
