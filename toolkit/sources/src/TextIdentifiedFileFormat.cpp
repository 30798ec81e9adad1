#include "TextIdentifiedFileFormat.h"

#include "Logger.h"

#include <fstream>

bool TextIdentifiedFileFormat::identify(const std::string& filename) const
{
    std::ifstream in(filename, std::ios::binary);
    logDebug(2,
             "TextIdentifiedFileFormat::identify tried opening file '%s'. is.good() = %d is.fail() = %d "
             "is.bad() = %d",
             filename.c_str(), in.good(), in.fail(), in.bad());
    std::string line;
    for (int n = 0; n < lines_read && std::getline(in, line); ++n)
        if (line_matches(line))
            return true;
    return false;
}
