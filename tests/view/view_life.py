"""view_life.py: cameras that are lost and come back; the beginning and the end of the program."""

import datetime
import json
import signal
import subprocess
import time
import unittest

from view_case import SMALL, camera, kelcam, options
from viewer import DEADLINE_S

INCOMPLETE = -1
INTERRUPTED = "12109"


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
    moment = datetime.datetime.fromisoformat
    return (moment(later) - moment(earlier)).total_seconds()


class LinkTest(unittest.TestCase):
    def test_cameras_on_one_link_make_room_for_each_other(self):
        cameras = [camera(id=identifier, serial=identifier) for identifier in ("DEV_1", "DEV_2")]
        lost = {"frame": 20, "camera": "DEV_1", "count": 5, "status": INCOMPLETE}
        both = "--camera DEV_1 --camera DEV_2"
        with kelcam({"cameras": cameras, "faults": [lost]}, "--link", first=both) as view, view.events() as events:
            # The other one's run is interrupted, so that it takes its new rate.
            events.wait("figures", lambda data: data["camera"] == 1 and INTERRUPTED in data["failures"])


class BusyTest(unittest.TestCase):
    def test_a_camera_that_takes_too_long_is_not_waited_for(self):
        slow = {"call": "VmbFeatureFloatSet", "feature": "Gain", "value": 3, "delay_ms": 12_000}
        with kelcam({**SMALL, "faults": [slow]}) as view:
            view.wait_for_state(lambda state: state["state"] == "running")
            answer = view.post("set", {"control": "gain", "value": "3dB"})
            self.assertEqual(answer.status, 504)
            self.assertIn("10 seconds", answer.json()["error"])
            # It has come to it since.
            view.wait_for_state(lambda state: state["controls"][1]["value"] == 3)
            self.assertEqual(view.post("set", {"control": "gain", "value": "4dB"}).status, 200)


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
