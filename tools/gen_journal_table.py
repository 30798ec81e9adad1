#!/usr/bin/env python3
"""Generates wizards/JournalTable.cpp, the compiled-in journal table.

Sources, all in ../shared/journals (its README.md gives their provenance):
  - cod-journals.lst: the journals that Crystallography Open Database entries cite, from the COD
    tools repository (doc/journal-names/COD-journals.lst, cod-tools, GPL-2, commit
    147d0610a7847ee609ea636667f3e7ee7e99eb59). One line per spelling, "abbreviation:full name";
    an abbreviation may carry several full names (a title that changed, years in brackets), a
    leading "?" marks an abbreviation COD is unsure of, and "?" alone one it does not know.
    "&colon;" stands for a colon inside an abbreviation.
  - codens-from-corpus.tsv: pairs of _journal_coden_ASTM and _journal_name_full found in public
    COD CIFs.
  - README.md: five records of an older table of this layout, quoted in full.

Nothing is typed in here: every name, CODEN and year of the output comes from those files.

One record per journal:
  1. The lines of cod-journals.lst are grouped by abbreviation, compared without regard to case,
     blanks and punctuation. A line with no abbreviation joins the group that already lists its
     full name, or else forms a journal of its own, named by that full name without its bracketed
     years.
  2. A CODEN joins the group that lists its journal name among the full names. A journal that
     carries two CODENs (a series renamed under a new CODEN) gives one record per CODEN; a CODEN
     whose name no group lists gives a record of its own, named as the CIF names it.
  3. Each of the five quoted records takes the place of the journal with the same CODEN, or
     failing that the same name (compared as in step 1), and keeps its name, year and flags.
  4. The records are numbered from 1 in the order of their names; the numbering is this table's
     own, so the quoted records keep their text but not their old numbers. A journal without a
     CODEN carries its number, as six digits, in the CODEN's place.

Record layout: columns 0-3 the number (four digits), 4 blank, 5-10 the CODEN, 11-16 the year of a
single publication (0 for a serial), 17-32 four flags of four columns each, 33 onwards the name.
Every quoted record has the flags 1 0 0 1; the second is the one the program reads, as
"discontinued", and it is set here when the journal's full names date it with closed ranges of
years only. The first and the fourth are 1, as in every quoted record; the third is 0.

Usage: tools/gen_journal_table.py [JOURNALS_DIR] > wizards/JournalTable.cpp
"""

import os
import re
import sys

JOURNALS_DIR = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'shared', 'journals')

QUOTED_RECORD = re.compile(r'^    (\d{4}) (\S{6})([ \d]{6})([ \d]{4})([ \d]{4})([ \d]{4})([ \d]{4})(.+)$')
# A bracketed span of years at the end of a full name: "(1,1948-23,1967)", "(39,1983-)",
# "(1884 - 1965)", "(- 1925)".
YEARS = re.compile(r'\s*\(([^()]*-[^()]*)\)\s*$')
CLOSED_YEARS = re.compile(r'-\s*(?:\d+,)?\s*\d{4}$')
OPEN_YEARS = re.compile(r'\d{4}\s*-\s*$')


def key(text):
    return ''.join(c for c in text.casefold() if c.isalnum())


def full_key(text):
    return ' '.join(text.casefold().split())


class Journal:
    def __init__(self, name):
        self.name = name
        self.full_names = []
        self.codens = []
        self.year = 0
        self.flags = None

    def discontinued(self):
        spans = [m.group(1).strip() for m in map(YEARS.search, self.full_names) if m]
        closed = [s for s in spans if CLOSED_YEARS.search(s)]
        opened = [s for s in spans if OPEN_YEARS.search(s)]
        return 1 if closed and not opened else 0


def read_cod_list(path):
    """(abbreviation or None, full name) per line; the separator is the first colon that a
    non-blank follows, since abbreviations may hold a colon and a blank ("J. Phys. C: ...")."""
    entries = []
    with open(path, encoding='ascii') as f:
        for line in f:
            line = line.rstrip('\n')
            m = re.search(r':(?=\S)', line)
            if not m:
                sys.exit(f'{path}: no separator in: {line}')
            abbreviation = line[:m.start()].replace('&colon;', ':').lstrip('?').strip()
            entries.append((abbreviation or None, line[m.end():].strip()))
    return entries


