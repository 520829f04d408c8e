#!/usr/bin/env python3
"""scenario_test: the scenarios, their JSON Schema and the simulator's own parser agree.

scenario_test.py --library FILE --simulator FOLDER

Variants of scenarios are made from the schema: each member with values of other types and at, within and beyond its
limits. The schema and the parser must take the same ones.
"""

import argparse
import copy
import ctypes
import json
import pathlib
import unittest

import jsonschema

options = argparse.Namespace()
SCENARIOS = 13
OTHER_TYPES = [None, True, 1.5, "no such word", [], [7], {}, {"nothing": 1}]
# The parser looks at more than types: a format that a sensor does not have, the same id twice.
BEYOND_THE_SCHEMA = [
    {"cameras": [{"formats": ["BayerRG8"]}]},
    {"cameras": [{"id": "DEV_1"}, {"id": "DEV_1"}]},
    {"cameras": [{"features": {"NoSuchFeature": 1}}]},
    {"cameras": [{"link": "no such link"}]},
    {"links": [{"name": "A"}, {"name": "A"}]},
]


class Parser:
    """The simulated library's."""

    def __init__(self, library):
        self.library = ctypes.CDLL(str(library))
        self.library.VimbaSimLastError.restype = ctypes.c_char_p

    def refusal(self, scenario):
        """Empty: it takes the scenario."""
        if self.library.VimbaSimConfigure(json.dumps(scenario).encode()) == 0:
            return ""
        return self.library.VimbaSimLastError().decode()


def members(schema, node, path):
    """Every member that the schema names: the path to it and its part of the schema. A list index stands for an array."""
    if "$ref" in node:
        node = schema["definitions"][node["$ref"].rpartition("/")[2]]
    yield path, node
    for name, child in node.get("properties", {}).items():
        yield from members(schema, child, (*path, name))
    for alternative in node.get("oneOf", ()):
        if path and path[0] == "faults" and len(path) == 2:
            yield from ((found, part) for found, part in members(schema, alternative, path) if found != path)
    if isinstance(node.get("items"), dict):
        yield from members(schema, node["items"], (*path, 0))


def values_for(node):
    """Good and bad values for a member."""
    values = list(OTHER_TYPES)
    values += node.get("enum", [])
    if "minimum" in node:
        values += [node["minimum"], node["minimum"] - 1]
    # A number beyond 64 bits is no number of the parser's; there is no value above its largest.
    if "maximum" in node and node["maximum"] < 2**62:
        values += [node["maximum"], node["maximum"] + 1]
    return values


def with_value(path, value):
    """A scenario with this value at the path, and what it needs to be a scenario."""
    for part in reversed(path):
        value = [value] if part == 0 else {part: value}
    if path[0] == "faults" and len(path) > 2:
        fault = value["faults"][0]
        kind = {"done": "call", "error": "call", "effect": "call"}.get(path[2])
        if not {"call", "frame", "unplugAtFrame"} & set(fault):
            is_of_call = kind or path[2] in ("feature", "value", "occurrence", "answer")
            is_of_plug = path[2] in ("plugAfter_ms", "plug")
            fault.update({"call": "any"} if is_of_call else {"unplugAtFrame": 0} if is_of_plug else {"frame": 0})
    return value


class Scenarios(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.parser = Parser(options.library)
        cls.schema = json.loads((options.simulator / "scenario.schema.json").read_text(encoding="utf-8"))
        cls.validator = jsonschema.Draft7Validator(cls.schema)
        files = sorted((options.simulator / "scenarios").glob("*.json"))
        cls.scenarios = {file.stem: json.loads(file.read_text(encoding="utf-8")) for file in files}

    def test_TheSchemaIsOne(self):
        jsonschema.Draft7Validator.check_schema(self.schema)

    def test_EveryScenarioIsTakenByBoth(self):
        self.assertEqual(len(self.scenarios), SCENARIOS)
        for name, scenario in self.scenarios.items():
            with self.subTest(name):
                self.assertEqual([error.message for error in self.validator.iter_errors(scenario)], [])
                self.assertEqual(self.parser.refusal(scenario), "")
                self.assertTrue(scenario["description"])

    def test_NoMemberIsTakenByOneAlone(self):
        for name, scenario in self.scenarios.items():
            for path in ((), ("cameras", 0), ("faults", 0)):
                with self.subTest(name, path=path):
                    changed = copy.deepcopy(scenario)
                    place = changed
                    for part in path:
                        place = place.get(part, {}) if isinstance(place, dict) else place[part]
                    place["noSuchMember"] = 1
                    if changed == scenario:
                        continue
                    self.assertFalse(self.validator.is_valid(changed))
                    self.assertIn("noSuchMember: there is no such member", self.parser.refusal(changed))

    def test_BothTakeTheSameValues(self):
        tried = 0
        for path, node in members(self.schema, self.schema, ()):
            if not path or 0 == path[-1] or "definitions" in path:
                continue
            for value in values_for(node):
                scenario = with_value(path, value)
                # Which features and links there are is the parser's alone.
                if path[-1] == "features" and value == {"nothing": 1}:
                    continue
                if path == ("cameras", 0, "link") and value == "no such word":
                    continue
                with self.subTest(path=path, value=value):
                    refusal = self.parser.refusal(scenario)
                    self.assertEqual(self.validator.is_valid(scenario), refusal == "", refusal)
                tried += 1
        self.assertGreater(tried, 500)

    def test_TheParserKnowsMoreThanTheSchema(self):
        for scenario in BEYOND_THE_SCHEMA:
            with self.subTest(scenario=scenario):
                self.assertTrue(self.validator.is_valid(scenario))
                self.assertNotEqual(self.parser.refusal(scenario), "")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--library", type=pathlib.Path, required=True)
    parser.add_argument("--simulator", type=pathlib.Path, required=True)
    parser.parse_args(namespace=options)
    unittest.main(argv=["scenario_test"], verbosity=1)
