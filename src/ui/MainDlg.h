// The dialog: a tuning run and its controls.
//
// One long-lived object, made after the transform tables. The host tells it of everything by
// ProcessWindowMessage, and of the plot's mouse and size directly; the messages run to their end on
// the host's thread. Errors are shown and the run goes on.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "graph/CurveGraphWindow.h"
#include "stream/EqStream.h"
#include "tuning/MeasurementRun.h"
#include "tuning/TuningRun.h"
#include "ui/CurveDisplay.h"
#include "ui/LiveDesign.h"
#include "ui/PlotOnHost.h"
#include "ui/RegisterPanel.h"
#include "ui/TargetHistory.h"
#include "ui/WaveDlg.h"

namespace tonvane {

// The run, ahead of the dialog's audio side that works with its measurement.
struct RunOfDialog {
    RunOfDialog(ProgramValues& values, Messages& messages, TuningView& view, uint16_t linkPort,
                std::unique_ptr<LinkTransport> transport)
        : run(values, messages, &view, linkPort, std::move(transport)) {}

    TuningRun run;
};

class CMainDlg : private Messages, private TuningView, private RunOfDialog, public CWaveDlg {
  public:
    // Host, values and store outlive the dialog.
    CMainDlg(DialogHost& dialogHost, ProgramValues& values, std::vector<DeviceChoice> devices,
             UserStore& store, bool promptOnExit, uint16_t linkPort = CAmpLink::defaultPort,
             std::unique_ptr<LinkTransport> transport = std::make_unique<TcpTransport>());

    std::optional<std::intptr_t> ProcessWindowMessage(const DialogMessage& m) override;

    // The plot has another size, or another device to draw for.
    void ResizePlot(const PlotWindow& window);

    CCurveGraphWindow plot;  // for its mouse and its painting

    [[nodiscard]] const TuningRun& tuningRun() const { return run; }

  private:
    using Row = MessageRow<CMainDlg>;
    static const std::span<const Row> rows;

    // Messages and TuningView.
    void error(const std::string& text) override;
    bool confirm(const std::string& text, const std::string& caption) override;
    void status(int line, const std::string& text, StatusNews news) override;
    void UpdateResultList() override;
    void RedrawCurves() override;
    void SetEditControlsEnabled(bool enabled) override;

    // CWaveDlg.
    void OnAttachStages() override;
    void OnDetachStages() override;
    void OnFileOpened() override;

    // Initialisation.
    void InitTuningState(const DialogMessage& m);
    void fillLists();
    void setUpPlot();
    void ResetCurves();
    void HideServiceControls();

    // State and controls: what a person has switched on the screen comes in, or the state goes out.
    void takeControls();
    void showControls();

    // The design.
    void RunDesign();
    void ApplyCurveEdit(bool redesign);
    void showCurveAndGain();
    void beforeLoad();
    void afterLoad();
    void loadCommandLineResponse();
    [[nodiscard]] bool followsMouse() const;
    void designWhatIsFollowed();
    [[nodiscard]] TargetState targetState() const;
    void restore(const std::optional<TargetState>& state);
    void enableEditGroup(bool enabled);

    // Does what may take long, with a busy cursor if it did so the last time.
    void work(const std::function<void()>& toDo);

    // Handlers.
    void OnPaint(const DialogMessage& m);
    void OnClose(const DialogMessage& m);
    void OnStatus(const DialogMessage& m);
    void OnCaptureDone(const DialogMessage& m);
    void OnCurveChanged(const DialogMessage& m);
    void OnDesignChange(const DialogMessage& m);
    void OnGainHover(const DialogMessage& m);
    void OnGainCloseUp(const DialogMessage& m);
    void OnFollow(const DialogMessage& m);
    void OnLiveTimer(const DialogMessage& m);
    void OnLiveAmplifier(const DialogMessage& m);
    void OnFilterRate(const DialogMessage& m);
    void OnInputRate(const DialogMessage& m);
    void OnMeasure(const DialogMessage& m);
    void OnPlayCommand(const DialogMessage& m);
    void OnStopCommand(const DialogMessage& m);
    void OnOpenResponse(const DialogMessage& m);
    void OnOpenTable(const DialogMessage& m);
    void OnCloseButton(const DialogMessage& m);
    void OnReset(const DialogMessage& m);
    void OnLoadParameters(const DialogMessage& m);
    void OnSaveParameters(const DialogMessage& m);
    void OnShowCurves(const DialogMessage& m);
    void OnUndo(const DialogMessage& m);
    void OnRedo(const DialogMessage& m);
    void OnSavePicture(const DialogMessage& m);

    ProgramValues& values_;
    PlotOnHost plotHost_;
    RegisterPanel panel_;
    MeasurementRun measurement_;
    CEqStream eqStream_;
    CurveDisplay display_;
    LiveDesign live_;
    TargetHistory history_;
    std::chrono::steady_clock::duration lastWork_{};
};

}  // namespace tonvane
