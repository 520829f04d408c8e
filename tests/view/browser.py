"""browser.py: headless Chromium, and the page of kelcam view in it as a person has it: looks, clicks, keys."""

import base64
import contextlib
import json
import pathlib
import re
import shutil
import tempfile
import time
import urllib.request

import trio
import trio_websocket
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

DEADLINE_S = 20
POLL_S = 0.02
DESK, PHONE = (1280, 720), (390, 844)
FLAGS = (
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync", "--no-proxy-server", "--hide-scrollbars",
)  # fmt: skip

# Notes when a section shows another frame and when its problem appears and goes, in the page's own time.
WATCH = """
window.seen = [];
new MutationObserver((records) => {
  for (const {target, attributeName} of records) {
    if (attributeName === "data-frame") seen.push({what: "frame", at: performance.now(), frame: Number(target.dataset.frame)});
    if (attributeName === "hidden" && target.dataset.part === "problem") {
      seen.push({what: target.hidden ? "no problem" : "problem", at: performance.now()});
    }
  }
}).observe(document, {subtree: true, attributes: true, attributeFilter: ["data-frame", "hidden"]});
"""


def programs():
    """The browser and its driver; None for one that is missing."""
    return shutil.which("chromium"), shutil.which("chromedriver")


class Browser:
    """One Chromium. It shows one page at a time, but for those of `more_pages`."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.downloads = pathlib.Path(self.folder.name) / "downloads"
        chromium, driver = programs()
        options = webdriver.ChromeOptions()
        options.binary_location = chromium
        for flag in (*FLAGS, f"--user-data-dir={self.folder.name}/profile"):
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(service=Service(driver), options=options)
        self.driver.set_script_timeout(DEADLINE_S)
        self.driver.set_page_load_timeout(DEADLINE_S)
        self.command("Browser.setDownloadBehavior", behavior="allow", downloadPath=str(self.downloads))
        self.command("Page.addScriptToEvaluateOnNewDocument", source=WATCH)
        self.look_as()

    def quit(self):
        self.driver.quit()
        self.folder.cleanup()

    def command(self, name, **parameters):
        """A command of the DevTools protocol."""
        return self.driver.execute_cdp_cmd(name, parameters)

    def look_as(self, size=DESK, scheme="light"):
        self.command("Emulation.setDeviceMetricsOverride", width=size[0], height=size[1], deviceScaleFactor=1,
                     mobile=size == PHONE)  # fmt: skip
        self.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def open(self, url):
        self.driver.get("about:blank")
        self.complaints()
        self.driver.get(url)
        return Page(self)

    def script(self, code, *arguments):
        return self.driver.execute_script(code, *arguments)

    def wait(self, code, *arguments, deadline_s=DEADLINE_S):
        """The value of this expression as soon as it is true."""
        end = time.monotonic() + deadline_s
        while not (value := self.script(f"return {code}", *arguments)):
            if time.monotonic() > end:
                raise AssertionError(f"never true: {code} {arguments}")
            time.sleep(POLL_S)
        return value

    def complaints(self):
        """What the console has got since it was last asked."""
        return [entry for entry in self.driver.get_log("browser") if entry["level"] in ("WARNING", "SEVERE")]

    def actions(self):
        return ActionChains(self.driver, duration=0)

    def press(self, *keys):
        """These keys, one after the other; a tuple is a key with those that are held down before."""
        actions = self.actions()
        for key in keys:
            *held, last = key if isinstance(key, tuple) else (key,)
            for each in held:
                actions.key_down(each)
            actions.send_keys(last)
            for each in reversed(held):
                actions.key_up(each)
        actions.perform()

    def screenshot(self, path):
        data = self.command("Page.captureScreenshot", format="png")["data"]
        pathlib.Path(path).write_bytes(base64.b64decode(data))

    @contextlib.contextmanager
    def more_pages(self, url, count):
        """So many windows with this page. Each is of a profile of its own, as if it were on another machine."""
        first = self.driver.current_window_handle
        known = set(self.driver.window_handles)
        contexts = []
        try:
            for _ in range(count):
                contexts.append(self.browser_command("Target.createBrowserContext")["browserContextId"])
                self.browser_command("Target.createTarget", url=url, browserContextId=contexts[-1], newWindow=True)
            yield [handle for handle in self.driver.window_handles if handle not in known]
        finally:
            self.driver.switch_to.window(first)
            for context in contexts:
                self.browser_command("Target.disposeBrowserContext", browserContextId=context)

    def browser_command(self, name, **parameters):
        """A command of the DevTools protocol that is the browser's and not a page's."""
        address = self.driver.capabilities["goog:chromeOptions"]["debuggerAddress"]
        url = json.loads(fetched(f"http://{address}/json/version"))["webSocketDebuggerUrl"]

        async def ask():
            async with trio_websocket.open_websocket_url(url) as socket:
                await socket.send_message(json.dumps({"id": 1, "method": name, "params": parameters}))
                while (answer := json.loads(await socket.get_message())).get("id") != 1:
                    pass
                return answer

        answer = trio.run(ask)
        if "result" not in answer:
            raise AssertionError(f"{name}: {answer['error']}")
        return answer["result"]


class Page:
    """The page that the browser shows."""

    def __init__(self, browser):
        self.browser = browser
        self.script, self.wait, self.press = browser.script, browser.wait, browser.press

    def panel(self, index=0):
        self.wait("document.querySelector(`section.camera[data-index='${arguments[0]}']`)", index)
        return Panel(self, index)

    def element(self, selector):
        return self.browser.driver.find_element("css selector", selector)

    def messages(self):
        return self.script("return [...document.querySelectorAll('#messages li')].filter(e => !e.hidden).map(e => e.innerText)")

    def name(self):
        """The name under which the server knows the page."""
        urls = self.script("return performance.getEntriesByType('resource').map(e => e.name)")
        return next(match[1] for url in reversed(urls) if (match := re.search(r"[?&]page=(\w+)", url)))

    def seen(self, what):
        return [entry for entry in self.script("return window.seen") if entry["what"] == what]


class Panel:
    """One camera of the page."""

    def __init__(self, page, index):
        self.page, self.index = page, index
        self.browser = page.browser
        self.root = f"section.camera[data-index='{index}']"

    def selector(self, part):
        return f"{self.root} [data-part='{part}']"

    def part(self, part):
        return self.page.element(self.selector(part))

    def control(self, name, kind="number"):
        return self.page.element(f"{self.root} [data-control='{name}'] input[type={kind}]")

    def text(self, part):
        return self.browser.script("return document.querySelector(arguments[0]).textContent", self.selector(part))

    def click(self, part):
        self.part(part).click()

    def is_pressed(self, part):
        return self.part(part).get_attribute("aria-pressed") == "true"

    def wait(self, code, *arguments, deadline_s=DEADLINE_S):
        """Waits for an expression about `panel` and `part(name)`."""
        prologue = f"""(() => {{ const panel = document.querySelector("{self.root}");
            const part = (name) => panel.querySelector(`[data-part='${{name}}']`); return {code}; }})()"""
        # An arrow function has the arguments of the script around it.
        return self.browser.wait(prologue, *arguments, deadline_s=deadline_s)

    def wait_for_picture(self):
        return self.wait("Number(panel.dataset.frame || 0)")

    def wait_for_frames(self, count):
        """Until a frame is shown that is so many after the present one."""
        first = self.wait_for_picture()
        return self.wait(f"Number(panel.dataset.frame) >= {first + count} && Number(panel.dataset.frame)")

    @property
    def frame(self):
        return int(self.browser.script("return document.querySelector(arguments[0]).dataset.frame || 0", self.root))

    def hold(self):
        """The frame that stays."""
        self.click("pause")
        self.wait("panel.dataset.paused === 'true'")
        return self.frame

    def place(self, width, height):
        """(left, top, scale) of a frame of this size that is fitted into the canvas."""
        canvas_width, canvas_height = self.browser.script(
            "const c = document.querySelector(arguments[0]); return [c.width, c.height]", self.selector("picture"))  # fmt: skip
        scale = min(canvas_width / width, canvas_height / height)
        return (canvas_width - width * scale) / 2, (canvas_height - height * scale) / 2, scale

    def mean(self, left, top, right, bottom):
        """The mean colour of a part of the canvas, in pixels of its own."""
        return self.browser.script(
            """const canvas = document.querySelector(arguments[0]);
            const [left, top, right, bottom] = [...arguments].slice(1).map(Math.round);
            const [width, height] = [Math.max(1, right - left), Math.max(1, bottom - top)];
            const copy = new OffscreenCanvas(width, height).getContext("2d", {willReadFrequently: true});
            copy.drawImage(canvas, left, top, width, height, 0, 0, width, height);
            const {data} = copy.getImageData(0, 0, width, height);
            const sums = [0, 0, 0];
            data.forEach((value, i) => { if (i % 4 < 3) sums[i % 4] += value; });
            return sums.map((sum) => sum / (data.length / 4));""",
            self.selector("picture"), left, top, right, bottom)  # fmt: skip

    def point(self, x, y):
        """Moves the pointer to a place of the canvas, in pixels of its own (the screen has one for each of the page)."""
        self.browser.actions().move_to_element_with_offset(self.part("picture"), *self.from_middle(x, y)).perform()

    def drag(self, start, end):
        actions = self.browser.actions()
        picture = self.part("picture")
        actions.move_to_element_with_offset(picture, *self.from_middle(*start)).click_and_hold()
        actions.move_to_element_with_offset(picture, *self.from_middle(*end)).release().perform()

    def from_middle(self, x, y):
        size = self.part("picture").size
        return round(x) - size["width"] // 2, round(y) - size["height"] // 2

    @staticmethod
    def type(field, text):
        """In place of what the field has."""
        field.send_keys(Keys.CONTROL + "a" + Keys.NULL, text, Keys.ENTER)

    def set(self, control, value):
        """Types a number that is not there yet and waits for the camera's answer."""
        self.type(self.control(control), str(value))
        selector = f"{self.root} [data-control='{control}'] .answer"
        self.browser.wait("document.querySelector(arguments[0]).textContent", selector)


def fetched(url):
    with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(url, timeout=DEADLINE_S) as answer:
        return answer.read()

