#include "Spacegroup.h"
#include "SpacegroupTable.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <utility>

// For every row numbered 1 to 230, gemmi (a separate implementation of the International Tables)
// must name the same number from our operators wherever its own table holds the setting.
TEST(SpacegroupGemmi, GemmiFindsTheSameNumberFromOurOperators)
{
    const std::string python = TOOLKIT_PYTHON;
    if (python.empty() || python.find("NOTFOUND") != std::string::npos)
        GTEST_SKIP() << "no python3 interpreter: no comparison with gemmi";
    const std::string input = testing::TempDir() + "toolkit_gemmi_ops.txt";
    {
        std::ofstream out(input);
        for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
            if (SpacegroupTable::rows()[r].number > 230)
                continue;
            out << r;
            const char* separator = "\t";
            for (const SymmOp& op : Spacegroup::row_symmops(static_cast<int32_t>(r)))
                out << std::exchange(separator, ";") << op.text();
            out << '\n';
        }
    }
    FILE* pipe =
        popen((python + " " + TOOLKIT_TESTS_DIR + "/gemmi_identify.py " + input + " 2>&1").c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe))
        output += buffer;
    const int raw = pclose(pipe);
    std::remove(input.c_str());
    const int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    if (status == 3 || status == 127)
        GTEST_SKIP() << "python3-gemmi is not installed: no comparison with gemmi";
    ASSERT_EQ(status, 0) << output;

    std::istringstream lines(output);
    int compared = 0;
    std::string untabulated;
    std::size_t row = 0;
    for (int number = 0; lines >> row >> number;) {
        const SpacegroupRow& r = SpacegroupTable::rows()[row];
        if (number == 0) {
            untabulated += std::string(" ") + r.name;
            continue;
        }
        EXPECT_EQ(number, r.number) << r.name << " setting " << r.setting;
        ++compared;
    }
    std::cout << "gemmi agrees on " << compared << " rows; settings gemmi does not tabulate:" << untabulated
              << "\n";
    EXPECT_GE(compared, 500);
}
