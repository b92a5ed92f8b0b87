#include <cmath>
#include <cstdio>
#include <random>

#include <gmock/gmock.h>

#include "files/CsvTable.h"
#include "files/TestFiles.h"

namespace tonvane {
namespace {

using tests::Rows;
using tests::RowsOf;

CsvTable tableOf(const Rows& rows) {
    CsvTable table;
    table.allocate();
    for (const auto& [hertz, decibels] : rows) {
        table.add(hertz, decibels);
    }
    return table;
}

TEST(CsvRows, OfAnotherFormTakeWhatTheyLackFromTheRowBefore) {
    const tests::TemporaryFolder folder;
    CsvTable table = tableOf({{9, 9}});
    const auto read = [&](const std::string& text) {
        return ReadCsvRows(folder.write("t.csv", text), table);
    };
    EXPECT_TRUE(read("300,-1\n20,2.5\r\n\n 100,  +.5") && table.isWhole);
    EXPECT_EQ(RowsOf(table), (Rows{{300, -1}, {20, 2.5}, {100, 0.5}}));
    EXPECT_TRUE(read("20,-20\n60,-8\n100\n200,-1\n1000;0") && !table.isWhole);
    EXPECT_EQ(RowsOf(table),
              (Rows{{20, -20}, {60, -8}, {100, -8}, {200, -1}, {1000, -1}, {1000, -1}}));
    EXPECT_FALSE(read("") || table.count != 0);
    EXPECT_FALSE(read("20\n30,1\n") || table.count != 0);
    EXPECT_FALSE(ReadCsvRows(folder / "none.csv", table));
    std::string many;
    for (int i = 0; i < 40000; ++i) {
        many += std::to_string(i) + ",1\n";
    }
    EXPECT_TRUE(read(many) && !table.isWhole);
    EXPECT_EQ(table.count, 32768);
}

// The bits of all numbers, of which one is as good as another if it is none.
std::string exactly(const Rows& rows) {
    std::ostringstream text;
    for (const auto& [hertz, level] : rows) {
        for (const double number : {hertz, level}) {
            text << std::hexfloat << (std::isnan(number) ? NAN : number) << ' ';
        }
    }
    return text.str();
}

// A loop over the C library's scanner; what is read ends at the first row that does not move it.
Rows rowsOfTheLibrary(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    Rows rows;
    double hertz = 0.0;
    double level = 0.0;
    for (long before = -1; std::feof(file.get()) == 0 && std::ftell(file.get()) != before;) {
        before = std::ftell(file.get());
        if (std::fscanf(file.get(), "%lf,%lf\n", &hertz, &level) != 2 && rows.empty()) {
            break;
        }
        rows.emplace_back(hertz, level);
    }
    return rows;
}

TEST(CsvRows, OfBrokenFilesAreThoseOfTheCLibrary) {
    constexpr const char* pieces[] = {
        "1", "20.5,-3\n", "7,1\n", ",", ",", "\n",  " ",   "\r\n", "0x",   "1e", "e-5",  ".",
        "-", "+",         "p",     "a", ";", "nan", "inf", "ini",  "nity", "N",  "00000"};
    constexpr const char* edges[] = {"9e999",      "-1e-400",   "4.9406564584124654e-324",
                                     "0x.1p-9999", "0xFp+9999", "1.7976931348623157e308",
                                     "0.1"};
    const tests::TemporaryFolder folder;
    std::mt19937 random(1);
    CsvTable table;
    table.allocate();
    for (int i = 0; i < 4000; ++i) {
        std::string text = i % 8 == 0 ? "" : "20,1\n";
        for (auto left = random() % 12; left > 0; --left) {
            text += left == 7 ? edges[random() % std::size(edges)]
                              : pieces[random() % std::size(pieces)];
        }
        const std::string path = folder.write(std::to_string(i), text);
        ReadCsvRows(path, table);
        ASSERT_EQ(exactly(RowsOf(table)), exactly(rowsOfTheLibrary(path))) << text;
    }
}

TEST(CsvRows, OfEqualFrequencyKeepTheirOrderAndNonePassesOneThatIsNoNumber) {
    CsvTable table;
    table.allocate();
    Rows sorted;
    for (int i = 0; i < 300; ++i) {
        table.add(-(i % 3), i);
        sorted.emplace_back(i / 100 - 2, i % 100 * 3 + 2 - i / 100);
    }
    SortCsvRows(table);
    EXPECT_EQ(RowsOf(table), sorted);
    table = tableOf({{2, 1}, {1, 2}, {NAN, 3}, {4, 4}, {0, 5}});
    SortCsvRows(table);
    EXPECT_EQ(std::vector(table.level.begin(), table.level.begin() + 5),
              (std::vector<double>{2, 1, 3, 5, 4}));
}

// Runs of one level each: the bin behind the last, and the level.
void expectRuns(const CsvTable& table, double spacing, const Rows& runs) {
    std::vector<double> magnitudes(32768, -1.0);
    EXPECT_EQ(CsvToMagnitudes(table, magnitudes), spacing);
    size_t k = 0;
    for (const auto& [end, decibels] : runs) {
        for (; k < static_cast<size_t>(end); ++k) {
            ASSERT_NEAR(magnitudes[k], std::pow(10.0, decibels / 20.0), 1e-12) << k;
        }
    }
    EXPECT_EQ(k, magnitudes.size());
}

TEST(CsvMagnitudes, HoldEachRowFromItsOwnBinToTheNextRows) {
    expectRuns(tableOf({{20, 0}, {100, -6}, {20000, 0}}), 1.220703125,
               {{82, 0}, {16384, -6}, {32768, 0}});
    expectRuns(tableOf({{20, -3}, {24000.9, 5}}), 1.46484375, {{16385, -3}, {32768, 5}});
    expectRuns(tableOf({{1000, -12}}), 1000.0 / 16384.0, {{32768, -12}});
    // Up from a fraction of 0.49 on.
    expectRuns(tableOf({{0.4899, 1}, {2.49, 2}, {7.4899, 3}, {9, 4}, {16384, 5}}), 1.0,
               {{3, 1}, {7, 2}, {9, 3}, {16384, 4}, {32768, 5}});
    // Of rows that share a bin the last one holds.
    expectRuns(tableOf({{100, 9}, {100.1, 7}, {100.2, 1}, {16384, 2}}), 1.0,
               {{100, 9}, {16384, 1}, {32768, 2}});
    expectRuns(tableOf({{0.5, 4}}), 0.0, {{32768, 4}});  // no spacing at all
}

}  // namespace
}  // namespace tonvane
