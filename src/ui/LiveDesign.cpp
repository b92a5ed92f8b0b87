#include "ui/LiveDesign.h"

#include <utility>

namespace tonvane {

namespace {

constexpr int tickMs = 20;

}  // namespace

// Letting the handle go will make it a saved curve, whatever it has been.
void LiveDesign::moveTarget(const TargetRecord& moved) {
    run_.curves[static_cast<size_t>(run_.currentCurve)] = moved;
    request(savedCurve);
}

void LiveDesign::tryGain(int32_t gainIndex, int32_t kind) {
    if (gainIndex != run_.gainIndex) {
        run_.gainIndex = gainIndex;
        request(kind);
    }
}

void LiveDesign::request(int32_t kind) {
    kind_ = kind;
    isAhead_ = true;
    if (!std::exchange(isDue_, true)) {
        host_.post({.message = message::follow});
    }
}

void LiveDesign::step() {
    if (!std::exchange(isDue_, false)) {
        return;
    }
    run_.followMove(kind_);
    display_.RedrawCurves();
    isAmplifierBehind_ = programsAmplifier && run_.amplifier.biqEnabled;
    program();
}

// The pause is counted from the end of a programming: a slow link leaves time for the mouse.
void LiveDesign::program() {
    const bool isTooEarly = isAmplifierBehind_ && host_.now() - programmed_ < pause;
    setTicking(isTooEarly);
    if (isAmplifierBehind_ && !isTooEarly) {
        isAmplifierBehind_ = false;
        run_.ProgramAmplifier();
        programmed_ = host_.now();
    }
}

void LiveDesign::setTicking(bool ticks) {
    if (std::exchange(isTicking_, ticks) == ticks) {
        return;
    }
    if (ticks) {
        host_.startTimer(timer, tickMs);
    } else {
        host_.stopTimer(timer);
    }
}

void LiveDesign::settle() {
    isAhead_ = false;
    isDue_ = false;
    isAmplifierBehind_ = false;
    setTicking(false);
}

}  // namespace tonvane
