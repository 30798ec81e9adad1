#!/usr/bin/python3
"""Compares what `cifward-check --structure` makes of the corpus with the files' own moiety
formulas and with gemmi's space group from the same operators.

    /usr/bin/python3 bench/structure_agreement.py build/ci/checker/cifward-check ../shared/corpus

Needs the python3-gemmi package (Debian's Python, hence /usr/bin/python3); without it only the
moiety figures are printed. A measurement, not a test: the figures go into bench/README.md.
"""

import json
import pathlib
import re
import subprocess
import sys

try:
    import gemmi
except ImportError:
    gemmi = None

OPERATOR_TAGS = ("_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz",
                 "_space_group_symop.operation_xyz", "_symmetry_equiv.pos_as_xyz")


def our_blocks(checker, path):
    run = subprocess.run([checker, "--no-dict", "--structure", "--format", "json", str(path)],
                         capture_output=True, text=True, timeout=120)
    try:
        document = json.loads(run.stdout)
    except json.JSONDecodeError:
        return {}
    return {b["block"]: b for f in document["files"] for b in f["blocks"]}


def hydrogen_per_heavy_atom(formula):
    """Hydrogen atoms per other atom of a moiety formula, multipliers of its parts counted."""
    hydrogen = heavy = 0.0
    for part in re.split(r"[,;]", formula):
        part = part.strip()
        times = 1.0
        count = re.match(r"^(\d+(?:\.\d+)?)\s*(?=[(A-Z])", part)
        if count:
            times = float(count.group(1))
            part = part[count.end():]
        inner = 1.0
        bracket = re.match(r"^\((.*)\)(\d*(?:\.\d+)?)n?$", part)
        if bracket:
            part = bracket.group(1)
            inner = float(bracket.group(2)) if bracket.group(2) else 1.0
        for symbol, n in re.findall(r"([A-Z][a-z]?)(\d*(?:\.\d+)?)(?![a-z])", part):
            atoms = (float(n) if n else 1.0) * times * inner
            if symbol in ("H", "D"):
                hydrogen += atoms
            else:
                heavy += atoms
    return hydrogen / heavy if heavy else 0.0


def hydrogen_sites(path, name):
    """Hydrogen sites and all sites of the block, as gemmi reads them; None without gemmi."""
    if gemmi is None:
        return None
    try:
        structure = gemmi.make_small_structure_from_block(gemmi.cif.read(str(path))[name[len("data_"):]])
    except Exception:
        return None
    hydrogen = sum(1 for site in structure.sites if site.element.name in ("H", "D"))
    return hydrogen, len(structure.sites)


def gemmi_numbers(path):
    """Space group number that gemmi finds for each block's operators, by block name."""
    try:
        document = gemmi.cif.read(str(path))
    except Exception:
        return {}
    numbers = {}
    for block in document:
        for tag in OPERATOR_TAGS:
            operators = list(block.find_values(tag))
            if not operators:
                continue
            try:
                ops = gemmi.GroupOps([gemmi.Op(gemmi.cif.as_string(o)) for o in operators])
                group = gemmi.find_spacegroup_by_ops(ops)
            except Exception:
                break
            numbers["data_" + block.name] = group.number if group else None
            break
    return numbers


def main(checker, corpus):
    moiety_compared = moiety_agreed = 0
    moiety_others, lacking = [], []
    sg_compared = sg_agreed = sg_neither = 0
    sg_others, sg_skipped, unbuilt = [], [], []
    for path in sorted(pathlib.Path(corpus).rglob("*.cif")):
        ours = our_blocks(checker, path)
        for name, block in ours.items():
            if "error" in block:
                unbuilt.append(f"{path.name} {name}: {block['error']}")
            agreement = block.get("moiety_agreement")
            if agreement is None:
                continue
            # Fewer hydrogen atoms than the file's formula, in occupancies and in sites both, is a
            # list that left some out; fewer only in occupancies is a disorder.
            given = hydrogen_per_heavy_atom(block["moiety_given"])
            if hydrogen_per_heavy_atom(block["moiety"]) + 0.01 < given:
                counted = hydrogen_sites(path, name)
                if counted is None or counted[0] + 0.01 * counted[1] < given * (counted[1] - counted[0]):
                    lacking.append(path.name)
                    continue
            moiety_compared += 1
            if agreement != "differs":
                moiety_agreed += 1
            else:
                moiety_others.append(f"{path.name} {name}: computed {block['moiety']}; given {block['moiety_given'].strip()}")
        if gemmi is None:
            continue
        for name, theirs in gemmi_numbers(path).items():
            if name not in ours:
                continue
            if "skipped" in ours[name]:
                sg_skipped.append(f"{path.name} {name}")
                continue
            mine = (ours[name].get("spacegroup") or {}).get("number")
            sg_compared += 1
            # -1 is our "Unknown": operators that form no group of the table.
            if mine == theirs or (mine == -1 and theirs is None):
                sg_agreed += 1
                sg_neither += theirs is None
            else:
                sg_others.append(f"{path.name} {name}: ours {mine}, gemmi {theirs}")
    print(f"moiety: {moiety_agreed} of {moiety_compared} agree "
          f"({100.0 * moiety_agreed / max(moiety_compared, 1):.1f}%)")
    for line in moiety_others:
        print("  differs:", line)
    print("  hydrogen atoms missing:", " ".join(lacking))
    print(f"structure not built ({len(unbuilt)} blocks with atom sites):")
    for line in unbuilt:
        print("  ", line)
    if gemmi is None:
        print("space group: gemmi's Python module is not installed")
        return
    print(f"space group from the operators: {sg_agreed} of {sg_compared} agree with gemmi {gemmi.__version__}"
          f" ({sg_neither} of them operators that neither program finds a group for)")
    for line in sg_others:
        print("  differs:", line)
    print("  not compared, no atom sites:", ", ".join(sg_skipped))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
