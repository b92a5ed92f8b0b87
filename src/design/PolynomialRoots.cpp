#include "design/PolynomialRoots.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "design/Lapack.h"

namespace tonvane {

void PolynomialRoots(std::span<const double> coefficients, std::span<double> rootsRe,
                     std::span<double> rootsIm, int32_t degree, bool leadingFirst) {
    const int n = degree;
    std::vector<double> companion(static_cast<size_t>(n) * n);
    bool finite = true;
    for (int c = 0; c < n; ++c) {
        const double entry = leadingFirst ? -coefficients[c + 1] / coefficients[0]
                                          : -coefficients[n - 1 - c] / coefficients[n];
        finite = finite && std::isfinite(entry);
        companion[static_cast<size_t>(c) * n] = entry;
        if (c + 1 < n) {
            companion[static_cast<size_t>(c) * n + c + 1] = 1.0;
        }
    }
    if (!finite) {
        // The eigenvalue iteration need not end on such a matrix.
        std::ranges::fill(rootsRe, std::numeric_limits<double>::quiet_NaN());
        std::ranges::fill(rootsIm, std::numeric_limits<double>::quiet_NaN());
        return;
    }

    const int workSize = 3 * n;
    std::vector<double> work(workSize);
    int selected = 0;
    int info = 0;
    dgees_("N", "N", nullptr, &n, companion.data(), &n, &selected, rootsRe.data(), rootsIm.data(),
           companion.data(), &n, work.data(), &workSize, nullptr, &info, 1, 1);
}

}  // namespace tonvane
