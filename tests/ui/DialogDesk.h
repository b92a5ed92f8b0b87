// A dialog on a recording host, with files in a folder of its own.
#pragma once

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "transform/FftTables.h"
#include "tuning/GoldenValues.h"
#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/RecordingHost.h"

namespace tonvane::tests {

using Lines = std::vector<std::string>;

class DialogDesk : public testing::Test {
  protected:
    static constexpr int plotWidth = 700;  // of the recording host's plot, without margins
    static constexpr int plotHeight = 300;

    DialogDesk() {
        InitFftTables(responseLength);
        values.AppDirectory = folder.path() + "/";
    }

    // As the command line of a golden case sets the values, with files in the folder.
    void setGolden(const GoldenCase& golden) {
        SetGoldenValues(golden, values);
        values.FilterFilePath = folder / "filter.txt";
        values.TargetFilePath = folder / "target.txt";
    }
    void start() {
        store.emplace(folder / "state/recent");
        dialog = std::make_unique<CMainDlg>(host, values, devices, *store, promptOnExit, linkPort);
        host.start(*dialog);
    }
    [[nodiscard]] const TuningRun& run() const { return dialog->tuningRun(); }
    [[nodiscard]] std::vector<int32_t> words() const { return run().iirFitter.coefficientWords; }
    RecordingHost::Control& control(int id) { return host.controls.at(id); }

    // Where a frequency and a level lie in the plot's window.
    static Point onPlot(double hertz, double decibels) {
        const double x = std::log10(hertz / 20.0) / std::log10(24000.0 / 20.0) * plotWidth;
        const double y = (10.0 - decibels) / 50.0 * plotHeight;
        return {56 + static_cast<int32_t>(std::lround(x)),
                8 + static_cast<int32_t>(std::lround(y))};
    }

    TemporaryFolder folder;
    ProgramValues values;
    RecordingHost host;
    std::vector<DeviceChoice> devices;
    std::optional<FileUserStore> store;
    bool promptOnExit = false;
    uint16_t linkPort = CAmpLink::usualPort;
    std::unique_ptr<CMainDlg> dialog;
};

}  // namespace tonvane::tests
