// What the plot tells its window, brought to the dialog's host.
#pragma once

#include <string>

#include "graph/GraphHost.h"
#include "tuning/TuningRun.h"
#include "ui/DialogHost.h"

namespace tonvane {

class PlotOnHost : public GraphHost {
  public:
    // Both outlive it. Texts go to the first status line of the run.
    PlotOnHost(DialogHost& host, TuningRun& run) : host_(host), run_(run) {}

    void invalidate() override { host_.invalidatePlot(); }
    void captureMouse(bool captured) override { host_.capturePlotMouse(captured); }
    void setCursor(GraphCursor cursor) override { host_.setPlotCursor(cursor); }
    void curveChanged(bool letGo) override {
        host_.send({.message = message::curveChanged, .lParam = letGo ? 1 : 0});
    }
    void statusText(const std::string& text) override {
        run_.SetStatusLine(1, text, StatusNews::posted);
    }

  private:
    DialogHost& host_;
    TuningRun& run_;
};

}  // namespace tonvane
