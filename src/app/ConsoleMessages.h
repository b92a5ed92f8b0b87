// Messages of a run without a window: on standard error as "Error: TEXT" and "Warning: TEXT".
#pragma once

#include "tuning/Messages.h"

namespace tonvane {

class ConsoleMessages : public Messages {
  public:
    void error(const std::string& text) override;
    void warning(const std::string& text) override;

    // Nobody is there to ask: OK.
    bool confirm(const std::string& text, const std::string& caption) override;

    // Steps that take a fraction of a second are not worth a line.
    void status(int line, const std::string& text, StatusNews news) override;
};

}  // namespace tonvane
