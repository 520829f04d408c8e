#!/usr/bin/env python3
"""output_test: what kelcam --json prints is what its JSON Schema and its document say.

output_test.py --kelcam FILE --source FOLDER

Every command runs with simulated cameras, in success and in failure. The schema takes what it prints, and nothing that has
a member more. Every member that the schema names is in one of these outputs.
"""

import argparse
import copy
import json
import os
import pathlib
import re
import signal
import subprocess
import tempfile
import unittest

import jsonschema

options = argparse.Namespace()
SCHEMA = "apps/kelcam/kelcam-output.schema.json"
DEADLINE_S = 120
DONE, FAILED, INTERRUPTED = 0, 1, 130

SMALL = [{"like": f"DEV_{id}", "sensor": {"width": 616, "height": 514}} for id in ("000F31034C65", "000F31034C66")]
INCOMPLETE, TIMEOUT = -1, -12
FIRST_FRAME_INCOMPLETE = {"faults": [{"frame": 0, "status": INCOMPLETE}]}
ALL_FRAMES_INVALID = {"faults": [{"frame": 0, "status": -3, "count": 0}]}
NO_TRANSPORT_LAYER = {"system": {"geVTLIsPresent": False}}
NO_ADDRESS = {"faults": [{"call": "VmbCameraOpen", "error": -6, "count": 0}]}
UNPLUGGED = {"faults": [{"unplugAtFrame": 1}]}
# The camera at an address goes, and another one with this address comes back.
SPARE = {"id": "DEV_2", "serial": "2", "plugged": False}
PLACE = [{**SMALL[0], "ip": "10.0.0.1"}, {**SMALL[0], "ip": "10.0.0.1", **SPARE}]
REPLACED = {"cameras": PLACE, "faults": [{"unplugAtFrame": 1, "plugAfter_ms": 1500, "plug": "DEV_2"}]}
INSTANT = {"timing": "instant"}
DOES_NOT_START = {"faults": [{"call": "VmbFeatureCommandRun", "feature": "AcquisitionStart", "error": TIMEOUT}]}
NOTHING_STARTS = {"faults": [{**DOES_NOT_START["faults"][0], "count": 0}]}

