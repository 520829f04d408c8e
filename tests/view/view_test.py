#!/usr/bin/env python3
"""view_test: kelcam view, asked as browsers ask and as they should not.

view_test.py --kelcam FILE [--emulator PROGRAM]... [TEST...]

Every test starts the program with simulated cameras of its own. The emulator runs programs of another system.
"""

import argparse
import json
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

from viewer import DEADLINE_S, JSON_HEADERS, PAGE, Connection, Events, Kelcam, Png, jpeg_size

options = argparse.Namespace()
MONO, COLOUR = "DEV_000F31034C65", "DEV_000F31034C66"
WIDTH, HEIGHT = 616, 514
HEADER_LIMIT, BODY_LIMIT = 8 << 10, 64 << 10
MOST_PAGES, MOST_CONNECTIONS = 32, 128
TIMEOUT_CODE = "12106"


def camera(like=MONO, **members):
    return {"like": like, "sensor": {"width": WIDTH, "height": HEIGHT}, "noise": False, **members}


SMALL = {"cameras": [camera()]}
COLOURS = {"cameras": [camera(COLOUR)]}


def kelcam(cameras=None, *arguments, first="--camera 1"):
    return Kelcam(options, cameras or SMALL, *arguments, first=first)


class ViewTest(unittest.TestCase):
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


