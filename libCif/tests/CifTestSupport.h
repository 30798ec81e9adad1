#ifndef CIFWARD_CIFTESTSUPPORT_H
#define CIFWARD_CIFTESTSUPPORT_H

// Helpers shared by the engine's tests.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDataBlock.h"
#include "CifDictionaryPool.h"
#include "CifErrorList.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
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

// Texts joined with commas: one line that a table of cases can spell out.
inline std::string comma_joined(const std::vector<std::string>& values)
{
    std::string out;
    for (const std::string& value : values)
        out += (out.empty() ? "" : ",") + value;
    return out;
}

// `text` on one line, its line ends shown as \n.
inline std::string one_line(const std::string& text)
{
    std::string out;
    for (char c : text)
        out += c == '\n' ? std::string("\\n") : std::string(1, c);
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

// A dictionary read from `text`, which must read without findings.
inline HCifConcreteDictionary dictionary_from(const std::string& text)
{
    HCifConcreteDictionary dictionary(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    std::istringstream in(text);
    dictionary->read(in, errors);
    EXPECT_EQ(findings(*errors), "") << text;
    return dictionary;
}

// A fresh pool that holds `dictionary` alone.
inline HCifDictionaryPool pool_of(const HCifConcreteDictionary& dictionary)
{
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(dictionary);
    return pool;
}

// The model on one line: each block with its line (unless `lines` is off), its items in order
// (a * marks a looped one) with their values, and its loops by column names.
inline std::string describe(const Cif& cif, bool lines = true)
{
    std::string out;
    for (const HCifDataBlock& block : cif) {
        out += (out.empty() ? "" : " ") + block->name() + (lines ? "@" + std::to_string(block->line()) : "") +
               "{";
        std::string inner;
        for (const HCifDataItem& item : *block) {
            inner += (inner.empty() ? "" : " ") + item->name() + (item->is_looped() ? "*" : "") + "=";
            for (std::size_t row = 0; row < item->value_count(); ++row)
                inner += (row ? "|" : "") + one_line(item->value(row));
        }
        for (const HCifLoop& loop : block->loops())
            inner += (inner.empty() ? "" : " ") + std::string("loop(") + comma_joined(loop->names()) + ")";
        out += inner + "}";
    }
    return out;
}

// Every comment of the model as "owner/position=text", joined by " | "; a loop is named by its
// first column, and its note follows as "note(column)=text".
inline std::string comment_dump(const Cif& cif)
{
    std::string out;
    const auto add = [&](const std::string& owner, const std::string& text) {
        out += (out.empty() ? "" : " | ") + owner + "=" + one_line(text);
    };
    const auto add_all = [&](const std::string& owner, const CifCommentable& c) {
        for (const auto& [position, text] : c.comments())
            add(owner + "/" + std::to_string(position), text);
    };
    for (const HCifDataBlock& block : cif) {
        add_all(block->name(), *block);
        for (const HCifDataItem& item : *block)
            add_all(item->name(), *item);
        for (const HCifLoop& loop : block->loops()) {
            add_all("loop(" + loop->names().front() + ")", *loop);
            if (!loop->notes().empty() && !loop->notes()[0].empty())
                add("note(" + loop->names().front() + ")", loop->notes()[0]);
        }
    }
    return out;
}

// ---- The shared corpus and the peer reader

inline std::string read_bytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// What a shell command prints on standard output, and whether it exited with 0.
inline std::string output_of(const std::string& command, bool& succeeded)
{
    std::string out;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (pipe && fgets(buffer, sizeof buffer, pipe))
        out += buffer;
    succeeded = pipe && pclose(pipe) == 0;
    return out;
}

inline std::string shell_quoted(const std::string& text)
{
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

inline bool gemmi_available()
{
    static const bool available = [] {
        bool succeeded = false;
        return output_of("gemmi --version 2>/dev/null", succeeded).find("gemmi") != std::string::npos &&
               succeeded;
    }();
    return available;
}

// The .cif files under `dir`, relative to it and sorted; one empty name when `dir` is missing,
// so that a suite made from the list reports a skip instead of silently running nothing.
inline std::vector<std::string> cif_files_under(const std::filesystem::path& dir)
{
    std::vector<std::string> files;
    std::error_code ec;
    if (!std::filesystem::is_directory(dir, ec))
        return {""};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir, ec))
        if (entry.is_regular_file() && entry.path().extension() == ".cif")
            files.push_back(std::filesystem::relative(entry.path(), dir).generic_string());
    std::sort(files.begin(), files.end());
    return files;
}

// A test name for a corpus file: letters, digits and underscores only, unique among the files
// of cif_files_under(dir); "CorpusMissing" for the empty name.
inline std::string corpus_test_name(const std::filesystem::path& dir, const std::string& file)
{
    static std::map<std::string, std::map<std::string, std::string>> names;
    if (file.empty())
        return "CorpusMissing";
    auto found = names.find(dir.string());
    if (found == names.end()) {
        std::map<std::string, std::string>& out = names[dir.string()];
        std::set<std::string> used;
        for (const std::string& each : cif_files_under(dir)) {
            std::string name;
            for (unsigned char c : std::filesystem::path(each).replace_extension().generic_string())
                name += std::isalnum(c) ? static_cast<char>(c) : '_';
            std::string unique = name;
            for (int n = 2; !used.insert(unique).second; ++n)
                unique = name + "_" + std::to_string(n);
            out[each] = unique;
        }
        found = names.find(dir.string());
    }
    return found->second.at(file);
}

#endif
