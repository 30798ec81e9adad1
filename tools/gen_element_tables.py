#!/usr/bin/env python3
"""Generates toolkit/src/ElementTables.cpp, the compiled-in tables behind Element.

Sources of the data, both shipped by the Debian package libcod-tools-perl (the Crystallography
Open Database tools):
  * /usr/share/perl5/COD/AtomProperties.pm: atomic numbers, atomic weights, periodic group and
    period.
  * /usr/share/perl5/COD/CromerMann.pm: the Cromer-Mann X-ray scattering factor coefficients
    a1..a4, b1..b4, c of International Tables vol. C, table 6.1.1.4, for neutral atoms. Where the
    file gives a symbol twice (H), the later entry counts, as it does when Perl reads the file.

The program's own values, which its users know and which bond detection is tuned to, are kept
below rather than taken from a source: the bonding radii (BOND_RADII; 0 means "never bonds by
distance", as for the heavy actinides and the noble gases the program does not bond), the van
der Waals radii that differ from DEFAULT_VDW_RADIUS, the atomic volumes in cubic Angstroms that
the program knows (VOLUMES; 0 for the others) and the atomic weights that differ from the source
(WEIGHTS: the older published figures the program reports).

Other rules:
  * D (deuterium) is an element of its own but takes the radii and scattering factor of H.
  * "Unknown" and the pseudo-elements X, Z and Zz have atomic number 0 and weight 0.
  * Elements that CromerMann.pm lacks have all scattering coefficients 0.

Usage: tools/gen_element_tables.py > toolkit/src/ElementTables.cpp
"""

import re
import sys

ATOM_PROPERTIES = '/usr/share/perl5/COD/AtomProperties.pm'
CROMER_MANN = '/usr/share/perl5/COD/CromerMann.pm'

# The program's element codes: Unknown, then C and H (the order of a chemical formula), then the
# other symbols alphabetically, with D and the pseudo-elements X, Z and Zz among them.
SYMBOLS = [
    'Unknown', 'C', 'H', 'Ac', 'Ag', 'Al', 'Am', 'Ar', 'As', 'At', 'Au', 'B', 'Ba', 'Be', 'Bi', 'Bk',
    'Br', 'Ca', 'Cd', 'Ce', 'Cf', 'Cl', 'Cm', 'Co', 'Cr', 'Cs', 'Cu', 'D', 'Dy', 'Er', 'Es', 'Eu', 'F',
    'Fe', 'Fm', 'Fr', 'Ga', 'Gd', 'Ge', 'He', 'Hf', 'Hg', 'Ho', 'I', 'In', 'Ir', 'K', 'Kr', 'La', 'Li',
    'Lu', 'Lr', 'Md', 'Mg', 'Mn', 'Mo', 'N', 'Na', 'Nb', 'Nd', 'Ne', 'Ni', 'No', 'Np', 'O', 'Os', 'P',
    'Pa', 'Pb', 'Pd', 'Pm', 'Po', 'Pr', 'Pt', 'Pu', 'Ra', 'Rb', 'Re', 'Rh', 'Rn', 'Ru', 'S', 'Sb', 'Sc',
    'Se', 'Si', 'Sm', 'Sn', 'Sr', 'Ta', 'Tb', 'Tc', 'Te', 'Th', 'Ti', 'Tl', 'Tm', 'U', 'V', 'W', 'X',
    'Xe', 'Y', 'Yb', 'Z', 'Zn', 'Zr', 'Zz',
]
PSEUDO = {'Unknown', 'X', 'Z', 'Zz'}
DEFAULT_VDW_RADIUS = '2.0'

BOND_RADII = dict(re.findall(r'(\w+) ([\d.]+)', """
    C 0.68 H 0.23 Ac 1.88 Ag 1.59 Al 1.35 Am 1.51 Ar 1.61 As 1.21 At 0 Au 1.5 B 0.83 Ba 1.34
    Be 0.35 Bi 1.54 Bk 0 Br 1.21 Ca 0.99 Cd 1.69 Ce 1.83 Cf 0 Cl 0.99 Cm 0 Co 1.33 Cr 1.35 Cs 1.67
    Cu 1.52 D 0.23 Dy 1.75 Er 1.73 Es 0 Eu 1.99 F 0.64 Fe 1.34 Fm 0 Fr 0 Ga 1.22 Gd 1.79 Ge 1.17
    He 0.2 Hf 1.57 Hg 1.7 Ho 1.74 I 1.4 In 1.63 Ir 1.32 K 1.33 Kr 1.45 La 1.87 Li 0.68 Lu 1.72
    Lr 0 Md 0 Mg 1.1 Mn 1.35 Mo 1.47 N 0.68 Na 0.97 Nb 1.48 Nd 1.81 Ne 0.68 Ni 1.5 No 0 Np 1.55
    O 0.68 Os 1.37 P 1.05 Pa 1.61 Pb 1.54 Pd 1.5 Pm 1.8 Po 1.68 Pr 1.82 Pt 1.5 Pu 1.53 Ra 1.9
    Rb 1.47 Re 1.35 Rh 1.45 Rn 0 Ru 1.4 S 1.02 Sb 1.46 Sc 1.44 Se 1.22 Si 1.2 Sm 1.8 Sn 1.46
    Sr 1.12 Ta 1.43 Tb 1.76 Tc 1.35 Te 1.47 Th 1.79 Ti 1.47 Tl 1.55 Tm 1.72 U 1.58 V 1.33 W 1.37
    X 0 Xe 1.62 Y 1.78 Yb 1.94 Z 0 Zn 1.45 Zr 1.56 Zz 0
"""))

