// What the file of a measurement of a direct path is judged by.
#pragma once

#include <cstdint>
#include <string>

namespace tonvane::tests {

struct MeasuredFile {
    double flatnessDb;  // the largest distance from the level at 1 kHz, 40 Hz to 20 kHz
    int32_t peak;       // sample
};

// A speaker response file at 48 kHz. The transform tables are there.
MeasuredFile JudgeMeasuredFile(const std::string& path);

}  // namespace tonvane::tests
