#include "transform/FftTables.h"

#include "elementary/Elementary.h"
#include "transform/BitReversedCounter.h"

namespace tonvane {

namespace {

constexpr double twoPi = 6.283185307179586;

FftTables sharedTables;

}  // namespace

void InitFftTables(int32_t maxLength) {
    sharedTables.maxLength = maxLength;

    const int32_t quarter = maxLength / 4;
    sharedTables.sineTable.resize(quarter + 1);
    for (int32_t i = 0; i <= quarter; ++i) {
        sharedTables.sineTable[i] = elementary::SinCos(i * twoPi / maxLength).sine;
    }

    sharedTables.twiddleTable.resize(maxLength / 2);
    BitReversedCounter counter(quarter);
    for (auto& twiddle : sharedTables.twiddleTable) {
        twiddle = elementary::UnitPhasor(-(counter.value() * twoPi / maxLength));
        counter.increment();
    }
}

void FreeFftTables() {
    sharedTables = FftTables();
}

const FftTables& CurrentFftTables() {
    return sharedTables;
}

}  // namespace tonvane
