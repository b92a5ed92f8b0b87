// A folder of its own for a test, and what tests do with the files in it.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "files/CsvTable.h"
#include "files/InputError.h"
#include "support/Golden.h"

namespace tonvane::tests {

// Has a blank in its name; removed with everything in it at the end of the test.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }

    // Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& contents) const;

    // A copy of a file of the golden cases.
    std::string copyGolden(const std::string& name, const std::string& as) const;

    // The names in the folder: shows temporary files left behind.
    [[nodiscard]] std::set<std::string> names() const;

  private:
    std::string path_;
};

// "no file" for one that cannot be opened.
std::string Contents(const std::string& path);

// The bytes of a speaker response file.
std::string ResponseBytes(int32_t rate, const std::vector<double>& samples);

// Frequencies and levels of a table.
using Rows = std::vector<std::pair<double, double>>;
Rows RowsOf(const CsvTable& table);

// What a filter file of either shape holds.
struct FilterRecords {
    std::vector<int32_t> addresses;
    std::vector<int32_t> words;
};
FilterRecords ParseFilterFile(const std::string& text);

// Expects the response of these words where the golden case has it: within 0.02 dB, 0.01 dB RMS.
void ExpectGoldenResponse(const std::vector<int32_t>& words, const GoldenCase& golden);

// Makes a locale with a decimal comma, for LOCPATH to point at; the reason of a failure.
constexpr const char* commaLocale = "de_DE.UTF-8";
std::optional<std::string> MakeCommaLocale(const std::string& folder);

// How a failing test names its case.
void PrintTo(const GoldenCase& golden, std::ostream* out);

// The text of the InputError that an action throws; empty for none.
template <typename Action>
std::string ComplaintOf(Action action) {
    try {
        action();
    } catch (const InputError& error) {
        return error.what();
    }
    return {};
}

}  // namespace tonvane::tests
