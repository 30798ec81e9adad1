#!/usr/bin/env python3
"""Generates toolkit/src/SpacegroupTable.cpp, the compiled-in space group table.

Source of the data: the CCP4 symmetry library file syminfo.lib, shipped by the Debian package
libccp4-data at /usr/share/ccp4/syminfo.lib (apt-get install libccp4-data). Every operator in the
output comes from that file; nothing numeric is typed in here.

How a row is made, for each name of the program's vocabulary below (in table order):
  1. A name that is the compact form of a setting's extended Hermann-Mauguin symbol in syminfo.lib
     (blanks removed, the 1s of the b-unique monoclinic short form dropped, "r" appended for
     rhombohedral axes, "3" read as "-3" in the old cubic spellings) takes that setting's
     operators. Where syminfo.lib gives two origins, the one on an inversion centre is taken.
  2. A setting syminfo.lib lacks is derived by a change of basis x = P x' from a setting of a
     group whose number lies between those of its neighbours in the table: P runs over the integer
     matrices with entries -1, 0, 1 and determinant 1, 2 or 4 (so centred supercells such as A1 or
     F2/d are reached), simplest first, and the first P whose transformed group agrees with the
     symbol is taken. Agreement means: the same centring vectors, the same point group (rotation
     parts) as the symbol generates, and, for each position of the symbol, an element of the named
     kind (rotation or screw with its intrinsic translation, mirror or glide with its glide vector).
  3. Groups whose number is centrosymmetric get their origin moved onto an inversion centre, and
     store only their proper operators: the program appends the images under inversion itself.
  4. Incomplete symbols (a '*' for an element left open) store the identity only. Their number is
     500 plus the highest number of a complete row that has the same Laue group and the same
     systematic absences, found from a representative complete symbol (the '*'s filled in); when
     no such symbol is a name of the table, from the group that the symbol itself generates.
  5. Two names agree with no setting of any neighbouring number: I2/n (an n glide in an I lattice
     is also a mirror, so the group is one of number 12) and I*aa. They keep the row and number
     that their place gives, with the operators that their symbols generate, so that a file
     naming them still finds a row.
  6. C2/c stands under two settings of number 15 (5 and 6). Nothing in the vocabulary tells the
     second apart from the first, so it repeats the first's operators rather than invent others.

Usage: tools/gen_spacegroup_table.py [syminfo.lib] > toolkit/src/SpacegroupTable.cpp
"""

import itertools
import re
import sys
from fractions import Fraction as Fr

SYMINFO = '/usr/share/ccp4/syminfo.lib'

