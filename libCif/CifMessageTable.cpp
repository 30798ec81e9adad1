#include "CifMessageTable.h"

#include <algorithm>
#include <iterator>

namespace {

const CifMessage table[] = {
    {301, 2, "File could not be read"},
    {302, 2, "CIF contains no data_ blocks"},
    {303, 0, "Data item <1> not set in block <2>"},
    {304, 0, "Related item <1> not set in block <2>"},
    {305, 1, "Data item found before the first data_ block"},
    {306, 2, "Data name <1> more than 75 characters long"},
    {307, 2, "Data name <1> immediately followed by another data name"},
    {308, 2, "Data name <1> not followed by data value"},
    {309, 1, "Missing identifier for data_ block"},
    {310, 2, "CIF contains more than one data block called <1>"},
    {311, 1, "Ignored string (possible semi-colon mismatch) <1>"},
    {312, 1, "Ignored string <1>"},
    {313, 1, "Ignoring uncommented string(s) before first data block"},
    {314, 2, "<1>"},
    {315, 1, "<1>"},
    {316, 2, "Internal error in CIF read: <1>"},
    {318, 2, "Data item <1> has already been set in this data_ block at line: <2>"},
    {319, 1, "Repeated keyword <1>"},
    {320, 1, "Created non-standard data item <1>"},
    {321, 2, "No data items in loop_"},
    {322, 2, "Too many or too few data values in the loop"},
    {323, 1, "Item validated OK : <1>"},
    {324, 1, "Data value is not in dictionary enumeration list : <1>"},
    {325, 1, "Data value is not a correctly formatted number : <1>"},
    {326, 1, "Data value should be a number : <1>"},
    {327, 1, "Data value should be greater than a defined limit : <1>"},
    {328, 1, "Data value should be smaller than a defined limit : <1>"},
    {329, 1, "Data value should not have a standard uncertainty (ESD) : <1>"},
    {331, 2, "Dictionary entry has no _name"},
    {332, 1, "Duplicate dictionary item <1> ignored"},
    {333, 2, "Loop contains too many labels, expected one or two"},
    {334, 2, "Only a single value expected"},
    {335, 2, "Multiple values must be in a loop"},
    {336, 2, "Incorrect loop master"},
    {337, 2, "Item <1> unexpected in loop, expected <2>"},
    {338, 2, "Invalid value for item <1> : expected 'yes' or 'no'"},
    {339, 2, "Invalid value for _type '<1>' : expected 'numb', 'char' or 'null'"},
    {340, 2, "Invalid value for _type_conditions '<1>' : expected 'esd', 'seq' or 'null'"},
    {341, 2, "Invalid value for _list '<1>' : expected 'yes', 'no' or 'both'"},
    {342, 2,
     "Invalid value for _related_function '<1>' : expected 'alternate', 'conversion', 'convention' or "
     "'replace'"},
    {343, 0, "Data item <1> not found in block <2>"},
    {344, 1, "Could not validate enumeration due to bad range, check dictionary for <1>"},
    {345, 2, "Internal error: Action invalid as data item not looped, action: <1>, name: <2>"},
    {346, 2, "More than <1> characters long"},
    {347, 1, "More than <1> characters long"},
    {348, 1, "Invalid non-printable character <1>"},
    {349, 1, "Invalid printable character <1>"},
    {350, 2, "No terminating (<1>) quote"},
    {351, 2, "Opening (;) semicolon not first character on line"},
    {352, 2, "Closing (;) semicolon not first character on line"},
    {353, 2, "Text block finished at end of file without final ';'"},
};

const CifMessage fallback = {0, 1, "Unknown error <1> <2>"};

} // namespace

const CifMessage& cif_message(std::uint32_t code)
{
    const CifMessage* end = std::end(table);
    const CifMessage* row = std::lower_bound(std::begin(table), end, code,
                                             [](const CifMessage& m, std::uint32_t c) { return m.code < c; });
    return (row != end && row->code == code) ? *row : fallback;
}

const CifMessage* cif_message_table_begin()
{
    return std::begin(table);
}

std::size_t cif_message_table_size()
{
    return std::size(table);
}
