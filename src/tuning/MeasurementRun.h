// A measurement, from the command that starts it to the design of what it has captured.
#pragma once

#include "tuning/TuningRun.h"
#include "tuning/WavePlayer.h"

namespace tonvane {

// All on the thread of the tuning run. The engine's news (StreamNotify) are to be brought to that
// thread: postStatus to ShowStatus, postCaptureDone to CaptureDone.
class MeasurementRun {
  public:
    static constexpr int32_t repeats = 4;  // periods played
    static constexpr int32_t order = 15;   // 32768 samples a period

    // All outlive the measurement; `view` may be null. The player's engine has the configuration of
    // the tuning run.
    MeasurementRun(TuningRun& run, const ProgramValues& values, WavePlayer& player,
                   TuningView* view = nullptr)
        : run_(run), values_(values), player_(player), view_(view) {}

    // Ends what runs, forgets the response and starts a measurement at the design rate. When it
    // cannot be started nothing is said and no completion comes; FinishRun brings the controls
    // back.
    void Measure();

    // Whether the last Measure has started the engine.
    [[nodiscard]] bool started() const { return started_; }

    // Playback or capture has ended: stops, and with a complete capture makes it the response,
    // writes it to "measured.qsr" in AppDirectory (a failure is ignored) and designs. If it is not
    // the engine that tells of it, nothing stops and the response that is there is designed for.
    void CaptureDone(bool ofEngine, bool complete);

    // Makes the capture of a stopped engine the response of the run.
    void TakeCapture();

    // Empties the status texts and brings the controls back.
    void FinishRun();

    // Takes over the status text that a worker has set.
    void ShowStatus();

  private:
    TuningRun& run_;
    const ProgramValues& values_;
    WavePlayer& player_;
    TuningView* view_;
    bool started_ = false;
};

}  // namespace tonvane
