#pragma once

#include "FileFormat.h"

#include <string>
#include <utility>
#include <vector>

// The registry that turns a file name into a reader. Formats are registered once, at start-up;
// a file is matched by its extension, and when no extension fits, by its text.
class TextDataIO {
public:
    // Fails with "TextDataIO::register_format()  format <description> was already registered."
    static void register_format(const HFileFormat& format);
    static const std::vector<HFileFormat>& formats();
    // Fails with "TextDataIO::create_processor( <name> ) not in any of the supported formats".
    static HFileFormat create_processor(const std::string& filename);
    // Reads the file with the format's reader; fails with "TextDataIO::create_molecule_file()  the
    // MoleculeFile object could not be created." when it cannot be opened.
    static HMoleculeFile create_molecule_file(const std::string& filename);
    static bool file_exists(const std::string& filename);
    // Every family of the open dialog, with its description and filter, built or not: only the
    // CIF reader is built, the others are named so that the dialog and messages can speak of them.
    static const std::vector<std::pair<std::string, std::string>>& format_names();
};
