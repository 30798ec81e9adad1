#include "Archive.h"

#include "Cell.h"
#include "Spacegroup.h"
#include "SymmMap.h"
#include "ToolkitTestSupport.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

namespace {

std::string stored(const std::function<void(Archive&)>& write)
{
    std::ostringstream out;
    Archive archive(out);
    write(archive);
    return out.str();
}

std::vector<SymmOp> operators_of(const std::vector<const char*>& texts)
{
    std::vector<SymmOp> ops;
    for (const char* text : texts)
        ops.emplace_back(std::string(text));
    return ops;
}

} // namespace

TEST(Archive, NumbersAreLittleEndianWhateverTheMachine)
{
    const std::string bytes = stored([](Archive& a) {
        a.write_int32(0x01020304);
        a.write_int32(-2);
        a.write_bool(true);
        a.write_double(1.0);
        a.write_string("P21/c");
    });
    const std::string expected("\x04\x03\x02\x01"
                               "\xfe\xff\xff\xff"
                               "\x01"
                               "\x00\x00\x00\x00\x00\x00\xf0\x3f"
                               "\x05\x00\x00\x00"
                               "P21/c",
                               4 + 4 + 1 + 8 + 4 + 5);
    EXPECT_EQ(bytes, expected);
    std::istringstream in(bytes);
    Archive archive(in);
    EXPECT_EQ(archive.read_int32(), 0x01020304);
    EXPECT_EQ(archive.read_int32(), -2);
}

TEST(Archive, CellsAndMapsReadBackAsWritten)
{
    const std::vector<Cell> cells = {
        // From the table, by name; the measured precision and uncertainty travel with the numbers.
        Cell(UncertainValue(7.1234, 4, 5), UncertainValue(10.5, 1, 0), UncertainValue(12.01, 2, 3),
             UncertainValue(90), UncertainValue(101.25, 2, 7), UncertainValue(90), Spacegroup("P21/c")),
        // Operators that no row has keep their own list and the name "Unknown".
        Cell(UncertainValue(5), UncertainValue(5), UncertainValue(5), UncertainValue(90), UncertainValue(90),
             UncertainValue(90), Spacegroup(operators_of({"x,y,z", "-x+1/3,y,z"}))),
        // Impossible geometry stays invalid after reading.
        Cell(1, 1, 1, 170, 170, 170), Cell(), Cell(4, 5, 6, 90, 90, 120)};
    for (const Cell& cell : cells) {
        std::istringstream data(stored([&](Archive& a) { cell.write(a); }));
        Archive archive(data);
        Cell back(9, 9, 9, 60, 60, 60);
        back.read(archive);
        EXPECT_EQ(back, cell) << cell;
        EXPECT_EQ(back.valid(), cell.valid()) << cell;
        EXPECT_EQ(back.spacegroup().name(), cell.spacegroup().name());
        EXPECT_EQ(back.spacegroup().row(), cell.spacegroup().row());
        EXPECT_TRUE(near(back.orthogonal(Vector3D(0.1, 0.2, 0.3)), cell.orthogonal(Vector3D(0.1, 0.2, 0.3))));
    }

    const std::vector<SymmMap> maps = {
        SymmMap(), SymmMap(17, 3, Vector3D(-1, 0, 2)),
        SymmMap(-5, 191, Vector3D(0.5, std::numeric_limits<double>::max(), -0.0))};
    for (const SymmMap& map : maps) {
        std::istringstream data(stored([&](Archive& a) { map.write(a); }));
        Archive archive(data);
        SymmMap back(1, 1, Vector3D(1, 1, 1));
        back.read(archive);
        EXPECT_EQ(back, map) << map;
    }
}

TEST(Archive, DamagedDataFailsWithItsTextAndLeavesTheObject)
{
    const Cell cell(UncertainValue(7.1, 1, 2), UncertainValue(8), UncertainValue(9), UncertainValue(90),
                    UncertainValue(95), UncertainValue(90), Spacegroup("C2/c"));
    const std::string whole = stored([&](Archive& a) { cell.write(a); });
    // Every cut of the data, at every byte, is caught; the cell being read keeps its old values.
    const Cell before(3, 4, 5, 90, 90, 90);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        std::istringstream in(whole.substr(0, cut));
        Archive archive(in);
        Cell target = before;
        const std::string failure = failure_of([&] { target.read(archive); });
        EXPECT_TRUE(failure == "Archive::read - unexpected end of data" ||
                    failure.rfind("Archive::read - bad string length: ", 0) == 0)
            << cut << ": " << failure;
        EXPECT_EQ(target, before) << cut;
    }

    // Lengths, rows and counts that no writer produces.
    const auto group = [](int row, int count) {
        return stored([&](Archive& a) {
            a.write_int32(14);
            a.write_string("P21/c");
            a.write_int32(1);
            a.write_int32(row);
            a.write_int32(count);
        });
    };
    const std::vector<std::pair<std::string, std::string>> cases = {
        {group(100000, 0), "Spacegroup::read - bad table row: 100000"},
        {group(-1, -3), "Spacegroup::read - bad operator count: -3"},
        {group(-1, 2000000000), "Archive::read - unexpected end of data"}};
    for (const auto& [data, message] : cases) {
        std::istringstream in(data);
        Archive archive(in);
        EXPECT_EQ(failure_of([&] { Spacegroup().read(archive); }), message);
    }
    std::istringstream negative(stored([](Archive& a) { a.write_int32(-1); }));
    Archive archive(negative);
    EXPECT_EQ(failure_of([&] { archive.read_string(); }), "Archive::read - bad string length: -1");
}

TEST(Archive, WritingToAFullDiskOrTheWrongWayFails)
{
    std::ofstream full("/dev/full", std::ios::binary);
    if (full) {
        Archive archive(full);
        const Cell cell(4, 5, 6, 90, 90, 90);
        // The stream buffers, so the failure shows when the data reach the device.
        EXPECT_EQ(failure_of([&] {
                      for (int i = 0; i < 2000; ++i)
                          cell.write(archive);
                      full.flush();
                      archive.write_int32(0);
                  }),
                  "Archive::write - cannot write: the disk may be full or the file read-only");
    }
    std::istringstream in("abcd");
    Archive reading(in);
    EXPECT_EQ(failure_of([&] { reading.write_int32(1); }),
              "Archive::write - the archive is open for reading");
}
