"""browser_screenshots.py: pictures of the page in its states, for people to look at and for the documents."""

from browser import DESK, PHONE, Browser
from browser_case import COLOUR, MONO, kelcam

FRAMES = 15


def running(browser, view, count=1):
    view.wait_for_state(lambda state: state["state"] == "running")
    page = browser.open(view.url)
    panels = [page.panel(index) for index in range(count)]
    for panel in panels:
        panel.wait("Number(panel.dataset.frame) && part('sharpness').textContent > '0'")
        panel.wait_for_frames(FRAMES)
    return panels


def write_one(browser, folder):
    """A camera as it is, with all of its pixels."""
    with kelcam([{"like": COLOUR}]) as view:
        (panel,) = running(browser, view)
        browser.screenshot(folder / "view.png")
        browser.look_as(DESK, "dark")
        panel.wait_for_frames(3)
        browser.screenshot(folder / "view-dark.png")
        browser.look_as(PHONE)
        panel.wait_for_frames(3)
        browser.screenshot(folder / "view-phone.png")
        browser.look_as()
        panel.wait_for_frames(3)
        panel.hold()
        panel.click("actual")
        for _ in range(7):
            panel.click("zoom-in")
        # On the star in the middle.
        panel.wait("part('zoom').textContent === '1600 %'")
        panel.point(470, 230)
        panel.point(476, 236)
        panel.wait("/: \\d/.test(part('position').textContent)")
        browser.screenshot(folder / "view-pixels.png")


def write_two(browser, folder):
    # So large that both fit on their link.
    half = {"sensor": {"width": 1232, "height": 1028}, "lineTime_us": 60}
    with kelcam([{"like": MONO, **half}, {"like": COLOUR, **half}], first="--camera 1 --camera 2") as view:
        running(browser, view, 2)
        browser.screenshot(folder / "view-two.png")


def write_lost(browser, folder):
    with kelcam([{"like": COLOUR}], faults=[{"unplugAtFrame": 60}]) as view:
        panel = browser.open(view.url).panel()
        panel.wait("Number(panel.dataset.frame) && !part('problem').hidden && part('state').textContent.includes('lost')")
        browser.screenshot(folder / "view-lost.png")


def write(folder):
    """The exit code of the program."""
    folder.mkdir(parents=True, exist_ok=True)
    browser = Browser()
    try:
        for one in (write_one, write_two, write_lost):
            one(browser, folder)
    finally:
        browser.quit()
    return 0
