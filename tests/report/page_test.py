#!/usr/bin/env python3
"""Drives the report page in headless Chromium: page_test.py TOVREN SOURCE_DIR

Types into the search, chooses filters, opens drawings, follows links, and does without scripts.
"""
import json
import shutil
import sys
import tempfile
import unittest

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select, WebDriverWait
except ImportError:
    sys.exit("page_test.py: python3-selenium is missing; scripts/setup installs it")

import tables

CHROMIUM, DRIVER = shutil.which("chromium"), shutil.which("chromedriver")
if not CHROMIUM or not DRIVER:
    sys.exit("page_test.py: chromium or chromedriver is missing; scripts/setup installs them")


def browser(*switches, scripts=True):
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for switch in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                   "--disable-background-networking", "--host-resolver-rules=MAP * ~NOTFOUND",
                   "--window-size=1300,900", *switches):
        options.add_argument(switch)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    if not scripts:
        options.add_experimental_option("prefs", {"profile.managed_default_content_settings.javascript": 2})
    return webdriver.Chrome(options=options, service=Service(DRIVER))


class BrowserCase(unittest.TestCase):
    scripts = True
    root = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        before = ["--db-root", tables.hostile_root(cls.folder.name)] if cls.root else []
        tables.tovren(*before, "report", f"{cls.folder.name}/page.html")
        cls.url = f"file://{cls.folder.name}/page.html"
        cls.browser = browser(scripts=cls.scripts)
        cls.addClassCleanup(cls.browser.quit)

    def load(self, state=""):
        self.browser.get("about:blank")  # else a change behind the # loads nothing
        self.browser.get(self.url + state)

    def id(self, name):
        return self.browser.find_element(By.ID, name)

    def all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def texts(self, selector):
        """Of the elements that are shown, as they stand in the page."""
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])].filter((e) => e.checkVisibility())"
            ".map((e) => e.textContent.trim())", selector)

    def shown(self, column, section="flashes"):
        return self.texts(f"#{section} .list > tbody > tr:first-child > :nth-child({column})")

    def state(self):
        return self.browser.execute_script("return location.hash")

    def tearDown(self):
        faults = [entry for entry in self.browser.get_log("browser") if entry["level"] == "SEVERE"]
        self.assertEqual(faults, [])


