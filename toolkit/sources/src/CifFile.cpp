#include "CifFile.h"

#include "CifCell.h"
#include "CifConcreteDictionary.h"
#include "CifDataItem.h"
#include "CifMolecule.h"
#include "Logger.h"
#include "MoleculeError.h"

#include <cmath>
#include <cstdio>
#include <istream>

namespace {

constexpr std::uint32_t unknown_item = 320;

HCifDictionary no_dictionary()
{
    return HCifDictionary(new CifConcreteDictionary);
}

std::string without_blanks(const std::string& text)
{
    std::string out;
    for (char c : text)
        if (c != ' ' && c != '\t')
            out += c;
    return out;
}

std::string number_text(double v, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, v);
    return text;
}

void set_value(CifDataBlock& block, const char* name, const std::string& value)
{
    block.add_item(name)->set_single_value(value);
}

} // namespace

CifFile::CifFile() : cif_(new Cif(no_dictionary()))
{
}

CifFile::CifFile(const HCif& cif) : cif_(cif)
{
}

void CifFile::clear()
{
    cif_ = HCif(new Cif(no_dictionary()));
    block_ = HCifDataBlock();
}

void CifFile::read(std::istream& in)
{
    logDebug(3, "CifFile::read entered - positioned at %d", static_cast<int>(in.tellg()));
    clear();
    const bool was_suppressed = cif_->errors()->is_suppressed(unknown_item);
    cif_->errors()->suppress(unknown_item);
    cif_->read(in);
    if (!was_suppressed)
        cif_->errors()->unsuppress(unknown_item);
    if (cif_->block_count() > 0 && without_blanks(cif_->block(0).name()) == cif_added_block_name)
        throw molecule_error(
            "CifFile::read: data names defined before first data block. Possible missing data_ line?");
    for (std::size_t b = 0; b < cif_->block_count(); ++b) {
        const CifDataBlock& block = cif_->block(b);
        if (block.item("_symmetry_equiv_pos_as_xyz") || block.item("_symmetry_space_group_name_h-m") ||
            block.item("_cell_length_a")) {
            read(static_cast<int>(b));
            logDebug(3, "CifFile::read finished - positioned at %d", static_cast<int>(in.tellg()));
            return;
        }
    }
    throw molecule_error("CifFile::read: no structure available, probable syntax error.");
}

void CifFile::read(int block)
{
    logDebug(3, "CifFile::read entered - looking for block %d", block);
    if (block < 0 || block >= static_cast<int>(cif_->block_count()))
        throw molecule_error("CifFile::read: no structure available, block number out of range.");
    const HCifDataBlock chosen = cif_->block_handle(static_cast<std::size_t>(block));
    if (!chosen)
        throw molecule_error("CifFile::read: no structure available, bad cif block pointer.");
    block_ = chosen;
    logDebug(3, "CifFile::read finished - positioned at block");
}

const CifDataBlock& CifFile::loaded(const char* what) const
{
    if (!block_)
        throw molecule_error(std::string("CifFile::") + what + ": No structure loaded");
    return *block_;
}

HMolecule CifFile::molecule() const
{
    const CifDataBlock& block = loaded("molecule");
    return CifMolecule::molecule(block, CifCell::cell(block));
}

Cell CifFile::cell() const
{
    return CifCell::cell(loaded("cell"));
}

std::string CifFile::refcode() const
{
    const std::string name = loaded("refcode").name();
    return name.compare(0, 5, "data_") == 0 ? name.substr(5) : name;
}

HCrystalMaker CifFile::crystal_maker() const
{
    const CifDataBlock& block = loaded("crystal_maker");
    logDebug(3, "CifFile::crystal_maker entered");
    return CifMolecule::crystal_maker(block, CifCell::cell(block));
}

void CifFile::write(std::ostream& out) const
{
    cif_->write(out);
}

HCifDataBlock CifFile::new_block(const std::string& refcode)
{
    const HCifDataBlock block = cif_->add_block("data_KDB_CIF_" + refcode, cif_->end());
    if (!block)
        throw molecule_error("Failed to write cif: could not create a new block");
    return block;
}

void CifFile::write_cell(CifDataBlock& block, const Cell& cell) const
{
    const double degrees = 57.29577951308232;
    set_value(block, "_cell_length_a", number_text(cell.a().value, 5));
    set_value(block, "_cell_length_b", number_text(cell.b().value, 5));
    set_value(block, "_cell_length_c", number_text(cell.c().value, 5));
    set_value(block, "_cell_angle_alpha", number_text(cell.alpha().value * degrees, 4));
    set_value(block, "_cell_angle_beta", number_text(cell.beta().value * degrees, 4));
    set_value(block, "_cell_angle_gamma", number_text(cell.gamma().value * degrees, 4));
    set_value(block, "_symmetry_space_group_name_H-M", cell.spacegroup().name());
    set_value(block, "_symmetry_Int_Tables_number", std::to_string(cell.spacegroup().number()));
    // A loop is made of its items first, and then filled row by row.
    const HCifDataItem ids = block.add_item("_symmetry_equiv_pos_site_id");
    const HCifDataItem ops = block.add_item("_symmetry_equiv_pos_as_xyz");
    block.make_loop({"_symmetry_equiv_pos_site_id", "_symmetry_equiv_pos_as_xyz"});
    for (int k = 0; k < cell.nsymmops(); ++k) {
        ids->add_value(std::to_string(k + 1));
        ops->add_value(cell.symmop(k).text());
    }
}

void CifFile::write_atoms(CifDataBlock& block, const std::vector<HMolecule>& molecules) const
{
    const char* names[5] = {"_atom_site_label", "_atom_site_type_symbol", "_atom_site_fract_x",
                            "_atom_site_fract_y", "_atom_site_fract_z"};
    HCifDataItem items[5];
    for (int k = 0; k < 5; ++k)
        items[k] = block.add_item(names[k]);
    block.make_loop({names, names + 5});
    for (const HMolecule& m : molecules)
        for (int i = 0; i < m->natoms(); ++i) {
            const HAtom a = m->atom(i);
            const Vector3D f = a->has_site() ? a->site()->frac : Vector3D();
            items[0]->add_value(a->label().empty() ? std::string(a->element().symbol()) : a->label());
            items[1]->add_value(a->element().symbol());
            for (int k = 0; k < 3; ++k)
                items[2 + k]->add_value(number_text(f[k], 6));
        }
}

void CifFile::add(const CrystalMaker& crystal_maker)
{
    const HCifDataBlock block = new_block(crystal_maker.refcode());
    write_cell(*block, crystal_maker);
    write_atoms(*block, crystal_maker.molecules());
}

void CifFile::add(const Crystal& crystal)
{
    const HCifDataBlock block = new_block(crystal.refcode());
    write_cell(*block, crystal);
    write_atoms(*block, crystal.molecules());
}

void CifFile::add(const Molecule& molecule)
{
    const HCifDataBlock block = new_block(molecule.refcode());
    write_cell(*block, Cell());
    write_atoms(*block, {molecule.clone()});
}
