#include <cmath>

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

TEST(CsvRows, EndAtTheFirstLineOfAnotherForm) {
    const tests::TemporaryFolder folder;
    const struct {
        std::string text;
        Rows rows;  // none: the import has failed
    } cases[] = {
        {"300,-1\n20,2.5\n100,+.5\n", {{300, -1}, {20, 2.5}, {100, 0.5}}},
        {"20,1\r\n30,-2\r\n", {{20, 1}, {30, -2}}},
        {"\n 20, 1\n\n\t30,2", {{20, 1}, {30, 2}}},
        {"2e1,1E-1 3.e+1,2\n \n", {{20, 0.1}, {30, 2}}},
        {"20,1\n30;2\n40,3\n", {{20, 1}, {30, 1}}},
        {"20,1\nthirty,2\n40,3\n", {{20, 1}, {20, 1}}},
        {"20,1\n30 ,2\n40,3\n", {{20, 1}, {30, 1}}},
        {"20,1\n30,\n", {{20, 1}, {30, 1}}},
        {"20,1\n30,nan\n40,3", {{20, 1}, {30, 1}}},
        {"20,1\n1e999,-1e999\n1e-999,2\n", {{20, 1}, {HUGE_VAL, -HUGE_VAL}, {0, 2}}},
        {"", {}},
        {" \r\n\n", {}},
        {"Frequency,Level\n20,1\n", {}},
        {"20\n30,1\n", {}},
        {"nan,0\n", {}},
    };
    for (const auto& c : cases) {
        CsvTable table = tableOf({{9, 9}});
        EXPECT_EQ(ReadCsvRows(folder.write("t.csv", c.text), table), !c.rows.empty()) << c.text;
        EXPECT_EQ(RowsOf(table), c.rows) << c.text;
    }
    CsvTable table = tableOf({{9, 9}});
    EXPECT_FALSE(ReadCsvRows(folder / "none.csv", table));
    EXPECT_EQ(table.count, 0);
    std::string many;
    for (int i = 0; i < 40000; ++i) {
        many += std::to_string(i) + ",1\n";
    }
    EXPECT_TRUE(ReadCsvRows(folder.write("t.csv", many), table));
    EXPECT_EQ(table.count, 32768);
    EXPECT_EQ(table.frequency[32767], 32767.0);
}

TEST(CsvRows, OfEqualFrequencyKeepTheirOrder) {
    CsvTable table;
    table.allocate();
    Rows sorted;
    for (int i = 0; i < 300; ++i) {
        table.add(-(i % 3), i);
        sorted.emplace_back(i / 100 - 2, i % 100 * 3 + 2 - i / 100);
    }
    SortCsvRows(table);
    EXPECT_EQ(RowsOf(table), sorted);
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
