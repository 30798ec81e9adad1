// Reads each CIF whose path is a line of standard input and writes its document back through the
// writer to standard output, after a line "#### PATH": the written text of a whole collection
// from one process, so that two builds can be compared on it (bench/compare-output.sh).

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifInputFile.h"

#include <iostream>
#include <string>

int main()
{
    std::ios::sync_with_stdio(false);
    const HCifDictionary dictionary(new CifConcreteDictionary);
    for (std::string path; std::getline(std::cin, path);) {
        std::cout << "#### " << path << '\n';
        CifInputFile input;
        if (!input.open(path)) {
            std::cout << "cannot read: " << input.error() << '\n';
            continue;
        }
        Cif cif(dictionary);
        cif.read(input.stream());
        cif.write(std::cout);
    }
    return std::cout ? 0 : 1;
}
