#include "signal/TestSignal.h"

namespace tonvane {

void CTestSignal::setOrder(int newOrder) {
    order = newOrder;
    length = 1 << newOrder;
}

}  // namespace tonvane