class Search(BrowserCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.flashes = tables.shipped_flashes()

    def type(self, text):
        self.id("q").clear()
        self.id("q").send_keys(text)

    def test_finds_flashes_by_their_name(self):
        self.load()
        self.type("w25q128")
        wanted = [flash["device_name"] for flash in self.flashes if "W25Q128" in flash["device_name"]]
        self.assertGreater(len(wanted), 3)
        self.assertEqual(self.shown(2), wanted)
        self.assertEqual(self.id("flash-count").text, f"{len(wanted)} of 438")

    def test_finds_flashes_by_what_they_answer(self):
        wanted = [flash["index"] for flash in self.flashes if flash["id"] == "20BA18"]
        self.assertEqual(len(wanted), 4)
        for spelling in ("20BA18", "20 ba 18", "0x20 0xBA 0x18", "20:BA:18", "20,ba,18"):
            self.load()
            self.type(spelling)
            self.assertEqual(self.shown(1), wanted, spelling)

    def test_wants_all_words(self):
        self.load()
        self.type("micron 256 mbit n25q")
        wanted = [flash["device_name"] for flash in self.flashes
                  if flash["device_name"].startswith("N25Q") and flash["device_bit_size"] == 256 << 20]
        self.assertGreater(len(wanted), 0)
        self.assertEqual(self.shown(2), wanted)

    def test_says_when_nothing_matches(self):
        self.load()
        self.type("no such thing")
        self.assertEqual(self.shown(2) + self.shown(2, "records"), [])
        self.assertEqual(self.texts(".none"),
                         ["No flash matches.", "No device record matches.", "No name matches."])
        self.assertIn("0 flashes", self.browser.execute_script("return document.getElementById('status').textContent"))

    def test_finds_device_records_by_whom_they_serve(self):
        self.load()
        self.type("QX20A")
        [name] = self.shown(2, "records")
        self.assertEqual(name, "QUARN-2")

    def test_finds_names_exact_ones_first(self):
        self.load()
        self.type("qx20af256c6")
        self.assertEqual(self.texts(".found tbody th"), ["QX20AF256C6", "QX20AF256C6N"])
        self.assertEqual(self.texts(".found tbody tr:first-child td"),
                         ["part", "QX20AF256", "QX20A", "QX20X", "QUARN-2", "2"])
        self.assertEqual(self.texts("#families"), [])

    def test_counts_the_names_that_it_does_not_show(self):
        maps = tables.tovren_json("name", "maps")
        wanted = sum("AF256" in name for names in maps["PACKAGE_GRAMMAR"].values() for name in names)
        wanted += sum("AF256" in name for name in maps["PACKAGE_GRAMMAR"])
        wanted += sum("AF256" in name and packages != [name] for name, packages in maps["PGM_GRAMMAR"].items())
        self.load()
        self.type("AF256")
        found = int(self.id("name-count").text.split()[0])
        self.assertEqual(len(self.texts(".found tbody tr")), 200)
        self.assertEqual(self.texts("#found .note"), [f"{found - 200} more; write more of the name to see them."])
        self.assertEqual(found, wanted)

    def test_filters(self):
        flashes = self.flashes
        cases = [("maker", "WINBOND", lambda flash: flash["manufacturer_name"] == "WINBOND"),
                 ("density", "128 Mbit", lambda flash: flash["device_bit_size"] == 128 << 20),
                 ("kind", "silicon ID", lambda flash: flash["silicon_id"] == "TRUE"),
                 ("hidden", "only these", lambda flash: flash["hidden"]),
                 ("hidden", "left out", lambda flash: not flash["hidden"])]
        for field, choice, test in cases:
            self.load()
            Select(self.id(field)).select_by_visible_text(choice)
            WebDriverWait(self.browser, 10).until(lambda _: self.state() != "")
            self.assertEqual(len(self.shown(1)), sum(map(test, flashes)), choice)
        self.load()
        self.id("default").click()
        WebDriverWait(self.browser, 10).until(lambda _: self.state() != "")
        self.assertEqual(len(self.shown(1)), sum(flash["default_dev"] == "TRUE" for flash in flashes))

    def test_keeps_its_state_in_the_address(self):
        self.load()
        self.type("25q")
        Select(self.id("maker")).select_by_visible_text("WINBOND")
        Select(self.id("density")).select_by_visible_text("64 Mbit")
        self.id("default").click()
        WebDriverWait(self.browser, 10).until(lambda _: "default" in self.state())
        before, state = self.shown(1), self.state()
        self.assertEqual(state, "#q=25q&maker=WINBOND&density=64+Mbit&default=1")
        self.assertGreater(len(before), 1)
        self.load(state)
        self.assertEqual(self.shown(1), before)
        self.assertEqual(self.id("q").get_attribute("value"), "25q")
        self.browser.find_element(By.CSS_SELECTOR, "button[type=reset]").click()
        WebDriverWait(self.browser, 10).until(lambda _: len(self.shown(1)) == 438)
        self.assertEqual(self.state(), "")

    def test_takes_an_address_with_nonsense(self):
        self.load("#q=w25q128&maker=NOBODY&kind=%3Cb%3E&frob=1&at=%27%22%3Cnone")
        self.assertEqual(self.id("maker").get_attribute("value"), "")
        self.assertGreater(len(self.shown(1)), 3)
        self.load("#%3Cimg%20src=x%20onerror=1%3E")
        self.assertEqual(len(self.shown(1)), 438)

    def test_opens_a_drawing_by_the_keyboard(self):
        self.load()
        self.type("mt25ql256ab")
        row = next(row for row in self.all("#flashes tbody") if row.is_displayed())
        self.browser.execute_script("arguments[0].focus()", row.find_element(By.TAG_NAME, "summary"))
        self.browser.switch_to.active_element.send_keys(Keys.ENTER)
        drawing = row.find_element(By.TAG_NAME, "svg")
        WebDriverWait(self.browser, 10).until(lambda _: drawing.is_displayed())
        whole = drawing.rect["width"]
        self.assertGreater(whole, 400)
        far = row.find_element(By.CSS_SELECTOR, ".far").rect
        self.assertAlmostEqual(far["x"], drawing.rect["x"] + whole / 2, delta=1)  # 16 of 32 MiB
        lines = row.find_element(By.CSS_SELECTOR, "use.sector").rect
        self.assertAlmostEqual(lines["width"], whole * 126 / 128, delta=2)  # from the first line to the last
        self.assertIn("at=" + row.get_attribute("id"), self.state())

    def test_opens_a_drawing_by_a_click_on_the_row(self):
        self.load("#q=qxs128")
        self.all("#flashes tbody:not([hidden]) td:nth-child(3)")[0].click()
        self.assertEqual(len(self.texts("#flashes .panel")), 1)

    def test_goes_to_a_flash_that_answers_alike(self):
        self.load("#q=n25q128a13")
        [link] = [link for link in self.all("a.alike") if link.is_displayed()]
        link.click()
        target = link.get_attribute("href").partition("#")[2]
        self.assertTrue(self.id(target).is_displayed())  # though the search had left it out
        self.assertTrue(self.id(target).find_element(By.TAG_NAME, "svg").is_displayed())
        self.browser.back()
        WebDriverWait(self.browser, 10).until(lambda _: self.shown(2) == ["N25Q128A13"])

    def test_goes_from_a_name_to_its_record(self):
        self.load("#q=QX20AF256C6")
        self.all(".found tbody a")[0].click()
        self.assertTrue(self.id("r2").find_element(By.CLASS_NAME, "members").is_displayed())

    def test_begins_a_search_by_a_slash(self):
        self.load()
        self.browser.find_element(By.TAG_NAME, "body").send_keys("/")
        self.browser.switch_to.active_element.send_keys("qxs4")
        self.assertEqual(self.id("q").get_attribute("value"), "qxs4")

    def test_asks_for_nothing_but_itself(self):
        self.load()
        self.type("w25q")
        sent = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        asked = {message["params"]["request"]["url"].partition("#")[0] for message in sent
                 if message["method"] == "Network.requestWillBeSent"}
        self.assertLessEqual(asked, {self.url, "about:blank"})
        self.assertIn(self.url, asked)

    def test_labels_every_control(self):
        self.load()
        for control in self.all("form input, form select"):
            self.assertTrue(control.accessible_name, control.get_attribute("id"))
        self.assertEqual(self.all("thead th:not([scope=col]), tbody th:not([scope=row])"), [])
        names = [summary.accessible_name for summary in self.all("#flashes summary")[:3]]
        self.assertEqual(names, ["Geometry of QXS1", "Geometry of QXS4", "Geometry of QXS8"])

    def test_fits_a_narrow_window(self):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                     {"width": 340, "height": 700, "deviceScaleFactor": 1, "mobile": False})
        try:
            for state in ("", "#f107", "#r2", "#n2", "#q=QX20AF256"):
                self.load(state)
                width = self.browser.execute_script("return document.documentElement.scrollWidth")
                self.assertLessEqual(width, 340, state)
        finally:
            self.browser.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})

    def colour(self):
        return self.browser.execute_script("return getComputedStyle(document.body).backgroundColor")

    def test_follows_the_colour_scheme_and_paper(self):
        colours = []
        for features, media in (("light", ""), ("dark", ""), ("dark", "print")):
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
                "media": media, "features": [{"name": "prefers-color-scheme", "value": features}]})
            self.load()
            colours.append(self.colour())
        self.assertEqual(len(set(colours)), 3)
        self.assertEqual(colours[2], "rgb(255, 255, 255)")
        self.assertFalse(self.id("search").is_displayed())
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": "", "features": []})


