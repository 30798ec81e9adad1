"""Names the space group number that gemmi finds for each operator list.

Input lines: an identifier, a tab, the operators separated by ';'. Output lines: the identifier,
a tab, gemmi's number, or 0 where gemmi's table has no setting with these operators.
Exits with status 3 when the gemmi module is not installed.
"""
import sys

try:
    import gemmi
except ImportError:
    sys.exit(3)

with open(sys.argv[1]) as f:
    for line in f:
        ident, _, ops = line.rstrip('\n').partition('\t')
        group = gemmi.GroupOps([gemmi.Op(t) for t in ops.split(';')])
        found = gemmi.find_spacegroup_by_ops(group)
        print('%s\t%d' % (ident, found.number if found else 0))