class RouteTest(ViewTest):
    def test_the_page_comes_with_its_files(self):
        index = self.view.get("/")
        self.assertEqual((index.status, index.fields["content-type"]), (200, "text/html; charset=utf-8"))
        self.assertIn("default-src 'self'; img-src 'self' blob:", index.fields["content-security-policy"])
        self.assertEqual(index.fields["cache-control"], "no-cache")
        names = [part.split('"')[0] for part in index.body.decode().split('"/page/')[1:]]
        self.assertTrue(names)
        for name in names:
            file = self.view.get("/page/" + name)
            self.assertEqual(file.status, 200, name)
            self.assertRegex(file.fields["content-type"], "^(text/(css|javascript)|image/)")
            self.assertEqual(file.fields["x-content-type-options"], "nosniff")
            self.assertEqual(file.fields["referrer-policy"], "no-referrer")

    def test_a_camera_reports_its_state_and_controls(self):
        state = self.view.state()
        self.assertEqual((state["index"], state["state"], state["problem"]), (0, "running", None))
        self.assertEqual((state["width"], state["height"], state["can_color"]), (WIDTH, HEIGHT, False))
        self.assertEqual((state["trigger"], state["triggers"]), ("free", ["software", "line", "free"]))
        exposure, gain = state["controls"]
        self.assertEqual((exposure["name"], exposure["unit"], exposure["scale"]), ("exposure", "ms", "log"))
        self.assertEqual((gain["name"], gain["unit"], gain["minimum"], gain["step"]), ("gain", "dB", 0, 1))
        self.assertEqual(gain["value_text"], "0 dB = 1.0x")
        rate = state["rate"]
        self.assertLess(rate["minimum"], rate["value_bytes_per_s"])
        self.assertLess(rate["value_bytes_per_s"], rate["maximum"])

    def test_a_narrow_picture_is_a_jpeg_of_that_width(self):
        answer = self.view.picture(width=200)
        self.assertEqual((answer.status, answer.fields["content-type"]), (200, "image/jpeg"))
        self.assertEqual(jpeg_size(answer.body), (200, round(HEIGHT * 200 / WIDTH)))
        self.assertEqual((answer.fields["x-kelcam-width"], answer.fields["x-kelcam-height"]), (str(WIDTH), str(HEIGHT)))
        self.assertEqual(answer.fields["x-kelcam-region"], f"0,0,{WIDTH},{HEIGHT}")

    def test_a_wide_picture_is_a_png_of_its_own_size(self):
        answer = self.view.picture(width=WIDTH)
        self.assertEqual(answer.fields["content-type"], "image/png")
        self.assertEqual((Png(answer.body).width, Png(answer.body).height), (WIDTH, HEIGHT))

    def test_a_picture_after_another_is_newer(self):
        first = self.view.picture(width=64).frame
        self.assertGreater(self.view.picture(after=first, width=64).frame, first)

    def test_region_pixel_and_save_are_of_the_frame_that_is_shown(self):
        whole = self.view.picture()
        picture = Png(whole.body)
        region = self.view.get(f"/api/cameras/0/region?page={PAGE}&frame={whole.frame}&x=30&y=40&w=20&h=10&width=20")
        self.assertEqual(region.frame, whole.frame)
        self.assertEqual(Png(region.body).rows, [row[30:50] for row in picture.rows[40:50]])
        pixel = self.view.get(f"/api/cameras/0/pixel?page={PAGE}&frame={whole.frame}&x=33&y=44").json()
        self.assertEqual(pixel, {"x": 33, "y": 44, "values": picture.pixel(33, 44)})
        saved = self.view.get(f"/api/cameras/0/save?page={PAGE}&frame={whole.frame}")
        self.assertEqual(saved.fields["content-type"], "image/png")
        self.assertRegex(saved.fields["content-disposition"], r'^attachment; filename="[-A-Za-z0-9_]+T[0-9.+-]+\.png"$')
        self.assertEqual(Png(saved.body).rows, picture.rows)
        self.assertEqual(saved.body, self.view.get(f"/api/cameras/0/save?page={PAGE}&frame={whole.frame}").body)

    def test_a_saved_picture_has_the_texts_of_snap(self):
        frame = self.view.picture(width=64).frame
        texts = Png(self.view.get(f"/api/cameras/0/save?page={PAGE}&frame={frame}").body).texts
        state = self.view.state()
        taken = self.snapped("--set", f"exposure={state['controls'][0]['value']}ms").texts
        self.assertEqual({**texts, "Creation Time": ""}, {**taken, "Creation Time": ""})

    def test_a_frame_that_was_let_go_is_gone(self):
        frame = self.view.picture(width=64).frame
        before = self.view.picture(after=frame, width=64).frame
        newer = self.view.picture(after=before, width=64).frame
        for what in ("region", "pixel", "save"):
            target = f"/api/cameras/0/{what}?page={PAGE}&frame={frame}&x=0&y=0&w=1&h=1&width=1"
            self.assert_refused(self.view.get(target), 410)
        for held in (before, newer):
            self.assertEqual(self.view.get(f"/api/cameras/0/pixel?page={PAGE}&frame={held}&x=0&y=0").status, 200)

    def test_without_a_page_there_are_pictures(self):
        self.assertEqual(self.view.get("/api/cameras/0/picture?after=0&width=50").status, 200)

    def test_a_page_has_one_request_for_a_picture_at_a_time(self):
        self.view.post("run", {"run": False})
        self.addCleanup(self.view.post, "run", {"run": True})
        self.view.wait_for_state(lambda state: state["state"] == "stopped")
        frame = self.view.picture(width=64).frame
        with self.view.connect() as first, self.view.connect() as second:
            target = f"/api/cameras/0/picture?page={PAGE}&after={frame}&width=64"
            first.request("GET", target)
            time.sleep(0.2)  # so that it is the first; if it is not, the second gets the answer below
            second.request("GET", target)
            start = time.monotonic()
            self.assertEqual(first.answer().status, 204)
            self.assertLess(time.monotonic() - start, 4)
            self.assertEqual(second.answer().status, 204)
            self.assertLess(time.monotonic() - start, 10)

    def test_frames_and_figures_are_reported(self):
        frame = self.events.wait("frame", after=self.events.count())
        self.assertEqual((frame["width"], frame["height"], frame["channels"]), (WIDTH, HEIGHT, 1))
        self.assertEqual(sum(frame["histogram"][0]), WIDTH * HEIGHT)
        self.assertGreater(frame["sharpness"], 0)
        self.assertGreater(frame["sent_per_s"], 1)
        figures = self.events.wait("figures", lambda data: data["temperatures"])
        self.assertEqual([one["name"] for one in figures["temperatures"]], ["sensor", "board"])
        self.assertEqual(figures["failures"], {})

    def test_the_histogram_is_that_of_the_picture(self):
        self.view.post("run", {"run": False})
        self.addCleanup(self.view.post, "run", {"run": True})
        self.view.wait_for_state(lambda state: state["state"] == "stopped")
        picture = self.view.picture()
        report = self.events.wait("frame", lambda data: data["frame"] == picture.frame)
        counts = [0] * 256
        for row in Png(picture.body).rows:
            for value in row:
                counts[value] += 1
        self.assertEqual(report["histogram"], [counts])
        self.assertEqual(report["clipped"], [[counts[0] / (WIDTH * HEIGHT), counts[255] / (WIDTH * HEIGHT)]])
        self.assertAlmostEqual(report["mean"][0], Png(picture.body).mean())

    def test_messages_of_the_driver_arrive_with_the_old_ones(self):
        self.assertTrue(self.events.wait("message", lambda data: data.get("old"))["text"])
        new = self.events.wait("message", lambda data: "Snap" in data["text"] and data["camera"] == 0)
        self.assertIn("\n", new["text"])

    def test_sharpness_is_measured_where_it_is_asked_for(self):
        area = [100, 100, 50, 40]
        self.assertEqual(self.view.post("sharpness", {"area": area}).status, 200)
        self.addCleanup(self.view.post, "sharpness", {"area": None})
        self.events.wait("frame", lambda data: data["sharpness_area"] == area)

    def snapped(self, *arguments):
        """The same picture by kelcam snap: the cameras see the same, without noise."""
        subprocess.run(
            [*options.emulator, options.kelcam.resolve(), "snap", "--camera", "1", "--area", "[l]", "--timeout", "60000",
             "--retry", "3", "-o", "snap.png", *arguments],
            cwd=self.view.folder.name, env={**os.environ, "VIMBA_SIM_CONFIG": "cameras.json"}, check=True,
            timeout=DEADLINE_S, capture_output=True)  # fmt: skip
        return Png((pathlib.Path(self.view.folder.name) / "snap.png").read_bytes())

    def test_exposure_changes_the_mean_as_the_sensor_does(self):
        means = []
        for exposure in ("2ms", "4ms"):
            answer = self.view.post("set", {"control": "exposure", "value": exposure})
            self.assertEqual((answer.status, answer.json()["value_text"]), (200, exposure.replace("ms", ".0 ms")))
            frame = self.view.picture(width=64).frame
            while (picture := self.view.picture(after=frame)).frame < frame + 3:
                pass
            means.append(Png(picture.body).mean())
            # The chart has a counter of frames, which is not the same.
            self.assertAlmostEqual(means[-1], self.snapped("--set", "exposure=" + exposure).mean(), delta=0.5)
        self.assertGreater(means[1], 1.2 * means[0])
        self.assertEqual(self.view.state()["controls"][0]["value"], 4)

    def test_a_run_is_stopped_for_single_shots(self):
        self.assertEqual(self.view.post("shot", {}).status, 409)
        self.assertEqual(self.view.post("run", {"run": False}).json(), {"run": False})
        self.addCleanup(self.view.post, "run", {"run": True})
        self.view.wait_for_state(lambda state: state["state"] == "stopped")
        before = self.view.picture(width=64).frame
        shot = self.view.post("shot", {})
        self.assertEqual((shot.status, shot.json()), (200, {"frame": before + 1}))
        self.assertEqual(self.view.picture(after=before, width=64).frame, before + 1)

    def test_area_trigger_and_rate_are_set(self):
        self.assertEqual(self.view.post("area", {"area": "[p]"}).status, 200)
        self.assertEqual(self.view.post("trigger", {"trigger": "software"}).status, 200)
        state = self.view.wait_for_state(lambda state: state["trigger"] == "software")
        self.assertEqual(state["area"], "[p]")
        self.assertEqual(self.view.post("rate", {"bytes_per_s": 60_000_000}).status, 200)
        # The driver adapts it when a run ends.
        self.view.wait_for_state(lambda state: state["rate"]["value_bytes_per_s"] == 60_000_000)
        frame = self.view.picture(width=64).frame
        self.assertGreater(self.view.picture(after=frame, width=64).frame, frame)
        self.assertEqual(self.view.post("trigger", {"trigger": "free"}).status, 200)


