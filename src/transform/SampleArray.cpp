#include "transform/SampleArray.h"

#include <new>

namespace tonvane {

bool SampleArray::ensure(int32_t n) {
    if (n <= capacity) {
        return true;
    }
    data.reset();
    capacity = 0;
    try {
        data = std::make_unique<double[]>(static_cast<size_t>(n));
    } catch (const std::bad_alloc&) {
        return false;
    }
    capacity = n;
    return true;
}

}  // namespace tonvane
