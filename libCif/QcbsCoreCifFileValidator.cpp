#include "QcbsCoreCifFileValidator.h"

#include "CifInputFile.h"
#include "Logger.h"

#include <string>

int QcbsCoreCifFileValidator::validate(const std::string& filename)
{
    // A compressed CIF is judged by its contents, as it is read.
    CifInputFile input;
    if (!input.open(filename)) {
        logWarning("QcbsCoreCifFileValidator - cannot read %s as text: %s", filename.c_str(),
                   input.error().c_str());
        return 0;
    }
    std::istream& file = input.stream();
    hits = 0;
    static const char* const keywords[] = {"data_",     "loop_",     "_atom",      "_audit",    "_cell",
                                           "_chemical", "_citation", "_computing", "_database", "_diffrn",
                                           "_exptl",    "_geom",     "_journal",   "_publ",     "_refine",
                                           "_refln",    "_symmetry"};
    int lines = 0, empty_lines = 0;
    std::string line;
    while (lines < max_lines && std::getline(file, line)) {
        ++lines;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty())
            ++empty_lines;
        for (const char* keyword : keywords)
            if (line.find(keyword) != std::string::npos)
                ++hits;
        if (hits >= required_hits)
            return 1;
    }
    if (empty_lines == lines || (lines < small_file_lines && hits >= small_file_hits))
        return -1;
    return 0;
}