# The program's space group names, each once, in table order. A name may stand for several rows
# only where the same symbol is read under several settings; this list gives one row per name.
NAMES = [
    'P1', 'A1', 'B1', 'C1', 'F1', 'I1', 'P-1', 'A-1', 'B-1', 'C-1', 'F-1', 'I-1', 'P2', 'P112',
    'P2111', 'P21', 'B21', 'C1121', 'P1121', 'A2', 'C2', 'C21', 'F2', 'I2', 'I21', 'A112', 'B112',
    'Pm', 'P11m', 'Pa', 'Pc', 'Pn', 'P11a', 'P11b', 'P11n', 'C11a', 'C11b', 'Am', 'Cm', 'Im',
    'A11m', 'B11m', 'Fd11', 'Aa', 'An', 'Cc', 'Cn', 'Ia', 'Ic', 'A11a', 'B11b', 'P2/m', 'P112/m',
    'P21/m', 'B21/m', 'P1121/m', 'C2/m11', 'A2/m', 'C2/a', 'C2/m', 'F2/m', 'I2/m', 'A112/m',
    'B112/m', 'I112/m', 'A2/c', 'I2/m11', 'P2/c11', 'P2/a', 'P2/c', 'P2/n', 'P112/a', 'P112/b',
    'P112/n', 'C112/a', 'C112/b', 'B2/c', 'P21/b11', 'P21/c11', 'P21/n11', 'P21/a', 'P21/c',
    'P21/n', 'B21/a', 'B21/c', 'B21/d', 'P1121/a', 'P1121/b', 'P1121/n', 'C2/c11', 'I2/c11',
    'A2/a', 'A2/n', 'C2/c', 'C2/n', 'F2/d', 'I2/a', 'I2/c', 'I2/n', 'I21/a', 'I21/c', 'A112/a',
    'B112/b', 'B112/n', 'B1121/b', 'I112/a', 'I112/b', 'P222', 'P2221', 'P2122', 'P2212', 'P21212',
    'P22121', 'P21221', 'P212121', 'C2221', 'C212121', 'A2122', 'B2212', 'C222', 'C21212', 'A222',
    'B222', 'F222', 'F212121', 'I222', 'I212121', 'Pmm2', 'P2mm', 'Pm2m', 'Pmc21', 'P21ma',
    'Pb21m', 'Pm21b', 'Pcm21', 'P21am', 'Pcc2', 'P2aa', 'Pb2b', 'Pma2', 'P2mb', 'Pc2m', 'Pm2a',
    'Pbm2', 'P2cm', 'Pca21', 'P21ab', 'Pc21b', 'Pb21a', 'Pbc21', 'P21ca', 'Pnc2', 'P2na', 'Pb2n',
    'Pn2b', 'Pcn2', 'P2an', 'Pmn21', 'P21mn', 'Pn21m', 'Pm21n', 'Pnm21', 'P21nm', 'Pba2', 'P2cb',
    'Pc2a', 'Pna21', 'P21nb', 'Pc21n', 'Pn21a', 'Pbn21', 'P21cn', 'Pnn2', 'P2nn', 'Pn2n', 'Cmm2',
    'Cba2', 'A2mm', 'Bm2m', 'Cmc21', 'A21ma', 'Bb21m', 'Bm21b', 'Ccm21', 'Cbn21', 'Cna21', 'A21am',
    'Ccc2', 'Cnn2', 'A2aa', 'Bb2b', 'Amm2', 'Anc21', 'B2mm', 'Cm2m', 'Am2m', 'Bmm2', 'C2mm',
    'Abm2', 'Acc21', 'B2cm', 'Cm2a', 'Ac2m', 'Bma2', 'C2mb', 'Ama2', 'Ann21', 'B2mb', 'Cc2m',
    'Am2a', 'Bbm2', 'C2cm', 'Aba2', 'Acn21', 'B2cb', 'Cc2a', 'Ac2a', 'Bba2', 'C2cb', 'Ab2a',
    'B2ab', 'C2ca', 'Cc2b', 'Fmm2', 'F2mm', 'Fm2m', 'Fdd2', 'Fdd21', 'F2dd', 'Fd2d', 'Imm2',
    'Inn21', 'I2mm', 'Im2m', 'Iba2', 'Icc21', 'I2cb', 'Ic2a', 'Ib2a', 'Ima2', 'Inc21', 'I2mb',
    'Ic2m', 'Im2a', 'Ibm2', 'I2cm', 'I2ma', 'I2am', 'Pmmm', 'Pnnn', 'Pccm', 'Pmaa', 'Pbmb', 'Pban',
    'Pncb', 'Pcna', 'Pmma', 'Pbmm', 'Pmcm', 'Pmam', 'Pmmb', 'Pcmm', 'Pnna', 'Pbnn', 'Pncn', 'Pnan',
    'Pnnb', 'Pcnn', 'Pmna', 'Pbmn', 'Pncm', 'Pman', 'Pnmb', 'Pcnm', 'Pcca', 'Pbaa', 'Pbcb', 'Pbab',
    'Pccb', 'Pcaa', 'Pbam', 'Pmcb', 'Pcma', 'Pccn', 'Pnaa', 'Pbnb', 'Pbcm', 'Pmca', 'Pbma', 'Pcmb',
    'Pcam', 'Pmab', 'Pnnm', 'Pmnn', 'Pnmn', 'Pmmn', 'Pnmm', 'Pmnm', 'Pbcn', 'Pnca', 'Pbna', 'Pcnb',
    'Pcan', 'Pnab', 'Pbca', 'Pcab', 'Pnma', 'Pbnm', 'Pmcn', 'Pnam', 'Pmnb', 'Pcmn', 'Cmcm', 'Cbnn',
    'Amma', 'Bbmm', 'Bmmb', 'Ccmm', 'Amam', 'Cmca', 'Cbnb', 'Abma', 'Bbcm', 'Bmab', 'Ccmb', 'Acam',
    'Abam', 'Bbam', 'Ccma', 'Cmmm', 'Cban', 'Ammm', 'Bmmm', 'Cccm', 'Cnnn', 'Amaa', 'Bbmb', 'Cmma',
    'Cbab', 'Abmm', 'Bmcm', 'Bmam', 'Cmmb', 'Acmm', 'Ccca', 'Cnnb', 'Abaa', 'Bbcb', 'Bbab', 'Cccb',
    'Acaa', 'Abnn', 'Fmmm', 'Fddd', 'Immm', 'Innn', 'Ibam', 'Iccn', 'Imcb', 'Icma', 'Ibma', 'Ibca',
    'Icab', 'Imma', 'Innb', 'Ibmm', 'Imcm', 'Imam', 'Immb', 'Icmm', 'P4', 'P41', 'P42', 'P43',
    'I4', 'I41', 'P-4', 'I-4', 'P4/m', 'P42/m', 'P4/n', 'P42/n', 'I4/m', 'I41/a', 'P422', 'P4212',
    'P4122', 'P41212', 'C41221', 'P4222', 'P42212', 'P4322', 'P43212', 'I422', 'I4122', 'P4mm',
    'P4bm', 'P42cm', 'P42nm', 'P4cc', 'P4nc', 'P42mc', 'P42bc', 'I4mm', 'I4cm', 'I41md', 'I41cd',
    'P-42m', 'P-42c', 'P-421m', 'C-4m21', 'P-421c', 'P-4m2', 'P-4c2', 'P-4b2', 'P-4n2', 'I-4m2',
    'I-4c2', 'I-42m', 'I-42d', 'P4/mmm', 'P4/mcc', 'P4/nbm', 'P4/nnc', 'P4/mbm', 'P4/mnc',
    'P4/nmm', 'P4/ncc', 'P42/mmc', 'P42/mcm', 'P42/nbc', 'P42/nnm', 'P42/mbc', 'P42/mnm',
    'P42/nmc', 'P42/ncm', 'I4/mmm', 'I4/mcm', 'I41/amd', 'I41/acd', 'P3', 'P31', 'P32', 'R3',
    'R3r', 'P-3', 'R-3', 'R-3r', 'P312', 'P321', 'P3112', 'P3121', 'P3212', 'P3221', 'R32', 'R32r',
    'P3m1', 'P31m', 'P3c1', 'P31c', 'R3m', 'R3mr', 'R3c', 'R3cr', 'P-31m', 'P-31c', 'P-3m1',
    'P-3c1', 'R-3m', 'R-3mr', 'R-3c', 'R-3cr', 'P6', 'P61', 'P65', 'P62', 'P64', 'P63', 'P-6',
    'P6/m', 'P63/m', 'P622', 'P6122', 'P6522', 'P6222', 'P6422', 'P6322', 'P6mm', 'P6cc', 'P63cm',
    'P63mc', 'P-6m2', 'P-6c2', 'P-62m', 'P-62c', 'P6/mmm', 'P6/mcc', 'P63/mcm', 'P63/mmc', 'P23',
    'F23', 'I23', 'P213', 'I213', 'Pm3', 'Pm-3', 'Pn3', 'Pn-3', 'Fm3', 'Fm-3', 'Fd3', 'Fd-3',
    'Im3', 'Im-3', 'Pa3', 'Pb3', 'Pa-3', 'Pb-3', 'Ia3', 'Ia-3', 'P432', 'P4232', 'F432', 'F4132',
    'I432', 'P4332', 'P4132', 'I4132', 'P-43m', 'F-43m', 'I-43m', 'P-43n', 'F-43c', 'I-43d',
    'Pm3m', 'Pm-3m', 'Pn3n', 'Pn-3n', 'Pm3n', 'Pm-3n', 'Pn3m', 'Pn-3m', 'Fm3m', 'Fm-3m', 'Fm3c',
    'Fm-3c', 'Fd3m', 'Fd-3m', 'Fd3c', 'Fd-3c', 'Im3m', 'Im-3m', 'Ia3d', 'Ia-3d', 'P*', 'P*/*',
    'P21/*', 'A*/*', 'C*/*', 'I*/*', 'P*/a', 'P*/c', 'P*/n', 'A*/a', 'C*/c', 'I*/a', 'P***',
    'P*aa', 'Pb*b', 'Pcc*', 'P**a', 'P**b', 'P*a*', 'P*c*', 'Pb**', 'Pc**', 'P*an', 'P*na', 'Pb*n',
    'Pcn*', 'Pn*b', 'Pnc*', 'P*cb', 'Pba*', 'Pc*a', 'P*ab', 'P*ca', 'Pb*a', 'Pbc*', 'Pc*b', 'Pca*',
    'P*nn', 'Pn*n', 'Pnn*', 'P**n', 'P*n*', 'Pn**', 'P*cn', 'P*nb', 'Pbn*', 'Pc*n', 'Pn*a', 'Pna*',
    'A**a', 'A*a*', 'B**b', 'Bb**', 'C*c*', 'Cc**', 'Ab*a', 'Aba*', 'B*ab', 'Bba*', 'C*ca', 'Cc*a',
    'A***', 'B***', 'C***', 'A*aa', 'Bb*b', 'Ccc*', 'Ab**', 'B*a*', 'C**a', 'F***', 'I***', 'Im**',
    'I*aa', 'Ib*a', 'Iba*', 'I**a', 'I*a*', 'Ib**', 'P41,3', 'P4/*', 'P42/*', 'I4/*', 'P41,322',
    'P41,3212', 'P421*', 'I4*d', 'P4/***', 'P4/*cc', 'P4/*b*', 'P4/*nc', 'P4/**c', 'P4/*c*',
    'P4/*bc', 'P4/*n*', 'I4/***', 'I4/*c*', 'P31,2', 'P*,-3', 'R*', 'P31,212', 'P31,221', 'P31*',
    'P*1c,-3m', 'P3*1', 'P*c1,-3m', 'R**', 'R*c', 'P61,5', 'P62,4', 'P6/*', 'P63/*', 'P61,522',
    'P62,422', 'P6/***', 'P6/*cc', 'P6/*c*', 'P6/**c', 'P*3', 'F*3', 'I*3', 'P41,332', 'P*3*',
    'P*3n', 'F*3*', 'F*3c',
]

