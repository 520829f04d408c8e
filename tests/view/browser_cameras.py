"""browser_cameras.py: cameras that go and come back, several of them, many pages, hostile texts, the driver's messages."""

import os
import signal

from browser import PHONE, Keys, Page
from browser_case import COLOUR, MONO, BrowserCase, OneKelcam, camera, kelcam

REPORTED_MS = 3000
PAGES = 10
MARKUP = '<img src=x onerror="window.hit=1"><b>&amp;'


class LossTest(BrowserCase):
    # What is asked of a camera that is away is refused.
    expected_complaints = ("status of 50[34]",)

    def test_an_unplugged_camera_is_reported_and_comes_back(self):
        view = self.kelcam([camera()], faults=[{"unplugAtFrame": 30, "plugAfter_ms": 2500}])
        # Nothing is exposed until the page is there.
        self.assertEqual(view.post("run", {"run": False}).status, 200)
        panel = self.shown_still(view)
        panel.click("run")
        panel.wait("!part('problem').hidden && part('state').textContent.includes('lost')")
        self.assertIn("camera lost", panel.text("problem"))
        last = panel.page.seen("frame")[-1]
        self.assertLess(panel.page.seen("problem")[0]["at"] - last["at"], REPORTED_MS)
        panel.wait("part('problem').hidden && part('state').textContent.includes('running')")
        panel.wait_for_frames(5)

    def shown_still(self, view):
        panel = self.open(view).panel()
        panel.wait("!part('shot').disabled && Number(panel.dataset.frame)")
        return panel

    def test_a_camera_that_does_not_open_says_why(self):
        view = self.enterContext(kelcam([camera()], faults=[{"call": "VmbCameraOpen", "error": -6, "count": 0}]))
        panel = self.open(view).panel()
        panel.wait("!part('problem').hidden && part('problem').textContent.includes('cannot be opened')")
        self.assertEqual(self.browser.script("return document.activeElement.tagName"), "BODY")


class RestartTest(BrowserCase):
    expected_complaints = ("ERR_CONNECTION_REFUSED", "ERR_INCOMPLETE_CHUNKED_ENCODING", "ERR_CONNECTION_RESET", "ERR_EMPTY_RESPONSE",
                           "status of 409")  # fmt: skip

    def test_the_page_goes_on_when_the_program_has_started_again(self):
        view = self.kelcam([camera()])
        panel = self.shown(view)
        self.assertFalse(panel.page.element("#connection").is_displayed())
        view.end(signal.SIGTERM)
        panel.page.wait("!document.getElementById('connection').hidden")
        self.kelcam([camera()], port=view.port)
        panel.page.wait("document.getElementById('connection').hidden")
        shown = len(panel.page.seen("frame"))
        panel.page.wait(f"window.seen.filter((e) => e.what === 'frame').length >= {shown + 5}")


class SeveralTest(OneKelcam):
    cameras, first = [camera(), camera(COLOUR)], "--camera 1 --camera 2"

    def test_two_cameras_are_side_by_side(self):
        other = self.page.panel(1)
        other.wait_for_frames(3)
        self.panel.wait_for_frames(3)
        left, right = (panel.part("picture").rect for panel in (self.panel, other))
        self.assertLessEqual(left["x"] + left["width"], right["x"])
        self.assertAlmostEqual(left["y"], right["y"], delta=2)
        grey, colour = self.panel.mean(0, 0, 999, 999), other.mean(0, 0, 999, 999)
        self.assertEqual((grey[0], grey[1]), (grey[1], grey[2]))
        self.assertNotEqual((colour[0], colour[1]), (colour[1], colour[2]))

    def test_the_chosen_camera_is_large(self):
        other = self.page.panel(1)
        for choose in (lambda: other.click("title"), lambda: self.page.press((Keys.ALT, "2"))):
            choose()
            other.wait("panel.classList.contains('chosen')")
            area = [panel.part("picture").size["width"] * panel.part("picture").size["height"] for panel in (self.panel, other)]
            self.assertGreater(area[1], 2 * area[0])
            other.wait_for_frames(3)
            self.panel.wait_for_frames(3)
            self.page.press((Keys.ALT, "1"))
            self.panel.wait("panel.classList.contains('chosen')")

    def test_settings_are_those_of_their_own_camera(self):
        self.addCleanup(self.view.post, "set", {"control": "gain", "value": "0dB"}, camera=1)
        other = self.page.panel(1)
        other.set("gain", 2)
        gains = [next(c for c in self.view.state(index)["controls"] if c["name"] == "gain")["value"] for index in (0, 1)]
        self.assertEqual(gains, [0, 2])


