#include "design/LatticeSolver.h"

#include <algorithm>
#include <cmath>

#include "elementary/DoublePair.h"

namespace tonvane {

namespace {

using elementary::DoublePair;
using elementary::LoadDoubles;
using elementary::StoreDoubles;
using elementary::Twice;

constexpr double rounding = 1e-24;  // of a residual's energy, against the whole's
// Samples side by side, and partial sums of an inner product: with more of them the sums of a walk
// do not stay in registers.
constexpr int32_t width = 2;

// `now` one sample later, with the last one of the pair before.
DoublePair delayed(DoublePair before, DoublePair now) {
    return __builtin_shufflevector(before, now, 1, 2);
}

double totalOf(DoublePair sums) {
    return sums[0] + sums[1];
}

int32_t roundedUp(int32_t samples) {
    return (samples + width - 1) / width * width;
}

// The smaller one, or NaN if b is no number.
double lesser(double a, double b) {
    return b < a || std::isnan(b) ? b : a;
}

}  // namespace

// A symmetric 2 x 2 matrix of inner products of residuals.
struct LatticeSolver::Gram {
    double pp = 0.0;
    double py = 0.0;
    double yy = 0.0;

    // What is left of y's energy without its part along p.
    [[nodiscard]] double pivot() const { return yy - py / pp * py; }
};

// Inner products of forward residuals (first letter) with delayed backward ones.
struct LatticeSolver::Cross {
    double pp = 0.0;
    double py = 0.0;
    double yp = 0.0;
    double yy = 0.0;

    [[nodiscard]] Cross turned() const { return {pp, yp, py, yy}; }
};

// The inner products that the next stage starts from.
struct LatticeSolver::Energies {
    Gram forward;
    Gram backward;
    Cross cross;

    [[nodiscard]] double leastOver(const Energies& whole) const {
        return lesser(lesser(backward.pp / whole.forward.pp, backward.pivot() / whole.forward.yy),
                      lesser(forward.pp / whole.forward.pp, forward.pivot() / whole.forward.yy));
    }
};

// The parts of other residuals p and y to be taken away, column by column: pp*p + yp*y from p's,
// py*p + yy*y from y's.
struct LatticeSolver::Reflection {
    double pp;
    double py;
    double yp;
    double yy;

