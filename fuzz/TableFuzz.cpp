// A response as a table from a person: the reader of whatever programs write, the end at half the
// rate, and the way onto the bins.
#include <algorithm>
#include <array>
#include <cmath>

#include "FuzzSupport.h"
#include "files/LevelTable.h"
#include "files/SectionText.h"

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

void checkEnd(CsvTable& table, int32_t rate, InputNotes& notes) {
    const std::vector<Row> before = rowsOf(table);
    FitTableToRate("input", table, rate, notes);
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

void checkRows(const std::vector<Row>& rows) {
    Require(!rows.empty(), "a table has rows");
    for (const Row& row : rows) {
        Require(row.hertz >= 0.0 && row.hertz <= 1e9, "frequencies are finite and not negative");
        Require(std::fabs(row.decibels) <= 400.0, "levels are finite");
    }
    const auto rises = [](const Row& a, const Row& b) { return a.hertz >= b.hertz; };
    Require(std::ranges::adjacent_find(rows, rises) == rows.end(), "frequencies rise");
}

// What is written from a table is read back the same, by calling tools and without a guess.
void checkRewritten(const CsvTable& table, const std::vector<Row>& rows) {
    const auto count = static_cast<size_t>(table.count);
    const std::string text = FormatLevelRows(std::span(table.frequency).first(count),
                                             std::span(table.level).first(count));
    static CsvTable again;
    InputNotes strict(true);
    ParseLevelTable("again", text, again, strict);
    Require(rowsOf(again) == rows && strict.texts().empty(), "a written table is read back");
    again.allocate();
    Require(ReadCsvRows(ScratchFile(text), again) && rowsOf(again) == rows,
            "a calling tool reads what is written");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    using namespace tonvane;
    const std::string input(TextOf(data, size));
    const uint32_t hash = HashOf(input);
    static CsvTable table;
    static CsvTable other;
    InputNotes notes;
    if (!Accepts([&] { ParseLevelTable("input", input, table, notes); })) {
        return 0;
    }
    const auto rows = rowsOf(table);
    checkRows(rows);
    InputNotes strict(true);
    if (Accepts([&] { ParseLevelTable("input", input, other, strict); })) {
        Require(rowsOf(other) == rows, "a strict reading is the same reading");
    }
    checkRewritten(table, rows);
    table.capacity = hash % 4 == 0 ? table.count : CsvTable::maximumRows;
    checkEnd(table, rates[hash / 4 % rates.size()], notes);
    checkBins(table);
    return 0;
}
