#include "filters/CoefficientArray.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <new>
#include <utility>

namespace tonvane {

namespace {

// Null when there is no memory.
template <class Value>
std::unique_ptr<Value[]> allocateZeros(int64_t count) {
    if (count > std::numeric_limits<uint32_t>::max() / static_cast<int64_t>(sizeof(Value))) {
        return nullptr;
    }
    return std::unique_ptr<Value[]>(new (std::nothrow) Value[static_cast<size_t>(count)]());
}

}  // namespace

template <class Value>
CoefficientArray<Value>::CoefficientArray(const CoefficientArray& other) {
    *this = other;
}

template <class Value>
CoefficientArray<Value>& CoefficientArray<Value>::operator=(const CoefficientArray& other) {
    Reserve(other.degree);
    if (this != &other && other.degree < capacity) {
        degree = other.degree;
        std::copy_n(other.coefficients.get(), degree + 1, coefficients.get());
    }
    return *this;
}

template <class Value>
void CoefficientArray<Value>::Reserve(int32_t wantedDegree) {
    const int64_t wantedCount = int64_t{wantedDegree} + 1;
    if (capacity >= wantedCount) {
        return;
    }
    auto larger = allocateZeros<Value>(wantedCount);
    if (!larger) {
        std::cerr << "not enough memory" << std::endl;
        return;
    }
    std::copy_n(coefficients.get(), degree + 1, larger.get());
    coefficients = std::move(larger);
    capacity = static_cast<int32_t>(wantedCount);
}

template class CoefficientArray<double>;
template class CoefficientArray<std::complex<double>>;

}  // namespace tonvane
