#!/usr/bin/env python3
"""Reads the includes of src/ and the file list of docs/architecture.md and says what is wrong with them.

    tests/structure/structure.py ROOT

One line a fault on standard output; exit status 1 when there is any.
"""

import fnmatch
import pathlib
import re
import sys

# From the bottom up: a file may include files of its own layer and of those above it in this list.
LAYERS = (
    ("foundation", ("foundation/*",)),
    ("options", ("config/options.*", "config/colours.*")),
    ("console", ("console/*",)),
    ("history data", ("tools/history_store.*",)),
    ("ui", ("ui/*",)),
    (
        "filter language",
        (
            "commander/association_set.*",
            "commander/environment.*",
            "commander/filter_expression.*",
            "commander/shell_quote.*",
        ),
    ),
    ("configuration", ("config/config_line.*",)),
    ("panels", ("panels/*",)),
    ("fileops", ("fileops/*",)),
    ("commander", ("commander/*",)),
)

TOOLKIT = re.compile(r"(gtk|gdk|pango|glib|gio|gobject|gmodule|gthread|cairo|atk|sigc\+\+|X11)")
TOOLKIT_FOLDER = "console/"
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]*)"|<([^>]*)>)', re.MULTILINE)
FILE_LIST_HEAD = "## Files"
FILE_LINE = re.compile(r"^\| `([^`]+)` \| [^ |]")
SOURCE_NAME = re.compile(r"`([\w./-]+\.(?:h|cpp))`")


def layer_of(name):
    """The rank of a file's layer, None when no layer has a place for it."""
    for rank, (_, patterns) in enumerate(LAYERS):
        if any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns):
            return rank
    return None


def read_sources(source_dir):
    """Name below src/ -> the text of each source and header."""
    found = sorted(path for path in source_dir.rglob("*") if path.suffix in (".h", ".cpp"))
    return {
        path.relative_to(source_dir).as_posix(): path.read_text(encoding="utf-8") for path in found
    }


def read_includes(text):
    """(quoted names, names in angle brackets), in the order of the file."""
    pairs = INCLUDE.findall(text)
    return [quoted for quoted, _ in pairs if quoted], [angled for _, angled in pairs if angled]


def direction_faults(graph):
    for name, (quoted, _) in graph.items():
        rank = layer_of(name)
        if rank is None:
            yield f"src/{name}: belongs to no layer"
            continue
        for target in quoted:
            if target not in graph:
                yield f'src/{name}: "{target}" is not a file of src/'
                continue
            target_rank = layer_of(target)
            if target_rank is not None and target_rank > rank:
                yield (
                    f"src/{name}: {LAYERS[rank][0]} may not include {target} of "
                    f"{LAYERS[target_rank][0]}"
                )


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
    graph = {name: read_includes(text) for name, text in sources.items()}
    return [
        *direction_faults(graph),
        *circle_faults(graph),
        *toolkit_faults(graph),
        *file_list_faults(root, set(sources)),
    ]


def main():
    faults = all_faults(pathlib.Path(sys.argv[1]))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