class ColourTest(ViewTest):
    cameras = COLOURS

    def test_colours_are_switched_off_and_on(self):
        self.assertEqual(Png(self.view.picture().body).channels, 3)
        self.assertIn("wbred", [control["name"] for control in self.view.state()["controls"]])
        for on, channels in ((False, 1), (True, 3)):
            self.assertEqual(self.view.post("color", {"color": on}).json(), {"color": on})
            self.view.wait_for_state(lambda state, on=on: state["color"] == on)
            frame = self.view.picture(width=64).frame
            # One may have been on its way.
            while (picture := self.view.picture(after=frame)).frame < frame + 3:
                pass
            self.assertEqual(Png(picture.body).channels, channels)
            self.events.wait("frame", lambda data, newer=frame: data["frame"] > newer and data["channels"] == channels)


class HostileTest(ViewTest):
    def test_wrong_methods_are_refused(self):
        targets = ["/", "/api/cameras", f"/api/events?page={PAGE}", "/api/cameras/0/picture?after=0&width=9"]
        for target in targets:
            for method in ("POST", "PUT", "DELETE", "HEAD", "OPTIONS", "PATCH", "QUATSCH"):
                with self.subTest(target=target, method=method), self.view.connect() as connection:
                    connection.request(method, target, JSON_HEADERS)
                    status, fields = connection.head()
                    self.assertEqual((status, fields.get("allow")), (405, "GET"))
        answer = self.view.get("/api/cameras/0/set")
        self.assertEqual((answer.status, answer.fields["allow"]), (405, "POST"))

    def test_paths_lead_nowhere_but_to_the_table(self):
        for target in ("/page/../kelcam", "/page/..%2f..%2fetc/passwd", "/page//etc/passwd", "/page/", "/page/index.html/",
                       "//", "/api", "/api/", "/api/cameras/", "/api/cameras/0", "/api/cameras/0/", "/api/cameras/0/nothing",
                       "/api/cameras/x/picture", "/api/cameras/-1/picture", "/api/cameras/0/picture/", "/API/cameras",
                       "/api/cameras/99999999999999999999999/picture", "/%61pi/cameras", "/page/index.html%00.js"):  # fmt: skip
            with self.subTest(target=target):
                self.assert_refused(self.view.get(target), 404)
        self.assert_refused(self.view.picture(camera=1), 404)

    def test_numbers_out_of_range_are_refused(self):
        for rest in ("width=0", "width=-1", "width=1e3", "width=", "width=99999999999999999999", "width=5&x=1",
                     "width=5&x=0&y=0&w=0&h=5", f"width=5&x=0&y=0&w={WIDTH + 1}&h=5", "width=5&x=2147483647&y=0&w=1&h=1",
                     "width=5&x=-1&y=0&w=1&h=1", "width=5&x=4294967295&y=0&w=2&h=1", "", "width=5&after=x"):  # fmt: skip
            with self.subTest(rest=rest):
                after = "" if "after" in rest else "after=0&"
                self.assert_refused(self.view.get(f"/api/cameras/0/picture?page={PAGE}&{after}{rest}"), 400)
        frame = self.view.picture(width=64).frame
        target = f"/api/cameras/0/pixel?page={PAGE}&frame={frame}&x={WIDTH}&y=0"
        self.assert_refused(self.view.get(target), 400)
        self.assert_refused(self.view.get(f"/api/cameras/0/pixel?page={PAGE}&frame={2**64 - 1}&x=0&y=0"), 410)

    def test_names_of_pages_are_words(self):
        for page in ("", "short", "a" * 33, "with-minus", "%41%42%43%44%45%46%47%48", "<script>"):
            with self.subTest(page=page):
                self.assert_refused(self.view.get(f"/api/events?page={page}"), 400)
        self.assert_refused(self.view.picture(page="nobodyshere"), 409)

    def test_bodies_must_be_what_they_should_be(self):
        for action, body in (
            ("set", b""), ("set", b"{"), ("set", b"[]"), ("set", b"null"), ("set", b"\xff\xfe"), ("set", b"[" * 60_000),
            ("set", {}), ("set", {"control": "gain"}), ("set", {"control": 1, "value": "2"}),
            ("set", {"control": "nothing", "value": "2"}), ("set", {"control": "gain", "value": "much"}),
            ("set", {"control": "gain", "value": "3ms"}), ("set", {"control": "exposure", "value": "nan"}),
            ("set", {"control": "wbred", "value": "100"}), ("color", {"color": 1}), ("color", {"color": True}),
            ("area", {"area": None}), ("trigger", {"trigger": "wish"}), ("rate", {"bytes_per_s": -1}),
            ("rate", {"bytes_per_s": 2**31}), ("rate", {"bytes_per_s": 1.5}), ("rate", {"bytes_per_s": 2**64}),
            ("run", {}), ("run", {"run": "yes"}), ("sharpness", {"area": [1, 2, 3]}), ("sharpness", {"area": [0, 0, 1, -1]}),
        ):  # fmt: skip
            with self.subTest(action=action, body=body if len(body) < 99 else "long"):
                self.assert_refused(self.view.post(action, body), 400)

    def test_requests_of_other_pages_are_refused(self):
        for status, headers in (
            (403, {"Host": "evil.example"}), (403, {"Host": f"evil.example:{self.view.port}"}), (403, {"Host": None}),
            (403, {"Host": "127.0.0.1:1"}), (403, {"Origin": "http://evil.example"}), (403, {"Origin": "null"}),
            (403, {"Origin": f"https://127.0.0.1:{self.view.port}"}), (403, {"Sec-Fetch-Site": "cross-site"}),
            (403, {"Sec-Fetch-Site": "same-site"}),
        ):  # fmt: skip
            with self.subTest(headers=headers):
                self.assert_refused(self.view.ask("GET", "/api/cameras", headers), status)
        for status, headers in (
            (403, {"X-Kelcam": None}), (403, {"X-Kelcam": "0"}), (415, {"Content-Type": "text/plain"}),
            (415, {"Content-Type": None}), (403, {"Origin": "http://evil.example"}),
        ):  # fmt: skip
            with self.subTest(headers=headers):
                self.assert_refused(self.view.post("run", {"run": False}, headers=headers), status)
        self.assertEqual(self.view.state()["state"], "running")
        own = f"http://localhost:{self.view.port}"
        answer = self.view.post("run", {"run": True}, headers={"Host": own[7:], "Origin": own, "Sec-Fetch-Site": "same-origin"})
        self.assertEqual(answer.status, 200)

    def test_what_is_no_request_ends_the_connection(self):
        for data in (b"\r\n\r\n", b"GET\r\n\r\n", b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" * 99, b"GET / HTTP/9.9\r\n\r\n",
                     b"GET / HTTP/1.1\r\nContent-Length: -5\r\n\r\n", b"GET / HTTP/1.1\r\nno colon\r\n\r\n"):  # fmt: skip
            with self.subTest(data=data), self.view.connect() as connection:
                connection.send(data)
                self.assertTrue(connection.is_closed_within(DEADLINE_S))

    def test_large_headers_and_bodies_are_refused(self):
        for headers in ({"X-Long": "a" * HEADER_LIMIT}, {f"X-{i}": "b" * 90 for i in range(100)}):
            with self.view.connect() as connection:
                self.assert_refused(connection.ask("GET", "/", headers), 431)
                self.assertTrue(connection.is_closed_within(DEADLINE_S))
        self.assert_refused(self.view.get("/" + "a" * 2 * HEADER_LIMIT), 431)
        with self.view.connect() as connection:
            length = str(BODY_LIMIT + 1)
            connection.send(f"POST /api/cameras/0/set HTTP/1.1\r\nHost: x\r\nContent-Length: {length}\r\n\r\n".encode())
            self.assert_refused(connection.answer(), 413)
        self.assert_refused(self.view.post("set", b" " * BODY_LIMIT), 400)

    def test_a_slow_request_is_given_up(self):
        with self.view.connect() as header, self.view.connect() as body:
            header.send(b"GET / HTTP/1.1\r\nHost: ")
            body.send(b"POST /api/cameras/0/set HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n\r\n{")
            start = time.monotonic()
            while time.monotonic() < start + 5:
                header.send(b"a")
                body.send(b" ")
                time.sleep(0.5)
            self.assertTrue(header.is_closed_within(10))
            self.assertTrue(body.is_closed_within(10))

    def test_there_are_no_more_connections_than_there_may_be(self):
        connections = [self.view.connect() for _ in range(MOST_CONNECTIONS + 10)]
        closed = sum(connection.is_closed_within(0.05) for connection in connections)
        for connection in connections:
            connection.close()
        self.assertGreaterEqual(closed, 10)
        self.assertLess(closed, MOST_CONNECTIONS)

    def test_several_requests_follow_each_other_on_a_connection(self):
        with self.view.connect() as connection:
            head = f"GET /api/cameras HTTP/1.1\r\nHost: localhost:{self.view.port}\r\n\r\n".encode()
            connection.send(head * 3)
            for _ in range(3):
                self.assertEqual(connection.answer().status, 200)
            self.assertEqual(connection.ask("GET", "/").status, 200)


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


