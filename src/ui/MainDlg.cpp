#include "ui/MainDlg.h"

#include <exception>
#include <utility>

#include "ui/Controls.h"
#include "ui/DialogTemplate.h"
#include "ui/ResultsRow.h"

namespace tonvane {

namespace {

constexpr auto longTime = std::chrono::milliseconds(100);
constexpr int statusFontPoints = 10;

// In the order of their check boxes.
constexpr std::array showStates{&ShownCurves::showSpec1,   &ShownCurves::showSpec2,
                                &ShownCurves::showTarget,  &ShownCurves::showWeight,
                                &ShownCurves::showFilter,  &ShownCurves::showMixed,
                                &ShownCurves::showFilter2, &ShownCurves::showMixed2};

void fill(DialogHost& host, int id, const std::vector<std::string>& items, int selected) {
    for (const std::string& item : items) {
        host.insertItem(id, -1, item);
    }
    host.select(id, selected);
}

}  // namespace

CMainDlg::CMainDlg(DialogHost& dialogHost, ProgramValues& values, std::vector<DeviceChoice> devices,
                   UserStore& store, bool promptOnExit, uint16_t linkPort,
                   std::unique_ptr<LinkTransport> transport)
    : RunOfDialog(values, static_cast<Messages&>(*this), static_cast<TuningView&>(*this), linkPort,
                  std::move(transport)),
      CWaveDlg(dialogHost, run.measurement, std::move(devices), store),
      plot(plotHost_, values.TargetCurveKind),
      values_(values),
      plotHost_(dialogHost, run),
      panel_(dialogHost, run),
      measurement_(run, values, player, this),
      display_(run, values, plot),
      live_(dialogHost, run, display_) {
    run.promptOnExit = promptOnExit;
}

std::optional<std::intptr_t> CMainDlg::ProcessWindowMessage(const DialogMessage& m) {
    try {
        if (const auto answer = panel_.ProcessMessage(m)) {
            return answer;
        }
        const auto answer = Dispatch(*this, rows, m);
        return answer ? answer : CWaveDlg::ProcessWindowMessage(m);
    } catch (const std::exception& error) {
        showError(error.what());
        return 0;
    }
}

void CMainDlg::error(const std::string& text) {
    showError(text);
}

bool CMainDlg::confirm(const std::string& text, const std::string& caption) {
    return host.showMessage({MessageBox::Kind::question, text, caption});
}

void CMainDlg::status(int /*line*/, const std::string& /*text*/, StatusNews news) {
    if (!host.isWindow()) {
        return;
    }
    if (news == StatusNews::posted) {
        host.post({.message = message::status});
    } else {
        host.send({.message = message::status});
    }
}

void CMainDlg::UpdateResultList() {
    const auto row = ResultsRow(run);
    for (size_t column = 1; column < row.size(); ++column) {
        host.setCell(controls::results, static_cast<int>(column), row[column]);
    }
}

void CMainDlg::RedrawCurves() {
    display_.RedrawCurves();
}

void CMainDlg::work(const std::function<void()>& toDo) {
    live_.settle();
    const bool takesLong = lastWork_ > longTime;
    if (takesLong) {
        host.setBusy(true);
    }
    const auto start = std::chrono::steady_clock::now();
    toDo();
    lastWork_ = std::chrono::steady_clock::now() - start;
    if (takesLong) {
        host.setBusy(false);
    }
}

void CMainDlg::enableEditGroup(bool enabled) {
    for (const int id : {controls::reset, controls::loadParameters, controls::saveParameters,
                         controls::curve, controls::gainClamp}) {
        host.enable(id, enabled);
    }
}

void CMainDlg::SetEditControlsEnabled(bool enabled) {
    enableEditGroup(enabled);
    host.enable(controls::measure, enabled);
    host.enable(controls::openResponse, enabled);
}

void CMainDlg::OnAttachStages() {
    engine.AttachFilter(&eqStream_);
}

void CMainDlg::OnDetachStages() {
    engine.DetachFilter();
}

void CMainDlg::OnFileOpened() {
    const WAVEFORMATEX& format = engine.inputFile.format;
    run.SetStatusLine(
        1, std::to_string(format.sampleRate) + " Hz, " + std::to_string(format.channels) + " ch",
        StatusNews::sent);
    run.SetStatusLine(2, "", StatusNews::sent);
}

void CMainDlg::InitTuningState(const DialogMessage& /*m*/) {
    run.StartState();
    display_.shown = {};
    fillLists();
    showControls();
    setUpPlot();
    host.setColumns(controls::results, resultsHeadings);
    host.setCell(controls::results, 0, SpeakerNames[run.speakerIndex]);
    for (const int id : {controls::status1, controls::status2}) {
        host.setBoldFont(id, statusFontPoints);
    }
    UpdateResultList();
    ResetCurves();
    panel_.Start();
    HideServiceControls();
    loadCommandLineResponse();
}

void CMainDlg::fillLists() {
    std::vector<std::string> curves;
    std::vector<std::string> gains;
    std::vector<std::string> rates;
    curves.reserve(curveCount);
    gains.reserve(TuningRun::gainSteps);
    rates.reserve(values_.SampleRateTable.size());
    for (int i = 1; i <= curveCount; ++i) {
        curves.push_back("Curve " + std::to_string(i));
    }
    for (int i = 0; i < TuningRun::gainSteps; ++i) {
        gains.push_back((i == 0 ? " " : "") + std::to_string(-i) + " dB");
    }
    for (size_t i = 1; i < values_.SampleRateTable.size(); ++i) {
        rates.push_back(std::to_string(values_.SampleRateTable[i] / 1000) + " KHz");
    }
    fill(host, controls::curve, curves, 0);
    fill(host, controls::gainClamp, gains, run.gainIndex);
    fill(host, controls::filterRate, {std::to_string(values_.SampleRateTable[0]) + " Hz"}, 0);
    fill(host, controls::inputRate, rates, run.inputRateIndex);
}

void CMainDlg::setUpPlot() {
    const PlotWindow window = host.createPlot(controls::plotPlace);
    plot.Create(*window.device, window.width, window.height, window.displayUnit);
    SetUpPlot(plot);
}

void CMainDlg::ResizePlot(const PlotWindow& window) {
    plot.Create(*window.device, window.width, window.height, window.displayUnit);
    RedrawCurves();
}

void CMainDlg::ResetCurves() {
    showCurveAndGain();
    showControls();
    ApplyCurveEdit(true);
    history_.start(targetState());
}

void CMainDlg::HideServiceControls() {
    for (const DialogItem& item : MainDialogTemplate.items) {
        if (item.place.width == 0 || item.id == controls::plotPlace) {
            host.show(item.id, false);
        }
    }
}

void CMainDlg::takeControls() {
    int id = controls::showFirst;
    for (const auto state : showStates) {
        display_.shown.*state = host.check(id++);
    }
    panel_.TakeSwitches();
}

void CMainDlg::showControls() {
    int id = controls::showFirst;
    for (const auto state : showStates) {
        host.setCheck(id++, display_.shown.*state);
    }
    panel_.ShowSettings();
}

// Into the lists and onto the plot.
void CMainDlg::showCurveAndGain() {
    host.select(controls::curve, run.currentCurve);
    plot.SetRecord(run.curves[static_cast<size_t>(run.currentCurve)]);
    host.select(controls::gainClamp, run.gainIndex);
}

}  // namespace tonvane
