// What the dialog reads from files and writes to them when a person asks for it.
#include <stdexcept>

#include "platform/FileAccess.h"
#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/PlotPicture.h"

namespace tonvane {

namespace {

constexpr FileDialog responseDialog{FileDialog::Form::open, "Quorrel Speaker response (*.qsr)",
                                    "*.qsr", "qsr"};
constexpr FileDialog tableDialog{FileDialog::Form::open, "CSV (Comma delimited) (*.csv)", "*.csv",
                                 "csv"};
constexpr FileDialog openParametersDialog{FileDialog::Form::open, "Design Parameters (*.txt)",
                                          "*.txt", "txt"};
constexpr FileDialog saveParametersDialog{FileDialog::Form::save, "Design Parameters (*.txt)",
                                          "*.txt", "txt"};

constexpr FileDialog pictureDialog{FileDialog::Form::save, "Pictures (*.png *.svg *.pdf)",
                                   "*.png *.svg *.pdf", "png"};
constexpr int pictureHeight = 400;
constexpr int pictureScale = 2;

}  // namespace

void CMainDlg::beforeLoad() {
    host.setFocus(controls::dialog);
    showControls();
}

void CMainDlg::afterLoad() {
    host.setFocus(controls::dialog);
    SetEditControlsEnabled(true);
}

void CMainDlg::loadCommandLineResponse() {
    if (values_.ResponseFilePath.empty()) {
        return;
    }
    beforeLoad();
    bool opened = false;
    work([&] { opened = run.LoadCommandLineResponse(); });
    if (opened) {
        afterLoad();
    }
}

void CMainDlg::OnOpenResponse(const DialogMessage& /*m*/) {
    if (const auto path = host.chooseFile(responseDialog)) {
        beforeLoad();
        if (run.OpenResponseFile(*path, PathCase::asGiven)) {
            afterLoad();
        }
    }
}

void CMainDlg::OnOpenTable(const DialogMessage& /*m*/) {
    if (const auto path = host.chooseFile(tableDialog)) {
        beforeLoad();
        run.OpenCsvFile(*path);
        afterLoad();
    }
}

void CMainDlg::OnLoadParameters(const DialogMessage& /*m*/) {
    if (const auto path = host.chooseFile(openParametersDialog)) {
        showControls();
        run.LoadDesignParameters(*path);
        showCurveAndGain();
        RedrawCurves();
        history_.start(targetState());
    }
}

// A failure is silent.
void CMainDlg::OnSaveParameters(const DialogMessage& /*m*/) {
    if (const auto path = host.chooseFile(saveParametersDialog)) {
        run.SaveDesignParameters(*path);
    }
}

void CMainDlg::OnSavePicture(const DialogMessage& /*m*/) {
    const auto path = host.chooseFile(pictureDialog);
    if (!path) {
        return;
    }
    const PlotPicture picture{.width = plot.width / plot.xAxis.unit,
                              .height = pictureHeight,
                              .scale = pictureScale,
                              .shown = display_.shown,
                              .caption = {}};
    std::string contents;
    try {
        if (path->ends_with(".svg")) {
            contents = PlotSvg(run, values_, picture);
        } else if (path->ends_with(".pdf")) {
            contents = PlotPdf(run, values_, picture);
        } else {
            contents = PlotPng(run, values_, picture);
        }
    } catch (const std::runtime_error& error) {
        showError(std::string("Failed to save the picture: ") + error.what());
        return;
    }
    if (const auto reason = ReplaceFile(*path, contents)) {
        showError("Failed to save the picture: " + *reason);
    }
}

}  // namespace tonvane