class WithoutScripts(BrowserCase):
    scripts = False

    def test_shows_everything(self):
        self.load()
        self.assertFalse(self.id("search").is_displayed())
        self.assertTrue(self.browser.find_element(By.CSS_SELECTOR, "noscript p").is_displayed())
        self.assertEqual([len(self.shown(1)), len(self.shown(1, "records"))], [438, 79])
        self.assertEqual(len(self.texts("#families > .family")), 73)

    def test_unfolds_drawings_and_names(self):
        self.load("#f107")
        row = self.id("f107")
        row.find_element(By.TAG_NAME, "summary").click()
        self.assertTrue(row.find_element(By.TAG_NAME, "svg").is_displayed())
        family = self.id("n2")
        family.find_element(By.TAG_NAME, "summary").click()
        self.assertTrue(family.find_element(By.TAG_NAME, "li").is_displayed())


class HostileTables(BrowserCase):
    root = "hostile"

    def test_are_texts_to_the_browser(self):
        self.load("#q=script")
        self.assertEqual(self.shown(2), [tables.HOSTILE[0]])
        self.load()
        self.assertEqual(self.shown(2)[:len(tables.HOSTILE)], tables.HOSTILE)
        self.assertIsNone(self.browser.execute_script("return window.pwned ?? null"))
        self.assertEqual(self.all("img, section b b, table script"), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