# Names that stand under more than one setting, with how many rows they take.
REPEATED = {'C2/c': 2}

CENTROSYMMETRIC = [(2, 2), (10, 15), (47, 74), (83, 88), (123, 142), (147, 148), (162, 167),
                   (175, 176), (191, 194), (200, 206), (221, 230)]


def is_incomplete(name):
    return '*' in name or ',' in name


def is_centrosymmetric(number):
    return any(lo <= number <= hi for lo, hi in CENTROSYMMETRIC)


# ---------------------------------------------------------------------------------------------
# Operators: (R, t) with R a tuple of 9 ints (rows) and t a tuple of 3 Fractions in [0, 1).

def mod1(t):
    return tuple(x - (x.numerator // x.denominator) for x in t)


def parse_op(text):
    rows, trans = [], []
    for field in text.replace(' ', '').lower().split(','):
        row = [0, 0, 0]
        rest = field
        for m in re.finditer(r'([+-]?)([xyz])', field):
            row['xyz'.index(m.group(2))] = -1 if m.group(1) == '-' else 1
        rest = re.sub(r'[+-]?[xyz]', '', field)
        value = Fr(0)
        for m in re.finditer(r'([+-]?)(\d+)(?:/(\d+))?', rest):
            v = Fr(int(m.group(2)), int(m.group(3) or 1))
            value += -v if m.group(1) == '-' else v
        rows.extend(row)
        trans.append(value)
    return tuple(rows), mod1(tuple(trans))


def mat_mul(a, b):
    return tuple(sum(a[3 * i + k] * b[3 * k + j] for k in range(3)) for i in range(3) for j in range(3))


def mat_vec(a, v):
    return tuple(sum(a[3 * i + k] * v[k] for k in range(3)) for i in range(3))


def det3(a):
    return (a[0] * (a[4] * a[8] - a[5] * a[7]) - a[1] * (a[3] * a[8] - a[5] * a[6])
            + a[2] * (a[3] * a[7] - a[4] * a[6]))


def inverse3(a):
    d = Fr(det3(a))
    cof = [a[4] * a[8] - a[5] * a[7], a[2] * a[7] - a[1] * a[8], a[1] * a[5] - a[2] * a[4],
           a[5] * a[6] - a[3] * a[8], a[0] * a[8] - a[2] * a[6], a[2] * a[3] - a[0] * a[5],
           a[3] * a[7] - a[4] * a[6], a[1] * a[6] - a[0] * a[7], a[0] * a[4] - a[1] * a[3]]
    return tuple(Fr(c) / d for c in cof)


IDENTITY = (1, 0, 0, 0, 1, 0, 0, 0, 1)
MINUS_IDENTITY = tuple(-x for x in IDENTITY)


def op_mul(a, b):
    return mat_mul(a[0], b[0]), mod1(tuple(x + y for x, y in zip(mat_vec(a[0], b[1]), a[1])))


def closure(ops):
    group = list(dict.fromkeys(ops))
    seen = set(group)
    i = 0
    while i < len(group):
        for b in list(group):
            c = op_mul(group[i], b)
            if c not in seen:
                seen.add(c)
                group.append(c)
        i += 1
        if len(group) > 1000:
            raise RuntimeError('operators do not close')
    return group


def rotation_order(r):
    p = r
    for n in range(1, 7):
        if p == IDENTITY:
            return n
        p = mat_mul(p, r)
    raise RuntimeError('not a crystallographic rotation')


def op_text(op):
    r, t = op
    fields = []
    for i in range(3):
        s = ''
        if t[i]:
            s += str(t[i])
        for j in range(3):
            c = r[3 * i + j]
            if c:
                s += ('+' if c > 0 else '-') + 'xyz'[j]
        fields.append(s.lstrip('+'))
    return ','.join(fields)


# ---------------------------------------------------------------------------------------------
# syminfo.lib

def read_syminfo(path):
    entries, cur = [], None
    with open(path) as f:
        for line in f:
            line = line.strip()
            if line == 'begin_spacegroup':
                cur = {'symop': [], 'cenop': []}
            elif line == 'end_spacegroup':
                symops = [parse_op(s) for s in cur['symop']]
                cenops = [parse_op(s) for s in cur['cenop']]
                cur['ops'] = [(r, mod1(tuple(a + b for a, b in zip(t, c[1])))) for c in cenops
                              for r, t in symops]
                cur['centring'] = [c[1] for c in cenops]
                entries.append(cur)
                cur = None
            elif cur is not None:
                if line.startswith('number'):
                    cur['number'] = int(line.split()[1])
                elif line.startswith('symbol xHM'):
                    cur['xhm'] = line.split("'")[1]
                elif line.startswith('symop '):
                    cur['symop'].append(line[6:])
                elif line.startswith('cenop '):
                    cur['cenop'].append(line[6:])
    return entries


def compact_names(xhm, number):
    base, _, suffix = xhm.partition(':')
    parts = base.split()
    compact = ''.join(parts)
    names = {compact}
    if len(parts) == 4 and parts[1] == '1' and parts[3] == '1' and parts[2] != '1':
        names.add(parts[0] + parts[2])
    if number >= 195:
        names |= {n.replace('-3', '3') for n in names}
    if suffix.strip() == 'R':
        names = {n + 'r' for n in names}
    return names, suffix.strip()


# ---------------------------------------------------------------------------------------------
# Hermann-Mauguin symbols, for checking a derived setting against its name.

LATTICE_CENTRING = {
    'P': [(0, 0, 0)],
    'A': [(0, 0, 0), (0, Fr(1, 2), Fr(1, 2))],
    'B': [(0, 0, 0), (Fr(1, 2), 0, Fr(1, 2))],
    'C': [(0, 0, 0), (Fr(1, 2), Fr(1, 2), 0)],
    'I': [(0, 0, 0), (Fr(1, 2), Fr(1, 2), Fr(1, 2))],
    'F': [(0, 0, 0), (0, Fr(1, 2), Fr(1, 2)), (Fr(1, 2), 0, Fr(1, 2)), (Fr(1, 2), Fr(1, 2), 0)],
}

# Directions as lattice vectors, and the twofold rotation and the fourfold/threefold about them.
AXIS = {'a': (1, 0, 0), 'b': (0, 1, 0), 'c': (0, 0, 1), '110': (1, 1, 0), '111': (1, 1, 1)}
TWOFOLD = {'a': (1, 0, 0, 0, -1, 0, 0, 0, -1), 'b': (-1, 0, 0, 0, 1, 0, 0, 0, -1),
           'c': (-1, 0, 0, 0, -1, 0, 0, 0, 1), '110': (0, 1, 0, 1, 0, 0, 0, 0, -1)}
FOURFOLD_C = (0, -1, 0, 1, 0, 0, 0, 0, 1)
THREEFOLD_111 = (0, 0, 1, 1, 0, 0, 0, 1, 0)


def tokenize(body):
    tokens, i = [], 0
    while i < len(body):
        if body[i] in 'mabcnde':
            tokens.append(body[i])
            i += 1
            continue
        tok = ''
        if body[i] == '-':
            tok, i = '-', i + 1
        tok += body[i]
        i += 1
        if i < len(body) and body[i].isdigit() and int(body[i]) < int(tok[-1]) and tok[0] != '-':
            tok += body[i]
            i += 1
        if i + 1 < len(body) and body[i] == '/':
            tok += body[i:i + 2]
            i += 2
        tokens.append(tok)
    return tokens


def parse_symbol(name):
    """Lattice letter and a list of (direction, rotation token or None, plane letter or None)."""
    lattice, tokens = name[0], tokenize(name[1:])
    if any('4' in t for t in tokens):
        dirs = ['c', 'a', '110']
    elif len(tokens) == 2 and tokens[1] in ('3', '-3'):
        dirs = ['c', '111']
    elif len(tokens) == 1 and tokens[0] not in ('1', '-1'):
        tokens, dirs = ['1', tokens[0], '1'], ['a', 'b', 'c']
    else:
        dirs = ['a', 'b', 'c'][:len(tokens)]
    positions = []
    for d, tok in zip(dirs, tokens):
        if tok[0] in 'mabcnde':
            positions.append((d, None, tok))
        else:
            rot, _, plane = tok.partition('/')
            positions.append((d, rot, plane or None))
    return lattice, positions


def rotation_matrix(d, rot):
    n = int(rot.lstrip('-')[0])
    if n == 1:
        r = IDENTITY
    elif n == 2:
        r = TWOFOLD[d]
    elif n == 4 and d == 'c':
        r = FOURFOLD_C
    elif n == 3 and d == '111':
        r = THREEFOLD_111
    else:
        raise ValueError('no rotation %s along %s' % (rot, d))
    return tuple(-x for x in r) if rot.startswith('-') else r


def symbol_group(name):
    """The group a complete symbol generates at the origin: its centring, and for each position
    the rotation or screw along the direction and the mirror or glide across it."""
    lattice, positions = parse_symbol(name)
    gens = [(IDENTITY, mod1(c)) for c in LATTICE_CENTRING[lattice]]
    for d, rot, plane in positions:
        if rot and rot != '1':
            screw = Fr(int(rot[1]), int(rot[0])) if len(rot) > 1 and not rot.startswith('-') else Fr(0)
            gens.append((rotation_matrix(d, rot), mod1(tuple(screw * x for x in AXIS[d]))))
        if plane:
            gens.append((tuple(-x for x in TWOFOLD[d]), mod1(glide_vectors(d, plane)[0])))
    return closure(gens)


def symbol_point_group(positions):
    gens = []
    for d, rot, plane in positions:
        if rot:
            gens.append(rotation_matrix(d, rot))
        if plane:
            gens.append(tuple(-x for x in TWOFOLD[d]))
    return {r for r, _ in closure([(g, (0, 0, 0)) for g in gens] + [(IDENTITY, (0, 0, 0))])}


def glide_vectors(d, letter):
    half, quarter = Fr(1, 2), Fr(1, 4)
    in_plane = [i for i in range(3) if AXIS[d][i] == 0] if d in 'abc' else []
    if letter == 'm':
        return [(0, 0, 0)]
    if letter in 'abc':
        v = [0, 0, 0]
        v['abc'.index(letter)] = half
        return [tuple(v)]
    if letter == 'n':
        v = [0, 0, 0]
        for i in in_plane:
            v[i] = half
        return [tuple(v)]
    if letter == 'd':
        out = []
        for s1, s2 in itertools.product((1, -1), repeat=2):
            v = [0, 0, 0]
            v[in_plane[0]], v[in_plane[1]] = s1 * quarter, s2 * quarter
            out.append(tuple(v))
        return out
    raise ValueError(letter)


def intrinsic(r, t):
    n = rotation_order(r)
    total, p = [Fr(0)] * 3, IDENTITY
    for _ in range(n):
        total = [a + b for a, b in zip(total, mat_vec(p, t))]
        p = mat_mul(p, r)
    return tuple(x / n for x in total)


def has_element(group, r, wanted):
    """Whether some operator with rotation r has an intrinsic translation in wanted (modulo Z^3)."""
    for gr, gt in group:
        if gr != r:
            continue
        for v in itertools.product((0, 1), repeat=3):
            w = intrinsic(gr, tuple(a + b for a, b in zip(gt, v)))
            for target in wanted:
                if all((a - b).denominator == 1 for a, b in zip(w, target)):
                    return True
    return False


def lattice_repeat(group, axis):
    """The shortest lattice vector along an axis: (1/2, 1/2, 0) along [110] of a C lattice."""
    centring = centring_of(group)
    for s in (Fr(1, 4), Fr(1, 3), Fr(1, 2)):
        v = mod1(tuple(s * x for x in axis))
        if v in centring:
            return tuple(s * x for x in axis)
    return axis


def centring_of(group):
    return sorted(t for r, t in group if r == IDENTITY)


def agrees_with_symbol(group, name):
    lattice, positions = parse_symbol(name)
    if centring_of(group) != sorted(mod1(c) for c in LATTICE_CENTRING[lattice]):
        return False
    point_group = symbol_point_group(positions)
    if {r for r, _ in group} != point_group:
        return False
    if len(group) != len(point_group) * len(LATTICE_CENTRING[lattice]):
        return False
    for d, rot, plane in positions:
        if rot and not rot.startswith('-') and rot != '1':
            n = int(rot[0])
            screw = Fr(int(rot[1]), n) if len(rot) > 1 else Fr(0)
            repeat = lattice_repeat(group, AXIS[d])
            if not has_element(group, rotation_matrix(d, rot), [tuple(screw * x for x in repeat)]):
                return False
        if plane and not has_element(group, tuple(-x for x in TWOFOLD[d]), glide_vectors(d, plane)):
            return False
    return True


# ---------------------------------------------------------------------------------------------
# Change of basis

def basis_changes():
    out = []
    for entries in itertools.product((0, 1, -1), repeat=9):
        d = det3(entries)
        if d in (1, 2, 4):
            out.append((d, sum(1 for e in entries if e), entries))
    out.sort(key=lambda x: (x[0], x[1]))
    changes = []
    for d, _, p in out:
        pinv = inverse3(p)
        lattice = sorted({mod1(mat_vec(pinv, v)) for v in itertools.product(range(d), repeat=3)})
        changes.append((p, pinv, lattice))
    return changes


def transform(group, change, centring=None, rotations=None):
    """The group in the basis x = P x' (P an integer matrix), with the old lattice as centring.
    Gives None early when the centring or the rotation parts cannot be the wanted ones."""
    p, pinv, lattice = change
    if centring is not None:
        old = [t for r, t in group if r == IDENTITY]
        new = {mod1(tuple(a + b for a, b in zip(mat_vec(pinv, t), c))) for t in old for c in lattice}
        if sorted(new) != centring:
            return None
    if rotations is not None:
        rots = {mat_mul(mat_mul(pinv, r), p) for r, _ in group}
        if rots != rotations:
            return None
    ops = []
    for r, t in group:
        r2 = mat_mul(mat_mul(pinv, r), p)
        if any(Fr(x).denominator != 1 for x in r2):
            return None
        r2 = tuple(int(x) for x in r2)
        t2 = mat_vec(pinv, t)
        for c in lattice:
            ops.append((r2, mod1(tuple(a + b for a, b in zip(t2, c)))))
    return list(dict.fromkeys(ops))


def shift_origin_to_inversion(group):
    for r, t in group:
        if r == MINUS_IDENTITY:
            p = tuple(x / 2 for x in t)
            return [(r2, mod1(tuple(a + b - c for a, b, c in zip(t2, mat_vec(r2, p), p))))
                    for r2, t2 in group]
    raise RuntimeError('centrosymmetric group without an inversion')


# ---------------------------------------------------------------------------------------------
# Systematic absences, for numbering the incomplete symbols

def laue_group(group):
    rots = {r for r, _ in group}
    return frozenset(rots | {tuple(-x for x in r) for r in rots})


def absences(group, limit=4):
    screws = [(r, t) for r, t in group if any(t)]
    absent = set()
    for h in itertools.product(range(-limit, limit + 1), repeat=3):
        if h == (0, 0, 0):
            continue
        for r, t in screws:
            if tuple(sum(h[i] * r[3 * i + j] for i in range(3)) for j in range(3)) == h and \
                    sum(a * b for a, b in zip(h, t)).denominator != 1:
                absent.add(h)
                break
    return frozenset(absent)


def representatives(name):
    """Complete symbols that fill in the open elements of an incomplete one, most likely first."""
    if ',-' in name:
        name = name.split(',')[0].replace('*', '-3', 1)
    name = re.sub(r',\d', '', name)
    if re.fullmatch(r'[A-Z]\*', name):
        return [name[0] + '-1', name[0] + '-3']
    if name.startswith('R*'):
        name = 'R-3' + name[2:]
    fills = ['m', '2']
    out = []
    for combo in itertools.product(fills, repeat=name.count('*')):
        s = name
        for f in combo:
            s = s.replace('*', f, 1)
        out.append(s)
        out.append(s.replace('4', '-4', 1))
        out.append(re.sub(r'^([A-Z])([46])', lambda m: m.group(1) + m.group(2) + ('3' if m.group(2) == '6' else '2'), s))
    return out


# ---------------------------------------------------------------------------------------------

def build_rows(entries, skipped):
    by_name = {}
    by_number = {}
    for e in entries:
        by_number.setdefault(e['number'], []).append(e)
        names, suffix = compact_names(e['xhm'], e['number'])
        for n in names:
            by_name.setdefault(n, []).append((suffix, e))

    complete = [n for n in NAMES if not is_incomplete(n)]
    direct = {}
    for n in complete:
        found = by_name.get(n)
        if found:
            # The origin on an inversion centre (choice 2) wins over choice 1.
            found = sorted(found, key=lambda se: se[0] != '2')
            direct[n] = found[0][1]

    changes = basis_changes()
    rows = []
    for i, n in enumerate(complete):
        if n in direct:
            e = direct[n]
            for _ in range(REPEATED.get(n, 1)):
                rows.append((n, e['number'], e['ops'], 'syminfo.lib ' + e['xhm']))
            continue
        before = max((direct[m]['number'] for m in complete[:i] if m in direct), default=1)
        after = min((direct[m]['number'] for m in complete[i + 1:] if m in direct), default=230)
        made = None
        lattice, positions = parse_symbol(n)
        centring = sorted(mod1(c) for c in LATTICE_CENTRING[lattice])
        rotations = symbol_point_group(positions)
        for number in range(before, after + 1):
            for p in changes:
                for e in by_number.get(number, []):
                    g = transform(e['ops'], p, centring, rotations)
                    if g and agrees_with_symbol(g, n):
                        made = (n, number, g, 'syminfo.lib %s, x = %s x\'' % (e['xhm'], p[0]))
                        break
                if made:
                    break
            if made:
                break
        if not made:
            # The symbol names elements that no setting of a neighbouring number has together
            # (I2/n: an n glide in an I lattice is also a mirror). Its place fixes the number.
            assert before == after, n
            sys.stderr.write('no setting of %d agrees with %s: generated from its symbol\n' % (before, n))
            skipped.append(n)
            made = (n, before, symbol_group(n), 'generated from its symbol; agrees with no setting of %d' % before)
        for _ in range(REPEATED.get(n, 1)):
            rows.append(made)

    final = []
    for n, number, ops, origin in rows:
        if is_centrosymmetric(number):
            ops = shift_origin_to_inversion(ops)
            stored = [o for o in ops if det3(o[0]) == 1]
            images = {(tuple(-x for x in r), mod1(tuple(-x for x in t))) for r, t in stored}
            assert images | set(stored) == set(ops) and len(stored) * 2 == len(ops), n
        else:
            stored = ops
        final.append((n, number, ops, stored, origin))
    return final


def number_incomplete(rows, skipped):
    by_name = {n: (number, ops) for n, number, ops, _, _ in rows}
    cache = {}
    out = []
    for n in [m for m in NAMES if is_incomplete(m)]:
        rep = next((r for r in representatives(n) if r in by_name), None)
        if rep is None:
            rep = representatives(n)[0]
            sys.stderr.write('no name of the table fills in %s: numbered through the group of %s\n' % (n, rep))
            skipped.append(n)
            ops = symbol_group(rep)
        else:
            ops = by_name[rep][1]
        laue, absent = laue_group(ops), absences(ops)
        best = 0
        for m, num, g, _, origin in rows:
            # A group generated from a symbol that fits no setting says nothing of its number.
            if origin.startswith('generated') or laue_group(g) != laue:
                continue
            if m not in cache:
                cache[m] = absences(g)
            if cache[m] == absent:
                best = max(best, num)
        out.append((n, 500 + best, rep))
    return out


def cpp_string(s):
    return '"' + s + '"'


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else SYMINFO
    entries = read_syminfo(path)
    # The program decides centrosymmetry by number; the source must agree with it.
    for e in entries:
        assert (MINUS_IDENTITY in {r for r, _ in e['ops']}) == is_centrosymmetric(e['number']), e['xhm']
    skipped = []
    rows = build_rows(entries, skipped)
    incomplete = number_incomplete(rows, skipped)

    master = [(IDENTITY, (0, 0, 0))]
    index = {master[0]: 0}
    table = []
    for n, number, _, stored, origin in rows:
        ids = []
        for op in stored:
            if op not in index:
                index[op] = len(master)
                master.append(op)
            ids.append(index[op])
        table.append((n, number, ids, origin))
    for n, number, rep in incomplete:
        table.append((n, number, [0], 'identity; numbered through ' + rep))
    # Rows in order of number and then setting; settings count up within a number in name order.
    order = sorted(range(len(table)), key=lambda i: (table[i][1], i))
    settings = {}

    for op in master:
        assert all((x * 12).denominator == 1 for x in op[1]), op

    out = []
    w = out.append
    w('// Generated by tools/gen_spacegroup_table.py from /usr/share/ccp4/syminfo.lib (Debian package')
    w('// libccp4-data). Do not edit: change the generator and run it again.')
    w('// clang-format off')
    w('#include "SpacegroupTable.h"')
    w('')
    w('// Names of the vocabulary that agree with no setting, generated from their symbols: %s' % ', '.join(skipped))
    w('')
    w('namespace {')
    w('')
    w('// Rotation rows, then the translation in twelfths.')
    w('const MasterOperator master_operators[] = {')
    for r, t in master:
        w('    {{%s}, {%s}}, // %s' % (', '.join(str(x) for x in r), ', '.join(str(int(x * 12)) for x in t),
                                   op_text((r, t))))
    w('};')
    w('')
    w('const int16_t operator_indices[] = {')
    offsets, pos = [], 0
    for i in order:
        ids = table[i][2]
        offsets.append(pos)
        pos += len(ids)
        w('    %s,' % ', '.join(str(x) for x in ids))
    w('};')
    w('')
    w('const SpacegroupRow table_rows[] = {')
    for k, i in enumerate(order):
        n, number, ids, origin = table[i]
        settings[number] = settings.get(number, 0) + 1
        w('    {%s, %d, %d, %d, %d}, // %s' % (cpp_string(n), number, settings[number], len(ids), offsets[k], origin))
    w('};')
    w('')
    w('} // namespace')
    w('')
    w('const MasterOperator* SpacegroupTable::master() { return master_operators; }')
    w('std::size_t SpacegroupTable::master_size() { return sizeof master_operators / sizeof master_operators[0]; }')
    w('const int16_t* SpacegroupTable::indices() { return operator_indices; }')
    w('const SpacegroupRow* SpacegroupTable::rows() { return table_rows; }')
    w('std::size_t SpacegroupTable::size() { return sizeof table_rows / sizeof table_rows[0]; }')
    sys.stdout.write('\n'.join(out) + '\n')


if __name__ == '__main__':
    main()
