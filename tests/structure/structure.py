#!/usr/bin/env python3
"""Reads the includes of src/ and the file list of docs/architecture.md and says what is wrong with them.

    tests/structure/structure.py ROOT

One line a fault on standard output; exit status 1 when there is any.
"""

import pathlib
import re
import sys

# One folder of src/ with the folders that it stands on; src/CMakeLists.txt lists them from the bottom up.
LIBRARY = re.compile(r"^td_library\(([\w/]+)(?:\s+DEPENDS((?:\s+[\w/]+)+))?\s*\)", re.MULTILINE)
TOOLKIT = re.compile(r"(gtk|gdk|pango|glib|gio|gobject|gmodule|gthread|cairo|atk|sigc\+\+|X11)")
TOOLKIT_FOLDER = "console/"
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]*)"|<([^>]*)>)', re.MULTILINE)
FILE_LIST_HEAD = "## Files"
FILE_LINE = re.compile(r"^\| `([^`]+)` \| [^ |]")
SOURCE_NAME = re.compile(r"`([\w./-]+\.(?:h|cpp|def))`")


def read_layers(page):
    """(folder -> all folders that it may use, faults of the list itself)."""
    layers, faults = {}, []
    for name, depends in LIBRARY.findall(page):
        uses = {name}
        for lower in depends.split():
            if lower in layers:
                uses |= layers[lower]
            else:
                faults.append(f"src/CMakeLists.txt: {name} stands on {lower}, which is not above it")
        layers[name] = uses
    return layers, faults


def folder_of(name):
    return name.rpartition("/")[0]


def read_sources(source_dir):
    """Name below src/ -> the text of each source and header."""
    found = sorted(path for path in source_dir.rglob("*") if path.suffix in (".h", ".cpp", ".def"))
    return {
        path.relative_to(source_dir).as_posix(): path.read_text(encoding="utf-8") for path in found
    }


def read_includes(text):
    """(quoted names, names in angle brackets), in the order of the file."""
    pairs = INCLUDE.findall(text)
    return [quoted for quoted, _ in pairs if quoted], [angled for _, angled in pairs if angled]


def direction_faults(graph, layers):
    for name, (quoted, _) in graph.items():
        folder = folder_of(name)
        if folder and folder not in layers:
            yield f"src/{name}: belongs to no layer"
            continue
        for target in quoted:
            if target not in graph:
                yield f'src/{name}: "{target}" is not a file of src/'
            elif folder and folder_of(target) not in layers[folder]:
                yield f"src/{name}: {folder} may not include {target}"


def circle_faults(graph):
    """One line for each include that closes a circle."""
    done = set()
    for start in graph:
        if start in done:
            continue
        chain = [start]
        waiting = [iter(graph[start][0])]
        while chain:
            target = next(waiting[-1], None)
            if target is None:
                done.add(chain.pop())
                waiting.pop()
            elif target in chain:
                yield "circle: " + " -> ".join(chain[chain.index(target) :] + [target])
            elif target in graph and target not in done:
                chain.append(target)
                waiting.append(iter(graph[target][0]))


def toolkit_reached(graph, name, seen):
    """The first toolkit header that a file includes, itself or through others; None without one."""
    if name in seen or name not in graph:
        return None
    seen.add(name)
    quoted, angled = graph[name]
    for header in quoted + angled:
        if header not in graph and TOOLKIT.match(header):
            return header
    return next(filter(None, (toolkit_reached(graph, target, seen) for target in quoted)), None)


def toolkit_faults(graph):
    for name in graph:
        if name.startswith(TOOLKIT_FOLDER):
            continue
        header = toolkit_reached(graph, name, set())
        if header:
            yield f"src/{name}: the toolkit's {header} is for src/{TOOLKIT_FOLDER} only"


def listed_files(page):
    """The names of the file list, one for each source with its header."""
    _, _, section = page.partition(f"\n{FILE_LIST_HEAD}\n")
    section = section.split("\n## ")[0]
    return [line.group(1) for line in map(FILE_LINE.match, section.splitlines()) if line]


def file_list_faults(root, names):
    page_path = root / "docs" / "architecture.md"
    if not page_path.exists():
        yield "docs/architecture.md: is missing"
        return
    page = page_path.read_text(encoding="utf-8")
    listed = listed_files(page)
    present = {name.rpartition(".")[0] for name in names}
    for stem in sorted(present - set(listed)):
        yield f"docs/architecture.md: has no line for {stem}"
    for stem in sorted(set(listed) - present):
        yield f"docs/architecture.md: {stem} is listed but not there"
    for stem in sorted({stem for stem in listed if listed.count(stem) > 1}):
        yield f"docs/architecture.md: {stem} is listed twice"
    for name in sorted(set(SOURCE_NAME.findall(page))):
        if name not in names and not (root / name).is_file():
            yield f"docs/architecture.md: names {name}, which is not there"


def all_faults(root):
    sources = read_sources(root / "src")
    if not sources:
        return ["src: has no sources"]
    cmake = root / "src" / "CMakeLists.txt"
    layers, faults = read_layers(cmake.read_text(encoding="utf-8") if cmake.exists() else "")
    graph = {name: read_includes(text) for name, text in sources.items()}
    return [
        *faults,
        *direction_faults(graph, layers),
        *circle_faults(graph),
        *toolkit_faults(graph),
        *file_list_faults(root, set(sources)),
    ]


def main():
    root = pathlib.Path(sys.argv[1])
    faults = all_faults(root)
    print(f"{len(read_sources(root / 'src'))} sources and headers looked at")
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
