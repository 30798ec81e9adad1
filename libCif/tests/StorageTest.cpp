#include "CifConcreteDictionary.h"
#include "CifDataItem.h"
#include "CifNameIndex.h"
#include "CifValueList.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

// One edit, applied both to a value list and to a vector of strings that stands for it.
struct Edit {
    enum Kind { Push, Set, Resize, Erase, Clear, Shrink, Copy, PushOwn, SetOwn, Settle } kind;
    std::size_t row = 0;
    std::string text;
    std::size_t from = 0; // PushOwn, SetOwn: the row whose own stored value is the text
};

std::string describe(const Edit& e)
{
    const char* names[] = {"push",   "set",  "resize",   "erase",   "clear",
                           "shrink", "copy", "push_own", "set_own", "settle"};
    return std::string(names[e.kind]) + " row " + std::to_string(e.row) + " from " + std::to_string(e.from) +
           " '" + e.text + "'";
}

void apply(const Edit& e, CifValueList& list, std::vector<std::string>& model, CifArena& arena)
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
    case Edit::Settle: // what the reader does once a value is read; later edits must copy first
        list.settle(arena);
        break;
    }
}

// Edits whose rows are valid for the list as it stands, from a fixed seed: many more
// combinations of the three forms (one value, end to end, spans) than a list of cases holds.
// With `long_values`, one value in ten is 250 to 309 characters long, around the length past which
// a value's length is kept apart from the others.
std::vector<Edit> seeded_edits(std::size_t count, bool long_values = false)
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
        const std::size_t length = long_values && next(10) == 0 ? 250 + next(60)
                                   : next(3) == 0               ? next(40)
                                                                : next(6);
        e.text = std::string(length, static_cast<char>('a' + i % 26));
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
        } else if (choice < 95) {
            e.kind = Edit::Shrink;
        } else if (choice < 97) {
            e.kind = Edit::Settle;
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

TEST(CifValueList, EditsKeepEveryValue)
{
    const std::string s15(15, 'f'), s16(16, 'g'), s17(17, 'h');
    struct Case {
        const char* what;
        std::vector<Edit> edits;
    };
    const std::vector<Case> cases = {
        {"one value, replaced, then more",
         {{Edit::Push, 0, "x"},
          {Edit::Set, 0, "longer than the room inside the list"},
          {Edit::Push, 0, "y"}}},
        {"lengths around the room inside the list",
         {{Edit::Push, 0, s15},
          {Edit::Set, 0, s16},
          {Edit::Set, 0, s17},
          {Edit::Shrink},
          {Edit::Set, 0, "a"},
          {Edit::Shrink},
          {Edit::Push, 0, s16},
          {Edit::Push, 0, s17},
          {Edit::Push, 0, ""}}},
        {"empty values",
         {{Edit::Push, 0, ""},
          {Edit::Push, 0, ""},
          {Edit::Set, 0, "a"},
          {Edit::Set, 1, ""},
          {Edit::Erase, 0}}},
        {"values changed in the middle and at the end",
         {{Edit::Push, 0, "a"},
          {Edit::Push, 0, "bb"},
          {Edit::Push, 0, "ccc"},
          {Edit::Set, 1, "BB"},
          {Edit::Set, 2, "cccccc"},
          {Edit::Set, 2, ""},
          {Edit::Set, 1, "longer"},
          {Edit::Set, 1, "s"},
          {Edit::Push, 0, "d"},
          {Edit::Erase, 0},
          {Edit::Shrink},
          {Edit::Set, 0, "after shrinking"},
          {Edit::Copy}}},
        {"erasing from every place",
         {{Edit::Push, 0, "a"},
          {Edit::Push, 0, "bb"},
          {Edit::Push, 0, "ccc"},
          {Edit::Push, 0, "dddd"},
          {Edit::Erase, 1},
          {Edit::Erase, 2},
          {Edit::Erase, 0},
          {Edit::Erase, 0},
          {Edit::Push, 0, "n"},
          {Edit::Push, 0, "m"}}},
        {"resizing both ways",
         {{Edit::Resize, 1},
          {Edit::Set, 0, "v"},
          {Edit::Resize, 4},
          {Edit::Set, 3, "w"},
          {Edit::Set, 1, "longer value"},
          {Edit::Resize, 6},
          {Edit::Resize, 2},
          {Edit::Resize, 0},
          {Edit::Resize, 3},
          {Edit::Set, 1, "m"}}},
        {"a list's own values as the text",
         {{Edit::Push, 0, "abc"},
          {Edit::Push, 0, "de"},
          {Edit::PushOwn, 0, "", 0},
          {Edit::SetOwn, 1, "", 2},
          {Edit::SetOwn, 2, "", 1},
          {Edit::PushOwn, 0, "", 2},
          {Edit::Set, 0, "a longer value to move things"},
          {Edit::SetOwn, 3, "", 0},
          {Edit::PushOwn, 0, "", 3},
          {Edit::SetOwn, 4, "", 4},
          {Edit::SetOwn, 1, "", 4}}},
        {"a value copied onto itself", {{Edit::Push, 0, "only"}, {Edit::SetOwn, 0, "", 0}, {Edit::Copy}}},
        {"cleared and used again",
         {{Edit::Push, 0, "a"}, {Edit::Push, 0, "b"}, {Edit::Clear}, {Edit::Push, 0, "c"}}},
        {"garbage compacted", shortened_column()},
        {"placed in an arena, then edited and copied",
         {{Edit::Push, 0, s17},
          {Edit::Settle},
          {Edit::Set, 0, "a"},
          {Edit::Push, 0, "b"},
          {Edit::Push, 0, s17},
          {Edit::Settle},
          {Edit::Copy},
          {Edit::Settle},
          {Edit::PushOwn, 0, "", 2},
          {Edit::Settle},
          {Edit::SetOwn, 0, "", 3},
          {Edit::Settle},
          {Edit::Erase, 1},
          {Edit::Settle},
          {Edit::Resize, 5},
          {Edit::Settle},
          {Edit::Clear},
          {Edit::Push, 0, "c"}}},
        {"seeded edits", seeded_edits(4000)},
        {"seeded edits with long values", seeded_edits(4000, true)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const CifArena::Ref arena = CifArena::create();
        CifValueList list;
        std::vector<std::string> model;
        for (std::size_t i = 0; i < c.edits.size(); ++i) {
            apply(c.edits[i], list, model, *arena.get());
            ASSERT_EQ(list.size(), model.size()) << "after edit " << i << ": " << describe(c.edits[i]);
            ASSERT_EQ(list.empty(), model.empty());
            for (std::size_t row = 0; row < model.size(); ++row)
                ASSERT_EQ(list.at(row), model[row])
                    << "row " << row << " after edit " << i << ": " << describe(c.edits[i]);
        }
    }
}

HCifDataItem named(const std::string& name)
{
    static const HCifDictionary dictionary(new CifConcreteDictionary);
    return HCifDataItem(new CifDataItem(name, dictionary));
}

TEST(CifNameIndex, FindsWithoutRegardToCaseUntilErased)
{
    struct Case {
        const char* what;
        std::vector<std::string> names;
        std::vector<std::size_t> erase_order;
    };
    // Enough names that their home slots collide and runs of taken slots wrap around the table.
    std::vector<std::string> many;
    for (int i = 0; i < 300; ++i)
        many.push_back("_item_" + std::to_string(i * 7919 % 1000) + (i % 3 ? "_X" : "_y"));
    std::vector<std::size_t> forward(many.size()), interleaved;
    for (std::size_t i = 0; i < forward.size(); ++i)
        forward[i] = i;
    for (std::size_t i = 0; i < many.size(); i += 2)
        interleaved.push_back(i);
    for (std::size_t i = many.size() - 1; i < many.size(); i -= 2)
        interleaved.push_back(i);
    std::vector<std::size_t> backward(forward.rbegin(), forward.rend());
    const std::vector<Case> cases = {
        {"one name", {"_cell_length_a"}, {0}},
        // The hash folds 0x20 in every byte, so these share it; the names stay apart.
        {"bytes the hash folds together",
         {"_x@", "_x`", "_x\x1f", "_x?", "_x\x7f", "_X_"},
         {1, 4, 0, 3, 5, 2}},
        {"lengths around eight bytes",
         {"_", "_abcdef", "_abcdefg", "_abcdefgh", "_ABCDEFGHIJKLMNOP", "_abcdefghijklmnopq"},
         {2, 0, 5, 1, 4, 3}},
        {"many, erased in order", many, forward},
        {"many, erased from the end", many, backward},
        {"many, every other one first", many, interleaved},
    };
    const auto upper = [](std::string s) {
        std::transform(s.begin(), s.end(), s.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
        return s;
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        CifNameIndex index;
        std::vector<HCifDataItem> items;
        for (const std::string& name : c.names) {
            ASSERT_FALSE(index.find(upper(name))) << name;
            items.push_back(named(name));
            index.insert(items.back());
        }
        EXPECT_EQ(index.size(), c.names.size());
        std::vector<bool> erased(c.names.size(), false);
        const auto check_all = [&](const std::string& when) {
            for (std::size_t i = 0; i < c.names.size(); ++i) {
                const HCifDataItem expected = erased[i] ? HCifDataItem() : items[i];
                EXPECT_EQ(index.find(c.names[i]), expected) << c.names[i] << " " << when;
                EXPECT_EQ(index.find(upper(c.names[i])), expected) << upper(c.names[i]) << " " << when;
            }
        };
        check_all("after the inserts");
        for (std::size_t n : c.erase_order) {
            index.erase(items[n]);
            erased[n] = true;
            check_all("after erasing " + c.names[n]);
            if (::testing::Test::HasFailure())
                return;
        }
        EXPECT_EQ(index.size(), 0u);
        index.erase(items[0]); // no longer there: nothing happens
        EXPECT_EQ(index.size(), 0u);
    }
}

} // namespace
