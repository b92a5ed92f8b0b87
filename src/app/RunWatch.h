// Watches a run of the stream engine from the command line.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>

#include "stream/StreamEngine.h"

namespace tonvane {

// Keeps what the workers tell, for the one thread that waits.
class RunNews : public StreamNotify {
  public:
    void postCaptureDone(bool complete) override {
        isComplete = complete;
        isDone = true;
    }
    void postStatus() override {}
    void showError(const std::string& text) override { error = text; }

    std::atomic<bool> isDone{false};
    std::atomic<bool> isComplete{false};
    std::string error;
};

// How a run has ended.
enum class RunEnd { done, lost, stalled, interrupted };

// Waits for the end of a started run and calls `progress` now and then. Stalled: neither direction
// has moved for as long as the limit. The engine is still to be stopped.
RunEnd WatchRun(CStreamEngine& engine, const RunNews& news, std::chrono::milliseconds limit,
                const std::function<void()>& progress);

// One line that shows how far something has got: redrawn in place on a terminal, else a line at
// every quarter. Ends the line when it goes.
class ProgressLine {
  public:
    explicit ProgressLine(std::string title);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // `share` is 0 to 1.
    void show(double share);

  private:
    std::string title_;
    bool isTerminal_;
    int shown_ = -1;  // percent
};

}  // namespace tonvane
