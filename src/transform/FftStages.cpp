#include "transform/FftStages.h"

#include "transform/BitReversedCounter.h"
#include "transform/ComplexPair.h"

namespace tonvane {

namespace {

using Complex = std::complex<double>;

// Below this many values the bit reversal is a step of its own.
constexpr int32_t joinedLength = 16;

// Puts the n complex values of `source` into bit-reversed order; the two may be the same array.
void bitReverse(const Complex* source, Complex* destination, int32_t n) {
    BitReversedCounter reversed(n / 2);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t j = reversed.value();
        if (i <= j) {
            const ComplexPair low = LoadPair(source + i);
            StorePair(destination + i, LoadPair(source + j));
            StorePair(destination + j, low);
        }
        reversed.increment();
    }
}

// The three factors of one block of two stages: of the outer span, and of the two inner ones.
struct BlockFactors {
    PairFactor outer;
    PairFactor inner0;
    PairFactor inner1;
};

BlockFactors factorsOf(const Complex* twiddle, int32_t block) {
    return {Factor(twiddle[block]), Factor(twiddle[2 * block]), Factor(twiddle[2 * block + 1])};
}

BlockFactors conjugateFactorsOf(const Complex* twiddle, int32_t block) {
    return {ConjugateFactor(twiddle[block]), ConjugateFactor(twiddle[2 * block]),
            ConjugateFactor(twiddle[2 * block + 1])};
}

struct FourValues {
    ComplexPair v0;
    ComplexPair v1;
    ComplexPair v2;
    ComplexPair v3;
};

// Two stages on the four values that they join: sum and rotated difference, twice.
FourValues forwardFour(const FourValues& x, const BlockFactors& w) {
    const ComplexPair y0 = x.v0 + x.v1;
    const ComplexPair y1 = (x.v0 - x.v1) * w.inner0;
    const ComplexPair y2 = x.v2 + x.v3;
    const ComplexPair y3 = (x.v2 - x.v3) * w.inner1;
    return {y0 + y2, y1 + y3, (y0 - y2) * w.outer, (y1 - y3) * w.outer};
}

// The inverse of forwardFour, times 4, with conjugate factors.
FourValues inverseFour(const FourValues& x, const BlockFactors& w) {
    const ComplexPair x2 = x.v2 * w.outer;
    const ComplexPair x3 = x.v3 * w.outer;
    const ComplexPair y0 = x.v0 + x2;
    const ComplexPair y1 = (x.v1 + x3) * w.inner0;
    const ComplexPair y2 = x.v0 - x2;
    const ComplexPair y3 = (x.v1 - x3) * w.inner1;
    return {y0 + y1, y0 - y1, y2 + y3, y2 - y3};
}

FourValues load(const Complex* p, int32_t step) {
    return {LoadPair(p), LoadPair(p + step), LoadPair(p + 2 * step), LoadPair(p + 3 * step)};
}

void store(Complex* p, int32_t step, const FourValues& x) {
    StorePair(p, x.v0);
    StorePair(p + step, x.v1);
    StorePair(p + 2 * step, x.v2);
    StorePair(p + 3 * step, x.v3);
}

// The stage of the longest half-span, n/2: one block, whose factor is 1.
void forwardLastStage(Complex* z, int32_t n, const Complex* twiddle) {
    const int32_t m = n / 2;
    const PairFactor w = Factor(*twiddle);
    for (int32_t i = 0; i < m; ++i) {
        const ComplexPair a = LoadPair(z + i);
        const ComplexPair b = LoadPair(z + i + m);
        StorePair(z + i, a + b);
        StorePair(z + i + m, (a - b) * w);
    }
}

void inverseFirstStage(Complex* z, int32_t n, const Complex* twiddle) {
    const int32_t m = n / 2;
    const PairFactor w = ConjugateFactor(*twiddle);
    for (int32_t i = 0; i < m; ++i) {
        const ComplexPair a = LoadPair(z + i);
        const ComplexPair b = LoadPair(z + i + m) * w;
        StorePair(z + i, a + b);
        StorePair(z + i + m, a - b);
    }
}

// The stages of half-spans m and 2m.
void forwardStagePair(Complex* z, int32_t n, int32_t m, const Complex* twiddle) {
    for (int32_t block = 0; 4 * m * block < n; ++block, z += 4 * m) {
        const BlockFactors w = factorsOf(twiddle, block);
        for (Complex* p = z; p < z + m; ++p) {
            store(p, m, forwardFour(load(p, m), w));
        }
    }
}

// The inverse stages of half-spans 2m and m.
void inverseStagePair(Complex* z, int32_t n, int32_t m, const Complex* twiddle) {
    for (int32_t block = 0; 4 * m * block < n; ++block, z += 4 * m) {
        const BlockFactors w = conjugateFactorsOf(twiddle, block);
        for (Complex* p = z; p < z + m; ++p) {
            store(p, m, inverseFour(load(p, m), w));
        }
    }
}

// The shortest half-spans, 1 and 2, are walked together with the bit reversal. An index is read as
// (two high bits, middle, two low bits): reversal exchanges the ends and reverses the middle, so
// that four blocks of one middle become four runs of four, a value of each block in a run.
constexpr int32_t reversedEnd[] = {0, 2, 1, 3};

void forwardFirstPair(const Complex* source, Complex* z, int32_t n, const Complex* twiddle) {
    const int32_t quarter = n / 4;
    const int32_t middles = n / 16;
    BitReversedCounter reversed(middles / 2);
    for (int32_t middle = 0; middle < middles; ++middle) {
        const Complex* run = source + 4 * reversed.value();
        reversed.increment();
        for (int32_t high = 0; high < 4; ++high) {
            const int32_t block = high * middles + middle;
            const Complex* p = run + reversedEnd[high];
            const FourValues x{LoadPair(p), LoadPair(p + 2 * quarter), LoadPair(p + quarter),
                               LoadPair(p + 3 * quarter)};
            store(z + 4 * block, 1, forwardFour(x, factorsOf(twiddle, block)));
        }
    }
}

// Four blocks of one middle after the inverse stages, as the runs that they become.
class FourRuns {
  public:
    FourRuns(const Complex* z, int32_t n, int32_t middle, const Complex* twiddle) {
        for (int32_t high = 0; high < 4; ++high) {
            const int32_t block = high * (n / 16) + middle;
            const FourValues x =
                inverseFour(load(z + 4 * block, 1), conjugateFactorsOf(twiddle, block));
            const int32_t i = reversedEnd[high];
            run_[0][i] = x.v0;
            run_[1][i] = x.v2;
            run_[2][i] = x.v1;
            run_[3][i] = x.v3;
        }
    }

