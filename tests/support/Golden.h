// The figures of an independent program (NumPy and SciPy) for three whole runs, in
// tests/data/golden: CASE.json has the values on the way, CASE.filter.txt and CASE.target.txt the
// files after the run.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace tonvane::tests {

struct GoldenCase {
    std::string name;      // of the .json, .filter.txt and .target.txt
    std::string response;  // file name of the speaker's response
    std::string target;    // file name of the target file
    bool isCsv;
};

const std::vector<GoldenCase>& GoldenCases();

// A path in the folder of the golden cases.
std::string GoldenPath(const std::string& file);

// Needs nlohmann/json.hpp.
nlohmann::json GoldenFigures(const GoldenCase& golden);

}  // namespace tonvane::tests
