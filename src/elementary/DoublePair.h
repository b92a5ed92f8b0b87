// Two doubles in one 16-byte register. The compilers' vector types give the same IEEE operations,
// in the same order, on every processor.
#pragma once

#include <cstring>

namespace tonvane::elementary {

using DoublePair = double __attribute__((vector_size(16)));

inline DoublePair LoadDoubles(const double* p) {
    DoublePair pair;
    std::memcpy(&pair, p, sizeof pair);
    return pair;
}

inline void StoreDoubles(double* p, DoublePair pair) {
    std::memcpy(p, &pair, sizeof pair);
}

inline DoublePair Twice(double x) {
    return DoublePair{x, x};
}

}  // namespace tonvane::elementary