class LossTest(unittest.TestCase):
    def test_an_unplugged_camera_is_reported_and_comes_back(self):
        # The second opening begins with the frames of the first.
        faults = [{"unplugAtFrame": 20, "plugAfter_ms": 2500}]
        with kelcam({**SMALL, "faults": faults}) as view, view.events() as events:
            running = events.wait("cameras", lambda data: data[0]["state"] == "running")
            view.post("set", {"control": "gain", "value": "3dB"})
            lost = events.wait("cameras", lambda data: data[0]["state"] == "lost")[0]
            lost_at = time.monotonic()
            self.assertIn("camera lost", lost["problem"]["sentence"])
            self.assertEqual(view.post("run", {"run": True}).status, 503)
            frame = view.picture(width=64).frame
            after = events.count()
            again = events.wait("cameras", lambda data: data[0]["state"] == "running", after=after)[0]
            self.assertLess(time.monotonic() - lost_at, 20)
            self.assertEqual((again["identifier"], again["problem"]), (running[0]["identifier"], None))
            self.assertEqual(again["controls"][1]["value"], 3)
            self.assertGreater(view.picture(after=frame, width=64).frame, frame)

    def test_a_loss_is_reported_within_three_seconds(self):
        with kelcam({**SMALL, "faults": [{"unplugAtFrame": 20}]}) as view, view.events() as events:
            events.wait("cameras", lambda data: data[0]["state"] == "lost")
            frames = [data for name, data in events.seen if name == "figures"][-1]["frames"]
            self.assertLessEqual(frames, 20)
            text = events.wait("message", lambda data: "Reason (DiscoveryCameraEvent): Missing" in data["text"])
            lost = view.state()
            self.assertLess(seconds_between(text["time"], lost["since"]), 3)

    def test_a_camera_that_does_not_open_says_why(self):
        answer = {"call": "VmbCameraOpen", "error": -6, "count": 0}
        with kelcam({**SMALL, "faults": [answer]}) as view:
            problem = view.wait_for_state(lambda state: state["state"] == "lost")["problem"]
            self.assertIn("cannot be opened", problem["sentence"])
            self.assertTrue(problem["why"] and problem["to_do"])
            self.assertEqual(view.get("/api/cameras/0/picture?after=0&width=5").status, 204)


