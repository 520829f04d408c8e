"""browser_case.py: what tests of the page share: the browser, kelcam with small cameras, the chart, the sensor."""

import argparse
import pathlib
import re
import unittest

from browser import Browser
from viewer import Kelcam, Png

options = argparse.Namespace()
MONO, COLOUR = "DEV_000F31034C65", "DEV_000F31034C66"
WIDTH, HEIGHT = 616, 514
# About 20 frames a second.
LINE_TIME_US = 100
SOURCE = pathlib.Path(__file__).resolve().parents[2]


def camera(like=MONO, **members):
    return {"like": like, "sensor": {"width": WIDTH, "height": HEIGHT}, "lineTime_us": LINE_TIME_US, "noise": False, **members}


def kelcam(cameras, *arguments, faults=(), first="--camera 1", port=0):
    return Kelcam(options, {"cameras": cameras, "faults": list(faults)}, *arguments, first=first, port=port)


class BrowserCase(unittest.TestCase):
    """With the browser that all tests share. Whatever the console gets and no test expects is a failure."""

    browser = None
    expected_complaints = ()

    @classmethod
    def setUpClass(cls):
        if BrowserCase.browser is None:
            BrowserCase.browser = Browser()

    @staticmethod
    def quit():
        if BrowserCase.browser is not None:
            BrowserCase.browser.quit()

    def tearDown(self):
        complaints = [entry["message"] for entry in self.browser.complaints()]
        self.browser.look_as()
        for pattern in self.expected_complaints:
            complaints = [message for message in complaints if not re.search(pattern, message)]
        self.assertEqual(complaints, [])

    def kelcam(self, *arguments, **named):
        view = self.enterContext(kelcam(*arguments, **named))
        view.wait_for_state(lambda state: state["state"] == "running")
        return view

    def open(self, view, path="/"):
        page = self.browser.open(f"http://127.0.0.1:{view.port}{path}")
        self.addCleanup(self.browser.driver.get, "about:blank")
        return page

    def shown(self, view, index=0):
        """The page with a picture of this camera."""
        panel = self.open(view).panel(index)
        # The first events fill texts, which may move things.
        panel.wait("Number(panel.dataset.frame) && part('sharpness').textContent > '0'")
        panel.wait_for_frames(2)
        return panel


class OneKelcam(BrowserCase):
    """One program for all of its tests, each of which opens the page."""

    cameras, first = [camera(COLOUR)], "--camera 1"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.view = cls.enterClassContext(kelcam(cls.cameras, first=cls.first))
        cls.view.wait_for_state(lambda state: state["state"] == "running")

    def setUp(self):
        self.panel = self.shown(self.view)
        self.page = self.panel.page

    def newest(self, after=0):
        """The number of a frame that is not this one."""
        return self.view.get(f"/api/cameras/0/picture?after={after}&width=64").frame

    def frame_file(self, frame):
        """The pixels of a frame that the page holds."""
        answer = self.view.get(f"/api/cameras/0/region?page={self.page.name()}&frame={frame}&width={WIDTH}")
        self.assertEqual(answer.status, 200, answer.body)
        return Png(answer.body)


def chart_patches():
    """(name, red, green, blue) of each patch, from the simulator's table."""
    text = (SOURCE / "simulator/scene/chart_patches.h").read_text(encoding="utf-8")
    rows = re.findall(r'\{"([^"]+)", (\d+), (\d+), (\d+)\}', text)
    return [(name, *map(int, values)) for name, *values in rows]


def patch_box(width, height, index):
    """The middle half of a patch, as simulator/scene/chart_layout.cpp lays it out for a sensor of this size."""
    inset = 0.06 * min(width, height)
    content_height = min(height - 2 * inset, (width - 2 * inset) / 1.05)
    content_width = min(width - 2 * inset, content_height * 1.9)
    unit = content_height / 100
    room = content_width / 2 - 28 * unit
    size = min(room / 3.5, 52 * unit / 4.59)
    offset = 28 * unit + (room - 3.5 * size) / 2
    column, row = index % 6, index // 6
    panel = width / 2 - offset - 3.5 * size if column < 3 else width / 2 + offset
    left = panel + (0.16 + column % 3 * 1.09) * size
    top = height / 2 - 4.59 / 2 * size + (0.16 + row * 1.09) * size
    return left + size / 4, top + size / 4, left + size * 3 / 4, top + size * 3 / 4


def light(code):
    """What the sensor takes for a value of the picture at the default exposure: the sRGB curve."""
    value = code / 255
    return value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4


def code(value):
    bounded = min(value, 1.0)
    return round(255 * (bounded * 12.92 if bounded <= 0.0031308 else 1.055 * bounded ** (1 / 2.4) - 0.055))


