#!/usr/bin/env python3
"""Writes src/foundation/fold_table.cpp, the pairs of the case folding table.

    cmake/make_fold_table.py [DIRECTORY] > src/foundation/fold_table.cpp

DIRECTORY holds UnicodeData.txt and DerivedAge.txt of any release since 5.1 (default: where Debian's
unicode-data puts them). The pairs are the simple upper-case mappings of the Basic Multilingual Plane
as of Unicode 5.1, without the Georgian ones, in the order of the lower-case characters. They are fixed:
which file names a mask matches must not change with the release of a table.
"""

import pathlib
import sys

TABLE_AGE = (5, 1)
PLANE_END = 0x10000
GEORGIAN_CAPITALS = range(0x10A0, 0x1100)
PAIRS_A_LINE = 6
SIMPLE_UPPER = 12  # field of UnicodeData.txt


def read_ages(path):
    """The release that brought each character of the plane."""
    ages = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        content = line.partition("#")[0].strip()
        if not content:
            continue
        span, age = (part.strip() for part in content.split(";"))
        first, _, last = span.partition("..")
        release = tuple(int(number) for number in age.split("."))
        for code in range(int(first, 16), min(int(last or first, 16) + 1, PLANE_END)):
            ages[code] = release
    return ages


def read_pairs(path, ages):
    """(upper, lower) for each lower-case character, in the order of the file."""
    for line in path.read_text(encoding="utf-8").splitlines():
        fields = line.split(";")
        lower = int(fields[0], 16)
        if lower >= PLANE_END or not fields[SIMPLE_UPPER]:
            continue
        upper = int(fields[SIMPLE_UPPER], 16)
        old_enough = all(ages.get(code, (99,)) <= TABLE_AGE for code in (lower, upper))
        if old_enough and upper not in GEORGIAN_CAPITALS:
            yield upper, lower


def main():
    directory = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/unicode")
    ages = read_ages(directory / "DerivedAge.txt")
    pairs = list(read_pairs(directory / "UnicodeData.txt", ages))
    print("// Made by cmake/make_fold_table.py; not edited by hand.")
    print('#include "foundation/fold_table.h"\n')
    print("// clang-format off")
    print(f"static_assert(FoldPairCount == {len(pairs)});\n")
    print("constexpr FoldPair foldPairs[FoldPairCount] = {")
    for start in range(0, len(pairs), PAIRS_A_LINE):
        row = pairs[start : start + PAIRS_A_LINE]
        print("    " + " ".join(f"{{0x{upper:04X}, 0x{lower:04X}}}," for upper, lower in row))
    print("};")
    print("// clang-format on\n")
    print("constexpr FoldTable foldTable = buildFoldTable(foldPairs);")


if __name__ == "__main__":
    main()
