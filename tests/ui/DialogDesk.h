// A dialog on a recording host, with files in a folder of its own and a link that only records.
#pragma once

#include <climits>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "link/Recording.h"
#include "transform/FftTables.h"
#include "tuning/GoldenValues.h"
#include "ui/Controls.h"
#include "ui/MainDlg.h"
#include "ui/RecordingHost.h"

namespace tonvane::tests {

class DialogDesk : public testing::Test {
  protected:
    static constexpr int plotWidth = 700;  // of the recording host's plot, without margins
    static constexpr int plotHeight = 300;

    DialogDesk() {
        InitFftTables(responseLength);
        values.AppDirectory = folder.path() + "/";
    }

    // As the command line of a golden case sets the values, with files in the folder.
    void setGolden(size_t index) {
        SetGoldenValues(GoldenCases()[index], values);
        values.FilterFilePath = folder / "filter.txt";
        values.TargetFilePath = folder / "target.txt";
    }
    void start() {
        store.emplace(folder / "state/recent");
        dialog = std::make_unique<CMainDlg>(host, values, devices, *store, promptOnExit,
                                            CAmpLink::defaultPort, link.transport());
        host.start(*dialog);
    }
    [[nodiscard]] const TuningRun& run() const { return dialog->tuningRun(); }
    [[nodiscard]] std::vector<int32_t> words() const {
        return {run().fittedWords().begin(), run().fittedWords().end()};
    }
    RecordingHost::Control& control(int id) { return host.controls.at(id); }
    // The controls that a person can see, and those of a range that a person can use.
    std::set<int> visible() { return where(&RecordingHost::Control::visible, 0, INT_MAX); }
    std::set<int> usable(int first, int last) {
        return where(&RecordingHost::Control::enabled, first, last);
    }

    std::set<int> where(bool RecordingHost::Control::*state, int first, int last) {
        std::set<int> ids;
        for (const auto& [id, control] : host.controls) {
            if (id >= first && id <= last && control.*state) {
                ids.insert(id);
            }
        }
        return ids;
    }

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
    Recording link;
    std::vector<DeviceChoice> devices;
    std::optional<FileUserStore> store;
    bool promptOnExit = false;
    std::unique_ptr<CMainDlg> dialog;
};

}  // namespace tonvane::tests
