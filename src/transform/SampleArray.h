// An owned array of doubles that grows and never shrinks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tonvane {

struct SampleArray {
    std::unique_ptr<double[]> data;  // null when empty
    int32_t capacity = 0;            // elements allocated

    // Makes room for n elements. Storage of at least n is kept with its contents; otherwise the old
    // storage is freed (contents lost) and n elements of value 0 are allocated. False when memory
    // runs out, which leaves the array empty.
    bool ensure(int32_t n);

    double& operator[](int64_t index) { return data[static_cast<size_t>(index)]; }
    double operator[](int64_t index) const { return data[static_cast<size_t>(index)]; }
    [[nodiscard]] std::span<double> first(int32_t n) {
        return {data.get(), static_cast<size_t>(n)};
    }
    [[nodiscard]] std::span<const double> first(int32_t n) const {
        return {data.get(), static_cast<size_t>(n)};
    }
};

}  // namespace tonvane
