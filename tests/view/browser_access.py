"""browser_access.py: the page for everyone: by keyboard alone, on small screens, in both colour schemes, read aloud."""

from browser import DESK, PHONE, Keys
from browser_case import COLOUR, BrowserCase, OneKelcam, camera, kelcam

LEAST_CONTRAST = 4.5
SIZES = (DESK, PHONE)
SCHEMES = ("light", "dark")

# What can be used, and is neither hidden nor switched off.
INTERACTIVE = """
window.interactive = () => [...document.querySelectorAll("a[href], button, input, select, textarea, summary, [tabindex='0']")]
  .filter((e) => e.checkVisibility({visibilityProperty: true}) && !e.matches(":disabled") && !e.closest("[inert]"));
window.named = (e) => e.outerHTML.slice(0, 120);
"""
# What Tab has reached: the element that has the focus, and whether it is seen and marked.
WALKED = """
const e = document.activeElement;
window.walked ??= new Set();
const isNew = !walked.has(e);
walked.add(e);
const box = e.getBoundingClientRect();
const style = getComputedStyle(e);
return {isNew, isBody: e === document.body, name: named(e),
  isMarked: style.outlineStyle !== "none" && parseFloat(style.outlineWidth) >= 1,
  isSeen: box.bottom > 0 && box.right > 0 && box.top < innerHeight && box.left < innerWidth};
"""
# The texts with less contrast than they should have; `arguments[0]`: the least.
FAINT = r"""
const parsed = (text) => {
  const [r, g, b, a = 1] = text.match(/[\d.]+/g).map(Number);
  if (!text.startsWith("rgb")) throw new Error(`a colour that the test cannot read: ${text}`);
  return [r, g, b, a];
};
const over = (top, below, share) => [0, 1, 2].map((i) => top[i] * share + below[i] * (1 - share));
const luminance = (colour) => {
  const [r, g, b] = colour.map((v) => (v / 255 <= 0.04045 ? v / 255 / 12.92 : ((v / 255 + 0.055) / 1.055) ** 2.4));
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
};
// Colour and ground of a text in an element: grounds are laid over each other from the outermost on, and an opacity mixes
// both with what lies behind.
const painted = (element, colour) => {
  const chain = [];
  for (let e = element; e; e = e.parentElement) chain.unshift(e);
  let ground = matchMedia("(prefers-color-scheme: dark)").matches ? [18, 18, 18] : [255, 255, 255];
  let [share, behind] = [1, ground];
  for (const e of chain) {
    const style = getComputedStyle(e);
    if (Number(style.opacity) < 1 && share === 1) behind = ground;
    share *= Number(style.opacity);
    const [r, g, b, a] = parsed(style.backgroundColor);
    ground = over([r, g, b], ground, a);
  }
  const [r, g, b, a] = parsed(colour);
  return [over(over([r, g, b], ground, a), behind, share), over(ground, behind, share)];
};
const contrast = (element, colour) => {
  const [a, b] = painted(element, colour).map(luminance);
  return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
};
const faint = [];
let count = 0;
const check = (element, text, colour) => {
  if (!element.checkVisibility({opacityProperty: true, visibilityProperty: true}) || element.closest(":disabled, [inert]")) return;
  const ratio = contrast(element, colour);
  count += 1;
  if (!(ratio >= arguments[0])) faint.push(`${text.trim().slice(0, 40)}: ${ratio.toFixed(2)}, ${element.outerHTML.slice(0, 80)}`);
};
const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (texts.nextNode()) {
  const {data, parentElement: e} = texts.currentNode;
  if (data.trim() && !e.matches("template, script, style, canvas")) check(e, data, getComputedStyle(e).color);
}
for (const e of document.querySelectorAll("input:not([type=checkbox], [type=range]), select")) {
  check(e, e.value, getComputedStyle(e).color);
  if (e.placeholder) check(e, e.placeholder, getComputedStyle(e, "::placeholder").color);
}
return {faint: [...new Set(faint)], count};
"""
# What is wider than the screen.
WIDE = """
const most = document.documentElement.clientWidth;
const wide = [...document.body.querySelectorAll("*")].filter((e) => e.checkVisibility() && e.getBoundingClientRect().right > most + 1);
return {scrolls: document.scrollingElement.scrollWidth > most, wide: wide.map((e) => e.outerHTML.slice(0, 100))};
"""


