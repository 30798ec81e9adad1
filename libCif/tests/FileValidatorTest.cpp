#include "QcbsCoreCifFileValidator.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(CoreCifFileValidator, JudgesFilesByTheirCifWords)
{
    const fs::path dir = fs::temp_directory_path() / ("cifward-validator-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    std::string long_prose;
    for (int i = 0; i < 30; ++i)
        long_prose += "Dear editor, please find enclosed our manuscript.\n";

    struct Case {
        const char* name;
        std::string content;
        int result;
        int hits;
    };
    const std::vector<Case> cases = {
        // The fourth line scores "_symmetry" and "_cell": the words of a line all count.
        {"a CIF", "data_x\n_cell_length_a 5\n_atom_site_label C1\n_symmetry_cell_setting cubic\n", 1, 5},
        {"a small file with one word", "data_x\n", -1, 1},
        {"prose", long_prose, 0, 0},
        {"case matters", "DATA_X\n_CELL_LENGTH_A 1\n" + long_prose, 0, 0},
        {"line ends of CR LF", "data_x\r\n\r\n_cell_a 1\r\n_atom_b 2\r\n_exptl_c 3\r\n", 1, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const fs::path path = dir / "file.txt";
        std::ofstream(path, std::ios::binary) << c.content;
        QcbsCoreCifFileValidator validator;
        EXPECT_EQ(validator.validate(path.string()), c.result);
        EXPECT_EQ(validator.hits, c.hits);
    }

    QcbsCoreCifFileValidator validator;
    EXPECT_EQ(validator.validate((dir / "missing.cif").string()), 0);
    EXPECT_EQ(validator.hits, -1);
    fs::remove_all(dir);
}
