#include "tuning/MeasurementRun.h"

#include "files/ResponseFile.h"

namespace tonvane {

namespace {

void refresh(TuningView* view) {
    if (view != nullptr) {
        view->UpdateResultList();
        view->RedrawCurves();
    }
}

}  // namespace

void MeasurementRun::Measure() {
    player_.engine.Stop();
    run_.SetStatusLine(1, "Preparing ...", StatusNews::sent);
    run_.SetStatusLine(2, "", StatusNews::sent);
    if (view_ != nullptr) {
        view_->SetEditControlsEnabled(false);
    }
    MeasurementConfig& measurement = run_.measurement;
    measurement.sampleRate = run_.designRate;
    measurement.repeats = repeats;
    measurement.signal.sampleRate = run_.designRate;
    measurement.signal.highFrequency = run_.designRate / 2;
    measurement.signal.setOrder(order);
    measurement.signal.generate();

    run_.responseAnalyzer.reset();
    refresh(view_);
    started_ = player_.engine.StartMeasurement();
}

void MeasurementRun::CaptureDone(bool ofEngine, bool complete) {
    if (ofEngine) {
        player_.Stop();
    }
    if (complete) {
        if (ofEngine) {
            TakeCapture();
            WriteResponseFile(values_.AppDirectory + "measured.qsr", run_.measurement.sampleRate,
                              run_.responseAnalyzer.response.time());
        }
        run_.responseReady = true;
        run_.RunDesign();
        refresh(view_);
    }
    FinishRun();
}

void MeasurementRun::TakeCapture() {
    run_.responseReady = true;
    run_.responseAnalyzer.reset();
    const SampleArray& period = player_.engine.receiver.accumulators[0];
    run_.responseAnalyzer.loadCapture(run_.measurement.signal, period.first(testBlockFrames));
}

void MeasurementRun::FinishRun() {
    run_.SetStatusLine(1, "", StatusNews::posted);
    run_.SetStatusLine(2, "", StatusNews::posted);
    if (view_ != nullptr) {
        view_->SetEditControlsEnabled(true);
    }
}

void MeasurementRun::ShowStatus() {
    run_.SetStatusLine(1, player_.engine.status.text(), StatusNews::posted);
}

}  // namespace tonvane
