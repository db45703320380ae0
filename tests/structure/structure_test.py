#!/usr/bin/env python3
"""Shows that each fault of a tree is seen: a small sound tree is made, and one thing of it is spoiled."""

import pathlib
import tempfile
import unittest

import structure

SOUND_TREE = {
    "src/CMakeLists.txt": """td_library(foundation)
td_library(options DEPENDS foundation)
td_library(language DEPENDS options)
td_library(console DEPENDS options)
td_library(ui DEPENDS console)
td_library(panels/model DEPENDS ui)
td_library(panels/commands DEPENDS panels/model language)
""",
    "src/foundation/name.h": "#pragma once\n#include <string>\n",
    "src/foundation/name.cpp": '#include "foundation/name.h"\n',
    "src/options/options.h": '#include "foundation/name.h"\n',
    "src/console/painter.h": "#include <gtk/gtk.h>\n#include <X11/Xlib.h>\n",
    "src/console/screen.h": '#include "options/options.h"\n',
    "src/console/screen.cpp": '#include "console/screen.h"\n#include "console/painter.h"\n',
    "src/ui/box.h": '#include "console/screen.h"\n',
    "src/language/filter_expression.h": '#include "foundation/name.h"\n',
    "src/panels/model/panel.h": '#include "ui/box.h"\n',
    "src/panels/commands/sort.h": '#include "panels/model/panel.h"\n#include "language/filter_expression.h"\n',
    "src/main.cpp": '#include "panels/commands/sort.h"\n',
    "docs/architecture.md": """# Architecture
Strings stand in `foundation/name.h`.

## Files
### foundation
| file | holds |
|---|---|
| `foundation/name` | names |

### the rest
| file | holds |
|---|---|
| `options/options` | options |
| `console/painter` | pixels |
| `console/screen` | cells |
| `ui/box` | boxes |
| `language/filter_expression` | filters |
| `panels/model/panel` | panels |
| `panels/commands/sort` | orders |
| `main` | starts |
""",
}


def faults_of(tree):
    with tempfile.TemporaryDirectory() as directory:
        root = pathlib.Path(directory)
        for name, text in tree.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        return structure.all_faults(root)


