#!/usr/bin/env python3
"""Tests manual/make-manual: what it refuses, and what it makes of a small source.

    tests/manual/make_manual_test.py MANUAL_DIR
"""

import html
import html.parser
import importlib.machinery
import importlib.util
import pathlib
import re
import struct
import sys
import tempfile
import unittest

MANUAL = pathlib.Path(sys.argv.pop(1))
loader = importlib.machinery.SourceFileLoader("make_manual", str(MANUAL / "make-manual"))
make_manual = importlib.util.module_from_spec(importlib.util.spec_from_loader("make_manual", loader))
loader.exec_module(make_manual)

HEADER = "enum class HelpTopic : int {\n  None = -1,\n  Index = 0,\n  Panels = 1,\n  Viewer = 2,\n};\n"
INDEX = "# 0 Index {F1}\n{index}\n"
PANELS = "# 1 Panels {F1 here}\nAbout panels.\n"
VIEWER = "# 2 Viewer {F1 there}\nAbout the viewer.\n"
END = "# 30000 No help\n"
WHOLE = INDEX + PANELS + VIEWER + END


def chapters_of(text):
    return make_manual.read_chapters("a.txt", text)


def made(text, header=HEADER):
    chapters = chapters_of(text)
    make_manual.check(chapters, header)
    return make_manual.make_help(chapters)


def records(data):
    """(number, lines) of each record."""
    result = []
    while data:
        number, size = struct.unpack_from("<hh", data)
        result.append((number, data[4:size].decode("cp850").split("\0")[:-1]))
        data = data[size:]
    return result


def lines_of(text, number=1):
    return dict(records(made(WHOLE.replace(PANELS, text))))[number]


class TestRefusals(unittest.TestCase):
    def refused(self, text, why):
        with self.assertRaises(make_manual.Refused) as caught:
            made(text)
        self.assertIn(why, str(caught.exception))

    def test_a_whole_source_is_taken(self):
        self.assertEqual([number for number, _ in records(made(WHOLE))], [1, 0, 2, 30000])

    def test_a_missing_topic_is_refused(self):
        for piece, number in ((INDEX, 0), (PANELS, 1), (VIEWER, 2), (END, 30000)):
            self.refused(WHOLE.replace(piece, ""), f"topic {number} is missing")

    def test_a_topic_that_is_there_twice_is_refused(self):
        self.refused(WHOLE + "# 2 Another\n", "topic 2 is there twice")
        self.refused(WHOLE + "# - Viewer\n", "the title 'Viewer' is there twice")

    def test_a_line_over_72_columns_is_refused_where_it_stands(self):
        made(WHOLE + "# - M\n" + "# 5 Long\n\n    " + "x" * 69 + "\n")
        self.refused(WHOLE + "# 5 Long\n\n    " + "x" * 70 + "\n", "a.txt:10: 73 columns")
        self.refused(WHOLE + "# 5 Long\n" + "x" * 72 + "\n", "73 columns")

    def test_a_character_outside_the_code_page_is_refused(self):
        made(WHOLE + "# 5 Odd\nä ─ £\n")
        self.refused(WHOLE + "# 5 Odd\na → b\n", "not in code page 850: '→'")

    def test_a_record_that_is_too_large_is_refused(self):
        line = "x" * 60 + "\n\n"
        made(WHOLE + "# 5 Large\n" + line * 500)
        self.refused(WHOLE + "# 5 Large\n" + line * 600, "a topic has at most 32767")

    def test_a_link_to_nowhere_is_refused(self):
        made(WHOLE + "# 5 Links\nSee [[Viewer]].\n")
        self.refused(WHOLE + "# 5 Links\nSee [[Nothing]].\n", "no chapter 'Nothing'")
        self.refused(WHOLE + "# 5 Links\n| F1 | [[Nothing]]\n", "no chapter 'Nothing'")

    def test_lines_that_mean_nothing_are_refused(self):
        self.refused("text\n" + WHOLE, "text before the first chapter")
        self.refused(WHOLE + "# 5 x\n| a row without a second part\n", "not understood")
        self.refused(WHOLE + "# 5 x\n### deeper\n", "not understood")


