// A response as a table: both readers, the order of the rows, and the way onto the bins.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "FuzzSupport.h"
#include "files/CsvTable.h"

namespace tonvane::fuzz {

namespace {

constexpr std::array<int32_t, 5> rates{48000, 8000, 11025, 44100, 192000};
constexpr int32_t bins = 1024;

struct Row {
    double hertz;
    double decibels;
    friend bool operator==(const Row&, const Row&) = default;
};

std::vector<Row> rowsOf(const CsvTable& table) {
    std::vector<Row> rows;
    rows.reserve(table.count);
    for (int32_t i = 0; i < table.count; ++i) {
        rows.push_back({table.frequency[i], table.level[i]});
    }
    return rows;
}

void checkSort(CsvTable& table) {
    std::vector<Row> expected = rowsOf(table);
    std::ranges::stable_sort(expected, {}, &Row::hertz);
    SortCsvRows(table);
    Require(rowsOf(table) == expected, "rows rise and equal ones keep their order");
}

void checkEnd(CsvTable& table, int32_t rate) {
    const std::vector<Row> before = rowsOf(table);
    EndTableAtHalfRate(table, rate);
    const std::vector<Row> after = rowsOf(table);
    Require(!after.empty() && after.back().hertz == rate / 2.0, "the table ends at half the rate");
    Require(std::ranges::is_sorted(after, {}, &Row::hertz), "the table stays sorted");
    Require(std::equal(after.begin(), after.end() - 1, before.begin()), "rows below stay");
}

// Bin k has the level of the last row at or below it, or of the first row.
void checkBins(const CsvTable& table) {
    std::vector<double> magnitudes(bins, -1.0);
    const double spacing = CsvToMagnitudes(table, magnitudes);
    Require(spacing > 0.0, "bins have a spacing");
    int32_t row = 0;
    for (int32_t k = 0; k < bins; ++k) {
        while (row + 1 < table.count && RoundBin(table.frequency[row + 1] / spacing) <= k) {
            ++row;
        }
        const double expected = std::pow(10.0, table.level[row] / 20.0);
        Require(std::fabs(magnitudes[k] / expected - 1.0) < 1e-12,
                "each row holds from its own bin to the next row's");
    }
}

// For tables that a calling tool hands over anything goes, short of a fault.
void checkPlain(const std::string& path, int32_t capacity) {
    static CsvTable table;
    table.allocate();
    table.capacity = capacity;
    const bool read = ReadCsvRows(path, table);
    Require(read == (table.count > 0) && table.count <= capacity, "rows fit the table");
    if (read) {
        checkSort(table);
        std::vector<double> magnitudes(bins, -1.0);
        CsvToMagnitudes(table, magnitudes);
        Require(std::ranges::none_of(magnitudes, [](double m) { return m < 0.0; }),
                "every bin is filled");
    }
}

void checkForPerson(const std::string& path, std::string_view input, uint32_t hash) {
    static CsvTable table;
    if (!Accepts([&] { ReadCheckedCsvRows(path, table); })) {
        return;
    }
    const std::vector<Row> rows = rowsOf(table);
    for (const Row& row : rows) {
        Require(row.hertz >= 0.0 && row.hertz <= 1e9, "frequencies are finite and not negative");
        Require(std::fabs(row.decibels) <= 400.0, "levels are finite");
    }
    const bool blankAheadOfComma =
        input.find(" ,") != std::string_view::npos || input.find("\t,") != std::string_view::npos;
    if (!blankAheadOfComma && !input.starts_with('\xEF')) {
        static CsvTable plain;
        plain.allocate();
        Require(ReadCsvRows(path, plain) && rowsOf(plain) == rows,
                "a calling tool gets the rows that a person gets");
    }
    checkSort(table);
    table.capacity = hash % 4 == 0 ? table.count : CsvTable::maximumRows;
    checkEnd(table, rates[hash / 4 % rates.size()]);
    checkBins(table);
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    const uint32_t hash = HashOf(input);
    const std::string path = ScratchFile(input);
    checkPlain(path, hash % 8 == 0 ? 3 : tonvane::CsvTable::maximumRows);
    checkForPerson(path, input, hash);
    return 0;
}
