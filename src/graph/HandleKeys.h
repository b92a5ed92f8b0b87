// The keyboard's way to the handles of a plot: one of them is chosen, and the keys move it.
#pragma once

#include "graph/CurveGraphWindow.h"

namespace tonvane {

class HandleKeys {
  public:
    // The plot outlives its keys.
    explicit HandleKeys(CCurveGraphWindow& plot) : plot_(plot) {}

    // The handle of the keys, 0 to 8; -1 while there is none or it is hidden.
    [[nodiscard]] int32_t chosen() const;

    // Chooses one, such as that which the mouse has taken up.
    void choose(int32_t handle) { chosen_ = handle; }

    // Chooses the next one that is shown, in the order of the record, forward (1) or back (-1).
    void chooseNext(int32_t step);

    // Moves the chosen handle by steps to the right and up, of a 24th of an octave or, finely, of 1
    // Hz, and of 1 dB. It is held from then on until letGo.
    void move(int32_t right, int32_t up, bool finely);

    // Lets go of a handle that these keys hold.
    void letGo();

    [[nodiscard]] bool areHolding() const { return areHolding_; }

  private:
    [[nodiscard]] bool isShown(int32_t handle) const;

    CCurveGraphWindow& plot_;
    int32_t chosen_ = -1;
    bool areHolding_ = false;
};

}  // namespace tonvane
