#include "graph/HandleKeys.h"

#include <algorithm>
#include <cmath>

namespace tonvane {

namespace {

constexpr int32_t handleCount = 9;
constexpr double keyRatio = 1.0292;  // a 24th of an octave

}  // namespace

bool HandleKeys::isShown(int32_t handle) const {
    return handle >= 0 &&
           (handle < TargetRecord::knotCount ? plot_.showKnots : plot_.showBandEdges);
}

int32_t HandleKeys::chosen() const {
    return isShown(chosen_) ? chosen_ : -1;
}

// The same one if there is no other.
void HandleKeys::chooseNext(int32_t step) {
    letGo();
    for (int32_t i = 1; i <= handleCount; ++i) {
        const int32_t handle = (chosen_ + step * i + 2 * handleCount) % handleCount;
        if (isShown(handle)) {
            chosen_ = handle;
            return;
        }
    }
}

void HandleKeys::move(int32_t right, int32_t up, bool finely) {
    if (chosen() == -1) {
        return;
    }
    CurvePoint to = plot_.record.points[static_cast<size_t>(chosen_)];
    const double step = finely ? 1.0 : std::max(1.0, to.frequency * (keyRatio - 1.0));
    to.frequency = static_cast<int32_t>(std::lround(to.frequency + right * step));
    to.level += up;
    areHolding_ = true;
    plot_.MoveHandle(chosen_, to);
}

void HandleKeys::letGo() {
    if (areHolding_) {
        areHolding_ = false;
        plot_.OnLeftButtonUp();
    }
}

}  // namespace tonvane
