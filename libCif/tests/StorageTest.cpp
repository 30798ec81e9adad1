#include "CifTestSupport.h"
#include "CifValueList.h"

namespace {

// One edit, applied both to a value list and to a vector of strings that stands for it.
struct Edit {
    enum Kind { Push, Set, Resize, Erase, Clear, Shrink, Copy, PushOwn, SetOwn } kind;
    std::size_t row = 0;
    std::string text = "";
    std::size_t from = 0; // PushOwn, SetOwn: the row whose own stored value is the text
};

std::string describe(const Edit& e)
{
    const char* names[] = {"push",   "set",  "resize",   "erase",  "clear",
                           "shrink", "copy", "push_own", "set_own"};
    return std::string(names[e.kind]) + " row " + std::to_string(e.row) + " from " + std::to_string(e.from) +
           " '" + e.text + "'";
}

void apply(const Edit& e, CifValueList& list, std::vector<std::string>& model)
{
    switch (e.kind) {
    case Edit::Push:
        list.push_back(e.text);
        model.push_back(e.text);
        break;
    case Edit::Set:
        list.set(e.row, e.text);
        model[e.row] = e.text;
        break;
    case Edit::Resize:
        list.resize(e.row);
        model.resize(e.row);
        break;
    case Edit::Erase:
        list.erase(e.row);
        model.erase(model.begin() + static_cast<std::ptrdiff_t>(e.row));
        break;
    case Edit::Clear:
        list.clear();
        model.clear();
        break;
    case Edit::Shrink:
        list.shrink_to_fit();
        break;
    case Edit::Copy: {
        const CifValueList copy(list);
        list.clear();
        list = copy;
        break;
    }
    case Edit::PushOwn: // the text lies in the list's own characters, which may have to grow
        model.push_back(model[e.from]);
        list.push_back(list.at(e.from));
        break;
    case Edit::SetOwn:
        model[e.row] = model[e.from];
        list.set(e.row, list.at(e.from));
        break;
    }
}

// Edits whose rows are valid for the list as it stands, from a fixed seed: many more
// combinations of the three forms (one value, end to end, spans) than a list of cases holds.
std::vector<Edit> seeded_edits(std::size_t count)
{
    std::uint32_t state = 12345;
    const auto next = [&state](std::uint32_t bound) {
        state = state * 1664525u + 1013904223u;
        return static_cast<std::size_t>((state >> 8) % bound);
    };
    std::vector<Edit> edits;
    std::size_t size = 0;
    for (std::size_t i = 0; i < count; ++i) {
        Edit e{Edit::Push};
        const std::size_t choice = next(100);
        e.text = std::string(next(3) == 0 ? next(40) : next(6), static_cast<char>('a' + i % 26));
        if (size == 0 || choice < 35) {
            e.kind = Edit::Push;
        } else if (choice < 65) {
            e.kind = Edit::Set;
        } else if (choice < 75) {
            e.kind = Edit::Erase;
        } else if (choice < 80) {
            e.kind = Edit::Resize;
            e.row = next(static_cast<std::uint32_t>(size + 5));
        } else if (choice < 85) {
            e.kind = Edit::PushOwn;
        } else if (choice < 93) {
            e.kind = Edit::SetOwn;
        } else if (choice < 97) {
            e.kind = Edit::Shrink;
        } else if (choice < 99) {
            e.kind = Edit::Copy;
        } else {
            e.kind = Edit::Clear;
        }
        if (e.kind == Edit::Set || e.kind == Edit::Erase || e.kind == Edit::SetOwn)
            e.row = next(static_cast<std::uint32_t>(size));
        if (e.kind == Edit::PushOwn || e.kind == Edit::SetOwn)
            e.from = next(static_cast<std::uint32_t>(size));
        edits.push_back(e);
        size = e.kind == Edit::Push || e.kind == Edit::PushOwn ? size + 1
               : e.kind == Edit::Erase                         ? size - 1
               : e.kind == Edit::Resize                        ? e.row
               : e.kind == Edit::Clear                         ? 0
                                                               : size;
    }
    return edits;
}

// Many short values, then most of them shortened one by one in the middle: the replaced text
// becomes garbage until there is enough of it to be compacted away.
std::vector<Edit> shortened_column()
{
    std::vector<Edit> edits;
    for (int i = 0; i < 1500; ++i)
        edits.push_back({Edit::Push, 0, std::to_string(1000000 + i)});
    for (std::size_t row = 1; row < 1400; row += 2)
        edits.push_back({Edit::Set, row, "s"});
    for (std::size_t row = 2; row < 1400; row += 2)
        edits.push_back({Edit::Set, row, "a value longer than before"});
    edits.push_back({Edit::Erase, 700});
    edits.push_back({Edit::Shrink});
    edits.push_back({Edit::Set, 5, "x"});
    edits.push_back({Edit::Push, 0, "last"});
    return edits;
}

// A list edited in every way, against a vector of strings: the seeded edits mix the three forms
// (one value, end to end, spans) with values taken from the list itself, whose characters may move,
// and enough shortened values for the garbage to be compacted.
TEST(CifValueList, EditsKeepEveryValue)
{
    std::vector<Edit> edits = seeded_edits(4000);
    for (const Edit& e : shortened_column())
        edits.push_back(e);
    CifValueList list;
    std::vector<std::string> model;
    for (std::size_t i = 0; i < edits.size(); ++i) {
        apply(edits[i], list, model);
        ASSERT_EQ(list.size(), model.size()) << "after edit " << i << ": " << describe(edits[i]);
        ASSERT_EQ(list.empty(), model.empty());
        for (std::size_t row = 0; row < model.size(); ++row)
            ASSERT_EQ(list.at(row), model[row])
                << "row " << row << " after edit " << i << ": " << describe(edits[i]);
    }
}

} // namespace
