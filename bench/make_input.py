#!/usr/bin/python3
"""Builds the large benchmark input from the shared corpus.

Usage: make_input.py OUTPUT [--corpus DIR] [--size-mb N]

Every corpus file that gemmi reads without error (cod/*.cif and iucr-ciftest/real/*.cif; the
syntax tests are left out, they are made to fail) is appended in sorted order, pass after pass,
until the output reaches the wanted size. Block names must stay unique in one document, so each
data_ heading gets a suffix _r<N> from a counter that runs over the whole output; a line inside a
;-text field is text, never a heading, and is left alone. The same corpus always gives the same
bytes.

The module gemmi comes from Debian's python3-gemmi, which only the system interpreter sees: run
this with /usr/bin/python3 when another python3 comes first in PATH.
"""

import argparse
import glob
import os
import sys

try:
    import gemmi
except ImportError:
    sys.exit("make_input.py: the python module gemmi is missing "
             "(apt-get install python3-gemmi, and run with /usr/bin/python3)")


def corpus_files(corpus):
    files = sorted(glob.glob(os.path.join(corpus, "cod", "*.cif")))
    files += sorted(glob.glob(os.path.join(corpus, "iucr-ciftest", "real", "*.cif")))
    return files


def gemmi_reads(path):
    try:
        gemmi.cif.read_file(path)
        return True
    except Exception:  # any failure of gemmi's reader means the file stays out
        return False


def split_at_headings(data):
    """Returns (pieces, open_text): the file cut just after each heading word, so that a
    pass only has to join the pieces with a fresh suffix between them, and whether a
    ;-text field is still open at the end."""
    pieces = []
    start = 0
    in_text = False
    pos = 0
    end = len(data)
    while pos < end:
        nl = data.find(b"\n", pos)
        line_end = end if nl < 0 else nl + 1
        if data.startswith(b";", pos):
            in_text = not in_text
        elif not in_text:
            # The first word of the line: skip blanks, then read up to the next blank.
            i = pos
            while i < line_end and data[i] in b" \t":
                i += 1
            if data[i:i + 5].lower() == b"data_":
                j = i
                while j < line_end and data[j] not in b" \t\r\n":
                    j += 1
                pieces.append(data[start:j])
                start = j
        pos = line_end
    pieces.append(data[start:])
    return pieces, in_text


def load(path):
    with open(path, "rb") as f:
        data = f.read()
    if data.startswith(b"\xef\xbb\xbf"):
        # A byte order mark is only allowed at the very start of a document.
        data = data[3:]
    if not data.endswith(b"\n"):
        # The next file's first line must not be glued to this file's last one.
        data += b"\n"
    return data


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    default_corpus = os.path.normpath(os.path.join(here, "..", "..", "shared", "corpus"))
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("output")
    ap.add_argument("--corpus", default=os.environ.get("CIFWARD_CORPUS", default_corpus))
    ap.add_argument("--size-mb", type=float, default=200.0,
                    help="smallest output size in MB of 10^6 bytes (default 200)")
    args = ap.parse_args()

    candidates = corpus_files(args.corpus)
    if not candidates:
        sys.exit(f"make_input.py: no corpus files under {args.corpus}")

    files = []
    skipped = []
    for path in candidates:
        if not gemmi_reads(path):
            skipped.append(path)
            continue
        pieces, open_text = split_at_headings(load(path))
        if open_text:
            # Our line scan disagrees with gemmi about where text fields end; appending this
            # file would turn the files after it into text.
            skipped.append(path)
            continue
        if len(pieces) < 2:
            # No heading at all: nothing to rename, and gemmi accepted it, so it is only
            # comments; it adds nothing to measure.
            skipped.append(path)
            continue
        files.append((path, pieces))
    if not files:
        sys.exit("make_input.py: gemmi read none of the corpus files")

    target = int(args.size_mb * 1e6)
    tmp = args.output + ".part"
    os.makedirs(os.path.dirname(os.path.abspath(args.output)), exist_ok=True)
    written = 0
    counter = 0
    appended = 0
    passes = 0
    with open(tmp, "wb") as out:
        while written < target:
            passes += 1
            for _path, pieces in files:
                chunks = []
                for piece in pieces[:-1]:
                    counter += 1
                    chunks.append(piece)
                    chunks.append(b"_r%d" % counter)
                chunks.append(pieces[-1])
                blob = b"".join(chunks)
                out.write(blob)
                written += len(blob)
                appended += 1
                if written >= target:
                    break
    # Renamed only when complete, so that a run stopped half way leaves no file that looks done.
    os.replace(tmp, args.output)

    print(f"{args.output}: {written} bytes ({written / 1e6:.1f} MB)")
    print(f"{len(files)} corpus files used of {len(candidates)} "
          f"({len(skipped)} left out: gemmi rejects them or they hold no block), "
          f"{passes} passes, {appended} files appended, {counter} data blocks")


if __name__ == "__main__":
    main()
