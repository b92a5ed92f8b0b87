// What a tuning run says to the person in front of it.
#pragma once

#include <string>

namespace tonvane {

// How a status text gets to the screen.
enum class StatusNews {
    sent,    // before the caller goes on to what takes its time
    posted,  // the caller does not wait
};

class Messages {
  public:
    virtual ~Messages() = default;

    // An error of the run; the run goes on.
    virtual void error(const std::string& text) = 0;

    // Something that the run could not do and that a dialog passes over in silence; for whoever has
    // no window. The text names the file.
    virtual void warning(const std::string& /*text*/) {}

    // A question that is answered with OK (true) or Cancel.
    virtual bool confirm(const std::string& text, const std::string& caption) = 0;

    // Status text 1 or 2 has changed.
    virtual void status(int line, const std::string& text, StatusNews news) = 0;
};

// What a tuning run tells a display. A run without one has none.
class TuningView {
  public:
    virtual ~TuningView() = default;

    virtual void UpdateResultList() = 0;
    virtual void RedrawCurves() = 0;

    // The controls that start a measurement or a load and edit the target serve, or a measurement
    // runs and they do not.
    virtual void SetEditControlsEnabled(bool /*enabled*/) {}
};

}  // namespace tonvane
