// What tests do with the files of this room.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "files/CsvTable.h"
#include "files/InputError.h"
#include "support/Files.h"
#include "support/Golden.h"

namespace tonvane::tests {

// Frequencies and levels of a table.
using Rows = std::vector<std::pair<double, double>>;
Rows RowsOf(const CsvTable& table);

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

// The contents of a file, and how the complaint about it begins behind the file's path.
using Refusals = std::vector<std::pair<std::string, std::string>>;

// Expects a reader for people to refuse these files, and one that is not there.
void ExpectRefusals(const Refusals& cases, const std::function<void(const std::string&)>& read);

}  // namespace tonvane::tests
