#include "CifMandatoryItems.h"

#include <fstream>

void CifMandatoryItems::read(std::istream& stream)
{
    publication_items.clear();
    crystal_items.clear();
    bool to_publication = false, to_crystal = false;
    std::string line;
    while (std::getline(stream, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == '#')
            continue;
        if (line.compare(0, 5, "data_") == 0) {
            const std::string heading = line.substr(0, line.find_first_of(" \t"));
            to_publication = heading == "data_all" || heading == "data_publication";
            to_crystal = heading == "data_all" || heading == "data_crystal";
            continue;
        }
        if (line[0] != '_')
            continue;
        const std::string name = line.substr(0, line.find_first_of(" \t"));
        if (to_publication)
            publication_items.push_back(name);
        if (to_crystal)
            crystal_items.push_back(name);
    }
}

bool CifMandatoryItems::read_file(const std::string& path)
{
    publication_items.clear();
    crystal_items.clear();
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return false;
    read(file);
    return true;
}