VDW_RADII = dict(re.findall(r'(\w+) ([\d.]+)', """
    C 1.7 H 1.2 Ag 1.72 Ar 1.88 As 1.85 Au 1.66 Br 1.85 Cd 1.58 Cl 1.75 Cu 1.4 D 1.2 F 1.47
    Ga 1.87 He 1.4 Hg 1.55 I 1.98 In 1.93 K 2.75 Kr 2.02 Li 1.82 Mg 1.73 N 1.55 Na 2.27 Ne 1.54
    Ni 1.63 O 1.52 P 1.8 Pb 2.02 Pd 1.63 Pt 1.72 S 1.8 Se 1.9 Si 2.1 Sn 2.17 Te 2.06 Tl 1.96
    U 1.86 Xe 2.16 Zn 1.39
"""))

VOLUMES = dict(re.findall(r'(\w+) ([\d.]+)', """
    C 13.87 H 5.08 Ac 74 Ag 35 Al 39.6 Am 17 Ar 30 As 36.4 At 55 Au 43 B 13.24 Ba 66 Be 36
"""))

WEIGHTS = {'D': '2', 'O': '15.9994', 'Zn': '65.37'}


def read_atom_properties(path):
    text = open(path).read()
    body = text[text.index('%COD::AtomProperties::atoms = ('):]
    atoms = {}
    for m in re.finditer(r'"([A-Za-z.]+)"\s*=>\s*\{(.*?)\n\s*\},', body, re.S):
        fields = re.sub(r'#.*', '', m.group(2))
        atoms[m.group(1)] = dict(re.findall(r'"(\w+)"\s*=>\s*"?([^",\n\]]+)"?', fields))
    return atoms


def read_cromer_mann(path):
    """Neutral atoms only: a1..a4, b1..b4, c. A later entry of the same symbol replaces the first."""
    out = {}
    for m in re.finditer(r"^'([A-Z][a-z]?)' => \[([^\]]*)\]", open(path).read(), re.M):
        out[m.group(1)] = [x.strip() for x in m.group(2).split(',')]
    return out


def number(text):
    """The source's own digits, without trailing zeros, as a C++ literal."""
    v = text.strip()
    if '.' in v:
        v = v.rstrip('0').rstrip('.')
    return v if v not in ('', '-0') else '0'


def main():
    atoms = read_atom_properties(sys.argv[1] if len(sys.argv) > 1 else ATOM_PROPERTIES)
    sf = read_cromer_mann(sys.argv[2] if len(sys.argv) > 2 else CROMER_MANN)
    rows = []
    for sym in SYMBOLS:
        if sym in PSEUDO:
            rows.append(dict(z='0', weight='0', bond=number(BOND_RADII.get(sym, '0')),
                             vdw=number(DEFAULT_VDW_RADIUS), volume='0', group='0', period='0',
                             sf=['0'] * 9))
            continue
        a = atoms[sym]
        # A bracketed weight is the mass number of the longest-lived isotope.
        weight = WEIGHTS.get(sym, a['atomic_weight'].strip('[]'))
        rows.append(dict(z=a['atomic_number'], weight=number(weight), bond=number(BOND_RADII[sym]),
                         vdw=number(VDW_RADII.get(sym, DEFAULT_VDW_RADIUS)),
                         volume=number(VOLUMES.get(sym, '0')),
                         group=a['group'], period=re.match(r'\d+', a['period']).group(0),
                         sf=[number(x) for x in sf.get(sym if sym != 'D' else 'H', ['0'] * 9)]))

    out = []
    w = out.append
    w('// Generated by tools/gen_element_tables.py from /usr/share/perl5/COD/AtomProperties.pm and')
    w('// /usr/share/perl5/COD/CromerMann.pm (Debian package libcod-tools-perl) and the program\'s own')
    w('// radii, volumes and weights kept in the generator. Do not edit: change the generator and run')
    w('// it again.')
    w('// clang-format off')
    w('#include "ElementTables.h"')
    w('')
    w('namespace ElementTables {')
    w('')
    w('const char* const symbols[element_count] = {')
    w('    ' + ', '.join('"%s"' % s for s in SYMBOLS) + ',')
    w('};')

    def table(ctype, name, key, comment):
        w('')
        w('// ' + comment)
        w('const %s %s[element_count] = {' % (ctype, name))
        for sym, row in zip(SYMBOLS, rows):
            w('    %s, // %s' % (row[key], sym))
        w('};')

    table('int8_t', 'atomic_numbers', 'z', 'Atomic numbers; 0 for Unknown and the pseudo-elements.')
    table('double', 'atomic_weights', 'weight', 'Atomic weights.')
    table('double', 'bond_radii', 'bond', 'Bonding radii in Angstroms; 0 never bonds.')
    table('double', 'vdw_radii', 'vdw', 'Van der Waals radii in Angstroms.')
    table('double', 'volumes', 'volume', 'Atomic volumes in cubic Angstroms; 0 where the program knows none.')
    table('int8_t', 'periodic_groups', 'group', 'Periodic group 1 to 18; 19 lanthanides, 20 actinides.')
    table('int8_t', 'periods', 'period', 'Period (row of the periodic table).')
    w('')
    w('// Cromer-Mann coefficients a1, b1, a2, b2, a3, b3, a4, b4, c.')
    w('const double cromer_mann[element_count][9] = {')
    for sym, row in zip(SYMBOLS, rows):
        a, b, c = row['sf'][0:4], row['sf'][4:8], row['sf'][8]
        inter = [x for pair in zip(a, b) for x in pair] + [c]
        w('    {%s}, // %s' % (', '.join(inter), sym))
    w('};')
    w('')
    w('} // namespace ElementTables')
    sys.stdout.write('\n'.join(out) + '\n')


if __name__ == '__main__':
    main()
