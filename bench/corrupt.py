#!/usr/bin/python3
"""Writes damaged copies of CIF files, the same bytes on every run.

Usage: corrupt.py OUTDIR FILE...

For each FILE, a few copies, each with one kind of damage a reader meets in practice: cut short
(in a text field, in a loop, mid-line), bytes flipped to other bytes (quotes, semicolons, control
bytes, NUL, bytes of 128 and above), lines deleted or repeated, line ends changed to CR or CR LF,
blocks repeated. Used by compare-output.sh to show that two builds of the checker agree on bad
input as well as on good.
"""

import os
import random
import sys


def damaged(data, rng):
    lines = data.split(b"\n")
    n = len(data)
    yield "cut", data[: rng.randrange(n)] if n else data
    yield "cut-late", data[: n - rng.randrange(1, 64)] if n > 64 else data
    flipped = bytearray(data)
    for _ in range(max(1, n // 2000)):
        if n:
            flipped[rng.randrange(n)] = rng.choice(b"'\";#_\x00\x07\x1a\xe9\xff \t\r\n")
    yield "flip", bytes(flipped)
    kept = [l for l in lines if rng.random() > 0.05]
    yield "drop-lines", b"\n".join(kept)
    doubled = []
    for l in lines:
        doubled.append(l)
        if rng.random() < 0.03:
            doubled.append(l)
    yield "repeat-lines", b"\n".join(doubled)
    yield "cr", data.replace(b"\n", b"\r")
    yield "crlf", data.replace(b"\n", b"\r\n")
    yield "twice", data + b"\n" + data


def main():
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    for path in sys.argv[2:]:
        with open(path, "rb") as f:
            data = f.read()
        rng = random.Random(os.path.basename(path))
        stem = os.path.splitext(os.path.basename(path))[0]
        for kind, text in damaged(data, rng):
            with open(os.path.join(out, "%s.%s.cif" % (stem, kind)), "wb") as f:
                f.write(text)


if __name__ == "__main__":
    main()
