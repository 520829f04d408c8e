"""view_case.py: what tests of kelcam view share: kelcam with small cameras, and answers that refuse."""

import argparse
import unittest

from viewer import Kelcam

options = argparse.Namespace()
MONO, COLOUR = "DEV_000F31034C65", "DEV_000F31034C66"
WIDTH, HEIGHT = 616, 514


def camera(like=MONO, **members):
    return {"like": like, "sensor": {"width": WIDTH, "height": HEIGHT}, "noise": False, **members}


SMALL = {"cameras": [camera()]}
COLOURS = {"cameras": [camera(COLOUR)]}


def kelcam(cameras=None, *arguments, first="--camera 1"):
    return Kelcam(options, cameras or SMALL, *arguments, first=first)


class ViewCase(unittest.TestCase):
    """With one program for all of its tests."""

    cameras, arguments, first = SMALL, (), "--camera 1"

    @classmethod
    def setUpClass(cls):
        cls.view = cls.enterClassContext(kelcam(cls.cameras, *cls.arguments, first=cls.first))
        cls.view.wait_for_state(lambda state: state["state"] == "running")
        cls.events = cls.enterClassContext(cls.view.events())

    def assert_refused(self, answer, status):
        self.assertEqual(answer.status, status, answer.body)
        self.assertEqual(list(answer.json()), ["error"])
        self.assertNotIn("<", answer.json()["error"])