def group_journals(entries):
    by_key = {}
    journals = []
    # Abbreviated lines first, so that a line without one finds the group that lists its name.
    for abbreviation, full in entries:
        if abbreviation is None:
            continue
        journal = by_key.get(key(abbreviation))
        if journal is None:
            journal = by_key[key(abbreviation)] = Journal(abbreviation)
            journals.append(journal)
        journal.full_names.append(full)
    by_full = {full_key(n): j for j in journals for n in j.full_names}
    for abbreviation, full in entries:
        if abbreviation is not None:
            continue
        journal = by_full.get(full_key(full))
        if journal is None:
            name = YEARS.sub('', full)
            journal = by_key.get(key(name))
            if journal is None:
                journal = by_key[key(name)] = Journal(name)
                journals.append(journal)
        journal.full_names.append(full)
        by_full[full_key(full)] = journal
    return journals, by_full


def read_codens(path):
    pairs = []
    with open(path, encoding='ascii') as f:
        for line in f:
            if line.startswith('#') or not line.strip():
                continue
            coden, name = line.rstrip('\n').split('\t')
            pairs.append((coden, name))
    return pairs


def read_quoted_records(path):
    records = []
    with open(path, encoding='ascii') as f:
        for line in f:
            m = QUOTED_RECORD.match(line.rstrip('\n'))
            if m:
                coden = m.group(2)
                records.append({
                    'coden': None if coden.isdigit() else coden,
                    'year': int(m.group(3)),
                    'flags': tuple(int(m.group(i)) for i in range(4, 8)),
                    'name': m.group(8),
                })
    if len(records) != 5:
        sys.exit(f'{path}: expected five quoted records, found {len(records)}')
    return records


def split_by_coden(journals, by_full, pairs, quoted):
    """One record per (journal, CODEN); journals that no CODEN reaches stay as they are."""
    quoted_codens = {q['coden'] for q in quoted if q['coden']}
    for coden, name in pairs:
        journal = by_full.get(full_key(name))
        if journal is None:
            journal = by_full[full_key(name)] = Journal(name)
            journal.full_names.append(name)
            journals.append(journal)
        if coden not in journal.codens:
            journal.codens.append(coden)
    records = []
    for journal in journals:
        if len(journal.codens) <= 1:
            records.append(journal)
            continue
        # The group's name goes to the CODEN no quoted record claims; each further CODEN is named
        # by the CIFs that cite it.
        named = False
        for coden in journal.codens:
            names = [n for c, n in pairs if c == coden]
            part = Journal(journal.name)
            part.codens = [coden]
            part.full_names = names
            if coden not in quoted_codens:
                if named:
                    part.name = names[0]
                named = True
            records.append(part)
    return records


def apply_quoted(records, quoted):
    for q in quoted:
        match = None
        if q['coden']:
            match = next((r for r in records if q['coden'] in r.codens), None)
        if match is None:
            match = next((r for r in records if key(r.name) == key(q['name'])), None)
        if match is None:
            match = Journal(q['name'])
            records.append(match)
        match.name = q['name']
        match.year = q['year']
        match.flags = q['flags']
        match.codens = [q['coden']] if q['coden'] else []


def c_string(text):
    return '"' + text.replace('\\', '\\\\').replace('"', '\\"') + '"'


def main():
    directory = sys.argv[1] if len(sys.argv) > 1 else JOURNALS_DIR
    journals, by_full = group_journals(read_cod_list(os.path.join(directory, 'cod-journals.lst')))
    quoted = read_quoted_records(os.path.join(directory, 'README.md'))
    records = split_by_coden(journals, by_full, read_codens(os.path.join(directory, 'codens-from-corpus.tsv')),
                             quoted)
    apply_quoted(records, quoted)
    records.sort(key=lambda r: (key(r.name), r.name))
    if len(records) > 9999:
        sys.exit('more journals than four digits can number')

    lines = []
    for number, r in enumerate(records, start=1):
        coden = r.codens[0] if r.codens else f'{number:06d}'
        flags = r.flags or (1, r.discontinued(), 0, 1)
        lines.append(f'{number:04d} {coden:6.6}{r.year:6d}' + ''.join(f'{f:4d}' for f in flags) + r.name)

    out = sys.stdout
    out.write('// Generated by tools/gen_journal_table.py from ../shared/journals (the journals that COD\n'
              '// entries cite, CODENs from public CIFs); run it again rather than editing this file.\n'
              '// clang-format off\n')
    out.write('#include "JournalTable.h"\n\n')
    out.write('namespace {\n')
    out.write('// From the highest number down to 1, so that record n stands at size() - n.\n')
    out.write('const char* const records[] = {\n')
    for line in reversed(lines):
        out.write(f'    {c_string(line)},\n')
    out.write('};\n')
    out.write('} // namespace\n\n')
    out.write('const char* const* JournalTable::records()\n{\n    return ::records;\n}\n\n')
    out.write('std::size_t JournalTable::size()\n{\n    return sizeof(::records) / sizeof(::records[0]);\n}\n')


if __name__ == '__main__':
    main()