class TestHelp(unittest.TestCase):
    def test_text_is_laid_out_to_the_width_of_the_window(self):
        lines = lines_of("# 1 Panels {F1}\n" + "word " * 40 + "\n")
        self.assertEqual(lines[:2], [" Panels", ""])
        self.assertEqual([len(line) for line in lines[2:]], [70, 70, 60])

    def test_tables_stand_in_columns(self):
        lines = lines_of("# 1 Panels {F1}\n| F1 | help\n| Ctrl-F5 | " + "long " * 15 + "\n  text\n")
        self.assertEqual(lines[2], "  F1       help")
        self.assertTrue(lines[3].startswith("  Ctrl-F5  long long"))
        self.assertTrue(lines[4].startswith(" " * 11 + "long"))
        self.assertTrue(lines[4].endswith("text"))

    def test_marks_are_left_out(self):
        lines = lines_of("# 1 Panels {F1}\nSee `td.ini` and [[Viewer]].\n\n## More\n- one\n- two\n")
        self.assertEqual(lines[2:], [" See td.ini and Viewer.", "", " MORE", " - one", " - two"])

    def test_the_index_names_each_topic_and_what_opens_it(self):
        lines = dict(records(made(WHOLE)))[0]
        self.assertEqual(lines[2:], ["  Index   F1", "  Panels  F1 here", "  Viewer  F1 there"])

    def test_chapters_of_the_manual_alone_are_not_in_the_help(self):
        self.assertEqual(made(WHOLE + "# - More\nOnly there.\n"), made(WHOLE))


class LinksOf(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.targets, self.places, self.open = [], [], []

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if "id" in attributes:
            self.places.append(attributes["id"])
        if tag == "a":
            self.targets.append(attributes["href"])
        if tag not in ("meta", "input"):
            self.open.append(tag)

    def handle_endtag(self, tag):
        assert self.open.pop() == tag, tag


class TestSources(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.help = pathlib.Path(self.directory.name, "td.tdh")
        self.page = pathlib.Path(self.directory.name, "td.html")
        header = MANUAL.parent / "src" / "ui" / "help_window.h"
        status = make_manual.main(MANUAL / "topics", header, "1.2.3", self.help, self.page)
        self.assertEqual(status, 0)

    def test_every_topic_of_the_program_has_a_text(self):
        texts = dict(records(self.help.read_bytes()))
        header = (MANUAL.parent / "src" / "ui" / "help_window.h").read_text()
        numbers = make_manual.topics_of_keys(header)
        self.assertGreaterEqual(len(numbers), 15)
        for number in numbers:
            self.assertGreater(len(texts[number]), 10, number)
        self.assertEqual(records(self.help.read_bytes())[0][0], 1)
        self.assertIn("manual/td.html", "".join(texts[0]))

    def test_the_manual_has_its_version_its_index_and_links_that_lead_somewhere(self):
        page = self.page.read_text(encoding="utf-8")
        links = LinksOf()
        links.feed(page)
        self.assertEqual(links.open, [])
        self.assertIn("Tandem Deck 1.2.3", page)
        self.assertIsNone(re.search(r"\[\[|\{(version|contents|text)\}", page))
        self.assertGreater(len(links.targets), 40)
        for target in links.targets:
            self.assertIn(target.removeprefix("#"), links.places)
        self.assertEqual(len(links.places), len(set(links.places)))

    def test_every_key_of_a_topic_stands_in_the_manual_too(self):
        page = html.unescape(re.sub(r"<[^>]+>", "", self.page.read_text(encoding="utf-8")))
        looked_at = 0
        for chapter in make_manual.read_sources(MANUAL / "topics"):
            for block in chapter.blocks:
                if block.kind != "rows":
                    continue
                for key, _, where in block.content:
                    looked_at += 1
                    self.assertIn(make_manual.plain(key), page, where)
        self.assertGreater(looked_at, 300)

    def test_every_option_and_every_section_is_told(self):
        source = MANUAL.parent / "src"
        options = (source / "options/options.def").read_text(encoding="utf-8")
        names = re.findall(r"^(?:NUMBER_|COLOUR_)?OPTION\((?:\w+, (?!\d))?(\w+)", options, re.MULTILINE)
        sections = re.findall(r'"(\[[^"]+\])"', (source / "config/config_sections.cpp").read_text(encoding="utf-8"))
        told = "".join((MANUAL / "topics" / name).read_text(encoding="utf-8")
                       for name in ("04-configuration.txt", "11-td-ini.txt"))
        self.assertGreater(len(names), 60)
        self.assertGreater(len(sections), 10)
        for name in names:
            self.assertRegex(told, rf"\b{name}\b")
        for section in sections:
            kind, _, archiver = section.strip("[]").partition(":")
            self.assertIn(f"[{kind}", told)
            self.assertIn(archiver, told)


if __name__ == "__main__":
    unittest.main()
