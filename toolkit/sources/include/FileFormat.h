#pragma once

#include "MoleculeFile.h"

#include <string>

class FileFormat;
using HFileFormat = THandle<FileFormat>;

// One structure file format: what it is called, which files it claims, and the reader it makes.
class FileFormat {
public:
    virtual ~FileFormat() = default;
    virtual HMoleculeFile create_molecule_file() const = 0;
    virtual std::string description() const = 0;
    // The open dialog's filter, such as "Cif files (*.cif *.cmf)".
    virtual std::string filter() const = 0;
    // Whether a file name's extension, in lower case and without the dot, is one of this format's.
    virtual bool extension_matches(const std::string& extension) const = 0;
    // Whether the file's content looks like this format.
    virtual bool identify(const std::string& filename) const = 0;
};