class KeyboardTest(OneKelcam):
    def walk(self):
        """Presses Tab until everything has been; returns what was never reached."""
        self.browser.script(INTERACTIVE + "window.walked = undefined;")
        steps = []
        while True:
            self.page.press(Keys.TAB)
            step = self.browser.script(WALKED)
            if not step["isNew"] or len(steps) > 200:
                break
            if not step["isBody"]:
                steps.append(step)
        self.assertEqual([step["name"] for step in steps if not step["isMarked"]], [], "without a mark of the focus")
        self.assertEqual([step["name"] for step in steps if not step["isSeen"]], [], "outside of the window")
        return self.browser.script("return interactive().filter((e) => !walked.has(e)).map(named)")

    def test_tab_reaches_everything(self):
        for size in SIZES:
            with self.subTest(size=size):
                self.browser.look_as(size)
                self.panel.wait_for_frames(2)
                self.assertEqual(self.walk(), [])
                self.assertGreater(self.browser.script("return walked.size"), 25)

    def test_keys_do_what_their_buttons_do(self):
        for key, part in (("x", "cross"), ("g", "grid"), ("r", "draw-area"), (Keys.SPACE, "pause"), ("f", "fit"), ("1", "actual")):
            with self.subTest(key=key):
                self.browser.script("document.activeElement.blur()")
                was = self.panel.is_pressed(part)
                self.page.press(key)
                # Those that are no switch stay pressed.
                self.assertEqual(self.panel.is_pressed(part), True if part in ("fit", "actual") else not was)
        self.page.press("+")
        self.panel.wait("part('zoom').textContent === '200 %'")
        self.page.press("-", "-")
        self.panel.wait("parseFloat(part('zoom').textContent) < 100")

    def test_keys_are_listed_and_lead_to_the_search(self):
        self.page.press("?")
        self.page.wait("document.getElementById('help').open")
        self.page.press(Keys.ESCAPE)
        self.page.wait("!document.getElementById('help').open")
        self.page.press("/", "x", "?")
        self.assertEqual(self.page.element("#search").get_attribute("value"), "x?")
        self.assertFalse(self.panel.is_pressed("cross"))

    def test_everything_that_can_be_used_has_a_name(self):
        nodes = self.browser.command("Accessibility.getFullAXTree")["nodes"]
        nameless = [
            node["role"]["value"] for node in nodes
            if not node["ignored"] and any(p["name"] == "focusable" and p["value"]["value"] for p in node.get("properties", []))
            and not node.get("name", {}).get("value")]  # fmt: skip
        self.assertEqual(nameless, [])


class LayoutTest(BrowserCase):
    expected_complaints = ("status of 50[34]",)

    def worlds(self):
        """Pages in different states: one camera, two of them, one that is away."""
        one = self.enterContext(kelcam([camera(COLOUR)]))
        yield "one", self.shown(one)
        self.browser.press("?")
        yield "help", self.browser_panel
        two = self.enterContext(kelcam([camera(), camera(COLOUR)], first="--camera 1 --camera 2"))
        yield "two", self.shown(two)
        self.browser_panel.click("title")
        yield "chosen", self.browser_panel
        away = self.enterContext(kelcam([camera()], faults=[{"call": "VmbCameraOpen", "error": -6, "count": 0}]))
        panel = self.open(away).panel()
        panel.wait("!part('problem').hidden")
        yield "lost", panel

    def shown(self, view, index=0):
        self.browser_panel = super().shown(view, index)
        return self.browser_panel

    def test_texts_have_contrast_and_nothing_is_wider_than_the_screen(self):
        for name, panel in self.worlds():
            for size in SIZES:
                for scheme in SCHEMES:
                    with self.subTest(page=name, size=size, scheme=scheme):
                        self.browser.look_as(size, scheme)
                        self.browser.wait("innerWidth === arguments[0]", size[0])
                        result = self.browser.script(FAINT, LEAST_CONTRAST)
                        self.assertEqual(result["faint"], [], f"less contrast than {LEAST_CONTRAST}")
                        self.assertGreater(result["count"], 10)
                        self.assertEqual(self.browser.script(WIDE), {"scrolls": False, "wide": []})
