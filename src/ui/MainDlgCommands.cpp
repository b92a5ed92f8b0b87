// What the dialog answers to, as one table, and what it does then.
#include <algorithm>
#include <climits>

#include "ui/Controls.h"
#include "ui/MainDlg.h"

namespace tonvane {

namespace {

constexpr int legendBelow = 7;  // from a text to its line, pixels
constexpr int legendWidth = 3;
constexpr std::array<uint32_t, 3> legendColors{0xFF008F, 0xFF0000, 0x0000FF};

}  // namespace

const std::span<const CMainDlg::Row> CMainDlg::rows = [] {
    using namespace controls;
    using namespace notifications;
    using D = CMainDlg;
    constexpr auto whole = [](uint32_t message, auto handler, Then then = Then::stop,
                              std::intptr_t result = 0) {
        return Row{message, INT_MIN, INT_MAX, anyCode, handler, then, result};
    };
    constexpr auto change = [](int id, int code, auto handler) {
        return Row{message::command, id, id, code, handler};
    };
    constexpr auto press = [](int id, auto handler, Then then = Then::stop) {
        return Row{message::command, id, id, anyCode, handler, then};
    };
    static constexpr std::array table{
        whole(message::initDialog, &D::InitTuningState, Then::goOn),
        whole(message::paint, &D::OnPaint, Then::goOn),
        whole(message::close, &D::OnClose, Then::goOn),
        whole(message::status, &D::OnStatus, Then::stop, 1),
        whole(message::captureDone, &D::OnCaptureDone, Then::stop, 1),
        whole(message::curveChanged, &D::OnCurveChanged),
        whole(message::follow, &D::OnFollow),
        Row{message::timer, LiveDesign::timer, LiveDesign::timer, anyCode, &D::OnLiveTimer},
        change(curve, selectionChange, &D::OnDesignChange),
        change(gainClamp, selectionChange, &D::OnDesignChange),
        change(gainClamp, hover, &D::OnGainHover),
        change(gainClamp, closeUp, &D::OnGainCloseUp),
        change(filterRate, selectionChange, &D::OnFilterRate),
        change(inputRate, selectionChange, &D::OnInputRate),
        press(measure, &D::OnMeasure),
        press(play, &D::OnPlayCommand, Then::goOn),
        press(controls::stop, &D::OnStopCommand, Then::goOn),
        press(openResponse, &D::OnOpenResponse),
        press(openTable, &D::OnOpenTable),
        press(controls::close, &D::OnCloseButton),
        press(reset, &D::OnReset),
        press(loadParameters, &D::OnLoadParameters),
        press(saveParameters, &D::OnSaveParameters),
        // Not the last one: that box is looked at when something else draws anew.
        Row{message::command, showFirst, showLast - 1, anyCode, &D::OnShowCurves},
        press(undo, &D::OnUndo),
        press(redo, &D::OnRedo),
        press(savePicture, &D::OnSavePicture),
        press(liveAmplifier, &D::OnLiveAmplifier),
    };
    return std::span<const Row>(table);
}();

void CMainDlg::OnPaint(const DialogMessage& /*m*/) {
    for (int i = 0; i < static_cast<int>(legendColors.size()); ++i) {
        const PixelRectangle text = host.rectangle(controls::legendFirst + i);
        host.drawLine(text.left, text.right, text.bottom + legendBelow, legendWidth,
                      legendColors[static_cast<size_t>(i)]);
    }
}

void CMainDlg::OnClose(const DialogMessage& /*m*/) {
    designWhatIsFollowed();
    run.SaveFiltersOnExit();
}

void CMainDlg::OnCloseButton(const DialogMessage& /*m*/) {
    designWhatIsFollowed();
    run.SaveFiltersOnExit();
    leave(0);
}

// A worker's text that arrives behind the end of its run is out of date.
void CMainDlg::OnStatus(const DialogMessage& m) {
    if (m.lParam == message::byWorker && player.isActive()) {
        run.StatusLine1 = engine.status.text();
    }
    host.setText(controls::status1, run.StatusLine1);
    host.setText(controls::status2, run.StatusLine2);
}

void CMainDlg::OnMeasure(const DialogMessage& /*m*/) {
    takeControls();
    measurement_.Measure();
    RefreshPlayer();
}

// The engine tells of its end without an id.
void CMainDlg::OnCaptureDone(const DialogMessage& m) {
    const bool ofEngine = m.id == 0;
    if (ofEngine) {
        StopPlaying();
    }
    takeControls();
    work([&] { measurement_.CaptureDone(ofEngine, m.lParam != 0); });
    if (m.lParam != 0) {
        host.setFocus(controls::dialog);
    }
}

void CMainDlg::OnPlayCommand(const DialogMessage& /*m*/) {
    enableEditGroup(true);
    host.enable(controls::measure, false);
}

void CMainDlg::OnStopCommand(const DialogMessage& /*m*/) {
    measurement_.FinishRun();
}

void CMainDlg::RunDesign() {
    takeControls();
    run.currentCurve = std::max(host.selection(controls::curve), 0);
    run.gainIndex = host.selection(controls::gainClamp);
    plot.SetRecord(run.curves[static_cast<size_t>(run.currentCurve)]);
    work([&] { run.RunDesign(); });
}

void CMainDlg::OnDesignChange(const DialogMessage& /*m*/) {
    RunDesign();
    history_.moved(targetState());
}

void CMainDlg::OnFilterRate(const DialogMessage& /*m*/) {
    run.filterRateIndex = std::max(host.selection(controls::filterRate), 0);
    RedrawCurves();
}

void CMainDlg::OnShowCurves(const DialogMessage& /*m*/) {
    takeControls();
    RedrawCurves();
}

void CMainDlg::ApplyCurveEdit(bool redesign) {
    if (!redesign || !run.responseReady) {
        display_.ApplyCurveEdit(redesign);
        return;
    }
    takeControls();
    work([&] { display_.ApplyCurveEdit(true); });
}

bool CMainDlg::followsMouse() const {
    return values_.followsMouse && run.responseReady && run.responseAnalyzer.valid;
}

void CMainDlg::designWhatIsFollowed() {
    if (live_.isAhead()) {
        RunDesign();
    }
}

void CMainDlg::OnFollow(const DialogMessage& /*m*/) {
    live_.step();
}

void CMainDlg::OnLiveTimer(const DialogMessage& /*m*/) {
    live_.tick();
}

void CMainDlg::OnLiveAmplifier(const DialogMessage& m) {
    live_.programsAmplifier = host.check(m.id) != 0;
}

void CMainDlg::OnGainHover(const DialogMessage& m) {
    if (followsMouse()) {
        live_.tryGain(static_cast<int32_t>(m.lParam), values_.TargetCurveKind);
    }
}

// Without a selection the gain goes back to that of the list.
void CMainDlg::OnGainCloseUp(const DialogMessage& /*m*/) {
    designWhatIsFollowed();
}

void CMainDlg::OnCurveChanged(const DialogMessage& m) {
    const bool tellsOfItsEnd = plot.showKnots || plot.showBandEdges;
    if (m.lParam == 0 && tellsOfItsEnd && followsMouse()) {
        live_.moveTarget(plot.record);
        return;
    }
    ApplyCurveEdit(m.lParam != 0);
    if (m.lParam != 0) {
        history_.edited(targetState());
    }
}

void CMainDlg::OnReset(const DialogMessage& /*m*/) {
    plot.SetRecord(values_.DefaultTargetCurve);
    ApplyCurveEdit(true);
    history_.edited(targetState());
}

TargetState CMainDlg::targetState() const {
    return {run.currentCurve, run.curves[static_cast<size_t>(run.currentCurve)],
            values_.TargetCurveKind};
}

void CMainDlg::restore(const std::optional<TargetState>& state) {
    if (!state) {
        return;
    }
    run.currentCurve = state->curve;
    values_.TargetCurveKind = state->kind;
    host.select(controls::curve, state->curve);
    plot.SetRecord(state->record);
    ApplyCurveEdit(true);
}

void CMainDlg::OnUndo(const DialogMessage& /*m*/) {
    restore(history_.undo());
}

void CMainDlg::OnRedo(const DialogMessage& /*m*/) {
    restore(history_.redo());
}

void CMainDlg::OnInputRate(const DialogMessage& /*m*/) {
    takeControls();
    run.SetInputRate(host.selection(controls::inputRate) + 1);
    loadCommandLineResponse();
}

}  // namespace tonvane
