#!/usr/bin/env python3
"""Keeps a ledger.

A 'quote' or a "text" in here is the text, # is no comment.
"""
from __future__ import annotations
import re as regex, sys
from dataclasses import dataclass, field

LIMIT, MASK, BITS, OCTAL = 1_000_000, 0xFF, 0b1010, 0o17
RATE, SMALL, WAVE, HALF = 1.5, 1e-10, 2j, .5
WORDS = regex.compile(r"(\w+)\s*=\s*\"(.*)\"$")
BYTES = b'\x00raw' + rb"\d" + BR'\w'
marks = 'it\'s', "tab\t \u00e4 \N{BULLET} \"quoted\"", u"unicode"


@dataclass(frozen=True)
class Entry:
    """One line."""
    name: str
    amount: float = 0.0
    tags: list[str] = field(default_factory=list)

    @property
    def label(self) -> str:
        return f"{self.name!r:>10}: {self.amount:.2f} {{net}}\t{', '.join(self.tags)}"

    @app.route("/entries/<int:number>", methods=["GET"])
    def show(self, number):
        text = f'''entry {number}
        {dict(a=1)['a']} and { {'b': 2}['b'] } it's
        '''
        raw = rf"\d+{number}\n"
        return text % (raw,) if number else None

    @staticmethod
    async def load(path, *args, **kwargs):
        async with open(path) as source:
            lines = [line async for line in source if not line.startswith('#')]
        try:
            yield from map(Entry, lines)
        except (OSError, ValueError) as problem:
            raise RuntimeError("cannot read " + path) from problem
        finally:
            pass


def total(entries, /, start=0, *, rate=1 / 3):
    global LIMIT
    match entries:
        case []: return start
        case [Entry(name="x") as first, *rest] if rest is not None:
            del first
    text = "goes \
        on" + 'and \
        on'
    size = len(entries) @ matrix
    while (n := size) > 0 and n != LIMIT or not True:
        size //= 2 ** 1; size ^= ~n << 1
        if isinstance(n, int): continue
        else: break
    assert start >= 0, 'negative'
    return lambda value: sum(e.amount for e in entries) + value

'''A text for nobody.
def hidden(): pass
'''
print("never closed, ends with its line)
print('neither)
after = None  # the end
text = """never closed
hidden = True
