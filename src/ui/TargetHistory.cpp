#include "ui/TargetHistory.h"

namespace tonvane {

void TargetHistory::start(const TargetState& state) {
    present_ = state;
    done_.clear();
    undone_.clear();
}

void TargetHistory::edited(const TargetState& state) {
    if (state == present_) {
        return;
    }
    if (done_.size() == maxSteps) {
        done_.erase(done_.begin());
    }
    done_.push_back({present_, state});
    undone_.clear();
    present_ = state;
}

std::optional<TargetState> TargetHistory::undo() {
    if (done_.empty()) {
        return std::nullopt;
    }
    undone_.push_back(done_.back());
    done_.pop_back();
    present_ = undone_.back().before;
    return present_;
}

std::optional<TargetState> TargetHistory::redo() {
    if (undone_.empty()) {
        return std::nullopt;
    }
    done_.push_back(undone_.back());
    undone_.pop_back();
    present_ = done_.back().after;
    return present_;
}

}  // namespace tonvane
