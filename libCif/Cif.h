#ifndef CIFWARD_CIF_H
#define CIFWARD_CIF_H

#include "CifArena.h"
#include "CifDataBlock.h"
#include "CifDictionary.h"
#include "CifErrorList.h"
#include "THandle.h"

#include <cstdint>
#include <deque>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

// A whole CIF document: its blocks in file order and the findings of the last read.
class Cif {
public:
    using Blocks = std::deque<HCifDataBlock>;
    using iterator = Blocks::iterator;
    using const_iterator = Blocks::const_iterator;

    static constexpr unsigned default_line_limit = 80;

    explicit Cif(const HCifDictionary& dictionary);
    virtual ~Cif() = default;

    // Replaces the whole content; bad text becomes findings, never an exception.
    void read(std::istream& stream, unsigned line_limit = default_line_limit);
    void write(std::ostream& stream, unsigned line_limit = default_line_limit) const;

    std::size_t block_count() const { return blocks_.size(); }
    CifDataBlock& block(std::size_t index) const;
    HCifDataBlock block_handle(std::size_t index) const;
    iterator begin() { return blocks_.begin(); }
    iterator end() { return blocks_.end(); }
    const_iterator begin() const { return blocks_.begin(); }
    const_iterator end() const { return blocks_.end(); }
    iterator find_block(const std::string& name);
    iterator block_at_line(std::int32_t line);
    HCifDataBlock add_block(const std::string& name, iterator where);

    // Adds a remark for each listed data name that a block lacks or leaves unknown ("?").
    void check_mandatory(const std::vector<std::string>& publication_items,
                         const std::vector<std::string>& crystal_items);

    const HCifErrorList& errors() const { return errors_; }
    const HCifDictionary& dictionary() const { return dictionary_; }

private:
    friend class CifParser;
    // Where the blocks of the last read, and those added since, keep their items.
    CifArena::Ref arena_;
    HCifDictionary dictionary_;
    HCifErrorList errors_;
    Blocks blocks_;
};

using HCif = THandle<Cif>;

// The name of the block made for data met before any data_ heading.
extern const char* const cif_added_block_name;

#endif
