#ifndef CIFWARD_CIFMANDATORYITEMS_H
#define CIFWARD_CIFMANDATORYITEMS_H

#include <istream>
#include <string>
#include <vector>

// The data names that a submission should hold, in two lists: those checked in blocks of
// publication data and those checked in blocks of crystal data.
struct CifMandatoryItems {
    std::vector<std::string> publication_items;
    std::vector<std::string> crystal_items;

    // Reads the list file: "data_publication", "data_crystal" or "data_all" choose the lists that
    // the names on the following lines go to; any other "data_" line chooses none.
    void read(std::istream& stream);
    // False when the file cannot be opened; the lists are then left empty.
    bool read_file(const std::string& path);
};

#endif
