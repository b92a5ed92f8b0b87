// Keeps what a run says to the person in front of it.
#pragma once

#include <string>
#include <vector>

#include "tuning/Messages.h"

namespace tonvane::tests {

struct RecordingMessages : Messages {
    void error(const std::string& text) override { errors.push_back(text); }
    bool confirm(const std::string& /*text*/, const std::string& /*caption*/) override {
        return true;
    }
    void status(int line, const std::string& text, StatusNews /*news*/) override {
        states.push_back(std::to_string(line) + text);
    }

    std::vector<std::string> errors, states;
};

}  // namespace tonvane::tests
