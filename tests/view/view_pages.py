"""view_pages.py: many pages at once, and readers that stall or go."""

import time
import unittest

from view_case import WIDTH, kelcam, options
from viewer import DEADLINE_S, Connection, Events

MOST_PAGES = 32
# A server gives up a reader that takes nothing for so long.
STALL_S = 10
PICTURES = 40


class ManyPagesTest(unittest.TestCase):
    def test_ten_pages_show_the_same_frames(self):
        with kelcam() as view:
            pages = [view.events(f"testpage{i}") for i in range(10)]
            try:
                for events in pages:
                    events.wait("frame")
                for i in range(10):
                    self.assertEqual(view.picture(width=300, page=f"testpage{i}").status, 200)
            finally:
                for events in pages:
                    events.close()

    def test_there_are_no_more_pages_than_there_may_be(self):
        with kelcam() as view:
            pages = [view.events(f"testpage{i}") for i in range(MOST_PAGES)]
            self.assertEqual(view.get("/api/events?page=onetoomany").status, 503)
            pages.pop().close()
            end = time.monotonic() + DEADLINE_S
            while time.monotonic() < end:
                with Events(view.port, "onetoomany") as late:
                    if late.status == 200:
                        break
            self.assertEqual(late.status, 200)
            for events in pages:
                events.close()

    def test_a_reader_that_stalls_slows_nothing_down(self):
        with kelcam() as view:
            view.wait_for_state(lambda state: state["state"] == "running")
            with view.events() as events:
                before = self.frames_in(events, 3)
                stalled = []
                for i in range(5):
                    connection = Connection(view.port)
                    connection.request("GET", f"/api/events?page=stalled0{i}")
                    stalled.append(connection)
                    connection = Connection(view.port)
                    for _ in range(40):
                        connection.request("GET", f"/api/cameras/0/picture?after=0&width={WIDTH}")
                    stalled.append(connection)
                during = self.frames_in(events, 3)
                # Under a sanitizer the few frames a second vary by themselves.
                self.assertGreater(during, (0.8 if options.end_s <= 1 else 0.3) * before)
                for connection in stalled:
                    connection.close()

    def test_a_reader_that_takes_nothing_is_cut_off(self):
        with kelcam() as view:
            view.wait_for_state(lambda state: state["state"] == "running")
            with Connection(view.port, receive_bytes=4096) as connection:
                for _ in range(PICTURES):
                    connection.request("GET", f"/api/cameras/0/picture?after=0&width={WIDTH}")
                time.sleep(1.5 * STALL_S)
                taken = 0
                with self.assertRaises(OSError):
                    while connection.answer().status == 200:
                        taken += 1
                self.assertLess(taken, PICTURES)

    @staticmethod
    def frames_in(events, seconds):
        """How many frames the camera has sent in so many reports of a second."""
        start = events.wait("figures", after=events.count())
        last = start
        for _ in range(seconds):
            last = events.wait("figures", lambda data, last=last: data["frames"] > last["frames"], after=events.count())
        return last["frames"] - start["frames"]

    def test_pages_that_close_in_mid_stream_leave_nothing(self):
        with kelcam() as view:
            for i in range(40):
                events = Connection(view.port)
                events.request("GET", f"/api/events?page=testpage{i}")
                picture = Connection(view.port)
                picture.request("GET", f"/api/cameras/0/picture?page=testpage{i}&after=0&width={WIDTH}")
                events.close()
                picture.close()
            with view.events() as events:
                self.assertEqual(view.picture(width=64).status, 200)
                events.wait("frame")
