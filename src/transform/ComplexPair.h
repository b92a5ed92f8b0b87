// One complex double in one 16-byte register, for the inner loops of the transform. The compilers'
// vector types give the same IEEE operations, in the same order, on every processor.
#pragma once

#include <complex>
#include <cstring>

namespace tonvane {

using ComplexPair = double __attribute__((vector_size(16)));

inline ComplexPair LoadPair(const std::complex<double>* z) {
    ComplexPair pair;
    std::memcpy(&pair, z, sizeof pair);
    return pair;
}

inline void StorePair(std::complex<double>* z, ComplexPair pair) {
    std::memcpy(static_cast<void*>(z), &pair, sizeof pair);
}

inline ComplexPair Swapped(ComplexPair pair) {
    return __builtin_shufflevector(pair, pair, 1, 0);
}

inline ComplexPair Conjugate(ComplexPair pair) {
    return pair * ComplexPair{1.0, -1.0};
}

// A factor prepared for multiplication: (re, re) and (-im, im).
struct PairFactor {
    ComplexPair re;
    ComplexPair im;
};

inline PairFactor Factor(std::complex<double> w) {
    return {ComplexPair{w.real(), w.real()}, ComplexPair{-w.imag(), w.imag()}};
}

inline PairFactor ConjugateFactor(std::complex<double> w) {
    return {ComplexPair{w.real(), w.real()}, ComplexPair{w.imag(), -w.imag()}};
}

inline ComplexPair operator*(ComplexPair z, const PairFactor& w) {
    return z * w.re + Swapped(z) * w.im;
}

}  // namespace tonvane
