// What a plot asks of the window that it lives in; a plot without a window has a host that does
// nothing.
#pragma once

#include <string>

namespace tonvane {

enum class GraphCursor { cross, move };

class GraphHost {
  public:
    virtual ~GraphHost() = default;

    // The plot image has changed: have it painted soon.
    virtual void invalidate() {}

    // The mouse's events come here even from outside the window, until it is released.
    virtual void captureMouse(bool /*captured*/) {}

    virtual void setCursor(GraphCursor /*cursor*/) {}

    // The plot's record has changed: a handle is moving, or was let go. Returns when the owner is
    // done with it.
    virtual void curveChanged(bool /*letGo*/) {}

    // What is to be said of the handle that moves; empty at its end.
    virtual void statusText(const std::string& /*text*/) {}
};

}  // namespace tonvane
