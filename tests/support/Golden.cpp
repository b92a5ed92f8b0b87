#include "support/Golden.h"

#include <fstream>

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
    return std::string(TONVANE_TEST_DATA) + "/golden/" + file;
}

nlohmann::json GoldenFigures(const GoldenCase& golden) {
    std::ifstream in(GoldenPath(golden.name + ".json"));
    return nlohmann::json::parse(in);
}

std::vector<double> GoldenImpulse(const std::string& file) {
    std::vector<double> samples(32768);
    std::ifstream in(GoldenPath(file), std::ios::binary);
    in.seekg(4);
    in.read(reinterpret_cast<char*>(samples.data()),
            static_cast<std::streamsize>(samples.size() * sizeof(double)));
    return samples;
}

}  // namespace tonvane::tests