class StructureTest(unittest.TestCase):
    def spoil(self, name, text):
        """The faults of the sound tree with one file put in or replaced."""
        return faults_of({**SOUND_TREE, name: text})

    def extend_page(self, text):
        return self.spoil("docs/architecture.md", SOUND_TREE["docs/architecture.md"] + text)

    def test_a_sound_tree_has_no_fault(self):
        self.assertEqual(faults_of(SOUND_TREE), [])

    def test_an_include_of_a_higher_folder_is_a_fault(self):
        self.assertEqual(
            self.spoil("src/foundation/name.cpp", '#include "ui/box.h"\n'),
            ["src/foundation/name.cpp: foundation may not include ui/box.h"],
        )

    def test_indented_directives_are_read(self):
        self.assertEqual(len(self.spoil("src/foundation/name.cpp", ' #  include "ui/box.h"\n')), 1)

    def test_a_folder_that_is_not_named_may_not_be_included(self):
        self.assertEqual(
            self.spoil("src/ui/box.h", '#include "language/filter_expression.h"\n'),
            ["src/ui/box.h: ui may not include language/filter_expression.h"],
        )

    def test_a_folder_inside_a_folder_is_a_layer_of_its_own(self):
        self.assertEqual(
            self.spoil("src/panels/model/panel.h", '#include "language/filter_expression.h"\n'),
            ["src/panels/model/panel.h: panels/model may not include language/filter_expression.h"],
        )

    def test_a_file_beside_the_folders_of_a_folder_is_a_fault(self):
        self.assertIn(
            "src/panels/odd.h: belongs to no layer", self.spoil("src/panels/odd.h", "")
        )

    def test_a_folder_stands_only_on_those_above_it_in_the_list(self):
        page = SOUND_TREE["src/CMakeLists.txt"].replace(
            "td_library(options DEPENDS foundation)", "td_library(options DEPENDS foundation ui)"
        )
        self.assertEqual(
            self.spoil("src/CMakeLists.txt", page),
            ["src/CMakeLists.txt: options stands on ui, which is not above it"],
        )

    def test_a_circle_of_headers_is_a_fault(self):
        self.assertEqual(
            faults_of(
                {
                    **SOUND_TREE,
                    "src/foundation/name.h": '#include "foundation/text.h"\n',
                    "src/foundation/text.h": '#include "foundation/name.h"\n',
                    "docs/architecture.md": SOUND_TREE["docs/architecture.md"]
                    + "| `foundation/text` | text |\n",
                }
            ),
            ["circle: foundation/name.h -> foundation/text.h -> foundation/name.h"],
        )

    def test_a_header_that_includes_itself_is_a_circle(self):
        self.assertEqual(
            self.spoil("src/ui/box.h", '#include "ui/box.h"\n'), ["circle: ui/box.h -> ui/box.h"]
        )

    def test_each_toolkit_header_outside_the_console_is_a_fault(self):
        for header in (
            "gtk/gtk.h",
            "gtkmm/window.h",
            "gdk/gdkx.h",
            "gdk-pixbuf/gdk-pixbuf.h",
            "pango/pangocairo.h",
            "glib.h",
            "glibmm/ustring.h",
            "sigc++/sigc++.h",
            "X11/Xlib.h",
        ):
            with self.subTest(header):
                self.assertEqual(
                    self.spoil("src/main.cpp", f"#include <{header}>\n"),
                    [f"src/main.cpp: the toolkit's {header} is for src/console/ only"],
                )

    def test_a_toolkit_header_that_comes_through_another_is_a_fault(self):
        self.assertEqual(
            self.spoil("src/main.cpp", '#include "console/painter.h"\n'),
            ["src/main.cpp: the toolkit's gtk/gtk.h is for src/console/ only"],
        )

    def test_an_include_from_the_own_folder_is_a_fault(self):
        self.assertEqual(
            self.spoil("src/console/screen.h", '#include "painter.h"\n'),
            ['src/console/screen.h: "painter.h" is not a file of src/'],
        )

    def test_a_file_of_no_layer_is_a_fault(self):
        faults = self.spoil("src/tools/odd.h", "")
        self.assertIn("src/tools/odd.h: belongs to no layer", faults)

    def test_a_file_without_a_line_on_the_page_is_a_fault(self):
        self.assertEqual(
            self.spoil("src/ui/list.h", ""), ["docs/architecture.md: has no line for ui/list"]
        )

    def test_a_line_for_a_file_that_is_gone_is_a_fault(self):
        self.assertEqual(
            self.extend_page("| `ui/list` | lists |\n"),
            ["docs/architecture.md: ui/list is listed but not there"],
        )

    def test_a_second_line_for_a_file_is_a_fault(self):
        self.assertEqual(
            self.extend_page("| `ui/box` | boxes |\n"), ["docs/architecture.md: ui/box is listed twice"]
        )

    def test_a_line_that_says_nothing_does_not_count(self):
        page = SOUND_TREE["docs/architecture.md"].replace("| boxes |", "| |")
        self.assertEqual(
            self.spoil("docs/architecture.md", page),
            ["docs/architecture.md: has no line for ui/box"],
        )

    def test_a_file_named_elsewhere_on_the_page_must_be_there(self):
        self.assertEqual(
            self.extend_page("\n## More\nSee `ui/list.h`.\n"),
            ["docs/architecture.md: names ui/list.h, which is not there"],
        )

    def test_a_missing_page_is_a_fault(self):
        tree = {name: text for name, text in SOUND_TREE.items() if not name.startswith("docs/")}
        self.assertEqual(faults_of(tree), ["docs/architecture.md: is missing"])

    def test_a_tree_without_sources_is_a_fault(self):
        self.assertEqual(
            faults_of({"docs/architecture.md": "", "src/readme": ""}), ["src: has no sources"]
        )


if __name__ == "__main__":
    unittest.main()