    // For the residuals whose inner products with the others are `cross`, others first.
    Reflection(const Gram& others, const Cross& cross) {
        const double l = others.py / others.pp;
        const double pivot = others.yy - l * others.py;
        yp = (cross.yp - l * cross.pp) / pivot;
        yy = (cross.yy - l * cross.py) / pivot;
        pp = cross.pp / others.pp - l * yp;
        py = cross.py / others.pp - l * yy;
    }
};

void LatticeSolver::resize(int32_t order, int32_t samples) {
    order_ = order;
    const auto room = static_cast<size_t>(roundedUp(samples + order + 1));
    for (std::vector<double>* signal : {&forwardP_, &forwardY_, &delayedP_, &delayedY_}) {
        signal->resize(room);
    }
    const auto coefficients = static_cast<size_t>(order) + 1;
    for (std::vector<Channels>* rows : {&forward_.p, &forward_.y, &backward_.p, &backward_.y}) {
        rows->resize(coefficients);
    }
}

int32_t LatticeSolver::solve(std::span<const double> p, std::span<const double> y, double first,
                             std::span<double> b, std::span<double> a) {
    Energies now = start(p, y);
    Energies whole = now;
    whole.forward.yy += first * first * whole.forward.pp;
    const auto samples = static_cast<int32_t>(y.size());
    int32_t reached = 0;
    while (reached < order_ && now.leastOver(whole) > rounding) {
        ++reached;
        const Reflection forward(now.backward, now.cross.turned());
        const Reflection backward(now.forward, now.cross);
        stepUp(reached, forward, backward);
        const int32_t end = roundedUp(samples + reached + 1);
        now = reached < order_ ? advance(end, forward, backward) : finish(end, forward);
    }

    // The residual of y without its part along that of p at the same time.
    const double share = now.forward.py / now.forward.pp;
    for (size_t i = 0; i < forward_.p.size(); ++i) {
        a[i] = i == 0 ? 1.0 : forward_.y[i].y - share * forward_.p[i].y;
        b[i] = share * forward_.p[i].p - forward_.y[i].p + first * a[i];
    }
    return reached;
}

// Order 0: both residuals are the signals themselves.
LatticeSolver::Energies LatticeSolver::start(std::span<const double> p, std::span<const double> y) {
    for (auto* rows : {&forward_.p, &forward_.y, &backward_.p, &backward_.y}) {
        std::ranges::fill(*rows, Channels{});
    }
    forward_.p[0].p = forward_.y[0].y = backward_.p[0].p = backward_.y[0].y = 1.0;
    const auto take = [](std::span<const double> signal, std::vector<double>& residual) {
        const auto rest = std::ranges::copy(signal, residual.begin()).out;
        std::fill(rest, residual.end(), 0.0);
    };
    take(p, forwardP_);
    take(y, forwardY_);

    DoublePair pp{}, py{}, yy{}, crossPp{}, crossPy{}, crossYp{}, crossYy{}, beforeP{}, beforeY{};
    const int32_t end = roundedUp(static_cast<int32_t>(y.size()) + 1);
    for (int32_t n = 0; n < end; n += width) {
        const DoublePair fp = LoadDoubles(&forwardP_[n]);
        const DoublePair fy = LoadDoubles(&forwardY_[n]);
        const DoublePair dp = delayed(beforeP, fp);
        const DoublePair dy = delayed(beforeY, fy);
        beforeP = fp;
        beforeY = fy;
        StoreDoubles(&delayedP_[n], dp);
        StoreDoubles(&delayedY_[n], dy);
        pp += fp * fp;
        py += fp * fy;
        yy += fy * fy;
        crossPp += fp * dp;
        crossPy += fp * dy;
        crossYp += fy * dp;
        crossYy += fy * dy;
    }
    std::fill(delayedP_.begin() + end, delayedP_.end(), 0.0);
    std::fill(delayedY_.begin() + end, delayedY_.end(), 0.0);
    const Gram gram{totalOf(pp), totalOf(py), totalOf(yy)};
    return {gram, gram, {totalOf(crossPp), totalOf(crossPy), totalOf(crossYp), totalOf(crossYy)}};
}

// The coefficients of the residuals of order `stage` from those of the order before.
void LatticeSolver::stepUp(int32_t stage, const Reflection& forward, const Reflection& backward) {
    const DoublePair fpp = Twice(forward.pp), fpy = Twice(forward.py);
    const DoublePair fyp = Twice(forward.yp), fyy = Twice(forward.yy);
    const DoublePair bpp = Twice(backward.pp), bpy = Twice(backward.py);
    const DoublePair byp = Twice(backward.yp), byy = Twice(backward.yy);
    for (int32_t i = stage; i >= 0; --i) {
        const DoublePair fp = LoadDoubles(&forward_.p[i].p);
        const DoublePair fy = LoadDoubles(&forward_.y[i].p);
        const DoublePair bp = i > 0 ? LoadDoubles(&backward_.p[i - 1].p) : DoublePair{};
        const DoublePair by = i > 0 ? LoadDoubles(&backward_.y[i - 1].p) : DoublePair{};
        StoreDoubles(&forward_.p[i].p, fp - fpp * bp - fyp * by);
        StoreDoubles(&forward_.y[i].p, fy - fpy * bp - fyy * by);
        StoreDoubles(&backward_.p[i].p, bp - bpp * fp - byp * fy);
        StoreDoubles(&backward_.y[i].p, by - bpy * fp - byy * fy);
    }
}

// The residuals of the next order, and their inner products on the same walk.
LatticeSolver::Energies LatticeSolver::advance(int32_t end, const Reflection& forward,
                                               const Reflection& backward) {
    const DoublePair fpp = Twice(forward.pp), fpy = Twice(forward.py);
    const DoublePair fyp = Twice(forward.yp), fyy = Twice(forward.yy);
    const DoublePair bpp = Twice(backward.pp), bpy = Twice(backward.py);
    const DoublePair byp = Twice(backward.yp), byy = Twice(backward.yy);
    DoublePair forwardPp{}, forwardPy{}, forwardYy{}, delayedPp{}, delayedPy{}, delayedYy{};
    DoublePair crossPp{}, crossPy{}, crossYp{}, crossYy{}, beforeP{}, beforeY{};
    double* const __restrict forwardP = forwardP_.data();
    double* const __restrict forwardY = forwardY_.data();
    double* const __restrict delayedP = delayedP_.data();
    double* const __restrict delayedY = delayedY_.data();
    for (int32_t n = 0; n < end; n += width) {
        const DoublePair oldFp = LoadDoubles(forwardP + n);
        const DoublePair oldFy = LoadDoubles(forwardY + n);
        const DoublePair oldDp = LoadDoubles(delayedP + n);
        const DoublePair oldDy = LoadDoubles(delayedY + n);
        const DoublePair fp = oldFp - fpp * oldDp - fyp * oldDy;
        const DoublePair fy = oldFy - fpy * oldDp - fyy * oldDy;
        const DoublePair bp = oldDp - bpp * oldFp - byp * oldFy;
        const DoublePair by = oldDy - bpy * oldFp - byy * oldFy;
        const DoublePair dp = delayed(beforeP, bp);
        const DoublePair dy = delayed(beforeY, by);
        beforeP = bp;
        beforeY = by;
        StoreDoubles(forwardP + n, fp);
        StoreDoubles(forwardY + n, fy);
        StoreDoubles(delayedP + n, dp);
        StoreDoubles(delayedY + n, dy);
        forwardPp += fp * fp;
        forwardPy += fp * fy;
        forwardYy += fy * fy;
        delayedPp += dp * dp;
        delayedPy += dp * dy;
        delayedYy += dy * dy;
        crossPp += fp * dp;
        crossPy += fp * dy;
        crossYp += fy * dp;
        crossYy += fy * dy;
    }
    return {{totalOf(forwardPp), totalOf(forwardPy), totalOf(forwardYy)},
            {totalOf(delayedPp), totalOf(delayedPy), totalOf(delayedYy)},
            {totalOf(crossPp), totalOf(crossPy), totalOf(crossYp), totalOf(crossYy)}};
}

// The last order: of its residuals only the two inner products that are still wanted.
LatticeSolver::Energies LatticeSolver::finish(int32_t end, const Reflection& forward) {
    const DoublePair fpp = Twice(forward.pp), fpy = Twice(forward.py);
    const DoublePair fyp = Twice(forward.yp), fyy = Twice(forward.yy);
    DoublePair pp{}, py{};
    for (int32_t n = 0; n < end; n += width) {
        const DoublePair dp = LoadDoubles(&delayedP_[n]);
        const DoublePair dy = LoadDoubles(&delayedY_[n]);
        const DoublePair fp = LoadDoubles(&forwardP_[n]) - fpp * dp - fyp * dy;
        const DoublePair fy = LoadDoubles(&forwardY_[n]) - fpy * dp - fyy * dy;
        pp += fp * fp;
        py += fp * fy;
    }
    return {{totalOf(pp), totalOf(py), 0.0}, {}, {}};
}

}  // namespace tonvane
