#include "design/BiquadSections.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonvane {

namespace {

// Moves the real roots behind the complex ones, both in order of appearance; returns their number.
int32_t moveRealRootsBack(std::span<double> re, std::span<double> im, double tolerance) {
    int32_t i = 0;
    auto end = static_cast<int32_t>(re.size());
    int32_t realCount = 0;
    while (i < end) {
        if (std::fabs(im[i]) < tolerance) {
            std::rotate(re.begin() + i, re.begin() + i + 1, re.end());
            std::rotate(im.begin() + i, im.begin() + i + 1, im.end());
            --end;
            ++realCount;
        } else {
            ++i;
        }
    }
    return realCount;
}

// The cotangent of the angle falls as the frequency of the pair rises.
void sortPairsByAngle(std::span<double> re, std::span<double> im, int32_t complexCount) {
    for (int32_t unsorted = complexCount - 2; unsorted > 0; unsorted -= 2) {
        for (int32_t p = 0; p < unsorted; p += 2) {
            const double cotangent = re[p] / im[p];
            const double nextCotangent = re[p + 2] / im[p + 2];
            if (nextCotangent > cotangent) {
                std::swap_ranges(re.begin() + p, re.begin() + p + 2, re.begin() + p + 2);
                std::swap_ranges(im.begin() + p, im.begin() + p + 2, im.begin() + p + 2);
            }
        }
    }
}

}  // namespace

void RootsToBiquads(std::span<double> rootsRe, std::span<double> rootsIm,
                    std::span<double> sections, int32_t sectionCount, double tolerance) {
    const auto re = rootsRe.first(2 * sectionCount);
    const auto im = rootsIm.first(2 * sectionCount);
    const int32_t realCount = moveRealRootsBack(re, im, tolerance);
    sortPairsByAngle(re, im, 2 * sectionCount - realCount);

    const int32_t complexSections = sectionCount - realCount / 2;
    for (int32_t i = 0; i < sectionCount; ++i) {
        const auto section = sections.subspan(3 * i, 3);
        section[0] = 1.0;
        if (i < complexSections) {
            const double r = re[2 * i];
            const double m = im[2 * i];
            section[1] = -2.0 * r;
            section[2] = r * r + m * m;
        } else {
            const double r1 = re[2 * i];
            const double r2 = re[2 * i + 1];
            section[1] = -(r1 + r2);
            section[2] = r1 * r2;
        }
    }
}

}  // namespace tonvane
