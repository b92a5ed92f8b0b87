// Coefficients of a polynomial by ascending powers: what the real and the complex kind share.
#pragma once

#include <complex>
#include <cstdint>
#include <memory>

namespace tonvane {

// Value semantics: a copy has its own array. There is no move, so that an assignment never takes
// over a smaller array than its target had: `capacity` never shrinks.
template <class Value>
class CoefficientArray {
  public:
    CoefficientArray() = default;
    CoefficientArray(const CoefficientArray& other);
    CoefficientArray& operator=(const CoefficientArray& other);
    ~CoefficientArray() = default;

    // Makes room for the powers 0 to wantedDegree, exactly; the contents and `degree` stay. When
    // memory runs out "not enough memory" goes to standard error and nothing changes. An array of
    // 4 GiB or more counts as too large on every machine.
    void Reserve(int32_t wantedDegree);

    // Whether the power `wantedDegree` has its place, as it has after a Reserve that succeeded.
    [[nodiscard]] bool Holds(int32_t wantedDegree) const { return wantedDegree < capacity; }

    Value& operator[](int32_t power) { return coefficients[static_cast<size_t>(power)]; }
    const Value& operator[](int32_t power) const {
        return coefficients[static_cast<size_t>(power)];
    }

    int32_t degree = -1;                    // highest power in use; -1 when empty
    std::unique_ptr<Value[]> coefficients;  // index = power; null until something is reserved
    int32_t capacity = 0;                   // elements allocated, at least degree + 1
};

extern template class CoefficientArray<double>;
extern template class CoefficientArray<std::complex<double>>;

}  // namespace tonvane
