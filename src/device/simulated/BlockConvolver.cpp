#include "device/simulated/BlockConvolver.h"

#include <algorithm>
#include <stdexcept>

namespace tonvane {

namespace {

constexpr int32_t points = 2 * BlockConvolver::blockFrames;

bool isZero(std::span<const double> samples) {
    return std::all_of(samples.begin(), samples.end(), [](double s) { return s == 0.0; });
}

// sum += x * h, bin by bin.
void addProduct(ComplexVector& sum, const ComplexVector& x, const ComplexVector& h) {
    for (size_t k = 0; k < sum.size(); ++k) {
        const double re = x[k].real() * h[k].real() - x[k].imag() * h[k].imag();
        const double im = x[k].real() * h[k].imag() + x[k].imag() * h[k].real();
        sum[k] = {sum[k].real() + re, sum[k].imag() + im};
    }
}

}  // namespace

BlockConvolver::BlockConvolver(std::span<const double> impulse) : previous_(blockFrames) {
    if (!buffer_.resize(points)) {
        throw std::logic_error("the tables of the transform are missing");
    }
    const size_t count = std::max<size_t>((impulse.size() + blockFrames - 1) / blockFrames, 1);
    response_.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const auto rest = impulse.subspan(std::min(i * blockFrames, impulse.size()));
        buffer_.setSamplesPadded(rest.first(std::min<size_t>(rest.size(), blockFrames)));
        buffer_.forward();
        response_.push_back(buffer_.spectrum);
    }
    history_.assign(count, ComplexVector(buffer_.spectrum.size()));
    isSilent_.assign(count, true);
}

// Puts the spectrum of the last two blocks into the newest slot; whether they are silent.
bool BlockConvolver::takeInput(std::span<const double> block) {
    const bool silent = isZero(previous_) && isZero(block);
    if (!silent) {
        const auto time = buffer_.time();
        std::copy(previous_.begin(), previous_.end(), time.begin());
        std::copy(block.begin(), block.end(), time.begin() + blockFrames);
        buffer_.forward();
        std::copy(buffer_.spectrum.begin(), buffer_.spectrum.end(), history_[newest_].begin());
    }
    std::copy(block.begin(), block.end(), previous_.begin());
    return silent;
}

void BlockConvolver::Process(std::span<double, blockFrames> block) {
    const size_t count = history_.size();
    newest_ = (newest_ + 1) % count;
    isSilent_[newest_] = takeInput(block);
    if (std::find(isSilent_.begin(), isSilent_.end(), false) == isSilent_.end()) {
        std::fill(block.begin(), block.end(), 0.0);
        return;
    }
    std::fill(buffer_.spectrum.begin(), buffer_.spectrum.end(), 0.0);
    for (size_t age = 0; age < count; ++age) {
        const size_t slot = (newest_ + count - age) % count;
        if (!isSilent_[slot]) {
            addProduct(buffer_.spectrum, history_[slot], response_[age]);
        }
    }
    buffer_.inverse();
    for (int32_t i = 0; i < blockFrames; ++i) {
        block[i] = buffer_.samples[blockFrames + i] / points;
    }
}

}  // namespace tonvane
