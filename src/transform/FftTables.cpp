#include "transform/FftTables.h"

#include "elementary/Elementary.h"
#include "transform/BitReversedCounter.h"

namespace tonvane {

namespace {

constexpr double twoPi = 6.283185307179586;

FftTables tables;

}  // namespace

void InitFftTables(int32_t maxLength) {
    tables.maxLength = maxLength;

    const int32_t quarter = maxLength / 4;
    tables.sineTable.resize(quarter + 1);
    for (int32_t i = 0; i <= quarter; ++i) {
        tables.sineTable[i] = elementary::SinCos(i * twoPi / maxLength).sine;
    }

    tables.twiddleTable.resize(maxLength / 2);
    BitReversedCounter counter(quarter);
    for (auto& twiddle : tables.twiddleTable) {
        twiddle = elementary::UnitPhasor(-(counter.value() * twoPi / maxLength));
        counter.increment();
    }
}

void FreeFftTables() {
    tables = FftTables();
}

const FftTables& CurrentFftTables() {
    return tables;
}

}  // namespace tonvane
