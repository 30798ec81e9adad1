// libFuzzer target: reads arbitrary bytes as CIF text, writes the model back and reads that text
// again. Any input may be damaged, so the reader must never throw; and whatever it understood
// must survive the writer, or the merge and structure tools that build text from the model would
// lose data.
//
// Input: the first byte picks the soft line limit (40 to 239), the rest is the text.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifNameCompare.h"
#include "CifValueForm.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Names the broken invariant before the crash, so that a reproduction says what went wrong.
void require(bool holds, const char* invariant)
{
    if (holds)
        return;
    std::fprintf(stderr, "cif_read_fuzzer: invariant broken: %s\n", invariant);
    __builtin_trap();
}

const HCifDictionary& empty_dictionary()
{
    static const HCifDictionary dictionary(new CifConcreteDictionary);
    return dictionary;
}

void read(Cif& cif, const std::string& text, unsigned line_limit)
{
    std::istringstream in(text);
    try {
        cif.read(in, line_limit);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "cif_read_fuzzer: the read threw: %s\n", e.what());
        __builtin_trap();
    } catch (...) {
        require(false, "the read threw");
    }
}

std::string write(const Cif& cif, unsigned line_limit)
{
    std::ostringstream out;
    cif.write(out, line_limit);
    return out.str();
}

// Whether the documented rules promise that `cif`, written and read again, comes
// back the same.
bool round_trip_promised(const Cif& cif)
{
    // Only for text without stray values (311 to 313): those are dropped, and what stood
    // around them, such as a loop left without names, changes what the rest means.
    for (const CifError& e : *cif.errors())
        if (e.code == 311 || e.code == 312 || e.code == 313)
            return false;
    // A value that needs quotes and ends in a backslash, which only an unterminated quote
    // (finding 350) can leave, cannot be quoted: a closing quote after a backslash does not
    // close. The writer gives it as a text block, which reads back with a line end added.
    for (const HCifDataBlock& block : cif)
        for (const HCifDataItem& item : *block)
            for (std::size_t row = 0; row < item->value_count(); ++row) {
                const std::string_view v = item->value_view(row);
                if (v.find('\n') == std::string_view::npos &&
                    cif_value_form(v, item->is_looped()) == CifValueForm::TextBlock)
                    return false;
            }
    return true;
}

using Values = std::map<std::string, std::vector<std::string>, CifNameLess>;

// The items that have values, with their values. The order of the items is not compared: a
// loop's columns are written together in the loop's order, so a column whose item was made
// earlier by a single value (finding 318) moves. `pad`: the writer gives a ragged loop as many
// rows as its longest column, filling the short ones with ''; pad the first reading alike.
Values values_of(const CifDataBlock& block, bool pad)
{
    std::map<std::string, std::size_t, CifNameLess> rows;
    for (const HCifLoop& loop : block.loops()) {
        std::size_t longest = 0;
        for (const std::string& name : loop->names())
            if (const HCifDataItem column = block.item(name))
                longest = std::max(longest, column->value_count());
        for (const std::string& name : loop->names())
            rows[name] = longest;
    }
    Values out;
    for (const HCifDataItem& item : block) {
        std::vector<std::string> values;
        for (std::size_t row = 0; row < item->value_count(); ++row)
            values.push_back(item->value(row));
        const auto r = rows.find(item->name());
        if (pad && item->is_looped() && r != rows.end() && values.size() < r->second)
            values.resize(r->second);
        if (!values.empty())
            out.emplace(item->name(), std::move(values));
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const unsigned line_limit = 40 + data[0] % 200;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);

    Cif first(empty_dictionary());
    read(first, text, line_limit);
    const std::string written = write(first, line_limit);
    if (!round_trip_promised(first))
        return 0;

    Cif second(empty_dictionary());
    read(second, written, line_limit);
    require(first.block_count() == second.block_count(), "the written text reads back with as many blocks");
    for (std::size_t b = 0; b < first.block_count(); ++b) {
        require(first.block(b).name() == second.block(b).name(), "the blocks read back with their names");
        require(values_of(first.block(b), true) == values_of(second.block(b), false),
                "the items read back with their values");
    }
    require(write(second, line_limit) == written, "writing what was read back gives the same text");
    return 0;
}