def seconds_between(earlier, later):
    from datetime import datetime

    return (datetime.fromisoformat(later) - datetime.fromisoformat(earlier)).total_seconds()


class ListenTest(unittest.TestCase):
    def test_without_the_token_nobody_is_served(self):
        with kelcam(SMALL, "--listen", "127.0.0.1") as view:
            self.assertRegex(view.query, "^token=[0-9a-f]{32}$")
            wrong = "token=" + "0" * 32
            for target in ("/", "/page/main.js", "/api/cameras", "/api/events?page=testpage1"):
                for token in ("", wrong, view.query[:-1], view.query + "0", view.query.upper()):
                    separator = "&" if "?" in target else "?"
                    self.assertEqual(view.get(target + separator + token).status, 403, (target, token))
            self.assertEqual(view.ask("POST", "/api/cameras/0/run", JSON_HEADERS, b'{"run": false}').status, 403)
            self.assertEqual(view.get("/api/cameras?" + view.query).status, 200)
            index = view.get("/?" + view.query).body.decode()
            for part in index.split('"/page/')[1:]:
                self.assertIn("?" + view.query, part.split('"')[0])
            with Events(view.port, PAGE, "&" + view.query) as events:
                events.wait("cameras")

    def test_tokens_differ(self):
        with kelcam(SMALL, "--listen", "127.0.0.1") as one, kelcam(SMALL, "--listen", "127.0.0.1") as other:
            self.assertNotEqual(one.query, other.query)


