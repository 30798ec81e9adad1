#ifndef CIFWARD_CIFTESTSUPPORT_H
#define CIFWARD_CIFTESTSUPPORT_H

// Helpers shared by the engine's tests.

#include "CifDataBlock.h"
#include "CifErrorList.h"

#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Findings as "code@line[first|second]", space-separated, in order: one line that a table of
// cases can spell out.
inline std::string findings(const CifErrorList& list)
{
    std::string out;
    for (const CifError& e : list) {
        out += (out.empty() ? "" : " ") + std::to_string(e.code) + "@" + std::to_string(e.line);
        if (!e.first.empty() || !e.second.empty())
            out += "[" + e.first + (e.second.empty() ? "" : "|" + e.second) + "]";
    }
    return out;
}

// A test name for each corpus file: letters, digits and underscores only, unique among `files`.
inline std::map<std::string, std::string> test_names_for(const std::vector<std::string>& files)
{
    std::map<std::string, std::string> out;
    std::set<std::string> used;
    for (const std::string& file : files) {
        std::string name;
        for (unsigned char c : std::filesystem::path(file).replace_extension().generic_string())
            name += std::isalnum(c) ? static_cast<char>(c) : '_';
        std::string unique = name;
        for (int n = 2; !used.insert(unique).second; ++n)
            unique = name + "_" + std::to_string(n);
        out[file] = unique;
    }
    return out;
}

// Makes a loop of the given columns, each with its values, in `block`.
inline void add_loop_with_values(CifDataBlock& block,
                                 const std::vector<std::pair<std::string, std::vector<std::string>>>& columns)
{
    std::vector<std::string> names;
    for (const auto& column : columns) {
        block.add_item(column.first);
        names.push_back(column.first);
    }
    block.add_loop(HCifLoop(new CifLoop(names)));
    for (const auto& column : columns)
        for (const std::string& v : column.second)
            block.item(column.first)->add_value(v);
}

#endif
