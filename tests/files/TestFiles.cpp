#include "files/TestFiles.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "design/CascadeResponse.h"

namespace tonvane::tests {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string form = (fs::temp_directory_path() / "tonvane test XXXXXX").string();
    path_ = mkdtemp(form.data()) != nullptr ? form : "";
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& contents) const {
    std::ofstream(*this / name, std::ios::binary) << contents;
    return *this / name;
}

std::string TemporaryFolder::copyGolden(const std::string& name, const std::string& as) const {
    return write(as, Contents(GoldenPath(name)));
}

std::set<std::string> TemporaryFolder::names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return in.is_open() ? std::string(std::istreambuf_iterator<char>(in), {}) : "no file";
}

std::string ResponseBytes(int32_t rate, const std::vector<double>& samples) {
    std::string bytes;
    const auto append = [&](uint64_t value, int count) {
        for (int i = 0; i < count; ++i) {
            bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
        }
    };
    append(static_cast<uint32_t>(rate), 4);
    for (const double sample : samples) {
        append(std::bit_cast<uint64_t>(sample), 8);
    }
    return bytes;
}

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

std::optional<std::string> MakeCommaLocale(const std::string& folder) {
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + folder + "/" + commaLocale + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0 || !fs::exists(folder + "/" + commaLocale)) {
        return "localedef cannot make a locale; it needs the sources of the Debian package locales";
    }
    return std::nullopt;
}

}  // namespace tonvane::tests
