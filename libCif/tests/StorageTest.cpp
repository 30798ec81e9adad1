#include "CifArena.h"
#include "CifTestSupport.h"
#include "CifValueList.h"

namespace {

// A value list edited in every way it can be, against a vector of strings, from a fixed seed: many
// more combinations of its three forms (one value, end to end, spans) than a list of cases holds,
// values taken from the list's own characters (which may move as it grows), the list placed in an
// arena as the reader places it (later edits must copy it out first), in the second half one value
// in ten 250 to 309 characters long (around the length past which a value's length is kept apart),
// and then a long column shortened in the middle until its garbage is compacted away.
TEST(CifValueList, EditsKeepEveryValue)
{
    const CifArena::Ref arena = CifArena::create();
    CifValueList list;
    std::vector<std::string> model;
    std::uint32_t state = 12345;
    const auto next = [&state](std::size_t bound) {
        state = state * 1664525u + 1013904223u;
        return static_cast<std::size_t>((state >> 8) % bound);
    };
    const auto check = [&](const std::string& step) {
        ASSERT_EQ(list.size(), model.size()) << step;
        ASSERT_EQ(list.empty(), model.empty()) << step;
        for (std::size_t row = 0; row < model.size(); ++row)
            ASSERT_EQ(list.at(row), model[row]) << "row " << row << " after " << step;
    };
    for (std::size_t i = 0; i < 8000 && !testing::Test::HasFatalFailure(); ++i) {
        const std::size_t size = model.size(), choice = size ? next(100) : 0, row = size ? next(size) : 0,
                          from = size ? next(size) : 0;
        const std::size_t length = i >= 4000 && next(10) == 0 ? 250 + next(60)
                                   : next(3) == 0             ? next(40)
                                                              : next(6);
        const std::string text(length, static_cast<char>('a' + i % 26));
        const std::string step = "edit " + std::to_string(i) + " (" + std::to_string(choice) + ") of row " +
                                 std::to_string(row) + " from " + std::to_string(from) + ": '" + text + "'";
        if (choice < 35) {
            list.push_back(text);
            model.push_back(text);
        } else if (choice < 65) {
            list.set(row, text);
            model[row] = text;
        } else if (choice < 75) {
            list.erase(row);
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(row));
        } else if (choice < 80) {
            const std::size_t target = next(size + 5);
            list.resize(target);
            model.resize(target);
        } else if (choice < 85) {
            model.push_back(model[from]);
            list.push_back(list.at(from));
        } else if (choice < 93) {
            model[row] = model[from];
            list.set(row, list.at(from));
        } else if (choice < 95) {
            list.shrink_to_fit();
        } else if (choice < 97) {
            list.settle(*arena.get());
        } else if (choice < 99) {
            const CifValueList copy(list);
            list.clear();
            list = copy;
        } else {
            list.clear();
            model.clear();
        }
        check(step);
    }
    for (int i = 0; i < 1500; ++i) {
        list.push_back(std::to_string(1000000 + i));
        model.push_back(std::to_string(1000000 + i));
    }
    for (std::size_t row = 1; row < 1400; ++row) {
        const std::string text = row % 2 ? "s" : "a value longer than before";
        list.set(row, text);
        model[row] = text;
    }
    list.erase(700);
    model.erase(model.begin() + 700);
    list.shrink_to_fit();
    check("the column shortened");
}

} // namespace
