// A response as a table from a calling tool: the plain reader, the order of the rows.
#include <algorithm>
#include <cstring>
#include <utility>

#include "FuzzSupport.h"
#include "files/CsvTable.h"

namespace tonvane::fuzz {

namespace {

constexpr int32_t bins = 1024;

struct Row {
    double hertz;
    double decibels;
};

std::vector<Row> rowsOf(const CsvTable& table) {
    std::vector<Row> rows;
    rows.reserve(table.count);
    for (int32_t i = 0; i < table.count; ++i) {
        rows.push_back({table.frequency[i], table.level[i]});
    }
    return rows;
}

// As swapping neighbours does it, where what is no number is neither above nor below.
void checkSort(CsvTable& table) {
    std::vector<Row> expected = rowsOf(table);
    for (size_t last = expected.size(); last > 1; --last) {
        for (size_t j = 1; j < last; ++j) {
            if (expected[j].hertz < expected[j - 1].hertz) {
                std::swap(expected[j], expected[j - 1]);
            }
        }
    }
    SortCsvRows(table);
    const std::vector<Row> sorted = rowsOf(table);
    Require(std::memcmp(sorted.data(), expected.data(), sorted.size() * sizeof(Row)) == 0,
            "rows rise and equal ones keep their order");
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

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    const uint32_t hash = HashOf(input);
    const std::string path = ScratchFile(input);
    checkPlain(path, hash % 8 == 0 ? 3 : tonvane::CsvTable::maximumRows);
    return 0;
}