# The command line, the simulated cameras where they differ, the exit code, and what each line or the document is.
CASES = [
    ("--version", {}, DONE, "version"),
    ("--vimbac no-such-folder --version", {}, DONE, "version"),
    ("--simulated=list", {}, DONE, "scenarios"),
    ("list", {}, DONE, "list"),
    ("list", {"cameras": []}, DONE, "list"),
    ("list --wait 0.3", {"cameras": []}, FAILED, "error"),
    ("list", NO_TRANSPORT_LAYER, FAILED, "error"),
    ("list --long", {}, DONE, "listLong"),
    ("list --long", NO_ADDRESS, DONE, "listLong"),
    ("info --profile mono.ini", {}, DONE, "info"),
    ("info --profile colour.ini", {}, DONE, "info"),
    ("info --camera 1", {}, DONE, "info"),
    ("info --camera 17", {}, FAILED, "error"),
    ("info --camera 1 --camera 2", {}, DONE, "infoOfSeveral"),
    ("info --camera 1 --camera 17", {}, FAILED, "infoOfSeveral"),
    ("info --profile mono.ini", NO_ADDRESS, FAILED, "error"),
    ("info --profile no-such.ini", {}, FAILED, "error"),
    ("--module no-such-file info --profile mono.ini", {}, FAILED, "error"),
    ("snap --profile mono.ini -n 2 -o %d.png", {}, DONE, "snap"),
    ("snap --profile colour.ini --raw -o raw.png", {}, DONE, "snap"),
    ("snap --profile mono.ini -n 2 -o %d.png", FIRST_FRAME_INCOMPLETE, FAILED, "snap"),
    ("snap --profile mono.ini --retry 1 -o again.png", FIRST_FRAME_INCOMPLETE, DONE, "snap"),
    ("snap --profile mono.ini --retry 1 -o again.png", ALL_FRAMES_INVALID, FAILED, "snap"),
    ("snap --profile mono.ini --mode continuous -o run.png", DOES_NOT_START, FAILED, "snap"),
    ("snap --profile mono.ini -o no-such-folder/x.png", {}, FAILED, "error"),
    ("snap --camera 1 --camera 2 --link -n 2 -o %c-%d.png", INSTANT, DONE, "snapOfSeveral"),
    ("snap --camera 1 --camera 2 -o %c.png", ALL_FRAMES_INVALID, FAILED, "snapOfSeveral"),
    ("snap --camera 1 --camera 2 --mode continuous -o %c.png", DOES_NOT_START, FAILED, "snapOfSeveral"),
    ("snap --camera 16 --camera 17 -o %c.png", {}, FAILED, "snapOfSeveral"),
    ("snap --camera 1 --camera 2 --mode continuous -o %c.png", NOTHING_STARTS, FAILED, "snapOfSeveral"),
    ("live --profile mono.ini --seconds 1.5", {}, DONE, "live"),
    ("live --camera 1 --camera 2 --link --seconds 1.5", INSTANT, DONE, "liveOfTwo"),
    ("live --camera 1 --camera 17 --seconds 1.5", INSTANT, FAILED, "liveWithoutSecond"),
    ("live --profile mono.ini --seconds 1.5", ALL_FRAMES_INVALID, FAILED, "live"),
    ("live --profile mono.ini --timeout 500 --retries 1", UNPLUGGED, FAILED, "live"),
    ("live --profile mono.ini --seconds 1", DOES_NOT_START, FAILED, "live"),
    ("live --profile address.ini --seconds 3 --timeout 300 --reconnect", REPLACED, FAILED, "liveWithLoss"),
    ("snap --profile address.ini -n 4 --timeout 300 --keep-going --reconnect -o %d.png", REPLACED, FAILED, "snap"),
    ("live --profile no-such.ini", {}, FAILED, "liveError"),
    ("view --camera 1 --port 0", {}, INTERRUPTED, "viewListening"),
    ("view --camera 17 --port 0", {}, FAILED, "liveError"),
    ("check --camera 1 --seconds 0.5", {}, DONE, "check"),
    ("check --profile mono.ini --seconds 0.5 -o report.txt --anonymous", {}, DONE, "check"),
    ("check --seconds 0.5", NO_TRANSPORT_LAYER, FAILED, "check"),
    ("check --camera 1 --seconds 0.5", NO_ADDRESS, FAILED, "check"),
    ("--module no-such-file check", {}, FAILED, "check"),
    ("profile new --camera 1 -o new.ini", {}, DONE, "profileNew"),
    ("profile new --camera 1 -o mono.ini", {}, FAILED, "error"),
    ("profile check mono.ini", {}, DONE, "profileCheck"),
    ("profile check wrong.ini", {}, FAILED, "profileCheck"),
    ("profile check no-such.ini", {}, FAILED, "error"),
]
ADDRESS_PROFILE = "API = Vimba\nInit.Method = IP\nIP = 10.0.0.1\n"
WRONG_PROFILE = "Init.Method = Serial\nSHUTER = 10\nAOIX = seven\n"


class Run:
    """What kelcam prints of one case, in a folder of its own."""

    def __init__(self, arguments, cameras):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            for profile in ("mono", "colour"):
                text = (options.source / f"apps/kelcam/profiles/{profile}.ini").read_bytes()
                (folder / f"{profile}.ini").write_bytes(text)
            (folder / "address.ini").write_text(ADDRESS_PROFILE, encoding="utf-8")
            (folder / "wrong.ini").write_text(WRONG_PROFILE, encoding="utf-8")
            (folder / "cameras.json").write_text(json.dumps({"cameras": SMALL, **cameras}), encoding="utf-8")
            process = subprocess.Popen(
                [options.kelcam.resolve(), "--json", *arguments.split()], cwd=folder, stdout=subprocess.PIPE,
                env={**os.environ, "VIMBA_SIM_CONFIG": "cameras.json"}, stderr=subprocess.PIPE, encoding="utf-8")  # fmt: skip
            line = ""
            if arguments.startswith("view"):
                # It runs until it is interrupted, once it has begun.
                line = process.stdout.readline()
                if '"listening"' in line:
                    process.send_signal(signal.SIGINT)
            out, self.err = process.communicate(timeout=DEADLINE_S)
        self.out, self.exit_code = line + out, process.returncode


