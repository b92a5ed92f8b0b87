#include "files/TestFiles.h"

#include <cmath>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "design/CascadeResponse.h"

namespace tonvane::tests {

Rows RowsOf(const CsvTable& table) {
    Rows rows;
    for (int32_t i = 0; i < table.count; ++i) {
        rows.emplace_back(table.frequency[i], table.level[i]);
    }
    return rows;
}

FilterRecords ParseFilterFile(const std::string& text) {
    FilterRecords records;
    std::istringstream in(text);
    uint32_t word = 0;
    int bytes = 0;
    for (std::string token; in >> token;) {
        const auto value = static_cast<uint32_t>(std::stoul(token, nullptr, 16));
        if (!token.starts_with("0x")) {
            word = word << 8U | value;
            if (++bytes % 4 == 0) {
                records.words.push_back(static_cast<int32_t>(word));
            }
        } else if (value != 0xFF) {
            records.addresses.push_back(static_cast<int32_t>(value));
        }
    }
    return records;
}

void ExpectGoldenResponse(const std::vector<int32_t>& words, const GoldenCase& golden) {
    ASSERT_EQ(words.size(), 35U);
    const nlohmann::json figures = GoldenFigures(golden);
    const std::vector<double> grid = figures["gridHz"];
    const auto actual = CascadeResponseDb(words, grid, figures["measuringRate"]);
    double largest = 0.0;
    double squares = 0.0;
    for (size_t i = 0; i < grid.size(); ++i) {
        const double difference = actual[i] - figures["cascadeDb"][i].get<double>();
        largest = std::max(largest, std::fabs(difference));
        squares += difference * difference;
    }
    EXPECT_LT(largest, 0.02) << golden.name;
    EXPECT_LT(std::sqrt(squares / static_cast<double>(grid.size())), 0.01) << golden.name;
}

void PrintTo(const GoldenCase& golden, std::ostream* out) {
    *out << golden.name;
}

void ExpectRefusals(const Refusals& cases, const std::function<void(const std::string&)>& read) {
    const TemporaryFolder folder;
    for (const auto& [contents, complaint] : cases) {
        const std::string path = folder.write("f", contents);
        EXPECT_THAT(ComplaintOf([&] { read(path); }), testing::StartsWith(path + complaint));
    }
    EXPECT_EQ(ComplaintOf([&] { read(folder / "none"); }), folder / "none: cannot be opened");
}

}  // namespace tonvane::tests
