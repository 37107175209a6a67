#!/usr/bin/env python3
"""Takes the report page apart without a browser: structure_test.py TOVREN SOURCE_DIR

Every record has its row, every drawing the lines that its record asks for, every name its place; nothing is fetched and
no text of a table becomes markup.
"""
import base64
import hashlib
import html.parser
import os
import re
import sys
import tempfile
import unittest

import tables

VOID = {"meta", "input", "link", "br"}
DRAWN = {"rect", "line", "path", "use"}  # may close themselves


class Element:
    def __init__(self, tag, attributes, parent):
        self.tag, self.attributes, self.parent, self.children = tag, attributes, parent, []

    def text(self):
        return "".join(child if isinstance(child, str) else child.text() for child in self.children)

    def all(self, tag, **attributes):
        for child in self.children:
            if isinstance(child, str):
                continue
            if child.tag == tag and all(child.attributes.get(name.rstrip("_")) == value
                                        for name, value in attributes.items()):
                yield child
            yield from child.all(tag, **attributes)

    def one(self, tag, **attributes):
        found = list(self.all(tag, **attributes))
        assert len(found) == 1, f"{len(found)} x {tag} {attributes}"
        return found[0]


class Page(html.parser.HTMLParser):
    """Strict: every element that is opened is closed, dt and dd of the member lists aside."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.root = self.open = Element("#root", {}, None)
        self.count = {}
        self.by_id = {}
        self.feed(text)
        self.close()
        assert self.open is self.root, f"{self.open.tag} is not closed"

    def handle_starttag(self, tag, attributes):
        if tag in ("dt", "dd") and self.open.tag in ("dt", "dd"):
            self.open = self.open.parent
        assert len(dict(attributes)) == len(attributes), f"an attribute of {tag} is given twice"
        element = Element(tag, dict(attributes), self.open)
        self.open.children.append(element)
        self.count[tag] = self.count.get(tag, 0) + 1
        self.by_id.setdefault(element.attributes.get("id"), element)
        if tag not in VOID:
            self.open = element

    def handle_startendtag(self, tag, attributes):
        assert tag in DRAWN, f"{tag} closes itself"
        self.handle_starttag(tag, attributes)
        self.open = self.open.parent

    def handle_endtag(self, tag):
        if tag == "dl" and self.open.tag in ("dt", "dd"):
            self.open = self.open.parent
        assert self.open.tag == tag, f"</{tag}> where {self.open.tag} is open"
        self.open = self.open.parent

    def handle_data(self, text):
        self.open.children.append(text)


def page_of(root=None):
    before = ["--db-root", root] if root else []
    return tables.tovren(*before, "report", "-").decode("utf-8")


def lines_of(page, use):
    """How many parts the lines of a drawing make."""
    symbol = page.by_id[use.attributes["href"][1:]]
    whole = int(symbol.attributes["viewbox"].split()[2])
    places = [int(place) for place in re.findall(r"M(\d+) 0v1", symbol.one("path").attributes["d"])]
    assert places == list(range(1, whole)), places
    return whole


class ShippedPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.text = page_of()
        cls.page = Page(cls.text)
        cls.section = {name: cls.page.root.one("section", id=name) for name in ("flashes", "records", "names")}
        cls.flashes = [body for body in cls.section["flashes"].all("tbody")]
        cls.records = [body for body in cls.section["records"].all("tbody")]

    def cells(self, body):
        row = next(body.all("tr"))
        return [child.text().strip() for child in row.children if not isinstance(child, str)]

    def test_fetches_nothing(self):
        self.assertNotRegex(self.text.lower(), r"https?:|src=|@import|url\((?!#)|<link|<iframe|<object|fetch\(|xmlhttp")
        for element in ("a", "use"):
            for link in self.page.root.all(element):
                self.assertTrue(link.attributes["href"].startswith("#"), link.attributes)

    def test_allows_its_own_style_and_script_only(self):
        policy = self.page.root.one("meta", **{"http-equiv": "Content-Security-Policy"}).attributes["content"]
        for kind in ("style", "script"):
            text = re.search(rf"<{kind}>(.*?)</{kind}>", self.text, re.S)[1]
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            self.assertIn(f"{kind}-src 'sha256-{digest}'", policy)
        self.assertTrue(policy.startswith("default-src 'none'"))
        self.assertNotIn("unsafe", policy)
        self.assertEqual((self.page.count["style"], self.page.count["script"]), (1, 1))
        self.assertNotRegex(self.text, r"<[^>]* (style|on\w+)=")

    def test_links_lead_somewhere(self):
        ids = re.findall(r'\bid="([^"]*)"', self.text)
        self.assertEqual(len(ids), len(set(ids)))
        targets = set(re.findall(r'href="#([^"]*)"', self.text))
        self.assertLess(targets, set(ids))
        self.assertGreater(len(targets), 300)

    def test_is_the_same_each_time(self):
        self.assertEqual(self.text, page_of())

    def test_has_a_row_for_each_flash(self):
        wanted = tables.shipped_flashes()
        self.assertEqual((len(wanted), len(self.flashes)), (438, 438))
        for flash, body in zip(wanted, self.flashes, strict=True):
            cells = self.cells(body)
            name = flash["device_name"] + (f" hidden: PGM_ALLOW_{flash['ini']}" if flash["hidden"] else "")
            self.assertEqual(cells[:3], [flash["index"], name, flash["manufacturer_name"]])
            self.assertEqual(cells[3].partition(" ×")[0], flash["id"])
            self.assertEqual(cells[4], "yes" if flash["default_dev"] == "TRUE" else "no")
            self.assertEqual(cells[5], tables.density(flash["device_bit_size"]))
            sectors = flash["device_bit_size"] // 8 // flash["device_sector_byte"]
            self.assertEqual(cells[6], f"{sectors} x {flash['device_sector_byte'] >> 10} KiB")
            self.assertEqual(cells[7:9], [f"{flash['sec_erase_time']} s", f"{flash['bulk_erase_time']} s"])
            time = flash["program_utime"]
            self.assertEqual(cells[9], f"{time} us" if time < 1000 else f"{time / 1000:.3f}".rstrip("0").rstrip(".") + " ms")
            self.assertEqual(cells[10], flash["asc_voltage"])

    def test_links_flashes_that_answer_alike(self):
        wanted = tables.shipped_flashes()
        anchors = [body.attributes["id"] for body in self.flashes]
        for flash, body in zip(wanted, self.flashes, strict=True):
            alike = [anchor for other, anchor in zip(wanted, anchors, strict=True) if other["id"] == flash["id"]]
            links = [link.attributes["href"][1:] for dd in body.all("dd", class_="links") for link in dd.all("a")]
            self.assertEqual(links, [anchor for anchor in alike if anchor != body.attributes["id"]])
            count = [link.text() for link in body.all("a", class_="alike")]
            self.assertEqual(count, [f"×{len(alike)}"] if len(alike) > 1 else [])

    def test_draws_sectors_to_scale(self):
        for flash, body in zip(tables.shipped_flashes(), self.flashes, strict=True):
            sectors = flash["device_bit_size"] // 8 // flash["device_sector_byte"]
            drawing = next(body.all("svg"))
            uses = [use for use in drawing.all("use") if use.attributes["class"] == "sector"]
            grouped = 1
            while sectors // grouped > 128:
                grouped *= 2
            self.assertEqual([lines_of(self.page, use) for use in uses], [sectors // grouped] if sectors > 1 else [])
            if grouped > 2:
                enlarged = next(body.all("svg", **{"aria-label": "One field, enlarged"}))
                self.assertEqual(lines_of(self.page, next(enlarged.all("use"))), grouped)
            dies = [lines_of(self.page, use) for use in drawing.all("use") if use.attributes["class"] == "die"]
            self.assertEqual(dies, [flash["die_count"]] if flash["die_count"] > 1 else [])

    def test_marks_where_addresses_of_three_bytes_end(self):
        for flash, body in zip(tables.shipped_flashes(), self.flashes, strict=True):
            far = [rect.attributes["x"] for rect in body.all("rect", class_="far")]
            self.assertEqual(bool(far), flash["byte4_addressing"] == "TRUE")
            if far:
                self.assertAlmostEqual(float(far[0].rstrip("%")), 100 * (1 << 27) / flash["device_bit_size"], places=3)

    def test_says_where_protection_is_unknown(self):
        for flash, body in zip(tables.shipped_flashes(), self.flashes, strict=True):
            mask = int(flash["protection_mask"], 16)
            self.assertEqual(len(list(body.all("rect", class_="unknown"))), mask == 0)
            self.assertEqual(len(list(body.all("rect", class_="guard"))), mask != 0)
            if mask:
                bits = body.one("span", class_="bits")
                self.assertEqual(sum(1 << int(bit.text()) for bit in bits.all("b")), mask)
                self.assertEqual(sum(1 << int(bit.text()) for bit in bits.all("u")), int(flash["bottom_value"], 16))

    def test_has_a_row_for_each_device_record(self):
        wanted = tables.tovren_json("device", "list")
        self.assertEqual((len(wanted), len(self.records)), (79, 79))
        for record, body in zip(wanted, self.records, strict=True):
            keys = [("family", record["family"]["name"]), ("pcf", record["pcf"]), ("device", record["device"]["name"]),
                    ("part", record["part"]["name"])]
            kind, name = next(key for key in keys if key[1])
            self.assertEqual(self.cells(body)[:3], [str(record["position"]), name, kind])
            members = body.one("dl", class_="members")
            names = [dt.text().strip() for dt in members.all("dt")]
            self.assertEqual(names, [member for member in record if member not in ("position", "served_by")])
            values = dict(zip(names, (dd.text().strip() for dd in members.all("dd")), strict=True))
            self.assertEqual(values["cfg_dev"], record["cfg_dev"] or "–")
            self.assertEqual(values["support_asc"], "yes" if record["support_asc"] else "no")

    def test_serves_each_family_and_device_once(self):
        served = {"Families": [], "Devices": []}
        for body in self.records:
            for title, names in zip(*(list(body.one("dl", class_="served").all(tag)) for tag in ("dt", "dd")),
                                    strict=True):
                kind = re.match("Families|Devices|Serves", title.text())[0]
                if kind in served:
                    served[kind] += names.text().split()
        for kind, which in (("Families", "families"), ("Devices", "devices")):
            catalogue = [value["name"] for value in tables.tovren_json("device", "catalogue", which) if value["name"]]
            self.assertEqual(sorted(served[kind]), sorted(catalogue))

    def test_has_every_ordering_name(self):
        maps = tables.tovren_json("name", "maps", "PACKAGE_GRAMMAR")["PACKAGE_GRAMMAR"]
        parts = {part["name"]: part["device"] for part in tables.tovren_json("device", "catalogue", "parts")}
        told = {}
        for row in self.section["names"].all("tr"):
            device = "".join(th.text() for th in row.all("th"))
            for item in row.all("li"):
                name = item.one("b").text()
                listed = [name + suffix.replace("·", "") for suffix in item.one("span").text().split()]
                others = [name + suffix.replace("·", "") for i in item.all("i") for suffix in i.text().split()]
                self.assertEqual({parts[part] for part in listed}, {device})
                self.assertFalse(set(others) & set(parts))
                told[name] = listed + others
        self.assertEqual(len(told), 3483)
        self.assertEqual({name: sorted(names) for name, names in told.items()},
                         {name: sorted(names) for name, names in maps.items()})

    def test_stands_in_a_file_as_on_standard_output(self):
        with tempfile.TemporaryDirectory() as folder:
            tables.tovren("report", f"{folder}/page.html")
            with open(f"{folder}/page.html", encoding="utf-8") as page:
                self.assertEqual(page.read(), self.text)
            self.assertEqual(os.listdir(folder), ["page.html"])


class HostileTexts(unittest.TestCase):
    def test_stay_texts(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Page(page_of(tables.hostile_root(folder)))
        shipped = Page(page_of())
        for tag in ("script", "style", "form", "table", "section"):
            self.assertEqual(page.count[tag], shipped.count[tag])
        for tag in ("img", "iframe", "link"):
            self.assertNotIn(tag, page.count)
        bodies = list(page.root.one("section", id="flashes").all("tbody"))
        cells = [[cell.text().strip() for cell in next(body.all("tr")).children if not isinstance(cell, str)]
                 for body in bodies]
        self.assertEqual([row[1] for row in cells[:len(tables.HOSTILE)]], tables.HOSTILE)
        rest = cells[len(tables.HOSTILE):]
        self.assertEqual([rest[0][2], rest[1][10]], ["<b>M</b>", "<i>3</i>"])
        self.assertEqual(rest[2][1], "QXD hidden: PGM_ALLOW_<u>K</u>")
        self.assertEqual(rest[3][1], r"Q\xFF\x01X")
        self.assertTrue(any(option.text() == "<b>M</b>" for option in page.root.all("option")))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