    void storeAt(Complex* z, int32_t n, int32_t middle) const {
        for (int32_t high = 0; high < 4; ++high) {
            for (int32_t i = 0; i < 4; ++i) {
                StorePair(z + high * (n / 4) + 4 * middle + i, run_[high][i]);
            }
        }
    }

  private:
    ComplexPair run_[4][4];
};

void inverseLastPair(Complex* z, int32_t n, const Complex* twiddle) {
    const int32_t middles = n / 16;
    BitReversedCounter reversed(middles / 2);
    for (int32_t middle = 0; middle < middles; ++middle) {
        const int32_t other = reversed.value();
        reversed.increment();
        if (middle > other) {
            continue;
        }
        const FourRuns here(z, n, middle, twiddle);
        if (middle < other) {
            FourRuns(z, n, other, twiddle).storeAt(z, n, middle);
        }
        here.storeAt(z, n, other);
    }
}

}  // namespace

void ForwardStages(const Complex* source, Complex* z, int32_t n, const Complex* twiddle) {
    int32_t m = 1;
    if (n >= joinedLength) {
        forwardFirstPair(source, z, n, twiddle);
        m = 4;
    } else {
        bitReverse(source, z, n);
    }
    for (; 4 * m <= n; m *= 4) {
        forwardStagePair(z, n, m, twiddle);
    }
    if (2 * m <= n) {
        forwardLastStage(z, n, twiddle);
    }
}

void InverseStages(Complex* z, int32_t n, const Complex* twiddle) {
    // An odd number of stages leaves one for a walk of its own.
    int32_t m = 1;
    while (4 * m <= n) {
        m *= 4;
    }
    if (2 * m <= n) {
        inverseFirstStage(z, n, twiddle);
    }
    const bool joined = n >= joinedLength;
    for (m /= 4; m > (joined ? 1 : 0); m /= 4) {
        inverseStagePair(z, n, m, twiddle);
    }
    if (joined) {
        inverseLastPair(z, n, twiddle);
    } else {
        bitReverse(z, z, n);
    }
}

}  // namespace tonvane
