#include "TextDataIO.h"

#include "Logger.h"
#include "MoleculeError.h"

#include <algorithm>
#include <cctype>
#include <fstream>

namespace {

std::vector<HFileFormat>& registry()
{
    static std::vector<HFileFormat> formats;
    return formats;
}

std::string extension_of(const std::string& filename)
{
    const std::size_t slash = filename.find_last_of("/\\");
    const std::size_t dot = filename.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return "";
    std::string ext = filename.substr(dot + 1);
    for (char& c : ext)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

} // namespace

void TextDataIO::register_format(const HFileFormat& format)
{
    for (const HFileFormat& f : registry())
        if (f->description() == format->description())
            throw molecule_error("TextDataIO::register_format()  format " + format->description() +
                                 " was already registered.");
    registry().push_back(format);
}

const std::vector<HFileFormat>& TextDataIO::formats()
{
    return registry();
}

HFileFormat TextDataIO::create_processor(const std::string& filename)
{
    const std::string ext = extension_of(filename);
    for (const HFileFormat& f : registry())
        if (f->extension_matches(ext)) {
            logDebug(2, "TextDataIO::create_processor: file format is '%s'", f->description().c_str());
            return f;
        }
    for (const HFileFormat& f : registry())
        if (f->identify(filename)) {
            logDebug(2, "TextDataIO::create_processor: file format is '%s'", f->description().c_str());
            return f;
        }
    const std::string message =
        "TextDataIO::create_processor( " + filename + " ) not in any of the supported formats";
    logDebug(1, "%s", message.c_str());
    throw molecule_error(message);
}

HMoleculeFile TextDataIO::create_molecule_file(const std::string& filename)
{
    const HFileFormat format = create_processor(filename);
    std::ifstream in(filename, std::ios::binary);
    const HMoleculeFile file = format->create_molecule_file();
    if (!in || !file)
        throw molecule_error(
            "TextDataIO::create_molecule_file()  the MoleculeFile object could not be created.");
    file->read(in);
    logDebug(1, "TextDataIO::create_molecule_file successful for '%s'", filename.c_str());
    return file;
}

bool TextDataIO::file_exists(const std::string& filename)
{
    std::ifstream in(filename, std::ios::binary);
    logDebug(2,
             "TextDataIO::file_exists tried opening file '%s'. is.good() = %d is.fail() = %d is.bad() = %d",
             filename.c_str(), in.good(), in.fail(), in.bad());
    return in.good();
}

const std::vector<std::pair<std::string, std::string>>& TextDataIO::format_names()
{
    static const std::vector<std::pair<std::string, std::string>> names = {
        {"Cif file", "Cif files (*.cif *.cmf)"},    {"SHELX file", "SHELX files (*.res)"},
        {"PDB file", "PDB files (*.pdb *.ent)"},    {"MOL file", "MOL files (*.mol *.sdf *.sd *.mdl)"},
        {"Mol2 file", "Mol2 files (*.mol2 *.mol)"}, {"KDB-format Database", "KDB-format Databases (*.ind)"},
    };
    return names;
}
