"""view_answers.py: what kelcam view answers: the page, pictures, figures, controls."""

import os
import pathlib
import subprocess
import time

from view_case import COLOURS, HEIGHT, WIDTH, ViewCase, options
from viewer import DEADLINE_S, PAGE, Png, jpeg_size


class RouteTest(ViewCase):
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
            # The chart has a counter of frames, which is not the same.
            expected = self.snapped("--set", "exposure=" + exposure).mean()
            frame, deadline = 0, time.monotonic() + DEADLINE_S
            while True:
                # On a busy machine there are many of before.
                picture = self.view.picture(after=frame)
                frame, mean = picture.frame, Png(picture.body).mean()
                if abs(mean - expected) < 0.5 or time.monotonic() > deadline:
                    break
            self.assertAlmostEqual(mean, expected, delta=0.5)
            means.append(mean)
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


class ColourTest(ViewCase):
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
