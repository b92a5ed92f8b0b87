#include "design/TargetShaping.h"

#include <array>
#include <cmath>

#include "elementary/Elementary.h"

namespace tonvane {

namespace {

double fourthPower(double x) {
    const double x2 = x * x;
    return x2 * x2;
}

double eighthPower(double x) {
    const double x4 = fourthPower(x);
    return x4 * x4;
}

// The power response of a second-order shelf: 1 far below the centre, the step's power ratio far
// above it.
struct Transition {
    double centre = 1.0;  // Hz
    double tilt = 1.0;    // fourth root of the step's power ratio
    double q = 1.0;

    Transition() = default;
    Transition(CurvePoint low, CurvePoint high) {
        const double a = low.frequency;
        const double b = high.frequency;
        centre = std::sqrt(a * b);
        tilt = elementary::Exp10((static_cast<double>(high.level) - low.level) / 40.0);
        q = 1.2 * centre / (b - a);
    }

    [[nodiscard]] double power(double f) const {
        const double ratio = f / centre;
        const double r = ratio * ratio;
        const double u = r * tilt;
        const double v = r / tilt;
        return ((1.0 - u) * (1.0 - u) + u / q) / ((1.0 - v) * (1.0 - v) + v / q);
    }
};

// The curve through the knots.
class KnotTarget {
  public:
    explicit KnotTarget(const TargetRecord& record)
        : base_(elementary::Exp10(record.points[0].level / 10.0)),
          lowest_(record.points[0].frequency),
          highest_(record.points[TargetRecord::knotCount - 1].frequency) {
        for (int32_t m = 0; m + 1 < TargetRecord::knotCount; ++m) {
            transitions_[m] = Transition(record.points[m], record.points[m + 1]);
        }
    }

    [[nodiscard]] double power(double f) const {
        double p = base_ / (1.0 + fourthPower(lowest_ / f)) / (1.0 + fourthPower(f / highest_));
        for (const Transition& transition : transitions_) {
            p *= transition.power(f);
        }
        return p;
    }

  private:
    double base_;     // power of the first knot
    double lowest_;   // Hz
    double highest_;  // Hz
    std::array<Transition, TargetRecord::knotCount - 1> transitions_;
};

double gridStep(int32_t sampleRate) {
    return sampleRate * (1.0 / designLength);
}

}  // namespace

void ShapeTarget(const TargetRecord& record, int32_t kind, int32_t sampleRate, DesignCurve& power) {
    if (kind == zeroCurve) {
        power.fill(1.0);
        return;
    }
    const KnotTarget target(record);
    const double step = gridStep(sampleRate);
    for (int32_t i = 0; i < designPoints; ++i) {
        power[i] = target.power(i * step);
    }
}

double TargetPowerAt(const TargetRecord& record, int32_t kind, double hertz) {
    return kind == zeroCurve ? 1.0 : KnotTarget(record).power(hertz);
}

void ShapePassband(const TargetRecord& record, int32_t sampleRate, DesignCurve& passband) {
    const double low = record.points[TargetRecord::lowEdge].frequency;
    const double high = record.points[TargetRecord::highEdge].frequency;
    const double step = gridStep(sampleRate);
    for (int32_t i = 0; i < designPoints; ++i) {
        const double f = i * step;
        passband[i] = 1.0 / ((1.0 + eighthPower(low / f)) * (1.0 + eighthPower(f / high)));
    }
}

}  // namespace tonvane