def kinds_of(kind, documents):
    """The part of the schema for each document."""
    count = len(documents)
    if kind == "liveWithLoss":
        parts = {"lost": "lost", "returned": "returned", "second": "liveSecond"}
        return [parts.get(document["event"], "no line before the last") for document in documents[:-1]] + ["liveTotal"]
    last = {"live": ["liveTotal"], "liveOfTwo": ["liveTotal"] * 2, "liveWithoutSecond": ["liveTotal", "liveError"]}
    return ["liveSecond"] * (count - len(last[kind])) + last[kind] if kind in last else [kind] * count


def every_object(document, path=()):
    """The path to each object in the document."""
    if isinstance(document, dict):
        yield path
    children = document.items() if isinstance(document, dict) else enumerate(document) if isinstance(document, list) else ()
    for key, child in children:
        yield from every_object(child, (*path, key))


def at(document, path):
    for key in path:
        document = document[key]
    return document


def names_in(document):
    for path in every_object(document):
        if not path or path[-1] != "failuresByCode":
            yield from at(document, path)


def names_of(schema):
    """Every member that the schema names."""
    if isinstance(schema, dict):
        if isinstance(schema.get("properties"), dict):
            yield from schema["properties"]
        for child in schema.values():
            yield from names_of(child)
    elif isinstance(schema, list):
        for child in schema:
            yield from names_of(child)


class Output(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.schema = json.loads((options.source / SCHEMA).read_text(encoding="utf-8"))
        cls.validator = jsonschema.Draft202012Validator(cls.schema)
        cls.outputs = []  # what is printed: the part of the schema and the document
        cls.runs = [(*case, Run(*case[:2])) for case in CASES]
        for _, _, _, kind, run in cls.runs:
            if kind.startswith("live"):
                documents = [json.loads(line) for line in run.out.splitlines()]
            else:
                documents = [json.loads(run.out)] if run.out else []
            cls.outputs += zip(kinds_of(kind, documents), documents)

    def part(self, kind):
        return jsonschema.Draft202012Validator({"$ref": f"#/$defs/{kind}", "$defs": self.schema["$defs"]})

    def test_TheSchemaIsOne(self):
        jsonschema.Draft202012Validator.check_schema(self.schema)

    def test_EveryRunEndsAsItShouldAndPrintsADocument(self):
        for arguments, cameras, exit_code, _, run in self.runs:
            with self.subTest(arguments, cameras=cameras):
                self.assertEqual(run.exit_code, exit_code, run.err)
                self.assertTrue(run.out, run.err)

    def test_EveryDocumentIsTheOneOfItsCommand(self):
        for kind, document in self.outputs:
            with self.subTest(kind, document=document):
                self.assertEqual([error.message for error in self.part(kind).iter_errors(document)], [])
                self.assertTrue(self.validator.is_valid(document), "it is none or several of the schema's documents")

    def test_NoObjectHasAnotherMember(self):
        for kind, document in self.outputs:
            for path in every_object(document):
                changed = copy.deepcopy(document)
                at(changed, path)["noSuchMember"] = 1
                with self.subTest(kind, path=path):
                    self.assertFalse(self.part(kind).is_valid(changed))

    def test_EveryPartOfTheSchemaIsPrinted(self):
        kinds = {part["$ref"].rpartition("/")[2] for part in self.schema["oneOf"]}
        self.assertEqual({kind for kind, _ in self.outputs}, kinds)
        printed = {name for _, document in self.outputs for name in names_in(document)}
        self.assertEqual(set(names_of(self.schema)) - printed, set())

    def test_EveryCommandIsRun(self):
        text = subprocess.run([options.kelcam, "--help"], check=True, capture_output=True, encoding="utf-8").stdout
        block = re.search(r"^(?:Subcommands|SUBCOMMANDS|Commands):\n((?: +\S.*\n)+)", text, re.M)[1]
        commands = set(re.findall(r"^ {2}(\w+)", block, re.M))
        run = {word for arguments, *_ in CASES for word in arguments.split()}
        self.assertGreater(len(commands), 4)
        self.assertEqual(commands - run, set())

    def test_TheDocumentNamesEveryMember(self):
        page = (options.source / "docs/kelcam.md").read_text(encoding="utf-8")
        section = page[page.index("\n## JSON documents") :].split("\n## ")[1]
        self.assertEqual({name for name in names_of(self.schema) if f"`{name}`" not in section}, set())


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--kelcam", type=pathlib.Path, required=True)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.parse_args(namespace=options)
    unittest.main(argv=["output_test"], verbosity=1)