class PagesTest(BrowserCase):
    def test_ten_pages_at_once_and_calm_when_they_are_closed(self):
        view = self.kelcam([camera()])
        self.shown(view)
        before = len(os.listdir(f"/proc/{view.process.pid}/fd"))
        with self.browser.more_pages(f"http://127.0.0.1:{view.port}/", PAGES) as handles:
            for handle in handles:
                self.browser.driver.switch_to.window(handle)
                Page(self.browser).panel().wait_for_frames(3)
        self.browser.driver.get("about:blank")
        # The stream of events and the rest of this page are gone, too.
        view.wait_for_state(lambda _: len(os.listdir(f"/proc/{view.process.pid}/fd")) <= before)
        frame = view.get("/api/cameras/0/picture?after=0&width=64").frame
        self.assertGreater(view.get(f"/api/cameras/0/picture?after={frame}&width=64").frame, frame)


class HostileTest(BrowserCase):
    def test_texts_of_cameras_stay_texts(self):
        texts = {name: MARKUP for name in ("name", "model", "serial", "vendor")}
        view = self.kelcam([camera(MONO, **texts)], faults=[{"unplugAtFrame": 30}])
        view.post("run", {"run": False})
        panel = self.open(view).panel()
        panel.wait("!part('shot').disabled")
        panel.click("run")
        panel.wait("!part('problem').hidden")
        identifier = view.state()["identifier"]
        self.assertIn("<img", identifier)
        self.assertIn(identifier, panel.text("title"))
        self.assertTrue(any(identifier in text for text in panel.page.messages()))
        found = self.browser.script("return [window.hit, document.querySelectorAll('img, iframe, [onerror], b').length]")
        self.assertEqual(found, [None, 0])

    def test_long_texts_fit(self):
        view = self.kelcam([camera(serial="9" * 200, model="Manta " * 8)])
        panel = self.shown(view)
        for size in ((1280, 720), PHONE):
            self.browser.look_as(size)
            panel.wait_for_frames(2)
            self.assertTrue(self.browser.script("return document.scrollingElement.scrollWidth <= innerWidth"), size)


class MessageTest(OneKelcam):
    cameras = [camera()]

    def test_messages_are_searched(self):
        search = self.page.element("#search")
        self.page.wait("document.querySelectorAll('#messages li').length > 5")
        search.send_keys("onframeext")
        self.page.wait("document.querySelector('#messages li[hidden]') && document.querySelector('#messages li:not([hidden])')")
        self.panel.wait_for_frames(5)
        self.assertEqual([text for text in self.page.messages() if "OnFrameExt" not in text], [])
        search.send_keys(" is nowhere")
        self.page.wait("!document.querySelector('#messages li:not([hidden])')")
        self.panel.type(search, Keys.DELETE)
        self.page.wait("!document.querySelector('#messages li[hidden]')")

    def test_the_list_follows_only_as_long_as_it_should(self):
        bottom = "document.getElementById('messages').scrollHeight - messages.scrollTop - messages.clientHeight < 4"
        self.page.wait("messages.scrollHeight > 2 * messages.clientHeight && " + bottom)
        self.page.element("#follow").click()
        self.browser.script("messages.scrollTop = 10")
        self.panel.wait_for_frames(5)
        self.assertEqual(self.browser.script("return messages.scrollTop"), 10)
        self.page.element("#follow").click()
        self.page.wait(bottom)
