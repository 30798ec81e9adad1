#!/usr/bin/env python3
"""For each data block of the CIFs named on the command line that lists symmetry operators,
prints the file, the block and the space group number python3-gemmi finds for those operators
(gemmi.find_spacegroup_by_ops): 0 where its table holds no such setting, -1 where gemmi cannot
read the operators. Exits with 3 when gemmi is not installed, so the caller can skip."""
import sys

try:
    import gemmi
except ImportError:
    sys.exit(3)

for path in sys.argv[1:]:
    try:
        doc = gemmi.cif.read_file(path)
    except Exception:
        continue
    for block in doc:
        ops = block.find_values('_space_group_symop_operation_xyz')
        if len(ops) == 0:
            ops = block.find_values('_symmetry_equiv_pos_as_xyz')
        texts = [gemmi.cif.as_string(o) for o in ops]
        texts = [t for t in texts if any(c in t for c in 'xyzXYZ')]
        if not texts:
            continue
        try:
            group = gemmi.find_spacegroup_by_ops(gemmi.GroupOps([gemmi.Op(t) for t in texts]))
            number = group.number if group else 0
        except Exception:
            number = -1
        print('%s\t%s\t%d' % (path, 'data_' + block.name, number))
