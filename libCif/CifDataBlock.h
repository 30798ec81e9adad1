#ifndef CIFWARD_CIFDATABLOCK_H
#define CIFWARD_CIFDATABLOCK_H

#include "CifArena.h"
#include "CifArenaAllocator.h"
#include "CifCommentable.h"
#include "CifDataItem.h"
#include "CifDictionary.h"
#include "CifLoop.h"
#include "CifNameCompare.h"
#include "CifNameIndex.h"
#include "THandle.h"

#include <cstdint>
#include <list>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

// One data_ block: its items in write order, found by name without regard to case, and its loops.
// Its items live in an arena: the document's, when the block was read, else one of its own.
class CifDataBlock : public CifCommentable {
public:
    using Items = std::list<HCifDataItem, CifArenaAllocator<HCifDataItem>>;
    using Loops = std::list<HCifLoop>;
    using const_iterator = Items::const_iterator;

    // Where set_write_order puts the moved items.
    enum WriteOrderMode { AfterLast = 0, BeforeFirst = 1, AtFirstNamed = 2, AtFirstInList = 3 };

    CifDataBlock(const std::string& name, std::int32_t line, const HCifDictionary& dictionary,
                 CifArena::Ref arena = CifArena::Ref());

    const std::string& name() const { return name_; }
    std::int32_t line() const { return line_; }
    const HCifDictionary& dictionary() const { return dictionary_; }
    const_iterator begin() const { return items_.begin(); }
    const_iterator end() const { return items_.end(); }
    std::size_t item_count() const { return items_.size(); }
    const Loops& loops() const { return loops_; }

    HCifDataItem item(const std::string& name) const;
    HCifDataItem add_item(const std::string& name);
    bool has_value(const std::string& name) const;
    std::string first_value(const std::string& name) const;
    bool is_looped(const std::string& name) const;
    bool has_category(const std::string& category) const;
    void loop_names(const std::string& name, std::vector<std::string>& out) const;
    HCifLoop loop_of(const std::string& name) const;

    void add_loop(const HCifLoop& loop);
    void make_loop(const std::vector<std::string>& names);
    void remove_item(const std::string& name);
    bool copy_item(const std::string& name, const CifDataBlock& source, bool keep_existing);
    void copy_loop(const std::vector<std::string>& names, const CifDataBlock& source, bool keep_existing);
    void copy_block(const CifDataBlock& source, bool keep_existing);
    void set_write_order(const std::vector<std::string>& names, int mode);

    void write(std::ostream& stream, unsigned line_limit) const;

private:
    // First, so that it goes last: the items and their list lie in it.
    CifArena::Ref arena_;
    Items items_;
    std::int32_t line_;
    std::string name_;
    CifNameIndex by_name_;
    HCifDictionary dictionary_;
    Loops loops_;
};

using HCifDataBlock = THandle<CifDataBlock>;

#endif
