// The definition of a target curve.
#pragma once

#include <array>
#include <cstdint>

namespace tonvane {

struct CurvePoint {
    int32_t frequency;  // Hz
    int32_t level;      // dB

    friend bool operator==(const CurvePoint&, const CurvePoint&) = default;
};

// Points 0 to 6 are the knots of the curve, from low to high frequency. Points 7 and 8 are the low
// and high edge of the pass-band; their levels only place the handles on the plot.
struct TargetRecord {
    static constexpr int32_t knotCount = 7;
    static constexpr int32_t lowEdge = 7;
    static constexpr int32_t highEdge = 8;

    std::array<CurvePoint, 9> points;

    friend bool operator==(const TargetRecord&, const TargetRecord&) = default;
};

// Where a target curve comes from. The values are those of the first word of a target file.
enum TargetKind : int32_t {
    zeroCurve = 0,   // the target is flat and the knots are not looked at
    userCurve = 1,   // the knots count; a host gave them
    savedCurve = 2,  // the knots count; they were edited here
};

// Flat, 80 Hz to 20 kHz, with a pass-band from 100 Hz to 16 kHz.
extern const TargetRecord BuiltInTargetCurve;

}  // namespace tonvane