class EndTest(unittest.TestCase):
    def test_a_taken_port_is_named(self):
        with kelcam() as view:
            done = subprocess.run(
                [*options.emulator, options.kelcam.resolve(), "view", "--camera", "1", "--port", str(view.port)],
                cwd=view.folder.name, capture_output=True, timeout=DEADLINE_S, check=False, encoding="utf-8")  # fmt: skip
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertIn(f"port {view.port} of 127.0.0.1 is taken", done.stderr)
            self.assertIn("--port 0", done.stderr)

    def test_the_address_is_a_document_for_json(self):
        with kelcam() as view:
            process = subprocess.Popen(
                [*options.emulator, options.kelcam.resolve(), "--json", "view", "--camera", "1", "--port", "0"],
                cwd=view.folder.name, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)  # fmt: skip
            line = json.loads(process.stdout.readline())
            process.kill()
            process.wait(DEADLINE_S)
            process.stdout.close()
            self.assertEqual(line, {"event": "listening", "url": f"http://127.0.0.1:{line['port']}/", "port": line["port"]})


class SignalTest(unittest.TestCase):
    def test_the_end_comes_within_a_second_with_open_connections(self):
        for number, code in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            view = kelcam(SMALL, "--trigger", "line")
            view.wait_for_state(lambda state: state["state"] == "running")
            with view.events() as events, view.connect() as waiting:
                events.wait("figures")
                waiting.request("GET", "/api/cameras/0/picture?after=0&width=9")
                result, took_s = view.end(number)
            self.assertEqual(result, code)
            self.assertLess(took_s, options.end_s)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kelcam", type=pathlib.Path, required=True)
    parser.add_argument("--emulator", action="append", default=[], type=os.path.abspath)
    # Under a sanitizer everything takes longer.
    parser.add_argument("--end-s", type=float, default=1.0)
    _, rest = parser.parse_known_args(namespace=options)
    if options.emulator:
        # A signal ends the emulator, and not the program in it.
        del globals()["SignalTest"]
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)


if __name__ == "__main__":
    main()
