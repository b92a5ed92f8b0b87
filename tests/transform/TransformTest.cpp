// The transform against a direct Fourier sum, and the rules of its buffers.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "support/CallWatch.h"
#include "support/Signals.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {
namespace {

using testing::Each;
using testing::ElementsAreArray;

SpectrumBuffer bufferOf(const std::vector<double>& x) {
    SpectrumBuffer buffer;
    EXPECT_TRUE(buffer.resize(static_cast<int32_t>(x.size())));
    buffer.setSamplesPadded(x);
    return buffer;
}

class Transform : public tests::WithFftTables {};

TEST_F(Transform, IsTheFourierSumForwardAndItsReturnBackWithoutAllocating) {
    for (const int32_t n : {2, 4, 8, 1024, 2048, 4096, 32768}) {
        SCOPED_TRACE(n);
        const std::vector<double> x = tests::Noise(n);
        SpectrumBuffer buffer = bufferOf(x);
        const int64_t before = tests::AllocationCount();
        buffer.forward();
        EXPECT_EQ(tests::AllocationCount(), before);
        EXPECT_THAT(buffer.time(), ElementsAreArray(x));
        ASSERT_EQ(buffer.spectrum.size(), n / 2 + 1);
        for (int32_t i = 0; i < 64; ++i) {  // the ends, and even and odd ones between them
            const int32_t k = i < 3 ? i * n / 4 : i * (n / 128 + 1) % (n / 2);
            const auto error = buffer.spectrum[k] - tests::PolynomialAt(x, k, n);
            EXPECT_LT(std::abs(error), 2e-16 * std::log2(n) * std::sqrt(n)) << k;
        }
        // The imaginary parts of the two end bins are 0, and the way back does not look at them.
        for (const int32_t end : {0, n / 2}) {
            EXPECT_EQ(buffer.spectrum[end].imag(), 0.0);
            buffer.spectrum[end].imag(1e9);
        }
        const ComplexVector spectrum = buffer.spectrum;
        const int64_t beforeInverse = tests::AllocationCount();
        buffer.inverse();
        EXPECT_EQ(tests::AllocationCount(), beforeInverse);
        EXPECT_EQ(buffer.spectrum, spectrum);
        for (int32_t t = 0; t < n; ++t) {
            ASSERT_NEAR(buffer.samples[t] / n, x[t], 4e-15) << t;
        }
    }
}

TEST_F(Transform, RefusedLengthsChangeNothingAndShorterOnesKeepTheSamples) {
    const std::vector<double> x = tests::Noise(1024);
    SpectrumBuffer buffer = bufferOf(x);
    for (const int32_t n : {32769, 65536, 1023, 1, 0, std::numeric_limits<int32_t>::min()}) {
        EXPECT_FALSE(buffer.resize(n)) << n;
        EXPECT_EQ(buffer.bins, 513);
        EXPECT_THAT(buffer.time(), ElementsAreArray(x));
    }
    EXPECT_TRUE(buffer.resize(64));
    EXPECT_EQ(buffer.samples.capacity, 1024);
    EXPECT_EQ(buffer.spectrum.size(), 33U);
    EXPECT_THAT(buffer.time(), ElementsAreArray(std::span(x).first(64)));
}

// The values mean nothing there, but nothing outside the length may be touched.
TEST_F(Transform, EvenLengthsThatAreNoPowerOfTwoStayInside) {
    for (const int32_t n : {6, 10, 14, 100, 1000, 12346, 32766}) {
        SpectrumBuffer buffer = bufferOf(std::vector<double>(n));
        buffer.samples.ensure(n + 16);
        std::ranges::fill(buffer.samples.first(n + 16), 1.0);
        buffer.forward();
        buffer.inverse();
        EXPECT_THAT(buffer.samples.first(n + 16).subspan(n), Each(1.0)) << n;
    }
}

TEST_F(Transform, TablesServeTheirLengthAndBelowUntilFreed) {
    const ComplexVector longTable = CurrentFftTables().twiddleTable;
    InitFftTables(1024);
    EXPECT_THAT(CurrentFftTables().twiddleTable, ElementsAreArray(std::span(longTable).first(512)));
    EXPECT_FALSE(SpectrumBuffer().resize(2048));
    EXPECT_TRUE(SpectrumBuffer().resize(1024));
    FreeFftTables();
    EXPECT_FALSE(SpectrumBuffer().resize(2));
    SetUpTestSuite();
}

TEST(SampleArray, KeepsItsStorageUntilItMustGrowAndIsEmptyWhenItCannot) {
    SampleArray array;
    ASSERT_TRUE(array.ensure(4));
    array[3] = 7.0;
    ASSERT_TRUE(array.ensure(2));
    EXPECT_EQ(array.capacity, 4);
    EXPECT_EQ(array[3], 7.0);
    ASSERT_TRUE(array.ensure(5));
    EXPECT_THAT(array.first(5), Each(0.0));
    tests::FailNextAllocation();
    EXPECT_FALSE(array.ensure(8));
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.capacity, 0);
}

}  // namespace
}  // namespace tonvane
