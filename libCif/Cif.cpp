#include "Cif.h"

#include "CifParser.h"
#include "CifTokeniser.h"

#include <stdexcept>

const char* const cif_added_block_name = "data_added_by_cifward";

Cif::Cif(const HCifDictionary& dictionary) : dictionary_(dictionary), errors_(new CifErrorList)
{
}

void Cif::read(std::istream& stream, unsigned line_limit)
{
    blocks_.clear();
    errors_->clear();
    // The old model's memory goes with its blocks, unless something still holds a part of it.
    arena_ = CifArena::create();
    if (!stream.good()) {
        errors_->add(CifError(301, -1));
        return;
    }
    CifTokeniser tokeniser(stream, line_limit, errors_);
    CifParser(*this, tokeniser).run();
    if (blocks_.empty())
        errors_->add(CifError(302, -1));
}

void Cif::write(std::ostream& stream, unsigned line_limit) const
{
    for (const HCifDataBlock& each : blocks_)
        each->write(stream, line_limit);
}

CifDataBlock& Cif::block(std::size_t index) const
{
    return *block_handle(index);
}

HCifDataBlock Cif::block_handle(std::size_t index) const
{
    if (index >= blocks_.size())
        throw std::out_of_range("Cif does not have block " + std::to_string(index));
    return blocks_[index];
}

Cif::iterator Cif::find_block(const std::string& name)
{
    for (auto it = blocks_.begin(); it != blocks_.end(); ++it)
        if ((*it)->name() == name)
            return it;
    return blocks_.end();
}

Cif::iterator Cif::block_at_line(std::int32_t line)
{
    iterator found = blocks_.end();
    for (auto it = blocks_.begin(); it != blocks_.end(); ++it) {
        const std::int32_t at = (*it)->line();
        if (at == -1) {
            if (line < -1)
                break;
            continue;
        }
        if (at > line)
            break;
        found = it;
    }
    return found;
}

HCifDataBlock Cif::add_block(const std::string& name, iterator where)
{
    iterator existing = find_block(name);
    if (existing != blocks_.end())
        return *existing;
    if (!arena_)
        arena_ = CifArena::create();
    HCifDataBlock created(new CifDataBlock(name, -1, dictionary_, arena_));
    blocks_.insert(where, created);
    return created;
}
