#!/usr/bin/env python3
"""same_test: Windows and Linux give the same: pictures, profiles, answers and host messages of the same simulated cameras.

same_test.py --linux FOLDER --windows FOLDER --launcher FILE --profiles FOLDER --work FOLDER
"""

import argparse
import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import unittest
import zlib

DEADLINE_S = 120
IMAGES = 2
CAMERAS = {"mono": "DEV_000F31034C65", "colour": "DEV_000F31034C66", "yuv": "DEV_000F310199B8"}  # of the profiles
SETTINGS = ["--set", "gain=2x", "--set", "exposure=12.5ms"]

options = argparse.Namespace()


def write_picture(file, width=640, height=480):
    """A still scene of every colour: the built-in one moves with the time."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = bytearray()
    for y in range(height):
        rows.append(0)
        for x in range(width):
            rows += bytes((x * 255 // width, y * 255 // height, (x // 8 ^ y // 8) * 4 & 255))
    head = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    file.write_bytes(
        b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b"")
    )


class Platform:
    """What kelcam of one system gave for each camera, in a folder of its own."""

    def __init__(self, name, command):
        self.command = command
        self.folder = options.work / name
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(options.profiles, self.folder)
        write_picture(self.folder / "scene.png")
        cameras = [{"like": camera, "scene": {"picture": "scene.png"}} for camera in CAMERAS.values()]
        (self.folder / "cameras.json").write_text(json.dumps({"timing": "instant", "cameras": cameras}))
        self.list = self.run("list")
        # But for the library, which is another file on each system.
        info = {name: self.run("info", "--profile", f"{name}.ini") for name in CAMERAS}
        self.info = {name: re.sub(r"(?m)^library .*\n", "", text) for name, text in info.items()}
        for name in CAMERAS:
            self.run("--log", f"{name}.log", "snap", "-n", str(IMAGES), "--profile", f"{name}.ini", *SETTINGS,
                     "-o", f"{name}-%d.png")  # fmt: skip

    def run(self, *arguments):
        done = subprocess.run(
            [*self.command, *arguments], capture_output=True, text=True, timeout=DEADLINE_S, check=False,
            cwd=self.folder, env={**os.environ, "VIMBA_SIM_CONFIG": "cameras.json"},
        )  # fmt: skip
        if done.returncode != 0:
            raise AssertionError(f"{self.command} {arguments} ended with {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout

    def bytes_of(self, name):
        return (self.folder / name).read_bytes()

    def pixels_of(self, name):
        """Size and rows of a PNG file. Its texts differ: they have the time."""
        file = self.bytes_of(name)
        head, data, at = b"", b"", 8
        while at < len(file):
            length, kind = struct.unpack_from(">I4s", file, at)
            content = file[at + 8 : at + 8 + length]
            head += content if kind == b"IHDR" else b""
            data += content if kind == b"IDAT" else b""
            at += 12 + length
        return head, zlib.decompress(data)

    def messages(self, name):
        """The host messages without times and thread ids, those of the host's thread and those of the library's apart:
        the two threads run side by side, so that only each one's own order is fixed."""
        text = (self.folder / f"{name}.log").read_text(encoding="utf-8")
        text = re.sub(r"Thread ID = \d+", "Thread ID = #", text)
        text = re.sub(r"(?m)^( +\d+ : ) *\d+\.\d{4} \( *-?\d+\.\d{4}\) : ", r"\1", text)
        text = re.sub(r"((?:Current camera timestamp|Timestamp) = )\d+", r"\1#", text)
        messages = re.split(r"(?m)^(?==== )", text)[1:]
        return (
            [message for message in messages if "OnFrameExt" not in message],
            [message for message in messages if "OnFrameExt" in message],
        )


class Same(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        linux_program = options.linux / "kelcam"
        if not linux_program.exists():
            raise AssertionError(f"{linux_program} is missing: script/test windows builds it first")
        cls.linux = Platform("linux", [str(linux_program)])
        cls.windows = Platform("windows", [str(options.launcher), str(options.windows / "kelcam.exe")])

    def test_CamerasAreListedAlike(self):
        self.assertEqual(len(self.linux.list.splitlines()), len(CAMERAS))
        self.assertEqual(self.windows.list, self.linux.list)

    def test_DevicesReportAlike(self):
        self.assertEqual(self.windows.info, self.linux.info)

    def test_PicturesHaveTheSamePixels(self):
        for name in CAMERAS:
            for number in range(1, IMAGES + 1):
                file = f"{name}-{number}.png"
                with self.subTest(file):
                    self.assertTrue(self.linux.pixels_of(file) == self.windows.pixels_of(file))

    def test_ProfilesAreLeftAlike(self):
        for name in CAMERAS:
            with self.subTest(name):
                self.assertIn(b"Ident", self.linux.bytes_of(f"{name}.ini"))
                self.assertEqual(self.windows.bytes_of(f"{name}.ini"), self.linux.bytes_of(f"{name}.ini"))

    def test_HostMessagesAreTheSameButForTimesAndThreads(self):
        for name in CAMERAS:
            with self.subTest(name):
                host_thread, library_thread = self.linux.messages(name)
                self.assertEqual(len(library_thread), IMAGES)
                self.assertEqual(self.windows.messages(name), (host_thread, library_thread))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    for argument in ("linux", "windows", "launcher", "profiles", "work"):
        parser.add_argument(f"--{argument}", type=pathlib.Path, required=True)
    parser.parse_args(namespace=options)
    unittest.main(argv=["same_test"], verbosity=2)
