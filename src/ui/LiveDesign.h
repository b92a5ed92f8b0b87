// The design that follows the mouse.
//
// While a handle of the plot moves, or the mouse goes over the entries of the gain clamp, the
// filter and its curves are brought near to what a design would give: once a turn of the host's
// loop, however many moves that has, so that the picture is never behind by more than one. What the
// mouse settles on is then designed like anything else; the dialog does that, and calls settle.
#pragma once

#include <chrono>
#include <cstdint>

#include "ui/CurveDisplay.h"
#include "ui/DialogHost.h"

namespace tonvane {

class LiveDesign {
  public:
    static constexpr int timer = 3;                         // of the host
    static constexpr std::chrono::milliseconds pause{100};  // between two programmings

    // All outlive it.
    LiveDesign(DialogHost& host, TuningRun& run, CurveDisplay& display)
        : host_(host), run_(run), display_(display) {}

    // The present curve of the run has become this one, or the gain clamp has; a step follows by
    // message::follow. `kind` is a TargetKind.
    void moveTarget(const TargetRecord& moved);
    void tryGain(int32_t gainIndex, int32_t kind);

    // Answers to message::follow and to the timer.
    void step();
    void tick() { program(); }

    // Whether the run has another filter than a design would give it.
    [[nodiscard]] bool isAhead() const { return isAhead_; }

    // A design comes: no step follows any more.
    void settle();

    // Whether steps go to the amplifier too, if its equalizer is on: with `pause` between them,
    // each inside one shutdown bracket. The last one is not left out.
    bool programsAmplifier = false;

  private:
    void request(int32_t kind);
    void program();
    void setTicking(bool ticks);

    DialogHost& host_;
    TuningRun& run_;
    CurveDisplay& display_;
    int32_t kind_ = savedCurve;
    bool isAhead_ = false;
    bool isDue_ = false;              // a step
    bool isAmplifierBehind_ = false;  // by a step or more
    bool isTicking_ = false;
    std::chrono::steady_clock::time_point programmed_{};
};

}  // namespace tonvane
