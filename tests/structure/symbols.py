#!/usr/bin/env python3
"""Says which functions and variables two of the libraries define: the linker takes either in silence.

    tests/structure/symbols.py DIRECTORY        holds libtd_*.a

One line a fault on standard output; exit status 1 when there is any.
"""

import pathlib
import subprocess
import sys

DEFINED = set("TB")  # functions and variables: not inline, not of a template


def definitions(library):
    page = subprocess.run(
        ["nm", "--defined-only", "--demangle", str(library)], capture_output=True, text=True, check=True
    ).stdout
    for line in page.splitlines():
        words = line.split(" ", 2)
        if len(words) == 3 and words[1] in DEFINED:
            yield words[2]


def faults(libraries):
    owner = {}
    for library in libraries:
        for name in definitions(library):
            if owner.setdefault(name, library) != library:
                yield f"{name}: in {owner[name].name} and in {library.name}"


def main():
    libraries = sorted(pathlib.Path(sys.argv[1]).glob("libtd_*.a"))
    if not libraries:
        print("there is no library to look at")
        return 1
    found = list(faults(libraries))
    print("\n".join(found) or f"{len(libraries)} libraries looked at")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
