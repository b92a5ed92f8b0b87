// What the rooms below tell the dialog, brought to its host.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "graph/GraphHost.h"
#include "link/RegisterPanel.h"
#include "ui/DialogHost.h"

namespace tonvane {

// Sets status line 1 or 2.
using SetStatus = std::function<void(int line, const std::string& text)>;

// The register panel's controls.
class PanelOnHost : public PanelView {
  public:
    PanelOnHost(DialogHost& host, SetStatus setStatus)
        : host_(host), setStatus_(std::move(setStatus)) {}

    void setText(int id, const std::string& text) override { host_.setText(id, text); }
    void enable(int id, bool enabled) override { host_.enable(id, enabled); }
    void setChecked(int id, bool checked) override { host_.setCheck(id, checked ? 1 : 0); }
    void focus(int id) override { host_.setFocus(id); }
    void message(const std::string& text) override {
        host_.showMessage({MessageBox::Kind::message, text, ""});
    }
    void status(const std::string& text) override { setStatus_(2, text); }

  private:
    DialogHost& host_;
    SetStatus setStatus_;
};

// The plot's window.
class PlotOnHost : public GraphHost {
  public:
    PlotOnHost(DialogHost& host, SetStatus setStatus)
        : host_(host), setStatus_(std::move(setStatus)) {}

    void invalidate() override { host_.invalidatePlot(); }
    void captureMouse(bool captured) override { host_.capturePlotMouse(captured); }
    void setCursor(GraphCursor cursor) override { host_.setPlotCursor(cursor); }
    void curveChanged(bool letGo) override {
        host_.send({.message = message::curveChanged, .lParam = letGo ? 1 : 0});
    }
    void statusText(const std::string& text) override { setStatus_(1, text); }

  private:
    DialogHost& host_;
    SetStatus setStatus_;
};

}  // namespace tonvane
