#include "files/TestFiles.h"

#include <gmock/gmock.h>

namespace tonvane::tests {

Rows RowsOf(const CsvTable& table) {
    Rows rows;
    for (int32_t i = 0; i < table.count; ++i) {
        rows.emplace_back(table.frequency[i], table.level[i]);
    }
    return rows;
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
