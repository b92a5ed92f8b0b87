#include "support/Golden.h"

#include <fstream>

#include <nlohmann/json.hpp>

#include "support/Files.h"

namespace tonvane::tests {

const std::vector<GoldenCase>& GoldenCases() {
    static const std::vector<GoldenCase> cases{
        {"small48-tilt6", "small48.qsr", "tilt6.txt", false},
        {"port44-warm3", "port44.qsr", "warm3.txt", false},
        {"logspaced-tilt6", "logspaced.csv", "tilt6.txt", true},
    };
    return cases;
}

std::string GoldenPath(const std::string& file) {
    return TestData("golden/" + file);
}

nlohmann::json GoldenFigures(const GoldenCase& golden) {
    std::ifstream in(GoldenPath(golden.name + ".json"));
    return nlohmann::json::parse(in);
}

}  // namespace tonvane::tests
