#!/usr/bin/env python3
"""Reads the includes of the sources and the page on the architecture, and tells what breaks the rules:
an include that points up, files that include each other in a circle, a toolkit header outside the console,
a source file that the page doesn't name, and a name on the page without a file.

usage: check_structure.py ROOT     checks a tree; exit status 1 when a rule is broken
       check_structure.py --self   checks that each fault is found in a small made-up tree
"""

import os
import re
import sys
import tempfile

# From the bottom up. A file may include what stands in its own layer or below.
LAYERS = [
    ["foundation/"],
    ["config/options", "config/colours"],
    ["console/"],
    ["tools/history_store"],
    ["ui/"],
    ["commander/filter_expression", "commander/association_set", "commander/environment",
     "commander/shell_quote"],
    ["config/config_line"],
    ["panels/"],
    ["fileops/"],
    ["commander/"],
]
TOOLKIT = re.compile(r"^(gtk|gdk|pango|glib|gio|cairo|sigc|X11/|atk)")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
PAGE = os.path.join("docs", "architecture.md")
FILES_HEADING = "## Files\n"
PAGE_ENTRY = re.compile(r"^\| `([a-z0-9_./{},]+)` \|", re.MULTILINE)


def layer_of(path):
    """The layer of a file below src/: the longest name that fits decides."""
    best, found = -1, None
    for number, names in enumerate(LAYERS):
        for name in names:
            fits = path.startswith(name) if name.endswith("/") else os.path.splitext(path)[0] == name
            if fits and len(name) > best:
                best, found = len(name), number
    return found


def read_sources(root):
    sources = {}
    top = os.path.join(root, "src")
    for folder, _, files in os.walk(top):
        for name in files:
            if name.endswith((".h", ".cpp")):
                path = os.path.join(folder, name)
                with open(path, encoding="utf-8") as text:
                    sources[os.path.relpath(path, top)] = INCLUDE.findall(text.read())
    return sources


def check_includes(sources):
    faults = []
    for path, includes in sorted(sources.items()):
        own = layer_of(path)
        if own is None:
            faults.append(f"{path}: belongs to no layer")
            continue
        for kind, target in includes:
            if kind == "<":
                if TOOLKIT.match(target) and not path.startswith("console/"):
                    faults.append(f"{path}: toolkit header {target} outside console")
            elif target not in sources:
                faults.append(f"{path}: includes {target}, which isn't there")
            elif layer_of(target) is not None and layer_of(target) > own:
                faults.append(f"{path}: includes {target} of a higher layer")
    return faults


def check_circles(sources):
    graph = {path: [t for kind, t in found if kind == '"' and t in sources]
             for path, found in sources.items()}
    state, faults = {}, []

    def visit(path, trail):
        state[path] = "open"
        for target in graph[path]:
            if state.get(target) == "open":
                circle = trail[trail.index(target):] if target in trail else [target]
                faults.append("circle: " + " -> ".join(circle + [target]))
            elif target not in state:
                visit(target, trail + [target])
        state[path] = "done"

    for path in sorted(graph):
        if path not in state:
            visit(path, [path])
    return faults


def check_page(root, sources):
    try:
        with open(os.path.join(root, PAGE), encoding="utf-8") as page:
            named = set(PAGE_ENTRY.findall(page.read().partition(FILES_HEADING)[2]))
    except OSError:
        return [f"{PAGE} is missing"]
    stems = {os.path.splitext(path)[0] for path in sources}
    faults = [f"{PAGE}: {stem} isn't named" for stem in sorted(stems - named)]
    return faults + [f"{PAGE}: {name} isn't there" for name in sorted(named - stems)]


def check(root):
    sources = read_sources(root)
    return check_includes(sources) + check_circles(sources) + check_page(root, sources)


def made_up_tree(folder, files):
    for path, text in files.items():
        place = os.path.join(folder, path)
        os.makedirs(os.path.dirname(place), exist_ok=True)
        with open(place, "w", encoding="utf-8") as out:
            out.write(text)


GOOD = {
    "src/foundation/a.h": "#include <string>\n",
    "src/ui/b.h": '#include "foundation/a.h"\n',
    "src/console/w.cpp": "#include <gtkmm.h>\n",
    PAGE: "## Files\n| `foundation/a` | x |\n| `ui/b` | x |\n| `console/w` | x |\n",
}
FAULTS = {
    "of a higher layer": {"src/foundation/a.h": '#include "ui/b.h"\n', "src/ui/b.h": ""},
    "circle:": {"src/foundation/a.h": '#include "foundation/c.h"\n',
                "src/foundation/c.h": '#include "foundation/a.h"\n'},
    "outside console": {"src/ui/b.h": "#include <gtk/gtk.h>\n"},
    "which isn't there": {"src/ui/b.h": '#include "foundation/gone.h"\n'},
    "belongs to no layer": {"src/nowhere/x.h": ""},
    "isn't named": {"src/ui/new.h": ""},
    "ui/old isn't there": {PAGE: GOOD[PAGE] + "| `ui/old` | x |\n"},
}


def check_self():
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        made_up_tree(folder, GOOD)
        if check(folder):
            print("a good tree is refused:", check(folder))
            failed = 1
    for wanted, change in FAULTS.items():
        with tempfile.TemporaryDirectory() as folder:
            made_up_tree(folder, {**GOOD, **change})
            if not any(wanted in fault for fault in check(folder)):
                print("not found:", wanted)
                failed = 1
    return failed


def main():
    if sys.argv[1:] == ["--self"]:
        return check_self()
    faults = check(sys.argv[1])
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
