#include "CifDataBlock.h"

#include "CifErrorException.h"

#include <algorithm>
#include <set>

CifDataBlock::CifDataBlock(const std::string& name, std::int32_t line, const HCifDictionary& dictionary,
                           CifArena::Ref arena)
    : arena_(arena ? std::move(arena) : CifArena::create()),
      items_(CifArenaAllocator<HCifDataItem>(arena_.get())), line_(line), name_(name), dictionary_(dictionary)
{
}

HCifDataItem CifDataBlock::item(const std::string& name) const
{
    return by_name_.find(name);
}

HCifDataItem CifDataBlock::add_item(const std::string& name)
{
    if (HCifDataItem found = by_name_.find(name))
        return found;
    HCifDataItem created = arena_->make<CifDataItem>(name, dictionary_, arena_.get());
    by_name_.insert(created);
    items_.push_back(created);
    return created;
}

bool CifDataBlock::has_value(const std::string& name) const
{
    HCifDataItem found = item(name);
    return found && found->has_value();
}

std::string CifDataBlock::first_value(const std::string& name) const
{
    HCifDataItem found = item(name);
    return found ? found->first_value() : std::string();
}

bool CifDataBlock::is_looped(const std::string& name) const
{
    HCifDataItem found = item(name);
    return found && found->is_looped();
}

bool CifDataBlock::has_category(const std::string& category) const
{
    for (const HCifDataItem& each : items_)
        if (dictionary_->in_category(category, each->name()))
            return true;
    return false;
}

HCifLoop CifDataBlock::loop_of(const std::string& name) const
{
    for (const HCifLoop& loop : loops_)
        if (loop->contains(name))
            return loop;
    return HCifLoop();
}

void CifDataBlock::loop_names(const std::string& name, std::vector<std::string>& out) const
{
    HCifLoop loop = loop_of(name);
    if (loop)
        loop->add_names_to(out);
}

void CifDataBlock::add_loop(const HCifLoop& loop)
{
    if (!loop || loop->empty())
        throw CifErrorException(CifError(316, "CifDataBlock::adding null loop", -1));
    std::vector<HCifDataItem> columns;
    for (const std::string& name : loop->names()) {
        HCifDataItem column = item(name);
        if (!column)
            throw CifErrorException(
                CifError(316, "Creating invalid loop, item " + name + " does not exist", -1));
        columns.push_back(column);
    }
    // Only an item that was looped before can stand in another loop; checking just those keeps
    // adding a loop independent of the number of loops in the block.
    // The columns are marked looped only once the loop is accepted: a refused loop leaves every
    // item as it was.
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i]->is_looped())
            continue;
        for (const HCifLoop& existing : loops_)
            if (existing != loop && existing->contains(loop->names()[i]))
                throw CifErrorException(CifError(318, loop->names()[i], line_));
    }
    for (const HCifDataItem& column : columns)
        column->set_looped();
    loops_.push_back(loop);
}

void CifDataBlock::make_loop(const std::vector<std::string>& names)
{
    std::vector<HCifDataItem> present;
    for (const std::string& name : names)
        if (HCifDataItem found = item(name))
            present.push_back(found);
    if (present.empty())
        return;

    // Columns that come from other loops are looped already; only the named items and the
    // columns taken over are touched, so merging stays proportional to what moves.
    HCifLoop kept;
    std::vector<std::string> moved;
    for (auto it = loops_.begin(); it != loops_.end();) {
        const bool holds = std::any_of(present.begin(), present.end(),
                                       [&it](const HCifDataItem& i) { return (*it)->contains(i->name()); });
        if (!holds) {
            ++it;
        } else if (!kept) {
            kept = *it++;
        } else {
            moved.insert(moved.end(), (*it)->names().begin(), (*it)->names().end());
            it = loops_.erase(it);
        }
    }
    if (!kept) {
        kept = HCifLoop(new CifLoop());
        loops_.push_back(kept);
    }
    for (const std::string& name : moved) {
        kept->add(name);
        if (HCifDataItem column = item(name))
            column->set_looped();
    }
    for (const HCifDataItem& column : present) {
        kept->add(column->name());
        column->set_looped();
    }
}

void CifDataBlock::remove_item(const std::string& name)
{
    HCifDataItem removed = by_name_.find(name);
    if (!removed)
        return;
    if (removed->is_looped()) {
        for (auto it = loops_.begin(); it != loops_.end(); ++it) {
            if (!(*it)->contains(name))
                continue;
            (*it)->remove(name);
            if ((*it)->empty())
                loops_.erase(it);
            break;
        }
    }
    items_.remove(removed);
    by_name_.erase(removed);
}

bool CifDataBlock::copy_item(const std::string& name, const CifDataBlock& source, bool keep_existing)
{
    HCifDataItem from = source.item(name);
    if (!from || !from->has_value())
        return false;
    if (keep_existing && has_value(name))
        return false;

    HCifDataItem to;
    if (!from->is_looped()) {
        to = item(name);
        if (to && to->is_looped()) {
            remove_item(name);
            to = HCifDataItem();
        }
        if (!to)
            to = add_item(name);
        to->set_single_value(from->first_value());
    } else {
        to = add_item(name);
        if (!to->is_looped())
            make_loop({name});
        to->copy_value(*from);
    }
    to->copy_comments(*from);
    return true;
}

