// The one pair of tables behind every transform length.
//
// Filled once at program start, before any other thread and before any SpectrumBuffer is resized;
// only read afterwards, from any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "transform/ComplexVector.h"

namespace tonvane {

struct FftTables {
    int32_t maxLength = 0;          // T, the longest real transform served; 0 without tables
    std::vector<double> sineTable;  // T/4 + 1 entries, sin(2*pi*i/T)
    // T/2 entries exp(-j*pi*r), r running through the bit-reversed fractions 0, 1/2, 1/4, 3/4,
    // 1/8, ...: the first entries of a long table are the table of every shorter length.
    ComplexVector twiddleTable;
};

// Builds the tables for real transforms of up to maxLength points (a power of two, at least 4),
// replacing any tables there were.
void InitFftTables(int32_t maxLength);

// Frees the tables, at the end of a program; every later resize of a SpectrumBuffer is refused.
void FreeFftTables();

const FftTables& CurrentFftTables();

}  // namespace tonvane
