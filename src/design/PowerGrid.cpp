#include "design/PowerGrid.h"

#include <algorithm>
#include <array>

#include "elementary/DoublePair.h"
#include "elementary/Elementary.h"

namespace tonvane {

namespace {

using elementary::DoublePair;

constexpr size_t pairsInBlock = 8;  // of points

struct RecursionState {
    std::array<DoublePair, pairsInBlock> sum{};
    std::array<DoublePair, pairsInBlock> difference{};
};

// |polynomial|^2 at a block's points; `sign` is 1 for points near 0, -1 near pi.
template <int sign>
void blockPowers(std::span<const double> coefficients, const double* u, double* out) {
    std::array<DoublePair, pairsInBlock> factor;
    for (size_t k = 0; k < pairsInBlock; ++k) {
        factor[k] = elementary::LoadDoubles(u + 2 * k);
    }
    const auto next = [](DoublePair c, DoublePair f, DoublePair sum, DoublePair difference) {
        const DoublePair product = c + f * sum;
        return sign > 0 ? product + difference : product - difference;
    };
    RecursionState state;
    for (size_t n = coefficients.size() - 1; n > 0; --n) {
        const DoublePair c = elementary::Twice(coefficients[n]);
        for (size_t k = 0; k < pairsInBlock; ++k) {
            DoublePair& sum = state.sum[k];
            DoublePair& difference = state.difference[k];
            difference = next(c, factor[k], sum, difference);
            sum = sign > 0 ? sum + difference : difference - sum;
        }
    }
    const DoublePair c = elementary::Twice(coefficients[0]);
    for (size_t k = 0; k < pairsInBlock; ++k) {
        const DoublePair sum = state.sum[k];
        const DoublePair d = next(c, factor[k], sum, state.difference[k]);
        const DoublePair beside = sign > 0 ? d + sum : d - sum;
        elementary::StoreDoubles(out + 2 * k, d * d - factor[k] * sum * beside);
    }
}

}  // namespace

void PowerGrid::build(std::span<const double> angles) {
    count_ = angles.size();
    blocks_.clear();
    for (size_t first = 0; first < count_; first += width) {
        Block block{};
        block.isLow = elementary::SinCos(angles[first]).cosine >= 0.0;
        for (size_t i = 0; i < width; ++i) {
            const auto half = elementary::SinCos(0.5 * angles[std::min(first + i, count_ - 1)]);
            block.u[i] =
                block.isLow ? -4.0 * half.sine * half.sine : 4.0 * half.cosine * half.cosine;
        }
        blocks_.push_back(block);
    }
}

void PowerGrid::power(std::span<const double> coefficients, std::span<double> out) const {
    std::array<double, width> powers;
    for (size_t i = 0; i < blocks_.size(); ++i) {
        const Block& block = blocks_[i];
        const size_t first = i * width;
        if (block.isLow) {
            blockPowers<1>(coefficients, block.u, powers.data());
        } else {
            blockPowers<-1>(coefficients, block.u, powers.data());
        }
        std::copy_n(powers.begin(), std::min(width, count_ - first),
                    out.begin() + static_cast<std::ptrdiff_t>(first));
    }
}

}  // namespace tonvane