void CifDataBlock::copy_loop(const std::vector<std::string>& names, const CifDataBlock& source,
                             bool keep_existing)
{
    if (keep_existing)
        for (const std::string& name : names)
            if (has_value(name))
                return;
    for (const std::string& name : names)
        copy_item(name, source, keep_existing);
    make_loop(names);
    HCifLoop from = names.empty() ? HCifLoop() : source.loop_of(names.front());
    HCifLoop to = names.empty() ? HCifLoop() : loop_of(names.front());
    if (from && to)
        to->copy_comments(*from);
}

void CifDataBlock::copy_block(const CifDataBlock& source, bool keep_existing)
{
    std::set<std::string, CifNameLess> done;
    for (const HCifDataItem& from : source.items_) {
        if (done.count(from->name()))
            continue;
        if (from->is_looped()) {
            std::vector<std::string> names;
            source.loop_names(from->name(), names);
            if (names.empty())
                names.push_back(from->name());
            copy_loop(names, source, keep_existing);
            done.insert(names.begin(), names.end());
        } else {
            copy_item(from->name(), source, keep_existing);
            done.insert(from->name());
        }
    }
}

void CifDataBlock::set_write_order(const std::vector<std::string>& names, int mode)
{
    std::map<std::string, std::size_t, CifNameLess> position;
    for (std::size_t i = 0; i < names.size(); ++i)
        position.emplace(names[i], i);

    std::vector<Items::iterator> found(names.size(), items_.end());
    Items::iterator first_named = items_.end();
    for (auto it = items_.begin(); it != items_.end(); ++it) {
        auto p = position.find((*it)->name());
        if (p == position.end())
            continue;
        found[p->second] = it;
        if (first_named == items_.end())
            first_named = it;
    }
    std::vector<Items::iterator> moving;
    for (const auto& it : found)
        if (it != items_.end())
            moving.push_back(it);
    if (moving.empty())
        return;

    Items::iterator destination;
    switch (mode) {
    case AfterLast:
        destination = items_.end();
        break;
    case BeforeFirst:
        destination = items_.begin();
        break;
    case AtFirstNamed:
        destination = moving.front();
        break;
    case AtFirstInList:
        destination = first_named;
        break;
    default:
        throw CifErrorException(CifError(
            316,
            "Invalid move of cif data item: CifDataBlock::set_write_order mode was " + std::to_string(mode),
            -1));
    }

    for (const Items::iterator& it : moving) {
        if (destination == it)
            ++destination;
        items_.splice(destination, items_, it);
    }

    for (const HCifLoop& loop : loops_)
        if (std::any_of(names.begin(), names.end(),
                        [&loop](const std::string& n) { return loop->contains(n); }))
            loop->reorder(names);
}

void CifDataBlock::write(std::ostream& stream, unsigned line_limit) const
{
    stream << comment(0) << name_ << comment(1) << '\n';

    // Each loop comes out where its first column stands in the item order.
    std::map<std::string, const CifLoop*, CifNameLess> loop_by_name;
    for (const HCifLoop& loop : loops_)
        for (const std::string& name : loop->names())
            loop_by_name.emplace(name, loop.get());
    std::set<std::string, CifNameLess> written;
    // A loop without rows is a bare header, which would take the data names after it as its
    // own columns when read back; such loops come last, where nothing can follow them.
    std::vector<std::pair<const CifLoop*, std::vector<HCifDataItem>>> empty_loops;

    for (const HCifDataItem& each : items_) {
        if (!each->is_looped()) {
            each->write(stream, line_limit);
            continue;
        }
        if (written.count(each->name()))
            continue;
        auto found = loop_by_name.find(each->name());
        if (found == loop_by_name.end()) {
            // A looped item that no loop names still keeps its values, as a loop of one column.
            const CifLoop alone(std::vector<std::string>{each->name()});
            if (each->has_value())
                alone.write(stream, {each}, line_limit);
            else
                empty_loops.emplace_back(nullptr, std::vector<HCifDataItem>{each});
            written.insert(each->name());
            continue;
        }
        std::vector<HCifDataItem> columns;
        bool has_rows = false;
        for (const std::string& name : found->second->names())
            if (HCifDataItem column = item(name)) {
                columns.push_back(column);
                has_rows = has_rows || column->has_value();
            }
        if (has_rows)
            found->second->write(stream, columns, line_limit);
        else
            empty_loops.emplace_back(found->second, std::move(columns));
        written.insert(found->second->names().begin(), found->second->names().end());
    }
    for (const auto& empty : empty_loops) {
        if (empty.first)
            empty.first->write(stream, empty.second, line_limit);
        else
            CifLoop(std::vector<std::string>{empty.second.front()->name()})
                .write(stream, empty.second, line_limit);
    }
}
