#ifndef CIFWARD_CIFLOOP_H
#define CIFWARD_CIFLOOP_H

#include "CifCommentable.h"
#include "CifDataItem.h"
#include "CifNameCompare.h"
#include "THandle.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

// The column names of one loop; the values live in the items of those names.
class CifLoop : public CifCommentable {
public:
    CifLoop() = default;
    explicit CifLoop(std::vector<std::string> names);

    const std::vector<std::string>& names() const { return names_; }
    std::size_t count() const { return names_.size(); }
    bool empty() const { return names_.empty(); }
    bool contains(const std::string& name) const;
    void add(const std::string& name);
    void remove(const std::string& name);
    void move_to_end(const std::string& name);
    void reorder(const std::vector<std::string>& names);
    void set_note(std::size_t row, const std::string& text);
    const std::vector<std::string>& notes() const { return notes_; }
    void add_names_to(std::vector<std::string>& out) const;

    void write(std::ostream& stream, const std::vector<HCifDataItem>& items, unsigned line_limit) const;

private:
    std::vector<std::string> names_;
    std::vector<std::string> notes_;
};

using HCifLoop = THandle<CifLoop>;

#endif
